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

std::optional<FileIdentity> identityAt(const fs::path& place) {
    const auto occupant = occupantOf(place);
    return occupant ? std::optional{occupant->identity} : std::nullopt;
}

/// A move of the journal: with what tells the moved file from any other, and what stood at its
/// place when the journal was written. Whatever else is found there later is somebody's, and stays.
///
/// The file and the one that it replaces change places: what is replaced lies in the work folder
/// under the name of the other until all moves are made.
struct JournalMove {
    fs::path staged;
    fs::path place;
    fs::path aside;
    FileIdentity identity;
    std::optional<Occupant> replaced;

    bool isStaged() const { return isAt(staged); }
    bool isInPlace() const { return isAt(place); }
    /// Whether another file lies under its name in the work folder.
    bool holdsOther() const { return occupantOf(staged) && !isStaged(); }

  private:
    bool isAt(const fs::path& path) const { return identityAt(path) == identity; }
};

struct Journal {
    std::vector<JournalMove> moves;
    std::string record;
};

fs::path asideFile(const fs::path& workFolder, std::size_t move) {
    return workFolder / ("old" + std::to_string(move));
}

[[noreturn]] void fail(const fs::path& target, const std::error_code& error) {
    throw fs::filesystem_error{"Can't write", target, error};
}

std::optional<Occupant> replacedAt(const fs::path& place) {
    std::error_code ignored;
    if (fs::is_directory(fs::symlink_status(place, ignored))) {
        fail(place, std::make_error_code(std::errc::is_a_directory));
    }
    return occupantOf(place);
}

Journal journalOf(const Delivery& delivery, const fs::path& workFolder) {
    Journal journal{.moves = {}, .record = delivery.record};
    for (const Move& move : delivery.moves) {
        const auto staged = occupantOf(workFolder / move.stagedName);
        if (!staged) {
            fail(move.path, std::make_error_code(std::errc::no_such_file_or_directory));
        }
        journal.moves.push_back(
            {.staged = workFolder / move.stagedName,
             .place = move.path,
             .aside = asideFile(workFolder, journal.moves.size()),
             .identity = staged->identity,
             .replaced = delivery.isReplacing ? replacedAt(move.path) : std::nullopt});
    }
    return journal;
}

std::error_code write(const Journal& journal, WorkFolder& work, bool isSynced) {
    nlohmann::json moves = nlohmann::json::array();
    for (const JournalMove& move : journal.moves) {
        const auto& [old, changed] = move.replaced.value_or(Occupant{});
        moves.push_back({move.staged.filename().string(), move.place.filename().string(),
                         move.identity.device, move.identity.inode, move.replaced.has_value(),
                         old.device, old.inode, changed});
    }
    std::string bytes;
    nlohmann::json::to_cbor({journal.record, moves}, bytes);
    return work.write(bytes, isSynced);
}

std::optional<Occupant> replacedIn(const nlohmann::json& move) {
    return move.at(4).get<bool>()
               ? std::optional{Occupant{.identity = {.device = move.at(5), .inode = move.at(6)},
                                        .changed = move.at(7)}}
               : std::nullopt;
}

/// The journal names files by their last part alone: whoever reads it may stand in another folder.
std::optional<Journal> journalIn(const WorkFolder& work) {
    const std::string bytes = work.note();
    const nlohmann::json json = nlohmann::json::from_cbor(bytes, true, false);
    if (json.is_discarded()) {
        return std::nullopt;
    }
    const auto lastPart = [](const nlohmann::json& name) {
        return fs::path{name.get<std::string>()}.filename();
    };
    Journal journal{.moves = {}, .record = json.at(0)};
    for (const auto& move : json.at(1)) {
        journal.moves.push_back({.staged = work.path() / lastPart(move.at(0)),
                                 .place = work.path().parent_path() / lastPart(move.at(1)),
                                 .aside = asideFile(work.path(), journal.moves.size()),
                                 .identity = {.device = move.at(2), .inode = move.at(3)},
                                 .replaced = replacedIn(move)});
    }
    return journal;
}

/// What came out of its place must be what the journal says.
void requireReplaced(const JournalMove& move) {
    if (move.holdsOther() && occupantOf(move.staged) != move.replaced) {
        fail(move.place, std::make_error_code(std::errc::file_exists));
    }
}

