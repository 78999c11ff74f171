#include "host/proof/losses.h"

#include <algorithm>
#include <set>

namespace korlit::host {

namespace {

struct Group {
    const ChangeRule* rule;
    std::string_view column; ///< of peaks; empty for what there is one of
    std::string words;
    std::size_t moreCount = 0;
};

bool isLoss(const ChangeRule* rule) {
    return rule != nullptr && rule->isLoss;
}

/// What all channels lose stands once, with the first.
std::vector<Loss> lossesOfAll(const std::vector<std::vector<Loss>>& channels) {
    std::vector<Loss> losses;
    for (std::size_t channel = 0; channel < channels.size(); ++channel) {
        for (const Loss& loss : channels[channel]) {
            const bool isOfAll = std::ranges::all_of(channels, [&](const auto& each) {
                return std::ranges::find(each, loss) != each.end();
            });
            if (!isOfAll) {
                losses.push_back(
                    {.rule = loss.rule,
                     .words = "channel " + std::to_string(channel + 1) + ": " + loss.words});
            } else if (channel == 0) {
                losses.push_back(loss);
            }
        }
    }
    return losses;
}

/// The column whose peaks share a line.
std::string_view columnOf(const Expectation& expectation) {
    const auto& key = expectation.from ? expectation.from : expectation.to;
    return key && key->peak > 0 ? std::string_view{key->name} : std::string_view{};
}

} // namespace

std::vector<Loss> lossesOf(const Expectations& expected) {
    std::vector<Group> groups;
    std::set<std::pair<const ChangeRule*, std::string>> told;
    const auto add = [&](const ChangeRule* rule, std::string_view column, std::string words) {
        if (!told.emplace(rule, words).second) {
            return;
        }
        const auto same = std::ranges::find_if(groups, [&](const Group& group) {
            return group.rule == rule && !column.empty() && group.column == column;
        });
        if (same != groups.end()) {
            ++same->moreCount;
        } else {
            groups.push_back({.rule = rule, .column = column, .words = std::move(words)});
        }
    };
    for (const Expectation& each : expected.values) {
        if (isLoss(each.rule)) {
            add(each.rule, columnOf(each), changeWords(each));
        }
    }
    if (isLoss(expected.signalRule)) {
        add(expected.signalRule, "", expected.signalWords);
    }
    std::vector<Loss> losses;
    for (const Group& group : groups) {
        const std::string more =
            group.moreCount > 0 ? ", and " + std::to_string(group.moreCount) + " more" : "";
        losses.push_back({.rule = group.rule->id, .words = group.words + more});
    }
    return losses;
}

std::vector<Loss> lossesOf(const Prospect& prospect) {
    std::vector<std::vector<Loss>> channels;
    for (const Expectations& expected : prospect.expected) {
        channels.push_back(lossesOf(expected));
    }
    return lossesOfAll(channels);
}

} // namespace korlit::host
