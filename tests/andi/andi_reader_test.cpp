#include "andi/andi_reader.h"

#include "tests/support/andi_text.h"
#include "tests/support/module_test.h"

namespace korlit {
namespace {

using namespace test;
using namespace std::string_literals;

class AndiReaderTest : public ModuleTest {
  protected:
    void TearDown() override { FreeAndiFile(&file); }

    /// What a load tells; how each failure reads stands in conversions.txt.
    std::string load(const std::string& bytes) {
        char message[400]{};
        EXPECT_EQ(ReadAndiFile(folder.write("x.cdf", bytes).c_str(), &file, message), 1);
        return message;
    }

    /// The elements of a variable as they lie in memory.
    std::string data(std::int32_t variable) const {
        const AndiVariable& v = file.Variables[variable];
        return {static_cast<const char*>(v.Data),
                static_cast<std::size_t>(v.ElementCount * elementSize(v.Type))};
    }

    AndiFile file{};
};

TEST_F(AndiReaderTest, LoadsEveryTypeAndARecordVariable) {
    // The fourth byte is a signed number, and a negative count is none.
    EXPECT_EQ(load(AndiText{.start = "1128548094", .globals = "12 1 'a' 4 -1"}.bytes()), "");
    EXPECT_EQ(file.Version, -2);
    EXPECT_EQ(file.GlobalAttributes.Items[0].Count, 0);
    ASSERT_EQ(load(readFile(TEST_DATA "all_types.cdf")), "");
    EXPECT_EQ(file.Magic, 0x464443);
    EXPECT_EQ(file.Version, 1);
    EXPECT_EQ(file.RecordCount, 3);
    EXPECT_EQ(file.DimensionCount, 4) << "nothing is left of the load before";
    const std::string elements[]{"\1\xFF"s,
                                 "mV"s,
                                 "\xFF\xFF\x14\0"s,
                                 "\xFF\xFF\xFF\xFF\x14\0\0\0"s,
                                 "\0\0\xC0\x3F"s,
                                 "\0\0\0\0\0\0\xF8\x3F\0\0\0\0\0\0\x02\xC0"s,
                                 "\1\0\0\0\2\0\0\0\3\0\0\0\4\0\0\0\5\0\0\0\6\0\0\0"s};
    for (std::int32_t i = 0; i < std::ssize(elements); ++i) {
        EXPECT_EQ(data(i), elements[i]) << file.Variables[i].Name;
    }
    const AndiAttribute& triple = file.Variables[2].Attributes.Items[0];
    EXPECT_EQ(std::memcmp(triple.Value, "\xFF\xFF\2\0\x2C\1\0\0\0", 9), 0);
}

TEST_F(AndiReaderTest, CountsElementsByDimensionsAndBlock) {
    struct Case {
        std::string dimensionIds, vSize;
        std::int32_t elementCount, isRecord, blockSize;
    };
    const Case cases[]{{"0", "4", 1, 0, 5},       {"2 0 1", "32", 24, 1, 97},
                       {"2 1 0", "32", 0, 0, 33}, {"5 1 2 2 2 2", "32", 8, 0, 33},
                       {"2 1 1", "16", 4, 0, 17}, {"5 3 3 3 3 3", "16", 4, 0, 17},
                       {"1 4", "16", 0, 0, 17}};
    for (const auto& [dimensionIds, vSize, elementCount, isRecord, blockSize] : cases) {
        const AndiText text{.records = "3",
                            .dimensions = "10 5 'run' 0 'a' 8 'b' 1 'c' 2147483647 'd' -1",
                            .variables = "11 1 'x' " + dimensionIds + " 0 0 5 " + vSize + " 0"};
        ASSERT_EQ(load(text.bytes()), "");
        EXPECT_EQ(file.Variables[0].ElementCount, elementCount) << dimensionIds;
        EXPECT_EQ(file.Variables[0].IsRecord, isRecord);
        EXPECT_EQ(GlobalSize(file.Variables[0].DataHandle), blockSize);
    }
}

} // namespace
} // namespace korlit
