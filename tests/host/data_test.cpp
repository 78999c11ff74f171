// Numbers where they lie, data sets as they are read and staged, and what is worked out of them.
#include "host/data/data_set.h"
#include "host/data/facts.h"
#include "host/files/staging.h"
#include "host/manifest/file_facts.h"
#include "tests/support/andi_text.h"
#include "tests/support/run_text.h"
#include "tests/support/signal.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <numeric>

namespace korlit::host {
namespace {

using namespace korlit::test;

constexpr float noNumber = std::numeric_limits<float>::quiet_NaN();
constexpr float infinite = std::numeric_limits<float>::infinity();

NumberView viewOf(const std::vector<float>& numbers) {
    return {AndiType::Float, numbers.data(), numbers.size()};
}

TEST(Numbers, AreTheSameInMemoryAndInAFileAndInPartsOfParts) {
    // Twice as many as are read at once, and some.
    std::vector<float> numbers(10'000);
    std::iota(numbers.begin(), numbers.end(), 1.0F);
    std::string bytes = "head";
    for (const float each : numbers) {
        bytes.append(reinterpret_cast<const char*>(&each), sizeof each);
    }
    const TempFolder folder;
    const OpenFile file{folder.write("floats", bytes), OpenFile::Use::Read};
    const FloatsInFile floats{.file = &file, .place = 4};
    for (const NumberView& whole : {viewOf(numbers), NumberView{floats, numbers.size()}}) {
        const NumberView part = whole.part(100, 9'000).part(11, 8'500);
        for (const auto& [view, first] : {std::pair{whole, 1.0}, std::pair{part, 112.0}}) {
            std::vector<double> copied(view.size() - 3);
            view.copy(3, copied);
            for (std::size_t i = 0; i < copied.size(); ++i) {
                ASSERT_EQ(copied[i], first + 3.0 + static_cast<double>(i));
            }
            EXPECT_EQ(view[view.size() - 1], first + static_cast<double>(view.size()) - 1);
        }
    }
    const NumberView beyond{floats, numbers.size() + 1};
    EXPECT_EQ(beyond[numbers.size() - 1], 10'000);
    EXPECT_THROW(beyond[numbers.size()], std::runtime_error);
    EXPECT_TRUE((NumberView{AndiType::Char, "text", 4}.empty()));
    EXPECT_TRUE((NumberView{AndiType::Float, nullptr, 4}.empty()));
}

TEST(Images, LeaveOutMassSpectraAndAllDataWhereOnlyTheHeaderIsAskedFor) {
    const TempFolder folder;
    for (const auto& [name, isLoaded] :
         {std::pair{"mass_values", false}, std::pair{"intensity_values", false},
          std::pair{"time_values", false}, std::pair{"total_intensity", true}}) {
        const AndiText file{.variables = "11 2 'ordinate_values' 1 0 0 0 5 12 1024 '" +
                                         std::string{name} + "' 1 0 0 0 5 12 1024"};
        const std::string path = folder.write("x.cdf", file.bytes());
        AndiImage image;
        AndiImage header;
        ASSERT_EQ(load(image, path) + loadHeader(header, path), "");
        EXPECT_EQ(variableNamed(image, name)->Data != nullptr, isLoaded) << name;
        EXPECT_EQ(numbersOf(variableNamed(image, "ordinate_values"))[2], 6);
        EXPECT_EQ(variableNamed(header, name)->Data, nullptr) << name;
        EXPECT_EQ(variableNamed(header, name)->ElementCount, 3) << name;
    }
}

/// A file of the samples 5, 7 and 6 with a variable of the data besides, from 1036 on.
AndiText withVariable(const std::string& variable, const std::string& data,
                      const std::string& globals = "0 0") {
    return {.globals = globals,
            .variables = "11 2 'ordinate_values' 1 0 0 0 5 12 1024 " + variable,
            .data = "5f 7f 6f " + data};
}

DataSet dataSetOf(const AndiText& file) {
    const TempFolder folder;
    return loadDataSets(folder.write("x.cdf", file.bytes())).front();
}

TEST(DataSets, HaveTimesThatAscendOneForEachSample) {
    const std::string uneven = oneText("uniform_sampling_flag", "N");
    for (const auto& [data, areTaken] :
         {std::pair{"1f 2f 2f", true}, std::pair{"-1f 0f 3f", true}, std::pair{"1f 2f 1.5f", false},
          std::pair{"2f 1f 3f", false}, std::pair{"nanf 1f 2f", false},
          std::pair{"1f 2f inff", false}}) {
        const char* times = "'raw_data_retention' 1 0 0 0 5 12 1036";
        EXPECT_EQ(dataSetOf(withVariable(times, data, uneven)).times.size(), areTaken ? 3U : 0U)
            << data;
        EXPECT_TRUE(dataSetOf(withVariable(times, data)).times.empty());
    }
    AndiText file = withVariable("'raw_data_retention' 1 1 0 0 5 8 1036", "1f 2f", uneven);
    file.dimensions = "10 2 'point_number' 3 'two' 2";
    EXPECT_TRUE(dataSetOf(file).times.empty());
}

TEST(DataSets, HaveIntervalsOfWholeMillisecondsWhereAFloatCanBeThat) {
    for (const auto& [unit, interval, ms] :
         {std::tuple{"seconds", "0.2f", 200.0}, std::tuple{"seconds", "0.0333f", 33.3},
          std::tuple{"seconds", "32.767f", 32767.0}, std::tuple{"minutes", "0.001f", 60.0},
          std::tuple{"minutes", "0.00333333f", 199.9998}, std::tuple{"seconds", "0f", 0.0}}) {
        const double minutes = dataSetOf(withVariable("'actual_sampling_interval' 0 0 0 5 4 1036",
                                                      interval, oneText("retention_unit", unit)))
                                   .samplingInterval;
        EXPECT_NEAR(minutes, ms / 60000, ms == std::round(ms) ? 0 : ms * 1e-7 / 60000) << interval;
    }
}

TEST(DataSets, HaveAPeakForEachNameOrTime) {
    AndiText file = withVariable("'peak_name' 2 0 1 0 0 2 6 1036", "\"ab__c_\"");
    file.dimensions = "10 2 'point_number' 3 'length' 2";
    const DataSet set = dataSetOf(file);
    ASSERT_EQ(set.peaks.size(), 3U);
    EXPECT_EQ(set.peaks[0].name, "ab");
    EXPECT_EQ(set.peaks[2].name, "c_");
    EXPECT_FALSE(set.peaks[0].retentionTime);
    const DataSet timed =
        dataSetOf(withVariable("'peak_retention_time' 1 0 0 0 5 12 1036", "60f 120f 180f"));
    ASSERT_EQ(timed.peaks.size(), 3U);
    EXPECT_EQ(timed.peaks[2].retentionTime, 3);
    EXPECT_EQ(timed.peaks[2].name, "");
}

TEST(DataSets, OfAMassSpectrometerTakeOtherNamesWhereTheUsualOnesAreMissing) {
    const std::string title = "'experiment_title' 2 1 \"T\"";
    for (const auto& [globals, sample, count] :
         {std::tuple{"12 1 " + title, "T", 2U},
          std::tuple{"12 2 " + title + " 'sample_name' 2 1 \"S\"", "S", 2U},
          std::tuple{"12 2 " + title + " 'sample_name' 2 0", "T", 2U}}) {
        const DataSet set = dataSetOf(
            {.globals = globals, .variables = "11 1 'total_intensity' 1 0 0 0 5 12 1024"});
        EXPECT_TRUE(set.isTotalIon && !set.isUniform && set.times.empty());
        EXPECT_EQ(set.signal[1], 7);
        EXPECT_EQ(set.text("sample_name"), sample);
        EXPECT_EQ(set.texts.size(), count);
    }
}

TEST(Staging, NamesTheSourceHoweverLongTheStagedNameIs) {
    const TempFolder folder;
    const std::string source = folder.write("x.run", RunText{}.bytes());
    for (std::size_t length = source.size() - 4; length < source.size() + 4; ++length) {
        const TempFolder stage;
        const std::string stem(length - std::strlen(".run"), 's');
        const Plan plan = planFor(source, FileKind::Dunvale, folder.path(""), stem);
        const StagedResult result = convertStaged(plan, stage.path(""));
        EXPECT_TRUE(result.isConverted) << result.message;
        EXPECT_EQ(result.points, 6);
        EXPECT_EQ(result.peaks, 2);
        const DataSet set = loadDataSets(stage.path(stem + "1.cdf")).front();
        EXPECT_EQ(set.text("source_file_reference"), source);
        EXPECT_EQ(set.signal[2], 12); // by its factor
        EXPECT_EQ(set.peaks[1].retentionTime, 1.5);
    }
}

TEST(Facts, AreOfTheSamplesThatCount) {
    using Found = std::optional<Extremes>;
    for (const auto& [samples, all, finite] :
         std::initializer_list<std::tuple<std::vector<float>, Found, Found>>{
             {{}, {}, {}},
             {{noNumber, noNumber}, {}, {}},
             {{noNumber, 3}, {{1, 1}}, {{1, 1}}},
             {{2, 1, 3, 1, 3}, {{1, 2}}, {{1, 2}}}, // the first of each
             {{-1, infinite, noNumber, -infinite, 0}, {{3, 1}}, {{0, 4}}},
             {{0, -0.0F}, {{0, 0}}, {{0, 0}}},
         }) {
        EXPECT_EQ(extremesOf(viewOf(samples)), all);
        EXPECT_EQ(extremesOf(viewOf(samples), [](double each) { return std::isfinite(each); }),
                  finite);
    }
}

TEST(Facts, AreOfTheTimesThatAFileHas) {
    const std::vector<float> times{60, 61, 63, 63, 69};
    constexpr std::array medians{0, 0, 1, 2, 1, 2}; // seconds; of two in the middle the longer
    for (std::size_t count = 0; count < medians.size(); ++count) {
        DataSet set;
        set.isUniform = false;
        set.times = viewOf(times).part(0, count);
        set.minutesPerTime = 1.0 / 60;
        EXPECT_NEAR(medianInterval(set) * 60, medians.at(count), 1e-9) << count;
        EXPECT_EQ(hasTimes(set), count > 0);
    }
    for (const auto& [interval, delay, isGood] :
         {std::tuple{0.1, -1.0, true}, std::tuple{0.0, 0.0, false}, std::tuple{-0.1, 0.0, false},
          std::tuple{double{noNumber}, 0.0, false}, std::tuple{HUGE_VAL, 0.0, false},
          std::tuple{0.1, double{noNumber}, false}}) {
        DataSet set;
        set.samplingInterval = interval;
        set.delayTime = delay;
        EXPECT_EQ(hasTimes(set), isGood) << interval << ' ' << delay;
        set.isUniform = false;
        EXPECT_FALSE(hasTimes(set));
    }
}

TEST(Facts, OfARecordAreOfTheFirstSampleAndTheEnd) {
    const Signal signal{{noNumber, 5, HUGE_VAL, -2}, {60, 90, 120, 180}};
    const DataSet uneven = signal.set();
    DataSet even = uneven;
    even.texts = {{"sample_name", "S"}, {"injection_date_time_stamp", "20240229120000+0100"}};
    even.isUniform = true;
    even.times = {};
    even.samplingInterval = 0.5;
    even.delayTime = 3;
    DataSet timeless = uneven;
    timeless.times = {};
    timeless.signal = uneven.signal.part(0, 1);
    FileRecord record;
    describe(record, {even, uneven, timeless});
    EXPECT_EQ(record.sample, "S");
    EXPECT_EQ(record.date, "2024-02-29T12:00:00+01:00");
    ASSERT_EQ(record.channels.size(), 3U);
    EXPECT_EQ(record.channels[0].times, (std::pair{3.0, 5.0}));
    EXPECT_EQ(record.channels[0].values, (std::pair{-2.0, 5.0}));
    EXPECT_EQ(record.channels[1].times, (std::pair{1.0, 3.0}));
    EXPECT_EQ(record.channels[2].times, std::nullopt);
    EXPECT_EQ(record.channels[2].values, std::nullopt);
    EXPECT_EQ(record.channels[2].number, 3);
}

} // namespace
} // namespace korlit::host
