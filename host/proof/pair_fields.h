// The fields of a Merivolta pair's records that carry data, under the names of the records.
#pragma once

#include "host/proof/record_field.h"
#include "native/native_records.h"

#include <array>

namespace korlit::host {

constexpr std::array<RecordField, 14> sliceFields{
    numberField<std::uint32_t>(parts::signal, "PointCount", offsetof(SliHeader, PointCount)),
    numberField<float>(parts::signal, "MinValue", offsetof(SliHeader, MinValue)),
    numberField<float>(parts::signal, "MaxValue", offsetof(SliHeader, MaxValue)),
    numberField<std::int16_t>(parts::signal, "SampleIntervalMs",
                              offsetof(SliHeader, SampleIntervalMs)),
    textField(parts::texts, "SampleName", offsetof(SliHeader, SampleName),
              sizeof(SliHeader::SampleName)),
    textField(parts::texts, "DateText", offsetof(SliHeader, DateText), sizeof(SliHeader::DateText)),
    textField(parts::texts, "TimeText", offsetof(SliHeader, TimeText), sizeof(SliHeader::TimeText)),
    numberField<std::int16_t>(parts::texts, "AutosamplerRack",
                              offsetof(SliHeader, AutosamplerRack)),
    numberField<std::int16_t>(parts::texts, "AutosamplerVial",
                              offsetof(SliHeader, AutosamplerVial)),
    textField(parts::texts, "OperatorName", offsetof(SliHeader, OperatorName),
              sizeof(SliHeader::OperatorName)),
    numberField<std::uint16_t>(parts::texts, "FormatVersion", offsetof(SliHeader, FormatVersion)),
    textField(parts::texts, "DetectorUnit", offsetof(SliHeader, DetectorUnit),
              sizeof(SliHeader::DetectorUnit)),
    numberField<double>(parts::signal, "ScaleFactor", offsetof(SliHeader, ScaleFactor)),
    numberField<std::uint16_t>(parts::texts, "SeparationType", offsetof(SliHeader, SeparationType)),
};

constexpr std::array<RecordField, 3> reportFields{
    numberField<std::uint16_t>(parts::texts, "ReportFlags", offsetof(RepHeader, ReportFlags)),
    numberField<std::int32_t>(parts::texts, "ResultsOffset", offsetof(RepHeader, ResultsOffset)),
    numberField<std::int32_t>(parts::texts, "ResultsSize", offsetof(RepHeader, ResultsSize)),
};

constexpr std::array<RecordField, 4> resultFields{
    textField(parts::texts, "ResultDate", offsetof(ResHeader, ResultDate),
              sizeof(ResHeader::ResultDate)),
    textField(parts::texts, "ResultTime", offsetof(ResHeader, ResultTime),
              sizeof(ResHeader::ResultTime)),
    numberField<std::int16_t>(parts::texts, "PeakTableCount", offsetof(ResHeader, PeakTableCount)),
    numberField<std::int16_t>(parts::texts, "PeakCount", offsetof(ResHeader, PeakCount)),
};

constexpr std::array<RecordField, 12> peakFields{
    numberField<std::uint16_t>(parts::peaks, "PeakNumber", offsetof(PeakRecord, PeakNumber)),
    numberField<float>(parts::peaks, "RetentionTime", offsetof(PeakRecord, RetentionTime)),
    numberField<float>(parts::peaks, "PeakArea", offsetof(PeakRecord, PeakArea)),
    numberField<float>(parts::peaks, "PeakHeight", offsetof(PeakRecord, PeakHeight)),
    numberField<float>(parts::peaks, "PeakStartTime", offsetof(PeakRecord, PeakStartTime)),
    numberField<float>(parts::peaks, "PeakEndTime", offsetof(PeakRecord, PeakEndTime)),
    numberField<float>(parts::peaks, "PeakAreaPercent", offsetof(PeakRecord, PeakAreaPercent)),
    textField(parts::peaks, "PeakName", offsetof(PeakRecord, PeakName),
              sizeof(PeakRecord::PeakName)),
    numberField<float>(parts::peaks, "BaselineStartTime", offsetof(PeakRecord, BaselineStartTime)),
    numberField<float>(parts::peaks, "BaselineStopTime", offsetof(PeakRecord, BaselineStopTime)),
    numberField<float>(parts::peaks, "ExtAreaPercent", offsetof(PeakRecord, ExtAreaPercent)),
    numberField<float>(parts::peaks, "PeakAmount", offsetof(PeakRecord, PeakAmount)),
};

} // namespace korlit::host
