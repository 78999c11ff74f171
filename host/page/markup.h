// Texts as parts of a page.
#pragma once

#include <string>
#include <string_view>

namespace korlit::host {

/// A text as content or as a quoted attribute, whatever is in it: never markup. All that comes from
/// files goes through here.
std::string escaped(std::string_view text);

/// <TAG>text</TAG>, and nothing for the empty text.
std::string element(std::string_view tag, std::string_view text);

/// The hash of a script by which a page's policy allows it and no other.
std::string policyHash(std::string_view script);

} // namespace korlit::host
