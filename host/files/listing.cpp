#include "host/files/listing.h"

#include "host/files/extensions.h"
#include "host/files/path_list.h"
#include "host/files/recognise.h"
#include "host/files/standard_input.h"
#include "host/system/access.h"
#include "host/system/file_identity.h"
#include "host/text/numbers.h"
#include "host/text/wrong_use.h"

#include <algorithm>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

struct Entry {
    std::string name;
    bool isFolder = false;
    bool isLink = false;
    std::string problem; ///< why it isn't known what it is
};

Entry entryOf(const fs::directory_entry& found) {
    std::error_code error;
    Entry entry{.name = found.path().filename().string(), .problem = {}};
    entry.isLink = found.is_symlink(error);
    entry.isFolder = found.is_directory(error);
    // A link that leads nowhere is a file that can't be opened.
    entry.problem = error && !entry.isLink ? error.message() : "";
    return entry;
}

/// All but the hidden ones, sorted.
std::vector<Entry> entriesOf(const fs::path& folder, std::error_code& error) {
    std::vector<Entry> entries;
    for (auto each = fs::directory_iterator{folder, error}; !error && each != fs::end(each);
         each.increment(error)) {
        if (!each->path().filename().native().starts_with('.')) {
            entries.push_back(entryOf(*each));
        }
    }
    std::ranges::sort(entries, {}, &Entry::name);
    return entries;
}

/// The format whose sources have a second file of such a name; null if there is none.
const Format* formatOfCompanion(const std::string& file) {
    const auto found = std::ranges::find_if(knownFormats(), [&](const Format& each) {
        return each.companionExtension != nullptr && hasExtension(file, each.companionExtension);
    });
    return found == knownFormats().end() ? nullptr : &*found;
}

class Collector {
  public:
    Collector(const Inputs& namedInputs, const Selection& whatIsTaken)
        : inputs{namedInputs}, selection{whatIsTaken} {}

    /// What is named counts as such in folders that are listed, too.
    void noteNamed(const fs::path& path) {
        std::error_code ignored;
        if (!fs::is_directory(path, ignored)) {
            if (const auto place = placeOf(path)) {
                named.emplace(*place, false);
            }
        }
    }

    void add(const std::string& path) {
        std::error_code ignored;
        if (selection.isStandardInputTaken && path == standardInputWord) {
            addStandardInput();
        } else if (fs::is_directory(path, ignored)) {
            addFolder({.path = path, .below = {}});
        } else if (isTakenNow(path)) {
            addNamed(path);
        }
    }

    Listing listing;

  private:
    using Place = std::pair<FileIdentity, std::string>; ///< the folder, and the name in it

    std::optional<Place> placeOf(const fs::path& file) {
        const fs::path folder = file.parent_path();
        auto identity = parents.find(folder);
        if (identity == parents.end()) {
            identity = parents.emplace(folder, identityOf(folder.empty() ? "." : folder)).first;
        }
        return identity->second ? std::optional{Place{*identity->second, file.filename().string()}}
                                : std::nullopt;
    }

    /// Whether a file that was named comes for the first time, by this way or another to its
    /// folder.
    bool isTakenNow(const fs::path& file) {
        const auto place = placeOf(file);
        return !place || !std::exchange(named[*place], true);
    }

    /// There is one, however often it is named.
    void addStandardInput() {
        if (inputs.filesFrom == standardInputWord) {
            throw WrongUse{"standard input can't be the list of files and one of them"};
        }
        if (!std::exchange(isStandardInputListed, true)) {
            listing.files.push_back(
                {.name = standardInputWord, .kind = inputs.from, .isFound = false, .problem = {}});
        }
    }

    void addNamed(const std::string& file) {
        const FileStart start = startOf(file);
        const Format* companion = formatOfCompanion(file);
        std::error_code ignored;
        if (companion != nullptr && !isKnown(inputs.from) && !isKnown(recognise(file, start)) &&
            fs::exists(file, ignored)) {
            addProblem(file, std::string{"Of a "} + companion->title + " the " +
                                 companion->usualExtension + " file is to be named");
            return;
        }
        const FileKind kind = isKnown(inputs.from) ? inputs.from : kindToConvert(file, start);
        listing.files.push_back({.name = file,
                                 .folder = 0,
                                 .kind = kind,
                                 .channelCount = channelsOf(kind, start),
                                 .isFound = false,
                                 .problem = {}});
    }

    static std::uint8_t channelsOf(FileKind kind, const FileStart& start) {
        return static_cast<std::uint8_t>(formatOf(kind).channelCount(start));
    }

    void addProblem(const std::string& path, const std::string& problem, FileKind kind = {}) {
        listing.files.push_back(
            {.name = path, .folder = 0, .kind = kind, .isFound = true, .problem = problem});
    }

