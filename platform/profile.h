// The system's settings of the user: an INI file that the environment variable KORLIT_PROFILE
// names.
#pragma once

#include <span>

namespace korlit {

/// Copies the value of `key` in `section` into `value`, cut at its end and terminated. Section and
/// key are compared without regard to case; blanks and one pair of quotes around a value are not
/// part of it. No variable, file, section or key gives `otherwise`.
void GetProfileStringA(const char* section, const char* key, const char* otherwise,
                       std::span<char> value);

} // namespace korlit
