#include "host/convert/delivery.h"

#include "host/system/file_identity.h"
#include "host/system/moves.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <utility>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

/// What stood at a place when the journal was written: the file and when it was last changed, or
/// nothing. Whatever else is found there later is somebody's, and stays.
using FoundState = std::optional<std::pair<FileIdentity, std::int64_t>>;

FoundState stateOf(const fs::path& file) {
    const auto identity = identityOf(file);
    std::error_code error;
    const auto time = fs::last_write_time(file, error);
    return identity && !error
               ? FoundState{{*identity, static_cast<std::int64_t>(time.time_since_epoch().count())}}
               : std::nullopt;
}

/// A move of the journal: with what tells the moved file from any other at its place.
struct JournalMove {
    Move move;
    FileIdentity identity;
    FoundState replaced;
};

struct Journal {
    std::vector<JournalMove> moves;
    bool isReplacing = false;
    std::string record;
};

fs::path keptFile(const fs::path& workFolder, std::size_t move) {
    return workFolder / ("old" + std::to_string(move));
}

bool isThere(const fs::path& file) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(file, ignored));
}

[[noreturn]] void fail(const fs::path& target, const std::error_code& error) {
    throw fs::filesystem_error{"Can't write", target, error};
}

Journal journalOf(const Delivery& delivery, const fs::path& workFolder) {
    Journal journal{.moves = {}, .isReplacing = delivery.isReplacing, .record = delivery.record};
    for (const Move& move : delivery.moves) {
        const auto identity = identityOf(workFolder / move.stagedName);
        if (!identity) {
            fail(move.path, std::make_error_code(std::errc::no_such_file_or_directory));
        }
        journal.moves.push_back(
            {.move = move,
             .identity = *identity,
             .replaced = delivery.isReplacing ? stateOf(move.path) : std::nullopt});
    }
    return journal;
}

std::error_code write(const Journal& journal, WorkFolder& work, bool isSynced) {
    nlohmann::json moves = nlohmann::json::array();
    for (const auto& [move, identity, replaced] : journal.moves) {
        const auto& [old, time] = replaced.value_or(std::pair{FileIdentity{}, std::int64_t{0}});
        moves.push_back({move.stagedName, move.path.filename().string(), identity.device,
                         identity.inode, replaced.has_value(), old.device, old.inode, time});
    }
    std::string bytes;
    nlohmann::json::to_cbor({journal.isReplacing, journal.record, moves}, bytes);
    return work.write(bytes, isSynced);
}

FoundState replacedIn(const nlohmann::json& move) {
    return move.at(4).get<bool>()
               ? FoundState{{{.device = move.at(5), .inode = move.at(6)}, move.at(7)}}
               : std::nullopt;
}

/// The journal names files by their last part alone: whoever reads it may stand in another folder.
std::optional<Journal> journalIn(const WorkFolder& work) {
    const std::string bytes = work.note();
    const nlohmann::json json = nlohmann::json::from_cbor(bytes, true, false);
    if (json.is_discarded()) {
        return std::nullopt;
    }
    Journal journal{.moves = {}, .isReplacing = json.at(0), .record = json.at(1)};
    for (const auto& move : json.at(2)) {
        const fs::path target{move.at(1).get<std::string>()};
        journal.moves.push_back({.move = {.stagedName = move.at(0),
                                          .path = work.path().parent_path() / target.filename()},
                                 .identity = {.device = move.at(2), .inode = move.at(3)},
                                 .replaced = replacedIn(move)});
    }
    return journal;
}

/// Keeps what is to be replaced, under a second name where the file system has such.
void keepOld(const fs::path& target, const fs::path& kept) {
    if (!isThere(target)) {
        return;
    }
    if (fs::is_directory(fs::symlink_status(target))) {
        fail(target, std::make_error_code(std::errc::is_a_directory));
    }
    std::error_code error;
    fs::create_hard_link(target, kept, error);
    if (error) {
        fs::rename(target, kept, error);
    }
    if (error) {
        fail(target, error);
    }
}

