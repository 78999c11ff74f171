#include "andi/andi_file.h"

#include "platform/faults.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace korlit {
namespace {

class AndiFileTest : public testing::Test {
  protected:
    void TearDown() override {
        FreeAndiFile(&file);
        FreeAndiFile(&file); // a second release finds nothing
        EXPECT_EQ(heldBlockCount(), 0);
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
    const std::string names[]{{"sixteen_letters_\0", 17}, {"\0", 1}, {"four\0", 5}};
    const std::string values[]{{"2.3\0\0", 5}, {"\0\0\0\0\0", 5}, {"\1\0\2\0\3\0\0\0\0", 9}};
    const std::int32_t counts[]{4, 1, 3};
    for (int i = 0; i < 3; ++i) {
        const AndiAttribute& attribute = list.Items[i];
        EXPECT_EQ(blockBytes(attribute.NameHandle, attribute.Name), names[i]);
        EXPECT_EQ(blockBytes(attribute.ValueHandle, attribute.Value), values[i]);
        EXPECT_EQ(attribute.Count, counts[i]);
    }
}

TEST_F(AndiFileTest, ArraysGrowFourElementsAtATime) {
    GlobalHandle arrays[5]{};
    for (std::int32_t i = 0; i < 5; ++i) {
        EXPECT_EQ(AddAndiDimension(&file, std::to_string(i).c_str(), i * 10), i);
        arrays[i] = file.DimensionsHandle;
    }
    EXPECT_EQ(arrays[3], arrays[0]);
    EXPECT_EQ(GlobalSize(arrays[4]), 8 * std::int64_t{sizeof(AndiDimension)});
    for (std::int32_t i = 0; i < 5; ++i) {
        EXPECT_EQ(file.Dimensions[i].Name, std::to_string(i));
        EXPECT_EQ(file.Dimensions[i].Length, i * 10);
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
    std::int32_t added = 0;
    for (const auto& [first, second, elementCount, vSize] : cases) {
        const AndiVariable* v = AddAndiMatrix(&file, "v", AndiType::Short, first, second);
        ASSERT_EQ(v == nullptr, elementCount < 0) << first << " by " << second;
        added += v != nullptr ? 1 : 0;
        EXPECT_EQ(file.VariableCount, added);
        if (v != nullptr) {
            EXPECT_EQ(v->DimensionCount, second < 0 ? 1 : 2);
            EXPECT_EQ(v->ElementCount, elementCount);
            EXPECT_EQ(v->VSize, vSize);
            EXPECT_EQ(blockBytes(v->DataHandle, v->Data),
                      std::string(static_cast<std::size_t>(vSize) + 1, '\0'));
        }
    }
    const std::int16_t minusTwo = -2;
    const AndiVariable* scalar = AddAndiScalar(&file, "s", AndiType::Short, &minusTwo);
    ASSERT_NE(scalar, nullptr);
    EXPECT_EQ(scalar->ElementCount, 1);
    EXPECT_EQ(blockBytes(scalar->DataHandle, scalar->Data), (std::string{"\xFE\xFF\0\0\0", 5}));
    EXPECT_EQ(AddAndiScalar(&file, "s", AndiType{7}, &minusTwo), nullptr);
    EXPECT_EQ(AddAndiAttribute(&list, "a", AndiType::Char, -2, "x"), -1);
}

TEST_F(AndiFileTest, AFailedAddLeavesNothing) {
    struct Builder {
        std::function<int()> add;
        int growthFailed, blockFailed, blocks;
    };
    AddAndiDimension(&file, "size", 2);
    AndiFile other{};
    const auto addVector = [&] { return AddAndiVector(&file, "n", AndiType::Float, 0) ? 1 : -9; };
    const Builder builders[]{
        {[&] { return AddAndiDimension(&other, "n", 1); }, 0, -1, 2},
        {[&] { return AddAndiAttribute(&list, "n", AndiType::Char, -1, "v"); }, 0, -1, 3},
        {addVector, -9, -9, 3}};
    for (const auto& [add, growthFailed, blockFailed, blocks] : builders) {
        for (const FaultPoint point : {FaultPoint::Allocate, FaultPoint::Lock}) {
            for (int nth = 1; nth <= blocks; ++nth) {
                FreeAttributeList(&list);
                FreeAndiFile(&other);
                armFault(point, nth);
                testing::internal::CaptureStderr();
                EXPECT_EQ(add(), nth == 1 ? growthFailed : blockFailed);
                const std::string box = point == FaultPoint::Lock ? "ReadAndi 4" : "ReadAndi 3";
                EXPECT_EQ(testing::internal::GetCapturedStderr(),
                          nth == 1 ? box + ": Error allocating memory\n" : "");
                EXPECT_EQ(other.DimensionCount + list.Count + file.VariableCount, 0);
                releaseBlock(file.VariablesHandle, file.Variables);
            }
        }
    }
    FreeAndiFile(&other);
}

TEST_F(AndiFileTest, AnArrayHolds32767Elements) {
    void* array = nullptr;
    AllocAndiArray(&file.DimensionsHandle, &array, arrayBlock, 32766, sizeof(AndiDimension));
    file.Dimensions = static_cast<AndiDimension*>(array);
    file.DimensionCount = 32766;
    EXPECT_EQ(AddAndiDimension(&file, "last", 1), 32766);
    testing::internal::CaptureStderr();
    EXPECT_EQ(AddAndiDimension(&file, "one too many", 1), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "ReadAndi 3: Error allocating memory\n");
    EXPECT_EQ(file.DimensionCount, 32767);
    file.RecordCount = 7;
    FreeAndiFile(&file);
    EXPECT_EQ(file.RecordCount, 7);
    EXPECT_EQ(file.DimensionsHandle, nullptr);
}

} // namespace
} // namespace korlit
