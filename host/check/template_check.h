// What in an ANDI file departs from the AIA chromatography template (ASTM E1947 and E1948).
#pragma once

#include "host/check/findings.h"
#include "host/check/subject.h"

namespace korlit::host {

/// Errors and warnings. The rules take the template as files in use keep to it: of what it demands
/// only the core is missed, and whatever a file has beyond it is no finding.
Findings departuresFromTemplate(const Subject& subject);

} // namespace korlit::host
