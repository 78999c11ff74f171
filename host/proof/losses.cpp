#include "host/proof/losses.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <span>
#include <string_view>
#include <utility>

namespace korlit::host {

namespace {

/// A loss, and how many more values of its column go the same way.
struct Line {
    const Expectation* first;
    std::size_t moreCount = 0;

    std::string words() const {
        return changeWords(*first) +
               (moreCount > 0 ? ", and " + std::to_string(moreCount) + " more" : "");
    }
};

bool isLoss(const ChangeRule* rule) {
    return rule != nullptr && rule->isLoss;
}

/// Whether the words of two are the same.
bool sayTheSame(const Expectation& a, const Expectation& b) {
    return a.rule == b.rule && a.words == b.words &&
           (!a.words.empty() ||
            (a.from == b.from && areSame(a.source, b.source) && areSame(a.target, b.target)));
}

/// The column whose peaks share a line.
std::string_view columnOf(const Expectation& expectation) {
    const auto& key = expectation.from ? expectation.from : expectation.to;
    return key && key->peak > 0 ? key->name : std::string_view{};
}

bool shareLine(const Expectation& a, const Expectation& b) {
    return a.rule == b.rule && columnOf(a) == columnOf(b);
}

std::vector<Line> linesOf(const Expectations& expected) {
    std::vector<Line> lines;
    std::set<std::pair<const ChangeRule*, std::string_view>> told;
    for (const Expectation& each : expected.values) {
        // Many values may have the same words, if they are its own.
        if (!isLoss(each.rule) ||
            (!each.words.empty() && !told.insert({each.rule, each.words}).second)) {
            continue;
        }
        const bool isOfColumn = !columnOf(each).empty();
        // New words of its own need no search, however many there are.
        const auto same = !isOfColumn && !each.words.empty()
                              ? lines.end()
                              : std::ranges::find_if(lines, [&](const Line& line) {
                                    return isOfColumn ? shareLine(*line.first, each)
                                                      : sayTheSame(*line.first, each);
                                });
        if (same == lines.end()) {
            lines.push_back({.first = &each});
        } else if (isOfColumn) {
            ++same->moreCount;
        }
    }
    if (isLoss(expected.signalChange.rule)) {
        lines.push_back({.first = &expected.signalChange});
    }
    return lines;
}

bool isAmong(const std::vector<Line>& lines, const Line& wanted) {
    return std::ranges::any_of(lines, [&](const Line& line) {
        return line.moreCount == wanted.moreCount && sayTheSame(*line.first, *wanted.first);
    });
}

/// The lines of the first channel that all have.
std::vector<Line> sharedOf(const std::vector<std::vector<Line>>& channels) {
    std::vector<Line> shared = channels.front();
    std::erase_if(shared, [&](const Line& line) {
        return !std::ranges::all_of(std::span{channels}.subspan(1),
                                    [&](const auto& lines) { return isAmong(lines, line); });
    });
    return shared;
}

Loss lossOf(const Line& line, const std::string& prefix, LossText text) {
    return {.rule = line.first->rule->id,
            .words = text == LossText::Words ? prefix + line.words() : ""};
}

} // namespace

std::vector<Loss> lossesOf(const Expectations& expected, LossText text) {
    std::vector<Loss> losses;
    for (const Line& line : linesOf(expected)) {
        losses.push_back(lossOf(line, "", text));
    }
    return losses;
}

std::vector<Loss> lossesOf(const Prospect& prospect, LossText text) {
    if (prospect.expected.size() <= 1) {
        return prospect.expected.empty() ? std::vector<Loss>{}
                                         : lossesOf(prospect.expected.front(), text);
    }
    std::vector<std::vector<Line>> channels;
    std::ranges::transform(prospect.expected, std::back_inserter(channels), linesOf);
    const std::vector<Line> shared = sharedOf(channels);
    std::vector<Loss> losses;
    for (std::size_t channel = 0; channel < channels.size(); ++channel) {
        for (const Line& line : channels[channel]) {
            if (!isAmong(shared, line)) {
                losses.push_back(
                    lossOf(line, "channel " + std::to_string(channel + 1) + ": ", text));
            } else if (channel == 0) {
                losses.push_back(lossOf(line, "", text));
            }
        }
    }
    return losses;
}

} // namespace korlit::host
