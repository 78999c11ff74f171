// An ANDI file whose samples were brought to equal distances, which the library can convert.
#pragma once

#include "host/data/resampling.h"

#include <cstdint>
#include <optional>
#include <string>

namespace korlit::host {

/// What was made of a file.
struct ResampledFile {
    std::int16_t intervalMs = 0;
    std::size_t oldCount = 0;
    std::size_t newCount = 0;
    double deviation = 0; ///< at most, in `unit`
    std::string unit;
    bool isTotalIon = false;

    /// "resampled to 200 ms: 6,000 samples became 5,998, at most 0.12 mAU from the signal".
    std::string words() const;
};

/// Writes `target`: the file with its samples at equal distances of `intervalMs`, or of the usual
/// interval if that is 0, and all else as it was; of a mass spectrometer's file the total ion
/// chromatogram with the texts alone. Nothing is written of a file that doesn't need it or can't be
/// read. Throws a runtime_error with words for the user where `target` can't be written or the
/// interval doesn't do.
std::optional<ResampledFile> writeResampled(const std::string& andiFile, std::int16_t intervalMs,
                                            const std::string& target);

/// What resampling can do for a file that can't be converted as it is, or why it can't help it
/// either: words that name the option. The empty text where samples are equidistant.
std::string resamplingAdvice(const std::string& andiFile);

} // namespace korlit::host
