// Transfers under a sticky flag. A job reads or writes its file from end to end without a test in
// between: the first transfer that falls short sets the flag, every later one does nothing, and one
// look at the flag at the end of the job tells whether all went through.
#pragma once

#include <cstdint>

namespace korlit {

/// 0 or 1. Cleared by the job that is about to read or write, and by nobody else.
extern std::int32_t ReadErrorFlag;
extern std::int32_t WriteErrorFlag;

/// Moves `byteCount` bytes between the file and memory, unless the flag is set already. The flag
/// becomes 1 if anything but `byteCount` bytes moved. Answers the flag.
std::int32_t ReadChecked(int file, void* target, std::int64_t byteCount);
std::int32_t WriteChecked(int file, const void* source, std::int64_t byteCount);

/// Closes a file that was written. A close that fails counts as a write that fell short: the system
/// may tell only then that bytes were lost.
void CloseWritten(int file);

} // namespace korlit
