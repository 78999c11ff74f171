// Detection codes and baseline values, each on its own.
#include "dunvale/baselines.h"
#include "dunvale/detection_codes.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <sstream>
#include <string>

namespace korlit {
namespace {

/// The rows as text: a letter, or - for a row of zeros.
std::string shown(const std::string& rows) {
    std::string letters;
    for (std::size_t row = 0; row < rows.size(); row += detectionCodeSize) {
        EXPECT_EQ(rows.substr(row + 1, 3), std::string(3, '\0'));
        letters += rows[row] == '\0' ? '-' : rows[row];
    }
    return letters;
}

TEST(DetectionCodes, FollowTheEvents) {
    // Points of start, apex and end: 0 1 2, 2 3 5, 7 8 9.
    const std::array<Results, 3> results{{{0.5F, 0.0F, 1.0F, 0.0F, 0.0F, 0.0F},
                                          {1.5F, 1.0F, 2.5F, 0.0F, 0.0F, 0.0F},
                                          {4.0F, 3.5F, 4.5F, 0.0F, 0.0F, 0.0F}}};
    struct Case {
        const char* events; ///< type@point
        const char* start;
        const char* stop;
    };
    const Case cases[]{
        {"", "---", "---"},
        {"1@0 2@1 5@2 2@3 3@5", "BV-", "VB-"},
        {"1@0 2@1 5@2 2@3 3@5 1@7 2@8 6@9", "BVB", "VBB"},
        // 1: stays at the first peak, moves on behind anything else, whether its test holds or not
        {"1@0", "B--", "---"},
        {"1@1", "---", "---"},
        {"1@0 1@2", "BB-", "---"},
        {"1@3 1@3 1@7", "--B", "---"},
        {"9@0 1@2", "-B-", "---"},
        {"-1@0 1@2", "-B-", "---"},
        // 2: nothing behind 1, V behind 5, B behind others, at the apex of the peak moved on to
        {"1@0 2@3 3@2", "B--", "B--"},
        {"5@2 2@3", "-V-", "---"},
        {"5@2 2@2", "---", "---"},
        {"2@3", "-B-", "---"},
        {"2@1", "---", "---"},
        {"2@3 2@8", "-BB", "---"},
        {"3@2 2@3", "-B-", "---"},
        {"4@0 2@3", "-B-", "---"},
        // 3, 5 and 6: only behind 2, at the end of the peak
        {"1@0 2@1 3@2", "B--", "B--"},
        {"1@0 2@1 5@2", "B--", "V--"},
        {"1@0 2@1 6@2", "B--", "B--"},
        {"1@0 2@1 3@1", "B--", "---"},
        {"1@0 2@1 5@1", "B--", "---"},
        {"1@0 2@1 6@3", "B--", "---"},
        {"1@0 3@2 5@2 6@2", "B--", "---"},
        {"1@0 2@1 4@2 3@2", "B--", "---"},
        {"1@0 2@1 7@2 6@2", "B--", "---"},
        {"1@0 2@1 0@2 1@0 3@2", "B--", "---"},
        {"1@0 2@1 3@2 5@2", "B--", "B--"},
        // the walk ends behind the last peak
        {"2@3 2@8 2@8 3@9 2@8 3@9", "-BB", "---"},
        {"1@0 1@2 1@7 1@7 1@7 2@8 3@9", "BBB", "---"}};
    for (const auto& [text, start, stop] : cases) {
        std::vector<Peaks> events;
        std::istringstream in{text};
        Peaks event{};
        for (int type = 0, point = 0; in >> type && in.ignore() && in >> point;) {
            event.EventType = type;
            event.EventPoint = point;
            events.push_back(event);
        }
        std::string startCodes(12, '\0');
        std::string stopCodes(12, '\0');
        WalkPeakEvents(events, results, 30000, startCodes.data(), stopCodes.data());
        EXPECT_EQ(shown(startCodes), start) << text;
        EXPECT_EQ(shown(stopCodes), stop) << text;
    }
}

/// Whether an event at `point` meets a start at `time`.
bool meets(std::int32_t point, std::int16_t intervalMs, float time) {
    const Results result{0.0F, time, 0.0F, 0.0F, 0.0F, 0.0F};
    const Peaks event{point, {}, 1};
    std::string codes(8, '\0');
    WalkPeakEvents({&event, 1}, {&result, 1}, intervalMs, codes.data(), codes.data() + 4);
    return codes[0] == 'B';
}

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

TEST(PointIndexes, OfABaselineAreRoundedToSinglePrecisionFirst) {
    // 0.41666666 minutes at 250 ms are 99.9999976 intervals: as a float 100.
    constexpr float justBelow = 0.4166666567325592F;
    std::vector<float> signal(101);
    signal[99] = 99.0F;
    signal[100] = 100.0F;
    EXPECT_EQ(BaselineValue(signal, 250, justBelow), 100.0F);
    EXPECT_TRUE(meets(99, 250, justBelow));
    EXPECT_FALSE(meets(100, 250, justBelow));
}

TEST(PointIndexes, OutsideTheSignalReadNothingAndMeetNothing) {
    const std::array<float, 3> signal{1.0F, 2.0F, 3.0F};
    struct Case {
        std::int16_t intervalMs;
        float time, value;
    };
    const Case cases[]{{30000, 0.0F, 1.0F},       {30000, 1.49F, 3.0F}, {30000, 1.5F, 0.0F},
                       {30000, -0.49F, 1.0F},     {30000, -0.5F, 0.0F}, {30000, 1e30F, 0.0F},
                       {30000, -1e30F, 0.0F},     {1, 3.4e38F, 0.0F},   {30000, infinity, 0.0F},
                       {30000, notANumber, 0.0F}, {0, 0.0F, 0.0F},      {0, 1.0F, 0.0F},
                       {-30000, -1.0F, 3.0F},     {-30000, 0.5F, 0.0F}};
    for (const auto& [intervalMs, time, value] : cases) {
        EXPECT_EQ(BaselineValue(signal, intervalMs, time), value) << intervalMs << " " << time;
    }
    EXPECT_EQ(BaselineValue({}, 30000, 0.0F), 0.0F);
    // 2 to the 32nd intervals of a minute: 0 in 32 bits.
    EXPECT_FALSE(meets(0, 30000, 2147483648.0F));
    EXPECT_TRUE(meets(-2, 30000, -1.0F));
    for (const float time : {0.0F, 1.0F, infinity, notANumber}) {
        EXPECT_FALSE(meets(0, 0, time));
    }
}

} // namespace
} // namespace korlit
