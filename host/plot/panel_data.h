// What a panel of a chart shows of a data set.
#pragma once

#include "host/data/data_set.h"
#include "host/plot/chart.h"

namespace korlit::host {

/// Samples along the axis that all panels share: minutes, or numbers of samples where a file
/// doesn't say how far samples are from each other.
struct TimeScale {
    double start = 0;
    double interval = 1;

    double timeOf(double sample) const { return start + sample * interval; }
    double sampleAt(double time) const { return (time - start) / interval; }
    /// To the end of the last sample's interval. One sample alone is in the middle.
    Range timesOf(const DataSet& set) const {
        return {.from = timeOf(set.signal.size() == 1 ? -1 : 0),
                .to = timeOf(static_cast<double>(set.signal.size()))};
    }
};

/// Whether a file says how far its samples are from each other.
bool hasMinutes(const DataSet& set);

/// In minutes only where these are asked for and known.
TimeScale scaleOf(const DataSet& set, bool isInMinutes);

/// The panel of a data set within the times and the width of a chart. Peaks have their place in
/// minutes only.
ChartPanel panelOf(const DataSet& set, bool isInMinutes, const Chart& chart, bool isWithPeaks);

} // namespace korlit::host
