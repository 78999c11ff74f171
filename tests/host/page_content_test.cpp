// What a page tells of a manifest, on its own headers: all of it, once, and none of it as markup.
#include "host/page/markup.h"
#include "host/page/page.h"
#include "host/page/page_chart.h"
#include "host/page/page_head.h"
#include "host/page/page_parts.h"
#include "host/page/page_rows.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace korlit::host {
namespace {

FileRecord recordOf(const std::string& result) {
    FileRecord record;
    record.result = result;
    record.sources = {{.path = "/data/a.cdf"}};
    return record;
}

RecordedChannel channelOf(std::int64_t points, const std::vector<RecordedPeak>& peaks) {
    RecordedChannel channel;
    channel.points = points;
    channel.peaks = peaks;
    return channel;
}

std::string pageOf(const Manifest& manifest) {
    const test::TempFolder folder;
    writePage(folder.path("page.html"), manifest, std::filesystem::perms::all);
    return test::readFile(folder.path("page.html"));
}

std::size_t countOf(const std::string& text, const std::string& words) {
    std::size_t count = 0;
    for (std::size_t at = text.find(words); at != std::string::npos;
         at = text.find(words, at + 1)) {
        ++count;
    }
    return count;
}

void expectOnce(const std::string& page, std::initializer_list<const char*> parts) {
    for (const char* part : parts) {
        EXPECT_EQ(countOf(page, part), 1U) << part << " in " << page;
    }
}

TEST(PageTexts, AreNeverMarkup) {
    int last = 0;
    const auto hostile = [&] { return "<i t='" + std::to_string(++last) + "'>&\"\x1B\n"; };
    Manifest manifest;
    manifest.batches = {{.batch = "b",
                         .time = hostile(),
                         .version = hostile(),
                         .machine = hostile(),
                         .folder = hostile(),
                         .arguments = {hostile()},
                         .fileCount = 1}};
    manifest.problems = {hostile()};
    FileRecord record = recordOf("converted");
    record.batch = "b";
    record.time = hostile();
    record.message = hostile();
    record.sources = {{.path = hostile(), .digest = FileDigest{}}};
    record.outputs = {{.path = hostile(), .digest = FileDigest{}}};
    record.verdict = {hostile(), true, {{"", hostile(), 1}}, {hostile()}};
    record.losses = {hostile()};
    record.warnings = {hostile()};
    record.sample = hostile();
    record.operatorName = hostile();
    record.date = hostile();
    record.channels = {channelOf(1, {{hostile(), {}}})};
    record.channels.front().unit = hostile();
    record.channels.front().values = {0, 1};
    manifest.files = {record, recordOf("failed")};
    manifest.files.back().message = hostile();
    const std::string page = pageOf(manifest);
    EXPECT_EQ(countOf(page, "<i t"), 0U);
    EXPECT_EQ(countOf(page, "\x1B"), 0U);
    for (int i = 1; i <= last; ++i) {
        const std::string text =
            "&lt;i t=&#39;" + std::to_string(i) + "&#39;&gt;&amp;&quot;\xEF\xBF\xBD\xEF\xBF\xBD";
        EXPECT_GE(countOf(page, text), 1U) << i;
    }
    EXPECT_EQ(countOf(page, "script-src '" + policyHash(pageScript) + "'\""), 1U);
    EXPECT_EQ(element("p", ""), "");
}

/// Every picture has its own number, and what points to one finds it.
TEST(PageCharts, AreEachDrawnOnce) {
    for (const std::size_t channels : {0U, 1U, 3U}) {
        Manifest manifest;
        for (const char* path : {"/a", "/b", "/c"}) {
            manifest.files.push_back(recordOf("converted"));
            manifest.files.back().sources.front().path = path;
            manifest.files.back().channels.resize(channels);
        }
        const std::string page = pageOf(manifest);
        for (std::size_t i = 0; i < 3 * channels; ++i) {
            const std::string number = std::to_string(i);
            EXPECT_EQ(countOf(page, "<path id=c" + number + " "), 1U) << i;
            EXPECT_EQ(countOf(page, "\"#c" + number + "\""), i % channels == 0 ? 1U : 0U) << i;
        }
        EXPECT_EQ(countOf(page, "<path "), 3 * channels);
    }
}

TEST(PageCharts, OfAGiantArchiveHaveRoom) {
    struct Case {
        std::size_t channels;
        std::size_t pictures;
        const char* viewBox; ///< of the first: 2 stretches less 1 is the width
    };
    for (const auto& [channels, pictures, viewBox] : std::initializer_list<Case>{
             {60'000, 60'000, "0 0 99 250"}, // 8 bytes a stretch, 24 MB in all
             {60'001, 1, "0 0 299 250"}}) {
        Manifest manifest;
        manifest.files = {recordOf("converted")};
        manifest.files.front().channels.resize(channels);
        manifest.files.front().channels.front().outline.resize(300);
        const std::string page = pageOf(manifest);
        EXPECT_EQ(countOf(page, "<path "), pictures);
        EXPECT_EQ(countOf(page, "<figcaption>"), channels);
        EXPECT_EQ(countOf(page, "only the first of each file"), pictures == 1 ? 1U : 0U);
        EXPECT_EQ(countOf(page, std::string{"<svg viewBox=\""} + viewBox + '"'), 2U);
    }
}

TEST(PageCharts, TellWhatTheyShow) {
    struct Case {
        RecordedChannel channel;
        const char* figure; ///< what stands around the picture
    };
    for (const auto& [channel, figure] : std::initializer_list<Case>{
             {{}, "<figcaption>0 points</figcaption>"},
             {{1, "mAU", 6000, {{0.5, 20}}, {{-3.25, 1234567}}, {}, {}},
              "<figcaption>Channel 1 · 0.5 to 20 min · -3.25 to 1234567 mAU · 6,000 points"
              "</figcaption>"},
             {channelOf(1, {{"a,\n<b>", 1.25}, {"", {}}}),
              "<figcaption>1 point</figcaption><p>Peaks: "
              "a,\uFFFD&lt;b&gt;\u00a01.250,\n\u00a0?</p>"},
         }) {
        EXPECT_EQ(legendOf(channel), std::string{"<figure>"} + figure + "</figure>");
        const std::string chart = chartOf(channel, 4, 150, true);
        const std::size_t picture = chart.find("<div");
        ASSERT_NE(picture, std::string::npos);
        const std::string start =
            channel.times ? "<div class=chart data-from=0.5 data-to=20>" : "<div class=chart>";
        EXPECT_EQ(chart.substr(picture, start.size()), start);
        const std::size_t end = chart.find("</div>");
        EXPECT_EQ(chart.substr(0, picture) + chart.substr(end + 6), legendOf(channel));
    }
}

TEST(PageRows, HaveTheirVerdictAndTheirName) {
    struct Case {
        const char* result;
        std::optional<RecordedVerdict> verdict;
        const char* id;
    };
    for (const auto& [result, verdict, id] : std::initializer_list<Case>{
             {"failed", {}, "failed"},
             {"skipped", {}, "skipped"},
             {"converted", {}, "converted"},
             {"converted", RecordedVerdict{"", true, {}, {}}, "same"},
             {"converted", RecordedVerdict{"", false, {}, {}}, "differs"}}) {
        FileRecord record = recordOf(result);
        record.verdict = verdict;
        record.message = "so it went";
        RowSetting setting;
        const std::string row = rowOf(record, "/data", setting);
        EXPECT_EQ(row.find(std::string{"<tbody role=rowgroup class="} + id + '>'), 0U) << row;
        EXPECT_EQ(countOf(row, "<em>so it went</em>"), std::string{id} == "failed" ? 1U : 0U);
    }
    struct Place {
        const char* folder;
        const char* path;
        const char* name;
    };
    for (const auto& [folder, path, name] : std::initializer_list<Place>{{"/a/b", "/a/b/c", "c"},
                                                                         {"/a/b", "/a/bc", "/a/bc"},
                                                                         {"/a/b", "/a/b", "/a/b"},
                                                                         {"/", "/c", "c"},
                                                                         {"/a/", "/a/c", "c"},
                                                                         {"", "/c", "/c"}}) {
        FileRecord record = recordOf("skipped");
        record.sources.front().path = path;
        RowSetting setting;
        EXPECT_EQ(
            countOf(rowOf(record, folder, setting), std::string{"<summary>"} + name + "</summary>"),
            1U)
            << folder << ' ' << path;
    }
}

TEST(PageRows, AddUpToTheHead) {
    Manifest manifest;
    manifest.batches.resize(2);
    manifest.batches[0].batch = "b";
    manifest.batches[0].fileCount = 2;
    manifest.batches[0].arguments.assign(30, "x");
    manifest.batches[1].arguments.assign(31, "x");
    FileRecord record = recordOf("converted");
    record.batch = "b";
    record.verdict = {"", true, {{"", "one", 1}, {"", "many", 1234}}, {}};
    record.channels = {channelOf(1000, {2, RecordedPeak{}}), channelOf(234, {1, RecordedPeak{}})};
    record.warnings = {"take care"};
    record.date = "2005-10-12T08:34:37+02:00";
    record.sources.front().digest = FileDigest{.size = 1, .sha256 = "5ec0"};
    record.outputs = {{.path = "/out", .digest = FileDigest{.size = 1, .sha256 = "0dd"}}};
    manifest.files = {record, recordOf("failed"), recordOf("skipped")};
    manifest.files[1].sources.front().path = "/data/b.cdf";
    manifest.files[1].channels = {channelOf(1, {})};
    manifest.files[2].sources.front().path = "/data/c.cdf";
    const std::vector<const FileRecord*> rows{manifest.files.data(), &manifest.files[1],
                                              &manifest.files[2]};
    expectOnce(pageHead(manifest, rows),
               {"<li><b>3</b> files</li><li><b>1</b> Failed</li><li><b>1</b> Same data</li>",
                "<li><b>1</b> Skipped</li><li><b>1,235</b> points</li><li><b>3</b> peaks</li></ul>",
                "<summary>2 batches</summary>", ": 1 of 2 files<code>korlit x", "x x</code>",
                ": 2 of 0 files<code>korlit x", "x x and 1 more</code>"});
    expectOnce(pageHead({}, {rows[1]}),
               {"<li><b>1</b> file</li><li><b>1</b> Failed</li><li><b>1</b> point</li>",
                "<li><b>0</b> peaks</li>", "<summary>0 batches</summary>"});
    manifest.batches.pop_back();
    expectOnce(pageHead(manifest, rows), {"<summary>1 batch</summary>"});
    const std::string tools = pageTools(rows);
    EXPECT_EQ(countOf(tools, "checkbox"), 3U);
    EXPECT_LT(tools.find("value=failed> Failed (1)"), tools.find("value=same> Same data (1)"));
    RowSetting setting;
    const std::string row = rowOf(record, "", setting);
    expectOnce(row,
               {"<td role=cell>1,234</td><td role=cell>3</td>", "<li>one</li><li>many (1,234)</li>",
                "<h3>Warnings</h3><ul><li>take care</li></ul>",
                "<td role=cell>2005-10-12 08:34:37+02:00</td>",
                "<pre>5ec0  /data/a.cdf\n0dd  /out\n</pre>"});
    EXPECT_EQ(countOf(row, "Left out") + countOf(row, "Unexpected"), 0U);
}

} // namespace
} // namespace korlit::host
