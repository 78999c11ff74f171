// The rules by which conversions change values, all of them.
#pragma once

#include "host/proof/expectation.h"

namespace korlit::host::changes {

// A rule a line.
// clang-format off

// From ANDI to a pair.
inline constexpr ChangeRule textCut{"text-cut", "texts are cut to the bytes of their fields", true};
inline constexpr ChangeRule characterCut{"character-cut", "a text is cut in the middle of a character", true};
inline constexpr ChangeRule peakNameCut{"peak-name-cut", "peak names are cut to 14 bytes", true};
inline constexpr ChangeRule peakTableLeftOut{"peak-table-left-out", "a table of more than 570 peaks is left out", true};
inline constexpr ChangeRule peaksLeftOut{"peaks-left-out", "peaks beyond peak_number are left out", true};
inline constexpr ChangeRule samplesCut{"samples-cut", "samples beyond point_number are left out", true};
inline constexpr ChangeRule intervalCut{"interval-cut", "an interval is cut to whole milliseconds in 16 bits", true};
inline constexpr ChangeRule stampChosen{"stamp-chosen", "of two stamps dataset_date_time_stamp is kept", true};
inline constexpr ChangeRule secondsLeftOut{"seconds-left-out", "a stamp's seconds are left out", true};
inline constexpr ChangeRule zoneLeftOut{"zone-left-out", "a stamp's zone offset is left out", true};
inline constexpr ChangeRule positionCut{"position-cut", "of a position two numbers are kept", true};
inline constexpr ChangeRule limitLeftOut{"limit-left-out", "a detector's limits become the extremes of the samples", true};
inline constexpr ChangeRule areaBySixtyOnReturn{"area-by-sixty-on-return", "areas are kept, and each way back to ANDI divides them by 60", true};
inline constexpr ChangeRule noPlace{"no-place", "a pair has no place for it", true};
inline constexpr ChangeRule resampledSignal{"resampled", "samples are brought to equal distances", true};
inline constexpr ChangeRule spectraLeftOut{"spectra-left-out", "of mass spectra the total ion chromatogram alone is kept", true};
inline constexpr ChangeRule numberAsText{"number-as-text", "a number is written as text", false};
inline constexpr ChangeRule intervalInMs{"interval-in-ms", "an interval is written in milliseconds", false};
inline constexpr ChangeRule timeInMinutes{"time-in-minutes", "times are written in minutes, in single precision", false};
inline constexpr ChangeRule dateToMinute{"date-to-minute", "a stamp is written as a date and a time to the minute", false};
inline constexpr ChangeRule dateOfResults{"date-of-results", "the results get the date of the run", false};
inline constexpr ChangeRule positionSplit{"position-split", "a position is written as rack and vial", false};
inline constexpr ChangeRule extremesOfSamples{"extremes-of-samples", "the extremes are those of the samples", false};
inline constexpr ChangeRule countOfSamples{"count-of-samples", "the count of points is that of the samples", false};
inline constexpr ChangeRule impliedByPair{"implied-by-pair", "what is so in every pair, or is empty, is left out", false};
inline constexpr ChangeRule setByPair{"set-by-pair", "the pair's own bookkeeping", false};

// From a pair or a run to ANDI.
inline constexpr ChangeRule areaBySixty{"area-by-sixty", "areas are divided by 60 on the way to ANDI", true};
inline constexpr ChangeRule factorInValues{"factor-in-values", "samples and limits are multiplied by the scale factor", false};
inline constexpr ChangeRule intervalInMinutes{"interval-in-minutes", "an interval is written in minutes, in single precision", false};
inline constexpr ChangeRule runTimeOfSamples{"run-time-of-samples", "the time of the run is that of its samples, in seconds", false};
inline constexpr ChangeRule dateAsStamp{"date-as-stamp", "a date is written as a stamp with the zone of the machine, and in words", false};
inline constexpr ChangeRule dateUnreadable{"date-unreadable", "a date that no calendar has gives no stamp", true};
inline constexpr ChangeRule separationInWords{"separation-in-words", "a kind of separation is written in words", false};
inline constexpr ChangeRule separationUnknown{"separation-unknown", "a kind of separation that is none becomes <unknown>", true};
inline constexpr ChangeRule positionJoined{"position-joined", "rack and vial are written as one position", false};
inline constexpr ChangeRule sourceNamed{"source-named", "an ANDI file names the file that it was made of", false};
inline constexpr ChangeRule setByTemplate{"set-by-template", "what the template asks for", false};
inline constexpr ChangeRule shortRecord{"short-record", "what a short record of a peak lacks is 0", false};
inline constexpr ChangeRule saidTwice{"said-twice", "what follows from another value is left out", false};
inline constexpr ChangeRule secondValueLeftOut{"second-value-left-out", "of two values that differ the second is left out", true};
inline constexpr ChangeRule layoutLeftOut{"layout-left-out", "what a file says of its own layout is left out", false};
inline constexpr ChangeRule noPlaceInAndi{"no-place-in-andi", "an ANDI file has no place for it", true};

// From a run alone.
inline constexpr ChangeRule areaAsPercent{"area-as-percent", "the area stands in the place of the area percent, too", false};
inline constexpr ChangeRule noWindow{"no-window", "a peak that lies in no window has no name", false};
inline constexpr ChangeRule windowNameCut{"window-name-cut", "names of windows are cut to 31 bytes", true};
inline constexpr ChangeRule baselineOfSamples{"baseline-of-samples", "the values of a baseline are samples of the signal", false};
inline constexpr ChangeRule codeOfEvents{"code-of-events", "detection codes are worked out from the events", false};

// clang-format on

} // namespace korlit::host::changes
