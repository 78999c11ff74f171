// `korlit compare`: in what two data sets differ.
#pragma once

#include "host/compare/comparison.h"

#include <string>

namespace korlit::host {

struct CompareOptions {
    std::string a;
    std::string b;
    Comparison comparison;
    int channel = 0; ///< of runs; 0 for all
    bool json = false;
    bool quiet = false;
};

/// Prints the differences. Answers 0 if there are none, 1 if there are, 2 where a file can't be
/// read. Throws WrongUse where the files can't be compared with these options.
int compareFiles(const CompareOptions& options);

} // namespace korlit::host
