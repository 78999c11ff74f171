// Files by small integer handles, as the `_lopen` family of calls gives them.
//
// Reads go through a window of the file that one system call brings in, and writes gather in one
// that a system call takes out, so a header of hundreds of 4-byte fields costs a handful of calls;
// large transfers go past it, straight to their target, behind what was gathered. Nothing more goes
// out once bytes did not reach the file: what it then holds is what came ahead of them. A seek is
// only a change of position and costs nothing. Calls that a signal interrupts are taken up again.
#pragma once

#include <cstdint>

namespace korlit {

/// What the calls answer when they fail.
constexpr int fileError = -1;

enum class SeekOrigin : std::uint8_t { Start = 0, Current = 1 };

/// Opens a regular file for reading. fileError if it isn't there, may not be read or is anything
/// but a regular file: a folder has no bytes, and a pipe could hold the host up for ever.
int _lopen(const char* path);

/// Creates a file for writing, or empties it if it exists. fileError if that can't be done, or if
/// the file is open as a CFile: it stays as it is.
int _lcreat(const char* path);

/// Writes out what is gathered. fileError if the handle isn't open for writing, or if bytes written
/// before did not reach the file.
int _lflush(int handle);

/// Closes a handle. fileError if it wasn't open, or if bytes written before did not reach the file,
/// which may show only now.
int _lclose(int handle);

/// The length of an open file in bytes, or fileError.
std::int64_t _filelength(int handle);

/// Moves up to `byteCount` bytes to `target` and the position with them. Answers the number moved,
/// fewer only at the end of the file or where the system fails, and fileError if nothing could be
/// tried.
std::int64_t _hread(int handle, void* target, std::int64_t byteCount);

/// Writes `byteCount` bytes at the position and moves it. Answers the number taken: what is
/// gathered reaches the file later, and a failure then shows in a later write or in _lclose.
std::int64_t _hwrite(int handle, const void* source, std::int64_t byteCount);

/// Moves the position and answers it. A failure, such as a place ahead of the file's start, is
/// answered with fileError and leaves the handle nowhere: nobody tests a seek, so that reads and
/// writes of any bytes fail until a seek from the start.
std::int64_t _llseek(int handle, std::int64_t offset, SeekOrigin origin);

} // namespace korlit
