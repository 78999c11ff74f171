// Charts as they are drawn, on the headers of what draws them.
#include "host/plot/chart_axes.h"
#include "host/plot/chart_legend.h"
#include "host/plot/chart_text.h"
#include "host/plot/chart_traces.h"
#include "host/text/utf8.h"
#include "tests/support/canvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

namespace korlit::host {
namespace {

using test::Canvas;
using test::chartWith;
using test::white;

TEST(ChartPen, FitsTextsAndAlignsThem) {
    Canvas canvas{400, 400};
    setFont(canvas, textSize);
    for (const std::string text : {"Caff\xC3\xA9ine, anhydrous", "WWWWWWWW", "illlii", ""}) {
        for (double width = 12; width < 130; width += 2.3) {
            const std::string fit = fitted(canvas, text, width);
            EXPECT_LE(drawnWidth(canvas, fit), width);
            if (fit != text) {
                const std::size_t count = characterCount(fit);
                EXPECT_EQ(fit, firstCharacters(text, count - 1) + "…");
                EXPECT_GT(drawnWidth(canvas, firstCharacters(text, count) + "…"), width) << text;
            }
        }
    }
    for (const double alignment : {0.0, 0.5, 1.0}) {
        Canvas across{400, 400};
        Canvas upwards{400, 400};
        setFont(across, textSize);
        drawText(across, "HHHHHHHH", 200, 200, alignment);
        setFont(upwards, textSize);
        drawUpwards(upwards, "HHHHHHHH", textSize, 200, 200, alignment);
        const double width = drawnWidth(canvas, "HHHHHHHH");
        const Box level = across.ink();
        const Box upright = upwards.ink();
        EXPECT_NEAR(level.right, 200 + width * (1 - alignment), 2);
        EXPECT_NEAR(level.bottom, 200, 1);
        EXPECT_NEAR(upright.top, 200 - width * (1 - alignment), 2);
        EXPECT_NEAR((upright.left + upright.right) / 2, 200, 1);
    }
}

/// A plot whose times and values are pixels from its lower left corner, which is at 50 and 150.
Plot plotOf(const ChartPanel& panel) {
    Plot plot;
    plot.panel = &panel;
    plot.box = {.left = 50, .top = 50, .right = 150, .bottom = 150};
    plot.times = plot.values = {.from = 0, .to = 100};
    return plot;
}

using Dot = std::tuple<double, double, Colour>;

void expectDots(const Plot& plot, std::initializer_list<Dot> dots) {
    Canvas canvas{200, 200};
    drawTraces(canvas, plot);
    const Box ink = canvas.ink();
    EXPECT_TRUE(ink.left >= 50 && ink.top >= 50 && ink.right <= 150 && ink.bottom <= 150);
    for (const auto& [x, y, colour] : dots) {
        const int column = static_cast<int>(50 + x);
        const int row = static_cast<int>(150 - y);
        for (const Colour& other : {paper, gapGrey, signalBlue, peakBlue, baselineRed, faint,
                                    lineStyle(0, 2).colour, lineStyle(1, 2).colour}) {
            EXPECT_LE(canvas.distance(column, row, colour), canvas.distance(column, row, other))
                << x << ' ' << y << ' ' << std::hex << canvas.pixel(column, row);
        }
    }
}

ChartPeak peakBetween(double start, double end, double baseline) {
    ChartPeak peak{.apex = {.x = (start + end) / 2, .y = 40.5}};
    peak.start = {.x = start, .y = 40.5};
    peak.end = {.x = end, .y = 40.5};
    peak.baseline = {{{.x = start, .y = baseline}, {.x = end, .y = baseline}}};
    return peak;
}

TEST(ChartTraces, HaveTheirColoursAtTheirPlaces) {
    const std::vector<LinePoint> withGaps{{0, 10.5}, {20, 10.5}, {30, NAN},  {40, 60.5},
                                          {50, NAN}, {60, 20.5}, {90, 20.5}, {95, NAN}};
    ChartPanel panel;
    panel.lines = {{.name = "", .points = withGaps}};
    expectDots(plotOf(panel), {{10, 10.5, signalBlue},
                               {10, 30, paper},
                               {25, 80, gapGrey},
                               {40, 60.5, signalBlue}, // alone between two gaps
                               {55, 5, gapGrey},
                               {70, 20.5, signalBlue},
                               {92, 99, gapGrey},
                               {98, 99, paper}});
    panel.lines.push_back({.name = "", .points = {{0, 40.5}, {100, 40.5}}});
    expectDots(
        plotOf(panel),
        {{10, 10.5, lineStyle(0, 2).colour}, {10, 40.5, lineStyle(1, 2).colour}, {30, 80, paper}});
    // A peak from -20 to 60, cut by the edge, and one behind the end.
    panel.lines = {{.name = "", .points = {{0, 40.5}, {100, 40.5}}}};
    panel.peaks = {peakBetween(-20, 60.5, 5.5), peakBetween(80, 110, 70.5)};
    panel.peaks.front().isBaselineMeasured = true;
    expectDots(plotOf(panel), {{1, 20, peakBlue},
                               {60.5, 38, baselineRed}, // where it ends
                               {62, 20, paper},
                               {30, 3, paper},
                               {30, 43, paper},
                               {30, 5.5, baselineRed},
                               {82, 68, peakBlue},
                               {98, 60, peakBlue}});
}

TEST(ChartTraces, LeadToNamesThatHaveMoved) {
    ChartPanel panel;
    Plot plot = plotOf(panel);
    plot.labels = {{.text = "a",
                    .place = {.centre = 60.5, .base = 20, .elbow = 30},
                    .apex = {.x = 50.5, .y = 20}}};
    Canvas canvas{200, 200};
    drawLabels(canvas, plot);
    EXPECT_TRUE(canvas.pixel(100, 126) != white);
    // The name stands 36 above the base, the leader goes up to it from 2 above the apex.
    EXPECT_NEAR(canvas.ink().bottom, 128, 1);
    plot.labels.front().apex.y = NAN;
    plot.labels.front().isOverSignal = true;
    Canvas lone{200, 200};
    cairo_paint(lone);
    drawLabels(lone, plot);
    EXPECT_TRUE(lone.has(100, 126, ink));
    EXPECT_TRUE(lone.has(56, 93, paper)) << "of the name, above which nothing is seen";
}

TEST(ChartAxes, HaveEvenTicksFromEndToEnd) {
    using Values = std::vector<double>;
    for (const auto& [range, values] : std::initializer_list<std::pair<Range, Values>>{
             {{3, 27}, {4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26}}, // 10 and 20, five parts each
             {{0, 40}, {0, 5, 10, 15, 20, 25, 30, 35, 40}}}) {         // by 20, four parts each
        ChartPanel panel;
        Plot plot = plotOf(panel);
        plot.box = {.left = 100, .top = 50, .right = 700, .bottom = 650};
        plot.times = plot.values = range;
        plot.valueTicks = ticksFor(range, 3);
        Canvas canvas{800, 800};
        drawAxes(canvas, plot, plot.valueTicks);
        const Box ink = canvas.ink();
        EXPECT_TRUE(ink.right < 702 && ink.top > 48) << "no tick beyond an end";
        const int halfway = static_cast<int>(plot.x(values[1]) - plot.x(values[0])) / 2;
        for (const double value : values) {
            const int x = static_cast<int>(plot.x(value));
            const int y = static_cast<int>(plot.y(value));
            EXPECT_TRUE(canvas.pixel(x, 651) != white && canvas.pixel(98, y) != white) << value;
            EXPECT_EQ(canvas.pixel(x - halfway, 651), white) << value;
            EXPECT_EQ(canvas.pixel(98, y + halfway), white) << value;
        }
    }
}

TEST(ChartAxes, HaveRoomForTheTextsOfTimes) {
    ChartPanel panel;
    Canvas canvas{10, 10};
    const std::vector<Range> spans{{0, 20}, {-1e-9, 1e-9}, {123456.789, 123456.7892}, {0, 1e12}};
    for (const double width : {120.0, 300.0, 950.0}) {
        for (const Range& times : spans) {
            Plot plot = plotOf(panel);
            plot.box.right = plot.box.left + width;
            plot.times = times;
            const Ticks ticks = timeTicksFor(canvas, plot);
            for (int i = 1; i < ticks.count; ++i) {
                const double room = plot.x(ticks.value(i)) - plot.x(ticks.value(i - 1));
                const double texts =
                    drawnWidth(canvas, ticks.text(i)) + drawnWidth(canvas, ticks.text(i - 1));
                EXPECT_GT(room - texts / 2, 10) << width << ' ' << ticks.text(i);
            }
        }
    }
}

TEST(ChartLegend, HasOneStrokeForEachLine) {
    for (const std::size_t lines : {2U, 7U}) {
        for (const double width : {240.0, 1000.0}) {
            Chart chart = chartWith(2, lines, width, 400);
            chart.panels.front().lines.resize(1);
            Canvas canvas{static_cast<int>(width), 400};
            drawLegend(canvas, chart, 100);
            const Box ink = canvas.ink();
            EXPECT_LE(ink.right, width - outerMargin);
            EXPECT_LE(ink.bottom, subtitleBaseline + legendHeight(canvas, chart) + 4);
            EXPECT_GT(ink.top, subtitleBaseline);
            double last = 0; // where the stroke before is, rows below each other
            for (std::size_t i = 0; i < lines; ++i) {
                const Colour colour = lineStyle(i, lines).colour;
                const Box stroke =
                    canvas.boundsOf([&](int x, int y) { return canvas.has(x, y, colour); });
                const double place = stroke.top * width + stroke.left;
                EXPECT_GT(place, last) << i << " of " << lines;
                last = place;
                EXPECT_TRUE(stroke.width() > 20 && stroke.height() < 3) << i;
            }
        }
    }
    EXPECT_EQ(legendHeight(Canvas{10, 10}, chartWith(2, 1, 240, 400)), 0);
}

/// Texts and lines of a whole chart keep off its edges; a panel without a sample says so.
TEST(Charts, AreWholeAndSayWhatIsMissing) {
    constexpr int height = 500;
    for (const int width : {200, 241, 700}) {
        for (const double last : {1.0, 20.0, 100000.0}) {
            Chart chart = chartWith(3, 2, width, height);
            chart.title = std::string(300, 'W');
            chart.note = std::string(300, 'n');
            chart.times.to = last;
            chart.panels[1].lines[0].points = chart.panels[1].lines[1].points = {{1, NAN}};
            chart.panels[2].lines[0].points = {{1, NAN}};
            Canvas canvas{width, height};
            drawChart(canvas, chart);
            const Box ink = canvas.ink();
            EXPECT_TRUE(ink.left > 2 && ink.top > 2) << width << ' ' << last;
            EXPECT_TRUE(ink.right < width - 2 && ink.bottom < height - 2) << width << ' ' << last;
            for (const Plot& plot : layOut(canvas, chart)) {
                const Box words = canvas.boundsOf([&](int x, int y) {
                    return x > plot.box.left + 1 && x < plot.box.right - 1 &&
                           y > plot.box.top + 1 && y < plot.box.bottom - 1 &&
                           canvas.has(x, y, faint);
                });
                EXPECT_EQ(words.width() > 0, plot.panel == &chart.panels[1]);
            }
        }
    }
}

} // namespace
} // namespace korlit::host
