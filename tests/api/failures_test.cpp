// The exports with each failure of the platform made to happen, and with every broken file.
#include "api/guard.h"
#include "platform/faults.h"
#include "tests/support/andi_text.h"
#include "tests/support/host_call.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace korlit {
namespace {

using namespace test;

class FailuresTest : public testing::Test {
  protected:
    /// What must hold behind any call: no file is open, the next good conversion goes through, and
    /// then no block is held.
    void expectNothingLeft() {
        disarmFault();
        EXPECT_EQ(heldFileCount(), 0);
        EXPECT_EQ(callAsHost(Andi2Merivolta, goodFile).result, 1);
        EXPECT_EQ(heldBlockCount(), 0);
    }

    TempFolder folder;
    std::string twoPeaks = readFile(TEST_DATA "two_peaks.cdf");
    std::string goodFile = folder.write("good.cdf", twoPeaks);
    std::string source = folder.write("run.cdf", twoPeaks);
    std::string slice = folder.write("run.sli", "old slice");
    std::string report = folder.write("run.rpt", "old report");
};

TEST_F(FailuresTest, EachStepAheadOfTheWritingHasItsText) {
    struct Case {
        FaultPoint point;
        int nth;
        std::string message, path, slice;
    };
    const Case cases[]{
        {FaultPoint::Open, 1, "Error opening Andi file " + source, source, "old slice"},
        {FaultPoint::Read, 1, "File " + source + " is not a supported Andi file", source,
         "old slice"},
        {FaultPoint::Read, 2, "Error reading Andi File " + source, source, "old slice"},
        {FaultPoint::Create, 1, "Error writing Merivolta Slice File " + slice, slice, "old slice"},
        {FaultPoint::Create, 2, "Error writing Merivolta Report File " + report, report, ""}};
    for (const auto& [point, nth, message, path, sliceContent] : cases) {
        armFault(point, nth, FaultKind::Fail);
        EXPECT_EQ(callAsHost(Andi2Merivolta, source), (Answer{0, path, message, true}));
        EXPECT_EQ(readFile(slice), sliceContent);
        EXPECT_EQ(readFile(report), "old report");
        expectNothingLeft();
    }
}

TEST_F(FailuresTest, AFailedWriteKeepsWhatCameBefore) {
    struct Case {
        FaultPoint point;
        int nth;
        FaultKind kind;
        std::size_t sliceSize, reportSize;
    };
    constexpr auto write = FaultPoint::Write;
    constexpr auto fail = FaultKind::Fail;
    constexpr auto cutShort = FaultKind::CutShort;
    // Writes: slice header, zeros, samples; report header, results, table, two peaks, header again.
    // Closes: source, slice, report.
    const Case cases[]{{write, 1, fail, 0, 0},
                       {write, 1, cutShort, 928, 0},
                       {write, 3, cutShort, 2054, 0},
                       {write, 4, fail, 2060, 0},
                       {write, 5, fail, 2060, 288},
                       {write, 6, fail, 2060, 352},
                       {write, 8, cutShort, 2060, 527},
                       {write, 9, fail, 2060, 584},
                       {FaultPoint::Close, 2, fail, 2060, 584},
                       {FaultPoint::Close, 3, fail, 2060, 584}};
    for (const auto& [point, nth, kind, sliceSize, reportSize] : cases) {
        armFault(point, nth, kind);
        EXPECT_EQ(callAsHost(Andi2Merivolta, source),
                  (Answer{0, slice, "Error writing Merivolta file " + slice, true}));
        EXPECT_EQ(readFile(slice).size(), sliceSize);
        EXPECT_EQ(readFile(report).size(), reportSize);
        const bool isFirstHeader = point == write && nth > 4;
        EXPECT_TRUE(!isFirstHeader || readFile(report).substr(135, 8) == std::string(8, '\0'));
        expectNothingLeft();
    }
}

TEST_F(FailuresTest, AFailedMappingLeavesTwoEmptyFiles) {
    folder.write("run.cdf", AndiText{.globals = oneText("uniform_sampling_flag", "N")}.bytes());
    EXPECT_EQ(callAsHost(Andi2Merivolta, source),
              (Answer{0, slice, "Data are not uniformly distributed (equidistant)", true}));
    EXPECT_EQ(readFile(slice) + readFile(report), "");
    expectNothingLeft();
}

TEST_F(FailuresTest, MemoryRunsOutAnywhere) {
    for (const FaultPoint point : {FaultPoint::Allocate, FaultPoint::Lock}) {
        // The first request that the flow doesn't reach lets the whole conversion through.
        bool isWhole = false;
        for (int nth = 1; nth < 200 && !isWhole; ++nth) {
            armFault(point, nth);
            testing::internal::CaptureStderr();
            const Answer answer = callAsHost(Andi2Merivolta, source);
            const bool isBoxShown = !testing::internal::GetCapturedStderr().empty();
            EXPECT_EQ(answer.message == untouchedMessage, isBoxShown);
            EXPECT_TRUE(answer.areBuffersKept);
            // A peak table without memory is left out of a report that is good otherwise.
            isWhole = answer.result == 1 && readFile(report).size() == 584;
            EXPECT_TRUE(answer.result == 0 || isWhole || readFile(report).size() == 352);
            expectNothingLeft();
        }
        EXPECT_TRUE(isWhole);
    }
}

TEST_F(FailuresTest, AFileCutAnywhereIsTold) {
    for (std::size_t length = 0; length < twoPeaks.size(); ++length) {
        folder.write("run.cdf", twoPeaks.substr(0, length));
        const Answer answer = callAsHost(Andi2Merivolta, source);
        EXPECT_EQ(answer.result, 0) << length;
        EXPECT_NE(answer.message, untouchedMessage) << length;
        EXPECT_TRUE(answer.areBuffersKept);
    }
    EXPECT_EQ(readFile(slice), "old slice");
    expectNothingLeft();
}

TEST_F(FailuresTest, AFileWithAnyByteChangedDoesNoHarm) {
    testing::internal::CaptureStderr();
    for (std::size_t place = 0; place < twoPeaks.size(); ++place) {
        for (const int change : {0x01, 0x08, 0x7F, 0x80, 0xFF}) {
            std::string bytes = twoPeaks;
            bytes[place] = static_cast<char>(bytes[place] ^ change);
            folder.write("run.cdf", bytes);
            EXPECT_TRUE(callAsHost(Andi2Merivolta, source).areBuffersKept) << place;
        }
    }
    testing::internal::GetCapturedStderr();
    expectNothingLeft();
}

TEST(Guard, AFaultEndsTheCallWithZero) {
    EXPECT_EQ(guarded([]() -> std::int32_t { throw 1; }), 0);
    EXPECT_EQ(guarded([] { return 1; }), 1);
}

} // namespace
} // namespace korlit
