#include "native/andi_to_native.h"

#include "andi/andi_reader.h"
#include "api/shared_state.h"
#include "platform/faults.h"
#include "tests/support/andi_text.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <bit>

namespace korlit {
namespace {

using namespace test;

class AndiToNativeTest : public testing::Test {
  protected:
    void TearDown() override {
        release();
        EXPECT_EQ(heldBlockCount(), 0);
    }

    void release() {
        disarmFault();
        FreeAndiFile(&TheAndiFile);
        releaseBlock(blocks.dataHandle, blocks.data);
        releaseBlock(blocks.peakHandle, blocks.peaks);
    }

    /// Maps a file, with the `nth` memory request failing if one is named; the message goes behind.
    std::string map(const AndiText& text, FaultPoint point = FaultPoint::Allocate, int nth = 0) {
        char message[400]{};
        release();
        const std::string path = folder.write("x.cdf", text.bytes());
        EXPECT_EQ(ReadAndiFile(path.c_str(), &TheAndiFile, message), 1) << message;
        armFault(point, nth);
        result = MapAndiToNative(blocks, &TheAndiFile, message);
        return message;
    }

    /// Maps a file with an interval and a unit; answers the interval in the slice header.
    int mapInterval(const std::string& interval, const std::string& unit) {
        map({.globals =
                 "12 2 'actual_sampling_interval' " + interval + " 'retention_unit' " + unit});
        return TheSliHeader.SampleIntervalMs;
    }

