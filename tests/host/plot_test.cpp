// The charts' geometry and texts, and the extremes of a signal, on their own headers.
#include "host/data/facts.h"
#include "host/plot/chart_layout.h"
#include "host/plot/chart_legend.h"
#include "host/plot/chart_panels.h"
#include "host/plot/chart_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

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

TEST(Extremes, AreTheFirstOfTheirValueAmongWhatCounts) {
    const std::vector<double> samples{NAN, 2, 1, 9, 1, 9, -infinite, NAN};
    const NumberView signal{AndiType::Double, samples.data(), samples.size()};
    const auto isFinite = [](double sample) { return std::isfinite(sample); };
    EXPECT_EQ(extremesOf(signal), (Extremes{.minimum = 6, .maximum = 3}));
    EXPECT_EQ(extremesOf(signal, isFinite), (Extremes{.minimum = 2, .maximum = 3}));
    EXPECT_EQ(extremesOf(signal.part(4, 3), isFinite), (Extremes{.minimum = 0, .maximum = 1}));
    EXPECT_EQ(extremesOf(signal.part(7, 1)), std::nullopt);
}

TEST(PlotTicks, AreRoundAndWithinTheRange) {
    struct Case {
        Range range;
        int most;
        const char* texts;
    };
    for (const auto& [range, most, texts] : std::initializer_list<Case>{
             {{0, 20}, 10, "0 2 4 6 8 10 12 14 16 18 20"},
             {{0, 20}, 9, "0 5 10 15 20"},
             {{0.1, 1.05}, 5, "0.2 0.4 0.6 0.8 1.0"},
             {{-0.31, 0.29}, 6, "-0.3 -0.2 -0.1 0.0 0.1 0.2"},
             {{-7, 21}, 3, "0 10 20"},
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
                EXPECT_LE(ticks.step() * (ticks.count - 1), range.length() + slack);
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
    struct Case {
        Range range;
        Range expected;
    };
    for (const auto& [range, expected] : std::initializer_list<Case>{
             {{2, 2.001}, {2, 2.001}},
             {{0, 0}, {-1, 1}},
             {{-8, -8}, {-12, -4}},
             {{4e6, 4e6 + 0.001}, {1999999.9995, 6000000.0015}},
         }) {
        EXPECT_DOUBLE_EQ(widened(range).from, expected.from);
        EXPECT_DOUBLE_EQ(widened(range).to, expected.to);
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
        std::vector<double> samples;
        for (std::size_t i = 0; i < count; ++i) {
            samples.push_back(static_cast<double>(i * 37 % count));
        }
        for (const std::size_t columns : {1U, 2U, 3U, 7U}) {
            const std::vector<std::size_t> drawn = drawnOf(samples, columns);
            EXPECT_TRUE(std::ranges::is_sorted(drawn, std::less_equal{}));
            EXPECT_LE(drawn.size(), columns * 5);
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
    struct Case {
        Range range;
        std::vector<double> xs;
        double highest;
    };
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
    struct Case {
        std::vector<double> anchors;
        std::vector<double> centres;
        bool isMoved;
    };
    for (const auto& [anchors, centres, isMoved] : std::initializer_list<Case>{
             {{50, 80}, {50, 80}, false},
             {{50, 50}, {43.75, 56.25}, true},
             {{50, 53, 56}, {40.5, 53, 65.5}, true},
             {{0}, {6.25}, true},
             {{99, 100}, {81.25, 93.75}, true},
         }) {
        std::vector<Label> labels;
        labels.reserve(anchors.size());
        for (const double anchor : anchors) {
            labels.push_back({.anchor = anchor, .length = 10});
        }
        const auto places = placeLabels(labels, {.from = 0, .to = 100}, flat);
        ASSERT_EQ(places.size(), centres.size());
        for (std::size_t i = 0; i < places.size(); ++i) {
            EXPECT_DOUBLE_EQ(places[i].centre, centres[i]);
            EXPECT_EQ(places[i].elbow > 0, isMoved);
        }
    }
}

TEST(PlotLabels, StandAboveTheSignalBesideADip) {
    const std::vector<Label> labels{{.anchor = 50, .length = 10, .leastBase = 7},
                                    {.anchor = 90, .length = 10, .leastBase = 2}};
    const auto places =
        placeLabels(labels, {.from = 0, .to = 100}, [](const Range&) { return 4.0; });
    EXPECT_EQ(places[0].base, 7);
    EXPECT_EQ(places[1].base, 4);
    // Those that share an elbow share what they stand above, or their leaders would cross.
    const std::vector<Label> crowd{{.anchor = 50, .length = 10}, {.anchor = 52, .length = 10}};
    const auto moved =
        placeLabels(crowd, {.from = 0, .to = 100}, [](const Range& columns) { return columns.to; });
    EXPECT_EQ(moved[0].base, moved[1].base);
}

TEST(PlotLines, AreToldApart) {
    constexpr std::size_t many = 14;
    for (std::size_t i = 0; i < many; ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            const LineStyle a = lineStyle(i, many);
            const LineStyle b = lineStyle(j, many);
            EXPECT_TRUE(a.isDashed != b.isDashed || a.colour.red != b.colour.red ||
                        a.colour.green != b.colour.green || a.colour.blue != b.colour.blue)
                << i << j;
        }
    }
}

TEST(PlotPanels, StandInColumnsWhenTheyAreMany) {
    struct Case {
        std::size_t panels;
        std::size_t columns;
        std::size_t rows;
        double height;
    };
    for (const auto& [panels, columns, rows, height] : std::initializer_list<Case>{
             {1, 1, 1, 560}, {3, 1, 3, 1100}, {4, 1, 4, 1340}, {5, 2, 3, 1100}, {9, 2, 5, 1350}}) {
        EXPECT_EQ(columnCount(panels, 480), columns);
        EXPECT_EQ(columnCount(panels, 479), 1U);
        EXPECT_EQ(rowCount(panels, columns), rows);
        EXPECT_EQ(defaultHeight(panels, 1000), height);
        EXPECT_EQ(defaultHeight(panels, 1600), height);
        EXPECT_EQ(defaultHeight(panels, 500), height / 2);
    }
}

TEST(PlotPeaks, AreNegativeBelowTheirBaselineOrTheirEnds) {
    const LinePoint low{.x = 1, .y = 1};
    const LinePoint high{.x = 2, .y = 3};
    EXPECT_TRUE((ChartPeak{.apex = {.x = 1, .y = 1.9}, .baseline = {{low, high}}}).isNegative());
    EXPECT_FALSE((ChartPeak{.apex = {.x = 1, .y = 2}, .baseline = {{low, high}}}).isNegative());
    EXPECT_TRUE((ChartPeak{.apex = {.x = 1, .y = 0}, .start = low, .end = high}).isNegative());
    EXPECT_FALSE((ChartPeak{.apex = {.x = 1, .y = 1}, .start = low, .end = high}).isNegative());
    EXPECT_FALSE((ChartPeak{.apex = {.x = 1, .y = -9}}).isNegative());
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
    std::vector<double> anchors;
    anchors.reserve(500);
    for (int i = 0; i < 500; ++i) {
        anchors.push_back(510 + 450 * std::sin(i * 1.7));
    }
    std::vector<LinePoint> line;
    line.reserve(901);
    for (int x = 60; x <= 960; ++x) {
        line.push_back({.x = static_cast<double>(x), .y = 50 * std::sin(x / 15.0) - 20});
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
             {"\xC3\xA4\xE2\x82\xAC", "\xC3\xA4\xE2\x82\xAC"},
             {"a\x01\x7F\xC2\x85z", "a   z"},
             {"x\xEF\xBF\xBF\xF0\x9F\xBF\xBEy\xEF\xB7\x90", "x  y"},
             {"\xEF\xB7\xAFx\xEF\xB7\xAFy\xEF\xB7\xB0", "x y\xEF\xB7\xB0"},
             {"\xE2\x80\xA8txt", "txt"},
             {"\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},
             {" \t", ""},
         }) {
        EXPECT_EQ(drawableText(bytes), text);
    }
    EXPECT_EQ(firstCharacters("a\xC3\xA4\xE2\x82\xAC", 2), "a\xC3\xA4");
    EXPECT_EQ(raised(-12), "\xE2\x81\xBB\xC2\xB9\xC2\xB2");
}

TEST(PlotTexts, WriteStampsAsPeopleDo) {
    for (const auto& [stamp, text] : std::initializer_list<std::pair<const char*, const char*>>{
             {"20051012083437+0200", "12 October 2005, 08:34:37 (UTC+02:00)"},
             {"19991201000000-0930", "1 December 1999, 00:00:00 (UTC-09:30)"},
             {"20240131235959", "31 January 2024, 23:59:59"},
             {"20241331235959+0000", "20241331235959+0000"},
             {"20240231120000+0000", "20240231120000+0000"},
             {"20240229246000", "20240229246000"},
             {"20240229120000 UTC", "20240229120000 UTC"},
             {"20240100235959+0000", "20240100235959+0000"},
             {"2024-01-31 23:59:59", "2024-01-31 23:59:59"},
             {"2024", "2024"},
         }) {
        EXPECT_EQ(readableStamp(stamp), text);
    }
}

} // namespace
} // namespace korlit::host
