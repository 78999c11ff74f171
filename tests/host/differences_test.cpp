// In what data sets differ, from either side.
#include "host/compare/differences.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>

namespace korlit::host {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

/// A data set that has everything, and its samples.
struct Compared {
    std::vector<double> samples{1, 2, 8, nan};
    DataSet set;

    explicit Compared(const std::function<void(Compared&)>& alter) {
        set.samplePosition = "1-2";
        set.detectorUnit = "mAU";
        set.samplingInterval = 0.5;
        set.delayTime = 2;
        set.texts = {{"sample_name", "S"}, {"operator_name", "O"}};
        set.peaks = {peak("a"), peak("b")};
        alter(*this);
        set.signal = {AndiType::Double, samples.data(), samples.size()};
    }

    static Peak peak(const char* name) {
        Peak peak;
        peak.name = name;
        peak.startCode = "B";
        peak.stopCode = "V";
        double value = 0;
        for (const PeakNumber& number : peakNumbers()) {
            peak.*number.value = ++value;
        }
        return peak;
    }
};

/// Tells of B what is told of A, and the other way round.
void mirror(nlohmann::json& json) {
    std::swap(json["a"], json["b"]);
    if (json.contains("only_in")) {
        json["only_in"] = json["only_in"] == "a" ? "b" : "a";
    }
}

/// All differences but for the clock, which is that of A, in some order; mirrored once or twice, so
/// that the members are the same either way.
std::multiset<std::string> linesOf(const std::vector<Difference>& differences, int mirrorings) {
    std::multiset<std::string> lines;
    for (const Difference& each : differences) {
        nlohmann::json json = each.json;
        json.erase("time_min");
        for (int i = 0; i < mirrorings; ++i) {
            mirror(json);
        }
        lines.insert(json.dump());
    }
    return lines;
}

std::string wordsOf(const std::vector<Difference>& differences) {
    std::string words;
    for (const Difference& each : differences) {
        words += (words.empty() ? "" : "; ") + each.words;
    }
    return words;
}

using Alteration = std::function<void(Compared&)>;

TEST(Differences, AreTheSameFromBothSides) {
    const auto samples = [](const std::vector<double>& values) -> Alteration {
        return [=](Compared& b) { b.samples = values; };
    };
    const auto with = [](auto DataSet::*member, auto value) -> Alteration {
        return [=](Compared& b) { b.set.*member = value; };
    };
    const auto peak = [](std::size_t i, auto Peak::*member, auto value) -> Alteration {
        return [=](Compared& b) { b.set.peaks[i].*member = value; };
    };
    struct Case {
        Alteration change;
        const char* words;
    };
    for (const auto& [change, words] : std::initializer_list<Case>{
             {samples({1, 2, 8, nan}), ""},
             {samples({1, 3, 8, nan}),
              "signal: samples that differ: 1 of 4, the most at sample 1 (2.5 min) by 1: A 2, B 3"},
             // The first of those that are furthest apart; one that is no number is further still.
             {samples({1, 4, 10, nan}),
              "signal: samples that differ: 2 of 4, the most at sample 1 (2.5 min) by 2: A 2, B 4"},
             {samples({nan, 1e300, nan, nan}),
              "signal: samples that differ: 3 of 4, the most at sample 0 (2 min) by inf: A 1, B "
              "nan"},
             {samples({}), "signal: points: A 4, B 0"},
             {with(&DataSet::isUniform, false), "signal: uniform_sampling_flag: A \"Y\", B \"N\""},
             {with(&DataSet::samplingInterval, 0.25),
              "signal: actual_sampling_interval: A 0.5 min, B 0.25 min"},
             {with(&DataSet::delayTime, 2.000001), ""},
             {with(&DataSet::delayTime, 2.00001),
              "signal: actual_delay_time: A 2 min, B 2.00001 min"},
             {with(&DataSet::peaks, std::vector{Compared::peak("a")}), "peaks: count: A 2, B 1"},
             {peak(1, &Peak::name, "c"), "peak 2: peak_name: A \"b\", B \"c\""},
             {peak(0, &Peak::startCode, "V"),
              "peak 1: peak_start_detection_code: A \"B\", B \"V\""},
             {peak(0, &Peak::stopCode, ""), "peak 1: peak_stop_detection_code: A \"V\", B \"\""},
             {[](Compared& b) { b.set.peaks[0].stopCode = b.set.peaks[1].stopCode = ""; },
              "peaks: peak_stop_detection_code: only in A"},
             {peak(0, &Peak::area, std::nullopt), "peak 1: peak_area: only in A"},
             {[](Compared& b) { b.set.peaks[0].area = b.set.peaks[1].area = {}; },
              "peaks: peak_area: only in A"},
             {peak(1, &Peak::retentionTime, 1.0000009), ""},
             {peak(1, &Peak::retentionTime, 1.5),
              "peak 2: peak_retention_time: A 1 min, B 1.5 min"},
             {peak(1, &Peak::amount, 2.0000009), "peak 2: peak_amount: A 2, B 2.0000009"},
             {peak(1, &Peak::area, nan), "peak 2: peak_area: A 5, B nan"},
             {with(&DataSet::detectorUnit, "V"), "texts: detector_unit: A \"mAU\", B \"V\""},
             {with(&DataSet::samplePosition, ""), "texts: autosampler_position: A \"1-2\", B \"\""},
             {[](Compared& b) { b.set.texts[1].second = "P\x1B"; },
              "texts: operator_name: A \"O\", B \"P\xEF\xBF\xBD\""},
             {[](Compared& b) { b.set.texts.pop_back(); },
              "texts: operator_name: only in A: \"O\""},
             {[](Compared& b) { std::ranges::reverse(b.set.texts); }, ""},
             // Of the file, not of the data.
             {[](Compared& b) {
                  for (const char* name : {"source_file_reference", "retention_unit",
                                           "detector_unit", "autosampler_position"}) {
                      b.set.texts.emplace_back(name, "x");
                  }
              },
              ""},
         }) {
        const Compared a{[](Compared&) {}};
        const Compared b{change};
        const auto forwards = differencesOf(a.set, b.set, {});
        EXPECT_EQ(wordsOf(forwards), words);
        EXPECT_EQ(linesOf(forwards, 2), linesOf(differencesOf(b.set, a.set, {}), 1)) << words;
        EXPECT_EQ(wordsOf(differencesOf(b.set, b.set, {})), "");
        // Each is of its part, and of no other.
        std::size_t count = 0;
        for (const char* part : {parts::signal, parts::peaks, parts::texts}) {
            count += differencesOf(a.set, b.set, {.parts = {part}, .tolerance = {}}).size();
        }
        EXPECT_EQ(count, forwards.size()) << words;
        EXPECT_TRUE(differencesOf(a.set, b.set, {.parts = {}, .tolerance = {}}).empty());
    }
}

TEST(Differences, AreNoneUpToTheTolerance) {
    struct Case {
        Tolerance tolerance;
        double time, area, last; ///< the last is a sample; where the other has 4, 4 and 8
        std::size_t count;
    };
    for (const Case& each : std::initializer_list<Case>{
             {{}, 4, 4, 8, 0},
             {{}, 4.000003, 4.000003, 8.000003, 2},
             {{.relative = 0.2}, 5, 5, 10, 0},
             {{.relative = 0.199}, 5, 5, 10, 3},
             {{.absolute = 1}, 5, 3, 9, 0},
             {{.absolute = 1}, 5, 3, 10, 1},
             {{.absolute = 0.999}, 5, 3, 9, 3},
             {{.relative = 0.2, .absolute = 0.1}, 5, 5, 10, 0}, // the wider counts
             {{.absolute = 1e9}, nan, 4, nan, 2},
         }) {
        const auto at4 = [](Compared& a) { a.set.peaks[0].endTime = a.set.peaks[0].area = 4; };
        const Compared a{at4};
        const Compared b{[&](Compared& other) {
            other.set.peaks[0].endTime = each.time;
            other.set.peaks[0].area = each.area;
            other.samples[2] = each.last;
        }};
        for (const auto& found : {differencesOf(a.set, b.set, {.tolerance = each.tolerance}),
                                  differencesOf(b.set, a.set, {.tolerance = each.tolerance})}) {
            EXPECT_EQ(found.size(), each.count) << wordsOf(found);
        }
    }
}

} // namespace
} // namespace korlit::host
