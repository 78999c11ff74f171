#include "datetime/serial_date.h"

#include "platform/text.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <limits>
#include <string>

namespace korlit {
namespace {

StampFields decodedFields(double serial) {
    SerialStamp stamp{.Serial = serial, .Fields = {}};
    DecodeSerialDate(&stamp);
    return stamp.Fields;
}

std::string decoded(double serial) {
    const StampFields fields = decodedFields(serial);
    std::array<char, 64> text{};
    formatText(text, "%d-%d-%d %d:%d:%d", fields.Year, fields.Month, fields.Day, fields.Hour,
               fields.Minute, fields.Second);
    return text.data();
}

double daytime(int hour, int minute, double second) {
    return 38000 + (hour * 3600 + minute * 60 + second) / 86400;
}

TEST(SerialDate, DaysAndTimesAreThoseOfTheCalendar) {
    // A year is what its 16 bits hold.
    using Case = std::pair<double, const char*>;
    const Case cases[]{{0.0, "1899-12-30 0:0:0"},
                       {0.03125, "1899-12-31 0:45:0"},
                       {0.5, "1899-12-31 12:0:0"},
                       {1.0, "1899-12-31 0:0:0"},
                       {1.75, "1899-12-31 18:0:0"},
                       {2.0, "1900-1-1 0:0:0"},
                       {38000.25, "2004-1-14 6:0:0"},
                       {38000.35737268518, "2004-1-14 8:34:37"},
                       {23242572.5, "65535-12-31 12:0:0"},
                       {23242573.5, "0-1-1 12:0:0"},
                       {25000000.25, "4811-9-3 6:0:0"},
                       {2147483647.75, "48806-7-10 18:0:0"},
                       {daytime(10, 30, 59.3), "2004-1-14 10:30:59"},
                       {daytime(10, 30, 20.45), "2004-1-14 10:30:20"},
                       {daytime(10, 30, 20.55), "2004-1-14 10:30:21"},
                       {daytime(10, 30, 59.45), "2004-1-14 10:31:0"},
                       {daytime(12, 59, 59.5), "2004-1-14 12:60:0"},
                       {daytime(23, 59, 59.7), "2004-1-14 23:60:0"}};
    for (const auto& [serial, expected] : cases) {
        EXPECT_EQ(decoded(serial), expected) << serial;
    }
}

TEST(SerialDate, FollowsTheCalendarFromDayToDay) {
    using namespace std::chrono;
    // All days of four centuries, and some of each year for as long as the calendar here goes on.
    for (int day = 2; day < 11'000'000; day += day < 150'000 ? 1 : 1009) {
        const year_month_day date{sys_days{1899y / December / 30} + days{day}};
        const StampFields fields = decodedFields(day + 0.5);
        ASSERT_TRUE(fields.Year == static_cast<int>(date.year()) &&
                    fields.Month == static_cast<unsigned>(date.month()) &&
                    fields.Day == static_cast<unsigned>(date.day()) && fields.Hour == 12)
            << day;
    }
}

TEST(SerialDate, NoSecondOfADayIsLost) {
    for (int second = 0; second < 86400; ++second) {
        const StampFields fields = decodedFields(daytime(0, 0, second));
        ASSERT_EQ(fields.Hour * 3600 + fields.Minute * 60 + fields.Second, second);
        ASSERT_LT(fields.Second, 60);
    }
}

TEST(SerialDate, WhatHasNoDateIsDayZero) {
    for (const double serial :
         {-0.25, -1.5, -1e300, 2147483648.25, 1e300, std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(decoded(serial), "1899-12-30 0:0:0") << serial;
    }
}

} // namespace
} // namespace korlit
