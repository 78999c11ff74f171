// Whether the verdict misses anything: every value that a conversion writes, changed in its last
// bit.
#include "host/convert/verification.h"
#include "host/proof/change_rules.h"
#include "host/proof/trip.h"
#include "host/proof/verdict.h"
#include "tests/support/host_call.h"
#include "tests/support/run_text.h"
#include "tests/support/temp_folder.h"

#include <bit>

namespace korlit::host {
namespace {

using namespace korlit::test;

/// A number with another last bit, a text with another last character.
Value nextTo(const Value& value) {
    if (const auto* number = std::get_if<double>(&value)) {
        return std::bit_cast<double>(std::bit_cast<std::uint64_t>(*number) ^ 1);
    }
    std::string text = std::get<std::string>(value);
    if (text.empty()) {
        return std::string{' '};
    }
    text.back() = static_cast<char>(text.back() ^ 1);
    return text;
}

std::vector<float> samplesOf(const Reading& reading) {
    std::vector<float> samples;
    for (std::size_t i = 0; i < reading.signal.size(); ++i) {
        samples.push_back(static_cast<float>(reading.signal[i]));
    }
    return samples;
}

void setSamples(Reading& reading, const std::vector<float>& samples) {
    reading.signal = {AndiType::Float, samples.data(), samples.size()};
}

void expectOneUnexpected(const Expectations& expected, const Reading& output) {
    EXPECT_EQ(verdictOf(expected, output, {}).unexpectedCount(), 1U);
}

/// Changes all of an output, one thing after the other; each must be the one that isn't expected.
void changeAll(const Expectations& expected, const Reading& output) {
    ASSERT_EQ(verdictOf(expected, output, {}).words().substr(0, 10), "same data:");
    Reading changed = output;
    for (std::size_t i = 0; i < output.entries.size(); ++i) {
        SCOPED_TRACE(output.entries[i].key.name);
        changed.entries[i].value = nextTo(output.entries[i].value);
        expectOneUnexpected(expected, changed);
        changed.entries.erase(changed.entries.begin() + static_cast<std::ptrdiff_t>(i));
        expectOneUnexpected(expected, changed);
        changed.entries = output.entries;
    }
    changed.entries.push_back({.key = {.part = parts::texts, .name = "foreign"}, .value = {1.0}});
    expectOneUnexpected(expected, changed);
    changed.entries = output.entries;

    std::vector<float> samples = samplesOf(output);
    for (const std::size_t i : {std::size_t{0}, samples.size() / 2, samples.size() - 1}) {
        SCOPED_TRACE(i);
        const float kept = samples[i];
        samples[i] = std::bit_cast<float>(std::bit_cast<std::uint32_t>(kept) ^ 1U);
        setSamples(changed, samples);
        expectOneUnexpected(expected, changed);
        samples[i] = kept;
    }
    samples.pop_back();
    setSamples(changed, samples);
    expectOneUnexpected(expected, changed);
}

class Verdicts : public testing::Test {
  protected:
    /// A copy of a sample in the folder, converted.
    std::string converted(Export conversion, const std::string& name) const {
        std::string source = folder.write(name, readFile(SAMPLES + name));
        EXPECT_EQ(callAsHost(conversion, source, "").result, 1);
        return source;
    }

