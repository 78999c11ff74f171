#include "host/convert/job.h"

#include "host/files/origin.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <type_traits>
#include <utility>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

constexpr std::array<const char*, 4> statusNames{"converted", "skipped", "failed", "planned"};

fs::file_status statusOf(const StagedFile& target) {
    std::error_code ignored;
    return fs::symlink_status(target.path, ignored);
}

/// Why nothing can be put in a target's place, where something is; empty if it isn't in the way.
std::string obstacle(const StagedFile& target, const fs::file_status& there, Existing existing) {
    std::error_code ignored;
    const fs::file_status status = fs::is_symlink(there) ? fs::status(target.path, ignored) : there;
    if (fs::is_directory(status)) {
        return "Can't write " + target.path.string() + ": Is a directory";
    }
    if (existing == Existing::Replace || fs::is_regular_file(status)) {
        return {};
    }
    return target.path.string() +
           (fs::exists(status) ? " is no regular file" : " is a link that leads nowhere") +
           " (--force replaces it)";
}

/// Behind the name of what is not replaced, whatever is asked for.
constexpr const char* keptText = " and is not replaced: say --output-dir for another place";
constexpr const char* instrumentText = " is of a pair as instruments write them";
constexpr const char* originText = " looks like what it was made from";

bool isThere(const StagedFile& target) {
    return fs::exists(statusOf(target));
}

/// Whether a target is older than any of the files that it is made of.
bool isOlder(const StagedFile& target, const std::vector<StagedFile>& sources) {
    std::error_code ignored;
    const auto time = fs::last_write_time(target.path, ignored);
    return std::ranges::any_of(sources, [&](const StagedFile& source) {
        return time < fs::last_write_time(source.path, ignored);
    });
}

Decision skipped(const std::string& message) {
    Decision decision;
    decision.outcome.status = JobStatus::Skipped;
    decision.outcome.message = message;
    return decision;
}

Decision failed(const std::string& message) {
    Decision decision;
    decision.outcome.message = message;
    return decision;
}

Decision begun(std::vector<StagedFile> targets, bool isReplacing) {
    return {.outcome = {},
            .targets = std::move(targets),
            .isToBegin = true,
            .isReplacing = isReplacing};
}

/// Leaves what is there, and makes what is missing.
Decision decideToSkip(const Plan& plan, const StagedFile& there) {
    Decision decision = begun({}, false);
    for (const StagedFile& target : plan.targets) {
        if (isThere(target)) {
            decision.outcome.kept.push_back(target.path.string());
        } else {
            decision.targets.push_back(target);
        }
    }
    return decision.targets.empty()
               ? skipped("Skipped, " + there.path.string() + " is there already")
               : decision;
}

Decision decideToUpdate(const Plan& plan) {
    const bool isDue = std::ranges::any_of(plan.targets, [&](const StagedFile& target) {
        return !isThere(target) || isOlder(target, plan.sources);
    });
    if (!isDue) {
        return skipped("Skipped, " + plan.targets.front().path.string() +
                       " is no older than its source");
    }
    for (const StagedFile& target : plan.targets) {
        if (isThere(target) && isOrigin(plan, target.path)) {
            return skipped("Skipped, " + target.path.string() + originText);
        }
        if (isThere(target) && isOfInstrument(plan, target.path)) {
            return skipped("Skipped, " + target.path.string() + instrumentText);
        }
        if (isThere(target) && !canBeMadeFrom(plan, target.path)) {
            return skipped("Skipped, " + target.path.string() +
                           " was not made from it (--force replaces it)");
        }
    }
    return begun(plan.targets, true);
}

Decision decideToReplace(const Plan& plan) {
    for (const StagedFile& target : plan.targets) {
        if (isThere(target) && isOrigin(plan, target.path)) {
            return failed(target.path.string() + originText + keptText);
        }
        if (isThere(target) && isOfInstrument(plan, target.path)) {
            return failed(target.path.string() + instrumentText + keptText);
        }
    }
    return begun(plan.targets, true);
}

} // namespace

const char* statusName(JobStatus status) {
    return statusNames[static_cast<std::size_t>(status)];
}

std::vector<StagedFile> writtenTargets(const Plan& plan, const Outcome& outcome) {
    std::vector<StagedFile> written = plan.targets;
    std::erase_if(written, [&](const StagedFile& target) {
        return std::ranges::find(outcome.kept, target.path.string()) != outcome.kept.end();
    });
    return written;
}

Decision decide(const Job& job, Existing existing) {
    const Plan& plan = job.plan;
    if (!job.problem.empty()) {
        return failed(job.problem);
    }
    const StagedFile* there = nullptr;
    for (const StagedFile& target : plan.targets) {
        const fs::file_status status = statusOf(target);
        if (!fs::exists(status)) {
            continue;
        }
        if (const std::string words = obstacle(target, status, existing); !words.empty()) {
            return failed(words);
        }
        there = there == nullptr ? &target : there;
    }
    if (there == nullptr) {
        return begun(plan.targets, existing == Existing::Update || existing == Existing::Replace);
    }
    switch (existing) {
    case Existing::Skip:
        return decideToSkip(plan, *there);
    case Existing::Update:
        return decideToUpdate(plan);
    case Existing::Replace:
        return decideToReplace(plan);
    case Existing::Refuse:
        break;
    }
    return failed(there->path.string() + " is there already (--force replaces it)");
}

