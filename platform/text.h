// Text and number text of the C runtime, with bounds. Numbers are written and read as in the "C"
// locale, whatever locale the host process has set.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace korlit {

/// Formats like printf into `target`, cut at its end and always terminated; an empty target is left
/// alone. Not for floating-point values: see formatGeneral.
[[gnu::format(printf, 2, 3)]] void formatText(std::span<char> target, const char* format, ...);

/// Writes `value` as printf's "%8G" does: six significant digits, right-aligned in eight columns.
void formatGeneral(std::span<char> target, double value);

/// Copies at most `size` - 1 characters of a terminated text to `target` and terminates them there.
/// `size` counts from 1.
void lstrcpynA(char* target, const char* source, int size);

/// Turns the letters A to Z of a terminated text into lower case, in place.
void _strlwr(char* text);

bool isDigit(char character);

/// Read a number from the start of `text` by scanf's rules: white space is passed over, a sign is
/// taken, what follows the number is not looked at. Nothing if no number starts there.
///
/// readLong ("%ld") keeps to the limits of 32 bits: a larger number counts as the limit. readShort
/// ("%hd") is the low 16 bits of the same. readFloat ("%f") reads a decimal number; one beyond
/// the float's range counts as none.
std::optional<std::int32_t> readLong(std::string_view text);
std::optional<std::int16_t> readShort(std::string_view text);
std::optional<float> readFloat(std::string_view text);

} // namespace korlit
