// An export with memory running out anywhere and with every broken file.
#include "api/guard.h"
#include "tests/support/andi_text.h"
#include "tests/support/host_call.h"
#include "tests/support/module_test.h"

namespace korlit {
namespace {

using namespace test;

class FailuresTest : public ModuleTest {
  protected:
    /// What must hold behind any call: the next good conversion goes through and leaves nothing.
    void expectNothingLeft() {
        disarmFault();
        EXPECT_EQ(callAsHost(Andi2Merivolta, goodFile).result, 1);
        expectNothingHeld();
    }

    std::string twoPeaks = readFile(TEST_DATA "two_peaks.cdf");
    std::string goodFile = folder.write("good.cdf", twoPeaks);
    std::string source = folder.write("run.cdf", twoPeaks);
    std::string slice = folder.write("run.sli", "old slice");
    std::string report = folder.write("run.rpt", "old report");
};

TEST_F(FailuresTest, MemoryRunsOutAnywhere) {
    for (const FaultPoint point : {FaultPoint::Allocate, FaultPoint::Lock}) {
        // The first request that the flow doesn't reach lets the whole conversion through.
        std::size_t reportSize = 0;
        for (int nth = 1; nth < 200 && reportSize != 584; ++nth) {
            armFault(point, nth);
            Answer answer;
            const std::string box = boxOf([&] { answer = callAsHost(Andi2Merivolta, source); });
            EXPECT_EQ(answer.message == untouchedMessage, !box.empty());
            EXPECT_TRUE(answer.areBuffersKept);
            // A peak table without memory is left out of a report that is good otherwise.
            reportSize = answer.result == 1 ? readFile(report).size() : 0;
            EXPECT_TRUE(reportSize == 0 || reportSize == 352 || reportSize == 584);
            expectNothingLeft();
        }
        EXPECT_EQ(reportSize, 584U);
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
    boxOf([&] {
        for (std::size_t i = 0; i < 5 * twoPeaks.size(); ++i) {
            const int changes[]{0x01, 0x08, 0x7F, 0x80, 0xFF};
            std::string bytes = twoPeaks;
            bytes[i / 5] = static_cast<char>(bytes[i / 5] ^ changes[i % 5]);
            folder.write("run.cdf", bytes);
            EXPECT_TRUE(callAsHost(Andi2Merivolta, source).areBuffersKept) << i;
        }
    });
    expectNothingLeft();
}

TEST(Guard, AFaultEndsTheCallWithZero) {
    EXPECT_EQ(guarded([]() -> std::int32_t { throw 1; }), 0);
    EXPECT_EQ(guarded([] { return 1; }), 1);
}

} // namespace
} // namespace korlit
