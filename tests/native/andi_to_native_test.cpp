#include "native/andi_to_native.h"

#include "andi/andi_reader.h"
#include "native/native_state.h"
#include "tests/support/andi_text.h"
#include "tests/support/module_test.h"

namespace korlit {
namespace {

using namespace test;

// What a mapping makes of a file's values stands in conversions.txt.
TEST_F(ModuleTest, AMappingTellsWhyItLeavesOutThePeaks) {
    struct Case {
        const char* peaks;
        int nth; ///< memory request that fails
        const char* message;
    };
    const Case cases[]{{"571", 0, "Too many peaks in data file"},
                       {"2147483647", 0, "Too many peaks in data file"},
                       {"2", 2, "Out of memory reading data file"}};
    for (const auto& [peaks, nth, expected] : cases) {
        AndiText text;
        text.dimensions = "10 2 'point_number' 3 'peak_number' " + std::string{peaks};
        NativeBlocks blocks{};
        char message[400]{};
        ReadAndiFile(folder.write("x.cdf", text.bytes()).c_str(), &TheAndiFile, message);
        armFault(FaultPoint::Allocate, nth);
        EXPECT_EQ(MapAndiToNative(blocks, &TheAndiFile, message), 1);
        EXPECT_STREQ(message, expected);
        EXPECT_EQ(TheResHeader.PeakCount, 0);
        releaseBlock(blocks.dataHandle, blocks.data);
        expectNothingHeld();
    }
}

} // namespace
} // namespace korlit
