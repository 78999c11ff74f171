// What the library promises whatever it is given, for the targets to hold it to.
#pragma once

#include "andi/andi_file.h"
#include "api/exports.h"

#include <string>

namespace korlit::fuzz {

/// Names the promise and aborts unless it is kept.
void require(bool isKept, const char* promise);

/// No block, file or library is held.
void requireNothingHeld();

/// All that an image holds, apart from its version and where it has its data. Every name and value
/// must be terminated within its block, every index in range, and every variable's elements within
/// its block.
std::string contentOf(const AndiFile& file);

/// The same of the file at `path`, loaded; empty for one that can't be. The reason must then be
/// told; a loaded file has no words.
std::string load(const std::string& path, AndiFile& file);

/// An ANDI file that was written can be loaded. What was held before is held after.
void requireLoadable(const std::string& path);

/// Calls a conversion as a host does, which tells the reason for a result of 0 in the message or in
/// a box, writes behind neither buffer and starts its words for a result of 1 with `success`.
/// Answers whether the result was 1.
bool convertAsHost(std::int32_t (*conversion)(char*, char*), const std::string& path,
                   const std::string& messageBefore, const std::string& success);

} // namespace korlit::fuzz
