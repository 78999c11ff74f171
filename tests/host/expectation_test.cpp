// What is expected of pairs and runs in ANDI files, against what the built library makes of them.
#include "host/proof/change_rules.h"
#include "host/proof/expectation.h"
#include "host/proof/losses.h"
#include "host/proof/stamp_zone.h"
#include "tests/support/cases.h"
#include "tests/support/host_call.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <cctype>
#include <ctime>
#include <fstream>
#include <map>
#include <set>

namespace korlit::host {
namespace {

using namespace korlit::test;

/// What an output holds that isn't expected, or lacks.
std::vector<std::string> unexpectedIn(const Expectations& expected, const Reading& output) {
    std::map<ValueKey, Value> found;
    for (const Entry& entry : output.entries) {
        found.emplace(entry.key, entry.value);
    }
    std::vector<std::string> names;
    std::map<ValueKey, Value> wanted;
    for (const Expectation& each : expected.values) {
        if (each.to) {
            wanted.emplace(*each.to, each.target);
            if (!found.contains(*each.to) || !areSame(found[*each.to], each.target)) {
                names.emplace_back(each.to->name);
            }
        }
    }
    for (const auto& [key, value] : found) {
        if (!wanted.contains(key)) {
            names.push_back("no " + std::string{key.name});
        }
    }
    bool isSameSignal = expected.signal.size() == output.signal.size();
    for (std::size_t i = 0; isSameSignal && i < output.signal.size(); ++i) {
        isSameSignal =
            areSame(double{static_cast<float>(expected.signal[i] * expected.signalFactor)},
                    output.signal[i]);
    }
    if (!isSameSignal) {
        names.emplace_back("samples");
    }
    return names;
}

void expectNothingElse(const Expectations& expected, const Reading& output) {
    EXPECT_EQ(unexpectedIn(expected, output), std::vector<std::string>{});
}

/// Whether something is said of each value, and words of each that a rule changes.
void expectAllIsSaid(const Expectations& expected, const Reading& source) {
    for (const Entry& entry : source.entries) {
        EXPECT_TRUE(std::ranges::any_of(expected.values, [&](const Expectation& each) {
            return each.from == entry.key && areSame(each.source, entry.value);
        })) << entry.key.name;
    }
    for (const Expectation& each : expected.values) {
        const bool isKept = each.to && areSame(each.source, each.target);
        EXPECT_EQ(each.rule == nullptr, isKept && each.from);
        EXPECT_EQ(each.rule == nullptr, changeWords(each).empty());
    }
}

/// Whether those that were asked for alone are the losses among all.
void expectSameLosses(const Expectations& all, const Expectations& losses) {
    EXPECT_EQ(lossesOf(losses), lossesOf(all));
    EXPECT_TRUE(std::ranges::all_of(losses.values, [](const Expectation& each) {
        return each.rule != nullptr && each.rule->isLoss;
    }));
}

class Expected : public testing::Test {
  protected:
    Expected() { setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1); }

    std::string pairOf(const Case& each) const {
        for (const std::string extension : {"sli", "rpt"}) {
            const std::string image = readImage(LISTINGS "two_peaks." + extension + ".txt");
            folder.write("run." + extension, pairFileOf(each, extension, image));
        }
        return folder.path("run.sli");
    }

