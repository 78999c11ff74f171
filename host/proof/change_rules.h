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

// clang-format on

} // namespace korlit::host::changes
