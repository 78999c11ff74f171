// Which of the formats a file is in, by its name and its first bytes.
#pragma once

#include <cstdint>
#include <string>

namespace korlit::host {

enum class FileKind : std::uint8_t { Unknown, Andi, Merivolta, Dunvale };

/// The word for a kind in options and output: "unknown", "andi", "merivolta", "dunvale".
const char* kindName(FileKind kind);

/// The kind of a regular file:
///
/// - ANDI by its signature, "CDF" and the version 1;
/// - a slice file of a Merivolta pair by its extension .sli, in any case, and room for its header;
/// - a Dunvale run, which has no signature, by a plausible head: a version from 1 to 100, one to
///   nine channels, and a first signal that is not longer than the file.
///
/// Anything else is unknown, and so is what can't be read.
FileKind recognise(const std::string& file);

} // namespace korlit::host
