// What the library promises whatever it is given, for the targets to hold it to.
#pragma once

#include "andi/andi_file.h"
#include "api/exports.h"

#include <span>
#include <string>
#include <vector>

namespace korlit::fuzz {

/// Names the promise and aborts unless it is kept.
void require(bool isKept, const char* promise);

/// No block, file or library is held.
void requireNothingHeld();

/// Every name and value of an image is terminated within its block, every index is in range, and
/// every variable's elements are within its block.
void requireSound(const AndiFile& file);

/// An ANDI file that was written can be loaded, as a sound image. What was held before is held
/// after.
void requireLoadable(const std::string& path);

/// A message buffer of exactly the size that a host must provide with a path.
class Message {
  public:
    explicit Message(const std::string& path);

    std::span<char> span() { return buffer; }
    /// Whether anything was written. What was must be a terminated text.
    bool isTold() const;

  private:
    std::vector<char> buffer;
};

/// Calls a conversion as a host does, which tells the reason for a result of 0 in the message or in
/// a box, writes behind neither buffer and starts its words for a result of 1 with `success`.
/// Answers whether the result was 1.
bool convertAsHost(std::int32_t (*conversion)(char*, char*), const std::string& path,
                   const std::string& messageBefore, const std::string& success);

} // namespace korlit::fuzz
