#include "host/convert/verification.h"

#include "host/files/staging.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

/// The words of what went wrong with a staged file, with its true path.
std::string withTruePath(std::string words, const fs::path& staged, const fs::path& target) {
    const std::string name = staged.string();
    for (std::size_t at = words.find(name); at != std::string::npos; at = words.find(name, at)) {
        words.replace(at, name.size(), target.string());
        at += target.string().size();
    }
    return words;
}

Reading stagedReading(FileKind kind, const StagedFile& target, const fs::path& stage) {
    const fs::path staged = stage / target.stagedName;
    try {
        return readingsOf(staged.string(), kind).front();
    } catch (const std::runtime_error& error) {
        throw std::runtime_error{"Not verified, what was written can't be read: " +
                                 withTruePath(error.what(), staged, target.path)};
    }
}

/// Adds the verdict of a channel to that of the run.
void join(Verdict& all, Verdict one, int channel) {
    all.conversion = one.conversion;
    all.points += one.points;
    all.peaks += one.peaks;
    for (Change& change : one.changes) {
        if (channel > 0 && change.rule == nullptr) {
            change.words.insert(0, "channel " + std::to_string(channel) + ": ");
        }
        all.changes.push_back(std::move(change));
    }
}

bool areSameFiles(const fs::path& a, const fs::path& b) {
    std::ifstream left{a, std::ios::binary};
    std::ifstream right{b, std::ios::binary};
    using Bytes = std::istreambuf_iterator<char>;
    return left && right && std::equal(Bytes{left}, {}, Bytes{right}, {});
}

} // namespace

Verdict verdictOfStaged(const Plan& plan, const fs::path& stage, const Prospect& prospect) {
    const bool isRun = formatOf(plan.kind).hasChannels;
    if (isRun && prospect.expected.size() != plan.targets.size()) {
        throw std::runtime_error{channelsChangedText};
    }
    Verdict all;
    for (std::size_t i = 0; i < prospect.expected.size(); ++i) {
        const Expectations& expected = prospect.expected[i];
        const Reading output = stagedReading(expected.kind, plan.targets[i], stage);
        join(all, verdictOf(expected, output, {}), isRun ? prospect.sources[i].channel : 0);
    }
    return all;
}

void requireAsStaged(const Plan& plan, const std::vector<std::string>& kept,
                     const fs::path& stage) {
    for (const StagedFile& target : plan.targets) {
        const bool isKept = std::ranges::find(kept, target.path.string()) != kept.end();
        if (isKept && !areSameFiles(target.path, stage / target.stagedName)) {
            throw std::runtime_error{target.path.string() +
                                     " is there already, but not as it would be made of " +
                                     plan.source + " (--force replaces it)"};
        }
    }
}

RecordedVerdict recorded(const Verdict& verdict) {
    constexpr std::size_t mostUnexpected = 100;
    RecordedVerdict result{
        .words = verdict.words(), .isSame = verdict.isSame(), .expected = {}, .unexpected = {}};
    for (const auto& [rule, count] : verdict.countsByRule()) {
        result.expected.push_back(
            {.rule = rule->id, .words = rule->words, .count = static_cast<std::int64_t>(count)});
    }
    for (const Change& change : verdict.changes) {
        if (change.rule == nullptr && result.unexpected.size() < mostUnexpected) {
            result.unexpected.push_back(change.words);
        }
    }
    return result;
}

void requireSame(const Verdict& verdict) {
    const auto first = std::ranges::find(verdict.changes, nullptr, &Change::rule);
    if (first != verdict.changes.end()) {
        throw std::runtime_error{"Not verified, " + verdict.words() +
                                 ", the first: " + first->words};
    }
}

} // namespace korlit::host
