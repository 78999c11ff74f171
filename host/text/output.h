// Standard output and standard error of the commands.
#pragma once

#include <exception>
#include <string>

namespace korlit::host {

/// Thrown where whoever read standard output has gone, as head does: nobody is to be told.
class ReaderGone : public std::exception {};

/// Tells on standard error why a file failed.
void printFailure(const std::string& file, const std::string& words);

/// Throws a ReaderGone, or else a runtime_error, where standard output hasn't taken all that was
/// printed.
void finishOutput();

} // namespace korlit::host
