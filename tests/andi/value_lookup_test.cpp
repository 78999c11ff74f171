#include "andi/value_lookup.h"

#include "andi/andi_reader.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace korlit {
namespace {

class ValueLookupTest : public testing::Test {
  protected:
    void SetUp() override {
        char message[400]{};
        ASSERT_EQ(ReadAndiFile(TEST_DATA "all_types.cdf", &file, message), 1) << message;
    }
    void TearDown() override { FreeAndiFile(&file); }

    /// The buffer of `length` characters after a text search, or "-" for no hit; what stands behind
    /// it, and all of it without a hit, must survive.
    std::string find(std::string key, std::size_t length) {
        std::string buffer(length + 6, '~');
        const auto limit = static_cast<std::int32_t>(length);
        const int hit = FindAndiValue(&file, key.data(), buffer.data(), limit, &variable);
        EXPECT_EQ(buffer.substr(hit == 1 ? length : 0).find_first_not_of('~'), std::string::npos);
        return hit == 1 ? buffer.substr(0, length) : "-";
    }

    std::string findVariable(std::string key, const std::string& lowered) {
        void* data = nullptr;
        FindAndiValue(&file, key.data(), &data, pointerMode, &variable);
        EXPECT_EQ(key, lowered);
        EXPECT_EQ(data, variable == nullptr ? nullptr : variable->Data);
        return variable == nullptr ? "-" : variable->Name;
    }

    AndiFile file{};
    AndiVariable* variable = nullptr;
};

TEST_F(ValueLookupTest, FindsByNameAndRenders) {
    struct Case {
        const char *key, *text, *variable;
    };
    // The last ones: a record variable, a letter in upper case, separators that don't fit, a part.
    const Case cases[]{{"bytevalues", "1255", "byte_values"},
                       {"detectorunit", "mV", "detector-unit"},
                       {"ShortValues", "-1 20 ", "short_values"},
                       {"integervalues", "-1 20 ", "integer_values"},
                       {"floatvalue", "     1.5 ", "float_value"},
                       {"doublevalues", "  1E+100    -2.25 ", "double_values"},
                       {"2bytestring", "5 ", "_2_byte_string"},
                       {"doubled_separator", "2 ", "doubled__separator"},
                       {"shadowed", "global", "shadowed"},
                       {"triple", "-1 2 300 ", "-"},
                       {"pointnumber", "1024", "-"},
                       {"ofarecordvariable", "found", "-"},
                       {"recordvalues", "-", "-"},
                       {"hpinjectiontime", "-", "-"},
                       {"doubledseparator", "-", "-"},
                       {"trailing", "-", "-"},
                       {"point_number", "-", "-"},
                       {"fou", "-", "-"},
                       {"four4", "-", "-"},
                       {"", "-", "-"}};
    for (const auto& [key, text, name] : cases) {
        EXPECT_STREQ(find(key, 100).c_str(), text) << key;
        const bool isVariableHit = std::string{name} != "-" && std::string{text} != "global";
        EXPECT_EQ(variable != nullptr, isVariableHit) << key;
        EXPECT_EQ(findVariable(key, std::string{key} == "ShortValues" ? "shortvalues" : key), name);
    }
    EXPECT_EQ(findVariable("FLOAT_Value-1", "float_value-1"), "-");
}

TEST_F(ValueLookupTest, KeepsToTheBuffer) {
    using namespace std::string_literals;
    EXPECT_EQ(find("four", 6), "1234\0\0"s);
    EXPECT_EQ(find("four", 4), "1234"s) << "no terminator where the text fills the buffer";
    EXPECT_EQ(find("four", 3), "123"s);
    EXPECT_EQ(find("shortvalues", 4), "-1 \0"s) << "full at one less than its length";
    EXPECT_EQ(find("doublevalues", 8), "  1E+10\0"s);
    EXPECT_EQ(find("pointnumber", 4), "102\0"s);
    EXPECT_EQ(find("pointnumber", 1), "\0"s);
}

TEST(FormatAndiValue, RendersOneElement) {
    const float floats[]{-1.0F / 3, 1234567, std::numeric_limits<float>::infinity()};
    EXPECT_STREQ(FormatAndiValue(AndiType::Float, floats, 0).data(), "-0.333333");
    EXPECT_STREQ(FormatAndiValue(AndiType::Float, floats, 1).data(), "1.23457E+06");
    EXPECT_STREQ(FormatAndiValue(AndiType::Float, floats, 2).data(), "     INF");
    EXPECT_STREQ(FormatAndiValue(AndiType::Char, "a\0c", 1).data(), " ");
    EXPECT_STREQ(FormatAndiValue(AndiType::Char, "a\0c", 2).data(), "c");
    EXPECT_STREQ(FormatAndiValue(AndiType::None, "x", 0).data(), "");
}

TEST(MatchAndiName, DeliversAValueWithoutElements) {
    char out[]{"ab"};
    EXPECT_EQ(MatchAndiName("a", "a", AndiType::Float, 0, out, out, 2), 1);
    EXPECT_STREQ(out, "ab");
    EXPECT_EQ(MatchAndiName("a", "a", AndiType::Char, 0, out, out, 2), 1);
    EXPECT_STREQ(out, "");
}

} // namespace
} // namespace korlit
