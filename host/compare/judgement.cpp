#include "host/compare/judgement.h"

#include "host/compare/differences.h"
#include "host/data/resampled_file.h"
#include "host/proof/prospect.h"
#include "host/proof/stamp_zone.h"
#include "host/proof/trip.h"
#include "host/system/temporary_folder.h"
#include "host/text/wrong_use.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <utility>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

/// Leaves of a run the channel that was asked for.
void keepChannel(Side& side) {
    if (side.channel == 0 || !formatOf(side.kind).hasChannels) {
        return;
    }
    const std::size_t count = side.readings.size();
    std::erase_if(side.readings,
                  [&](const Reading& reading) { return reading.channel != side.channel; });
    if (side.readings.empty()) {
        throw WrongUse{side.file + " has no channel " + std::to_string(side.channel) + ", only " +
                       std::to_string(count)};
    }
}

// ---- As they are

/// Throws where a run of several channels meets a file that can hold one signal only.
void requireOneChannel(const Side& run, std::size_t channels, const Side& other) {
    if (channels > 1 && !formatOf(other.kind).hasChannels) {
        throw WrongUse{run.file + " has " + std::to_string(channels) +
                       " channels: pick one with --channel N"};
    }
}

void addDifferences(Verdict& verdict, const std::vector<DataSet>& a, const std::vector<DataSet>& b,
                    std::size_t channel, const Comparison& comparison) {
    const bool isOneOfSeveral = std::max(a.size(), b.size()) > 1;
    for (Difference& each : differencesOf(a[channel], b[channel], comparison)) {
        if (isOneOfSeveral) {
            each.words.insert(0, "channel " + std::to_string(channel + 1) + ": ");
            each.json["channel"] = channel + 1;
        }
        verdict.addUnexpected(std::move(each.words), std::move(each.json));
    }
    verdict.points += std::min(a[channel].signal.size(), b[channel].signal.size());
    verdict.peaks += std::min(a[channel].peaks.size(), b[channel].peaks.size());
}

/// Of what is the same on both sides neither is the worse copy.
void addLayouts(Verdict& verdict, const Side& a, const Side& b) {
    if (a.readings.front().layoutProblem == b.readings.front().layoutProblem) {
        return;
    }
    for (const Side* side : {&a, &b}) {
        addLayoutProblem(verdict, side->readings.front());
    }
}

Judgement comparedAsTheyAre(const Side& a, const Side& b, const Comparison& comparison) {
    std::vector<DataSet> setsOfA = loadDataSets(a.file, a.kind);
    std::vector<DataSet> setsOfB = loadDataSets(b.file, b.kind);
    pickChannel(setsOfA, a.channel);
    pickChannel(setsOfB, b.channel);
    requireOneChannel(a, setsOfA.size(), b);
    requireOneChannel(b, setsOfB.size(), a);
    Judgement judgement;
    if (setsOfA.size() != setsOfB.size()) {
        Difference difference = channelDifference(setsOfA.size(), setsOfB.size());
        judgement.verdict.addUnexpected(std::move(difference.words), std::move(difference.json));
    }
    for (std::size_t i = 0; i < std::min(setsOfA.size(), setsOfB.size()); ++i) {
        addDifferences(judgement.verdict, setsOfA, setsOfB, i, comparison);
    }
    addLayouts(judgement.verdict, a, b);
    return judgement;
}

// ---- As source and output

/// The path that an ANDI file has for its source.
std::optional<std::string> writtenSource(const Reading& andi) {
    const auto found = std::ranges::find(
        andi.entries, ValueKey{.part = parts::texts, .name = "source_file_reference"}, &Entry::key);
    const auto* path =
        found == andi.entries.end() ? nullptr : std::get_if<std::string>(&found->value);
    return path == nullptr ? std::nullopt : std::optional{*path};
}

/// The path under which a source was converted: the folder may have been another, or called by
/// another name.
std::string pathAtConversion(const std::string& source, const Reading& andi) {
    const std::string written = writtenSource(andi).value_or("");
    return fs::path{written}.filename() == fs::path{source}.filename() ? written : source;
}

/// The interval of a pair; 0 where it has none that samples could be brought to.
std::int16_t intervalMsOf(const Reading& pair) {
    const auto found = std::ranges::find(
        pair.entries, ValueKey{.part = parts::signal, .name = "SampleIntervalMs"}, &Entry::key);
    const auto* ms = found == pair.entries.end() ? nullptr : std::get_if<double>(&found->value);
    return ms == nullptr || *ms < shortestIntervalMs ? std::int16_t{0}
                                                     : static_cast<std::int16_t>(*ms);
}

