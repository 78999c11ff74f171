// `korlit compare`: in what two data sets differ, and what of it a conversion is bound to change.
#pragma once

#include "host/compare/judgement.h"

#include <string>

namespace korlit::host {

struct CompareOptions {
    std::string a;
    std::string b;
    Comparison comparison;
    int channel = 0;          ///< of runs; 0 for all
    bool isRecursive = false; ///< of folders, with what lies below
    bool isStrict = false;    ///< what is expected counts too
    bool isVerbose = false;   ///< each expected difference has its line
    bool json = false;
    bool quiet = false;
};

/// Whether that is what a user asks for.
bool isWell(const Judgement& judgement, const CompareOptions& options);

/// Prints the verdict and the differences. Answers 0 if all are expected, 1 if some aren't, 2 where
/// a file can't be read. Throws WrongUse where the files can't be compared with these options.
int compareFiles(const CompareOptions& options);

} // namespace korlit::host