    TempFolder folder;
};

TEST_F(Expected, OfPairsIsWhatTheLibraryMakesOfThem) {
    int count = 0;
    for (const Case& each : readCases(LISTINGS "pairs.txt")) {
        SCOPED_TRACE(each.get("==", ""));
        const std::string slice = pairOf(each);
        if (!each.words.contains("without") && !each.words.contains("fault") &&
            callAsHost(Merivolta2Andi, slice).result == 1) {
            ++count;
            const Reading pair = readPair(slice);
            const Expectations expected = expectedOfAndi(pair, slice);
            expectAllIsSaid(expected, pair);
            expectSameLosses(expected, expectedOfAndi(pair, slice, Wanted::Losses));
            expectNothingElse(expected, readAndi(folder.path("run.cdf")));
        }
    }
    EXPECT_GT(count, 13);
}

TEST_F(Expected, NamesWhatAPairLoses) {
    const auto haveLoss = [&](const std::vector<std::string>& changes, const std::string& rule) {
        const Reading pair = readPair(pairOf({{}, changes, {}, {}}));
        const auto losses = lossesOf(expectedOfAndi(pair, "run.sli"));
        return std::ranges::find(losses, rule, &Loss::rule) != losses.end();
    };
    for (const auto& [change, rule] : {std::pair{"sli 1824 03", "separation-unknown"},
                                       std::pair{"sli 35 '99.99.2005'", "date-unreadable"},
                                       // The start and the percentage of the first peak.
                                       std::pair{"rpt 372 01", "second-value-left-out"},
                                       std::pair{"rpt 380 01", "second-value-left-out"}}) {
        EXPECT_FALSE(haveLoss({}, rule)) << rule;
        EXPECT_TRUE(haveLoss({change}, rule)) << rule << ' ' << change;
    }
}

TEST(Losses, AreToldInTimeThatGrowsAsTheirNumberDoes) {
    const auto ticksFor = [](std::size_t count) {
        Prospect prospect{.sources = {}, .expected = std::vector<Expectations>(1)};
        for (std::size_t i = 0; i < count; ++i) {
            prospect.expected.front().values.push_back(
                {.rule = &changes::noPlace, .words = "attribute " + std::to_string(i)});
        }
        const std::clock_t start = std::clock();
        EXPECT_EQ(lossesOf(prospect).size(), count);
        return std::clock() - start;
    };
    // Sixteen times as many, so that a search for each would take 256 times as long.
    EXPECT_LT(ticksFor(32'000), 64 * ticksFor(2000));
}

TEST_F(Expected, OfRunsIsWhatTheLibraryMakesOfThem) {
    const RunText odd{.signal =
                          "r52 4 30000s 0.1d 'mAU':20 r16 x7F800000 xFF800000 x7FC00001 xFFC00002 "
                          "x00000001 x80000000",
                      .results = "0s 2s 0s x7FC00001 0f xFF800000 x7F7FFFFF x80000000 x00000001 "
                                 "1.5f x7F800000 1f 0.1f xFFC00003 2.5f",
                      .events = ""};
    std::vector<std::string> runs{odd.bytes(), readFile(SAMPLES "dad_run.run")};
    for (const Case& each : readCases(LISTINGS "runs.txt")) {
        if (!each.words.contains("folder") && !each.words.contains("fault")) {
            runs.push_back(runFileOf(each));
        }
    }
    int count = 0;
    for (const std::string& run : runs) {
        const std::string file = folder.write("run.dat", run);
        if (callAsHost(Dunvale2Andi, file, "").result != 1) {
            continue;
        }
        for (const Reading& channel : readRun(file)) {
            SCOPED_TRACE(++count);
            const Expectations expected = expectedOfChannel(channel, file);
            expectAllIsSaid(expected, channel);
            expectSameLosses(expected, expectedOfChannel(channel, file, Wanted::Losses));
            const std::string output = "run" + std::to_string(channel.channel) + ".cdf";
            expectNothingElse(expected, readAndi(folder.path(output)));
        }
    }
    EXPECT_GE(count, 34);
}

TEST_F(Expected, OfAndiFilesIsWhatTheLibraryMakesOfThem) {
    // What comes out as other data, or has a layout that no writer makes: it is told as unexpected.
    const std::set<std::string> unexplained{
        "names of a vector stand every 4 bytes",
        "a name in a vector that goes over the place of the next",
        "a character for the name of each peak: the first has all",
        "names of a matrix whose rows have no length are all the first",
        "samples and heights beyond what their dimensions say: one is turned"};
    int count = 0;
    for (const Case& each : readCases(LISTINGS "conversions.txt")) {
        SCOPED_TRACE(each.get("==", ""));
        const std::string file = folder.write("run.cdf", andiFileOf(each));
        if (each.words.contains("fault") || callAsHost(Andi2Merivolta, file).result != 1) {
            continue;
        }
        ++count;
        const Reading andi = readAndi(file);
        const Expectations expected = expectedOfPair(andi);
        expectSameLosses(expected, expectedOfPair(andi, Wanted::Losses));
        EXPECT_EQ(unexpectedIn(expected, readPair(folder.path("run.sli"))).empty(),
                  !unexplained.contains(each.get("==", "")));
    }
    EXPECT_GT(count, 50);
}

TEST_F(Expected, OfTextsThatAreNumbersHasTheDigitsOfTheirTypes) {
    for (const std::string number :
         {"3 1 -1", "4 1 2147483647", "4 1 -2147483648", "5 1 2147483648f", "5 1 -2147483904f",
          "5 1 4e9f", "5 1 0.1f", "5 1 nanf", "5 1 -inff", "5 1 20240229f", "5 1 -0f",
          // 255, 5 and 1, 5, no number, 0.1 and many that their field has no room for.
          "1 1 4278190080", "1 2 83951616", "6 1 1075052544 0", "3 0", "6 1 1069128089 2576980378",
          "3 2 327681", "4 4 20240229 -1 2147483647 5", "5 4 1f 2f 3f 4f"}) {
        for (const std::string name : {"'sample_name'", "'detector_unit'", "'autosampler_position'",
                                       "'injection_date_time_stamp'"}) {
            SCOPED_TRACE(name + ' ' + number);
            const AndiText andi{.globals = "12 1 " + name + ' ' + number};
            const std::string file = folder.write("run.cdf", andi.bytes());
            ASSERT_EQ(callAsHost(Andi2Merivolta, file).result, 1);
            expectNothingElse(expectedOfPair(readAndi(file)), readPair(folder.path("run.sli")));
        }
    }
}

/// Changes the last bit of each letter of an ANDI file, and of each byte of its data, in turn;
/// answers how many nobody misses.
int unmissedBits(const Expectations& expected, const std::string& file, std::size_t dataSize) {
    const std::string bytes = readFile(file);
    int count = 0;
    for (std::size_t place = 0; place < bytes.size(); ++place) {
        if (std::isalpha(bytes[place]) == 0 && place < bytes.size() - dataSize) {
            continue;
        }
        std::string changed = bytes;
        changed[place] = static_cast<char>(changed[place] ^ 1);
        std::ofstream{file, std::ios::binary} << changed;
        try {
            count += unexpectedIn(expected, readAndi(file)).empty() ? 1 : 0;
        } catch (const std::runtime_error&) {
            continue;
        }
    }
    return count;
}

TEST_F(Expected, IsEachBitOfAnOutputButTheFillOfItsRows) {
    const std::string slice = pairOf({});
    ASSERT_EQ(callAsHost(Merivolta2Andi, slice).result, 1);
    constexpr std::size_t pairData = 5 * 4 + 3 * 4 + 2 * (10 * 4 + 32);
    constexpr int pairFill = 2 * 31 - 8 - 14;
    const Expectations ofAndi = expectedOfAndi(readPair(slice), slice);
    EXPECT_EQ(unmissedBits(ofAndi, folder.path("run.cdf"), pairData), pairFill);

    const std::string file = folder.write("run.dat", RunText{}.bytes());
    ASSERT_EQ(callAsHost(Dunvale2Andi, file, "").result, 1);
    constexpr std::size_t runData = 5 * 4 + 6 * 4 + 2 * (11 * 4 + 32 + 2 * 4);
    constexpr int runFill = 2 * 31 - 8 + 2 * 2 * 2;
    const Expectations ofChannel = expectedOfChannel(readRun(file).front(), file);
    EXPECT_EQ(unmissedBits(ofChannel, folder.path("run1.cdf"), runData), runFill);
}

TEST_F(Expected, OfAStampCanHaveTheZoneOfAnotherMachine) {
    const std::string slice = pairOf({});
    ASSERT_EQ(callAsHost(Merivolta2Andi, slice).result, 1);
    const Reading pair = readPair(slice);
    Reading output = readAndi(folder.path("run.cdf"));
    const auto stamp = std::ranges::find(output.entries, "injection_date_time_stamp",
                                         [](const Entry& entry) { return entry.key.name; });
    for (const auto& [zone, isExpected] :
         {std::pair{"+0200", true}, std::pair{"-1200", true}, std::pair{"+1400", true},
          std::pair{"+0545", true}, std::pair{"+0201", false}, std::pair{"-1215", false},
          std::pair{"+1415", false}, std::pair{"+0160", false}, std::pair{" 0200", false},
          std::pair{"+02", false}, std::pair{"+0a00", false}}) {
        stamp->value = std::string{"20051012083400"} + zone;
        Expectations expected = expectedOfAndi(pair, slice);
        takeZone(expected, output);
        EXPECT_EQ(unexpectedIn(expected, output).empty(), isExpected) << zone;
    }
}

} // namespace
} // namespace korlit::host
