// How the files of one conversion come to their places: all of them or none, whenever the process
// is killed.
//
// They lie in a work folder when all are complete. A journal there, itself complete or not there at
// all, says what is to be moved where; from then on they count as converted. Whoever finds the
// journal of a process that is gone makes the moves that are missing. Only where that can't be done
// are those undone that were made, from what was kept of the old files.
#pragma once

#include <filesystem>
#include <optional>
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

/// The name of the journal in a work folder. Without it a delivery hasn't begun or no longer
/// counts.
constexpr const char* journalName = "moves";

/// Moves all files. Throws a filesystem_error where one can't be, and then all are as they were.
void deliver(const Delivery& delivery, const std::filesystem::path& workFolder);

/// Ends what a process that is gone had begun in its work folder. Answers the record of a delivery
/// that is now complete, whether it was so before or not; nothing where there is none.
std::optional<std::string> settleDelivery(const std::filesystem::path& workFolder);

} // namespace korlit::host
