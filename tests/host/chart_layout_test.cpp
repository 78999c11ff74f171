// Where the panels of a chart go and what they name, and what its file needs, on their own headers.
#include "host/plot/chart_file.h"
#include "host/plot/chart_legend.h"
#include "host/text/words.h"
#include "tests/support/canvas.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>

namespace korlit::host {
namespace {

using test::Canvas;
using test::chartWith;

TEST(ChartLayout, KeepsPanelsApartAndWithinTheChart) {
    Canvas canvas{10, 10};
    for (const std::size_t panels : {1U, 2U, 3U, 4U, 5U, 9U}) {
        for (const double width : {300.0, 1000.0}) {
            const Chart chart = chartWith(panels, 3, width, defaultHeight(panels, width) + 100);
            const std::vector<Plot> plots = layOut(canvas, chart);
            ASSERT_EQ(plots.size(), panels);
            for (std::size_t i = 0; i < panels; ++i) {
                const Plot& plot = plots[i];
                EXPECT_GE(plot.box.top, subtitleBaseline + 10 + legendHeight(canvas, chart));
                EXPECT_GE(plot.outerLeft, outerMargin);
                EXPECT_LE(plot.box.bottom, chart.height - 50 + 1e-9);
                EXPECT_TRUE(plot.values.contains(-1e5) && plot.values.contains(12345.6));
                for (int tick = 0; tick < plot.valueTicks.count; ++tick) {
                    EXPECT_LE(plot.outerLeft + 20 + drawnWidth(canvas, plot.valueTicks.text(tick)),
                              plot.box.left - tickLength);
                }
                bool isAnyBelow = false;
                for (std::size_t other = 0; other < panels; ++other) {
                    const Box& box = plots[other].box;
                    const bool isBeside = box.left != plot.box.left;
                    isAnyBelow = isAnyBelow || (!isBeside && box.top > plot.box.top);
                    EXPECT_TRUE(other == i || box.right <= plot.outerLeft ||
                                plot.box.right <= plots[other].outerLeft ||
                                box.bottom + 30 <= plot.box.top || plot.box.bottom + 30 <= box.top)
                        << i << " and " << other << " of " << panels;
                }
                EXPECT_EQ(plot.isLowest, !isAnyBelow);
            }
        }
    }
}

TEST(ChartLayout, TellsTheLeastHeight) {
    Canvas canvas{10, 10};
    for (const std::size_t panels : {1U, 3U, 9U}) {
        Chart chart = chartWith(panels, 1, 300, 1);
        try {
            layOut(canvas, chart);
        } catch (const std::runtime_error& error) {
            chart.height = std::stod(std::strstr(error.what(), "height of ") + 10);
        }
        EXPECT_NO_THROW(layOut(canvas, chart)) << panels;
        chart.height -= 1;
        EXPECT_THROW(layOut(canvas, chart), std::runtime_error);
    }
}

TEST(ChartLayout, NamesTheHighestPeaksWithinItsBounds) {
    Canvas canvas{10, 10};
    for (const Bounds& bounds : {Bounds{}, Bounds{.from = 0, .to = 50},
                                 Bounds{.from = {}, .to = -5}, Bounds{.from = 1e6, .to = {}}}) {
        Chart chart = chartWith(1, 1, 600, 400);
        chart.values = bounds;
        chart.panels[0].lines[0].points = {{0, -100}, {1, 100}, {20, 100}};
        chart.panels[0].note = "seen";
        for (int i = 0; i < 100; ++i) { // to both sides, the highest last
            const double apex = i % 2 == 0 ? i : -i;
            chart.panels[0].peaks.push_back({.label = std::to_string(i), .apex = {10, apex}});
        }
        chart.panels[0].peaks.push_back({.label = "out", .apex = {.x = 20.1, .y = 1000}});
        const Plot plot = layOut(canvas, chart).front();
        const std::size_t count = plot.labels.size();
        EXPECT_GT(count, 10U);
        EXPECT_EQ(plot.note, "seen; labels at " + std::to_string(count) + " of 100 peaks");
        EXPECT_EQ(plot.values.from, bounds.from.value_or(plot.values.from));
        EXPECT_EQ(plot.values.to, bounds.to.value_or(plot.values.to));
        EXPECT_LT(plot.values.from, plot.values.to);
        setFont(canvas, smallSize);
        for (const PlacedLabel& label : plot.labels) {
            EXPECT_GE(std::stoi(label.text), 100 - static_cast<int>(count));
            const double bottom = plot.y(label.place.base) - label.place.clearance();
            EXPECT_GE(bottom - drawnWidth(canvas, label.text), plot.box.top - 1e-6);
            EXPECT_LE(plot.y(label.place.base), plot.box.bottom + 1e-6);
        }
    }
}

TEST(ChartLayout, PutsTheNameOfADipAboveItsEnds) {
    Canvas canvas{10, 10};
    Chart chart = chartWith(1, 1, 1000, 400);
    chart.panels[0].lines[0].points = {{0, 9}, {5, 50}, {10, -90}, {15, 60}, {16, 99}, {20, 99}};
    ChartPeak peak{.label = "dip", .apex = {.x = 10, .y = -90}};
    peak.start = {.x = 5, .y = 50};
    peak.end = {.x = 15, .y = 60};
    const auto baseOfName = [&] {
        chart.panels[0].peaks = {peak};
        return layOut(canvas, chart).front().labels.at(0).place.base;
    };
    EXPECT_EQ(baseOfName(), 60);
    peak.baseline = {{{.x = 5, .y = -99}, {.x = 15, .y = -82}}};
    EXPECT_LT(baseOfName(), 0) << "for it isn't below the middle of its baseline";
}

TEST(ChartFiles, TellWhichCharactersHaveNoPicture) {
    Chart chart = chartWith(1, 1, 100, 100);
    EXPECT_TRUE(missingPictures(chart).empty());
    chart.title = "\U000F0002\uE001";
    chart.subtitle = "\uE003";
    chart.note = "\uE001";
    chart.panels[0] = {"\uE004", "", "\uE005", {{"\uE006", {}}}, {{"\uE007", {}}}};
    EXPECT_EQ(joined(missingPictures(chart), " "),
              "U+E001 U+E003 U+E004 U+E005 U+E006 U+E007 U+F0002");
}

} // namespace
} // namespace korlit::host
