#include "dunvale/channel_to_andi.h"

#include "andi/chromatography_template.h"
#include "dunvale/peak_table.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace korlit {

namespace {

constexpr const char* noDimensionText = "Error(s) occurred !!!\r\n%s = -1";
constexpr const char* noSignalText =
    "Error(s) occurred !!!\r\nAddAndiVector(\"ordinate_values\") returned NULL.";

bool hasDimensions(const TemplateDimensions& dimensions, std::span<char> message) {
    const std::array<std::pair<const char*, std::int32_t>, 3> needed{{
        {"iDimPoints", dimensions.points},
        {"iDimPeaks", dimensions.peaks},
        {"iDimLog", dimensions.errors},
    }};
    const auto* missing =
        std::ranges::find(needed, -1, [](const auto& each) { return each.second; });
    if (missing == needed.end()) {
        return true;
    }
    formatText(message, noDimensionText, missing->first);
    return false;
}

/// A text field ends at its last byte, whatever stands there.
template <std::size_t width>
const char* terminated(char (&field)[width]) {
    field[width - 1] = '\0';
    return field;
}

void addAttributes(AndiFile* file, const RunOrigin& origin, RunInfo& info, SliHeadP& head,
                   bool hasPeaks) {
    AddTemplateAttributes(file,
                          {.injectionStamp = origin.stamp.data(),
                           .injectionTime = origin.injectionTime.data(),
                           .sampleName = terminated(info.SampleName),
                           .operatorName = terminated(info.OperatorName),
                           .separationType = "HPLC",
                           .sourceFile = origin.runFile,
                           .detectorUnit = terminated(head.DetectorUnit)},
                          hasPeaks);
}

std::span<const PeakWin> windowsOf(const DunvaleRun& run, int channel) {
    const auto [first, second] = windowCounts(run.lpTimeTable->PeakWinCounts);
    return run.lpResHead[channel].PeakWinSelect == 0
               ? std::span{run.lpPeakWin, static_cast<std::size_t>(first)}
               : std::span{run.lpPeakWin2, static_cast<std::size_t>(second)};
}

ChannelPeaks peaksOf(const DunvaleRun& run, int channel, const AndiVariable& signal) {
    const ResHead& head = run.lpResHead[channel];
    return {.results = {run.plpResults[channel], static_cast<std::size_t>(head.ResultCount)},
            .events = {run.plpPeaks[channel], static_cast<std::size_t>(head.EventCount)},
            .windows = windowsOf(run, channel),
            .signal = {static_cast<const float*>(signal.Data),
                       static_cast<std::size_t>(signal.ElementCount)},
            .sampleIntervalMs = run.lpSliHeadP[channel].SampleIntervalMs};
}

} // namespace

bool MapChannelToAndi(DunvaleRun& run, int channel, const RunOrigin& origin, AndiFile* file,
                      std::span<char> message) {
    SliHeadP& head = run.lpSliHeadP[channel];
    const std::int16_t resultCount = run.lpResHead[channel].ResultCount;
    const TemplateDimensions dimensions = AddTemplateDimensions(file, head.PointCount, resultCount);
    if (!hasDimensions(dimensions, message)) {
        return false;
    }
    addAttributes(file, origin, run.info, head, resultCount != 0);
    AddTemplateScalars(file, {.maximum = head.MaxValue,
                              .minimum = head.MinValue,
                              .scaleFactor = head.ScaleFactor,
                              .pointCount = head.PointCount,
                              .sampleIntervalMs = head.SampleIntervalMs});
    float*& samples = run.plpfData[channel];
    GlobalHandle handle = handleOf(samples);
    const AndiVariable* signal =
        AddSignal(file, dimensions.points, handle, samples, head.ScaleFactor,
                  {.rack = run.info.AutosamplerRack, .vial = run.info.AutosamplerVial});
    if (signal == nullptr) {
        formatText(message, "%s", noSignalText);
        return false;
    }
    return resultCount == 0 ||
           AddPeakTable(file, dimensions, peaksOf(run, channel, *signal), message);
}

} // namespace korlit
