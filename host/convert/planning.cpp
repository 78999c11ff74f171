#include "host/convert/planning.h"

#include "host/convert/conflicts.h"
#include "host/files/extensions.h"
#include "host/system/whole_file.h"
#include "host/text/words.h"
#include "host/text/wrong_use.h"

#include <algorithm>
#include <cstdint>
#include <map>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

/// What folders hold goes one way, and the user says which.
void refuseBothDirections(const std::vector<ListedFile>& files) {
    std::map<FileKind, std::size_t> counts;
    for (const ListedFile& each : files) {
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

/// Of data: what is made would be hidden, as .sli.sli.
bool isEndingAlone(const fs::path& name) {
    return hasNameOfData("x" + name.string()) && name.stem() == name;
}

/// The words for an --output that can't be the place of what is made.
std::string outputProblem(const Plan& plan, const fs::path& output) {
    const std::string name = output.string();
    const Format& format = formatOf(plan.kind);
    if (plan.targets.size() > 1 && format.hasChannels) {
        return plan.source + " has " + std::to_string(plan.targets.size()) +
               " channels and becomes as many files: say where with --output-dir";
    }
    const std::vector<std::string> endings = format.targetEndings(1);
    const std::string due = fs::path{"x" + endings.front()}.extension();
    if (name == "-") {
        return "a conversion can't go to standard output: name a file, as in --output converted" +
               due;
    }
    std::error_code ignored;
    const fs::path last = output.filename();
    if (fs::is_directory(output, ignored) || last.empty() || last == "." || last == "..") {
        return name + " is a folder: say --output-dir " + name;
    }
    if (isEndingAlone(last)) {
        return name + " is an ending without a name: say --output " +
               (output.parent_path() / ("converted" + due)).string();
    }
    const bool isFitting = std::ranges::any_of(endings, [&](const std::string& ending) {
        return hasExtension(name, fs::path{"x" + ending}.extension().native());
    });
    if (output.has_extension() && !isFitting) {
        return "the output of " + plan.source + " ends in " + due + ": say --output " +
               fs::path{output}.replace_extension(due).string();
    }
    return {};
}

/// Throws where --output can't be the place of what is made.
void requireFittingOutput(const WorkList& work, const fs::path& output) {
    if (work.size() > 1) {
        throw WrongUse{"--output names one file, but there are " + std::to_string(work.size()) +
                       " to convert"};
    }
    const Plan plan = work.size() == 1 ? work.job(0).plan : Plan{};
    const std::string problem = plan.targets.empty() ? "" : outputProblem(plan, output);
    if (!problem.empty()) {
        throw WrongUse{"--output: " + problem};
    }
}

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

WorkList listWork(const WorkOptions& options, const SideFiles& sides) {
    Listing candidates = candidatesOf(options);
    if (options.to == Goal::Unsaid) {
        refuseBothDirections(candidates.files);
    }
    WorkList work{std::move(candidates), options};
    if (!options.output.empty()) {
        requireFittingOutput(work, options.output);
    }
    noteConflicts(work);
    if (!sides.empty()) {
        refuseClashes(work, sides);
        work.noteSourcePermissions();
    }
    work.takeShard();
    return work;
}

WorkList::WorkList(Listing candidatesToConvert, const WorkOptions& workOptions)
    : candidates{std::move(candidatesToConvert)}, options{workOptions} {}

Job WorkList::job(std::size_t number) const {
    const ListedFile& candidate = candidates.files[number];
    const fs::path source = candidates.pathOf(candidate);
    if (!candidate.problem.empty()) {
        return {.plan = {.source = source, .kind = candidate.kind}, .problem = candidate.problem};
    }
    const fs::path& named = options.output.empty() ? source : options.output;
    Plan plan = planFor(source, candidate.kind, candidate.channelCount, targetFolderOf(candidate),
                        named.stem());
    if (!options.output.empty() && plan.targets.size() == 1) {
        plan.targets.front().path = options.output;
        if (!options.output.has_extension()) {
            plan.targets.front().path += ".cdf";
        }
    }
    return {.plan = std::move(plan), .problem = {}};
}

std::set<fs::path> WorkList::targetFolders() const {
    std::set<fs::path> folders;
    for (const ListedFile& each : candidates.files) {
        if (each.problem.empty()) {
            folders.insert(targetFolderOf(each));
        }
    }
    return folders;
}

void WorkList::setProblem(std::size_t number, const std::string& words) {
    candidates.files[number].problem = words;
}

void WorkList::noteSourcePermissions() {
    for (std::size_t i = 0; i < size(); ++i) {
        for (const StagedFile& source : job(i).plan.sources) {
            permissions = narrowedTo(source.path, permissions);
        }
    }
}

void WorkList::takeShard() {
    std::erase_if(candidates.files, [&](const ListedFile& candidate) {
        return hashOf(candidates.pathOf(candidate)) % options.shardCount != options.shard - 1;
    });
}

fs::path WorkList::targetFolderOf(const ListedFile& candidate) const {
    if (!options.output.empty()) {
        return options.output.parent_path();
    }
    return options.outputFolder.empty()
               ? candidates.pathOf(candidate).parent_path()
               : options.outputFolder / candidates.folders[candidate.folder].below;
}

} // namespace korlit::host
