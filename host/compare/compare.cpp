#include "host/compare/compare.h"

#include "host/compare/differences.h"
#include "host/text/output.h"
#include "host/text/utf8.h"
#include "host/text/wrong_use.h"

#include <algorithm>
#include <iostream>
#include <optional>
#include <utility>

namespace korlit::host {

namespace {

constexpr int areDifferent = 1;
constexpr int cannotCompare = 2;

using DataSets = std::vector<DataSet>;

/// Nothing, and words about it, where a file can't be read.
std::optional<DataSets> setsOf(const std::string& file) {
    try {
        return loadDataSets(file);
    } catch (const std::exception& error) {
        printFailure(file, error.what());
        return std::nullopt;
    }
}

/// Throws where a run of several channels meets a file that can hold one signal only.
void checkCounts(const DataSets& a, const DataSets& b) {
    for (const auto& [run, other] : {std::pair{&a, &b}, std::pair{&b, &a}}) {
        if (run->size() > 1 && !formatOf(other->front().kind).hasChannels) {
            throw WrongUse{run->front().source + " has " + std::to_string(run->size()) +
                           " channels: pick one with --channel N"};
        }
    }
}

std::vector<Difference> differencesOfAll(const DataSets& a, const DataSets& b,
                                         const Comparison& comparison) {
    std::vector<Difference> all;
    if (a.size() != b.size()) {
        all.push_back(channelDifference(a.size(), b.size()));
    }
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        for (Difference& each : differencesOf(a[i], b[i], comparison)) {
            if (std::max(a.size(), b.size()) > 1) {
                each.words.insert(0, "channel " + std::to_string(i + 1) + ": ");
                each.json["channel"] = i + 1;
            }
            all.push_back(std::move(each));
        }
    }
    return all;
}

void printLines(const std::vector<Difference>& differences) {
    for (const Difference& difference : differences) {
        std::cout << difference.words << '\n';
    }
    const std::string count = std::to_string(differences.size());
    std::cout << (differences.empty()       ? "equal"
                  : differences.size() == 1 ? "1 difference"
                                            : count + " differences")
              << '\n';
}

void printJson(const CompareOptions& options, const std::vector<Difference>& differences) {
    Json json{{"a", utf8Of(options.a)},
              {"b", utf8Of(options.b)},
              {"equal", differences.empty()},
              {"differences", Json::array()}};
    for (const Difference& difference : differences) {
        json["differences"].push_back(difference.json);
    }
    std::cout << jsonLine(json);
}

} // namespace

int compareFiles(const CompareOptions& options) {
    std::optional<DataSets> a = setsOf(options.a);
    std::optional<DataSets> b = setsOf(options.b);
    if (!a || !b) {
        return cannotCompare;
    }
    pickChannel(*a, options.channel);
    pickChannel(*b, options.channel);
    checkCounts(*a, *b);
    const std::vector<Difference> differences = differencesOfAll(*a, *b, options.comparison);
    if (options.json) {
        printJson(options, differences);
    } else if (!options.quiet) {
        printLines(differences);
    }
    finishOutput();
    return differences.empty() ? 0 : areDifferent;
}

} // namespace korlit::host
