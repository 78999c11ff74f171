#include "andi/andi_reader.h"

#include "platform/faults.h"
#include "tests/support/andi_text.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <array>

namespace korlit {
namespace {

using namespace test;

class AndiReaderTest : public testing::Test {
  protected:
    void TearDown() override {
        FreeAndiFile(&file);
        EXPECT_EQ(heldBlockCount(), 0);
        EXPECT_EQ(heldFileCount(), 0);
    }

    int load(const std::string& bytes) {
        message.fill('\0');
        testing::internal::CaptureStderr();
        const int result = ReadAndiFile(folder.write("x.cdf", bytes).c_str(), &file, message);
        box = testing::internal::GetCapturedStderr();
        return result;
    }

    /// The message with the file's path taken out again, or the box where there is one.
    std::string told() {
        std::string text = message.data();
        const std::size_t place = text.find(folder.path("x.cdf"));
        return box + (place == std::string::npos
                          ? text
                          : text.replace(place, folder.path("x.cdf").size(), "%s"));
    }

    /// The elements of a variable as they lie in memory.
    std::string data(std::int32_t variable) {
        const AndiVariable& v = file.Variables[variable];
        return {static_cast<const char*>(v.Data),
                static_cast<std::size_t>(v.ElementCount * elementSize(v.Type))};
    }

