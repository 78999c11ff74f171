#include "andi/andi_writer.h"

#include "andi/andi_reader.h"
#include "andi/byte_order.h"
#include "tests/support/andi_text.h"
#include "tests/support/module_test.h"

namespace korlit {
namespace {

using namespace test;

class AndiWriterTest : public ModuleTest {
  protected:
    void TearDown() override { FreeAndiFile(&file); }

    /// What the file on disk holds behind a write that must succeed, and that ncdump must accept.
    std::string written() {
        char message[400]{};
        EXPECT_EQ(WriteAndiFile(folder.path("x.cdf").c_str(), &file, message), 1) << message;
        EXPECT_NE(folder.dump("x.cdf", ""), "");
        return readFile(folder.path("x.cdf"));
    }

    AndiFile file{};
};

TEST_F(AndiWriterTest, AnEmptyFileIsThreeAbsentLists) {
    EXPECT_EQ(written(), layOut("1128547841 0 0 0 0 0 0 0"));
}

TEST_F(AndiWriterTest, EveryTypeIsPaddedAndReversed) {
    const std::int16_t shorts[]{1, 2, 3};
    const double number = -2.0;
    const float scalar = 1.5F;
    AddAndiDimension(&file, "none", 0);
    AddAndiAttribute(&file.GlobalAttributes, "text", AndiType::Char, textLength, "2.3");
    AddAndiAttribute(&file.GlobalAttributes, "shorts", AndiType::Short, 3, shorts);
    AddAndiAttribute(&file.GlobalAttributes, "double", AndiType::Double, 1, &number);
    AddAndiScalar(&file, "scalar", AndiType::Float, &scalar);
    AndiVariable* oneShort = AddAndiScalar(&file, "short", AndiType::Short, shorts);
    AddAndiAttribute(&oneShort->Attributes, "a", AndiType::Byte, 1, "b");
    AddAndiVector(&file, "none", AndiType::Float, 0);
    // -2 as a double is C0 and seven zeros; 65538 is the shorts 1 and 2, 196608 the short 3.
    const std::string header = "1128547841 0 10 1 'none' 0 12 3 'text' 2 4 \"2.3\" "
                               "'shorts' 3 3 65538 196608 'double' 6 1 -1073741824 0 "
                               "11 3 'scalar' 0 0 0 5 4 248 "
                               "'short' 0 12 1 'a' 1 1 \"b\" 3 4 252 "
                               "'none' 1 0 0 0 5 0 256 1.5f 65536";
    EXPECT_EQ(written(), layOut(header));
}

TEST_F(AndiWriterTest, EveryTypeOfAnyLengthIsReversedOnceAndComesBack) {
    // Data move in parts of 256 KB, and small ones through windows of 64 KB.
    constexpr std::int32_t window = 64 * 1024;
    constexpr std::int32_t part = 256 * 1024;
    char message[400]{};
    for (const AndiType type :
         {AndiType::Byte, AndiType::Short, AndiType::Float, AndiType::Double}) {
        const std::int32_t size = elementSize(type);
        for (const std::int32_t byteCount :
             {3 * size, window - 8, window, window + 8, part - 8, part, part + 8, part + window}) {
            AddAndiDimension(&file, "d", byteCount / size);
            AndiVariable* variable = AddAndiVector(&file, "v", type, 0);
            std::string data(static_cast<std::size_t>(byteCount), '\0');
            for (std::size_t i = 0; i < data.size(); ++i) {
                data[i] = static_cast<char>(i * 37 + i / 251);
            }
            data.copy(static_cast<char*>(variable->Data), data.size());
            const std::string path = folder.path("x.cdf");
            EXPECT_EQ(WriteAndiFile(path.c_str(), &file, message), 1);
            std::string bytes = readFile(path).substr(80);
            EXPECT_EQ(bytes.size() % 4, 0U);
            bytes.resize(data.size());
            ReverseBytes(bytes.data(), size, byteCount / size);
            EXPECT_TRUE(bytes == data) << size << ' ' << byteCount;
            ASSERT_EQ(ReadAndiFile(path.c_str(), &file, message), 1);
            EXPECT_EQ(std::memcmp(file.Variables[0].Data, data.data(), data.size()), 0);
            FreeAndiFile(&file);
        }
    }
}

TEST_F(AndiWriterTest, WhatWasLoadedIsWrittenAsItWas) {
    const std::string original =
        layOut("1128547841 3 10 2 'run' 0 'pair' 2 12 1 't' 2 4 \"2.3\" 11 2 "
               "'s' 0 0 0 3 4 148 'r' 2 0 1 0 0 5 8 152 65536 1f 2f 3f 4f 5f 6f");
    char message[400]{};
    ASSERT_EQ(ReadAndiFile(folder.write("y.cdf", original).c_str(), &file, message), 1);
    EXPECT_EQ(written(), original);
}

TEST_F(AndiWriterTest, PlacesEndAt31Bits) {
    char message[400]{};
    for (const bool isBeyond : {false, true}) {
        // The last data stand 4 bytes ahead of 2 GB, or there: behind 200 bytes, three times the
        // length below and 44 or 48 more for a long name. They are none, so that nothing but their
        // place is wrong.
        AddAndiDimension(&file, "d", 715'827'800);
        AddAndiDimension(&file, "none", 0);
        const std::size_t lastLength = isBeyond ? 49 : 48;
        for (const std::size_t nameLength : {std::size_t{1}, std::size_t{1}, lastLength}) {
            AddAndiVector(&file, std::string(nameLength, 'n').c_str(), AndiType::Byte, 0);
        }
        AddAndiVector(&file, "e", AndiType::Byte, 1);
        EXPECT_EQ(WriteAndiFile("/dev/null", &file, message), isBeyond ? 0 : 1);
        FreeAndiFile(&file);
    }
}

} // namespace
} // namespace korlit
