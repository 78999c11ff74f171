// What a panel of a chart shows of a data set.
#pragma once

#include "host/data/data_set.h"
#include "host/plot/chart.h"

namespace korlit::host {

/// Samples along the axis that all panels share: minutes, or numbers of samples where a file
/// doesn't say when they were taken.
class TimeScale {
  public:
    TimeScale(const DataSet& dataSet, bool isInMinutes);

    double timeOf(std::size_t sample) const;
    /// Between two samples a share of the way; before the first sample and behind the last as if
    /// samples went on.
    double sampleAt(double time) const;
    /// To the end of the last sample's interval. One sample alone is in the middle.
    Range times() const;

  private:
    const DataSet& set;
    bool isOwn;          ///< each sample has a time of its own
    double start = 0;    ///< of the others
    double interval = 1; ///< of the others
};

/// Whether a file says when its samples were taken.
bool hasMinutes(const DataSet& set);

/// The panel of a data set within the times and the width of a chart. Peaks have their place in
/// minutes only.
ChartPanel panelOf(const DataSet& set, bool isInMinutes, const Chart& chart, bool isWithPeaks);

} // namespace korlit::host
