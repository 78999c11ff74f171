#include "datetime/injection_time.h"

#include "platform/text.h"

namespace korlit {

namespace {

constexpr std::array<const char*, 13> monthNames{"",    "Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

} // namespace

InjectionTimeText InjectionTime(const StampFields& fields) {
    const char* month = fields.Month < monthNames.size() ? monthNames[fields.Month] : "";
    const int dialHour = (fields.Hour - 1) % 12 + 1;
    InjectionTimeText text{};
    formatText(text, "%hd %s %hd  %02hd:%02hd %s", static_cast<short>(fields.Day), month,
               static_cast<short>(fields.Year), static_cast<short>(dialHour),
               static_cast<short>(fields.Minute), fields.Hour > 12 ? "PM" : "AM");
    return text;
}

} // namespace korlit
