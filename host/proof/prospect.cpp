#include "host/proof/prospect.h"

#include "host/proof/change_rules.h"

#include <optional>
#include <utility>

namespace korlit::host {

namespace {

Expectations expectedOf(const Reading& source, const std::string& file, Wanted wanted) {
    switch (source.kind) {
    case FileKind::Merivolta:
        return expectedOfAndi(source, file, wanted);
    case FileKind::Dunvale:
        return expectedOfChannel(source, file, wanted);
    case FileKind::Andi:
    case FileKind::Unknown:
        break;
    }
    return expectedOfPair(source, wanted);
}

} // namespace

Prospect prospectOf(const std::string& source, FileKind kind, Wanted wanted) {
    Prospect prospect{.sources = readingsOf(source, kind, Layout::Ignored), .expected = {}};
    for (const Reading& each : prospect.sources) {
        prospect.expected.push_back(expectedOf(each, source, wanted));
    }
    return prospect;
}

Prospect prospectOfResampled(const std::string& resampledFile, const ResampledFile& resampling,
                             Wanted wanted) {
    Prospect prospect = prospectOf(resampledFile, FileKind::Andi, wanted);
    std::vector<Expectation>& values = prospect.expected.front().values;
    const auto addLoss = [&](const ChangeRule& rule, const char* name, std::string words) {
        values.insert(values.begin(), {.from = ValueKey{.part = parts::signal, .name = name},
                                       .source = std::string{"of the source"},
                                       .to = std::nullopt,
                                       .target = {},
                                       .rule = &rule,
                                       .words = std::move(words)});
    };
    if (resampling.isTotalIon) {
        addLoss(changes::spectraLeftOut, "mass_values", changes::spectraLeftOut.words);
    }
    addLoss(changes::resampledSignal, "sample times", resampling.words());
    return prospect;
}

} // namespace korlit::host
