// `korlit verify`: whether files are as they were when a manifest recorded them.
#pragma once

#include <string>
#include <vector>

namespace korlit::host {

struct VerifyOptions {
    std::vector<std::string> manifests;
    std::string root; ///< stands for the folder in which each batch ran; empty for that folder
    bool isJson = false;
    bool isQuiet = false; ///< only what isn't as it was
};

/// Tells of each file that was converted and of each that came of it. Answers 0 if all are as they
/// were, 1 if one isn't or can't be checked, if there is none or if a line holds no record, and 2
/// where a manifest can't be read.
int verifyFiles(const VerifyOptions& options);

} // namespace korlit::host
