// `korlit check`: what in ANDI files departs from the template, and what a conversion leaves out.
#pragma once

#include "host/files/inputs.h"

namespace korlit::host {

struct CheckOptions {
    Inputs inputs; ///< of folders, ANDI files alone
    bool isJson = false;
    bool isJsonLines = false; ///< as JSON, with the reason alone of a file that can't be read
    bool isQuiet = false;
};

/// Prints the findings of each file. Answers 0 if all conform, 1 if one doesn't or can't be read.
int checkFiles(const CheckOptions& options);

} // namespace korlit::host
