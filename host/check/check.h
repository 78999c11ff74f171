// `korlit check`: what in ANDI files departs from the template, and what a conversion leaves out.
#pragma once

#include <string>
#include <vector>

namespace korlit::host {

struct CheckOptions {
    std::vector<std::string> files;
    bool isJson = false;
    bool isQuiet = false;
};

/// Prints the findings of each file. Answers 0 if all conform, 1 if one doesn't or can't be read.
int checkFiles(const CheckOptions& options);

} // namespace korlit::host
