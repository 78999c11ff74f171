// Whether a file has what the template says, in the types and dimensions that it says.
#pragma once

#include "host/check/rules.h"

namespace korlit::host {

std::span<const Rule> structureRules();

} // namespace korlit::host