    TempFolder folder;
    AndiFile file{};
    std::array<char, 400> message{};
    std::string box;
};

TEST_F(AndiReaderTest, LoadsEveryTypeAndARecordVariable) {
    using namespace std::string_literals;
    ASSERT_EQ(load(AndiText{}.bytes()), 1);
    ASSERT_EQ(load(readFile(TEST_DATA "all_types.cdf")), 1) << message.data();
    EXPECT_EQ(file.Magic, 0x464443);
    EXPECT_EQ(file.RecordCount, 3);
    EXPECT_EQ(file.DimensionCount, 4) << "nothing is left of the load before";
    EXPECT_EQ(data(0), "\1\xFF");
    EXPECT_EQ(data(1), "mV");
    EXPECT_EQ(data(2), "\xFF\xFF\x14\0"s);
    EXPECT_EQ(data(3), "\xFF\xFF\xFF\xFF\x14\0\0\0"s);
    EXPECT_EQ(data(4), "\0\0\xC0\x3F"s);
    EXPECT_EQ(data(5).substr(8), "\0\0\0\0\0\0\x02\xC0"s);
    EXPECT_EQ(data(6), "\1\0\0\0\2\0\0\0\3\0\0\0\4\0\0\0\5\0\0\0\6\0\0\0"s);
    EXPECT_EQ(file.Variables[6].IsRecord, 1);
    const AndiAttribute& triple = file.Variables[2].Attributes.Items[0];
    EXPECT_EQ(std::memcmp(triple.Value, "\xFF\xFF\2\0\x2C\1\0\0\0", 9), 0);
    EXPECT_STREQ(static_cast<char*>(file.GlobalAttributes.Items[1].Value), "1234");
}

TEST_F(AndiReaderTest, TakesWhatTheLayoutAllows) {
    // 65546 is 0x1000A: only the low half of a tag or type counts. The padding is not all zero.
    AndiText text{.start = "CDF\2",
                  .dimensions = "65546 1 'point_number' 3",
                  .globals = "65548 1 'text' 65538 1 \"abcd\""};
    ASSERT_EQ(load(text.bytes()), 1) << message.data();
    EXPECT_EQ(file.Version, 2);
    EXPECT_EQ(file.Dimensions[0].Length, 3);
    EXPECT_STREQ(static_cast<char*>(file.GlobalAttributes.Items[0].Value), "a");
    EXPECT_EQ(std::memcmp(file.Variables[0].Data, "\0\0\xA0\x40\0\0\xE0\x40\0\0\xC0\x40", 13), 0);
    text = {.dimensions = "0 5", .globals = "12 0", .variables = "0 0"};
    ASSERT_EQ(load(text.bytes()), 1) << message.data();
    EXPECT_EQ(file.DimensionCount, 0);
    EXPECT_EQ(file.GlobalAttributes.Handle, nullptr);
}

TEST_F(AndiReaderTest, CountsElementsByDimensionsAndBlock) {
    struct Case {
        const char* dimensionIds;
        std::int32_t vSize, elementCount, isRecord;
        std::int64_t blockSize;
    };
    const Case cases[]{{"0", 4, 1, 0, 5},       {"2 0 1", 32, 24, 1, 97},
                       {"2 1 0", 32, 0, 0, 33}, {"5 1 2 2 2 2", 32, 8, 0, 33},
                       {"2 1 1", 16, 4, 0, 17}, {"5 3 3 3 3 3", 16, 4, 0, 17},
                       {"1 4", 16, 0, 0, 17}};
    for (const auto& [dimensionIds, vSize, elementCount, isRecord, blockSize] : cases) {
        const std::string size = std::to_string(vSize);
        const AndiText text{
            .records = "3",
            .dimensions = "10 5 'run' 0 'a' 8 'b' 1 'immense' 2147483647 'negative' -1",
            .variables = "11 1 'x' " + std::string{dimensionIds} + " 0 0 5 " + size + " 0"};
        ASSERT_EQ(load(text.bytes()), 1) << message.data();
        EXPECT_EQ(file.Variables[0].ElementCount, elementCount) << dimensionIds;
        EXPECT_EQ(file.Variables[0].IsRecord, isRecord);
        EXPECT_EQ(GlobalSize(file.Variables[0].DataHandle), blockSize);
    }
}

TEST_F(AndiReaderTest, TellsEachFaultOfTheLayout) {
    const char* const notAndi = "File %s is not a supported Andi file";
    const char* const noAttributes = "Andi File %s internal Error: Global Attributes expected";
    const char* const attributeType = "Andi File %s internal Error: invalid Attribute Type";
    const char* const variableType = "Andi file %s internal error: invalid Attribute Type";
    const char* const tooMany = "Andi File %s Problem: Variable with more than 5 Dimensions";
    const char* const unknown = "Andi File %s internal Error: Variable using unknown Dimension";
    const char* const noMemory = "Out of Memory reading Andi File %s";
    const char* const readFailed = "Error reading Andi File %s";
    const char* const noArray = "ReadAndi 5: Error allocating memory\n";
    const std::pair<AndiText, const char*> cases[]{
        {{.start = "cdf\1"}, notAndi},
        {{.dimensions = "11 1"}, "Andi File %s internal Error: Dimension expected"},
        {{.globals = "10 0"}, noAttributes},
        {{.globals = "12 1 'x' 0 1 \"v\""}, attributeType},
        {{.globals = "12 1 'x' 7 1 \"v\""}, attributeType},
        {{.globals = "12 1 'x' 6 268435456"}, noMemory},
        {{.globals = "12 1 'x' 2 -1"}, noMemory},
        {{.variables = "12 1"}, "Andi file %s internal error: variable expected"},
        {{.variables = "11 1 'x' 6 0 0 0 0 0 0"}, tooMany},
        {{.variables = "11 1 'x' -1"}, tooMany},
        {{.variables = "11 1 'x' 2 0 0"}, unknown},
        {{.variables = "11 1 'x' 1 1"}, unknown},
        {{.variables = "11 1 'x' 1 -1"}, unknown},
        {{.variables = "11 1 'x' 0 11 0"}, noAttributes},
        {{.variables = "11 1 'x' 0 0 0 0 4 0"}, variableType},
        {{.variables = "11 1 'x' 0 0 0 5 2147483647 0"}, noMemory},
        {{.variables = "11 1 'x' 0 0 0 5 -1 0"}, noMemory},
        {{.variables = "11 1 'x' 0 0 0 5 4 -8"}, readFailed},
        {{.dimensions = "10 1 -1"}, readFailed},
        {{.data = "5f 7f"}, readFailed},
        {{.dimensions = "10 2147483647"}, noArray},
        {{.dimensions = "10 -1"}, noArray},
        {{.globals = "12 -4"}, noArray},
        {{.variables = "11 -4"}, noArray}};
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(load(text.bytes()), 0);
        EXPECT_EQ(told(), expected);
        EXPECT_EQ(heldBlockCount(), 0) << expected;
    }
    EXPECT_EQ(load("CDF"), 0);
    EXPECT_EQ(told(), notAndi);
    EXPECT_EQ(load(AndiText{}.bytes()), 1) << "a failed load stays in no later one's way";
}

TEST_F(AndiReaderTest, TellsWhereMemoryRanOut) {
    // The blocks of the load in order: dimensions, a name, attributes, a name, a value, variables,
    // a name, data. A name without memory is a failed read, which the next check finds.
    const char* const texts[]{"",
                              "Error reading Andi File %s",
                              "",
                              "Andi File %s internal Error: invalid Attribute Type",
                              "Out of Memory reading Andi File %s",
                              "",
                              "Andi file %s internal error: invalid Attribute Type",
                              "Out of Memory reading Andi File %s"};
    const AndiText text{.globals = oneText("x", "y")};
    for (const FaultPoint point : {FaultPoint::Allocate, FaultPoint::Lock}) {
        std::int64_t nth = 0;
        for (const std::string expected : texts) {
            armFault(point, ++nth);
            EXPECT_EQ(load(text.bytes()), 0);
            const std::string title = point == FaultPoint::Lock ? "ReadAndi 6" : "ReadAndi 5";
            EXPECT_EQ(told(), expected.empty() ? title + ": Error allocating memory\n" : expected);
            EXPECT_EQ(heldBlockCount(), 0);
        }
    }
}

} // namespace
} // namespace korlit
