// Whether a person looks on.
#pragma once

#include <cstddef>

namespace korlit::host {

bool isOutputTerminal();
bool isErrorTerminal();

/// Columns of the terminal behind standard error; 80 where there is none.
std::size_t terminalWidth();

} // namespace korlit::host
