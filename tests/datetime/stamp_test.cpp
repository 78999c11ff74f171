#include "datetime/stamp.h"

#include "datetime/injection_time.h"
#include "native/native_date.h"
#include "native/native_state.h"
#include "tests/support/module_test.h"

#include <array>
#include <cstring>
#include <ctime>

namespace korlit {
namespace {

using Dates = test::ModuleTest;

bool isSame(const StampFields& a, const StampFields& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

TEST_F(Dates, AStampIsReadByPosition) {
    const std::pair<const char*, StampFields> cases[]{
        {"20051012083437+0200", {2005, 10, 0, 12, 8, 34, 37, 0}},
        {"2005-10-12 08:34:37", {2005, 10, 0, 12, 8, 34, 37, 0}},
        {"2005/10/12T08.34.37", {2005, 10, 0, 12, 8, 34, 37, 0}},
        {"200510120834", {2005, 10, 0, 12, 8, 34, 0, 0}},
        {"20051", {2005, 1, 0, 0, 0, 0, 0, 0}},
        {"", {0, 0, 0, 0, 0, 0, 0, 0}},
        {"2005-10-12  08:34", {2005, 10, 0, 12, 0, 8, 34, 0}},
        {"2005XX12", {2005, 0, 0, 2, 0, 0, 0, 0}},
        {" 205-1-2", {205, 1, 0, 2, 0, 0, 0, 0}}};
    for (const auto& [text, expected] : cases) {
        StampFields fields{};
        EXPECT_EQ(ParseAndiStamp(&fields, text), 1);
        EXPECT_TRUE(isSame(fields, expected)) << text;
    }
}

TEST_F(Dates, AStampHasTheOffsetOfItsZoneAndDate) {
    const char* const berlin = "CET-1CEST,M3.5.0,M10.5.0/3";
    struct Case {
        const char* zone;
        StampFields fields;
        const char* stamp;
    };
    // Behind the first ones: a zone less than an hour behind, whose clocks can't be told from one
    // ahead; the first and last dates; no such dates.
    const Case cases[]{{"UTC", {2005, 10, 0, 12, 8, 34, 37, 0}, "20051012083437+0000"},
                       {berlin, {2005, 10, 0, 12, 8, 34, 37, 0}, "20051012083437+0200"},
                       {berlin, {2005, 12, 0, 12, 8, 34, 37, 0}, "20051212083437+0100"},
                       {"XXX0:30", {2005, 10, 0, 12, 23, 45, 0, 0}, "20051012234500-0030"},
                       {"UTC", {1900, 1, 0, 1, 0, 0, 0, 0}, "19000101000000+0000"},
                       {"UTC", {1969, 12, 0, 31, 23, 59, 59, 0}, "19691231235959+0000"},
                       {"UTC", {9999, 12, 0, 31, 23, 59, 59, 0}, "99991231235959+0000"},
                       {"UTC", {2004, 2, 0, 29, 12, 60, 0, 0}, "20040229126000+0000"},
                       {"UTC", {2004, 2, 0, 29, 12, 0, 60, 0}, "20040229120060+0000"},
                       {"UTC", {2004, 2, 0, 29, 12, 0, 61, 0}, "-"},
                       {"UTC", {2005, 2, 0, 29, 0, 0, 0, 0}, "-"},
                       {"UTC", {1900, 2, 0, 29, 0, 0, 0, 0}, "-"},
                       {"UTC", {0, 0, 0, 0, 0, 0, 0, 0}, "-"},
                       {"UTC", {5, 10, 0, 12, 0, 0, 0, 0}, "-"},
                       {"UTC", {2005, 13, 0, 1, 0, 0, 0, 0}, "-"},
                       {"UTC", {2005, 1, 0, 1, 24, 0, 0, 0}, "-"}};
    for (const auto& [zone, fields, stamp] : cases) {
        setenv("TZ", zone, 1);
        char text[stampTextSize]{"-"};
        EXPECT_EQ(FormatAndiStamp(&fields, text), std::strcmp(stamp, "-") == 0 ? 0 : 1);
        EXPECT_STREQ(text, stamp) << zone;
    }
}

TEST_F(Dates, AStampComesBackWithTheSystemsOffset) {
    for (const char* zone :
         {"UTC", "XXX12", "EST5EDT,M3.2.0,M11.1.0", "XXX11", "MART9:30",
          "NST3:30NDT,M3.2.0,M11.1.0", "CET-1CEST,M3.5.0,M10.5.0/3", "IST-5:30", "NPT-5:45",
          "XXX-0:30", "XXX3:45", "CHAST-12:45CHADT,M9.5.0/2:45,M4.1.0/3:45", "XXX-14"}) {
        setenv("TZ", zone, 1);
        tzset();
        // Through each hour of the day and many days, at a quarter past.
        for (std::time_t instant = 1104537600 + 900; instant < 1136073600; instant += 7 * 3600L) {
            std::tm local{};
            localtime_r(&instant, &local);
            std::array<char, 32> expected{};
            std::strftime(expected.data(), expected.size(), "%Y%m%d%H%M%S%z", &local);
            StampFields fields{};
            ParseAndiStamp(&fields, expected.data());
            std::array<char, stampTextSize> text{};
            ASSERT_EQ(FormatAndiStamp(&fields, text.data()), 1);
            const std::tm at = local;
            local.tm_isdst = -1;
            // An hour that comes twice has two offsets.
            if (std::mktime(&local) == instant && local.tm_gmtoff == at.tm_gmtoff) {
                EXPECT_STREQ(text.data(), expected.data()) << zone;
            }
        }
    }
    setenv("TZ", "UTC", 1);
}

TEST_F(Dates, ANativeDateFollowsTheSystemsOrder) {
    struct Case {
        const char *pattern, *date, *time;
        StampFields fields;
    };
    const StampFields october{2005, 10, 0, 12, 8, 34, 0, 0};
    const StampFields december{2005, 12, 0, 10, 8, 34, 0, 0};
    const StampFields untouched{0, 0, 0, 0, 5, 6, 0, 0};
    const Case cases[]{{"dd.MM.yyyy", "12.10.2005", "08:34", october},
                       {"M/d/yy", "12.10.2005", "08:34", december},
                       {"M/d/yy", "13.12.2005", "08:34", {2005, 12, 0, 13, 8, 34, 0, 0}},
                       {"dd.MM.yy", "32.10.05", "08:34", {32, 10, 0, 5, 8, 34, 0, 0}},
                       {"yyyy-MM-dd", "12.10.2005", "08:34", october},
                       {"M/d/yy", "2005.10.12", "08:34", october},
                       {"", "12.10.2005", "08:34", october},
                       {"y", "12.10.2005", "08:34", {2005, 10, 0, 0, 8, 34, 0, 0}},
                       {"dd.MM.yyyy", "12/10/2005", "08:34", untouched},
                       {"dd.MM.yyyy", "12/10.2005", "08:34", october},
                       {"dd.MM.yyyy", "12.10.05", "08:34", {5, 10, 0, 12, 8, 34, 0, 0}},
                       {"dd.MM.yyyy", "12.", "08:34", untouched},
                       {"dd.MM.yyyy", "", "08:34", untouched},
                       {"dd.MM.yyyy", "12.10.20055", "08:345", {20055, 10, 0, 12, 8, 345, 0, 0}},
                       {"dd.MM.yyyy", "12.10.2005", "0834", {2005, 10, 0, 12, 5, 6, 0, 0}},
                       {"dd.MM.yyyy", "12.10.2005", "x:34", {2005, 10, 0, 12, 5, 34, 0, 0}},
                       {"dd.MM.yyyy", "12.10.2005", "8:", {2005, 10, 0, 12, 8, 6, 0, 0}}};
    for (const auto& [pattern, date, time, expected] : cases) {
        const std::string profile = std::string{"[intl]\nsShortDate="} + pattern + "\n";
        setenv("KORLIT_PROFILE", folder.write("win.ini", profile).c_str(), 1);
        // A field may be full to its last byte.
        TheSliHeader = {};
        std::string_view{date}.copy(TheSliHeader.DateText, sizeof TheSliHeader.DateText);
        std::string_view{time}.copy(TheSliHeader.TimeText, sizeof TheSliHeader.TimeText);
        StampFields fields = untouched;
        ParseNativeDate(&fields);
        EXPECT_TRUE(isSame(fields, expected)) << pattern << " " << date << " " << time;
    }
    unsetenv("KORLIT_PROFILE");
}

TEST_F(Dates, TheInjectionTimeIsOnTheTwelveHourDial) {
    const std::pair<StampFields, const char*> cases[]{
        {{2005, 10, 0, 5, 8, 34, 0, 0}, "5 Oct 2005  08:34 AM"},
        {{2005, 1, 0, 12, 0, 15, 0, 0}, "12 Jan 2005  00:15 AM"},
        {{2005, 12, 0, 12, 12, 30, 0, 0}, "12 Dec 2005  12:30 AM"},
        {{2005, 10, 0, 12, 13, 5, 0, 0}, "12 Oct 2005  01:05 PM"},
        {{2005, 10, 0, 12, 23, 59, 0, 0}, "12 Oct 2005  11:59 PM"},
        {{2005, 10, 0, 12, 65535, 30, 0, 0}, "12 Oct 2005  03:30 PM"},
        {{2005, 13, 0, 12, 1, 0, 0, 0}, "12  2005  01:00 AM"},
        {{0, 0, 0, 0, 0, 0, 0, 0}, "0  0  00:00 AM"}};
    for (const auto& [fields, text] : cases) {
        EXPECT_STREQ(InjectionTime(fields).data(), text);
    }
}

} // namespace
} // namespace korlit
