#include "native/andi_to_native.h"

#include "andi/value_lookup.h"
#include "native/extremes.h"
#include "native/native_state.h"
#include "native/pair_rules.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string_view>

namespace korlit {

namespace {

constexpr const char* noMemoryForDataText = "Out of memory reading data";
constexpr const char* noOrdinatesText = "No ordinate values found in Andi file";
constexpr const char* notUniformText = "Data are not uniformly distributed (equidistant)";
constexpr const char* tooManyPeaksText = "Too many peaks in data file";
constexpr const char* noMemoryForPeaksText = "Out of memory reading data file";

/// Lookup wants a key without separators that it may change in place.
struct LookupKey {
    std::array<char, 32> text{};
    explicit LookupKey(std::string_view name) {
        std::remove_copy(name.begin(), name.begin() + std::min(name.size(), text.size() - 1),
                         text.begin(), '_');
    }
};

bool lookUpText(AndiFile* file, const char* name, char* target, std::int32_t limit) {
    LookupKey key{name};
    AndiVariable* variable = nullptr;
    return FindAndiValue(file, key.text.data(), target, limit, &variable) == 1;
}

/// A value as text, which is a copy: the next lookup goes over TextScratch. A value without
/// elements is the empty text.
std::optional<ValueText> lookUpText(AndiFile* file, const char* name) {
    TextScratch.fill('\0');
    if (!lookUpText(file, name, TextScratch.data(), maxValueText)) {
        return std::nullopt;
    }
    return TextScratch;
}

std::optional<std::string_view> viewOf(const std::optional<ValueText>& text) {
    return text ? std::optional<std::string_view>{text->data()} : std::nullopt;
}

AndiVariable* lookUpVariable(AndiFile* file, const char* name) {
    LookupKey key{name};
    AndiVariable* variable = nullptr;
    void* data = nullptr;
    FindAndiValue(file, key.text.data(), &data, pointerMode, &variable);
    return variable;
}

void clearHeaders() {
    TheSliHeader = {};
    TheSliHeader.FormatVersion = sliceFormatVersion;
    TheRepHeader = {};
    TheRepHeader.ReportFlags = writtenReportFlags;
    TheResHeader = {};
}

void mapDate(AndiFile* file) {
    std::optional<ValueText> text;
    for (const char* source : stampSources) {
        text = text ? text : lookUpText(file, source);
    }
    if (!text) {
        return;
    }
    const auto [date, time] = pairDate(text->data());
    std::ranges::copy(date, TheSliHeader.DateText);
    std::ranges::copy(time, TheSliHeader.TimeText);
    std::ranges::copy(date, TheResHeader.ResultDate);
    std::ranges::copy(time, TheResHeader.ResultTime);
}

void mapTexts(AndiFile* file) {
    auto* header = reinterpret_cast<char*>(&TheSliHeader);
    for (const HeaderText& text : headerTexts) {
        lookUpText(file, text.name, header + text.fieldOffset,
                   static_cast<std::int32_t>(text.room()));
    }
}

/// The samples into a block of their own; null, or the text of the failure.
const char* mapSignal(NativeBlocks& blocks, AndiFile* file) {
    if (const auto count = lookUpText(file, taken::pointNumber)) {
        TheSliHeader.PointCount = static_cast<std::uint32_t>(countIn(count->data()));
    }
    const std::int64_t sampleSize = sizeof(float);
    const std::int64_t spare = 4;
    if (!acquireBlock(blocks.dataHandle, blocks.data,
                      TheSliHeader.PointCount * sampleSize + spare)) {
        return noMemoryForDataText;
    }
    AndiVariable* ordinates = lookUpVariable(file, taken::ordinateValues);
    if (ordinates == nullptr) {
        FreeAndiFile(file);
        return noOrdinatesText;
    }
    const auto available = static_cast<std::uint32_t>(ordinates->VSize / sampleSize);
    const std::uint32_t count = std::min<std::uint32_t>(TheSliHeader.PointCount, available);
    TheSliHeader.PointCount = count;
    // The file's own block is as good as a copy of it, and the signal may be most of the memory.
    exchangeData(*ordinates, blocks.dataHandle, blocks.data);
    const Extremes extremes = extremesOf({blocks.data, count});
    TheSliHeader.MinValue = extremes.smallest;
    TheSliHeader.MaxValue = extremes.largest;
    return nullptr;
}

/// Sets the sample interval; answers the factor that turns the file's times into minutes.
float mapInterval(AndiFile* file) {
    const auto interval = lookUpText(file, taken::samplingInterval);
    const auto unit = lookUpText(file, taken::retentionUnit);
    const PairTimes times = pairTimes(viewOf(interval), viewOf(unit));
    TheSliHeader.ScaleFactor = 1.0;
    TheSliHeader.SampleIntervalMs = times.intervalMs;
    return times.minutesPerUnit;
}

void mapPosition(AndiFile* file) {
    const auto text = lookUpText(file, taken::samplePosition).value_or(ValueText{});
    const Position position = positionIn(text.data());
    TheSliHeader.AutosamplerRack = position.rack;
    TheSliHeader.AutosamplerVial = position.vial;
}

/// Names of a matrix lie its row length apart; those of a vector 4 bytes.
std::int64_t namePitch(const AndiFile& file, const AndiVariable& names) {
    constexpr std::int64_t vectorPitch = 4;
    return names.DimensionCount >= 2 ? file.Dimensions[names.DimensionIds[1]].Length : vectorPitch;
}

void mapPeakNames(AndiFile* file, PeakRecord* peaks) {
    const AndiVariable* names = lookUpVariable(file, taken::peakName);
    if (names == nullptr) {
        return;
    }
    const std::int64_t pitch = namePitch(*file, *names);
    const auto* name = static_cast<const char*>(names->Data);
    std::int64_t bytesLeft = names->VSize;
    for (int i = 0; i < TheResHeader.PeakCount && pitch >= 0 && bytesLeft >= pitch; ++i) {
        const char* limit = name + std::min(maxPeakNameLength, bytesLeft);
        std::copy(name, std::find(name, limit, '\0'), peaks[i].PeakName);
        name += pitch;
        bytesLeft -= pitch;
    }
}

/// The peak table, if the file has one that fits. `message` says why one was left out.
void mapPeaks(NativeBlocks& blocks, AndiFile* file, float timeFactor, std::span<char> message) {
    const std::int64_t count =
        countIn(lookUpText(file, taken::peakNumber).value_or(ValueText{}).data());
    if (count <= 0) {
        return;
    }
    if (count > maxWrittenPeaks) {
        return formatText(message, tooManyPeaksText);
    }
    if (!acquireBlock(blocks.peakHandle, blocks.peaks, count * std::int64_t{sizeof(PeakRecord)})) {
        return formatText(message, noMemoryForPeaksText);
    }
    TheResHeader.PeakCount = static_cast<std::int16_t>(count);
    TheResHeader.PeakTableCount = static_cast<std::int16_t>(count);
    for (int i = 0; i < count; ++i) {
        blocks.peaks[i].PeakNumber = static_cast<std::uint16_t>(i + 1);
    }
    for (const auto& [name, fieldOffset, isTime] : peakSources) {
        CopyPeakColumn(name, blocks.peaks, fieldOffset, isTime ? timeFactor : 1.0F);
    }
    mapPeakNames(file, blocks.peaks);
}

int fail(std::span<char> message, const char* text) {
    formatText(message, "%s", text);
    return 0;
}

} // namespace

int MapAndiToNative(NativeBlocks& blocks, AndiFile* file, std::span<char> message) {
    clearHeaders();
    mapDate(file);
    mapTexts(file);
    if (const char* failure = mapSignal(blocks, file)) {
        return fail(message, failure);
    }
    const float timeFactor = mapInterval(file);
    if (!isUniform(viewOf(lookUpText(file, taken::uniformFlag)))) {
        return fail(message, notUniformText);
    }
    mapPosition(file);
    mapPeaks(blocks, file, timeFactor, message);
    FreeAndiFile(file);
    return 1;
}

void CopyPeakColumn(const char* name, PeakRecord* peaks, std::size_t fieldOffset, float factor) {
    const AndiVariable* column = lookUpVariable(&TheAndiFile, name);
    if (column == nullptr) {
        return;
    }
    const std::int64_t available = column->VSize / static_cast<std::int64_t>(sizeof(float));
    const std::int64_t count = std::min<std::int64_t>(TheResHeader.PeakCount, available);
    for (std::int64_t i = 0; i < count; ++i) {
        char* field = reinterpret_cast<char*>(&peaks[i]) + fieldOffset;
        std::memcpy(field, static_cast<const char*>(column->Data) + i * 4, sizeof(float));
        if (factor != 1.0F) {
            float value = 0.0F;
            std::memcpy(&value, field, sizeof value);
            value *= factor;
            std::memcpy(field, &value, sizeof value);
        }
    }
}

} // namespace korlit
