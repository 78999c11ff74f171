#include "host/page/page.h"

#include "host/manifest/newest.h"
#include "host/page/markup.h"
#include "host/page/page_head.h"
#include "host/page/page_parts.h"
#include "host/page/page_rows.h"
#include "host/system/whole_file.h"

#include <algorithm>
#include <array>
#include <map>
#include <ostream>
#include <stdexcept>
#include <string>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

constexpr std::array<const char*, 7> columns{"Verdict", "Sample", "Operator",    "Injected",
                                             "Points",  "Peaks",  "Chromatogram"};

/// How many charts are drawn, and how fine, so that those of the largest archive have room.
RowSetting settingFor(const std::vector<const FileRecord*>& rows) {
    constexpr std::size_t roomOfAll = 24'000'000;
    constexpr std::size_t roomBesideLegends = 12'000'000;
    constexpr std::size_t stretchBytes = 8;
    constexpr std::size_t fewest = 30;
    constexpr std::size_t most = 150;
    constexpr std::size_t mostCharts = 60'000;
    std::size_t charts = 0;
    for (const FileRecord* row : rows) {
        charts += row->channels.size();
    }
    const bool areAllDrawn = charts <= mostCharts;
    const std::size_t room = areAllDrawn ? roomOfAll : roomBesideLegends;
    const std::size_t drawn = std::max<std::size_t>(areAllDrawn ? charts : rows.size(), 1);
    return {.stretches = std::clamp(room / stretchBytes / drawn, fewest, most),
            .areAllDrawn = areAllDrawn};
}

/// Nothing is loaded, and no script runs but the page's own.
std::string startOf(std::size_t fileCount) {
    return "<!DOCTYPE html>\n<html lang=en><head><meta charset=utf-8>"
           "<meta http-equiv=Content-Security-Policy content=\"default-src 'none'; style-src "
           "'unsafe-inline'; script-src '" +
           policyHash(pageScript) +
           "'\"><meta name=viewport content=\"width=device-width,initial-scale=1\">"
           "<meta name=color-scheme content=\"light dark\"><title>Conversion report: " +
           std::to_string(fileCount) + (fileCount == 1 ? " file" : " files") + "</title><style>" +
           pageStyle + "</style></head><body>\n";
}

std::string tableHead() {
    std::string cells;
    for (const char* column : columns) {
        cells += std::string{"<th role=columnheader scope=col>"} + column + "</th>";
    }
    return "<table role=table><thead role=rowgroup><tr role=row>" + cells +
           "<th role=columnheader scope=col>File</th></tr></thead>\n";
}

void write(std::ostream& out, const Manifest& manifest) {
    const std::vector<const FileRecord*> rows = newestOf(manifest);
    std::map<std::string, std::string> folders;
    for (const BatchRecord& batch : manifest.batches) {
        folders.emplace(batch.batch, batch.folder);
    }
    RowSetting setting = settingFor(rows);
    out << startOf(rows.size()) << pageHead(manifest, rows) << pageTools(rows) << "<main>"
        << (setting.areAllDrawn
                ? ""
                : "<p>Of so many channels only the first of each file is drawn.</p>")
        << tableHead();
    for (const FileRecord* row : rows) {
        out << rowOf(*row, folders[row->batch], setting);
    }
    out << "</table></main><script>" << pageScript << "</script></body></html>\n";
}

} // namespace

void writePage(const fs::path& file, const Manifest& manifest, fs::perms most) {
    try {
        writeWhole(file, most, [&](std::ostream& out) { write(out, manifest); });
    } catch (const fs::filesystem_error& error) {
        throw std::runtime_error{"can't write " + file.string() + ": " + error.code().message()};
    }
}

} // namespace korlit::host
