#include "host/convert/candidates.h"

#include "host/files/extensions.h"
#include "host/files/recognise.h"
#include "host/system/file_identity.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

std::vector<std::string> readPaths(std::istream& in, bool isZeroSeparated) {
    std::vector<std::string> paths;
    for (std::string path; std::getline(in, path, isZeroSeparated ? '\0' : '\n');) {
        if (!isZeroSeparated && path.ends_with('\r')) {
            path.pop_back();
        }
        if (!path.empty()) {
            paths.push_back(path);
        }
    }
    return paths;
}

std::vector<std::string> allPaths(const WorkOptions& options) {
    std::vector<std::string> paths = options.paths;
    std::vector<std::string> further;
    if (options.filesFrom == "-") {
        further = readPaths(std::cin, options.isZeroSeparated);
    } else if (!options.filesFrom.empty()) {
        std::ifstream in{options.filesFrom};
        if (!in || fs::is_directory(options.filesFrom)) {
            throw std::runtime_error{"Can't read " + options.filesFrom};
        }
        further = readPaths(in, options.isZeroSeparated);
    }
    paths.insert(paths.end(), further.begin(), further.end());
    return paths;
}

class Collector {
  public:
    explicit Collector(const WorkOptions& workOptions) : options{workOptions} {}

    void add(const fs::path& path) {
        std::error_code error;
        const fs::file_status status = fs::status(path, error);
        if (fs::is_directory(status)) {
            addFolder(path, {});
        } else if (!fs::exists(status)) {
            addProblem(path, error && status.type() == fs::file_type::none
                                 ? "Can't read " + path.string() + ": " + error.message()
                                 : "There is no file " + path.string());
        } else {
            addNamed(path);
        }
    }

    Candidates candidates;

  private:
    /// Whether a conversion of that kind ends where the user wants it to.
    bool isAsked(FileKind kind) const {
        const bool becomesAndi = !formatOf(kind).isAndi;
        return options.to == Goal::Unsaid || becomesAndi == (options.to == Goal::Andi);
    }

    void addNamed(const fs::path& file) {
        const Format* companion = formatOfCompanion(file);
        if (companion != nullptr && !isKnown(options.from) && !isKnown(recognise(file.string()))) {
            addProblem(file, std::string{"Of a "} + companion->title + " the " +
                                 companion->usualExtension + " file is to be named");
            return;
        }
        const FileKind kind = isKnown(options.from) ? options.from : kindToConvert(file.string());
        addFile({.file = file,
                 .folderBelow = {},
                 .kind = kind,
                 .isFound = false,
                 .problem = isAsked(kind) ? "" : goalProblem(kind)});
    }

    std::string goalProblem(FileKind kind) const {
        return std::string{"Not converted: it is of the kind "} + formatOf(kind).name +
               ", and --to asks for what becomes " +
               (options.to == Goal::Andi ? "an ANDI file" : "a pair");
    }

    void addProblem(const fs::path& path, const std::string& problem) {
        addFile({.file = path, .folderBelow = {}, .kind = {}, .isFound = true, .problem = problem});
    }

    /// Adds a file unless it is there already: under this name, or by another way to its folder.
    void addFile(const Candidate& candidate) {
        const fs::path name = candidate.file.filename();
        const fs::path folder = candidate.file.parent_path();
        auto identity = folders.find(folder);
        if (identity == folders.end()) {
            identity = folders.emplace(folder, identityOf(folder.empty() ? "." : folder)).first;
        }
        if (!identity->second || known.emplace(*identity->second, name.string()).second) {
            candidates.files.push_back(candidate);
        }
    }

    void addFolder(const fs::path& folder, const fs::path& below) {
        std::error_code error;
        const bool isBelow = !below.empty();
        if (isBelow && !options.outputFolder.empty() &&
            fs::equivalent(folder, options.outputFolder, error)) {
            return; // what an earlier batch has written there is not its own input
        }
        error.clear();
        std::set<fs::path> entries;
        for (auto entry = fs::directory_iterator{folder, error}; !error && entry != fs::end(entry);
             entry.increment(error)) {
            if (!entry->path().filename().string().starts_with('.')) {
                entries.insert(entry->path());
            }
        }
        if (error) {
            addProblem(folder, "Can't read the folder " + folder.string() + ": " + error.message());
        }
        for (const fs::path& entry : entries) {
            if (!fs::is_directory(entry, error)) {
                addFound(entry, below);
            } else if (options.isRecursive && !fs::is_symlink(entry, error)) {
                addFolder(entry, below / entry.filename());
            }
        }
    }

    void addFound(const fs::path& file, const fs::path& below) {
        const FileKind kind = kindFound(file.string());
        const Format* companion = isKnown(kind) ? nullptr : formatOfCompanion(file);
        if (companion != nullptr) {
            addCompanion(file, below, *companion);
        } else if (!isKnown(kind)) {
            candidates.ignored.push_back(file.string() + ": of no known kind");
        } else if (isKnown(options.from) && kind != options.from) {
            candidates.ignored.push_back(file.string() + ": of the kind " + formatOf(kind).name);
        } else if (isAsked(kind)) {
            addFile(
                {.file = file, .folderBelow = below, .kind = kind, .isFound = true, .problem = {}});
        } else if (isGoalItself(kind)) {
            ++candidates.reachedCount;
        } else {
            candidates.ignored.push_back(file.string() + ": of the kind " + formatOf(kind).name);
        }
    }

    /// A run becomes no pair and is none.
    bool isGoalItself(FileKind kind) const {
        return options.to == Goal::Andi ? formatOf(kind).isAndi : formatOf(kind).isFromAndi;
    }

    /// The format whose sources have a second file of such a name; null if there is none.
    static const Format* formatOfCompanion(const fs::path& file) {
        const auto found = std::ranges::find_if(knownFormats(), [&](const Format& each) {
            return each.companionExtension != nullptr &&
                   hasExtension(file, each.companionExtension);
        });
        return found == knownFormats().end() ? nullptr : &*found;
    }

    /// It belongs to the file of its source that is converted. One without is half a source.
    void addCompanion(const fs::path& file, const fs::path& below, const Format& format) {
        std::error_code ignored;
        const bool isWanted =
            isAsked(format.kind) && (!isKnown(options.from) || options.from == format.kind);
        if (isWanted && !fs::exists(besideWith(file, format.usualExtension), ignored)) {
            addFile({.file = file,
                     .folderBelow = below,
                     .kind = format.kind,
                     .isFound = true,
                     .problem = std::string{"Half a "} + format.title + ": there is no " +
                                format.usualExtension + " file beside it"});
        }
    }

    const WorkOptions& options;
    std::map<fs::path, std::optional<FileIdentity>> folders;
    std::set<std::pair<FileIdentity, std::string>> known;
};

} // namespace

Candidates candidatesOf(const WorkOptions& options) {
    Collector collector{options};
    for (const std::string& path : allPaths(options)) {
        collector.add(path);
    }
    return std::move(collector.candidates);
}

} // namespace korlit::host
