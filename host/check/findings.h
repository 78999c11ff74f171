// What a look into an ANDI file finds.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace korlit::host {

enum class Severity : std::uint8_t {
    Error,   ///< a reader fails on it or reads something wrong
    Warning, ///< departs from the template, and is read nevertheless
    Loss,    ///< conforms, but a conversion leaves it out
};

/// "error", "warning", "loss".
const char* severityName(Severity severity);

struct Finding {
    Severity severity;
    std::string rule; ///< the stable name of what was looked for
    std::string message;
};

using Findings = std::vector<Finding>;

} // namespace korlit::host
