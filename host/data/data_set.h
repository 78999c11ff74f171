// A chromatogram as the commands show, plot and compare it, whichever kind of file it comes from. A
// pair and a run are looked at as the library hands them over to ANDI, so that a pair equals the
// ANDI file made from it.
#pragma once

#include "host/files/andi_image.h"
#include "host/files/recognise.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace korlit::host {

/// Times are minutes; areas, heights and amounts are as an ANDI file has them. What a file has no
/// column for is nothing.
struct Peak {
    std::string name;
    std::optional<double> retentionTime;
    std::optional<double> startTime;
    std::optional<double> endTime;
    std::optional<double> area;
    std::optional<double> areaPercent;
    std::optional<double> height;
    std::optional<double> amount;
    std::optional<double> baselineStartTime;
    std::optional<double> baselineStartValue;
    std::optional<double> baselineStopTime;
    std::optional<double> baselineStopValue;
    std::string startCode; ///< of the peak detection: "B", "V" or none
    std::string stopCode;
};

/// One signal with its peaks and what its file says of it.
struct DataSet {
    std::string source;
    FileKind kind = FileKind::Unknown;
    int channel = 0; ///< of a run, from 1; 0 where the file holds one signal
    /// The global attributes that are texts, by their ANDI names, in file order.
    std::vector<std::pair<std::string, std::string>> texts;
    std::string samplePosition; ///< in the autosampler, as in "1-2"
    std::string detectorUnit;
    NumberView signal; ///< in detectorUnit
    /// The file that the signal lies in.
    std::shared_ptr<const AndiImage> image;
    double samplingInterval = 0; ///< minutes; 0 where the file has none
    double delayTime = 0;        ///< minutes from injection to the first sample
    bool isUniform = true;       ///< false where the file says that samples aren't equidistant
    bool isTotalIon = false;     ///< the chromatogram of a mass spectrometer, added up from spectra
    /// When each sample was taken, ascending; empty where the file doesn't say.
    NumberView times;
    double minutesPerTime = 0;
    std::vector<Peak> peaks;

    /// The value of a global attribute, the empty text where there is none.
    std::string text(const std::string& name) const;
    /// Minutes from injection to a sample.
    double timeOf(std::size_t sample) const {
        return times.empty() ? delayTime + static_cast<double>(sample) * samplingInterval
                             : times[sample] * minutesPerTime;
    }
    /// Minutes from the first sample to the end of the last one's interval, or to the last one if
    /// each has its own time.
    double runTime() const {
        return times.empty() ? static_cast<double>(signal.size()) * samplingInterval
                             : timeOf(times.size() - 1) - timeOf(0);
    }
};

/// What a mass spectrometer's file has for a signal: an intensity for each scan.
constexpr const char* totalIntensity = "total_intensity";

/// A member of Peak that holds a number, with its name in the ANDI file.
struct PeakNumber {
    const char* name;
    std::optional<double> Peak::*value;
    bool isTime;
};
/// The numbers of a peak, in the order of the ANDI file.
const std::vector<PeakNumber>& peakNumbers();

/// All signals of a file: one of an ANDI file or a pair, of a run one for each channel. The kind is
/// recognised if it is Unknown. "-" is what comes through standard input. Throws a runtime_error
/// with the words for the user where the file can't be read.
std::vector<DataSet> loadDataSets(const std::string& file, FileKind kind = FileKind::Unknown);

/// Leaves of a run the channel of that number, if it isn't 0. Files of one signal stay as they are.
/// Throws WrongUse where the run has no such channel.
void pickChannel(std::vector<DataSet>& sets, int channel);

} // namespace korlit::host
