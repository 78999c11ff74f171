#include "host/convert/work_list.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <map>
#include <set>
#include <stdexcept>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

/// A file on its way into the list.
struct Candidate {
    fs::path file;
    fs::path folderBelow; ///< where it lies below the folder that was named
    FileKind kind = FileKind::Unknown;
    bool isFound = false; ///< in a folder, not named itself
    std::string problem;
};

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
                options.from == FileKind::Unknown ? kindOfNamed(path) : options.from;
            addFile(
                {.file = path, .folderBelow = {}, .kind = kind, .isFound = false, .problem = {}});
        }
    }

    std::vector<Candidate> candidates;
    std::vector<std::string> leftOut;

  private:
    /// A named file that isn't recognised goes to the conversion that has the words for it.
    static FileKind kindOfNamed(const fs::path& file) {
        const FileKind kind = recognise(file.string());
        const bool isSlice = file.extension() == ".sli" || file.extension() == ".SLI";
        const FileKind otherwise = isSlice ? FileKind::Merivolta : FileKind::Andi;
        return kind == FileKind::Unknown ? otherwise : kind;
    }

    void addProblem(const fs::path& path, const std::string& problem) {
        addFile(
            {.file = path, .folderBelow = {}, .kind = {}, .isFound = false, .problem = problem});
    }

    /// Adds a file unless it is there already.
    void addFile(const Candidate& candidate) {
        if (known.insert(fs::absolute(candidate.file).lexically_normal()).second) {
            candidates.push_back(candidate);
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
        if (kind == FileKind::Unknown) {
            leftOut.push_back(file.string() + ": not recognised");
        } else if (options.from != FileKind::Unknown && kind != options.from) {
            leftOut.push_back(file.string() + ": " + kindName(kind));
        } else {
            addFile(
                {.file = file, .folderBelow = below, .kind = kind, .isFound = true, .problem = {}});
        }
    }

    const WorkOptions& options;
    std::set<fs::path> known;
};

fs::path fullPath(const fs::path& path) {
    return fs::absolute(path).lexically_normal();
}

Plan planOf(const Candidate& candidate, const WorkOptions& options) {
    const fs::path folder = options.outputFolder.empty()
                                ? candidate.file.parent_path()
                                : options.outputFolder / candidate.folderBelow;
    Plan plan =
        planFor(candidate.file.string(), candidate.kind, folder, candidate.file.stem().string());
    if (!options.output.empty()) {
        plan = planFor(candidate.file.string(), candidate.kind, options.output.parent_path(),
                       options.output.stem().string());
        if (plan.kind != FileKind::Andi && plan.targets.size() == 1) {
            plan.targets.front().path = options.output;
        } else if (plan.kind != FileKind::Andi) {
            throw std::runtime_error{"--output names one file, but " + plan.source + " has " +
                                     std::to_string(plan.targets.size()) + " channels"};
        }
    }
    return plan;
}

/// Which candidate makes which file.
using Makers = std::map<fs::path, std::size_t>;

bool isNewer(const Candidate& a, const Candidate& b) {
    std::error_code ignored;
    const auto timeOfA = fs::last_write_time(a.file, ignored);
    const auto timeOfB = fs::last_write_time(b.file, ignored);
    return timeOfA > timeOfB || (timeOfA == timeOfB && a.kind != FileKind::Andi);
}

class Planner {
  public:
    Planner(std::vector<Candidate> found, const WorkOptions& options)
        : candidates{std::move(found)} {
        for (const Candidate& each : candidates) {
            plans.push_back(each.problem.empty() ? planOf(each, options)
                                                 : Plan{.source = each.file.string()});
            for (const Target& target : plans.back().targets) {
                makers.try_emplace(fullPath(target.path), plans.size() - 1);
            }
        }
    }

    WorkList list(std::vector<std::string> leftOut) {
        WorkList work{.jobs = {}, .leftOut = std::move(leftOut)};
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            const auto maker = makerOf(candidates[i].file);
            if (maker != nobody && maker != i && candidates[i].isFound && isMadeBy(i, maker)) {
                work.leftOut.push_back(plans[i].source + ": made of " + plans[maker].source);
                continue;
            }
            work.jobs.push_back({.plan = plans[i], .problem = problemOf(i)});
        }
        return work;
    }

  private:
    static constexpr std::size_t nobody = static_cast<std::size_t>(-1);

    std::size_t makerOf(const fs::path& file) const {
        const auto found = makers.find(fullPath(file));
        return found == makers.end() ? nobody : found->second;
    }

    /// Whether a found file is what another makes, and not rather the other way round.
    bool isMadeBy(std::size_t file, std::size_t maker) const {
        return makerOf(candidates[maker].file) != file || !candidates[maker].isFound ||
               isNewer(candidates[file], candidates[maker]);
    }

    std::string problemOf(std::size_t i) const {
        if (!candidates[i].problem.empty()) {
            return candidates[i].problem;
        }
        for (const Target& target : plans[i].targets) {
            const std::size_t maker = makerOf(target.path);
            if (maker != i) {
                return "Its file " + target.path.string() + " is that of " + plans[maker].source;
            }
            if (isSourceOf(fullPath(target.path), plans[i])) {
                return "It would be its own output " + target.path.string();
            }
        }
        return {};
    }

    static bool isSourceOf(const fs::path& target, const Plan& plan) {
        const bool hasReport = plan.kind == FileKind::Merivolta;
        return target == fullPath(plan.source) ||
               (hasReport && target == fullPath(reportOf(plan.source)));
    }

    std::vector<Candidate> candidates;
    std::vector<Plan> plans;
    Makers makers;
};

/// The FNV-1a hash of a path, by which the parts of the work are chosen: the same everywhere.
std::uint64_t hashOf(const std::string& path) {
    constexpr std::uint64_t start = 14695981039346656037U;
    constexpr std::uint64_t prime = 1099511628211U;
    std::uint64_t hash = start;
    for (const char character : path) {
        hash = (hash ^ static_cast<unsigned char>(character)) * prime;
    }
    return hash;
}

} // namespace

WorkList listWork(const WorkOptions& options) {
    Collector collector{options};
    for (const std::string& path : allPaths(options)) {
        collector.add(path);
    }
    if (!options.output.empty() && collector.candidates.size() > 1) {
        throw std::runtime_error{"--output names one file, but there are " +
                                 std::to_string(collector.candidates.size()) + " to convert"};
    }
    WorkList work =
        Planner{std::move(collector.candidates), options}.list(std::move(collector.leftOut));
    std::erase_if(work.jobs, [&](const Job& job) {
        return hashOf(job.plan.source) % options.shardCount != options.shard - 1;
    });
    return work;
}

} // namespace korlit::host
