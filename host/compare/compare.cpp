#include "host/compare/compare.h"

#include "host/compare/judgement_text.h"
#include "host/files/recognise.h"
#include "host/text/output.h"

#include <exception>
#include <iostream>
#include <limits>
#include <utility>

namespace korlit::host {

namespace {

constexpr int areDifferent = 1;
constexpr int cannotCompare = 2;

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

bool isWell(const Judgement& judgement, const CompareOptions& options) {
    return options.isStrict ? judgement.verdict.changes.empty() : judgement.verdict.isSame();
}

int compareFiles(const CompareOptions& options) {
    Side a = sideOf(options.a, options.channel);
    Side b = sideOf(options.b, options.channel);
    if (a.readings.empty() || b.readings.empty()) {
        return cannotCompare;
    }
    const Judgement judgement = judge(std::move(a), std::move(b), options.comparison);
    if (options.json) {
        std::cout << jsonLine(jsonOf(options.a, options.b, judgement));
    } else if (!options.quiet) {
        std::cout << headlineOf(judgement) << '\n'
                  << unexpectedLines(judgement.verdict, "", std::numeric_limits<std::size_t>::max())
                  << expectedLines(judgement.verdict, "", options.isVerbose);
    }
    finishOutput();
    return isWell(judgement, options) ? 0 : areDifferent;
}

} // namespace korlit::host
