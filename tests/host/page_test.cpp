// What a page tells of a manifest, on its own headers: all of it, once, and none of it as markup;
// with the outlines and the digests that it shows.
#include "host/manifest/digest.h"
#include "host/manifest/outline.h"
#include "host/page/markup.h"
#include "host/page/page.h"
#include "host/page/page_chart.h"
#include "host/page/page_head.h"
#include "host/page/page_parts.h"
#include "host/page/page_rows.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <numeric>

namespace korlit::host {
namespace {

FileRecord recordOf(const std::string& result) {
    FileRecord record;
    record.result = result;
    record.sources = {{.path = "/data/a.cdf"}};
    return record;
}

RecordedChannel channelOf(std::int64_t points, const std::vector<RecordedPeak>& peaks) {
    return {0, "", points, {}, {}, peaks, {}};
}

std::string pageOf(const Manifest& manifest) {
    const test::TempFolder folder;
    writePage(folder.path("page.html"), manifest, std::filesystem::perms::all);
    return test::readFile(folder.path("page.html"));
}

std::size_t countOf(const std::string& text, const std::string& words) {
    std::size_t count = 0;
    for (auto at = text.find(words); at != std::string::npos; at = text.find(words, at + 1)) {
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
    FileRecord record = recordOf("converted");
    for (std::string* text : {&record.time, &record.message, &record.sample, &record.operatorName,
                              &record.date, &record.sources.front().path}) {
        *text = hostile();
    }
    record.outputs = {{.path = hostile(), .digest = FileDigest{}}};
    record.verdict = {hostile(), true, {{"", hostile(), 1}}, {hostile()}};
    record.losses = {hostile()};
    record.warnings = {hostile()};
    record.channels = {channelOf(1, {{hostile(), {}}})};
    record.channels.front().unit = hostile();
    record.channels.front().values = {0, 1};
    Manifest manifest{{{"", hostile(), hostile(), hostile(), hostile(), {hostile()}, 9}},
                      {record, recordOf("failed")},
                      {hostile()}};
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
    Manifest manifest{{}, {3, recordOf("converted")}, {}};
    for (FileRecord& file : manifest.files) {
        file.sources.front().path += std::to_string(&file - manifest.files.data());
        file.channels.resize(2);
    }
    const std::string page = pageOf(manifest);
    for (int i = 0; i < 6; ++i) {
        const std::string number = std::to_string(i);
        EXPECT_EQ(countOf(page, "<path id=c" + number + " "), 1U) << i;
        EXPECT_EQ(countOf(page, "\"#c" + number + "\""), i % 2 == 0 ? 1U : 0U) << i;
    }
    EXPECT_EQ(countOf(page, "<path "), 6U);
}

TEST(PageCharts, OfAGiantArchiveHaveRoom) {
    for (const std::size_t channels : {60'000U, 60'001U}) { // 8 bytes a stretch, 24 MB in all
        const bool areAllDrawn = channels == 60'000;
        Manifest manifest;
        manifest.files = {recordOf("converted")};
        manifest.files.front().channels.resize(channels);
        manifest.files.front().channels.front().outline.resize(300);
        const std::string page = pageOf(manifest);
        EXPECT_EQ(countOf(page, "<path "), areAllDrawn ? channels : 1);
        EXPECT_EQ(countOf(page, "<figcaption>"), channels);
        EXPECT_EQ(countOf(page, "only the first of each file"), areAllDrawn ? 0U : 1U);
        EXPECT_EQ(countOf(page, areAllDrawn ? "\"0 0 99 250\"" : "\"0 0 299 250\""), 2U);
    }
}

TEST(PageCharts, TellWhatTheyShow) {
    for (const auto& [channel, words] :
         std::initializer_list<std::pair<RecordedChannel, std::string>>{
             {{1, "mAU", 6000, {{0.5, 20}}, {{-3.25, 1234567}}, {}, {}},
              "<figcaption>Channel 1 · 0.5 to 20 min · -3.25 to 1234567 mAU · 6,000 points"
              "</figcaption>"},
             {channelOf(1, {{"a,\n<b>", 1.25}, {"", {}}}),
              "<figcaption>1 point</figcaption><p>Peaks: "
              "a,\uFFFD&lt;b&gt;\u00a01.250,\n\u00a0?</p>"},
         }) {
        EXPECT_EQ(legendOf(channel), "<figure>" + words + "</figure>");
        std::string chart = chartOf(channel, 4, 150, true);
        const std::string start =
            channel.times ? "<div class=chart data-from=0.5 data-to=20><svg" : "<div class=chart><";
        expectOnce(chart, {start.c_str(), "</svg></div>"});
        chart.erase(chart.find("<div"), chart.find("</div>") + 6 - chart.find("<div"));
        EXPECT_EQ(chart, legendOf(channel));
    }
}

TEST(PageRows, HaveTheirVerdictAndTheirName) {
    RowSetting setting;
    FileRecord record = recordOf("failed");
    record.message = "so it went";
    const auto expectRow = [&](const std::string& id, std::size_t messagesInName) {
        const std::string row = rowOf(record, "/data", setting);
        EXPECT_TRUE(row.starts_with("<tbody role=rowgroup class=" + id + '>')) << row;
        EXPECT_EQ(countOf(row, "<summary>a.cdf<em>so it went</em>"), messagesInName);
    };
    expectRow("failed", 1);
    record.result = "skipped";
    expectRow("skipped", 0);
    record.result = "converted";
    expectRow("converted", 0);
    record.verdict = {"", true, {}, {}};
    expectRow("same", 0);
    record.verdict->isSame = false;
    expectRow("differs", 0);
    for (const auto& [folder, path, name] :
         std::initializer_list<std::array<std::string, 3>>{{"/a/b", "/a/b/c", "c"},
                                                           {"/a/b", "/a/bc", "/a/bc"},
                                                           {"/", "/c", "c"},
                                                           {"", "/c", "/c"}}) {
        record.sources.front().path = path;
        const std::string row = rowOf(record, folder, setting);
        EXPECT_EQ(countOf(row, "<summary>" + name + "</summary>"), 1U) << folder << ' ' << path;
    }
}

TEST(PageRows, AddUpToTheHead) {
    const std::vector<std::string> arguments(30, "x");
    Manifest manifest;
    manifest.batches = {{"b", "", "", "", "", arguments, 2}, {"", "", "", "", "", arguments, 0}};
    manifest.batches.back().arguments.emplace_back("x");
    FileRecord record = recordOf("converted");
    record.batch = "b";
    record.verdict = {"", true, {{"", "one", 1}, {"", "many", 1234}}, {}};
    record.channels = {channelOf(1000, {2, RecordedPeak{}}), channelOf(234, {1, RecordedPeak{}})};
    record.warnings = {"take care"};
    record.date = "2005-10-12T08:34:37+02:00";
    record.sources.front().digest = FileDigest{.size = 1, .sha256 = "5ec0"};
    record.outputs = {{.path = "/out", .digest = FileDigest{.size = 1, .sha256 = "0dd"}}};
    manifest.files = {record, recordOf("failed"), recordOf("skipped")};
    manifest.files[1].channels = {channelOf(1, {1, RecordedPeak{}})};
    const std::vector<const FileRecord*> rows{manifest.files.data(), &manifest.files[1],
                                              &manifest.files[2]};
    expectOnce(pageHead(manifest, rows),
               {"<li><b>3</b> files</li><li><b>1</b> Failed</li><li><b>1</b> Same data</li>",
                "<li><b>1</b> Skipped</li><li><b>1,235</b> points</li><li><b>4</b> peaks</li></ul>",
                "<summary>2 batches</summary>", ": 1 of 2 files<code>korlit x", "x x</code>",
                ": 2 of 0 files<code>korlit x", "x x and 1 more</code>"});
    expectOnce(pageHead({}, {rows[1]}),
               {"<li><b>1</b> file</li><li><b>1</b> Failed</li><li><b>1</b> point</li>",
                "<li><b>1</b> peak</li>", "<summary>0 batches</summary>"});
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

Outline outlineIn(const std::vector<double>& samples) {
    return outlineOf({AndiType::Double, samples.data(), samples.size()});
}

TEST(PageOutline, HasTheExtremesOfEachStretchOnItsScale) {
    constexpr double largest = std::numeric_limits<double>::max();
    EXPECT_EQ(outlineIn({}), Outline{});
    EXPECT_EQ(outlineIn({7, 7}), (Outline{0, 0, 0, 0}));
    EXPECT_EQ(outlineIn({NAN}), (Outline{-1, -1}));
    EXPECT_EQ(outlineIn({-1, NAN, 3, 1, -INFINITY}),
              (Outline{0, 0, -1, -1, 250, 250, 125, 125, -1, -1}));
    EXPECT_EQ(outlineIn({-largest, largest, 0}), (Outline{0, 0, 250, 250, 125, 125}));
    // One peak of one sample, the last of all, in the last of 150 stretches.
    std::vector<double> samples(30'001);
    samples.back() = 5;
    samples[200] = 1;
    const Outline outline = outlineIn(samples);
    ASSERT_EQ(outline.size(), 300U);
    EXPECT_EQ(outline[2], 0);
    EXPECT_EQ(outline[3], 50);
    EXPECT_EQ(outline[299], 250);
    EXPECT_EQ(std::accumulate(outline.begin(), outline.end(), 0), 300);
}

TEST(PageOutline, IsThinnedWithoutLosingAnExtreme) {
    const Outline outline{5, 9, -1, -1, 3, 4, 0, 250, -1, -1, -1, -1};
    EXPECT_EQ(thinned(outline, 9), outline);
    EXPECT_EQ(thinned(outline, 3), (Outline{5, 9, 0, 250, -1, -1}));
    EXPECT_EQ(thinned(outline, 1), (Outline{0, 250}));
}

TEST(PagePicture, IsOneLineWithItsGaps) {
    for (const auto& [outline, path] : std::initializer_list<std::pair<Outline, std::string>>{
             {{-1, -1}, ""},
             {{0, 250, 240, 250, 250, 250}, "M0 250l1-250 1 0 1 10 1-10 1 0"},
             {{0, 0, 0, 0, 0, 10, 4, 4}, "M0 250l4 0 1-10 1 6 1 0"},
             {{-1, -1, 1, 1, -1, -1, 2, 3}, "M2 249l1 0M6 248l1-1"},
         }) {
        RecordedChannel channel;
        channel.outline = outline;
        const std::string picture = pictureOf(channel, 7, 150);
        EXPECT_NE(picture.find("<path id=c7 d=\"" + path + "\"/>"), std::string::npos) << picture;
    }
}

// As `head -c SIZE /dev/zero | sha256sum` has them.
TEST(ManifestDigest, IsOfTheWholeFile) {
    const test::TempFolder folder;
    for (const auto& [size, sha256] : std::initializer_list<std::pair<std::size_t, const char*>>{
             {0, "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
             {262144, "8a39d2abd3999ab73c34db2476849cddf303ce389b35826850f9a700589b4a90"},
             {600000, "1358f4ce65f0d1ed482d572e4eac6ea90d465c0ab878f477297474f8f23226c3"},
         }) {
        folder.write("file", std::string(size, '\0'));
        const FileDigest digest = digestOf(folder.path("file")).value();
        EXPECT_EQ(digest.size, static_cast<std::int64_t>(size));
        EXPECT_EQ(digest.sha256, sha256);
    }
    EXPECT_EQ(digestOf(folder.path("missing")), std::nullopt);
}

// As `printf 'alert(1)' | openssl dgst -sha256 -binary | base64` has it.
TEST(PagePolicy, NamesTheScriptByItsHash) {
    EXPECT_EQ(policyHash("alert(1)"), "sha256-bhHHL3z2vDgxUt0W3dWQOrprscmda2Y5pLsLg4GF+pI=");
}

} // namespace
} // namespace korlit::host
