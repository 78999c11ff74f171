// How one data set can have come from another, and which of these ways explains the most.
#pragma once

#include "host/compare/comparison.h"
#include "host/proof/verdict.h"

#include <cstdint>
#include <string>
#include <vector>

namespace korlit::host {

/// A file that is compared.
struct Side {
    std::string file;
    FileKind kind = FileKind::Unknown;
    int channel = 0;               ///< of a run, the one to take; 0 for all
    std::vector<Reading> readings; ///< of a run one for each channel
};

enum class Way : std::uint8_t { None, FromAToB, FromBToA };

struct Judgement {
    Verdict verdict;
    Way way = Way::None;     ///< none where the two are compared as they are
    Expectations expected{}; ///< which the verdict's changes are about
    int channel = 0;         ///< of a run, the one that was held against the other file
};

/// Holds one file to what a conversion makes of the other, in each way that leads from one kind to
/// the other, and takes that which leaves the least unexpected. Two of a kind, and a pair and a
/// run, are compared as they are, unless the one is more like what a trip there and back makes of
/// the other. Throws WrongUse where a run lacks the channel, and where several channels meet one
/// signal.
Judgement judge(Side a, Side b, const Comparison& comparison);

} // namespace korlit::host
