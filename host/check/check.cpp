#include "host/check/check.h"

#include "host/check/phrases.h"
#include "host/check/template_check.h"
#include "host/files/diagnosis.h"
#include "host/files/recognise.h"
#include "host/proof/losses.h"
#include "host/text/json.h"
#include "host/text/output.h"
#include "host/text/utf8.h"
#include "host/text/words.h"

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

namespace korlit::host {

namespace {

struct CheckedFile {
    const std::string& name;
    Findings findings;
};

std::size_t count(const Findings& findings, Severity severity) {
    return static_cast<std::size_t>(std::ranges::count(findings, severity, &Finding::severity));
}

bool conforms(const Findings& findings) {
    return count(findings, Severity::Loss) == findings.size();
}

Findings check(const std::string& file) {
    const FileKind kind = recognise(file);
    if (!formatOf(kind).isAndi) {
        return {
            {.severity = Severity::Error,
             .rule = "other-kind",
             .message = std::string{"only ANDI files are checked, and this one is of the kind "} +
                        formatOf(kind).name}};
    }
    AndiImage image;
    if (const std::string reason = load(image, file); !reason.empty()) {
        return {{.severity = Severity::Error,
                 .rule = "unreadable",
                 .message = withDiagnosis(reason, file, kind)}};
    }
    const Subject subject = subjectOf(image);
    Findings findings = departuresFromTemplate(subject);
    for (const Loss& loss : lossesOf(expectedOfPair(readingOf(image)))) {
        findings.push_back({.severity = Severity::Loss, .rule = loss.rule, .message = loss.words});
    }
    return findings;
}

std::string summary(const Findings& findings) {
    std::vector<std::string> parts;
    if (conforms(findings)) {
        parts.emplace_back("conforms");
    }
    for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Loss}) {
        const std::size_t number = count(findings, severity);
        if (number > 0 && severity == Severity::Loss) {
            parts.push_back(std::to_string(number) + (number == 1 ? " loss" : " losses"));
        } else if (number > 0) {
            parts.push_back(counted(number, severityName(severity)));
        }
    }
    return joined(parts, ", ");
}

/// Losses of one rule that differ in their last word share a line.
Findings joinedOnLines(const Findings& findings) {
    Findings lines;
    for (const Finding& finding : findings) {
        const std::size_t lastWord = finding.message.rfind(' ') + 1;
        const bool isMore = finding.severity == Severity::Loss && !lines.empty() &&
                            lines.back().rule == finding.rule &&
                            lines.back().message.starts_with(finding.message.substr(0, lastWord));
        if (isMore) {
            lines.back().message += ", " + finding.message.substr(lastWord);
        } else {
            lines.push_back(finding);
        }
    }
    return lines;
}

void printText(const CheckedFile& file, bool isQuiet) {
    const std::string name = printable(file.name);
    for (const auto& [severity, rule, message] : joinedOnLines(file.findings)) {
        std::cout << name << ": " << severityName(severity) << ": " << printable(message) << '\n';
    }
    if (!isQuiet) {
        std::cout << name << ": " << summary(file.findings) << '\n';
    }
}

void printJson(const CheckedFile& file) {
    Json findings = Json::array();
    for (const auto& [severity, rule, message] : file.findings) {
        findings.push_back(
            {{"severity", severityName(severity)}, {"rule", rule}, {"message", utf8Of(message)}});
    }
    Json object{
        {"file", utf8Of(file.name)}, {"findings", findings}, {"conforms", conforms(file.findings)}};
    addPathBytes(object, "file", file.name);
    std::cout << jsonLine(object);
}

} // namespace

int checkFiles(const CheckOptions& options) {
    bool doAllConform = true;
    for (const std::string& name : options.files) {
        CheckedFile file{.name = name, .findings = check(name)};
        doAllConform = doAllConform && conforms(file.findings);
        if (options.isQuiet) {
            std::erase_if(file.findings,
                          [](const Finding& each) { return each.severity == Severity::Loss; });
            if (file.findings.empty()) {
                continue;
            }
        }
        options.isJson ? printJson(file) : printText(file, options.isQuiet);
    }
    finishOutput();
    return doAllConform ? 0 : 1;
}

} // namespace korlit::host