/// What is expected of an output, by the kinds of the two; nothing where no way leads there.
std::optional<Expectations> expectedOf(const Reading& source, const std::string& sourceFile,
                                       const Reading& output) {
    const std::pair kinds{source.kind, output.kind};
    if (kinds == std::pair{FileKind::Andi, FileKind::Merivolta}) {
        return expectedOfPair(source);
    }
    if (kinds == std::pair{FileKind::Merivolta, FileKind::Andi}) {
        return expectedOfAndi(source, pathAtConversion(sourceFile, output));
    }
    if (kinds == std::pair{FileKind::Dunvale, FileKind::Andi}) {
        return expectedOfChannel(source, pathAtConversion(sourceFile, output));
    }
    return std::nullopt;
}

bool canComeBack(FileKind kind) {
    return kind == FileKind::Andi || kind == FileKind::Merivolta;
}

std::string wordsOfTrips(FileKind kind, int count) {
    return (count == 1 ? "a trip" : std::to_string(count) + " trips") + " through " +
           (kind == FileKind::Andi ? "a pair" : "an ANDI file");
}

bool isExplainedBetter(const Judgement& a, const Judgement& b) {
    return a.verdict.unexpectedCount() < b.verdict.unexpectedCount();
}

Judgement heldTo(Expectations expected, const Reading& source, const Reading& output,
                 const Comparison& comparison) {
    takeZone(expected, output);
    Judgement judgement;
    judgement.expected = std::move(expected);
    judgement.channel = source.channel;
    judgement.verdict = verdictOf(judgement.expected, output, comparison.tolerance);
    judgement.verdict.keepOnly(comparison.parts);
    return judgement;
}

/// One trip, or if that doesn't explain all, more of them.
void addTrips(std::vector<Judgement>& ways, Way way, const Side& source, const Side& output,
              const Comparison& comparison) {
    constexpr int mostTrips = 3;
    const Reading& reading = source.readings.front();
    const Reading& held = output.readings.front();
    const std::string sliceFile =
        source.kind == FileKind::Andi ? writtenSource(held).value_or("") : source.file;
    for (int count = 1; count <= mostTrips && (count == 1 || !ways.back().verdict.isSame());
         ++count) {
        ways.push_back(
            heldTo(expectedBehindTrips(reading, sliceFile, count), reading, held, comparison));
        ways.back().way = way;
        ways.back().verdict.conversion = wordsOfTrips(source.kind, count);
    }
}

void addWays(std::vector<Judgement>& ways, Way way, const Side& source, const Side& output,
             const Comparison& comparison) {
    if (formatOf(output.kind).hasChannels) {
        return;
    }
    if (source.kind == output.kind && canComeBack(source.kind)) {
        addTrips(ways, way, source, output, comparison);
        return;
    }
    const Reading& held = output.readings.front();
    for (const Reading& reading : source.readings) {
        if (auto expected = expectedOf(reading, source.file, held)) {
            ways.push_back(heldTo(std::move(*expected), reading, held, comparison));
            ways.back().way = way;
        }
    }
}

/// Where a pair may have been made of a file whose samples aren't equidistant.
void addResampledWay(std::vector<Judgement>& ways, Way way, const Side& source, const Side& output,
                     const Comparison& comparison) {
    if (!formatOf(source.kind).isAndi || output.kind != FileKind::Merivolta) {
        return;
    }
    const Reading& held = output.readings.front();
    const TemporaryFolder folder;
    const std::string file = (folder.path() / "resampled").string();
    const auto resampling = writeResampled(source.file, intervalMsOf(held), file);
    if (!resampling) {
        return;
    }
    Prospect prospect = prospectOfResampled(file, *resampling, Wanted::All);
    ways.push_back(
        heldTo(std::move(prospect.expected.front()), prospect.sources.front(), held, comparison));
    ways.back().way = way;
}

bool areToBeComparedAsTheyAre(const Side& a, const Side& b) {
    return a.kind == b.kind || (!formatOf(a.kind).isAndi && !formatOf(b.kind).isAndi);
}

} // namespace

Judgement judge(Side a, Side b, const Comparison& comparison) {
    for (Side* side : {&a, &b}) {
        side->kind = side->readings.front().kind; // also of what isn't recognised and yet read
    }
    keepChannel(a);
    keepChannel(b);
    std::vector<Judgement> ways;
    if (areToBeComparedAsTheyAre(a, b)) {
        ways.push_back(comparedAsTheyAre(a, b, comparison));
        ways.back().verdict.keepOnly(comparison.parts);
    }
    if (ways.empty() || !ways.front().verdict.isSame()) {
        addWays(ways, Way::FromAToB, a, b, comparison);
        addWays(ways, Way::FromBToA, b, a, comparison);
        addResampledWay(ways, Way::FromAToB, a, b, comparison);
        addResampledWay(ways, Way::FromBToA, b, a, comparison);
    }
    return std::move(*std::ranges::min_element(ways, isExplainedBetter));
}

} // namespace korlit::host
