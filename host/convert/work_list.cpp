#include "host/convert/work_list.h"

#include "host/convert/candidates.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <stdexcept>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

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
        if (!formatOf(plan.kind).isAndi && plan.targets.size() == 1) {
            plan.targets.front().path = options.output;
        } else if (!formatOf(plan.kind).isAndi) {
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
    return timeOfA > timeOfB || (timeOfA == timeOfB && !formatOf(a.kind).isAndi);
}

class Planner {
  public:
    Planner(std::vector<Candidate> found, const WorkOptions& options)
        : candidates{std::move(found)} {
        for (const Candidate& each : candidates) {
            plans.push_back(each.problem.empty() ? planOf(each, options)
                                                 : Plan{.source = each.file.string()});
            for (const StagedFile& target : plans.back().targets) {
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
        for (const StagedFile& target : plans[i].targets) {
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
        return std::ranges::any_of(plan.sources, [&](const StagedFile& source) {
            return fullPath(source.path) == target;
        });
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
    Candidates found = candidatesOf(options);
    if (!options.output.empty() && found.files.size() > 1) {
        throw std::runtime_error{"--output names one file, but there are " +
                                 std::to_string(found.files.size()) + " to convert"};
    }
    WorkList work = Planner{std::move(found.files), options}.list(std::move(found.leftOut));
    std::erase_if(work.jobs, [&](const Job& job) {
        return hashOf(job.plan.source) % options.shardCount != options.shard - 1;
    });
    return work;
}

} // namespace korlit::host
