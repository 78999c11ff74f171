#include "host/compare/compare.h"

#include "host/compare/judgement.h"
#include "host/files/recognise.h"
#include "host/text/output.h"
#include "host/text/utf8.h"

#include <exception>
#include <iostream>
#include <utility>

namespace korlit::host {

namespace {

constexpr int areDifferent = 1;
constexpr int cannotCompare = 2;

void printLines(const Judgement& judgement, bool isVerbose) {
    const Verdict& verdict = judgement.verdict;
    std::cout << verdict.words()
              << (judgement.channel > 0 ? " (channel " + std::to_string(judgement.channel) + ")"
                                        : "")
              << '\n';
    for (const Change& change : verdict.changes) {
        if (change.rule == nullptr) {
            std::cout << "unexpected: " << change.words << '\n';
        }
    }
    for (const auto& [rule, count] : verdict.countsByRule()) {
        if (!isVerbose) {
            std::cout << "expected: " << rule->id << ": " << count << ": " << rule->words << '\n';
            continue;
        }
        for (const Change& change : verdict.changes) {
            if (change.rule == rule) {
                std::cout << "expected: " << rule->id << ": " << change.words << '\n';
            }
        }
    }
}

Json conversionJson(Way way) {
    return way == Way::None ? Json{}
                            : Json{{"from", way == Way::FromAToB ? "a" : "b"},
                                   {"to", way == Way::FromAToB ? "b" : "a"}};
}

void printJson(const CompareOptions& options, const Judgement& judgement) {
    const Verdict& verdict = judgement.verdict;
    const std::size_t unexpected = verdict.unexpectedCount();
    Json json{{"a", utf8Of(options.a)},
              {"b", utf8Of(options.b)},
              {"verdict", verdict.isSame() ? "same data" : "other data"},
              {"words", verdict.words()},
              {"conversion", conversionJson(judgement.way)},
              {"channel", judgement.channel > 0 ? Json(judgement.channel) : Json{}},
              {"points", verdict.points},
              {"peaks", verdict.peaks},
              {"expected", verdict.changes.size() - unexpected},
              {"unexpected", unexpected},
              {"equal", verdict.changes.empty()},
              {"differences", Json::array()}};
    for (const Change& change : verdict.changes) {
        json["differences"].push_back(change.json());
    }
    std::cout << jsonLine(json);
}

/// Reads a file; words about it, and no readings, where that fails.
Side sideOf(const std::string& file, int channel) {
    Side side{.file = file, .kind = recognise(file), .channel = channel, .readings = {}};
    try {
        side.readings = readingsOf(file, side.kind);
    } catch (const std::exception& error) {
        printFailure(file, error.what());
    }
    return side;
}

} // namespace

int compareFiles(const CompareOptions& options) {
    Side a = sideOf(options.a, options.channel);
    Side b = sideOf(options.b, options.channel);
    if (a.readings.empty() || b.readings.empty()) {
        return cannotCompare;
    }
    const Judgement judgement = judge(std::move(a), std::move(b), options.comparison);
    if (options.json) {
        printJson(options, judgement);
    } else if (!options.quiet) {
        printLines(judgement, options.isVerbose);
    }
    finishOutput();
    const bool isWell =
        options.isStrict ? judgement.verdict.changes.empty() : judgement.verdict.isSame();
    return isWell ? 0 : areDifferent;
}

} // namespace korlit::host
