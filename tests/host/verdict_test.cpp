// Whether the verdict misses anything: every value that a conversion writes, changed in its last
// bit.
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
    std::vector<float> samples(reading.signal.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<float>(reading.signal[i]);
    }
    return samples;
}

void setSamples(Reading& reading, const std::vector<float>& samples) {
    reading.signal = {AndiType::Float, samples.data(), samples.size()};
}

std::string wordsOfUnexpected(const Expectations& expected, const Reading& output) {
    const Verdict verdict = verdictOf(expected, output, {});
    return verdict.unexpectedCount() == 1 ? "one" : std::to_string(verdict.unexpectedCount());
}

/// Changes all of an output, one thing after the other; each must be the one that isn't expected.
void changeAll(const Expectations& expected, const Reading& output) {
    ASSERT_EQ(verdictOf(expected, output, {}).words().substr(0, 10), "same data:");
    Reading changed = output;
    for (std::size_t i = 0; i < output.entries.size(); ++i) {
        changed.entries[i].value = nextTo(output.entries[i].value);
        EXPECT_EQ(wordsOfUnexpected(expected, changed), "one") << output.entries[i].key.name;
        changed.entries.erase(changed.entries.begin() + static_cast<std::ptrdiff_t>(i));
        EXPECT_EQ(wordsOfUnexpected(expected, changed), "one") << output.entries[i].key.name;
        changed.entries = output.entries;
    }
    changed.entries.push_back({.key = {.part = parts::texts, .name = "foreign"}, .value = {1.0}});
    EXPECT_EQ(wordsOfUnexpected(expected, changed), "one");
    changed.entries = output.entries;

    std::vector<float> samples = samplesOf(output);
    for (const std::size_t i : {std::size_t{0}, samples.size() / 2, samples.size() - 1}) {
        const float kept = samples[i];
        samples[i] = std::bit_cast<float>(std::bit_cast<std::uint32_t>(kept) ^ 1U);
        setSamples(changed, samples);
        EXPECT_EQ(wordsOfUnexpected(expected, changed), "one") << i;
        samples[i] = kept;
    }
    samples.pop_back();
    setSamples(changed, samples);
    EXPECT_EQ(wordsOfUnexpected(expected, changed), "one");
}

class Verdicts : public testing::Test {
  protected:
    /// A copy of a sample in the folder.
    std::string sample(const std::string& name) const {
        return folder.write(name, readFile(SAMPLES + name));
    }

    TempFolder folder;
};

TEST_F(Verdicts, MissNoBitOfAPair) {
    const std::string source = sample("hplc_run.cdf");
    ASSERT_EQ(callAsHost(Andi2Merivolta, source).result, 1);
    const Reading andi = readAndi(source);
    changeAll(expectedOfPair(andi), readPair(folder.path("hplc_run.sli")));
}

TEST_F(Verdicts, MissNoBitOfAnAndiFile) {
    const std::string source = sample("gc_run.sli");
    sample("gc_run.rpt");
    ASSERT_EQ(callAsHost(Merivolta2Andi, source).result, 1);
    const Reading pair = readPair(source);
    changeAll(expectedOfAndi(pair, source), readAndi(folder.path("gc_run.cdf")));
}

TEST_F(Verdicts, MissNoBitOfAChannel) {
    const std::string source = sample("dad_run.run");
    ASSERT_EQ(callAsHost(Dunvale2Andi, source, "").result, 1);
    for (const Reading& channel : readRun(source)) {
        changeAll(expectedOfChannel(channel, source),
                  readAndi(folder.path("dad_run" + std::to_string(channel.channel) + ".cdf")));
    }
}

TEST_F(Verdicts, MissNoBitBehindATrip) {
    const std::string source = sample("hplc_run.cdf");
    const Reading start = readAndi(source);
    ASSERT_EQ(callAsHost(Andi2Merivolta, source).result, 1);
    const std::string slice = folder.path("hplc_run.sli");
    std::filesystem::remove(source);
    ASSERT_EQ(callAsHost(Merivolta2Andi, slice).result, 1);
    const Reading back = readAndi(folder.path("hplc_run.cdf"));
    changeAll(expectedBehindTrips(start, slice, 1), back);

    const Reading pair = readPair(slice);
    ASSERT_EQ(callAsHost(Andi2Merivolta, folder.path("hplc_run.cdf")).result, 1);
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
    const std::vector<std::pair<double, double>> apart{
        {0.0, -0.0}, {NAN, 1}, {1, INFINITY}, {INFINITY, -INFINITY}};
    for (const auto& [one, other] : apart) {
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

} // namespace
} // namespace korlit::host