    void ignore(const std::string& path, const std::string& reason) {
        listing.ignored.push_back(path + ": " + reason);
    }

    /// Once, whichever way leads there first.
    void addFolder(const ListedFolder& folder) {
        const auto identity = identityOf(folder.path);
        if (identity && !listed.insert(*identity).second) {
            return;
        }
        listing.folders.push_back(folder);
        std::error_code error;
        const std::vector<Entry> entries = entriesOf(folder.path, error);
        if (error) {
            addProblem(folder.path.string(),
                       "Can't read the folder " + folder.path.string() + ": " + error.message());
        }
        const auto number = static_cast<std::uint32_t>(listing.folders.size() - 1);
        for (const Entry& entry : entries) {
            const std::string path = folder.path / entry.name;
            if (!entry.problem.empty()) {
                addProblem(path, "Can't read " + path + ": " + entry.problem);
            } else if (entry.isFolder) {
                addSubfolder(path, folder.below / entry.name, entry.isLink);
            } else if (!identity || !named.contains({*identity, entry.name})) {
                addFound(number, entry.name, path);
            }
        }
    }

    void addSubfolder(const std::string& path, const fs::path& below, bool isLink) {
        std::error_code ignored;
        if (isLink) {
            ignore(path, "a link to a folder, name it to have it taken");
        } else if (!inputs.isRecursive) {
            ignore(path, "a folder, -r takes what lies below");
        } else if (!selection.outputFolder.empty() &&
                   fs::equivalent(path, selection.outputFolder, ignored)) {
            // What an earlier batch has written there is not its own input.
            ignore(path, "the folder of the outputs");
        } else {
            addFolder({.path = path, .below = below});
        }
    }

    void addFound(std::uint32_t folder, const std::string& name, const std::string& path) {
        const FileStart start = startOf(path);
        const FileKind kind = kindFound(path, start);
        const Format* companion = isKnown(kind) ? nullptr : formatOfCompanion(path);
        if (companion != nullptr) {
            addCompanion(path, *companion);
        } else if (!isKnown(kind)) {
            const std::string reason = openProblem(path);
            ignore(path, "of no known kind" + (reason.empty() ? "" : " (" + reason + ")"));
        } else if (isKnown(inputs.from) && kind != inputs.from) {
            ignore(path, std::string{"of the kind "} + formatOf(kind).name);
        } else {
            addByFate(folder, name, {.path = path, .kind = kind, .start = start});
        }
    }

    void addByFate(std::uint32_t folder, const std::string& name, const FoundFile& file) {
        const Fate fate = selection.fateOf ? selection.fateOf(file) : Fate{};
        switch (fate.way) {
        case Fate::Way::Taken:
            listing.files.push_back({.name = name,
                                     .folder = folder,
                                     .kind = file.kind,
                                     .channelCount = channelsOf(file.kind, file.start),
                                     .isFound = true,
                                     .problem = fate.problem});
            break;
        case Fate::Way::Passed:
            ++listing.passedCount;
            break;
        case Fate::Way::Ignored:
            ignore(file.path, std::string{"of the kind "} + formatOf(file.kind).name);
            break;
        }
    }

    /// It belongs to the file of its source that is taken. One without is half a source.
    void addCompanion(const std::string& path, const Format& format) {
        std::error_code ignored;
        if (fs::exists(besideWith(path, format.usualExtension), ignored)) {
            return;
        }
        if (isKnown(inputs.from) && inputs.from != format.kind) {
            ignore(path, std::string{"half a "} + format.title);
        } else {
            addProblem(path,
                       std::string{"Half a "} + format.title + ": there is no " +
                           format.usualExtension + " file beside it",
                       format.kind);
        }
    }

    const Inputs& inputs;
    const Selection& selection;
    std::map<fs::path, std::optional<FileIdentity>> parents;
    std::map<Place, bool> named; ///< with whether it is in the list
    std::set<FileIdentity> listed;
    bool isStandardInputListed = false;
};

} // namespace

Listing listFiles(const Inputs& inputs, const Selection& selection) {
    Collector collector{inputs, selection};
    const std::vector<std::string> paths = pathsOf(inputs);
    for (const std::string& path : paths) {
        collector.noteNamed(path);
    }
    for (const std::string& path : paths) {
        collector.add(path);
    }
    return std::move(collector.listing);
}

void tellIfNothingFound(const Listing& listing) {
    if (listing.files.empty() && listing.folders.size() > 1) {
        std::cerr << "korlit: nothing for this command in the folders that were named, "
                  << groupedDigits(std::ssize(listing.ignored)) << " ignored\n";
    }
}

} // namespace korlit::host
