// The fields of a Dunvale run's records that carry data, under the names of the records.
#pragma once

#include "dunvale/run_records.h"
#include "host/proof/record_field.h"

#include <array>

namespace korlit::host {

constexpr std::array<RecordField, 1> runHeadFields{
    numberField<float>(parts::texts, "RunVersion", offsetof(RunFileHead, RunVersion)),
};

constexpr std::array<RecordField, 5> runInfoFields{
    textField(parts::texts, "OperatorName", offsetof(RunInfo, OperatorName),
              sizeof(RunInfo::OperatorName)),
    numberField<double>(parts::texts, "StartSerial", offsetof(RunInfo, StartSerial)),
    numberField<std::int16_t>(parts::texts, "AutosamplerRack", offsetof(RunInfo, AutosamplerRack)),
    numberField<std::int16_t>(parts::texts, "AutosamplerVial", offsetof(RunInfo, AutosamplerVial)),
    textField(parts::texts, "SampleName", offsetof(RunInfo, SampleName),
              sizeof(RunInfo::SampleName)),
};

constexpr std::array<RecordField, 6> signalHeadFields{
    numberField<std::int32_t>(parts::signal, "PointCount", offsetof(SliHeadP, PointCount)),
    numberField<std::int16_t>(parts::signal, "SampleIntervalMs",
                              offsetof(SliHeadP, SampleIntervalMs)),
    numberField<double>(parts::signal, "ScaleFactor", offsetof(SliHeadP, ScaleFactor)),
    textField(parts::texts, "DetectorUnit", offsetof(SliHeadP, DetectorUnit),
              sizeof(SliHeadP::DetectorUnit)),
    numberField<float>(parts::signal, "MinValue", offsetof(SliHeadP, MinValue)),
    numberField<float>(parts::signal, "MaxValue", offsetof(SliHeadP, MaxValue)),
};

constexpr std::array<RecordField, 3> channelResultsFields{
    numberField<std::int16_t>(parts::texts, "PeakWinSelect", offsetof(ResHead, PeakWinSelect)),
    numberField<std::int16_t>(parts::texts, "ResultCount", offsetof(ResHead, ResultCount)),
    numberField<std::int16_t>(parts::texts, "EventCount", offsetof(ResHead, EventCount)),
};

/// Of which older files lack the last.
constexpr std::array<RecordField, 6> runPeakFields{
    numberField<float>(parts::peaks, "RetentionTime", offsetof(Results, RetentionTime)),
    numberField<float>(parts::peaks, "StartTime", offsetof(Results, StartTime)),
    numberField<float>(parts::peaks, "EndTime", offsetof(Results, EndTime)),
    numberField<float>(parts::peaks, "Area", offsetof(Results, Area)),
    numberField<float>(parts::peaks, "Height", offsetof(Results, Height)),
    numberField<float>(parts::peaks, "Amount", offsetof(Results, Amount)),
};

/// Of each of the two tables, under its own part.
constexpr std::array<RecordField, 3> windowFields{
    textField(parts::windows, "WindowName", offsetof(PeakWin, WindowName),
              sizeof(PeakWin::WindowName)),
    numberField<float>(parts::windows, "WindowStart", offsetof(PeakWin, WindowStart)),
    numberField<float>(parts::windows, "WindowEnd", offsetof(PeakWin, WindowEnd)),
};

} // namespace korlit::host
