// How the files of one conversion come to their places: all of them or none, whenever the process
// is killed.
//
// They lie in a work folder when all are complete. The folder's note, itself complete or not there
// at all, is a journal: it says what is to be moved where; from then on they count as converted.
// Whoever finds the journal of a process that is gone makes the moves that are missing. Only where
// that can't be done are those undone that were made, from what was kept of the old files.
#pragma once

#include "host/system/work_folder.h"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace korlit::host {

struct Move {
    std::string stagedName;     ///< in the work folder
    std::filesystem::path path; ///< where it belongs, in the folder that holds the work folder
};

struct Delivery {
    std::vector<Move> moves;
    bool isReplacing = false; ///< else a file that is there already fails the delivery
    bool isSynced = false;    ///< has the disk hold the files before they move, and the moves then
    std::string record;       ///< for whoever settles it
};

/// Of an old file that couldn't be given its place back: where it lies. The work folder must stay.
struct OldFileKept : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Moves all files. Throws a filesystem_error where one can't be, and then all are as they were, or
/// OldFileKept.
void deliver(const Delivery& delivery, WorkFolder& work);

/// Ends what a process that is gone had begun in its work folder. Answers the record of a delivery
/// that is now complete, whether it was so before or not; nothing where there is none. Throws
/// OldFileKept.
std::optional<std::string> settleDelivery(WorkFolder& work);

} // namespace korlit::host
