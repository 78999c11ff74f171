#include "datetime/stamp.h"

#include <gtest/gtest.h>

#include <cstring>

namespace korlit {
namespace {

TEST(ParseAndiStamp, ReadsFieldsByPosition) {
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
        EXPECT_EQ(std::memcmp(&fields, &expected, sizeof fields), 0) << text;
    }
}

} // namespace
} // namespace korlit
