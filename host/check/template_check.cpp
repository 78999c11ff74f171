#include "host/check/template_check.h"

#include "host/check/structure_rules.h"
#include "host/check/value_rules.h"

namespace korlit::host {

Findings departuresFromTemplate(const Subject& subject) {
    Findings findings;
    applyRules(structureRules(), subject, findings);
    applyRules(valueRules(), subject, findings);
    return findings;
}

} // namespace korlit::host
