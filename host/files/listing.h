// The files that a command works on: those that were named, and what is found in folders.
#pragma once

#include "host/files/inputs.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace korlit::host {

/// A file in the list. There may be very many: each holds what differs from its neighbours alone.
struct ListedFile {
    std::string name;         ///< in its folder; of a file that was named the whole path
    std::uint32_t folder = 0; ///< one of the folders beside it
    FileKind kind = FileKind::Unknown;
    std::uint8_t channelCount = 1;
    bool isFound = false; ///< in a folder, not named itself
    std::string problem;  ///< why nothing can be done with it; empty if that is still to be seen
};

struct ListedFolder {
    std::filesystem::path path;
    std::filesystem::path below; ///< where it lies below the folder that was named
};

struct Listing {
    std::vector<ListedFolder> folders{{}}; ///< the first is that of all files that were named
    std::vector<ListedFile> files;
    std::vector<std::string> ignored; ///< of folders, each with the reason
    std::size_t passedCount = 0;      ///< found in folders, with nothing left to be done about them

    std::filesystem::path pathOf(const ListedFile& file) const {
        return folders[file.folder].path / file.name;
    }
};

/// What becomes of a file of a known kind that a folder holds.
struct Fate {
    enum class Way : std::uint8_t { Taken, Passed, Ignored };

    Way way = Way::Taken;
    std::string problem{}; ///< of one that is taken
};

struct FoundFile {
    const std::string& path;
    FileKind kind;
    const FileStart& start;
};

/// What a command takes beyond the rules that are the same for all.
struct Selection {
    std::function<Fate(const FoundFile& file)> fateOf{}; ///< none takes all
    std::filesystem::path outputFolder{};                ///< not entered; empty for none
    bool isStandardInputTaken = false; ///< whether "-" is that, and no file of this name
};

/// Lists the files, sorted within each folder. A file is listed once, however many ways lead to it.
///
/// Of a folder everything is taken that its content or its name says is of a known kind, or of the
/// one that `inputs` asks for, whether it can be read or not. The report of a pair goes with its
/// slice file, and is a problem of its own without one. Folders that can't be read are problems,
/// and those that are not entered are ignored. Hidden files are passed over. Whether a file that
/// was named is there is not looked at.
///
/// Throws WrongUse where `filesFrom` can't be read, or standard input is to be two things.
Listing listFiles(const Inputs& inputs, const Selection& selection);

/// Says on standard error that folders were named, and nothing for the command is in them.
void tellIfNothingFound(const Listing& listing);

} // namespace korlit::host
