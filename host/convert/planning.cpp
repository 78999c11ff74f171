#include "host/convert/planning.h"

#include "host/convert/candidates.h"
#include "host/files/extensions.h"
#include "host/system/file_identity.h"
#include "host/text/words.h"
#include "host/text/wrong_use.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <stdexcept>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

/// What folders hold goes one way, and the user says which.
void refuseBothDirections(const std::vector<Candidate>& files) {
    std::map<FileKind, std::size_t> counts;
    for (const Candidate& each : files) {
        if (each.isFound && each.problem.empty()) {
            ++counts[each.kind];
        }
    }
    std::vector<std::string> toPair;
    std::vector<std::string> toAndi;
    for (const auto& [kind, count] : counts) {
        (formatOf(kind).isAndi ? toPair : toAndi)
            .push_back(std::to_string(count) + ' ' + formatOf(kind).name);
    }
    if (!toPair.empty() && !toAndi.empty()) {
        throw WrongUse{"the folders hold files for both directions: say --to pair (" +
                       joined(toPair, ", ") + ") or --to andi (" + joined(toAndi, ", ") + ")"};
    }
}

/// The words for an --output that can't be the place of what is made.
std::string outputProblem(const Plan& plan, const fs::path& output) {
    const std::string name = output.string();
    if (plan.targets.size() > 1 && formatOf(plan.kind).hasChannels) {
        return plan.source + " has " + std::to_string(plan.targets.size()) +
               " channels and becomes as many files: say where with --output-dir";
    }
    if (name == "-") {
        return "a conversion can't go to standard output: name a file, as in --output converted" +
               plan.targets.front().path.extension().string();
    }
    std::error_code ignored;
    const fs::path last = output.filename();
    if (fs::is_directory(output, ignored) || last.empty() || last == "." || last == "..") {
        return name + " is a folder: say --output-dir " + name;
    }
    const bool isFitting = std::ranges::any_of(plan.targets, [&](const StagedFile& target) {
        return hasExtension(output, target.path.extension().string());
    });
    if (output.has_extension() && !isFitting) {
        const std::string due = plan.targets.front().path.extension().string();
        return "the output of " + plan.source + " ends in " + due + ": say --output " +
               fs::path{output}.replace_extension(due).string();
    }
    return {};
}

Plan planOf(const Candidate& candidate, const WorkOptions& options) {
    if (!candidate.problem.empty()) {
        return {.source = candidate.file.string(), .kind = candidate.kind};
    }
    const std::string source = candidate.file.string();
    if (options.output.empty()) {
        const fs::path& outputFolder = options.outputFolder;
        return planFor(source, candidate.kind,
                       outputFolder.empty() ? candidate.file.parent_path()
                                            : outputFolder / candidate.folderBelow,
                       candidate.file.stem().string());
    }
    Plan plan = planFor(source, candidate.kind, options.output.parent_path(),
                        options.output.stem().string());
    if (const std::string problem = outputProblem(plan, options.output); !problem.empty()) {
        throw WrongUse{"--output: " + problem};
    }
    if (plan.targets.size() == 1) {
        plan.targets.front().path = options.output;
        if (!options.output.has_extension()) {
            plan.targets.front().path += ".cdf";
        }
    }
    return plan;
}

/// Names files by the folder that they are in, whichever way leads there.
class Places {
  public:
    fs::path of(const fs::path& file) {
        const fs::path folder = file.parent_path();
        auto known = folders.find(folder);
        if (known == folders.end()) {
            std::error_code error;
            fs::path whole = fs::weakly_canonical(folder.empty() ? "." : folder, error);
            known = folders.emplace(folder, error ? fs::absolute(folder) : whole).first;
        }
        return known->second / file.filename();
    }

  private:
    std::map<fs::path, fs::path> folders;
};

/// Finds what would go wrong between the jobs of one batch.
class Conflicts {
  public:
    explicit Conflicts(std::vector<Job>& batch) : jobs{batch} {
        for (std::size_t i = 0; i < jobs.size(); ++i) {
            if (jobs[i].problem.empty()) {
                for (const StagedFile& file : jobs[i].plan.sources) {
                    addSource(file.path, i);
                }
            }
        }
    }

    void note() {
        for (std::size_t i = 0; i < jobs.size(); ++i) {
            for (const StagedFile& target : jobs[i].plan.targets) {
                const std::size_t maker =
                    makers.try_emplace(places.of(target.path), i).first->second;
                if (maker != i) {
                    addProblem(i, "Its file " + target.path.string() + " is that of " +
                                      jobs[maker].plan.source);
                }
                noteSource(i, target);
            }
        }
    }

  private:
    void addSource(const fs::path& file, std::size_t job) {
        if (const auto identity = identityOf(file)) {
            sources.emplace(*identity, job);
        }
    }

    void noteSource(std::size_t maker, const StagedFile& target) {
        const auto identity = identityOf(target.path);
        const auto source = identity ? sources.find(*identity) : sources.end();
        if (source == sources.end()) {
            return;
        }
        const std::size_t owner = source->second;
        if (owner == maker) {
            addProblem(maker, "It would be its own output " + target.path.string());
            return;
        }
        addProblem(maker, "Its file " + target.path.string() + " is a source of this batch, " +
                              jobs[owner].plan.source);
        addProblem(owner, "It would be replaced by what is made of " + jobs[maker].plan.source);
    }

    void addProblem(std::size_t job, const std::string& words) {
        if (jobs[job].problem.empty()) {
            jobs[job].problem = words;
        }
    }

    std::vector<Job>& jobs;
    Places places;
    std::map<FileIdentity, std::size_t> sources;
    std::map<fs::path, std::size_t> makers;
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

Candidates candidatesOrWrongUse(const WorkOptions& options) {
    try {
        return candidatesOf(options);
    } catch (const std::runtime_error& error) {
        throw WrongUse{error.what()};
    }
}

} // namespace

WorkList listWork(const WorkOptions& options) {
    Candidates candidates = candidatesOrWrongUse(options);
    if (options.to == Goal::Unsaid) {
        refuseBothDirections(candidates.files);
    }
    if (!options.output.empty() && candidates.files.size() > 1) {
        throw WrongUse{"--output names one file, but there are " +
                       std::to_string(candidates.files.size()) + " to convert"};
    }
    WorkList work{.jobs = {},
                  .ignored = std::move(candidates.ignored),
                  .reachedCount = candidates.reachedCount};
    for (const Candidate& each : candidates.files) {
        work.jobs.push_back({.plan = planOf(each, options), .problem = each.problem});
    }
    Conflicts{work.jobs}.note();
    std::erase_if(work.jobs, [&](const Job& job) {
        return hashOf(job.plan.source) % options.shardCount != options.shard - 1;
    });
    return work;
}

} // namespace korlit::host
