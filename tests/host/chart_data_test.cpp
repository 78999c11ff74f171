// What charts show of data sets, on their own headers.
#include "host/plot/chart_data.h"
#include "host/plot/panel_data.h"
#include "host/text/numbers.h"
#include "tests/support/signal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <tuple>

namespace korlit::host {
namespace {

using test::Signal;
using Files = std::vector<std::vector<DataSet>>;

/// What a chart's axis shows in words, or why there is none.
std::string timesOf(const PlotOptions& options, const Files& files) {
    try {
        const Chart chart = chartOf(options, files);
        return roundedText(chart.times.from) + " to " + roundedText(chart.times.to) + ' ' +
               chart.timeQuantity + ' ' + chart.timeUnit;
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

TEST(ChartTimes, GoAsFarAsTheSignalsOrAsIsAskedFor) {
    const Signal four{{1, 2, 3, 4}}; // a quarter of a minute each
    const Signal one{{1}};
    const Signal uneven{{1, 2, 3}, {90, 120, 300}};
    const auto later = [&](double delay) {
        DataSet set = four.set();
        set.delayTime = delay;
        return set;
    };
    DataSet timeless = four.set();
    timeless.samplingInterval = 0;
    DataSet empty = Signal{}.set();
    empty.samplingInterval = 0;
    const std::string outside =
        "nothing to draw with --from-time and --to-time: the signal of a.cdf goes from 2 to 3 min";
    using Case = std::tuple<Files, Bounds, std::string>;
    for (const auto& [files, asked, times] : std::initializer_list<Case>{
             {{{one.set()}}, {}, "-0.25 to 0.25 Time min"},
             {{{uneven.set()}}, {}, "1.5 to 5 Time min"},
             {{{uneven.set()}, {four.set()}}, {}, "0 to 5 Time min"},
             {{{later(0.04)}}, {}, "0 to 1.04 Time min"}, // hardly behind injection
             {{{later(0.06)}}, {}, "0.06 to 1.06 Time min"},
             {{{later(-0.04)}}, {}, "-0.04 to 0.96 Time min"},
             {{{four.set()}, {timeless}}, {}, "0 to 4 Sample "},
             {{{four.set(), empty}}, {}, "0 to 1 Time min"},
             {{{empty}}, {}, "0 to 1 Time min"},
             {{{later(2)}}, {2.5, {}}, "2.5 to 3 Time min"},
             {{{later(2)}}, {{}, 2.5}, "2 to 2.5 Time min"},
             {{{later(2)}}, {1, 4}, "1 to 4 Time min"},
             {{{later(2)}}, {3.01, {}}, outside},
             {{{later(2)}}, {{}, 1.99}, outside},
         }) {
        PlotOptions options;
        options.from = asked.from;
        options.to = asked.to;
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
    set.peaks.resize(1);
    EXPECT_EQ(chart().note, "");
    set.samplingInterval = 0;
    set.isUniform = false;
    EXPECT_EQ(chart().note, "Without a sampling interval the peaks have no place. The samples are "
                            "not equidistant, but are drawn as if they were.");
}

/// The panels of a chart with what stands at their axes and in their legends.
std::string panelsOf(const Chart& chart) {
    std::string text;
    for (const ChartPanel& panel : chart.panels) {
        text += panel.title + " (" + panel.unit + "):";
        for (const ChartLine& line : panel.lines) {
            text += ' ' + line.name + (line.points.empty() ? " without points" : "");
        }
        text += '\n';
    }
    return text;
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
    for (const auto& [files, panels] : std::initializer_list<std::pair<Files, const char*>>{
             {{file("/a/x", "V"), file("/b/x", "A")}, " (in units of their own): V A\n"},
             {{file("/a/x", "V"), file("/b/y", "V")}, " (V): x y\n"},
             {{file("/a/x", ""), file("/b/y", "V", 2)},
              "Channel 1 (in units of their own): x y\nChannel 2 (V): x without points y\n"},
             {{file("/a/x", "V"), file("/b/x", "V", 2)},
              "Channel 1 (in units of their own): /a/x /b/x\n"
              "Channel 2 (V): /a/x without points /b/x\n"},
         }) {
        EXPECT_EQ(panelsOf(chartOf({}, files)), panels);
        EXPECT_EQ(chartOf({}, files).title, "2 chromatograms");
    }
}

TEST(TimeScales, FindEachSampleAtItsTime) {
    const Signal even{std::vector<double>(5)};
    const Signal uneven{std::vector<double>(5), {-60, 0, 30, 300, 3000}};
    for (const Signal* signal : {&even, &uneven}) {
        const DataSet set = signal->set();
        for (const bool isInMinutes : {false, true}) {
            const TimeScale scale{set, isInMinutes};
            for (std::size_t i = 1; i < 5; ++i) {
                const auto place = static_cast<double>(i);
                EXPECT_EQ(scale.timeOf(i), isInMinutes ? set.timeOf(i) : place);
                EXPECT_NEAR(scale.sampleAt(scale.timeOf(i)), place, 1e-9);
                const double between = (scale.timeOf(i - 1) + 3 * scale.timeOf(i)) / 4;
                EXPECT_NEAR(scale.sampleAt(between), place - 0.25, 1e-9);
            }
            EXPECT_LE(scale.sampleAt(scale.timeOf(0) - 1), -1);
            EXPECT_GE(scale.sampleAt(scale.timeOf(4) + 1), 5);
        }
    }
}

std::string pointText(const LinePoint& point) {
    return numberText(point.x) + ' ' + (isGap(point) ? "gap" : numberText(point.y));
}

std::string peakText(const ChartPeak& peak) {
    std::string text = peak.label + " at " + pointText(peak.apex);
    if (peak.start && peak.end) {
        text += ", " + pointText(*peak.start) + " to " + pointText(*peak.end);
    }
    if (peak.baseline) {
        text += (peak.isBaselineMeasured ? ", measured " : ", drawn ") +
                pointText(peak.baseline->first) + " to " + pointText(peak.baseline->second);
    }
    return text;
}

TEST(ChartPanels, ShowTheLineUpToBothEdges) {
    const Signal even{{0, 10, 20, 1e306, NAN, 50, 60, 70}};
    const Signal uneven{{0, 10, 20, 1e306, NAN, 50, 60, 70}, {0, 15, 30, 45, 60, 75, 90, 105}};
    for (const Signal* signal : {&even, &uneven}) {
        Chart chart;
        chart.times = {.from = 0.375, .to = 1.375};
        chart.width = 1000;
        const ChartPanel panel = panelOf(signal->set(), true, chart, true);
        std::string line;
        for (const LinePoint& point : panel.lines.at(0).points) {
            line += pointText(point) + ", ";
        }
        EXPECT_EQ(line, "0.375 15, 0.5 20, 0.75 gap, 1 gap, 1.25 50, 1.375 55, ");
        EXPECT_EQ(panel.note, "no values where it is grey");
    }
}

Peak dataPeak(const char* name, std::optional<double> time, std::optional<double> start = {},
              std::optional<double> end = {}) {
    Peak peak;
    peak.name = name;
    peak.retentionTime = time;
    peak.startTime = start;
    peak.endTime = end;
    return peak;
}

TEST(ChartPanels, PutPeaksOnTheSignal) {
    const Signal signal{{0, 10, 20, NAN, 40}}; // until 1.25 minutes
    DataSet set = signal.set(2);
    set.isTotalIon = true;
    set.texts = {{"detector_name", "MS "}, {"detection_method_name", "SIM"}};
    Peak backward = dataPeak("b", 0.25);
    backward.baselineStartTime = 0.5;
    backward.baselineStopTime = 0.25;
    backward.baselineStartValue = 1;
    Peak measured = dataPeak("c", 0.25, 0, 0.5);
    measured.baselineStartTime = 0.125;
    measured.baselineStartValue = 3;
    measured.baselineStopValue = 4;
    Peak infinite = dataPeak("d", 0.25, 0, 0.5);
    infinite.baselineStopValue = 1e305;
    Peak halfMeasured = dataPeak("e", 0.25, 0, 0.5);
    halfMeasured.baselineStopValue = 5;
    set.peaks = {dataPeak("a", 0.375, 0.25, 0.5),
                 dataPeak("\x01", 1.25, -0.25, 0.75),
                 backward,
                 measured,
                 infinite,
                 halfMeasured,
                 dataPeak("late", 1.26),
                 dataPeak("nowhere", {})};
    Chart chart;
    chart.times = {.from = 0, .to = 1.25};
    chart.width = 100;
    const ChartPanel panel = panelOf(set, true, chart, true);
    EXPECT_EQ(panel.title, "Channel 2, Total ion chromatogram, MS, SIM");
    EXPECT_EQ(panel.note, "no values where it is grey; 2 peaks lie outside the signal");
    const std::vector<const char*> peaks{
        "a at 0.375 15, 0.25 10 to 0.5 20, drawn 0.25 10 to 0.5 20",
        "1.250 at 1.25 40, -0.25 gap to 0.75 gap", // in the last sample's interval
        "b at 0.25 10",
        "c at 0.25 10, 0 0 to 0.5 20, measured 0.125 3 to 0.5 4",
        "d at 0.25 10, 0 0 to 0.5 20, drawn 0 0 to 0.5 20", // to a value that can't be drawn
        "e at 0.25 10, 0 0 to 0.5 20, drawn 0 0 to 0.5 5"};
    ASSERT_EQ(panel.peaks.size(), peaks.size());
    for (std::size_t i = 0; i < peaks.size(); ++i) {
        EXPECT_EQ(peakText(panel.peaks[i]), peaks[i]);
    }
    EXPECT_TRUE(panelOf(set, true, chart, false).peaks.empty());
    EXPECT_TRUE(panelOf(set, false, chart, true).peaks.empty());
}

} // namespace
} // namespace korlit::host
