// What the exports do with the buffers that a host passes.
#pragma once

#include <span>

namespace korlit {

/// Makes sure that the last component of the path has an extension: appends a dot if it holds none.
/// Answers the place of its last dot, where every later extension is written.
char* NormalisePath(char* path);

/// The message buffer at the size that a host must provide with this path, before it is normalised.
std::span<char> messageBuffer(const char* path, char* message);

} // namespace korlit
