#include "datetime/stamp.h"

#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace korlit {

namespace {

struct StampField {
    std::uint16_t StampFields::*field;
    std::size_t width;
};

constexpr std::array<StampField, 6> stampFields{{
    {.field = &StampFields::Year, .width = 4},
    {.field = &StampFields::Month, .width = 2},
    {.field = &StampFields::Day, .width = 2},
    {.field = &StampFields::Hour, .width = 2},
    {.field = &StampFields::Minute, .width = 2},
    {.field = &StampFields::Second, .width = 2},
}};

} // namespace

int ParseAndiStamp(StampFields* fields, const char* text) {
    std::string_view rest{text};
    for (const auto& [field, width] : stampFields) {
        if (const auto number = readShort(rest.substr(0, width))) {
            fields->*field = static_cast<std::uint16_t>(*number);
        }
        rest.remove_prefix(std::min(width, rest.size()));
        if (!rest.empty() && !isDigit(rest.front())) {
            rest.remove_prefix(1);
        }
    }
    return 1;
}

} // namespace korlit
