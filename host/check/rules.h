// Rules by which a file is looked at.
#pragma once

#include "host/check/findings.h"
#include "host/check/subject.h"

#include <span>
#include <string>
#include <utility>

namespace korlit::host {

/// Takes the findings of one rule.
struct RuleNotes {
    Findings& findings;
    const char* rule;

    void add(Severity severity, std::string message) const {
        findings.push_back({.severity = severity, .rule = rule, .message = std::move(message)});
    }
};

struct Rule {
    const char* id;
    void (*look)(const Subject& subject, const RuleNotes& notes);
};

/// Adds what the rules find, in their order.
void applyRules(std::span<const Rule> rules, const Subject& subject, Findings& findings);

} // namespace korlit::host
