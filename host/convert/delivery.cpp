#include "host/convert/delivery.h"

#include "host/system/file_identity.h"
#include "host/system/moves.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <fstream>
#include <iterator>
#include <utility>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

constexpr const char* undoName = "undo";

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

Journal journalOf(const Delivery& delivery, const fs::path& workFolder) {
    Journal journal{.moves = {}, .isReplacing = delivery.isReplacing, .record = delivery.record};
    for (const Move& move : delivery.moves) {
        const auto identity = identityOf(workFolder / move.stagedName);
        if (!identity) {
            throw fs::filesystem_error{"Can't write", move.path,
                                       std::make_error_code(std::errc::no_such_file_or_directory)};
        }
        journal.moves.push_back(
            {.move = move, .identity = *identity, .replaced = stateOf(move.path)});
    }
    return journal;
}

void writeJournal(const Journal& journal, const fs::path& workFolder, bool isSynced) {
    nlohmann::json moves = nlohmann::json::array();
    for (const auto& [move, identity, replaced] : journal.moves) {
        const auto& [old, time] = replaced.value_or(std::pair{FileIdentity{}, std::int64_t{0}});
        moves.push_back({move.stagedName, move.path.filename().string(), identity.device,
                         identity.inode, replaced.has_value(), old.device, old.inode, time});
    }
    const auto bytes = nlohmann::json::to_cbor({journal.isReplacing, journal.record, moves});
    const fs::path draft = workFolder / (std::string{journalName} + ".new");
    std::ofstream out{draft, std::ios::binary};
    out.write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
    out.close();
    if (!out) {
        throw fs::filesystem_error{"Can't write", draft,
                                   std::make_error_code(std::errc::no_space_on_device)};
    }
    if (isSynced) {
        syncToDisk(draft);
    }
    fs::rename(draft, workFolder / journalName);
}

FoundState replacedIn(const nlohmann::json& move) {
    return move.at(4).get<bool>()
               ? FoundState{{{.device = move.at(5), .inode = move.at(6)}, move.at(7)}}
               : std::nullopt;
}

/// The journal names files by their last part alone: whoever reads it may stand in another folder.
std::optional<Journal> readJournal(const fs::path& workFolder, const char* name) {
    std::ifstream in{workFolder / name, std::ios::binary};
    if (!in) {
        return std::nullopt;
    }
    const std::string bytes{std::istreambuf_iterator<char>{in}, {}};
    const nlohmann::json json = nlohmann::json::from_cbor(bytes);
    Journal journal{.moves = {}, .isReplacing = json.at(0), .record = json.at(1)};
    for (const auto& move : json.at(2)) {
        const fs::path target{move.at(1).get<std::string>()};
        journal.moves.push_back({.move = {.stagedName = move.at(0),
                                          .path = workFolder.parent_path() / target.filename()},
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
        throw fs::filesystem_error{"Can't write", target,
                                   std::make_error_code(std::errc::is_a_directory)};
    }
    std::error_code error;
    fs::create_hard_link(target, kept, error);
    if (error) {
        fs::rename(target, kept);
    }
}

/// Makes the moves that haven't been made.
void makeMoves(const Journal& journal, const fs::path& workFolder) {
    for (std::size_t i = 0; i < journal.moves.size(); ++i) {
        const Move& move = journal.moves[i].move;
        const fs::path staged = workFolder / move.stagedName;
        if (!isThere(staged)) {
            continue;
        }
        if (journal.isReplacing) {
            if (isThere(move.path) && stateOf(move.path) != journal.moves[i].replaced) {
                throw fs::filesystem_error{"Can't write", move.path,
                                           std::make_error_code(std::errc::file_exists)};
            }
            if (!isThere(keptFile(workFolder, i))) {
                keepOld(move.path, keptFile(workFolder, i));
            }
            fs::rename(staged, move.path);
        } else if (const auto error = moveToFreePlace(staged, move.path)) {
            throw fs::filesystem_error{"Can't write", move.path, error};
        }
    }
}

/// Gives the old files their places back, and takes away what was moved to where there was none.
/// The journal's other name says that this has begun, if it doesn't come to its end here.
void undoMoves(const Journal& journal, const fs::path& workFolder) {
    std::error_code ignored;
    fs::rename(workFolder / journalName, workFolder / undoName, ignored);
    for (std::size_t i = 0; i < journal.moves.size(); ++i) {
        const auto& [move, identity, replaced] = journal.moves[i];
        const bool isOurs = identityOf(move.path) == identity;
        if (isThere(keptFile(workFolder, i)) && (isOurs || !isThere(move.path))) {
            fs::rename(keptFile(workFolder, i), move.path, ignored);
        } else if (isOurs) {
            fs::remove(move.path, ignored);
        }
    }
    fs::remove(workFolder / undoName, ignored);
}

void dropOldFiles(const Journal& journal, const fs::path& workFolder) {
    std::error_code ignored;
    for (std::size_t i = 0; i < journal.moves.size(); ++i) {
        fs::remove(keptFile(workFolder, i), ignored);
    }
}

} // namespace

void deliver(const Delivery& delivery, const fs::path& workFolder) {
    if (delivery.isSynced) {
        for (const Move& move : delivery.moves) {
            syncToDisk(workFolder / move.stagedName);
        }
    }
    const Journal journal = journalOf(delivery, workFolder);
    writeJournal(journal, workFolder, delivery.isSynced);
    try {
        makeMoves(journal, workFolder);
    } catch (const std::exception&) {
        undoMoves(journal, workFolder);
        throw;
    }
    if (delivery.isSynced) {
        syncToDisk(workFolder.parent_path());
    }
    dropOldFiles(journal, workFolder);
}

std::optional<std::string> settleDelivery(const fs::path& workFolder) {
    try {
        if (const auto undone = readJournal(workFolder, undoName)) {
            undoMoves(*undone, workFolder);
            return std::nullopt;
        }
        const std::optional<Journal> journal = readJournal(workFolder, journalName);
        if (!journal) {
            return std::nullopt;
        }
        try {
            makeMoves(*journal, workFolder);
            return journal->record;
        } catch (const fs::filesystem_error&) {
            undoMoves(*journal, workFolder);
        }
    } catch (const nlohmann::json::exception&) {
        // Not one of ours: what it says is not followed.
    }
    return std::nullopt;
}

} // namespace korlit::host
