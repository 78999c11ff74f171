#include "native/write_native_pair.h"

#include "native/native_state.h"
#include "platform/checked_io.h"
#include "platform/files.h"
#include "tests/support/module_test.h"

namespace korlit {
namespace {

using WriteNativePairTest = test::ModuleTest;

// What a mapping finds stands in order: only another caller can bring the extremes exchanged.
TEST_F(WriteNativePairTest, ASliceHasTheSmallerExtremeFirst) {
    for (const auto& [minimum, maximum] : {std::pair{7.0F, -5.0F}, std::pair{-5.0F, 7.0F}}) {
        TheSliHeader = {};
        TheSliHeader.MinValue = minimum;
        TheSliHeader.MaxValue = maximum;
        beginWriting();
        const std::string path = folder.path("x.sli");
        const int file = _lcreat(path.c_str());
        WriteSliceFile(file, nullptr);
        EXPECT_EQ(_lclose(file), 0);
        const std::string content = test::readFile(path);
        EXPECT_EQ(content.size(), 2048U);
        EXPECT_EQ(content.substr(4, 8), std::string("\0\0\xA0\xC0\0\0\xE0\x40", 8));
    }
    TheSliHeader = {};
}

} // namespace
} // namespace korlit
