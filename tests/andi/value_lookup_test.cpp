#include "andi/value_lookup.h"

#include "andi/andi_reader.h"
#include "tests/support/module_test.h"

#include <limits>

namespace korlit {
namespace {

class ValueLookupTest : public test::ModuleTest {
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

    AndiFile file{};
    AndiVariable* variable = nullptr;
};

TEST_F(ValueLookupTest, FindsByNameAndRenders) {
    using Case = std::pair<const char*, const char*>;
    const Case cases[]{{"bytevalues", "1255"},
                       {"detectorunit", "mV"},
                       {"shortvalues", "-1 20 "},
                       {"integervalues", "-1 20 "},
                       {"floatvalue", "     1.5 "},
                       {"2bytestring", "5 "},
                       {"shadowed", "global"},
                       {"triple", "-1 2 300 "},
                       {"ofarecordvariable", "found"},
                       {"pointnumber", "1024"},
                       {"doubled_separator", "2 "},
                       {"DetectorUnit", "mV"},
                       {"doublevalues", "     1.5    -2.25 "}};
    for (const auto& [key, text] : cases) {
        EXPECT_STREQ(find(key, 100).c_str(), text) << key;
    }
    // A record variable, a letter in upper case, separators that don't fit, parts.
    for (const char* key : {"recordvalues", "hpinjectiontime", "doubledseparator", "trailing",
                            "point_number", "fou", "four4", ""}) {
        EXPECT_EQ(find(key, 100), "-") << key;
    }
}

TEST_F(ValueLookupTest, TellsTheVariableThatWasHitByName) {
    find("shadowed", 10);
    EXPECT_EQ(variable, nullptr) << "the global attribute came first";
    for (std::string key : {"Shadowed", "detectorunit", "triple", "recordvalues", "pointnumber"}) {
        const bool isVariable = key == "Shadowed" || key == "detectorunit";
        void* data = nullptr;
        EXPECT_EQ(FindAndiValue(&file, key.data(), &data, pointerMode, &variable), isVariable);
        EXPECT_EQ(data, isVariable ? variable->Data : nullptr);
        EXPECT_NE(key, "Shadowed") << "lower-cased in place";
    }
}

TEST_F(ValueLookupTest, GivesAnyBufferTheStartOfTheText) {
    for (const char* key : {"bytevalues", "detectorunit", "four", "shadowed", "shortvalues",
                            "triple", "doublevalues", "pointnumber"}) {
        const std::string whole = find(key, 100).c_str();
        const bool isText = std::string{"mV 1234 global"}.find(whole) != std::string::npos;
        for (std::size_t length = 1; length < whole.size() + 3; ++length) {
            const std::string start = whole.substr(0, isText ? length : length - 1);
            const std::string buffer = find(key, length);
            EXPECT_EQ(buffer.substr(0, start.size()), start);
            EXPECT_EQ(buffer.find('\0'), start.size() < length ? start.size() : std::string::npos)
                << key << length;
        }
    }
}

TEST(FormatAndiValue, RendersOneElement) {
    const double doubles[]{-1.0 / 3, 1234567, -std::numeric_limits<double>::infinity()};
    EXPECT_STREQ(FormatAndiValue(AndiType::Double, doubles, 0).data(), "-0.333333");
    EXPECT_STREQ(FormatAndiValue(AndiType::Double, doubles, 1).data(), "1.23457E+06");
    EXPECT_STREQ(FormatAndiValue(AndiType::Double, doubles, 2).data(), "    -INF");
    EXPECT_STREQ(FormatAndiValue(AndiType::Char, "a\0c", 1).data(), " ");
    char out[]{"ab"};
    EXPECT_EQ(MatchAndiName("a", "a", AndiType::Float, 0, out, out, 2), 1);
    EXPECT_STREQ(out, "ab") << "no numbers write nothing";
}

} // namespace
} // namespace korlit
