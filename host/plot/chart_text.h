// Texts of files as charts show them.
#pragma once

#include <cstddef>
#include <string>

namespace korlit::host {

/// The text in UTF-8, as which bytes that are none are taken for Latin-1, without blanks at its
/// ends. What has no picture, such as a control character, becomes a blank.
std::string drawableText(const std::string& bytes);

/// At most the first `count` characters of a text in UTF-8.
std::string firstCharacters(const std::string& text, std::size_t count);

/// The date and time of a stamp such as 20051012083437+0200 as people write them; another text as
/// it is.
std::string readableStamp(const std::string& text);

/// An integer raised, as in 10⁶.
std::string raised(int number);

} // namespace korlit::host
