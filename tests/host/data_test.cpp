// Numbers where they lie, data sets as they are read and staged, and what is worked out of them.
#include "host/data/data_set.h"
#include "host/data/facts.h"
#include "host/files/staging.h"
#include "host/manifest/file_facts.h"
#include "host/text/wrong_use.h"
#include "tests/support/andi_text.h"
#include "tests/support/run_text.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

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
        AndiText file;
        file.variables = "11 2 'ordinate_values' 1 0 0 0 5 12 1024 '" + std::string{name} +
                         "' 1 0 0 0 5 12 1024";
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

/// A file of the samples 5, 7 and 6 with further texts and three floats of a variable besides.
AndiText withVariable(const std::string& variable, const std::string& data) {
    AndiText file;
    file.variables = "11 2 'ordinate_values' 1 0 0 0 5 12 1024 " + variable;
    file.data += " " + data;
    return file;
}

TEST(DataSets, HaveTimesThatAscendOneForEachSample) {
    const TempFolder folder;
    for (const auto& [data, areTaken] :
         std::initializer_list<std::pair<const char*, bool>>{{"1f 2f 2f", true},
                                                             {"-1f 0f 3f", true},
                                                             {"1f 2f 1.5f", false},
                                                             {"2f 1f 3f", false},
                                                             {"nanf 1f 2f", false},
                                                             {"1f 2f inff", false}}) {
        for (const char* flag : {"N", "Y"}) {
            AndiText file = withVariable("'raw_data_retention' 1 0 0 0 5 12 1036", data);
            file.globals = oneText("uniform_sampling_flag", flag);
            const DataSet set = loadDataSets(folder.write("x.cdf", file.bytes())).front();
            EXPECT_EQ(set.times.size(), areTaken && *flag == 'N' ? 3U : 0U) << flag << data;
        }
    }
    AndiText file = withVariable("'raw_data_retention' 1 1 0 0 5 8 1036", "1f 2f");
    file.dimensions = "10 2 'point_number' 3 'two' 2";
    file.globals = oneText("uniform_sampling_flag", "N");
    EXPECT_TRUE(loadDataSets(folder.write("x.cdf", file.bytes())).front().times.empty());
}

TEST(DataSets, HaveIntervalsOfWholeMillisecondsWhereAFloatCanBeThat) {
    const TempFolder folder;
    struct Case {
        const char* unit;
        const char* interval;
        double ms;
    };
    for (const auto& [unit, interval, ms] :
         std::initializer_list<Case>{{"seconds", "0.2f", 200},
                                     {"seconds", "0.0333f", 33.3},
                                     {"seconds", "32.767f", 32767},
                                     {"minutes", "0.001f", 60},
                                     {"minutes", "0.00333333f", 199.9998},
                                     {"seconds", "0f", 0}}) {
        AndiText file = withVariable("'actual_sampling_interval' 0 0 0 5 4 1036", interval);
        file.globals = oneText("retention_unit", unit);
        const DataSet set = loadDataSets(folder.write("x.cdf", file.bytes())).front();
        if (ms == std::round(ms)) {
            EXPECT_EQ(set.samplingInterval, ms / 60000) << interval;
        } else {
            EXPECT_NEAR(set.samplingInterval * 60000, ms, ms * 1e-7) << interval;
        }
    }
}

TEST(DataSets, HaveAPeakForEachNameOrTime) {
    const TempFolder folder;
    AndiText file = withVariable("'peak_name' 2 0 1 0 0 2 6 1036", "\"ab__c_\"");
    file.dimensions = "10 2 'point_number' 3 'length' 2";
    const DataSet set = loadDataSets(folder.write("x.cdf", file.bytes())).front();
    ASSERT_EQ(set.peaks.size(), 3U);
    EXPECT_EQ(set.peaks[0].name, "ab");
    EXPECT_EQ(set.peaks[2].name, "c_");
    EXPECT_FALSE(set.peaks[0].retentionTime);
    file = withVariable("'peak_retention_time' 1 0 0 0 5 12 1036", "60f 120f 180f");
    const DataSet timed = loadDataSets(folder.write("x.cdf", file.bytes())).front();
    ASSERT_EQ(timed.peaks.size(), 3U);
    EXPECT_EQ(timed.peaks[2].retentionTime, 3);
    EXPECT_EQ(timed.peaks[2].name, "");
}

