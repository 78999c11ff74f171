#include "host/convert/candidates.h"

#include "host/files/recognise.h"

#include <fstream>
#include <iostream>
#include <set>
#include <stdexcept>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

std::vector<std::string> readLines(std::istream& in) {
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (!line.empty()) {
            lines.push_back(line);
        }
    }
    return lines;
}

std::vector<std::string> allPaths(const WorkOptions& options) {
    std::vector<std::string> paths = options.paths;
    std::vector<std::string> further;
    if (options.filesFrom == "-") {
        further = readLines(std::cin);
    } else if (!options.filesFrom.empty()) {
        std::ifstream in{options.filesFrom};
        if (!in) {
            throw std::runtime_error{"Can't read " + options.filesFrom};
        }
        further = readLines(in);
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
            const FileKind kind =
                isKnown(options.from) ? options.from : kindToConvert(path.string());
            addFile(
                {.file = path, .folderBelow = {}, .kind = kind, .isFound = false, .problem = {}});
        }
    }

    Candidates found;

  private:
    void addProblem(const fs::path& path, const std::string& problem) {
        addFile(
            {.file = path, .folderBelow = {}, .kind = {}, .isFound = false, .problem = problem});
    }

    /// Adds a file unless it is there already.
    void addFile(const Candidate& candidate) {
        if (known.insert(fs::absolute(candidate.file).lexically_normal()).second) {
            found.files.push_back(candidate);
        }
    }

    void addFolder(const fs::path& folder, const fs::path& below) {
        std::error_code error;
        if (!options.outputFolder.empty() && fs::equivalent(folder, options.outputFolder, error)) {
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
        const FileKind kind = recognise(file.string());
        if (!isKnown(kind)) {
            found.leftOut.push_back(file.string() + ": not recognised");
        } else if (isKnown(options.from) && kind != options.from) {
            found.leftOut.push_back(file.string() + ": " + formatOf(kind).name);
        } else {
            addFile(
                {.file = file, .folderBelow = below, .kind = kind, .isFound = true, .problem = {}});
        }
    }

    const WorkOptions& options;
    std::set<fs::path> known;
};

} // namespace

Candidates candidatesOf(const WorkOptions& options) {
    Collector collector{options};
    for (const std::string& path : allPaths(options)) {
        collector.add(path);
    }
    return std::move(collector.found);
}

} // namespace korlit::host
