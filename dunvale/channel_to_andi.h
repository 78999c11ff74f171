// Makes an ANDI file from one channel of a Dunvale run.
#pragma once

#include "andi/andi_file.h"
#include "datetime/injection_time.h"
#include "datetime/stamp.h"
#include "dunvale/run_file.h"

#include <array>
#include <span>

namespace korlit {

/// What the files of all channels of a run say of it.
struct RunOrigin {
    const char* runFile; ///< path of the run file
    std::array<char, stampTextSize> stamp;
    InjectionTimeText injectionTime;
};

/// Builds the ANDI file of a channel, counted from 0, in `file`, which comes in empty. The texts
/// and areas of the channel's records are changed in place. Answers false, with the reason in
/// `message`, if the file lacks what it can't do without; what was built of it stays for the caller
/// to release.
bool MapChannelToAndi(DunvaleRun& run, int channel, const RunOrigin& origin, AndiFile* file,
                      std::span<char> message);

} // namespace korlit
