// Which of the formats a file is in, by its name and its first bytes.
#pragma once

#include <cstdint>
#include <string>

namespace korlit::host {

enum class FileKind : std::uint8_t { Andi, SliceFile, Run };

struct Recognised {
    FileKind kind = FileKind::Andi;
    int channelCount = 0; ///< of a run
};

/// A slice file goes by its extension .sli. A run file has no signature: it is one whose head is
/// plausible, with a version from 1 to 100 and one to nine channels. All else counts as ANDI, whose
/// reader has the words for what isn't.
Recognised recognise(const std::string& file);

} // namespace korlit::host