    TempFolder folder;
    std::string andi = folder.path("hplc_run.cdf");
    std::string slice = folder.path("hplc_run.sli");
};

TEST_F(Verdicts, MissNoBitOfAPair) {
    converted(Andi2Merivolta, "hplc_run.cdf");
    changeAll(expectedOfPair(readAndi(andi)), readPair(slice));
}

TEST_F(Verdicts, MissNoBitOfAnAndiFile) {
    folder.write("gc_run.rpt", readFile(SAMPLES "gc_run.rpt"));
    const std::string source = converted(Merivolta2Andi, "gc_run.sli");
    changeAll(expectedOfAndi(readPair(source), source), readAndi(folder.path("gc_run.cdf")));
}

TEST_F(Verdicts, MissNoBitOfAChannel) {
    const std::string source = converted(Dunvale2Andi, "dad_run.run");
    for (const Reading& channel : readRun(source)) {
        changeAll(expectedOfChannel(channel, source),
                  readAndi(folder.path("dad_run" + std::to_string(channel.channel) + ".cdf")));
    }
}

TEST_F(Verdicts, MissNoBitBehindATrip) {
    converted(Andi2Merivolta, "hplc_run.cdf");
    const Reading start = readAndi(andi);
    const Reading pair = readPair(slice);
    std::filesystem::remove(andi);
    ASSERT_EQ(callAsHost(Merivolta2Andi, slice).result, 1);
    changeAll(expectedBehindTrips(start, slice, 1), readAndi(andi));
    ASSERT_EQ(callAsHost(Andi2Merivolta, andi).result, 1);
    changeAll(expectedBehindTrips(pair, slice, 1), readPair(slice));
}

TEST_F(Verdicts, MissNoByteOfAHeader) {
    const std::string source = folder.write("run.dat", RunText{}.bytes());
    ASSERT_EQ(callAsHost(Dunvale2Andi, source, "").result, 1);
    const Expectations expected = expectedOfChannel(readRun(source).front(), source);
    const std::string file = folder.path("run1.cdf");
    const std::string bytes = readFile(file);
    const std::size_t dataStart = bytes.find("Caffeine") - 6 * sizeof(float);
    for (std::size_t at = 0; at < dataStart; ++at) {
        std::string changed = bytes;
        changed[at] = static_cast<char>(changed[at] ^ 0x40);
        folder.write("run1.cdf", changed);
        try {
            EXPECT_FALSE(verdictOf(expected, readAndi(file), {}).isSame()) << at;
        } catch (const std::runtime_error&) {
            // It can't be read at all.
        }
    }
}

TEST_F(Verdicts, HoldWhatIsNoNumberAndTheSignOfZeroToTheBit) {
    for (const auto& [one, other] :
         {std::pair<double, double>{0.0, -0.0}, {NAN, 1}, {1, INFINITY}, {INFINITY, -INFINITY}}) {
        EXPECT_FALSE(areClose(Value{one}, Value{other}, {}));
        EXPECT_TRUE(areClose(Value{other}, Value{other}, {}));
    }
    struct Distance {
        double a, b;
        Tolerance tolerance;
        bool isClose;
    };
    for (const auto& [a, b, tolerance, isClose] :
         std::vector<Distance>{{0, 1e-9, {.relative = 0.5}, false},
                               {0, 1e-9, {.absolute = 1e-9}, true},
                               {0, 2e-9, {.absolute = 1e-9}, false},
                               {8, 10, {.relative = 0.2}, true},
                               {8, 10, {.relative = 0.19, .absolute = 1.9}, false},
                               {8, 10, {.relative = 0.19, .absolute = 2}, true},
                               {NAN, 10, {.relative = 2, .absolute = 100}, false},
                               {INFINITY, 10, {.relative = 2, .absolute = 100}, false}}) {
        EXPECT_EQ(areClose(a, b, tolerance), isClose) << a << ' ' << b;
        EXPECT_EQ(areClose(b, a, tolerance), isClose) << b << ' ' << a;
    }
}

TEST(RecordedVerdicts, HoldTheFirstHundredOfWhatIsUnexpected) {
    for (const std::size_t count : {1U, 100U, 101U}) {
        Verdict verdict;
        for (std::size_t i = 1; i <= count; ++i) {
            verdict.changes.push_back({.part = parts::texts, .rule = &changes::noPlace});
            verdict.addUnexpected(std::to_string(i), {{"part", parts::texts}});
        }
        const std::vector<std::string> kept = recorded(verdict).unexpected;
        ASSERT_EQ(kept.size(), std::min<std::size_t>(count, 100));
        EXPECT_EQ(kept.back(), std::to_string(kept.size()));
    }
}

} // namespace
} // namespace korlit::host
