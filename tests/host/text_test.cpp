// Numbers, stamps and texts as the commands print them, on their own headers.
#include "host/text/json.h"
#include "host/text/numbers.h"
#include "host/text/stamps.h"
#include "host/text/utf8.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

namespace korlit::host {
namespace {

TEST(TextNumbers, HaveTheDigitsThatTheyNeed) {
    using Case = std::tuple<double, const char*, const char*, const char*>;
    for (const auto& [number, whole, rounded, withThreeDecimals] : std::initializer_list<Case>{
             {0.1F, "0.1", "0.1", "0.100"},
             {1.0 / 3, "0.3333333333333333", "0.333333", "0.333"},
             {1e-5, "0.00001", "1e-05", "0.000"},
             {9.99e-6, "9.99e-06", "9.99e-06", "0.000"},
             {-1234567.8, "-1234567.8", "-1234568", "-1234567.800"},
             {-1e9, "-1000000000", "-1000000000", "-1000000000"},
             {999999999999999, "999999999999999", "999999999999999", "999999999999999"},
             {1e15, "1e+15", "1e+15", "1e+15"},
             {std::numeric_limits<float>::max(), "3.4028235e+38", "3.40282e+38", "3.40282e+38"},
         }) {
        EXPECT_EQ(numberText(number), whole);
        EXPECT_EQ(roundedText(number), rounded);
        EXPECT_EQ(threeDecimals(number), withThreeDecimals);
        EXPECT_EQ(numberJson(number), Json::parse(whole));
    }
    for (const auto& [number, text] : std::initializer_list<std::pair<double, const char*>>{
             {NAN, "nan"}, {INFINITY, "inf"}, {-INFINITY, "-inf"}}) {
        for (const auto asText : {numberText, timeText, roundedText, threeDecimals}) {
            EXPECT_EQ(asText(number), text);
        }
        for (const auto asJson : {numberJson, timeJson, roundedJson}) {
            EXPECT_EQ(asJson(number), Json()) << text;
        }
    }
}

TEST(TextNumbers, OfTimesAndCountsHaveTheirOwnForms) {
    EXPECT_EQ(timeText(1.0 / 3), "0.33333334");
    EXPECT_EQ(timeJson(1e300), Json(1e300));
    std::string line = "t=";
    appendSampleTime(line, 12345.678951234);
    EXPECT_EQ(line, "t=12345.67895");
    EXPECT_EQ(groupedDigits(0), "0");
    EXPECT_EQ(groupedDigits(999), "999");
    EXPECT_EQ(groupedDigits(100000), "100,000");
    EXPECT_EQ(groupedDigits(1234567), "1,234,567");
}

TEST(Texts, AreUtf8OrElseLatin1AsAWhole) {
    for (const auto& [bytes, text] : std::initializer_list<std::pair<const char*, const char*>>{
             {"\xC3\xA9\xE2\x82\xAC", "\xC3\xA9\xE2\x82\xAC"},
             {"\xC3\xA9\xE9", "\xC3\x83\xC2\xA9\xC3\xA9"},
             {"\xE2\x82", "\xC3\xA2\xC2\x82"},                         // cut
             {"\x80", "\xC2\x80"},                                     // no lead
             {"\xC1\xBF", "\xC3\x81\xC2\xBF"},                         // longer than need be
             {"\xE0\x9F\xBF", "\xC3\xA0\xC2\x9F\xC2\xBF"},             // the same
             {"\xED\x9F\xBF\xEE\x80\x80", "\xED\x9F\xBF\xEE\x80\x80"}, // beside the surrogates
             {"\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xC2\x80"},             // the first of them
             {"\xED\xBF\xBF", "\xC3\xAD\xC2\xBF\xC2\xBF"},             // the last
             {"\xF4\x8F\xBF\xBF", "\xF4\x8F\xBF\xBF"},                 // the last character
             {"\xF4\x90\x80\x80", "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80"}, // behind it
             {"\xF8\x88\x80\x80\x80", "\xC3\xB8\xC2\x88\xC2\x80\xC2\x80\xC2\x80"},
         }) {
        EXPECT_EQ(utf8Of(bytes), text);
        EXPECT_EQ(utf8Of(utf8Of(bytes)), text);
    }
}

TEST(Texts, AreCutBetweenCharacters) {
    const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    const std::vector<std::size_t> sizes{0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 10};
    for (std::size_t most = 0; most < sizes.size(); ++most) {
        EXPECT_EQ(startOfText(text, most), text.substr(0, sizes[most])) << most;
    }
    EXPECT_EQ(startOfText("a\xE9\xE9", 2), "a\xE9");
}

/// Controls, line ends and what Unicode has to turn the direction of a text, beside what is none.
TEST(Texts, SteerNoTerminal) {
    const std::u32string steering{0x00,   0x1F,   0x7F,   0x9F,   0x61C,  0x200E, 0x200F,
                                  0x2028, 0x2029, 0x202A, 0x202E, 0x2066, 0x2069};
    const std::u32string harmless{0x20,   0x7E,   0xA0,   0x61B,  0x61D,  0x200D, 0x2010,
                                  0x2027, 0x202F, 0x2065, 0x206A, 0xFFFD, 0x1F600};
    EXPECT_EQ(printable(encoded(steering)), encoded(std::u32string(steering.size(), 0xFFFD)));
    EXPECT_EQ(printable(encoded(harmless)), encoded(harmless));
    const std::string all = encoded(steering + harmless);
    const std::string line = jsonLine(all);
    EXPECT_EQ(Json::parse(line), Json(all));
    EXPECT_EQ(printable(line.substr(0, line.size() - 1)) + '\n', line);
}

TEST(Paths, ComeBackFromJsonByteByByte) {
    std::vector<std::string> paths{"", "\xC3\xA9.cdf", "bad \xE9\x80.cdf"};
    for (int byte = 1; byte < 256; ++byte) {
        paths.emplace_back(1, static_cast<char>(byte));
    }
    for (const std::string& path : paths) {
        Json object{{"file", utf8Of(path)}};
        addPathBytes(object, "file", path);
        EXPECT_EQ(pathIn(Json::parse(jsonLine(object)), "file"), path);
        EXPECT_EQ(object.contains("file_bytes"), utf8Of(path) != path);
    }
    EXPECT_EQ(failureLine("\xE9", "why\x9B"),
              "{\"file\":\"\xC3\xA9\",\"error\":\"why\\u009b\",\"file_bytes\":\"e9\"}\n");
}

TEST(Stamps, AreDatesThatTheCalendarHas) {
    EXPECT_EQ(stampIn("00010101000000+1400").value().isoText(), "0001-01-01T00:00:00+14:00");
    EXPECT_EQ(stampIn("99991231235960-1359").value().isoText(), "9999-12-31T23:59:60-13:59");
    for (const char* text :
         {"00000101000000+0000", "20240101000000+1401", "20240101000000+0060",
          "20240101006000+0000", "20240101000061+0000", "20240101 10000+0000",
          "202401010000-1+0000", "20240101000000 0000", "20240101000000+000", ""}) {
        EXPECT_FALSE(stampIn(text)) << text;
    }
    EXPECT_EQ(stampOrStartIn("20240101000059").value().isoText(), "2024-01-01T00:00:59");
    EXPECT_FALSE(stampOrStartIn("20240101000000+"));
}

// As `date -d TEXT +%s` has them.
TEST(Stamps, OfAnyZoneAreTimes) {
    EXPECT_EQ(timeIn("1969-12-31T19:00:00-05:00"), 0);
    EXPECT_EQ(timeIn("2024-02-29T12:34:56+05:30"), 1709190296);
    for (const char* text : {"2024-02-29T12:34:56+05:30 ", "2024-02-29T12:34:56", ""}) {
        EXPECT_EQ(timeIn(text), std::nullopt) << text;
    }
    for (const std::time_t time : {0, 1709190296, 1719792000}) {
        EXPECT_EQ(timeIn(isoText(time)), time);
    }
}

} // namespace
} // namespace korlit::host
