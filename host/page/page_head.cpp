#include "host/page/page_head.h"

#include "host/page/markup.h"
#include "host/page/page_rows.h"
#include "host/text/numbers.h"
#include "host/text/words.h"

#include <algorithm>
#include <map>

namespace korlit::host {

namespace {

using Rows = std::vector<const FileRecord*>;

std::int64_t countOf(const Rows& rows, const PageVerdict& verdict) {
    return std::ranges::count_if(
        rows, [&](const FileRecord* row) { return pageVerdictOf(*row).id == verdict.id; });
}

std::string total(std::int64_t count, const std::string& one, const std::string& many) {
    return "<li><b>" + groupedDigits(count) + "</b> " + (count == 1 ? one : many) + "</li>";
}

std::string totalsOf(const Rows& rows) {
    std::int64_t points = 0;
    std::int64_t peaks = 0;
    for (const FileRecord* row : rows) {
        for (const RecordedChannel& channel : row->channels) {
            points += channel.points;
            peaks += std::ssize(channel.peaks);
        }
    }
    std::string list = total(std::ssize(rows), "file", "files");
    for (const PageVerdict& verdict : pageVerdicts()) {
        if (const std::int64_t count = countOf(rows, verdict); count > 0) {
            list += total(count, verdict.words, verdict.words);
        }
    }
    return "<ul class=totals>" + list + total(points, "point", "points") +
           total(peaks, "peak", "peaks") + "</ul>";
}

std::string argumentsText(const std::vector<std::string>& arguments) {
    constexpr std::size_t most = 30;
    const std::size_t shown = std::min(most, arguments.size());
    std::string text =
        joined({arguments.begin(), arguments.begin() + static_cast<std::ptrdiff_t>(shown)}, " ");
    return arguments.size() <= most
               ? text
               : text + " and " + std::to_string(arguments.size() - shown) + " more";
}

std::string batchItem(const BatchRecord& batch, std::size_t count) {
    return "<li>" + escaped(batch.time) + " on " + escaped(batch.machine) + " in " +
           escaped(batch.folder) + ", korlit " + escaped(batch.version) + ": " +
           std::to_string(count) + " of " + std::to_string(batch.fileCount) + " files" +
           element("code", "korlit " + argumentsText(batch.arguments)) + "</li>";
}

} // namespace

std::string pageHead(const Manifest& manifest, const Rows& rows) {
    std::map<std::string, std::size_t> counts = recordCounts(manifest);
    std::string notes;
    std::string batches;
    for (const BatchRecord& batch : manifest.batches) {
        batches += batchItem(batch, counts[batch.batch]);
    }
    for (const std::string& words : unfinishedBatches(manifest)) {
        notes += element("p", words);
    }
    for (const std::string& problem : manifest.problems) {
        notes += element("p", problem);
    }
    const std::size_t batchCount = manifest.batches.size();
    return "<header><h1>Conversion report</h1>" + totalsOf(rows) +
           (notes.empty() ? "" : "<div class=notes>" + notes + "</div>") + "<details><summary>" +
           std::to_string(batchCount) + (batchCount == 1 ? " batch" : " batches") +
           "</summary><ul class=files>" + batches + "</ul></details></header>\n";
}

std::string pageTools(const Rows& rows) {
    std::string filters;
    for (const PageVerdict& verdict : pageVerdicts()) {
        if (const std::int64_t count = countOf(rows, verdict); count > 0) {
            filters += std::string{"<label><input type=checkbox checked value="} + verdict.id +
                       "> " + verdict.words + " (" + groupedDigits(count) + ")</label>";
        }
    }
    return "<form hidden role=search><label>Search <input type=search></label>"
           "<fieldset><legend>Show</legend>" +
           filters +
           "</fieldset><button type=button id=open>Open all shown</button>"
           "<output></output></form>\n";
}

} // namespace korlit::host
