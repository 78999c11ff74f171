#include "host/convert/conflicts.h"

#include "host/system/file_identity.h"
#include "host/text/wrong_use.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

/// Numbers folders, each one by whichever way leads there.
class FolderNumbers {
  public:
    std::size_t of(const fs::path& folder) {
        const auto known = numbers.find(folder.native());
        if (known != numbers.end()) {
            return known->second;
        }
        const std::size_t number =
            places.try_emplace(folderPlaceOf(folder), places.size()).first->second;
        return numbers.emplace(folder.native(), number).first->second;
    }

  private:
    std::unordered_map<std::string, std::size_t> numbers;
    std::map<FolderPlace, std::size_t> places;
};

struct SourceMark {
    FileIdentity identity;
    std::size_t job = 0;
};

struct TargetMark {
    std::uint64_t nameHash = 0;
    std::uint32_t folder = 0;
    std::uint32_t target = 0; ///< of its job
    std::size_t job = 0;
};

struct ReplacedMark {
    FileIdentity identity;
    TargetMark target;
};

/// Marks in place of paths: there may be very many.
class Conflicts {
  public:
    explicit Conflicts(WorkList& workList) : work{workList} {
        for (std::size_t i = 0; i < work.size(); ++i) {
            mark(work.job(i), i);
        }
    }

    void note() {
        noteOtherMakers();
        noteReplacedSources();
        for (const auto& [job, words] : problems) {
            work.setProblem(job, words);
        }
    }

  private:
    void mark(const Job& job, std::size_t number) {
        for (const StagedFile& source : job.plan.sources) {
            if (const auto identity = identityOf(source.path)) {
                sources.push_back({.identity = *identity, .job = number});
            }
        }
        for (std::size_t i = 0; i < job.plan.targets.size(); ++i) {
            const fs::path& path = job.plan.targets[i].path;
            const std::size_t folder = folders.of(path.parent_path());
            targets.push_back({.nameHash = std::hash<std::string>{}(path.filename().native()),
                               .folder = static_cast<std::uint32_t>(folder),
                               .target = static_cast<std::uint32_t>(i),
                               .job = number});
            if (const auto identity = identityOf(path)) {
                replaced.push_back({.identity = *identity, .target = targets.back()});
            }
        }
    }

    fs::path pathOf(const TargetMark& mark) const {
        return work.job(mark.job).plan.targets[mark.target].path;
    }

    std::string sourceOf(std::size_t job) const { return work.job(job).plan.source; }

    void noteOtherMakers() {
        const auto placeOfMark = [](const TargetMark& mark) {
            return std::pair{mark.folder, mark.nameHash};
        };
        std::ranges::stable_sort(targets, {}, placeOfMark);
        for (auto first = targets.begin(); first != targets.end();) {
            const auto last = std::find_if(first, targets.end(), [&](const TargetMark& mark) {
                return placeOfMark(mark) != placeOfMark(*first);
            });
            noteMakersOf({first, last});
            first = last;
        }
    }

    /// Of targets that are most likely one.
    void noteMakersOf(std::span<const TargetMark> group) {
        if (group.size() == 1) {
            return;
        }
        std::map<fs::path, std::size_t> makers;
        for (const TargetMark& mark : group) {
            const fs::path path = pathOf(mark);
            const std::size_t maker = makers.try_emplace(path.filename(), mark.job).first->second;
            if (maker != mark.job) {
                addProblem(mark.job,
                           "Its file " + path.string() + " is that of " + sourceOf(maker));
            }
        }
    }

    void noteReplacedSources() {
        std::ranges::sort(sources, {}, [](const SourceMark& mark) {
            return std::tuple{mark.identity, mark.job};
        });
        for (const auto& [identity, target] : replaced) {
            const auto found =
                std::ranges::lower_bound(sources, identity, {}, &SourceMark::identity);
            if (found != sources.end() && found->identity == identity) {
                noteReplacedSource(target, found->job);
            }
        }
    }

    void noteReplacedSource(const TargetMark& target, std::size_t owner) {
        const std::string path = pathOf(target).string();
        if (owner == target.job) {
            addProblem(owner, "It would be its own output " + path);
            return;
        }
        addProblem(target.job,
                   "Its file " + path + " is a source of this batch, " + sourceOf(owner));
        addProblem(owner, "It would be replaced by what is made of " + sourceOf(target.job));
    }

    void addProblem(std::size_t job, const std::string& words) { problems.emplace(job, words); }

    WorkList& work;
    FolderNumbers folders;
    std::vector<SourceMark> sources;
    std::vector<TargetMark> targets;
    std::vector<ReplacedMark> replaced;
    std::map<std::size_t, std::string> problems; ///< the first of each job
};

} // namespace

void noteConflicts(WorkList& work) {
    Conflicts{work}.note();
}

void refuseClashes(const WorkList& work, const SideFiles& sides) {
    const auto refuse = [&](const fs::path& file, const std::string& words) {
        if (const auto side = sides.at(file)) {
            throw WrongUse{file.string() + ' ' + words + ", and can't be the " +
                           sides.kindOf(*side)};
        }
    };
    for (std::size_t i = 0; i < work.size(); ++i) {
        const Plan plan = work.job(i).plan;
        refuse(plan.source, "is a source of this batch");
        for (const StagedFile& source : plan.sources) {
            refuse(source.path, "is a source of this batch");
        }
        for (const StagedFile& target : plan.targets) {
            refuse(target.path, "is what is made of " + plan.source);
        }
    }
}

} // namespace korlit::host
