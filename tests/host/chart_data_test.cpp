// What charts show of data sets, on their own headers.
#include "host/plot/chart_data.h"
#include "host/plot/panel_data.h"
#include "tests/support/signal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <stdexcept>

namespace korlit::host {
namespace {

using test::Signal;
using Files = std::vector<std::vector<DataSet>>;

/// What a chart's axis shows in words, or why there is none.
std::string timesOf(const PlotOptions& options, const Files& files) {
    try {
        const Chart chart = chartOf(options, files);
        std::ostringstream text;
        text << chart.times.from << " to " << chart.times.to << ' ' << chart.timeQuantity << ' '
             << chart.timeUnit;
        return text.str();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

TEST(ChartTimes, GoAsFarAsTheSignalsOrAsIsAskedFor) {
    const Signal four{{1, 2, 3, 4}}; // a quarter of a minute each
    const Signal one{{1}};
    const Signal uneven{{1, 2, 3}, {90, 120, 300}};
    const auto later = [](DataSet set, double delay) {
        set.delayTime = delay;
        return set;
    };
    DataSet timeless = four.set();
    timeless.samplingInterval = 0;
    DataSet empty = Signal{}.set();
    empty.samplingInterval = 0;
    const std::string outside =
        "nothing to draw with --from-time and --to-time: the signal of a.cdf goes from 2 to 3 min";
    struct Case {
        Files files;
        std::optional<double> from;
        std::optional<double> to;
        std::string times;
    };
    for (const auto& [files, from, to, times] : std::initializer_list<Case>{
             {{{four.set()}}, {}, {}, "0 to 1 Time min"},
             {{{one.set()}}, {}, {}, "-0.25 to 0.25 Time min"},
             {{{uneven.set()}}, {}, {}, "1.5 to 5 Time min"},
             {{{four.set()}, {uneven.set()}}, {}, {}, "0 to 5 Time min"},
             {{{uneven.set()}, {four.set()}}, {}, {}, "0 to 5 Time min"},
             {{{later(four.set(), 0.04)}}, {}, {}, "0 to 1.04 Time min"}, // hardly behind injection
             {{{later(four.set(), 0.06)}}, {}, {}, "0.06 to 1.06 Time min"},
             {{{later(four.set(), -0.04)}}, {}, {}, "-0.04 to 0.96 Time min"},
             {{{timeless}}, {}, {}, "0 to 4 Sample "},
             {{{four.set()}, {timeless}}, {}, {}, "0 to 4 Sample "},
             {{{four.set(), empty}}, {}, {}, "0 to 1 Time min"},
             {{{empty}}, {}, {}, "0 to 1 Time min"},
             {{{later(four.set(), 2)}}, 2.5, {}, "2.5 to 3 Time min"},
             {{{later(four.set(), 2)}}, {}, 2.5, "2 to 2.5 Time min"},
             {{{later(four.set(), 2)}}, 1, 4, "1 to 4 Time min"},
             {{{later(four.set(), 2)}}, 3.01, {}, outside},
             {{{later(four.set(), 2)}}, {}, 1.99, outside},
         }) {
        PlotOptions options;
        options.from = from;
        options.to = to;
        EXPECT_EQ(timesOf(options, files), times);
    }
}

TEST(ChartTexts, ComeFromTheFirstThatHasAny) {
    const Signal signal{{1}};
    DataSet set = signal.set();
    set.source = "/data/run 7.cdf";
    const auto chart = [&] { return chartOf({}, {{set}}); };
    EXPECT_EQ(chart().title, "run 7.cdf");
    EXPECT_EQ(chart().subtitle, "Source run 7.cdf");
    set.texts = {{"experiment_title", "Test"}, {"source_file_reference", "C:\\runs\\old.run"}};
    EXPECT_EQ(chart().title, "Test");
    EXPECT_EQ(chart().subtitle, "Source old.run");
    set.texts.insert(set.texts.end(), {{"sample_name", "\x01 S\xE9 "},
                                       {"operator_name", "Ann"},
                                       {"injection_date_time_stamp", "20051012083437"}});
    EXPECT_EQ(chart().title, "S\xC3\xA9");
    EXPECT_EQ(chart().subtitle, "Injected 12 October 2005, 08:34:37   ·   Operator Ann   ·   "
                                "Source old.run");
    set.kind = FileKind::Dunvale; // converted for the chart, of which the reference tells
    EXPECT_TRUE(chart().subtitle.ends_with("Source run 7.cdf"));
    EXPECT_EQ(chart().note, "");
    set.peaks.resize(1);
    EXPECT_EQ(chart().note, "");
    set.samplingInterval = 0;
    set.isUniform = false;
    EXPECT_EQ(chart().note, "Without a sampling interval the peaks have no place. The samples are "
                            "not equidistant, but are drawn as if they were.");
}

TEST(ChartLegend, NamesEachFileByWhatTellsItFromTheOthers) {
    const Signal signal{{1, 2}};
    const auto file = [&](const char* path, const char* sample, std::size_t channels = 1) {
        std::vector<DataSet> sets(channels, signal.set());
        sets.front().source = path;
        sets.front().texts = {{"sample_name", sample}};
        sets.front().detectorUnit = "mAU";
        sets.back().detectorUnit = sample;
        return sets;
    };
    struct Case {
        Files files;
        std::vector<std::string> names;
        std::vector<std::string> units; ///< of the panels
    };
    for (const auto& [files, names, units] : std::initializer_list<Case>{
             {{file("/a/x", "V"), file("/b/x", "A")}, {"V", "A"}, {"in units of their own"}},
             {{file("/a/x", "V"), file("/b/y", "V")}, {"x", "y"}, {"V"}},
             {{file("/a/x", ""), file("/b/y", "V", 2)}, {"x", "y"}, {"in units of their own", "V"}},
             {{file("/a/x", "V"), file("/b/x", "V", 3)},
              {"/a/x", "/b/x"},
              {"in units of their own", "", "V"}},
         }) {
        const Chart chart = chartOf({}, files);
        EXPECT_EQ(chart.title, "2 chromatograms");
        ASSERT_EQ(chart.panels.size(), units.size());
        for (std::size_t i = 0; i < units.size(); ++i) {
            EXPECT_EQ(chart.panels[i].unit, units[i]);
            EXPECT_EQ(chart.panels[i].title,
                      units.size() == 1 ? "" : "Channel " + std::to_string(i + 1));
            ASSERT_EQ(chart.panels[i].lines.size(), names.size());
            for (std::size_t line = 0; line < names.size(); ++line) {
                EXPECT_EQ(chart.panels[i].lines[line].name, names[line]);
                EXPECT_EQ(chart.panels[i].lines[line].points.empty(), i >= files[line].size());
            }
        }
    }
}

TEST(TimeScales, FindEachSampleAtItsTime) {
    const Signal even{std::vector<double>(5)};
    const Signal uneven{std::vector<double>(5), {-60, 0, 30, 300, 3000}};
    for (const Signal* signal : {&even, &uneven}) {
        const DataSet set = signal->set();
        for (const bool isInMinutes : {false, true}) {
            const TimeScale scale{set, isInMinutes};
            for (std::size_t i = 0; i < 5; ++i) {
                EXPECT_NEAR(scale.sampleAt(scale.timeOf(i)), static_cast<double>(i), 1e-9);
                EXPECT_EQ(scale.timeOf(i), isInMinutes ? set.timeOf(i) : static_cast<double>(i));
                EXPECT_TRUE(scale.times().contains(scale.timeOf(i)));
                if (i > 0) {
                    const double between = (scale.timeOf(i - 1) + 3 * scale.timeOf(i)) / 4;
                    EXPECT_NEAR(scale.sampleAt(between), static_cast<double>(i) - 0.25, 1e-9);
                }
            }
            EXPECT_LE(scale.sampleAt(scale.timeOf(0) - 1), -1);
            EXPECT_GE(scale.sampleAt(scale.timeOf(4) + 1), 5);
        }
    }
}

bool isAt(const LinePoint& point, double x, double y) {
    return point.x == x && (std::isnan(y) ? isGap(point) : point.y == y);
}

TEST(ChartPanels, ShowTheLineUpToBothEdges) {
    const Signal even{{0, 10, 20, 1e306, NAN, 50, 60, 70}};
    const Signal uneven{{0, 10, 20, 1e306, NAN, 50, 60, 70}, {0, 15, 30, 45, 60, 75, 90, 105}};
    for (const Signal* signal : {&even, &uneven}) {
        Chart chart;
        chart.times = {.from = 0.375, .to = 1.375};
        chart.width = 1000;
        const ChartPanel panel = panelOf(signal->set(), true, chart, true);
        const std::vector<LinePoint>& line = panel.lines.at(0).points;
        const std::vector<double> xs{0.375, 0.5, 0.75, 1, 1.25, 1.375};
        const std::vector<double> ys{15, 20, NAN, NAN, 50, 55};
        ASSERT_EQ(line.size(), xs.size());
        for (std::size_t i = 0; i < xs.size(); ++i) {
            EXPECT_TRUE(isAt(line[i], xs[i], ys[i])) << i << ' ' << line[i].y;
        }
        EXPECT_EQ(panel.note, "no values where it is grey");
    }
}

TEST(ChartPanels, PutPeaksOnTheSignal) {
    const Signal signal{{0, 10, 20, NAN, 40}}; // until 1.25 minutes
    DataSet set = signal.set(2);
    set.isTotalIon = true;
    set.texts = {{"detector_name", "MS "}, {"detection_method_name", "SIM"}};
    const auto addPeak = [&](const char* name, std::optional<double> time,
                             std::optional<double> start, std::optional<double> end) -> Peak& {
        set.peaks.push_back({});
        set.peaks.back().name = name;
        set.peaks.back().retentionTime = time;
        set.peaks.back().startTime = start;
        set.peaks.back().endTime = end;
        return set.peaks.back();
    };
    addPeak("a", 0.375, 0.25, 0.5);
    addPeak("\x01", 1.25, -0.25, 0.75);
    Peak& backward = addPeak("b", 0.25, {}, {});
    backward.baselineStartTime = 0.5;
    backward.baselineStopTime = 0.25;
    backward.baselineStartValue = 1;
    Peak& measured = addPeak("c", 0.25, 0, 0.5);
    measured.baselineStartTime = 0.125;
    measured.baselineStartValue = 3;
    measured.baselineStopValue = 4;
    addPeak("d", 0.25, 0, 0.5).baselineStopValue = 1e305;
    addPeak("e", 0.25, 0, 0.5).baselineStopValue = 5;
    addPeak("late", 1.26, {}, {});
    addPeak("nowhere", {}, {}, {});
    Chart chart;
    chart.times = {.from = 0, .to = 1.25};
    chart.width = 100;
    const ChartPanel panel = panelOf(set, true, chart, true);
    EXPECT_EQ(panel.title, "Channel 2, Total ion chromatogram, MS, SIM");
    EXPECT_EQ(panel.note, "no values where it is grey; 2 peaks lie outside the signal");
    ASSERT_EQ(panel.peaks.size(), 6U);
    EXPECT_EQ(panel.peaks[0].label, "a");
    EXPECT_TRUE(isAt(panel.peaks[0].apex, 0.375, 15));
    EXPECT_TRUE(isAt(panel.peaks[0].start.value(), 0.25, 10));
    EXPECT_TRUE(isAt(panel.peaks[0].end.value(), 0.5, 20));
    EXPECT_TRUE(isAt(panel.peaks[0].baseline.value().second, 0.5, 20));
    EXPECT_FALSE(panel.peaks[0].isBaselineMeasured);
    EXPECT_EQ(panel.peaks[1].label, "1.250");
    EXPECT_TRUE(isAt(panel.peaks[1].apex, 1.25, 40)); // the last sample's interval
    EXPECT_TRUE(isAt(panel.peaks[1].start.value(), -0.25, NAN));
    EXPECT_FALSE(panel.peaks[1].baseline);
    EXPECT_FALSE(panel.peaks[2].baseline); // backward
    EXPECT_TRUE(isAt(panel.peaks[3].baseline.value().first, 0.125, 3));
    EXPECT_TRUE(isAt(panel.peaks[3].baseline.value().second, 0.5, 4));
    EXPECT_TRUE(panel.peaks[3].isBaselineMeasured);
    EXPECT_TRUE(isAt(panel.peaks[4].baseline.value().second, 0.5, 20)); // none that can be drawn
    EXPECT_TRUE(isAt(panel.peaks[5].baseline.value().second, 0.5, 5));
    EXPECT_FALSE(panel.peaks[5].isBaselineMeasured); // at one end alone
    EXPECT_TRUE(panelOf(set, true, chart, false).peaks.empty());
    EXPECT_TRUE(panelOf(set, false, chart, true).peaks.empty());
}

} // namespace
} // namespace korlit::host
