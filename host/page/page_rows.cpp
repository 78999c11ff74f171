#include "host/page/page_rows.h"

#include "host/page/markup.h"
#include "host/page/page_chart.h"
#include "host/text/numbers.h"

#include <algorithm>
#include <numeric>

namespace korlit::host {

namespace {

enum PageVerdictIndex : std::uint8_t { Failed, Differs, Converted, Same, Skipped };

constexpr std::array<PageVerdict, 5> verdicts{{
    {.id = "failed", .words = "Failed"},
    {.id = "differs", .words = "Different data"},
    {.id = "converted", .words = "Not compared"},
    {.id = "same", .words = "Same data"},
    {.id = "skipped", .words = "Skipped"},
}};

std::string cell(const std::string& markup, const char* attributes = "") {
    return std::string{"<td role=cell"} + attributes + '>' + markup + "</td>";
}

std::string dateText(std::string date) {
    constexpr std::size_t dateLength = 10;
    if (date.size() > dateLength && date[dateLength] == 'T') {
        date[dateLength] = ' ';
    }
    return date;
}

std::string listOf(const char* title, const std::vector<std::string>& texts) {
    if (texts.empty()) {
        return {};
    }
    std::string list = element("h3", title) + "<ul>";
    for (const std::string& text : texts) {
        list += "<li>" + escaped(text) + "</li>";
    }
    return list + "</ul>";
}

std::string verdictLists(const FileRecord& record) {
    if (!record.verdict) {
        return {};
    }
    std::vector<std::string> expected;
    for (const RecordedChange& change : record.verdict->expected) {
        expected.push_back(change.words +
                           (change.count == 1 ? "" : " (" + groupedDigits(change.count) + ')'));
    }
    return element("p", record.verdict->words) +
           listOf("Unexpected differences", record.verdict->unexpected) +
           listOf("Expected changes", expected);
}

/// As sha256sum prints them and can check them.
std::string digestsOf(const FileRecord& record) {
    std::string lines;
    for (const auto* files : {&record.sources, &record.outputs}) {
        for (const RecordedFile& file : *files) {
            lines += file.digest ? escaped(file.digest->sha256 + "  " + file.path) + '\n' : "";
        }
    }
    return lines.empty() ? "" : "<h3>SHA-256</h3><pre>" + lines + "</pre>";
}

std::string detailsOf(const FileRecord& record, const RowSetting& setting, std::size_t firstChart) {
    std::string charts;
    for (std::size_t i = 0; i < record.channels.size(); ++i) {
        charts += i == 0 || setting.areAllDrawn
                      ? chartOf(record.channels[i], firstChart + i, setting.stretches, i == 0)
                      : legendOf(record.channels[i]);
    }
    return charts + verdictLists(record) + listOf("Left out", record.losses) +
           listOf("Warnings", record.warnings) + digestsOf(record) +
           element("p", record.message + " \u00b7 " + dateText(record.time));
}

/// A path from a folder that it is below of; whole where the folder isn't known.
std::string nameIn(const std::string& folder, const std::string& path) {
    const bool isBelow = !folder.empty() && path.size() > folder.size() &&
                         path.starts_with(folder) &&
                         (folder.ends_with('/') || path[folder.size()] == '/');
    return isBelow ? path.substr(folder.size() + (folder.ends_with('/') ? 0 : 1)) : path;
}

} // namespace

const std::array<PageVerdict, 5>& pageVerdicts() {
    return verdicts;
}

const PageVerdict& pageVerdictOf(const FileRecord& record) {
    if (record.isConverted()) {
        return verdicts[!record.verdict ? Converted : record.verdict->isSame ? Same : Differs];
    }
    return verdicts[record.result == "skipped" ? Skipped : Failed];
}

std::string rowOf(const FileRecord& record, const std::string& folder, RowSetting& setting) {
    const PageVerdict& verdict = pageVerdictOf(record);
    const std::size_t firstChart = setting.chartCount;
    setting.chartCount += record.channels.size();
    std::int64_t points = 0;
    std::size_t peaks = 0;
    for (const RecordedChannel& channel : record.channels) {
        points += channel.points;
        peaks += channel.peaks.size();
    }
    const bool hasData = !record.channels.empty();
    const auto count = [&](auto number) {
        return hasData ? groupedDigits(static_cast<std::int64_t>(number)) : "";
    };
    return std::string{"<tbody role=rowgroup class="} + verdict.id + "><tr role=row>" +
           cell(verdict.words) + cell(escaped(record.sample)) + cell(escaped(record.operatorName)) +
           cell(escaped(dateText(record.date))) + cell(count(points)) + cell(count(peaks)) +
           cell(hasData ? pictureOf(record.channels.front(), firstChart, setting.stretches) : "") +
           "</tr><tr role=row>" +
           cell("<details><summary>" + escaped(nameIn(folder, record.sources.front().path)) +
                    (verdict.id == verdicts[Failed].id ? element("em", record.message) : "") +
                    "</summary>" + detailsOf(record, setting, firstChart) + "</details>",
                " colspan=7") +
           "</tr></tbody>\n";
}

} // namespace korlit::host
