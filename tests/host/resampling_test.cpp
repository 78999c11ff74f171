// Samples brought to equal distances, on their own header.
#include "host/data/facts.h"
#include "host/data/resampling.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace korlit::host {
namespace {

/// A signal that outlives the data set which looks at it.
struct Uneven {
    std::vector<double> times; ///< seconds
    std::vector<float> values;

    DataSet set() const {
        DataSet set;
        set.isUniform = false;
        set.signal = {AndiType::Float, values.data(), values.size()};
        set.times = {AndiType::Double, times.data(), times.size()};
        set.minutesPerTime = 1.0 / 60;
        return set;
    }
};

TEST(Resampling, FollowsTheLinesBetweenSamples) {
    struct Case {
        Uneven signal;
        std::int16_t intervalMs;
        std::vector<float> samples;
        double deviation;
    };
    for (const auto& [signal, intervalMs, samples, deviation] : std::initializer_list<Case>{
             {{{0, 1, 2}, {5, 7, 1}}, 1000, {5, 7, 1}, 0},
             {{{0, 1, 2}, {5, 7, 1}}, 500, {5, 6, 7, 4, 1}, 0},
             {{{0, 1, 2}, {5, 7, 1}}, 2000, {5, 1}, 4},                // 7 where the line has 3
             {{{0, 1, 4}, {0, 1, 4}}, 1500, {0, 1.5F, 3, 4}, 1.0 / 3}, // the last value from 4 s on
             {{{10, 12, 13}, {0, 4, 0}}, 1000, {0, 2, 4, 0}, 0},
             {{{0, 1, 1, 2}, {0, 0, 8, 8}}, 500, {0, 0, 0, 8, 8}, 8}, // a step
             {{{0, 0.25, 0.5}, {3, 9, 3}}, 1000, {3, 3}, 6},
         }) {
        const Resampling result = resampled(signal.set(), intervalMs);
        EXPECT_EQ(result.samples, samples);
        EXPECT_NEAR(result.deviation, deviation, 1e-6);
        EXPECT_NEAR(result.start, signal.times.front() / 60, 1e-12);
        EXPECT_EQ(result.intervalMs, intervalMs);
    }
}

TEST(Resampling, TakesTheMedianDistanceInWholeMilliseconds) {
    struct Case {
        std::vector<double> times;
        std::int16_t intervalMs;
    };
    for (const auto& [times, intervalMs] : std::initializer_list<Case>{
             {{0, 0.2, 0.4, 9}, 200},
             {{0, 0.2004, 0.4008}, 200},
             {{0, 0.0001, 0.0002}, 1},
             {{0, 60, 120}, 32767},
         }) {
        const Uneven signal{.times = times, .values = std::vector<float>(times.size(), 1)};
        EXPECT_EQ(usualIntervalMs(signal.set()), intervalMs);
    }
}

TEST(Resampling, KeepsGapsAndRefusesWhatNoFileHolds) {
    const Uneven gap{.times = {0, 1, 2, 3}, .values = {1, NAN, 1, 1}};
    const Resampling result = resampled(gap.set(), 500);
    ASSERT_EQ(result.samples.size(), 7U);
    for (std::size_t i = 0; i < 7; ++i) {
        EXPECT_EQ(std::isnan(result.samples[i]), i >= 1 && i <= 3) << i;
    }
    EXPECT_EQ(result.deviation, 0);
    const Uneven endless{.times = {0, 1e9}, .values = {1, 2}};
    EXPECT_THROW(resampled(endless.set(), 1), std::runtime_error);
    EXPECT_FALSE(isResampleable(Uneven{.times = {5}, .values = {1}}.set()));
    EXPECT_FALSE(isResampleable(Uneven{.times = {5, 5}, .values = {1, 2}}.set()));
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
    Uneven uneven;
    for (std::size_t i = 0; i + 1 < whole.signal.size(); ++i) {
        // A third of an interval early and late in turns.
        const double share = i % 2 == 0 ? 1.0 / 3 : 0.0;
        uneven.times.push_back((static_cast<double>(i) + share) * 0.2);
        uneven.values.push_back(
            static_cast<float>(between(whole.signal[i], whole.signal[i + 1], share)));
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

} // namespace
} // namespace korlit::host