void moveOver(const JournalMove& each, const fs::path& staged, const fs::path& kept) {
    const fs::path& target = each.move.path;
    if (isThere(target) && stateOf(target) != each.replaced) {
        fail(target, std::make_error_code(std::errc::file_exists));
    }
    if (!isThere(kept)) {
        keepOld(target, kept);
    }
    fs::rename(staged, target);
}

void makeMove(const Journal& journal, std::size_t number, const fs::path& workFolder) {
    const JournalMove& each = journal.moves[number];
    const fs::path staged = workFolder / each.move.stagedName;
    if (journal.isReplacing) {
        moveOver(each, staged, keptFile(workFolder, number));
    } else if (const auto error = moveToFreePlace(staged, each.move.path)) {
        fail(each.move.path, error);
    }
}

void makeMoves(const Journal& journal, const fs::path& workFolder) {
    for (std::size_t i = 0; i < journal.moves.size(); ++i) {
        makeMove(journal, i, workFolder);
    }
}

/// Makes those that a process that is gone hasn't made.
void makeMovesLeft(const Journal& journal, const fs::path& workFolder) {
    for (std::size_t i = 0; i < journal.moves.size(); ++i) {
        const auto& [move, identity, replaced] = journal.moves[i];
        if (identityOf(workFolder / move.stagedName) == identity) {
            makeMove(journal, i, workFolder);
        }
    }
}

/// Gives an old file its place back; answers where it lies if that fails. Nobody else has it.
std::string giveBack(const fs::path& kept, const fs::path& target) {
    std::error_code error;
    fs::rename(kept, target, error);
    return error ? "The old " + target.string() + " can't be put back (" + error.message() +
                       "): it lies in " + kept.string() + ". "
                 : "";
}

/// Gives the old files their places back, and takes away what was moved to where there was none.
/// The journal is marked, so that whoever comes next goes on with it if it doesn't come to its end
/// here.
void undoMoves(const Journal& journal, WorkFolder& work) {
    work.mark();
    std::string stillKept;
    for (std::size_t i = 0; i < journal.moves.size(); ++i) {
        const auto& [move, identity, replaced] = journal.moves[i];
        const fs::path kept = keptFile(work.path(), i);
        const bool isOurs = identityOf(move.path) == identity;
        if (isThere(kept) && (isOurs || !isThere(move.path))) {
            stillKept += giveBack(kept, move.path);
        } else if (isOurs) {
            std::error_code ignored;
            fs::remove(move.path, ignored);
        }
    }
    if (!stillKept.empty()) {
        throw OldFileKept{stillKept + "The next conversion into this folder tries again"};
    }
}

void dropOldFiles(const Journal& journal, const fs::path& workFolder) {
    std::error_code ignored;
    for (std::size_t i = 0; journal.isReplacing && i < journal.moves.size(); ++i) {
        fs::remove(keptFile(workFolder, i), ignored);
    }
}

} // namespace

void deliver(const Delivery& delivery, WorkFolder& work) {
    const Journal journal = journalOf(delivery, work.path());
    if (delivery.isSynced) {
        for (const Move& move : delivery.moves) {
            syncToDisk(work.path() / move.stagedName);
        }
    }
    if (const auto error = write(journal, work, delivery.isSynced)) {
        fail(delivery.moves.front().path, error);
    }
    try {
        makeMoves(journal, work.path());
        if (delivery.isSynced) {
            syncToDisk(work.path().parent_path());
        }
    } catch (const std::exception&) {
        undoMoves(journal, work);
        throw;
    }
    dropOldFiles(journal, work.path());
}

std::optional<std::string> settleDelivery(WorkFolder& work) {
    try {
        const std::optional<Journal> journal = journalIn(work);
        if (!journal) {
            return std::nullopt;
        }
        if (!work.isMarked()) {
            try {
                makeMovesLeft(*journal, work.path());
                return journal->record;
            } catch (const fs::filesystem_error&) {
            }
        }
        undoMoves(*journal, work);
    } catch (const nlohmann::json::exception&) {
        // Not one of ours: what it says is not followed.
    }
    return std::nullopt;
}

} // namespace korlit::host
