// An export with every broken file.
#include "api/guard.h"
#include "tests/support/andi_text.h"
#include "tests/support/host_call.h"
#include "tests/support/image.h"
#include "tests/support/module_test.h"
#include "tests/support/run_text.h"

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
    std::string newSlice = readImage(LISTINGS "two_peaks.sli.txt");
    std::string newReport = readImage(LISTINGS "two_peaks.rpt.txt");
    std::string goodFile = folder.write("good.cdf", twoPeaks);
    std::string source = folder.write("run.cdf", twoPeaks);
    std::string slice = folder.write("run.sli", "old slice");
    std::string report = folder.write("run.rpt", "old report");
};

TEST_F(FailuresTest, AFileCutAnywhereIsTold) {
    struct Case {
        Export function;
        std::string from, cut, bytes;
    };
    const Case cases[]{{Andi2Merivolta, source, "run.cdf", twoPeaks},
                       {Merivolta2Andi, slice, "run.sli", newSlice},
                       {Merivolta2Andi, slice, "run.rpt", newReport}};
    for (const Case& each : cases) {
        folder.write("run.sli", newSlice);
        folder.write("run.rpt", newReport);
        for (std::size_t length = 0; length < each.bytes.size(); ++length) {
            folder.write(each.cut, each.bytes.substr(0, length));
            Answer answer;
            const std::string box = boxOf([&] { answer = callAsHost(each.function, each.from); });
            EXPECT_EQ(answer.result, 0) << each.cut << length;
            EXPECT_NE(answer.message == untouchedMessage, box.empty()) << each.cut << length;
            EXPECT_TRUE(answer.areBuffersKept);
        }
        EXPECT_EQ(readFile(source).size(), twoPeaks.size() - 1) << "no file was touched";
        expectNothingLeft();
    }
}

TEST_F(FailuresTest, AFileWithAnyByteChangedDoesNoHarm) {
    const std::string start = newSlice.substr(0, 128);
    const auto changed = [](std::string bytes, std::size_t i) {
        const int changes[]{0x01, 0x08, 0x7F, 0x80, 0xFF};
        bytes[i / 5] = static_cast<char>(bytes[i / 5] ^ changes[i % 5]);
        return bytes;
    };
    boxOf([&] {
        for (std::size_t i = 0; i < 5 * twoPeaks.size(); ++i) {
            folder.write("run.cdf", changed(twoPeaks, i));
            EXPECT_TRUE(callAsHost(Andi2Merivolta, source).areBuffersKept) << i;
        }
        // What a changed count makes of the file may be huge: it isn't kept.
        const std::string run = RunText{}.bytes();
        for (std::size_t i = 0; i < 5 * run.size(); ++i) {
            const std::string path = folder.write("run.dat", changed(run, i));
            EXPECT_TRUE(callAsHost(Dunvale2Andi, path, "/dev/null").areBuffersKept) << i;
        }
        for (std::size_t i = 0; i < 5 * newReport.size(); ++i) {
            folder.write("run.sli", newSlice);
            folder.write("run.rpt", changed(newReport, i));
            EXPECT_TRUE(callAsHost(Merivolta2Andi, slice).areBuffersKept) << i;
            folder.write("run.sli", changed(start, i % (5 * start.size())) + newSlice.substr(128));
            folder.write("run.rpt", newReport);
            EXPECT_TRUE(callAsHost(Merivolta2Andi, slice).areBuffersKept) << i;
        }
    });
    expectNothingLeft();
}

TEST_F(FailuresTest, ARunCutAnywhereIsConvertedAsFarAsItGoes) {
    const std::string whole = RunText{}.bytes();
    const std::string run = folder.path("run.dat");
    // From the first byte of the channel count on, which is its lower one.
    constexpr std::size_t firstConverted = 307;
    for (std::size_t length = 0; length < whole.size(); ++length) {
        folder.write("run.dat", whole.substr(0, length));
        const std::string noChannels = "Read Error!!!\r\nChannel No. = 0.";
        const bool isConverted = length >= firstConverted;
        EXPECT_EQ(callAsHost(Dunvale2Andi, run, ""),
                  (Answer{isConverted ? 1 : 0, run, isConverted ? "" : noChannels, true}));
    }
    // Behind three samples, of which the last is cut, nothing is left but zeros.
    folder.write("run.dat", whole.substr(0, 308 + 110 + 11));
    EXPECT_EQ(callAsHost(Dunvale2Andi, run, "").result, 1);
    const std::string dump = folder.dump("run1.cdf", "-v ordinate_values");
    EXPECT_NE(dump.find("ordinate_values = 2, 4, "), std::string::npos);
    EXPECT_NE(dump.find(", 0, 0, 0 ;"), std::string::npos) << dump;
    EXPECT_NE(dump.find("dataset_completeness = \"C1\""), std::string::npos);
    expectNothingLeft();
}

TEST(Guard, AFaultEndsTheCallWithZero) {
    EXPECT_EQ(guarded([]() -> std::int32_t { throw 1; }), 0);
    EXPECT_EQ(guarded([] { return 1; }), 1);
}

} // namespace
} // namespace korlit