Outcome plannedOutcome(const Decision& decision) {
    if (!decision.isToBegin) {
        return decision.outcome;
    }
    Outcome outcome = decision.outcome;
    outcome.status = JobStatus::Planned;
    outcome.message = "Would write ";
    for (const StagedFile& target : decision.targets) {
        outcome.message += (&target == &decision.targets.front() ? "" : ", ") +
                           target.path.string() +
                           (isThere(target) ? " (replacing what is there)" : "");
    }
    return outcome;
}

namespace {

/// Writes values one behind the other, each text and each list behind its size.
class Packer {
  public:
    template <typename Number>
    requires std::is_arithmetic_v<Number>
    void add(Number number) { bytes.append(reinterpret_cast<const char*>(&number), sizeof number); }
    void add(const std::string& text) {
        add(text.size());
        bytes += text;
    }
    template <typename Item, typename Add>
    void addAll(const std::vector<Item>& items, Add addItem) {
        add(items.size());
        std::ranges::for_each(items, addItem);
    }
    void addTexts(const std::vector<std::string>& texts) {
        addAll(texts, [this](const std::string& text) { add(text); });
    }

    std::string bytes;
};

/// Reads them in the same order. Throws an out_of_range where the text ends ahead of one.
class Unpacker {
  public:
    explicit Unpacker(std::string_view packed) : rest{packed} {}

    template <typename Number>
    Number number() {
        Number number{};
        std::memcpy(&number, take(sizeof number).data(), sizeof number);
        return number;
    }
    std::string text() { return std::string{take(number<std::size_t>())}; }
    template <typename Read>
    auto all(Read readItem) {
        std::vector<decltype(readItem())> items;
        for (auto count = number<std::size_t>(); count > 0; --count) {
            items.push_back(readItem());
        }
        return items;
    }
    std::vector<std::string> texts() {
        return all([this] { return text(); });
    }

  private:
    std::string_view take(std::size_t size) {
        if (size > rest.size()) {
            throw std::out_of_range{"An outcome ends early"};
        }
        const std::string_view taken = rest.substr(0, size);
        rest.remove_prefix(size);
        return taken;
    }

    std::string_view rest;
};

void pack(Packer& packer, const RecordedVerdict& verdict) {
    packer.add(verdict.words);
    packer.add(verdict.isSame);
    packer.addAll(verdict.expected, [&](const RecordedChange& change) {
        packer.add(change.rule);
        packer.add(change.words);
        packer.add(change.count);
    });
    packer.addTexts(verdict.unexpected);
}

// What stands in braces is read in its order.

RecordedVerdict unpackVerdict(Unpacker& packed) {
    return {.words = packed.text(),
            .isSame = packed.number<bool>(),
            .expected = packed.all([&] {
                return RecordedChange{.rule = packed.text(),
                                      .words = packed.text(),
                                      .count = packed.number<std::int64_t>()};
            }),
            .unexpected = packed.texts()};
}

void pack(Packer& packer, const ResampledFile& resampling) {
    packer.add(resampling.intervalMs);
    packer.add(resampling.oldCount);
    packer.add(resampling.newCount);
    packer.add(resampling.deviation);
    packer.add(resampling.unit);
    packer.add(resampling.isTotalIon);
}

ResampledFile unpackResampling(Unpacker& packed) {
    return {.intervalMs = packed.number<decltype(ResampledFile::intervalMs)>(),
            .oldCount = packed.number<decltype(ResampledFile::oldCount)>(),
            .newCount = packed.number<decltype(ResampledFile::newCount)>(),
            .deviation = packed.number<decltype(ResampledFile::deviation)>(),
            .unit = packed.text(),
            .isTotalIon = packed.number<bool>()};
}

} // namespace

std::string packOutcome(std::size_t job, const Outcome& outcome) {
    Packer packer;
    packer.add(job);
    packer.add(static_cast<std::uint8_t>(outcome.status));
    packer.add(outcome.message);
    packer.addTexts(outcome.warnings);
    packer.addAll(outcome.losses, [&](const Loss& loss) {
        packer.add(loss.rule);
        packer.add(loss.words);
    });
    packer.add(outcome.resampling.has_value());
    if (outcome.resampling) {
        pack(packer, *outcome.resampling);
    }
    packer.add(outcome.seconds);
    packer.add(outcome.points);
    packer.add(outcome.peaks);
    packer.add(outcome.verdict.has_value());
    if (outcome.verdict) {
        pack(packer, *outcome.verdict);
    }
    packer.addTexts(outcome.kept);
    packer.add(outcome.record);
    return std::move(packer.bytes);
}

Outcome unpackOutcome(const std::string& text) {
    Unpacker packed{text};
    packed.number<std::size_t>();
    return {.status = static_cast<JobStatus>(packed.number<std::uint8_t>()),
            .message = packed.text(),
            .warnings = packed.texts(),
            .losses =
                packed.all([&] { return Loss{.rule = packed.text(), .words = packed.text()}; }),
            .resampling =
                packed.number<bool>() ? std::optional{unpackResampling(packed)} : std::nullopt,
            .seconds = packed.number<double>(),
            .points = packed.number<std::int64_t>(),
            .peaks = packed.number<std::int64_t>(),
            .verdict = packed.number<bool>() ? std::optional{unpackVerdict(packed)} : std::nullopt,
            .kept = packed.texts(),
            .record = packed.text()};
}

std::size_t packedJob(const std::string& text) {
    return Unpacker{text}.number<std::size_t>();
}

} // namespace korlit::host
