// Who looks on.
#pragma once

#include <cstddef>

namespace korlit::host {

bool isOutputTerminal();
bool isErrorTerminal();

/// Whether standard output is a pipe whose reader has gone.
bool isOutputAbandoned();

/// Columns of the terminal behind standard error; 80 where there is none.
std::size_t terminalWidth();

} // namespace korlit::host
