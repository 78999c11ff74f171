// Samples brought to equal distances, and files that get them.
#include "host/data/facts.h"
#include "host/data/resampled_file.h"
#include "host/data/resampling.h"
#include "native/pair_rules.h"
#include "tests/support/andi_text.h"
#include "tests/support/signal.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace korlit::host {
namespace {

using namespace korlit::test;

TEST(Resampling, FollowsTheLinesBetweenSamples) {
    struct Case {
        Signal signal;
        std::int16_t intervalMs;
        std::vector<float> samples;
        double deviation;
    };
    for (const auto& [signal, intervalMs, samples, deviation] : std::initializer_list<Case>{
             {{{5, 7, 1}, {0, 1, 2}}, 1000, {5, 7, 1}, 0},
             {{{5, 7, 1}, {0, 1, 2}}, 500, {5, 6, 7, 4, 1}, 0},
             {{{5, 7, 1}, {0, 1, 2}}, 2000, {5, 1}, 4},                // 7 where the line has 3
             {{{0, 1, 4}, {0, 1, 4}}, 1500, {0, 1.5F, 3, 4}, 1.0 / 3}, // the last value from 4 s on
             {{{0, 4, 0}, {10, 12, 13}}, 1000, {0, 2, 4, 0}, 0},
             {{{0, 0, 8, 8}, {0, 1, 1, 2}}, 500, {0, 0, 0, 8, 8}, 8}, // a step
             {{{5, 7, 9}, {0, 0, 1}}, 1000, {7, 9}, 2},               // at the start
             {{{3, 9, 3}, {0, 0.25, 0.5}}, 1000, {3, 3}, 6},
         }) {
        const Resampling result = resampled(signal.set(), intervalMs);
        EXPECT_EQ(result.samples, samples);
        EXPECT_NEAR(result.deviation, deviation, 1e-6);
        EXPECT_NEAR(result.start, signal.times.front() / 60, 1e-12);
        EXPECT_EQ(result.intervalMs, intervalMs);
    }
}

TEST(Resampling, TakesTheMedianDistanceInWholeMilliseconds) {
    for (const auto& [times, intervalMs] :
         std::initializer_list<std::pair<std::vector<double>, int>>{{{0, 0.2, 0.4, 9}, 200},
                                                                    {{0, 0.2004, 0.4008}, 200},
                                                                    {{0, 0.0001, 0.0002}, 1},
                                                                    {{0, 60, 120}, 32767}}) {
        const Signal signal{std::vector(times.size(), 1.0), times};
        EXPECT_EQ(usualIntervalMs(signal.set()), intervalMs);
    }
}

TEST(Resampling, KeepsGapsAndRefusesWhatNoFileHolds) {
    const Signal gap{{1, NAN, 1, 1}, {0, 1, 2, 3}};
    const Resampling result = resampled(gap.set(), 500);
    ASSERT_EQ(result.samples.size(), 7U);
    for (std::size_t i = 0; i < 7; ++i) {
        EXPECT_EQ(std::isnan(result.samples[i]), i >= 1 && i <= 3) << i;
    }
    EXPECT_EQ(result.deviation, 0);
    const Signal endless{{1, 2}, {0, 1e9}};
    EXPECT_THROW(resampled(endless.set(), 1), std::runtime_error);
    const Signal lone{{1}, {5}};
    const Signal still{{1, 2}, {5, 5}};
    EXPECT_FALSE(isResampleable(lone.set()) || isResampleable(still.set()));
}

/// The area below a line between two times.
double areaBetween(const DataSet& set, double from, double to) {
    double area = 0;
    for (std::size_t i = 1; i < set.signal.size(); ++i) {
        if (set.timeOf(i - 1) >= from && set.timeOf(i) <= to) {
            area += (set.signal[i - 1] + set.signal[i]) / 2 * (set.timeOf(i) - set.timeOf(i - 1));
        }
    }
    return area;
}

TEST(Resampling, LeavesPeaksWhereTheyLie) {
    const DataSet whole = loadDataSets(SAMPLES "hplc_run.cdf").front();
    Signal uneven{{}};
    for (std::size_t i = 0; i + 1 < whole.signal.size(); ++i) {
        // A third of an interval early and late in turns.
        const double share = i % 2 == 0 ? 1.0 / 3 : 0.0;
        uneven.times.push_back((static_cast<double>(i) + share) * 0.2);
        uneven.values.push_back(between(whole.signal[i], whole.signal[i + 1], share));
    }
    const Resampling result = resampled(uneven.set(), 200);
    DataSet even;
    even.signal = {AndiType::Float, result.samples.data(), result.samples.size()};
    even.samplingInterval = 0.2 / 60;
    even.delayTime = result.start;
    ASSERT_EQ(whole.peaks.size(), 11U);
    for (const Peak& peak : whole.peaks) {
        const double area = areaBetween(uneven.set(), *peak.startTime, *peak.endTime);
        EXPECT_NEAR(areaBetween(even, *peak.startTime, *peak.endTime), area, area * 0.001)
            << peak.name;
    }
}

class Resampled : public testing::Test {
  protected:
    /// full.cdl's file with the times of its samples counting, in a unit of seven letters.
    std::string unevenFile(const std::string& unit) const {
        std::string bytes = readFile(TEST_DATA "full.cdf");
        for (const auto& [from, to] : {std::pair{layOut("'uniform_sampling_flag' 2 1 \"Y\""),
                                                 layOut("'uniform_sampling_flag' 2 1 \"N\"")},
                                       std::pair{std::string{"seconds"}, unit}}) {
            bytes.replace(bytes.find(from), to.size(), to);
        }
        return folder.write("uneven.cdf", bytes);
    }

