// Whether the bytes of a file are laid out as any reader of netCDF classic files wants them. The
// reader of conversions is kinder: of many numbers it takes the low half, and it passes over what
// it doesn't need.
#pragma once

#include <cstdint>
#include <istream>
#include <string>

namespace korlit::host {

/// Walks over the header of a file of that size, number by number, and over the places that it
/// gives to the data, which must lie one behind the other up to the end of the file. Answers the
/// empty text, or what comes first that isn't as the layout has it.
std::string layoutProblem(std::istream& file, std::int64_t size);

} // namespace korlit::host
