#include "host/convert/candidates.h"

#include "host/files/first_sight.h"

#include <filesystem>
#include <string>
#include <system_error>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

/// Whether a conversion of that kind ends where the user wants it to.
bool isAsked(FileKind kind, Goal goal) {
    const bool becomesAndi = !formatOf(kind).isAndi;
    return goal == Goal::Unsaid || becomesAndi == (goal == Goal::Andi);
}

/// A run becomes no pair and is none.
bool isGoalItself(FileKind kind, Goal goal) {
    return goal == Goal::Andi ? formatOf(kind).isAndi : formatOf(kind).isFromAndi;
}

Fate fateOf(const FoundFile& file, Goal goal) {
    if (isAsked(file.kind, goal)) {
        return {};
    }
    if (!isGoalItself(file.kind, goal)) {
        return {.way = Fate::Way::Ignored};
    }
    const std::string flaw = flawAtFirstSight(file.path, file.kind, file.start);
    return flaw.empty() ? Fate{.way = Fate::Way::Passed} : Fate{.problem = flaw};
}

bool isGone(const fs::path& file) {
    std::error_code ignored;
    return fs::symlink_status(file, ignored).type() == fs::file_type::not_found;
}

/// What was wrong with a file of the goal's kind may have been of the moment: another batch was
/// just putting it in its place, or its report.
void lookAgain(Listing& listing, Goal goal) {
    std::erase_if(listing.files, [&](const ListedFile& file) {
        if (!file.isFound || file.problem.empty() || !isGoalItself(file.kind, goal)) {
            return false;
        }
        const std::string path = listing.pathOf(file);
        const bool isSound = flawAtFirstSight(path, file.kind, startOf(path)).empty();
        listing.passedCount += isSound ? 1 : 0;
        return isSound || isGone(path);
    });
}

std::string problemOfNamed(const ListedFile& file, Goal goal) {
    std::error_code error;
    const fs::file_status status = fs::status(file.name, error);
    if (!fs::exists(status)) {
        return error && status.type() == fs::file_type::none
                   ? "Can't read " + file.name + ": " + error.message()
                   : "There is no file " + file.name;
    }
    return isAsked(file.kind, goal)
               ? ""
               : std::string{"Not converted: it is of the kind "} + formatOf(file.kind).name +
                     ", and --to asks for what becomes " +
                     (goal == Goal::Andi ? "an ANDI file" : "a pair");
}

} // namespace

Listing candidatesOf(const WorkOptions& options) {
    Listing listing = listFiles(
        options.inputs, {.fateOf = [&](const FoundFile& file) { return fateOf(file, options.to); },
                         .outputFolder = options.outputFolder});
    lookAgain(listing, options.to);
    for (ListedFile& file : listing.files) {
        if (!file.isFound && file.problem.empty()) {
            file.problem = problemOfNamed(file, options.to);
        }
    }
    return listing;
}

} // namespace korlit::host
