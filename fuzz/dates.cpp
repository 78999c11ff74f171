// Dates in all their forms. The input is a time zone, a serial date, the fields of a stamp, the two
// date texts of a native header, the text of a stamp and a file of settings.
#include "native/native_state.h"
#include "datetime/injection_time.h"
#include "native/native_date.h"
#include "datetime/serial_date.h"
#include "datetime/stamp.h"
#include "fuzz/input.h"
#include "fuzz/promises.h"
#include "platform/text.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <string_view>

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

void chooseZone(std::uint8_t number) {
    setenv("TZ", zones[number % zones.size()], 1);
    tzset();
}

void checkInjectionTime(const StampFields& fields) {
    const InjectionTimeText text = InjectionTime(fields);
    const std::string_view shown{text.data(), strnlen(text.data(), text.size())};
    require(shown.size() < text.size(), "an injection time is terminated");
    require(shown.ends_with("AM") || shown.ends_with("PM"), "an injection time has its half day");
}

/// Zones of a whole hour and more, whose stamp must have the offset that the system knows.
void checkOffset(const StampFields& fields, std::string_view offset) {
    std::tm local{};
    local.tm_year = fields.Year - 1900;
    local.tm_mon = fields.Month - 1;
    local.tm_mday = fields.Day;
    local.tm_hour = fields.Hour;
    local.tm_min = fields.Minute;
    local.tm_sec = fields.Second;
    local.tm_isdst = -1;
    std::mktime(&local);
    const long minutes = local.tm_gmtoff / 60;
    if (std::labs(minutes) < 60) {
        return;
    }
    std::array<char, 16> expected{};
    formatText(expected, "%c%02ld%02ld", minutes < 0 ? '-' : '+', std::labs(minutes) / 60,
               std::labs(minutes) % 60);
    require(offset == expected.data(), "a stamp has the offset of its zone");
}

void checkFormattedStamp(const StampFields& fields) {
    // A block of exactly that size, so that a sanitizer sees what is written behind it.
    std::vector<char> text(stampTextSize, '~');
    if (FormatAndiStamp(&fields, text.data()) == 0) {
        require(text == std::vector<char>(stampTextSize, '~'), "no stamp leaves the text");
        return;
    }
    require(strnlen(text.data(), text.size()) == stampTextSize - 1, "a stamp has 19 characters");
    StampFields read{};
    read.DayOfWeek = fields.DayOfWeek;
    read.Milliseconds = fields.Milliseconds;
    require(ParseAndiStamp(&read, text.data()) == 1, "a stamp is read");
    require(std::memcmp(&read, &fields, sizeof read) == 0, "a stamp is read as it was written");
    checkOffset(fields, std::string_view{text.data()}.substr(14));
}

void checkParsedStamp(const std::string& text) {
    StampFields fields{};
    require(ParseAndiStamp(&fields, text.c_str()) == 1, "a stamp is read");
    checkInjectionTime(fields);
    checkFormattedStamp(fields);
}

/// Day 0 is 30 December 1899 at its very start alone; the years end where those of a stamp end.
/// Beyond the years that the calendar here has, only the form of the date is looked at.
void checkDate(double serial, const StampFields& fields) {
    using namespace std::chrono;
    constexpr sys_days dayZero = year{1899} / December / 30;
    const bool isNumber = serial >= 0.0 && serial < 2147483648.0;
    const double counted = isNumber ? serial : 0.0;
    const auto number = static_cast<std::int32_t>(counted);
    require(fields.Month >= 1 && fields.Month <= 12 && fields.Day >= 1 && fields.Day <= 31,
            "a serial date is a date");
    if (number < 11'000'000) {
        const year_month_day date{dayZero + days{counted > 0.0 ? std::max(number, 1) : 0}};
        require(int{date.year()} == fields.Year && unsigned{date.month()} == fields.Month &&
                    unsigned{date.day()} == fields.Day,
                "a serial date counts its days");
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
    checkInjectionTime(stamp.Fields);
    checkFormattedStamp(stamp.Fields);
}

void checkNativeDate() {
    StampFields fields{};
    ParseNativeDate(&fields);
    const bool isDate = textOf(TheSliHeader.DateText).find('.') != std::string_view::npos;
    const StampFields none{};
    require(isDate || std::memcmp(&fields, &none, sizeof none) == 0,
            "a date without a dot sets nothing");
    checkInjectionTime(fields);
    checkFormattedStamp(fields);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static ScratchFile settings{"settings.ini"};
    setenv("KORLIT_PROFILE", settings.path().c_str(), 1);
    Input input{data, size};
    chooseZone(input.number<std::uint8_t>());
    checkSerialDate(input.number<double>());
    checkFormattedStamp(input.number<StampFields>());
    checkInjectionTime(input.number<StampFields>());
    TheSliHeader = {};
    std::ranges::copy(input.take(sizeof TheSliHeader.DateText), TheSliHeader.DateText);
    std::ranges::copy(input.take(sizeof TheSliHeader.TimeText), TheSliHeader.TimeText);
    checkParsedStamp(input.text());
    settings.fill(input.rest());
    checkNativeDate();
    requireNothingHeld();
    return 0;
}
