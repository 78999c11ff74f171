#include "dunvale/run_file.h"

#include "dunvale/run_extent.h"
#include "tests/support/module_test.h"
#include "tests/support/run_text.h"

namespace korlit {
namespace {

using RunFile = test::ModuleTest;

TEST_F(RunFile, TheVersionDecidesTheSizesOfItsBlocks) {
    struct Case {
        const char* version;
        bool hasAmount, hasExtraTable;
        int timeTableSize, lineSize;
    };
    // Each constant with its neighbours, then what is above, below or no number at all.
    const Case cases[]{
        {"409FFFFF", false, false, 1552, 522}, {"40A00000", false, false, 1552, 522},
        {"40A00001", true, false, 1552, 522},  {"40A05364", true, false, 1552, 522},
        {"40A05365", true, false, 1552, 522},  {"40A05366", true, false, 1552, 1202},
        {"40A0A3D6", true, false, 1552, 1202}, {"40A0A3D7", true, false, 1618, 1202},
        {"40A0A3D8", true, false, 1618, 1202}, {"40A0A42A", true, false, 1618, 1202},
        {"40A0A42B", true, false, 1620, 1202}, {"40A0A42C", true, false, 1620, 1202},
        {"40A0A469", true, false, 1620, 1202}, {"40A0A46A", true, true, 1620, 1202},
        {"40A0A46B", true, true, 1620, 1202},  {"7F800000", true, true, 1620, 1202},
        {"00000000", false, false, 1552, 522}, {"C0A0A46B", false, false, 1552, 522},
        {"7FC00000", false, false, 1552, 522}, {"FFC00000", false, false, 1552, 522}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.version);
        test::RunText file;
        file.version = std::string{"x"} + each.version;
        if (!each.hasAmount) {
            file.results = "0s 2s 5s 0.5f 0f 1f 120f 6f 1.5f 1f 2.5f 60f 5f";
        }
        if (!each.hasExtraTable) {
            file.extra = "";
        }
        const std::string line = "r" + std::to_string(each.lineSize);
        file.lines = line + " " + line;
        file.timeTable = "r1548 2s 257s";
        if (each.timeTableSize > 1552) {
            file.timeTable += " r" + std::to_string(each.timeTableSize - 1552);
        }
        CFile source;
        ASSERT_TRUE(source.Open(folder.write("run.dat", file.bytes()).c_str()));
        DunvaleRun run;
        ASSERT_EQ(ReadRun("run.dat", source, run, {}), runIsRead);
        const Results* results = run.plpResults[0];
        EXPECT_EQ(float{results[1].Height}, 5.0F);
        EXPECT_EQ(float{results[0].Amount}, each.hasAmount ? 1.5F : 0.0F);
        EXPECT_EQ(float{results[1].Amount}, each.hasAmount ? 2.5F : 0.0F);
        EXPECT_EQ(int{run.plpPeaks[0][4].EventType}, 3);
        EXPECT_EQ(run.lpTimeTable->reserved1552[67], each.timeTableSize == 1620 ? 0xEE : 0);
        EXPECT_EQ(run.lpTTLine[1].reserved0[521], 0xEE);
        EXPECT_EQ(run.lpTTLine[1].reserved0[522], each.lineSize == 1202 ? 0xEE : 0);
        EXPECT_STREQ(run.lpPeakWin->WindowName, "Caffeine");
        EXPECT_STREQ(run.lpPeakWin2->WindowName, "Second");
        EXPECT_EQ(run.lpPeakWin2->reserved58[619], 0xEE);
    }
}

TEST_F(RunFile, TheExtentOfACutRunIsWhatIsThere) {
    const std::string whole = test::RunText{.count = "2s", .channels = 2}.bytes();
    // Behind the head of 308 bytes a signal is a head of 110 and six samples.
    constexpr std::int64_t firstSamples = 418;
    constexpr std::int64_t secondSamples = 552;
    for (std::int64_t length = 0; length <= std::ssize(whole); ++length) {
        SCOPED_TRACE(length);
        CFile file;
        const std::string start = whole.substr(0, static_cast<std::size_t>(length));
        ASSERT_TRUE(file.Open(folder.write("run.dat", start).c_str()));
        const auto extent = extentOf(file);
        ASSERT_EQ(extent.has_value(), length >= 308);
        if (extent) {
            EXPECT_EQ(extent->channels, 2);
            EXPECT_EQ(extent->channelsThere,
                      int{length >= firstSamples} + int{length >= secondSamples});
            EXPECT_EQ(extent->samples, 6 * extent->channelsThere);
            EXPECT_EQ(extent->samplesThere,
                      std::clamp<std::int64_t>((length - firstSamples) / 4, 0, 6) +
                          std::clamp<std::int64_t>((length - secondSamples) / 4, 0, 6));
            EXPECT_EQ(extent->isWhole, length == std::ssize(whole));
        }
    }
}

TEST_F(RunFile, TheTextsOfTheTimeTableEndInTheirFields) {
    CFile source;
    ASSERT_TRUE(source.Open(folder.write("run.dat", test::RunText{}.bytes()).c_str()));
    DunvaleRun run;
    ASSERT_EQ(ReadRun("run.dat", source, run, {}), runIsRead);
    std::string ends;
    for (std::size_t i = 0; i < sizeof run.lpTimeTable->Texts; ++i) {
        ends += run.lpTimeTable->Texts[i] == '\0' ? std::to_string(i) + " " : "";
    }
    EXPECT_EQ(ends, "19 77 127 177 227 277 327 427 695 951 1207 1463 1539 ");
}

} // namespace
} // namespace korlit
