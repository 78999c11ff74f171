#include "host/check/check.h"

#include "host/check/phrases.h"
#include "host/check/template_check.h"
#include "host/files/diagnosis.h"
#include "host/files/listing.h"
#include "host/files/recognise.h"
#include "host/files/standard_input.h"
#include "host/proof/losses.h"
#include "host/system/interrupts.h"
#include "host/text/json.h"
#include "host/text/output.h"
#include "host/text/utf8.h"
#include "host/text/words.h"

#include <algorithm>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace korlit::host {

namespace {

struct CheckedFile {
    std::string name;
    Findings findings;
};

constexpr const char* unreadableRule = "unreadable";

Findings unreadable(const std::string& reason) {
    return {{.severity = Severity::Error, .rule = unreadableRule, .message = reason}};
}

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
        return unreadable(withDiagnosis(reason, file, kind));
    }
    const Subject subject = subjectOf(image);
    Findings findings = departuresFromTemplate(subject);
    for (const Loss& loss : lossesOf(expectedOfPair(readingOf(image), Wanted::Losses))) {
        findings.push_back({.severity = Severity::Loss, .rule = loss.rule, .message = loss.words});
    }
    return findings;
}

Findings checkStandardInput() {
    try {
        const StandardInputCopy copy;
        Findings findings = check(copy.path());
        for (Finding& each : findings) {
            each.message = copy.withoutCopy(each.message);
        }
        return findings;
    } catch (const std::runtime_error& error) {
        return unreadable(error.what());
    }
}

CheckedFile checked(const Listing& listing, const ListedFile& file) {
    const std::string path = listing.pathOf(file);
    return {.name = shownName(path),
            .findings = !file.problem.empty()       ? unreadable(file.problem)
                        : path == standardInputWord ? checkStandardInput()
                                                    : check(path)};
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

void print(const CheckedFile& file, const CheckOptions& options) {
    const bool isUnreadable =
        !file.findings.empty() && std::string_view{file.findings.front().rule} == unreadableRule;
    if (options.isJsonLines && isUnreadable) {
        std::cout << failureLine(file.name, file.findings.front().message);
    } else if (options.isJson || options.isJsonLines) {
        printJson(file);
    } else {
        printText(file, options.isQuiet);
    }
}

} // namespace

int checkFiles(const CheckOptions& options) {
    Inputs inputs = options.inputs;
    inputs.from = FileKind::Andi;
    const Listing listing = listFiles(inputs, {.isStandardInputTaken = true});
    tellIfNothingFound(listing);
    bool doAllConform = true;
    watchInterrupts();
    for (const ListedFile& each : listing.files) {
        CheckedFile file = checked(listing, each);
        if (isInterrupted()) {
            return interruptedStatus;
        }
        doAllConform = doAllConform && conforms(file.findings);
        if (options.isQuiet) {
            std::erase_if(file.findings, [](const Finding& finding) {
                return finding.severity == Severity::Loss;
            });
        }
        if (!options.isQuiet || !file.findings.empty()) {
            print(file, options);
        }
        finishOutput();
    }
    return doAllConform ? 0 : 1;
}

} // namespace korlit::host
