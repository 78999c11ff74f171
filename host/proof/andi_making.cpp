#include "host/proof/andi_making.h"

#include "andi/chromatography_template.h"
#include "datetime/injection_time.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace korlit::host {

namespace {

constexpr std::array<Origin, 4> textOrigins{{
    {.name = "experiment_title", .field = "SampleName", .rule = &changes::textCut},
    {.name = "operator_name", .field = "OperatorName", .rule = &changes::textCut},
    {.name = "sample_name", .field = "SampleName", .rule = &changes::textCut},
    {.name = "detector_unit", .field = "DetectorUnit", .rule = &changes::textCut},
}};

constexpr std::array<Origin, 4> scalarOrigins{{
    {.name = "detector_maximum_value", .field = "MaxValue", .rule = &changes::factorInValues},
    {.name = "detector_minimum_value", .field = "MinValue", .rule = &changes::factorInValues},
    {.name = "actual_run_time_length", .field = "PointCount", .rule = &changes::runTimeOfSamples},
    {.name = "actual_sampling_interval",
     .field = "SampleIntervalMs",
     .rule = &changes::intervalInMinutes},
}};

constexpr std::array<const char*, 2> positionFields{"AutosamplerRack", "AutosamplerVial"};

/// What comes from fields that the source has; answers whether anything does.
bool putFrom(AndiMaking& making, std::span<const Origin> origins, const ValueKey& to,
             const Value& target) {
    bool isPut = false;
    for (const Origin& origin : origins) {
        const Entry* source = origin.name == to.name ? making.find(origin.field) : nullptr;
        if (source != nullptr) {
            making.values.put(source, to, target, *origin.rule);
            isPut = true;
        }
    }
    return isPut;
}

/// Where the attributes come from. A date without a stamp is one that no calendar has.
std::vector<Origin> attributeOrigins(const OwnTexts& own, bool hasStamp) {
    std::vector<Origin> origins{own.origins};
    origins.insert(origins.end(), textOrigins.begin(), textOrigins.end());
    for (const char* field : own.dateFields) {
        origins.push_back({.name = "injection_date_time_stamp",
                           .field = field,
                           .rule = hasStamp ? &changes::dateAsStamp : &changes::dateUnreadable});
        origins.push_back(
            {.name = "HP_injection_time", .field = field, .rule = &changes::dateAsStamp});
    }
    return origins;
}

void expectAttributes(AndiMaking& making, const OwnTexts& own) {
    // Stays empty where the date service has no such date.
    std::array<char, stampTextSize> stamp{};
    FormatAndiStamp(&own.date, stamp.data());
    const InjectionTimeText time = InjectionTime(own.date);
    const RunTexts texts{.injectionStamp = stamp.data(),
                         .injectionTime = time.data(),
                         .sampleName = own.sampleName.c_str(),
                         .operatorName = own.operatorName.c_str(),
                         .separationType = own.separationType.c_str(),
                         .sourceFile = own.sourceFile.c_str(),
                         .detectorUnit = own.detectorUnit.c_str()};
    const std::vector<Origin> origins = attributeOrigins(own, stamp.front() != '\0');
    for (const auto& [name, text] : templateTexts(texts, making.number(own.peakCountField) != 0)) {
        const ValueKey key{.part = parts::texts, .name = name};
        if (!putFrom(making, origins, key, text)) {
            making.values.set(key, text,
                              text == texts.sourceFile ? changes::sourceNamed
                                                       : changes::setByTemplate);
        }
    }
}

void expectScalars(AndiMaking& making) {
    const SignalFigures figures{
        .maximum = static_cast<float>(making.number("MaxValue")),
        .minimum = static_cast<float>(making.number("MinValue")),
        .scaleFactor = making.number("ScaleFactor"),
        .pointCount = static_cast<std::int32_t>(making.number("PointCount")),
        .sampleIntervalMs = static_cast<std::int16_t>(making.number("SampleIntervalMs"))};
    for (const auto& [name, number] : templateScalars(figures)) {
        const ValueKey key{.part = parts::signal, .name = name};
        if (!putFrom(making, scalarOrigins, key, double{number})) {
            making.values.set(key, double{number}, changes::setByTemplate);
        }
    }
}

void expectDimensions(AndiMaking& making, const char* peakCountField) {
    const auto key = [](const char* name) {
        return ValueKey{.part = parts::dimensions, .name = name};
    };
    for (const auto& [name, length] : stringDimensions) {
        making.values.set(key(name), double{static_cast<double>(length)}, changes::setByTemplate);
    }
    making.values.put(making.find("PointCount"), key("point_number"), making.number("PointCount"),
                      changes::setByTemplate);
    if (const double peakCount = making.number(peakCountField); peakCount != 0) {
        making.values.put(making.find(peakCountField), key("peak_number"), peakCount,
                          changes::setByTemplate);
    } else {
        making.leave(peakCountField, 0, changes::saidTwice, "a file without peaks has no count");
    }
    making.values.set(key("error_number"), 1.0, changes::setByTemplate);
}

void expectSignal(AndiMaking& making) {
    Expectations& expected = making.values.expected;
    expected.signal = making.source.signal;
    expected.memory = making.source.memory;
    expected.signalFactor = making.source.signalFactor;
    const std::string factor = wordsOf(expected.signalFactor);
    if (expected.signalFactor != 1) {
        expected.signalChange.rule = &changes::factorInValues;
        expected.signalChange.words = "samples are multiplied by " + factor;
    }
    making.leave("ScaleFactor", 0, changes::factorInValues,
                 "the factor " + factor + " is in the samples");
    if (expected.signal.empty()) {
        // A dimension of no length is that of the records.
        making.values.set({.part = parts::records, .name = "ordinate_values"}, "",
                          changes::setByTemplate);
    }
    making.values.set({.part = parts::texts, .name = "ordinate_values:uniform_sampling_flag"}, "Y",
                      changes::setByTemplate);
    const auto number = [&](const char* name) {
        return static_cast<std::int16_t>(making.number(name));
    };
    const PositionText position =
        positionText({.rack = number(positionFields[0]), .vial = number(positionFields[1])});
    for (const char* field : positionFields) {
        making.values.put(making.find(field),
                          {.part = parts::texts, .name = "ordinate_values:autosampler_position"},
                          position.data(), changes::positionJoined);
    }
}

} // namespace

