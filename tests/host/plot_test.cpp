// The charts' geometry and texts, on their own headers.
#include "host/plot/chart_layout.h"
#include "host/plot/chart_legend.h"
#include "host/plot/chart_panels.h"
#include "host/plot/chart_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <set>
#include <tuple>

namespace korlit::host {
namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

std::string textsOf(const Ticks& ticks) {
    std::string all;
    for (int i = 0; i < ticks.count; ++i) {
        all += (i == 0 ? "" : " ") + ticks.text(i);
    }
    return ticks.namedExponent == 0 ? all : all + " e" + std::to_string(ticks.namedExponent);
}

TEST(PlotTicks, AreRoundAndWithinTheRange) {
    using Case = std::tuple<Range, int, const char*>;
    for (const auto& [range, most, texts] : std::initializer_list<Case>{
             {{0, 20}, 10, "0 2 4 6 8 10 12 14 16 18 20"},
             {{0, 20}, 9, "0 5 10 15 20"},
             {{-0.31, 0.29}, 6, "-0.3 -0.2 -0.1 0.0 0.1 0.2"},
             {{0, 2.5e6}, 5, "0.0 0.5 1.0 1.5 2.0 2.5 e6"},
             {{0, 999999}, 2, "0 500000"},
             {{0, 0.004}, 4, "0 1 2 3 4 e-3"},
             {{-3e38, 3e38}, 4, "-200 0 200 e36"},
             {{5.2, 5.3}, 1, "5.2 5.3"},
         }) {
        EXPECT_EQ(textsOf(ticksFor(range, most)), texts);
    }
}

TEST(PlotTicks, AreEvenAndAsTheirTextsSayOverAnyRange) {
    for (const double size : {1e-289, 1e-9, 0.003, 0.7, 1.0, 20.0, 999.0, 1e6, 3.4e38, 1e300}) {
        for (const Range& part : std::initializer_list<Range>{
                 {0, 1}, {-1, 1}, {-0.3, 0.04}, {0.99, 1}, {-1, -0.999999}, {0.2, 0.2000001}}) {
            const Range range = widened({.from = part.from * size, .to = part.to * size});
            for (int most = 1; most < 30; ++most) {
                const Ticks ticks = ticksFor(range, most);
                const double slack = range.length() * 1e-5;
                // The next larger round step would be at most 2.5 times as long.
                EXPECT_GE(ticks.step() * (ticks.count + 1), range.length() - slack);
                EXPECT_GE(ticks.step() * most, range.length() - slack);
                EXPECT_LE(ticks.step() * most, range.length() * 2.5 + slack);
                for (int i = 0; i < ticks.count; ++i) {
                    EXPECT_GE(ticks.value(i), range.from - slack);
                    EXPECT_LE(ticks.value(i), range.to + slack);
                    const std::string power = "e" + std::to_string(ticks.namedExponent);
                    EXPECT_NEAR(std::stod(ticks.text(i) + power), ticks.value(i), slack);
                }
            }
        }
    }
}

TEST(PlotRange, IsWidenedOnlyIfTooNarrow) {
    EXPECT_EQ(widened({.from = 2, .to = 2.001}).from, 2);
    EXPECT_EQ(widened({.from = 2, .to = 2.001}).to, 2.001);
    for (const double place : {0.0, 1e-300, -8.0, 4e6}) {
        const Range range = widened({.from = place, .to = place + place * 1e-10});
        EXPECT_LT(range.from, place - std::abs(place) / 4);
        EXPECT_GT(range.to, place + std::abs(place) / 4);
    }
}

std::vector<std::size_t> drawnOf(const std::vector<double>& samples, std::size_t columns) {
    return samplesToDraw({AndiType::Double, samples.data(), samples.size()}, columns);
}

TEST(PlotSamples, KeepEachColumnsExtremesAndGaps) {
    using Indices = std::vector<std::size_t>;
    EXPECT_EQ(drawnOf({}, 10), Indices{});
    EXPECT_EQ(drawnOf({3, none, 4}, 1), (Indices{0, 1, 2}));
    const std::vector<double> samples{5, 5, 9,    5, 1,        5, 5, // first, highest, lowest, last
                                      5, 5, none, 5, infinite, 5, 7}; // first, gap, last
    EXPECT_EQ(drawnOf(samples, 2), (Indices{0, 2, 4, 6, 7, 9, 13}));
    EXPECT_EQ(drawnOf(std::vector<double>(7, none), 1), (Indices{0, 6}));
}

TEST(PlotSamples, LoseNeitherAnEndNorAnExtreme) {
    for (std::size_t count = 1; count < 90; ++count) {
        std::vector<double> samples(count);
        for (std::size_t i = 0; i < count; ++i) {
            samples[i] = static_cast<double>(i * 37 % count);
        }
        for (const std::size_t columns : {1U, 2U, 3U, 7U}) {
            const std::vector<std::size_t> drawn = drawnOf(samples, columns);
            EXPECT_TRUE(std::ranges::is_sorted(drawn, std::less_equal{}));
            EXPECT_EQ(drawn.front(), 0U);
            EXPECT_EQ(drawn.back(), count - 1) << count << " in " << columns;
            const auto value = [&](std::size_t i) { return samples[i]; };
            EXPECT_EQ(value(std::ranges::min(drawn, {}, value)), std::ranges::min(samples));
            EXPECT_EQ(value(std::ranges::max(drawn, {}, value)), std::ranges::max(samples));
        }
    }
}

TEST(PlotLine, IsCutBetweenItsPoints) {
    const std::vector<LinePoint> line{
        {.x = 1, .y = 10}, {.x = 3, .y = 30}, {.x = 4, .y = none}, {.x = 5, .y = 50}};
    using Case = std::tuple<Range, std::vector<double>, double>;
    for (const auto& [range, xs, highest] : std::initializer_list<Case>{
             {{2, 2.5}, {2, 2.5}, 25},
             {{0, 3}, {1, 3}, 30},
             {{0, 0.5}, {}, -infinite},
             {{6, 7}, {}, -infinite},
             {{3.5, 4}, {3.5, 4}, -infinite},
             {{2, 9}, {2, 3, 4, 5}, 50},
         }) {
        std::vector<double> cut;
        for (const LinePoint& point : cutTo(line, range)) {
            cut.push_back(point.x);
        }
        EXPECT_EQ(cut, xs) << range.from;
        EXPECT_EQ(highestWithin(line, range), highest) << range.from;
    }
}

TEST(PlotLabels, MoveAsLittleAsTheyCan) {
    const auto flat = [](const Range&) { return 4.0; };
    using Places = std::vector<double>;
    for (const auto& [anchors, centres] : std::initializer_list<std::pair<Places, Places>>{
             {{50, 80}, {50, 80}},
             {{50, 53, 56}, {40.5, 53, 65.5}},
             {{0}, {6.25}},
             {{99, 100}, {81.25, 93.75}},
         }) {
        std::vector<Label> labels(anchors.size());
        std::ranges::transform(anchors, labels.begin(),
                               [](double anchor) { return Label{.anchor = anchor, .length = 10}; });
        const auto places = placeLabels(labels, {.from = 0, .to = 100}, flat);
        for (std::size_t i = 0; i < centres.size(); ++i) {
            EXPECT_DOUBLE_EQ(places.at(i).centre, centres[i]);
            EXPECT_EQ(places[i].elbow > 0, anchors != centres);
        }
    }
}

TEST(PlotLabels, StandOnOneBaseWhereTheyMove) {
    // Those that share an elbow share what they stand above, or their leaders would cross.
    const std::vector<Label> crowd{{.anchor = 50, .length = 10}, {.anchor = 52, .length = 10}};
    const auto moved =
        placeLabels(crowd, {.from = 0, .to = 100}, [](const Range& columns) { return columns.to; });
    EXPECT_EQ(moved[0].base, moved[1].base);
}

TEST(PlotLines, AreToldApart) {
    std::set<std::tuple<double, double, double, bool>> styles;
    for (std::size_t i = 0; i < 14; ++i) {
        const auto [colour, isDashed] = lineStyle(i, 14);
        styles.emplace(colour.red, colour.green, colour.blue, isDashed);
    }
    EXPECT_EQ(styles.size(), 14U);
}

TEST(PlotLabels, GoToTheMostImportantWhereRoomIsShort) {
    const Range bounds{.from = 0, .to = 1000};
    EXPECT_EQ(labelsWithRoom(std::vector<double>{700, 20, 400}, bounds),
              (std::vector<std::size_t>{1, 2, 0}));
    // 54 labels of 12.5 reach 331 to both sides, 55 would reach more than a third.
    const std::vector<double> heap(70, 500.0);
    EXPECT_EQ(labelsWithRoom(heap, bounds).size(), 54U);
    EXPECT_EQ(labelsWithRoom(heap, {.from = 490, .to = 520}).size(), 2U);
}

/// Labels of many lengths at crowded places above a wave.
TEST(PlotLabels, CoverNeitherEachOtherNorTheSignalNorTheEdge) {
    constexpr double height = 300;
    const Range bounds{.from = 60, .to = 960};
    std::vector<double> anchors(500);
    for (std::size_t i = 0; i < anchors.size(); ++i) {
        anchors[i] = 510 + 450 * std::sin(static_cast<double>(i) * 1.7);
    }
    std::vector<LinePoint> line(901);
    for (std::size_t i = 0; i < line.size(); ++i) {
        const double x = 60 + static_cast<double>(i);
        line[i] = {.x = x, .y = 50 * std::sin(x / 15) - 20};
    }
    std::vector<Label> labels;
    for (const std::size_t i : labelsWithRoom(anchors, bounds)) {
        labels.push_back({.anchor = anchors[i], .length = 20.0 + static_cast<double>(i % 130)});
    }
    ASSERT_GT(labels.size(), 40U);
    const auto places =
        placeLabels(labels, bounds, [&](const Range& range) { return highestWithin(line, range); });
    const Range values = valuesToShow({.from = -70, .to = 30}, labels, places, height);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const double left = places[i].centre - 6.25;
        EXPECT_GE(left, i == 0 ? 60 : places[i - 1].centre + 6.25 - 1e-9) << i;
        EXPECT_LE(left + 12.5, 960 + 1e-9) << i;
        EXPECT_LE(std::abs(places[i].centre - labels[i].anchor), 300) << i;
        const double bottom =
            (places[i].base - values.from) / values.length() * height + places[i].clearance();
        EXPECT_LE(bottom + labels[i].length, height) << i;
        for (const LinePoint& point : line) {
            if (point.x >= left && point.x <= left + 12.5) {
                EXPECT_LT((point.y - values.from) / values.length() * height, bottom) << i;
            }
        }
    }
}

