#include "host/manifest/record.h"

#include "host/text/json.h"
#include "host/text/utf8.h"
#include "platform/text.h"

#include <algorithm>
#include <array>

#include <iterator>
#include <string_view>

namespace korlit::host {

namespace {

using Texts = std::vector<std::string>;
using Span = std::optional<std::pair<double, double>>;

Json textsJson(const Texts& texts) {
    Json json = Json::array();
    std::ranges::transform(texts, std::back_inserter(json), utf8Of);
    return json;
}

template <typename Items, typename Write>
Json listJson(const Items& items, Write write) {
    Json json = Json::array();
    std::ranges::transform(items, std::back_inserter(json), write);
    return json;
}

template <typename Item>
std::vector<Item> listIn(const Json& json, Item (*read)(const Json&)) {
    std::vector<Item> items;
    std::ranges::transform(json, std::back_inserter(items), read);
    return items;
}

void addPath(Json& json, const std::string& key, const std::string& path) {
    json[key] = utf8Of(path);
    addPathBytes(json, key, path);
}

void addSpan(Json& json, const char* first, const char* second, const Span& span,
             Json (*write)(double)) {
    json[first] = span ? write(span->first) : Json{};
    json[second] = span ? write(span->second) : Json{};
}

Span spanIn(const Json& json, const char* first, const char* second) {
    return json.at(first).is_number() && json.at(second).is_number()
               ? Span{{json.at(first), json.at(second)}}
               : std::nullopt;
}

Json fileJson(const RecordedFile& file) {
    Json json = Json::object();
    addPath(json, "path", file.path);
    if (file.digest) {
        json["size"] = file.digest->size;
        json["sha256"] = file.digest->sha256;
    }
    return json;
}

/// As digestOf writes it; other programs write the letters in upper case.
std::string digestIn(const Json& json) {
    std::string digits = json;
    _strlwr(digits.data());
    return digits;
}

RecordedFile fileIn(const Json& json) {
    RecordedFile file{.path = pathIn(json, "path")};
    if (json.contains("sha256")) {
        file.digest = {.size = json.at("size"), .sha256 = digestIn(json.at("sha256"))};
    }
    return file;
}

Json changeJson(const RecordedChange& change) {
    return {{"rule", change.rule}, {"words", utf8Of(change.words)}, {"count", change.count}};
}

RecordedChange changeIn(const Json& json) {
    return {.rule = json.at("rule"), .words = json.at("words"), .count = json.at("count")};
}

Json verdictJson(const std::optional<RecordedVerdict>& verdict) {
    if (!verdict) {
        return nullptr;
    }
    return {{"words", utf8Of(verdict->words)},
            {"same", verdict->isSame},
            {"expected", listJson(verdict->expected, changeJson)},
            {"unexpected", textsJson(verdict->unexpected)}};
}

std::optional<RecordedVerdict> verdictIn(const Json& json) {
    if (json.is_null()) {
        return std::nullopt;
    }
    return RecordedVerdict{.words = json.at("words"),
                           .isSame = json.at("same"),
                           .expected = listIn(json.at("expected"), changeIn),
                           .unexpected = json.at("unexpected")};
}

Json peakJson(const RecordedPeak& peak) {
    return {{"name", utf8Of(peak.name)}, {"time_min", peak.time ? timeJson(*peak.time) : Json{}}};
}

RecordedPeak peakIn(const Json& json) {
    const Json& time = json.at("time_min");
    return {.name = json.at("name"),
            .time = time.is_number() ? std::optional<double>{time} : std::nullopt};
}

Json channelJson(const RecordedChannel& channel) {
    Json json{{"channel", channel.number},
              {"detector_unit", utf8Of(channel.unit)},
              {"points", channel.points}};
    addSpan(json, "start_min", "end_min", channel.times, timeJson);
    addSpan(json, "minimum", "maximum", channel.values, numberJson);
    json["peaks"] = listJson(channel.peaks, peakJson);
    json["outline"] = channel.outline;
    return json;
}

RecordedChannel channelIn(const Json& json) {
    return {.number = json.at("channel"),
            .unit = json.at("detector_unit"),
            .points = json.at("points"),
            .times = spanIn(json, "start_min", "end_min"),
            .values = spanIn(json, "minimum", "maximum"),
            .peaks = listIn(json.at("peaks"), peakIn),
            .outline = json.at("outline")};
}

BatchRecord batchIn(const Json& json) {
    return {.batch = json.at("batch"),
            .time = json.at("time"),
            .version = json.at("korlit"),
            .machine = json.at("machine"),
            .folder = pathIn(json, "folder"),
            .arguments = json.at("arguments"),
            .fileCount = json.at("files")};
}

FileRecord recordedFileIn(const Json& json) {
    return {.batch = json.at("batch"),
            .time = json.at("time"),
            .kind = json.at("kind"),
            .result = json.at("result"),
            .message = json.at("message"),
            .sources = listIn(json.at("sources"), fileIn),
            .outputs = listIn(json.at("outputs"), fileIn),
            .verdict = verdictIn(json.at("verdict")),
            .losses = json.at("losses"),
            .warnings = json.at("warnings"),
            .sample = json.at("sample"),
            .operatorName = json.at("operator"),
            .date = json.at("injection_date"),
            .channels = listIn(json.at("channels"), channelIn)};
}

} // namespace

std::string lineOf(const BatchRecord& batch) {
    Json json{{"record", "batch"},
              {"batch", batch.batch},
              {"time", batch.time},
              {"korlit", batch.version},
              {"machine", utf8Of(batch.machine)}};
    addPath(json, "folder", batch.folder);
    json["arguments"] = textsJson(batch.arguments);
    json["files"] = batch.fileCount;
    return jsonLine(json);
}

std::string lineOf(const FileRecord& file) {
    return jsonLine({{"record", "file"},
                     {"batch", file.batch},
                     {"time", file.time},
                     {"kind", file.kind},
                     {"result", file.result},
                     {"message", utf8Of(file.message)},
                     {"sources", listJson(file.sources, fileJson)},
                     {"outputs", listJson(file.outputs, fileJson)},
                     {"verdict", verdictJson(file.verdict)},
                     {"losses", textsJson(file.losses)},
                     {"warnings", textsJson(file.warnings)},
                     {"sample", utf8Of(file.sample)},
                     {"operator", utf8Of(file.operatorName)},
                     {"injection_date", utf8Of(file.date)},
                     {"channels", listJson(file.channels, channelJson)}});
}

std::optional<ManifestRecord> recordIn(const std::string& line) try {
    const Json json = Json::parse(line);
    if (json.at("record") == "batch") {
        return batchIn(json);
    }
    FileRecord file = recordedFileIn(json);
    constexpr std::array<std::string_view, 3> results{"converted", "skipped", "failed"};
    return file.sources.empty() || std::ranges::find(results, file.result) == results.end()
               ? std::nullopt
               : std::optional<ManifestRecord>{std::move(file)};
} catch (const Json::exception&) {
    return std::nullopt;
}

} // namespace korlit::host
