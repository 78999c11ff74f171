// What of an ANDI file a Merivolta pair has no room for.
#pragma once

#include <string>
#include <vector>

namespace korlit::host {

/// A line of words for each thing that the conversion of the file leaves out or cuts: too long a
/// peak table, peak names, sample name, operator and unit.
std::vector<std::string> pairLosses(const std::string& andiFile);

} // namespace korlit::host