TEST(PlotTexts, ShowWhatHasAPicture) {
    for (const auto& [bytes, text] : std::initializer_list<std::pair<const char*, const char*>>{
             {"  p-Coumaric acid ", "p-Coumaric acid"},
             {"\xB5V\n", "\xC2\xB5V"},
             {"a\x01\x7F\xC2\x85z", "a   z"},
             {"x\xEF\xBF\xBF\xF0\x9F\xBF\xBEy\xEF\xB7\x90", "x  y"},
             {"\xEF\xB7\xAFx\xEF\xB7\xAFy\xEF\xB7\xB0", "x y\xEF\xB7\xB0"},
             {"\xE2\x80\xA8txt", "txt"},
             {" \t", ""},
         }) {
        EXPECT_EQ(drawableText(bytes), text);
    }
    EXPECT_EQ(firstCharacters("a\xC3\xA4\xE2\x82\xAC", 2), "a\xC3\xA4");
    EXPECT_EQ(raised(-12), "\xE2\x81\xBB\xC2\xB9\xC2\xB2");
}

TEST(PlotTexts, WriteStampsAsPeopleDo) {
    EXPECT_EQ(readableStamp("19991201000000-0930"), "1 December 1999, 00:00:00 (UTC-09:30)");
    EXPECT_EQ(readableStamp("20240131235959"), "31 January 2024, 23:59:59");
    EXPECT_EQ(readableStamp("20240231120000+0000"), "20240231120000+0000");
}

} // namespace
} // namespace korlit::host
