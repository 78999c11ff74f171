// Whether the values of a file are what the template means by them.
#pragma once

#include "host/check/rules.h"

namespace korlit::host {

std::span<const Rule> valueRules();

} // namespace korlit::host
