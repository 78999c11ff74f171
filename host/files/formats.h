// The formats of files: all that the commands know of each stands in one table.
#pragma once

#include "host/files/file_start.h"

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace korlit::host {

enum class FileKind : std::uint8_t { Unknown, Andi, Merivolta, Dunvale };

/// One of the files of a source, with what its name must end in for the library to find it.
struct SourceFile {
    std::string ending;
    std::filesystem::path path;
};

struct Format {
    FileKind kind;
    const char* name;  ///< in options and output
    const char* title; ///< for people
    /// What the names of its files end in; null where only their content tells.
    const char* extension;
    /// What they end in by custom.
    const char* usualExtension;
    /// What the name of the second file of a source ends in; null where there is none.
    const char* companionExtension;
    bool (*isIn)(const FileStart& start);
    /// Whether its files are looked at as they are. Those of the others are by way of the ANDI
    /// files that they are converted to.
    bool isAndi;
    bool isFromAndi; ///< whether it is what ANDI files are converted to
    bool hasChannels;
    std::int32_t (*convert)(char* path, char* message); ///< the library's export
    /// The start of the words for a success that the export has none for; empty if it has.
    const char* convertedText;
    /// The first is the one whose path the export gets.
    std::vector<SourceFile> (*sourceFiles)(const std::filesystem::path& source);
    /// How many channels a file that starts so has; 1 where there is no such thing.
    int (*channelCount)(const FileStart& start);
    /// What the names of the files that it is converted to end in, behind their common stem.
    std::vector<std::string> (*targetEndings)(int channelCount);
    /// What stands out in a file of so many bytes that can't be converted; see broken_files.
    std::string (*flaw)(const std::string& file, std::int64_t size);
};

/// Of what isn't recognised, too: it is taken for ANDI.
const Format& formatOf(FileKind kind);

/// Those that a file can be recognised as, in the order in which they are tried.
std::span<const Format> knownFormats();

bool isKnown(FileKind kind);

} // namespace korlit::host