AndiMaking::AndiMaking(const Reading& sourceReading, Wanted wanted)
    : source{sourceReading}, values{sourceReading.entries, wanted} {
    for (const Entry& entry : source.entries) {
        starts.resize(std::max(starts.size(), entry.key.peak + 2));
        ++starts[entry.key.peak + 1];
    }
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    std::vector<std::size_t> next = starts;
    byPeak.resize(source.entries.size());
    for (const Entry& entry : source.entries) {
        byPeak[next[entry.key.peak]++] = &entry;
    }
    values.expected.kind = FileKind::Andi;
}

const Entry* AndiMaking::find(std::string_view name, std::size_t peak,
                              std::string_view part) const {
    // Records have few fields.
    if (peak + 1 >= starts.size()) {
        return nullptr;
    }
    const auto ofPeak = std::span{byPeak}.subspan(starts[peak], starts[peak + 1] - starts[peak]);
    const auto found = std::ranges::find_if(ofPeak, [&](const Entry* entry) {
        return entry->key.name == name && (part.empty() || entry->key.part == part);
    });
    return found == ofPeak.end() ? nullptr : *found;
}

double AndiMaking::number(std::string_view name, std::size_t peak) const {
    const Entry* entry = find(name, peak);
    const auto* number = entry == nullptr ? nullptr : std::get_if<double>(&entry->value);
    return number == nullptr ? 0.0 : *number;
}

std::string AndiMaking::text(std::string_view name, std::size_t peak) const {
    const Entry* entry = find(name, peak);
    const auto* text = entry == nullptr ? nullptr : std::get_if<std::string>(&entry->value);
    return text == nullptr ? "" : *text;
}

void AndiMaking::leave(std::string_view name, std::size_t peak, const ChangeRule& rule,
                       const std::string& words) {
    if (const Entry* entry = find(name, peak)) {
        values.leave(*entry, rule, words);
    }
}

void AndiMaking::leaveRest() {
    for (const Entry& entry : source.entries) {
        if (!values.isTaken(entry)) {
            values.leave(entry, changes::noPlaceInAndi, "");
        }
    }
}

void expectTemplate(AndiMaking& making, const OwnTexts& texts) {
    expectAttributes(making, texts);
    expectScalars(making);
    expectSignal(making);
    expectDimensions(making, texts.peakCountField);
}

} // namespace korlit::host
