// Texts of files, which are UTF-8 or Latin-1.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace korlit::host {

/// The characters of a file's text: as UTF-8 has them where it is that, else of Latin-1.
std::u32string charactersOf(std::string_view text);

/// Characters as UTF-8.
std::string encoded(const std::u32string& characters);

/// Whether a character would steer a terminal or turn the direction of its text.
bool isSteering(char32_t character);

/// A file's text as UTF-8.
std::string utf8Of(std::string_view text);

/// The same for a line on a terminal, with U+FFFD for what would steer it.
std::string printable(std::string_view text);

/// The start of a text in so many bytes, without a character that they would cut.
std::string_view startOfText(std::string_view text, std::size_t size);

std::size_t characterCount(std::string_view text);

} // namespace korlit::host
