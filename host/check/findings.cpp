#include "host/check/findings.h"

#include <array>
#include <cstddef>

namespace korlit::host {

namespace {

constexpr std::array<const char*, 3> severityNames{"error", "warning", "loss"};

} // namespace

const char* severityName(Severity severity) {
    return severityNames[static_cast<std::size_t>(severity)];
}

} // namespace korlit::host
