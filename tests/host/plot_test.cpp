// The charts' geometry on its own header, and `korlit plot` as a shell runs it.
#include "host/plot/chart_layout.h"
#include "host/plot/chart_text.h"
#include "tests/support/andi_text.h"
#include "tests/support/command.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
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

TEST(PlotLabels, GoToTheMostImportantWhereRoomIsShort) {
    const Range bounds{.from = 0, .to = 1000};
    EXPECT_EQ(labelsWithRoom(std::vector<double>{700, 20, 400}, bounds),
              (std::vector<std::size_t>{1, 2, 0}));
    // 13 labels of 12.5 reach 75 to both sides, 14 would reach 81.25.
    const std::vector<double> heap(20, 500.0);
    EXPECT_EQ(labelsWithRoom(heap, bounds).size(), 13U);
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
        EXPECT_LE(std::abs(places[i].centre - labels[i].anchor), 80) << i;
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

using namespace test;

std::size_t filesIn(const TempFolder& folder) {
    const std::filesystem::directory_iterator entries{folder.path("")};
    return static_cast<std::size_t>(
        std::count_if(begin(entries), end(entries), [](const auto& entry) {
            return entry.path().filename() != ".output" && entry.path().filename() != ".errors";
        }));
}

TEST(Plot, DrawsEveryKindOfFileInEveryFormat) {
    struct Case {
        const char* ending;
        std::string signature;
        std::string end;
    };
    const std::string pngEnd{"IEND\xAE\x42\x60\x82"};
    for (const std::string source :
         {SAMPLES "hplc_run.cdf", SAMPLES "gc_run.sli", SAMPLES "dad_run.run"}) {
        const TempFolder folder;
        for (const auto& [ending, signature, end] :
             std::initializer_list<Case>{{"svg", "<?xml", "</svg>\n"},
                                         {"PNG", "\x89PNG\r\n", pngEnd},
                                         {"Pdf", "%PDF-", "%%EOF\n"}}) {
            const std::string name = std::string{"chart."} + ending;
            folder.write(name, "what stood there before");
            EXPECT_EQ(runCommand(folder, "plot " + source + " -o " + name).status, 0);
            const std::string chart = readFile(folder.path(name));
            EXPECT_TRUE(chart.starts_with(signature)) << name;
            EXPECT_TRUE(chart.ends_with(end)) << name;
        }
        EXPECT_EQ(filesIn(folder), 3U);
    }
}

/// What is between `start` and `end`.
std::string partOf(const std::string& chart, const std::string& start, const std::string& end) {
    const std::size_t place = chart.find(start) + start.size();
    return chart.substr(place, chart.find(end, place) - place);
}

TEST(Plot, FollowsItsOptions) {
    const TempFolder folder;
    const auto chartWith = [&](const std::string& options) {
        const std::string arguments = "plot " SAMPLES "dad_run.run -o c.svg " + options;
        EXPECT_EQ(runCommand(folder, arguments).status, 0) << options;
        return readFile(folder.path("c.svg"));
    };
    const std::string whole = chartWith("");
    EXPECT_EQ(partOf(whole, "viewBox=\"", "\""), "0 0 1000 1100");
    EXPECT_TRUE(chartWith("--title 'Herbal extract 7'") == whole); // the sample's name
    EXPECT_FALSE(chartWith("--title 'Herbal extract 8'") == whole);
    EXPECT_LT(chartWith("--from-time 12 --to-time 13").size(), whole.size() / 2);
    EXPECT_LT(chartWith("--no-peaks").size(), whole.size());
    EXPECT_EQ(partOf(chartWith("--width 640 --height 520"), "viewBox=\"", "\""), "0 0 640 520");
}

TEST(Plot, DrawsWhatIsOdd) {
    struct Case {
        const char* what;
        std::string data;
        std::string globals;
    };
    for (const auto& [what, data, globals] : std::initializer_list<Case>{
             {"no interval", "5f 7f 6f", "0 0"},
             {"constant", "5f 5f 5f", "0 0"},
             {"gaps", "nanf inff -inff", "0 0"},
             {"largest floats", "3.4e38f -3.4e38f 0f", "0 0"},
             {"odd text", "1f 2f 3f",
              "12 2 'sample_name' 2 9 \"\xE4\xFF\x01\x7F\xC3\xEF\xBF\xBFx\" "
              "'operator_name' 2 5 \"\xEF\xBF\xBF\xC3\xA4\""},
         }) {
        const TempFolder folder;
        folder.write("odd.cdf", AndiText{.globals = globals, .data = data}.bytes());
        const CommandResult result = runCommand(folder, "plot odd.cdf -o c.svg");
        EXPECT_EQ(result.status, 0) << what << result;
        EXPECT_TRUE(readFile(folder.path("c.svg")).ends_with("</svg>\n")) << what;
    }
    const TempFolder folder;
    AndiText empty{.dimensions = "10 0", .variables = "0 0"};
    folder.write("empty.cdf", empty.bytes());
    EXPECT_EQ(runCommand(folder, "plot empty.cdf -o c.pdf").status, 0);
}

TEST(Plot, ReadsARealFile) {
    if (!std::filesystem::exists(FOREIGN_ANDI_FILE)) {
        GTEST_SKIP() << "the file isn't there";
    }
    const TempFolder folder;
    EXPECT_EQ(runCommand(folder, "plot " FOREIGN_ANDI_FILE " -o c.svg").status, 0);
    EXPECT_TRUE(readFile(folder.path("c.svg")).ends_with("</svg>\n"));
}

TEST(Plot, TellsWhatItCantDoAndLeavesNothing) {
    const TempFolder folder;
    folder.write("same.svg", AndiText{}.bytes());
    folder.write("evenly.cdf", AndiText{}.bytes());
    std::filesystem::create_directory(folder.path("taken.png"));
    struct Case {
        const char* arguments;
        int status;
        const char* words;
    };
    for (const auto& [arguments, status, words] : std::initializer_list<Case>{
             {"evenly.cdf -o c.gif", 2, "--output: a chart is a .svg, .png or .pdf file"},
             {"evenly.cdf -o svg", 2, "--output"},
             {"evenly.cdf", 2, "--output is required"},
             {"-o c.svg", 2, "FILE is required"},
             {"same.svg -o ./same.svg", 2, "--output"},
             {SAMPLES "hplc_run.cdf -o c.svg --from-time 3 --to-time 3", 2, "--from-time"},
             {SAMPLES "hplc_run.cdf -o c.svg --to-time inf", 2, "--to-time"},
             {SAMPLES "hplc_run.cdf -o c.svg --width 199", 2, "--width"},
             {SAMPLES "hplc_run.cdf -o c.svg --from-time 21", 1, "goes from 0 to 20 min"},
             {SAMPLES "dad_run.run -o c.svg --height 300", 1, "needs a height of 499 at least"},
             {"evenly.cdf -o c.svg --from-time 1", 1, "no sampling interval"},
             {"missing.cdf -o c.svg", 1, "missing.cdf"},
             {"evenly.cdf -o nowhere/c.svg", 1, "can't write nowhere/c.svg: No such file"},
             {"evenly.cdf -o taken.png", 1, "can't write taken.png: Is a directory"},
             {"evenly.cdf -o /proc/c.svg", 1, "can't write /proc/c.svg: "},
         }) {
        const CommandResult result = runCommand(folder, std::string{"plot "} + arguments);
        EXPECT_EQ(result.status, status) << arguments << result;
        EXPECT_NE(result.errors.find(words), std::string::npos) << arguments << result;
        EXPECT_EQ(result.output, "") << arguments;
        EXPECT_EQ(filesIn(folder), 3U) << arguments;
    }
    EXPECT_EQ(readFile(folder.path("same.svg")), AndiText{}.bytes());
}

TEST(Plot, LeavesTheOldChartWhereTheNewOneFails) {
    const TempFolder folder;
    folder.write("c.png", "old");
    const CommandResult result =
        runCommand(folder, "plot " SAMPLES "hplc_run.cdf -o c.png", "ulimit -f 8; trap '' XFSZ; ");
    EXPECT_EQ(result.status, 1) << result;
    EXPECT_NE(result.errors.find("can't write c.png: "), std::string::npos) << result;
    EXPECT_EQ(readFile(folder.path("c.png")), "old");
    EXPECT_EQ(filesIn(folder), 1U);
}

} // namespace
} // namespace korlit::host
