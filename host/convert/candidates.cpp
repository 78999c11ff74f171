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
    for (ListedFile& file : listing.files) {
        if (!file.isFound && file.problem.empty()) {
            file.problem = problemOfNamed(file, options.to);
        }
    }
    return listing;
}

} // namespace korlit::host
