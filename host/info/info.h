// `korlit info`: what files hold.
#pragma once

#include "host/files/inputs.h"

namespace korlit::host {

struct InfoOptions {
    Inputs inputs;
    bool json = false;
    bool peaks = false;
    bool signal = false;
    bool isJsonLines = false; ///< as JSON, with an object for each file that can't be read, too
    int channel = 0;          ///< of runs; 0 for all
};

/// Prints what each file holds. Answers 0, or 1 where a file can't be read.
int showFiles(const InfoOptions& options);

} // namespace korlit::host