    TempFolder folder;
    NativeBlocks blocks{};
    int result = 0;
};

TEST_F(AndiToNativeTest, AFileWithSamplesAloneIsEnough) {
    EXPECT_EQ(map({}), "");
    SliHeader expected{};
    expected.PointCount = 3;
    expected.MinValue = 5;
    expected.MaxValue = 7;
    expected.SampleIntervalMs = 1;
    expected.FormatVersion = 1536;
    expected.ScaleFactor = 1.0;
    EXPECT_EQ(std::memcmp(&TheSliHeader, &expected, sizeof expected), 0);
    EXPECT_EQ(TheRepHeader.ReportFlags, 8213);
    EXPECT_EQ(blocks.peaks, nullptr);
    EXPECT_EQ(TheAndiFile.VariableCount, 0) << "released";
}

TEST_F(AndiToNativeTest, TurnsIntervalsIntoMilliseconds) {
    struct Case {
        const char *interval, *unit;
        int milliseconds;
    };
    const Case cases[]{{"0.2f", "Seconds", 200},   {"1f", "seconds", 1000},  {"0.7f", "s", 699},
                       {"0.05f", "Minutes", 3000}, {"0.05f", "MIN", 3000},   {"0.05f", "_min", 50},
                       {"32.7675f", "s", 32767},   {"32.768f", "s", -32768}, {"65.536f", "s", 0},
                       {"-1.5f", "s", -1499},      {"1e30f", "min", 0},      {"nanf", "min", 0}};
    for (const auto& [interval, unit, milliseconds] : cases) {
        const std::string unitText = "2 " + std::to_string(std::strlen(unit)) + " \"" + unit + '"';
        EXPECT_EQ(mapInterval(std::string{"5 1 "} + interval, unitText), milliseconds) << interval;
    }
    EXPECT_EQ(mapInterval("2 5 \"+1.5s\"", "2 1 \"s\""), 1500) << "an interval in words";
    EXPECT_EQ(mapInterval("5 1 5f", "5 0"), 5000) << "an empty unit is not the text before it";
    map({.globals = "12 1 'actual_sampling_interval' 5 1 5f"});
    EXPECT_EQ(TheSliHeader.SampleIntervalMs, 1) << "no unit";
}

TEST_F(AndiToNativeTest, ReadsPositions) {
    struct Case {
        const char* text;
        int rack, vial;
    };
    const Case cases[]{{"1-2", 1, 2},  {"3.4", 3, 4},
                       {"12", 12, 0},  {"-5", 0, 5},
                       {"A7:3", 0, 7}, {"1-vial23,B5", 1, 23},
                       {"5", 5, 0},    {"", 0, 0},
                       {"x", 0, 0},    {"32767-40000", 32767, -25536}};
    for (const auto& [text, rack, vial] : cases) {
        map({.globals = oneText("autosampler_position", text)});
        EXPECT_EQ(int{TheSliHeader.AutosamplerRack}, rack) << text;
        EXPECT_EQ(int{TheSliHeader.AutosamplerVial}, vial) << text;
    }
}

TEST_F(AndiToNativeTest, TakesTheDataSetStampFirst) {
    const std::string injection = "'injection_date_time_stamp' 2 14 \"20041231235900\"";
    map({.globals = "12 1 " + injection});
    EXPECT_STREQ(TheSliHeader.DateText, "31.12.2004");
    EXPECT_STREQ(TheSliHeader.TimeText, "23:59");
    map({.globals = "12 2 " + injection + " 'dataset_date_time_stamp' 2 4 \"2005\""});
    EXPECT_STREQ(TheResHeader.ResultDate, "00.00.2005");
    EXPECT_STREQ(TheResHeader.ResultTime, "00:00");
}

TEST_F(AndiToNativeTest, RefusesWhatIsNotUniform) {
    for (const std::string flag : {"Y", "yes", "N", "n", ""}) {
        const bool isUniform = flag.starts_with('Y') || flag.starts_with('y');
        EXPECT_EQ(map({.globals = oneText("uniform_sampling_flag", flag)}),
                  isUniform ? "" : "Data are not uniformly distributed (equidistant)");
        EXPECT_EQ(result, isUniform ? 1 : 0);
        EXPECT_EQ(TheAndiFile.VariableCount, isUniform ? 0 : 1) << "left to the caller if refused";
    }
}

TEST_F(AndiToNativeTest, BoundsThePointsByWhatIsThere) {
    struct Case {
        const char *length, *vSize, *message;
        std::uint32_t count;
        float smallest, largest;
    };
    const char* const noMemory = "Out of memory reading data";
    const Case cases[]{{"1000", "12", "", 3, -3, -1},
                       {"2", "16", "", 2, -3, -1},
                       {"536870912", "12", noMemory, 536870912, 0, 0},
                       {"-1", "12", noMemory, 0xFFFFFFFF, 0, 0},
                       {"0", "12", "No ordinate values found in Andi file", 0, 0, 0}};
    for (const auto& [length, vSize, message, count, smallest, largest] : cases) {
        const AndiText text{.dimensions = "10 1 'point_number' " + std::string{length},
                            .variables =
                                "11 1 'ordinate_values' 1 0 0 0 5 " + std::string{vSize} + " 1024",
                            .data = "-3f -1f -2f 9f"};
        EXPECT_EQ(map(text), message);
        EXPECT_EQ(TheSliHeader.PointCount, count);
        EXPECT_EQ(TheSliHeader.MinValue, smallest);
        EXPECT_EQ(TheSliHeader.MaxValue, largest);
    }
    EXPECT_EQ(map({.dimensions = "10 1 'points' 3"}), "");
    EXPECT_EQ(TheSliHeader.PointCount, 0U) << "samples without a number of points";
    EXPECT_EQ(GlobalSize(blocks.dataHandle), 4);
}

/// A file with peaks and one more variable behind the signal, whose data follow the samples.
AndiText withPeaks(std::int64_t count, const std::string& variable, const std::string& data) {
    return {.dimensions = "10 3 'point_number' 3 'width' 16 'peak_number' " + std::to_string(count),
            .variables = "11 2 'ordinate_values' 1 0 0 0 5 12 1024 " + variable + " 1036",
            .data = "5f 7f 6f " + data};
}

TEST_F(AndiToNativeTest, ReadsPeakNamesAtTheirPitch) {
    const std::string names = "\"Caffeine\" 0 0 \"0123456789abcdef\"";
    map(withPeaks(3, "'peak_name' 2 2 1 0 0 2 32", names));
    EXPECT_STREQ(blocks.peaks[0].PeakName, "Caffeine");
    EXPECT_STREQ(blocks.peaks[1].PeakName, "0123456789abcd");
    EXPECT_STREQ(blocks.peaks[2].PeakName, "") << "behind the names";
    EXPECT_EQ(blocks.peaks[2].PeakNumber, 3);
    // A vector has a name every 4 bytes, each up to its first zero byte or the variable's end.
    map(withPeaks(3, "'peak_name' 1 2 0 0 2 8", "\"Caffeineandmore\""));
    EXPECT_STREQ(blocks.peaks[0].PeakName, "Caffeine");
    EXPECT_STREQ(blocks.peaks[1].PeakName, "eine");
    EXPECT_STREQ(blocks.peaks[2].PeakName, "");
}

TEST_F(AndiToNativeTest, ReadsPeakColumnsAsFarAsTheyGo) {
    map(withPeaks(3, "'peak_height' 1 2 0 0 5 11", "1f 2f 3f"));
    EXPECT_EQ(float{blocks.peaks[1].PeakHeight}, 2.0F);
    EXPECT_EQ(float{blocks.peaks[2].PeakHeight}, 0.0F);
    AndiText text = withPeaks(1, "'peak_start_time' 1 2 0 0 5 4", "90f");
    map(text);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(float{blocks.peaks[0].PeakStartTime}), 0x3FC00001U);
    text.globals = "12 2 'actual_sampling_interval' 5 1 1f 'retention_unit' 2 3 \"min\"";
    map(text);
    EXPECT_EQ(float{blocks.peaks[0].BaselineStartTime}, 90.0F);
}

TEST_F(AndiToNativeTest, LeavesOutAPeakTableThatDoesNotFit) {
    const std::string none = "'x' 0 0 0 2 0";
    for (const std::int64_t count : {570, 571, 2147483647, 1, -1}) {
        const std::int64_t kept = count >= 1 && count <= 570 ? count : 0;
        EXPECT_EQ(map(withPeaks(count, none, "")),
                  count > 570 ? "Too many peaks in data file" : "");
        EXPECT_EQ(result, 1);
        EXPECT_EQ(TheResHeader.PeakCount, kept);
        EXPECT_EQ(TheResHeader.PeakTableCount, kept);
    }
    for (const FaultPoint point : {FaultPoint::Allocate, FaultPoint::Lock}) {
        EXPECT_EQ(map(withPeaks(2, none, ""), point, 1), "Out of memory reading data");
        EXPECT_EQ(result, 0);
        EXPECT_EQ(map(withPeaks(2, none, ""), point, 2), "Out of memory reading data file");
        EXPECT_EQ(result, 1);
        EXPECT_EQ(TheResHeader.PeakCount, 0);
    }
}

} // namespace
} // namespace korlit
