// Dates in all their forms. The input is a time zone, a serial date, the fields of a stamp, the two
// date texts of a native header, the text of a stamp and a file of settings.
#include "datetime/injection_time.h"
#include "datetime/serial_date.h"
#include "datetime/stamp.h"
#include "fuzz/input.h"
#include "fuzz/promises.h"
#include "native/native_date.h"
#include "native/native_state.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <vector>

using namespace korlit;
using namespace korlit::fuzz;

namespace {

constexpr std::array<const char*, 8> zones{"UTC0",
                                           "CET-1CEST,M3.5.0,M10.5.0/3",
                                           "EST5EDT,M3.2.0,M11.1.0",
                                           "<+1245>-12:45<+1345>,M9.5.0/2:45,M4.1.0/3:45",
                                           "<-0930>9:30",
                                           "<+14>-14",
                                           "<-12>12",
                                           "LMT-0:53:28"};

void checkInjectionTime(const StampFields& fields) {
    const InjectionTimeText text = InjectionTime(fields);
    const std::string_view shown{text.data(), strnlen(text.data(), text.size())};
    require(shown.size() < text.size() && (shown.ends_with("AM") || shown.ends_with("PM")),
            "an injection time is terminated, and has its half day");
}

/// Zones of a whole hour and more, whose stamp must have the offset that the system knows.
void checkOffset(const char* stamp) {
    std::tm local{};
    std::sscanf(stamp, "%4d%2d%2d%2d%2d%2d", &local.tm_year, &local.tm_mon, &local.tm_mday,
                &local.tm_hour, &local.tm_min, &local.tm_sec);
    local.tm_year -= 1900;
    local.tm_mon -= 1;
    local.tm_isdst = -1;
    std::mktime(&local);
    std::array<char, 16> expected{};
    std::strftime(expected.data(), expected.size(), "%z", &local);
    require(std::labs(local.tm_gmtoff) < 3600 || std::strcmp(stamp + 14, expected.data()) == 0,
            "a stamp has the offset of its zone");
}

void checkStamp(const StampFields& fields) {
    checkInjectionTime(fields);
    // A block of exactly that size, so that a sanitizer sees what is written behind it.
    std::vector<char> text(stampTextSize, '~');
    if (FormatAndiStamp(&fields, text.data()) == 0) {
        require(text == std::vector<char>(stampTextSize, '~'), "no stamp leaves the text");
        return;
    }
    require(strnlen(text.data(), text.size()) == stampTextSize - 1, "a stamp has 19 characters");
    StampFields read{0, 0, fields.DayOfWeek, 0, 0, 0, 0, fields.Milliseconds};
    ParseAndiStamp(&read, text.data());
    require(std::memcmp(&read, &fields, sizeof read) == 0, "a stamp is read as it was written");
    checkOffset(text.data());
}

/// Day 0 is 30 December 1899 at its very start alone; the calendar here ends at 11 million days.
void checkDate(double serial, const StampFields& fields) {
    using namespace std::chrono;
    constexpr sys_days dayZero = year{1899} / December / 30;
    const double counted = serial >= 0.0 && serial < 2147483648.0 ? serial : 0.0;
    const auto number = static_cast<std::int32_t>(counted);
    const year_month_day shown{year{fields.Year}, month{fields.Month}, day{fields.Day}};
    require(shown.month().ok() && shown.day().ok(), "a serial date is a date");
    if (number < 11'000'000) {
        const year_month_day date{dayZero + days{counted > 0.0 ? std::max(number, 1) : 0}};
        require(shown == date, "a serial date counts its days");
        const int seconds = (fields.Hour * 60 + fields.Minute) * 60 + fields.Second;
        require(fields.Hour < 24 && fields.Minute <= 60 && fields.Second < 60 &&
                    std::abs(seconds - (counted - number) * 86400.0) < 0.7,
                "a serial date has its time of day");
    }
}

void checkSerialDate(double serial) {
    SerialStamp stamp{.Serial = serial, .Fields = {}};
    DecodeSerialDate(&stamp);
    checkDate(serial, stamp.Fields);
    checkStamp(stamp.Fields);
}

void checkNativeDate() {
    constexpr StampFields none{};
    StampFields fields{};
    ParseNativeDate(&fields);
    const bool isDate = textOf(TheSliHeader.DateText).find('.') != std::string_view::npos;
    require(isDate || std::memcmp(&fields, &none, sizeof none) == 0,
            "a date without a dot sets nothing");
    checkStamp(fields);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input{data, size};
    setenv("TZ", zones[input.number<std::uint8_t>() % zones.size()], 1);
    tzset();
    checkSerialDate(input.number<double>());
    checkStamp(input.number<StampFields>());
    checkInjectionTime(input.number<StampFields>());
    TheSliHeader = {};
    std::ranges::copy(input.take(sizeof TheSliHeader.DateText), TheSliHeader.DateText);
    std::ranges::copy(input.take(sizeof TheSliHeader.TimeText), TheSliHeader.TimeText);
    StampFields parsed{};
    ParseAndiStamp(&parsed, input.text().c_str());
    checkStamp(parsed);
    setenv("KORLIT_PROFILE", scratchFile("settings.ini", input.rest()).c_str(), 1);
    checkNativeDate();
    return 0;
}
