#include "host/info/info_data.h"

#include "host/data/facts.h"
#include "host/text/json.h"
#include "host/text/numbers.h"
#include "host/text/stamps.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <iostream>

namespace korlit::host {

namespace {

/// What stands in a column of --peaks and is a key of a peak in --json: the ANDI name without
/// "peak_", with the unit of times.
std::string columnName(const PeakNumber& number) {
    constexpr std::string_view prefix = "peak_";
    std::string key = number.name;
    if (key.starts_with(prefix)) {
        key.erase(0, prefix.size());
    }
    return number.isTime ? key + "_min" : key;
}

std::string csvField(const std::string& text) {
    std::string field = printable(text);
    if (field.find_first_of(",\"") == std::string::npos) {
        return field;
    }
    for (std::size_t place = field.find('"'); place != std::string::npos;
         place = field.find('"', place + 2)) {
        field.insert(place, 1, '"');
    }
    return '"' + field + '"';
}

/// A run's rows start with their channel.
std::string channelField(const DataSet& set) {
    return formatOf(set.kind).hasChannels ? std::to_string(std::max(set.channel, 1)) + ',' : "";
}

const char* channelTitle(const std::vector<DataSet>& sets) {
    return formatOf(sets.front().kind).hasChannels ? "channel," : "";
}

Json peakJson(const Peak& peak, std::size_t number) {
    Json json{{"number", number}, {"name", utf8Of(peak.name)}};
    for (const PeakNumber& each : peakNumbers()) {
        const std::optional<double>& value = peak.*each.value;
        const auto numberOf = each.isTime ? timeJson : numberJson;
        json[columnName(each)] = value ? numberOf(*value) : Json{};
    }
    json["start_code"] = utf8Of(peak.startCode);
    json["stop_code"] = utf8Of(peak.stopCode);
    return json;
}

void addSample(Json& json, const std::string& key, const DataSet& set,
               const std::optional<std::size_t>& sample) {
    json[key] = sample ? numberJson(set.signal[*sample]) : Json{};
    json[key + "_time_min"] = sample && hasTimes(set) ? timeJson(set.timeOf(*sample)) : Json{};
}

Json channelJson(const DataSet& set) {
    constexpr double secondsPerMinute = 60;
    const auto extremes = extremesOf(set.signal);
    Json json{{"channel", std::max(set.channel, 1)},
              {"detector_unit", utf8Of(set.detectorUnit)},
              {"points", set.signal.size()},
              {"total_ion", set.isTotalIon},
              {"uniform", set.isUniform},
              {"sampling_interval_s", nullptr},
              {"delay_time_min", timeJson(set.delayTime)},
              {"run_time_min", nullptr}};
    if (hasTimes(set)) {
        const double interval = set.times.empty() ? set.samplingInterval : medianInterval(set);
        json["sampling_interval_s"] = timeJson(interval * secondsPerMinute);
        json["run_time_min"] = roundedJson(set.runTime());
    }
    addSample(json, "minimum", set, extremes ? std::optional{extremes->minimum} : std::nullopt);
    addSample(json, "maximum", set, extremes ? std::optional{extremes->maximum} : std::nullopt);
    json["peaks"] = Json::array();
    for (const Peak& peak : set.peaks) {
        json["peaks"].push_back(peakJson(peak, json["peaks"].size() + 1));
    }
    return json;
}

} // namespace

void printJson(const std::vector<DataSet>& sets) {
    const DataSet& set = sets.front();
    const std::string injected = set.text("injection_date_time_stamp");
    const auto stamp = stampIn(injected);
    Json json{{"file", utf8Of(set.source)},
              {"kind", formatOf(set.kind).name},
              {"sample", utf8Of(set.text("sample_name"))},
              {"operator", utf8Of(set.text("operator_name"))},
              {"injection_date", stamp ? stamp->isoText() : utf8Of(injected)},
              {"separation_type", utf8Of(set.text("separation_experiment_type"))},
              {"autosampler_position", utf8Of(set.samplePosition)},
              {"channels", Json::array()}};
    for (const DataSet& each : sets) {
        json["channels"].push_back(channelJson(each));
    }
    addPathBytes(json, "file", set.source);
    std::cout << jsonLine(json);
}

void printPeaks(const std::vector<DataSet>& sets) {
    std::cout << channelTitle(sets) << "number,name";
    for (const PeakNumber& number : peakNumbers()) {
        std::cout << ',' << columnName(number);
    }
    std::cout << ",start_code,stop_code\n";
    for (const DataSet& set : sets) {
        for (std::size_t i = 0; i < set.peaks.size(); ++i) {
            const Peak& peak = set.peaks[i];
            std::string line =
                channelField(set) + std::to_string(i + 1) + ',' + csvField(peak.name);
            for (const auto& [name, value, isTime] : peakNumbers()) {
                line += ',';
                if (peak.*value) {
                    line += (isTime ? timeText : numberText)(*(peak.*value));
                }
            }
            std::cout << line << ',' << csvField(peak.startCode) << ',' << csvField(peak.stopCode)
                      << '\n';
        }
    }
}

void printSignal(const std::vector<DataSet>& sets) {
    std::cout << channelTitle(sets) << "time_min,value\n";
    for (const DataSet& set : sets) {
        const std::string channel = channelField(set);
        std::string line;
        for (std::size_t i = 0; i < set.signal.size() && std::cout; ++i) {
            line = channel;
            if (hasTimes(set)) {
                appendSampleTime(line, set.timeOf(i));
            }
            line += ',';
            appendNumber(line, set.signal[i]);
            line += '\n';
            std::cout.write(line.data(), std::ssize(line));
        }
    }
}

} // namespace korlit::host
