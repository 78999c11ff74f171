// The names of peaks, found in a table of time windows.
#pragma once

#include "dunvale/run_records.h"

#include <span>

namespace korlit {

/// Bytes of a peak's name, terminator included.
constexpr int peakNameSize = 32;

/// The first window that a retention time lies in; null for none.
const PeakWin* windowOf(float retentionTime, std::span<const PeakWin> windows);

/// Fills the row of each peak in `names`, peakNameSize bytes each, with the name of its
/// window, cut to the row. A peak that no window names keeps its
/// row.
void FillPeakNames(char* names, std::span<const Results> results, std::span<const PeakWin> windows);

} // namespace korlit
