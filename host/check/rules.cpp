#include "host/check/rules.h"

namespace korlit::host {

void applyRules(std::span<const Rule> rules, const Subject& subject, Findings& findings) {
    for (const auto& [id, look] : rules) {
        look(subject, {.findings = findings, .rule = id});
    }
}

} // namespace korlit::host
