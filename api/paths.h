// What the exports do with the buffers that a host passes.
#pragma once

#include <span>

namespace korlit {

/// Makes sure that the last component of the path has an extension: appends a dot if it holds none.
/// Answers the place of its last dot, where every later extension is written.
char* NormalisePath(char* path);

/// The message buffer at the size that a host must provide with this path, before it is normalised.
std::span<char> messageBuffer(const char* path, char* message);

/// The same for the conversion of a run, whose host may have put an output path into the buffer and
/// then has room for that at least. A host may pass no buffer: it then has no room.
std::span<char> runMessageBuffer(const char* path, char* message);

} // namespace korlit