/// Another process may take a place, or free one, between any two of these steps.
std::error_code putInPlace(const JournalMove& move) {
    const auto found = move.replaced ? occupantOf(move.place) : std::nullopt;
    if (!found) {
        return moveToFreePlace(move.staged, move.place);
    }
    if (found != move.replaced) {
        return std::make_error_code(std::errc::file_exists);
    }
    const auto error = exchange(move.staged, move.place, move.aside);
    return error == std::errc::no_such_file_or_directory ? moveToFreePlace(move.staged, move.place)
                                                         : error;
}

void makeMove(const JournalMove& move) {
    if (const auto error = putInPlace(move)) {
        fail(move.place, error);
    }
    if (move.replaced) {
        requireReplaced(move);
    }
}

/// Makes those that a process that is gone hasn't made.
void makeMovesLeft(const Journal& journal) {
    for (const JournalMove& move : journal.moves) {
        if (const auto error = tidyMove(move.staged, move.place, move.aside)) {
            fail(move.place, error);
        }
        if (move.isStaged()) {
            makeMove(move);
        }
        requireReplaced(move);
    }
}

/// What is to come out of a place again: the file that was moved there, or the one that came out
/// for it and went back too early.
std::optional<FileIdentity> toTakeOut(const JournalMove& move) {
    if (!move.holdsOther()) {
        return std::nullopt;
    }
    if (move.isInPlace()) {
        return move.identity;
    }
    return move.replaced && occupantOf(move.place) == move.replaced
               ? std::optional{move.replaced->identity}
               : std::nullopt;
}

/// Takes the file out of its place, and gives back what came out of there. Where another has come
/// there meanwhile it is that which comes out, and goes back in the next turn, whoever makes that.
std::error_code takeBack(const JournalMove& move) {
    constexpr int mostTurns = 8;
    std::error_code error = tidyMove(move.staged, move.place, move.aside);
    auto known = toTakeOut(move);
    for (int turn = 0; turn < mostTurns && !error && known; ++turn) {
        const auto given = identityAt(move.staged);
        error = exchange(move.staged, move.place, move.aside);
        known = identityAt(move.staged) == known ? std::nullopt : given;
    }
    if (move.isInPlace() && !occupantOf(move.staged)) {
        error = moveToFreePlace(move.place, move.staged);
    }
    if (move.holdsOther() && !occupantOf(move.place)) {
        error = moveToFreePlace(move.staged, move.place);
    }
    return error;
}

/// Where an old file lies that takeBack couldn't give back.
std::string stillKeptWords(const JournalMove& move, const std::error_code& error) {
    const fs::path& kept = occupantOf(move.aside) ? move.aside : move.staged;
    return "The old " + move.place.string() + " can't be put back (" + error.message() +
           "): it lies in " + kept.string() + ". ";
}

/// Gives the old files their places back, and takes away what was moved to where there was none.
/// The journal is marked, so that whoever comes next goes on with it if it doesn't come to its end
/// here.
void undoMoves(const Journal& journal, WorkFolder& work) {
    work.mark();
    std::string stillKept;
    for (const JournalMove& move : journal.moves) {
        const std::error_code error = takeBack(move);
        if (error && (occupantOf(move.aside) || move.holdsOther()) &&
            (move.isInPlace() || !occupantOf(move.place))) {
            stillKept += stillKeptWords(move, error);
        }
    }
    if (!stillKept.empty()) {
        throw OldFileKept{stillKept + "The next conversion into this folder tries again"};
    }
}

void dropOldFiles(const Journal& journal) {
    std::error_code ignored;
    for (const JournalMove& move : journal.moves) {
        if (move.replaced) {
            fs::remove(move.staged, ignored);
        }
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
        std::ranges::for_each(journal.moves, makeMove);
        if (delivery.isSynced) {
            syncToDisk(work.path().parent_path());
        }
    } catch (const std::exception&) {
        undoMoves(journal, work);
        throw;
    }
    dropOldFiles(journal);
}

std::optional<std::string> settleDelivery(WorkFolder& work) {
    try {
        const std::optional<Journal> journal = journalIn(work);
        if (!journal) {
            return std::nullopt;
        }
        if (!work.isMarked()) {
            try {
                makeMovesLeft(*journal);
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
