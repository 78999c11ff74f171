// Numbers where they lie, what is worked out of them, and files that get other samples.
#include "host/data/facts.h"
#include "host/data/resampled_file.h"
#include "host/manifest/file_facts.h"
#include "native/pair_rules.h"
#include "tests/support/andi_text.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <numeric>

namespace korlit::host {
namespace {

using namespace korlit::test;

constexpr float none = std::numeric_limits<float>::quiet_NaN();
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

TEST(Facts, AreOfTheSamplesThatCount) {
    using Found = std::optional<Extremes>;
    struct Case {
        std::vector<float> samples;
        Found all;
        Found finite;
    };
    for (const auto& [samples, all, finite] : std::initializer_list<Case>{
             {{}, {}, {}},
             {{none, none}, {}, {}},
             {{none, 3}, Extremes{1, 1}, Extremes{1, 1}},
             {{2, 1, 3, 1, 3}, Extremes{1, 2}, Extremes{1, 2}}, // the first of each
             {{3, 2, 1}, Extremes{2, 0}, Extremes{2, 0}},
             {{-1, infinite, none, -infinite, 0}, Extremes{3, 1}, Extremes{0, 4}},
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
          std::tuple{double{none}, 0.0, false}, std::tuple{double{infinite}, 0.0, false},
          std::tuple{0.1, double{none}, false}}) {
        DataSet set;
        set.samplingInterval = interval;
        set.delayTime = delay;
        EXPECT_EQ(hasTimes(set), isGood) << interval << ' ' << delay;
        set.isUniform = false;
        EXPECT_FALSE(hasTimes(set));
    }
}

TEST(Facts, OfARecordAreOfTheFirstSampleAndTheEnd) {
    const std::vector<float> samples{none, 5, infinite, -2};
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
    std::size_t kept = 0;
    for (const AndiVariable& old : variablesOf(before)) {
        const AndiVariable* copy = variableNamed(after, old.Name);
        const std::string name = old.Name;
        if (name == "raw_data_retention" || name == "actual_sampling_interval") {
            EXPECT_EQ(copy, nullptr) << name;
        } else if (name != "ordinate_values") {
            ++kept;
            ASSERT_NE(copy, nullptr) << name;
            EXPECT_EQ(copy->Type, old.Type) << name;
            EXPECT_EQ(bytesOf(*copy), bytesOf(old)) << name;
        }
    }
    EXPECT_EQ(kept, 26U);
    EXPECT_EQ(variablesOf(after).size(), kept + 1);
    for (const AndiAttribute& old : attributesOf(before.file.GlobalAttributes)) {
        EXPECT_EQ(textOf(after, old.Name), textOf(old)) << old.Name;
    }
    EXPECT_EQ(textOf(after, "autosampler_position"), "1-2");
    EXPECT_EQ(textOf(after, "uniform_sampling_flag"), "Y");
    EXPECT_FALSE(writeResampled(folder.path("made.cdf"), 1000, folder.path("again.cdf")));
    EXPECT_FALSE(std::filesystem::exists(folder.path("again.cdf")));
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