    TempFolder folder;
};

std::string bytesOf(const AndiVariable& variable) {
    return {static_cast<const char*>(variable.Data), static_cast<std::size_t>(variable.VSize)};
}

TEST_F(Resampled, FilesKeepAllThatIsNotOfTheSamples) {
    const std::string file = unevenFile("seconds");
    const auto made = writeResampled(file, 1000, folder.path("made.cdf"));
    ASSERT_TRUE(made);
    EXPECT_EQ(made->oldCount, 4U);
    EXPECT_EQ(made->newCount, 7U); // from 3 s to 9 s
    AndiImage before;
    AndiImage after;
    ASSERT_EQ(load(before, file) + load(after, folder.path("made.cdf")), "");
    EXPECT_EQ(numbersOf(variableOf(after, "ordinate_values"))[1], 15);
    for (const AndiVariable& old : variablesOf(before)) {
        const AndiVariable* copy = variableNamed(after, old.Name);
        const std::string name = old.Name;
        if (name == "raw_data_retention" || name == "actual_sampling_interval") {
            EXPECT_EQ(copy, nullptr) << name;
        } else if (name != "ordinate_values") {
            ASSERT_NE(copy, nullptr) << name;
            EXPECT_EQ(copy->Type, old.Type) << name;
            EXPECT_EQ(bytesOf(*copy), bytesOf(old)) << name;
        }
    }
    EXPECT_EQ(variablesOf(before).size(), 29U);
    EXPECT_EQ(variablesOf(after).size(), 27U);
    for (const AndiAttribute& old : attributesOf(before.file.GlobalAttributes)) {
        EXPECT_EQ(textOf(after, old.Name), textOf(old)) << old.Name;
    }
    EXPECT_EQ(textOf(after, "autosampler_position"), "1-2");
    EXPECT_EQ(textOf(after, "uniform_sampling_flag"), "Y");
    EXPECT_FALSE(writeResampled(folder.path("made.cdf"), 1000, folder.path("again.cdf")));
    EXPECT_FALSE(std::filesystem::exists(folder.path("again.cdf")));
}

TEST_F(Resampled, FilesSayTheirUnitWhereTheirSourceDoesNot) {
    std::string bytes = readFile(unevenFile("seconds"));
    bytes[bytes.find("retention_unit")] = 'x';
    ASSERT_TRUE(writeResampled(folder.write("x.cdf", bytes), 1000, folder.path("made.cdf")));
    EXPECT_EQ(loadDataSets(folder.path("made.cdf")).front().text("retention_unit"), "seconds");
}

TEST_F(Resampled, FilesHaveTheVeryIntervalThatWasAskedFor) {
    for (const std::string unit : {"seconds", "minutes"}) {
        const std::string file = unevenFile(unit);
        for (const std::int16_t ms : std::initializer_list<std::int16_t>{
                 1, 3, 7, 100, 333, 699, 700, 1001, 9999, 32766, 32767}) {
            ASSERT_TRUE(writeResampled(file, ms, folder.path("made.cdf"))) << ms;
            const DataSet set = loadDataSets(folder.path("made.cdf")).front();
            EXPECT_NEAR(set.samplingInterval * 60000, ms, ms * 2.5e-7) << unit;
            EXPECT_EQ(pairTimes(*textOf(*set.image, "actual_sampling_interval"), unit).intervalMs,
                      ms);
        }
    }
}

} // namespace
} // namespace korlit::host
