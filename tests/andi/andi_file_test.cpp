#include "andi/andi_file.h"

#include "tests/support/module_test.h"

namespace korlit {
namespace {

class AndiFileTest : public test::ModuleTest {
  protected:
    void TearDown() override {
        FreeAndiFile(&file);
        FreeAndiFile(&file); // a second release finds nothing
    }

    AndiFile file{};
    AndiAttributeList& list = file.GlobalAttributes;
};

std::string blockBytes(GlobalHandle handle, const void* pointer) {
    return {static_cast<const char*>(pointer), static_cast<std::size_t>(GlobalSize(handle))};
}

TEST_F(AndiFileTest, BlocksArePaddedAndTerminated) {
    const std::int16_t shorts[]{1, 2, 3};
    EXPECT_EQ(AddAndiAttribute(&list, "sixteen_letters_", AndiType::Char, textLength, "2.3"), 0);
    EXPECT_EQ(AddAndiAttribute(&list, "", AndiType::Char, textLength, ""), 1);
    EXPECT_EQ(AddAndiAttribute(&list, "four", AndiType::Short, 3, shorts), 2);
    EXPECT_EQ(AddAndiAttribute(&list, "a", AndiType::Char, -2, "x"), -1);
    const std::string names[]{{"sixteen_letters_\0", 17}, {"\0", 1}, {"four\0", 5}};
    const std::string values[]{{"2.3\0\0", 5}, {"\0\0\0\0\0", 5}, {"\1\0\2\0\3\0\0\0\0", 9}};
    const std::int32_t counts[]{4, 1, 3};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(blockBytes(list.Items[i].NameHandle, list.Items[i].Name), names[i]);
        EXPECT_EQ(blockBytes(list.Items[i].ValueHandle, list.Items[i].Value), values[i]);
        EXPECT_EQ(list.Items[i].Count, counts[i]);
    }
}

TEST_F(AndiFileTest, VariablesTakeTheirSizeFromTheDimensions) {
    for (const std::int32_t length : {3, 5, 0, 65536, -4}) {
        AddAndiDimension(&file, "d", length);
    }
    struct Case {
        std::int32_t first, second, elementCount, vSize; // an elementCount of -1: refused
    };
    const Case cases[]{{0, 1, 15, 32}, {0, -1, 3, 8}, {2, -1, 0, 0}, {5, -1, -1, 0},
                       {-1, 0, -1, 0}, {0, 5, -1, 0}, {3, 3, -1, 0}, {4, -1, -1, 0}};
    for (const auto& [first, second, elementCount, vSize] : cases) {
        const std::int32_t countBefore = file.VariableCount;
        const AndiVariable* v = AddAndiMatrix(&file, "v", AndiType::Short, first, second);
        ASSERT_EQ(v == nullptr, elementCount < 0) << first << " by " << second;
        EXPECT_EQ(file.VariableCount - countBefore, v == nullptr ? 0 : 1);
        EXPECT_TRUE(v == nullptr ||
                    (v->DimensionCount == (second < 0 ? 1 : 2) && v->ElementCount == elementCount &&
                     v->VSize == vSize && GlobalSize(v->DataHandle) == vSize + 1));
    }
    // Eight bytes for each come to little in 64 bits, beyond which they are.
    AddAndiDimension(&file, "d", 1'518'500'250);
    EXPECT_EQ(AddAndiMatrix(&file, "v", AndiType::Double, 5, 5), nullptr);
    const std::int16_t minusTwo = -2;
    const AndiVariable* scalar = AddAndiScalar(&file, "s", AndiType::Short, &minusTwo);
    ASSERT_NE(scalar, nullptr);
    EXPECT_EQ(scalar->ElementCount, 1);
    EXPECT_EQ(blockBytes(scalar->DataHandle, scalar->Data), (std::string{"\xFE\xFF\0\0\0", 5}));
    EXPECT_EQ(AddAndiScalar(&file, "s", AndiType{7}, &minusTwo), nullptr);
}

TEST_F(AndiFileTest, AnArrayHolds32767Elements) {
    void* array = nullptr;
    AllocAndiArray(&file.DimensionsHandle, &array, arrayBlock, 32766, sizeof(AndiDimension));
    file.Dimensions = static_cast<AndiDimension*>(array);
    file.DimensionCount = 32766;
    EXPECT_EQ(AddAndiDimension(&file, "last", 1), 32766);
    EXPECT_EQ(boxOf([&] { EXPECT_EQ(AddAndiDimension(&file, "too many", 1), 0); }),
              "ReadAndi 3: Error allocating memory\n");
    EXPECT_EQ(file.DimensionCount, 32767);
    file.RecordCount = 7;
    FreeAndiFile(&file);
    EXPECT_EQ(file.RecordCount, 7);
    EXPECT_EQ(file.DimensionsHandle, nullptr);
}

} // namespace
} // namespace korlit
