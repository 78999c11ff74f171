// What a user may have meant by a word that isn't known.
#pragma once

#include <string>
#include <vector>

namespace korlit::host {

/// "; did you mean convert?" for the nearest of the known words; the empty text where none is near.
std::string suggestion(const std::string& word, const std::vector<std::string>& known);

} // namespace korlit::host
