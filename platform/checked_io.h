// Transfers under a sticky flag. A job reads or writes its file from end to end without a test in
// between: the first transfer that falls short sets the flag, every later one does nothing, and one
// question at the end of the job tells whether all went through.
#pragma once

#include <cstdint>

namespace korlit {

/// Clear the flag: a job is about to read, or to write. Nobody else calls them.
void beginReading();
void beginWriting();

/// Whether a transfer has fallen short since.
bool hasReadFailed();
bool hasWriteFailed();

/// Set the flag, for what is as good as a transfer that fell short.
void setReadFailed();
void setWriteFailed();

/// Moves `byteCount` bytes between the file and memory, unless the flag is set already. The flag
/// becomes 1 if anything but `byteCount` bytes moved. Answers the flag.
std::int32_t ReadChecked(int file, void* target, std::int64_t byteCount);
std::int32_t WriteChecked(int file, const void* source, std::int64_t byteCount);

/// Brings to the file what was written to it so far, ahead of a write whose place in the order
/// shows where the disk fails. Loss is a write that fell short.
void FlushWritten(int file);

/// Closes a file that was written. A close that fails counts as a write that fell short: the system
/// may tell only then that bytes were lost.
void CloseWritten(int file);

} // namespace korlit
