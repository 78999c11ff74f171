#include "host/convert/report.h"

#include "host/system/terminal.h"
#include "host/text/json.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <sstream>

namespace korlit::host {

namespace {

constexpr const char* red = "\x1b[31m";
constexpr const char* yellow = "\x1b[33m";
constexpr const char* plain = "\x1b[0m";
constexpr const char* eraseLine = "\r\x1b[K";

bool isColoured() {
    const char* noColor = std::getenv("NO_COLOR");
    return isOutputTerminal() && (noColor == nullptr || *noColor == '\0');
}

std::string inColour(const char* colour, const std::string& text) {
    return isColoured() ? colour + text + plain : text;
}

void printLine(const Job& job, const Outcome& outcome, bool isVerbose) {
    std::ostringstream line;
    line << printable(job.plan.source) << ": " << printable(outcome.message);
    if (isVerbose) {
        line << " (" << std::fixed << std::setprecision(3) << outcome.seconds << " s)";
    }
    std::cout << (outcome.status == JobStatus::Failed ? inColour(red, line.str()) : line.str())
              << '\n';
    for (const std::string& warning : outcome.warnings) {
        std::cout << inColour(yellow, "  warning: " + printable(warning)) << '\n';
    }
}

void printJson(const Job& job, const Outcome& outcome) {
    Json outputs = Json::array();
    if (outcome.status != JobStatus::Failed) {
        for (const StagedFile& target : job.plan.targets) {
            outputs.push_back(utf8Of(target.path.string()));
        }
    }
    Json warnings = Json::array();
    for (const std::string& warning : outcome.warnings) {
        warnings.push_back(utf8Of(warning));
    }
    const Json line{{"source", utf8Of(job.plan.source)},
                    {"kind", formatOf(job.plan.kind).name},
                    {"outputs", outputs},
                    {"result", statusName(outcome.status)},
                    {"message", utf8Of(outcome.message)},
                    {"warnings", warnings},
                    {"seconds", outcome.seconds},
                    {"points", outcome.points},
                    {"peaks", outcome.peaks}};
    std::cout << jsonLine(line);
}

std::string minutesAndSeconds(double seconds) {
    const auto whole = std::lround(seconds);
    std::ostringstream text;
    text << whole / 60 << ':' << std::setw(2) << std::setfill('0') << whole % 60;
    return text.str();
}

std::string progressLine(std::size_t done, std::size_t total, std::size_t failed, double seconds) {
    constexpr std::size_t widestBar = 40;
    const double rate = seconds > 0 ? static_cast<double>(done) / seconds : 0;
    std::ostringstream figures;
    figures << ' ' << done << '/' << total << ' ' << 100 * done / total << "%  " << std::fixed
            << std::setprecision(rate < 10 ? 1 : 0) << rate << "/s";
    if (done > 0) {
        figures << "  " << minutesAndSeconds(static_cast<double>(total - done) / rate) << " left";
    }
    if (failed > 0) {
        figures << "  " << failed << " failed";
    }
    const std::size_t room = terminalWidth() - std::min(terminalWidth(), figures.str().size() + 3);
    const std::size_t width = std::min(widestBar, room);
    const std::size_t filled = width * done / total;
    return '[' + std::string(filled, '#') + std::string(width - filled, '-') + ']' + figures.str();
}

} // namespace

Report::Report(const ReportOptions& reportOptions, std::size_t jobCount)
    : options{reportOptions}, total{jobCount}, isProgressShown{isErrorTerminal() &&
                                                               !reportOptions.isQuiet &&
                                                               jobCount > 1} {}

void Report::add(const Job& job, const Outcome& outcome) {
    ++counts[static_cast<std::size_t>(outcome.status)];
    clearProgress();
    if (options.isJson) {
        printJson(job, outcome);
    } else if (!options.isQuiet || outcome.status == JobStatus::Failed) {
        printLine(job, outcome, options.isVerbose);
    }
    std::cout.flush();
}

void Report::tick() {
    if (isProgressShown) {
        const std::size_t done = counts[0] + counts[1] + counts[2];
        std::cerr << eraseLine
                  << progressLine(done, total, count(JobStatus::Failed), secondsSoFar())
                  << std::flush;
    }
}

void Report::end(bool isInterrupted) {
    clearProgress();
    if (options.isQuiet || (total < 2 && !isInterrupted)) {
        return;
    }
    const std::size_t done = counts[0] + counts[1] + counts[2];
    std::cerr << (isInterrupted ? "Interrupted: " : "") << count(JobStatus::Converted)
              << " converted, " << count(JobStatus::Failed) << " failed, "
              << count(JobStatus::Skipped) << " skipped";
    if (done < total) {
        std::cerr << ", " << total - done << " not begun";
    }
    std::cerr << " in " << std::fixed << std::setprecision(1) << secondsSoFar() << " s\n";
}

double Report::secondsSoFar() const {
    const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start;
    return duration.count();
}

void Report::clearProgress() const {
    if (isProgressShown) {
        std::cerr << eraseLine << std::flush;
    }
}

} // namespace korlit::host
