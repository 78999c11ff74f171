// Standard output and standard error of the commands.
#pragma once

#include <string>

namespace korlit::host {

/// Tells on standard error why a file failed.
void printFailure(const std::string& file, const std::string& words);

/// Throws a runtime_error where standard output hasn't taken all that was printed.
void finishOutput();

} // namespace korlit::host
