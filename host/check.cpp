#include "host/commands.h"
#include "host/conversion_losses.h"
#include "host/recognise.h"
#include "host/template_check.h"
#include "host/text_output.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace korlit::host {

namespace {

constexpr const char* footer = R"(Each finding is a line "FILE: SEVERITY: words":
  error    a reader fails on it or reads something wrong
  warning  departs from the template and is read nevertheless
  loss     conforms, but a conversion to a Merivolta pair leaves it out
A file conforms if it has no error and no warning. The exit status is 0 if all files conform, 1 if
one doesn't or can't be read, 2 for wrong use.

Examples:
  korlit check run.cdf
  korlit check -q incoming/*.cdf || echo "not all of them conform"
  korlit check --json run.cdf | jq -r '.findings[].rule')";

struct CheckOptions {
    std::vector<std::string> files;
    bool isJson = false;
    bool isQuiet = false;
};

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
    if (kind != FileKind::Andi && kind != FileKind::Unknown) {
        return {
            {.severity = Severity::Error,
             .rule = "other-kind",
             .message = std::string{"only ANDI files are checked, and this one is of the kind "} +
                        kindName(kind)}};
    }
    AndiImage image;
    if (const std::string reason = load(image, file); !reason.empty()) {
        return {{.severity = Severity::Error, .rule = "unreadable", .message = reason}};
    }
    Findings findings = departuresFromTemplate(image);
    std::ranges::move(lossesInPair(image), std::back_inserter(findings));
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
    return joined(parts);
}

void printText(const CheckedFile& file, bool isQuiet) {
    const std::string name = printable(file.name);
    for (const auto& [severity, rule, message] : file.findings) {
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
    const Json object{
        {"file", utf8Of(file.name)}, {"findings", findings}, {"conforms", conforms(file.findings)}};
    std::cout << lineOf(object);
}

int run(const CheckOptions& options) {
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

} // namespace

void addCheckCommand(CLI::App& app, int& status) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App& command = *app.add_subcommand(
        "check", "Tells what in ANDI files departs from the chromatography template, and what a "
                 "conversion leaves out");
    command.add_option("FILE", options->files, "ANDI files")->required();
    command.add_flag("--json", options->isJson, "Print one JSON object a line for each file");
    command.add_flag("-q,--quiet", options->isQuiet,
                     "Print errors and warnings only, and nothing of files that conform");
    command.footer(footer);
    command.callback([options, &status] { status = run(*options); });
}

} // namespace korlit::host