TEST(DataSets, OfAMassSpectrometerTakeOtherNamesWhereTheUsualOnesAreMissing) {
    const TempFolder folder;
    const std::string title = "'experiment_title' 2 1 \"T\"";
    for (const auto& [globals, sample, count] :
         {std::tuple{"12 1 " + title, "T", 2U},
          std::tuple{"12 2 " + title + " 'sample_name' 2 1 \"S\"", "S", 2U},
          std::tuple{"12 2 " + title + " 'sample_name' 2 0", "T", 2U}}) {
        AndiText file;
        file.globals = globals;
        file.variables = "11 1 'total_intensity' 1 0 0 0 5 12 1024";
        const DataSet set = loadDataSets(folder.write("x.cdf", file.bytes())).front();
        EXPECT_TRUE(set.isTotalIon && !set.isUniform && set.times.empty());
        EXPECT_EQ(set.signal[1], 7);
        EXPECT_EQ(set.text("sample_name"), sample);
        EXPECT_EQ(set.texts.size(), count);
    }
}

TEST(DataSets, OfARunAreItsChannelsOrOneOfThem) {
    for (const int channel : {0, 1, 2, 3, 4}) {
        std::vector<DataSet> sets(3);
        for (std::size_t i = 0; i < sets.size(); ++i) {
            sets[i].kind = FileKind::Dunvale;
            sets[i].channel = static_cast<int>(i) + 1;
        }
        if (channel > 3) {
            EXPECT_THROW(pickChannel(sets, channel), WrongUse);
            continue;
        }
        pickChannel(sets, channel);
        EXPECT_EQ(sets.size(), channel == 0 ? 3U : 1U);
        EXPECT_EQ(sets.front().channel, std::max(channel, 1));
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
    struct Case {
        std::vector<float> samples;
        Found all;
        Found finite;
    };
    for (const auto& [samples, all, finite] : std::initializer_list<Case>{
             {{}, {}, {}},
             {{noNumber, noNumber}, {}, {}},
             {{noNumber, 3}, Extremes{1, 1}, Extremes{1, 1}},
             {{2, 1, 3, 1, 3}, Extremes{1, 2}, Extremes{1, 2}}, // the first of each
             {{3, 2, 1}, Extremes{2, 0}, Extremes{2, 0}},
             {{-1, infinite, noNumber, -infinite, 0}, Extremes{3, 1}, Extremes{0, 4}},
             {{0, -0.0F}, Extremes{0, 0}, Extremes{0, 0}},
         }) {
        EXPECT_EQ(extremesOf(viewOf(samples)), all);
        EXPECT_EQ(extremesOf(viewOf(samples), [](double each) { return std::isfinite(each); }),
                  finite);
    }
}

TEST(Facts, AreOfTheTimesThatAFileHas) {
    const std::vector<float> times{60, 61, 63, 63, 69};
    struct Case {
        std::size_t count; ///< of the times in seconds
        double median;     ///< seconds; of two in the middle the longer
    };
    for (const auto& [count, median] :
         std::initializer_list<Case>{{0, 0}, {1, 0}, {2, 1}, {3, 2}, {4, 1}, {5, 2}}) {
        DataSet set;
        set.isUniform = false;
        set.times = viewOf(times).part(0, count);
        set.minutesPerTime = 1.0 / 60;
        EXPECT_NEAR(medianInterval(set) * 60, median, 1e-9) << count;
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
    const std::vector<float> samples{noNumber, 5, infinite, -2};
    const std::vector<float> times{60, 90, 120, 180};
    DataSet even;
    even.texts = {{"sample_name", "S"}, {"injection_date_time_stamp", "20240229120000+0100"}};
    even.signal = viewOf(samples);
    even.samplingInterval = 0.5;
    even.delayTime = 3;
    DataSet uneven = even;
    uneven.isUniform = false;
    uneven.times = viewOf(times);
    uneven.minutesPerTime = 1.0 / 60;
    DataSet timeless = even;
    timeless.isUniform = false;
    timeless.signal = viewOf(samples).part(0, 1);
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
    FileRecord ofOne;
    describe(ofOne, {even});
    EXPECT_EQ(ofOne.channels[0].number, 0);
}

} // namespace
} // namespace korlit::host
