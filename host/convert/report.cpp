#include "host/convert/report.h"

#include "host/system/terminal.h"
#include "host/text/json.h"
#include "host/text/utf8.h"
#include "host/text/words.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <numeric>
#include <sstream>
#include <string_view>
#include <vector>

namespace korlit::host {

namespace {

constexpr const char* red = "\x1b[31m";
constexpr const char* yellow = "\x1b[33m";
constexpr const char* plain = "\x1b[0m";
constexpr const char* eraseLine = "\r\x1b[K";

/// A terminal that knows no more than characters and lines.
bool isDumb() {
    const char* terminal = std::getenv("TERM");
    return terminal != nullptr && std::string_view{terminal} == "dumb";
}

bool isColoured() {
    static const bool isWanted = [] {
        const char* noColor = std::getenv("NO_COLOR");
        return isOutputTerminal() && !isDumb() && (noColor == nullptr || *noColor == '\0');
    }();
    return isWanted;
}

std::string inColour(const char* colour, const std::string& text) {
    return isColoured() ? colour + text + plain : text;
}

void printNote(const std::string& words) {
    std::cout << inColour(yellow, "  " + printable(words)) << '\n';
}

/// "3 losses: text-cut, no-place (-v lists them)".
std::string summaryOf(const std::vector<Loss>& losses) {
    std::vector<std::string> rules;
    for (const Loss& loss : losses) {
        if (std::ranges::find(rules, loss.rule) == rules.end()) {
            rules.push_back(loss.rule);
        }
    }
    return std::to_string(losses.size()) + (losses.size() == 1 ? " loss: " : " losses: ") +
           joined(rules, ", ") + " (-v lists them)";
}

void printLosses(const std::vector<Loss>& losses, bool isVerbose) {
    if (!isVerbose && !losses.empty()) {
        printNote(summaryOf(losses));
    }
    for (const Loss& loss : losses) {
        if (isVerbose) {
            printNote("loss: " + loss.words);
        }
    }
}

bool isVerified(const Outcome& outcome) {
    return outcome.verdict && outcome.verdict->isSame;
}

void printVerdict(const RecordedVerdict& verdict) {
    std::cout << "  " << printable(verdict.words) << '\n';
    for (const std::string& words : verdict.unexpected) {
        std::cout << "  unexpected: " << printable(words) << '\n';
    }
    for (const auto& [rule, words, count] : verdict.expected) {
        std::cout << "  expected: " << rule << ": " << count << ": " << words << '\n';
    }
}

void addVerdict(Json& line, const RecordedVerdict& verdict) {
    Json expected = Json::array();
    for (const auto& [rule, words, count] : verdict.expected) {
        expected.push_back({{"rule", rule}, {"words", words}, {"count", count}});
    }
    Json unexpected = Json::array();
    for (const std::string& words : verdict.unexpected) {
        unexpected.push_back(utf8Of(words));
    }
    line["verdict"] = verdict.isSame ? "same data" : "other data";
    line["words"] = utf8Of(verdict.words);
    line["expected_changes"] = expected;
    line["unexpected_changes"] = unexpected;
}

void addResampling(Json& line, const ResampledFile& resampling) {
    line["resampled"] = {
        {"interval_ms", resampling.intervalMs}, {"samples_before", resampling.oldCount},
        {"samples", resampling.newCount},       {"deviation", numberJson(resampling.deviation)},
        {"unit", utf8Of(resampling.unit)},      {"total_ion", resampling.isTotalIon}};
}

void printLine(const Job& job, const Outcome& outcome, bool isVerbose) {
    std::ostringstream line;
    line << printable(job.plan.source) << ": " << printable(outcome.message)
         << (outcome.resampling ? " (" + printable(outcome.resampling->words()) + ')' : "")
         << (isVerified(outcome) ? " (verified)" : "");
    if (isVerbose) {
        line << " (" << std::fixed << std::setprecision(3) << outcome.seconds << " s)";
    }
    std::cout << (outcome.status == JobStatus::Failed ? inColour(red, line.str()) : line.str())
              << '\n';
    for (const std::string& warning : outcome.warnings) {
        printNote("warning: " + warning);
    }
    printLosses(outcome.losses, isVerbose);
    if (isVerbose && outcome.verdict) {
        printVerdict(*outcome.verdict);
    }
}

/// As outputs_bytes, where the text of one alone couldn't be opened; null for the others.
void addOutputBytes(Json& line, const std::vector<StagedFile>& targets) {
    Json bytes = Json::array();
    bool isAny = false;
    for (const StagedFile& target : targets) {
        Json one = Json::object();
        addPathBytes(one, "path", target.path.string());
        isAny = isAny || !one.empty();
        bytes.push_back(one.empty() ? Json{} : one["path_bytes"]);
    }
    if (isAny) {
        line["outputs_bytes"] = bytes;
    }
}

void printJson(const Job& job, const Outcome& outcome) {
    const bool isWithout = outcome.status == JobStatus::Failed;
    const auto written = isWithout ? std::vector<StagedFile>{} : writtenTargets(job.plan, outcome);
    Json outputs = Json::array();
    for (const StagedFile& target : written) {
        outputs.push_back(utf8Of(target.path.string()));
    }
    Json warnings = Json::array();
    for (const std::string& warning : outcome.warnings) {
        warnings.push_back(utf8Of(warning));
    }
    Json losses = Json::array();
    for (const auto& [rule, words] : outcome.losses) {
        losses.push_back({{"rule", rule}, {"message", utf8Of(words)}});
    }
    Json line{{"source", utf8Of(job.plan.source)},
              {"kind", formatOf(job.plan.kind).name},
              {"outputs", outputs},
              {"result", statusName(outcome.status)},
              {"message", utf8Of(outcome.message)},
              {"warnings", warnings},
              {"losses", losses},
              {"seconds", outcome.seconds},
              {"points", outcome.points},
              {"peaks", outcome.peaks}};
    if (outcome.resampling) {
        addResampling(line, *outcome.resampling);
    }
    if (outcome.verdict) {
        addVerdict(line, *outcome.verdict);
    }
    addPathBytes(line, "source", job.plan.source);
    addOutputBytes(line, written);
    std::cout << jsonLine(line);
}

std::string minutesAndSeconds(double seconds) {
    const auto whole = std::lround(seconds);
    std::ostringstream text;
    text << whole / 60 << ':' << std::setw(2) << std::setfill('0') << whole % 60;
    return text.str();
}

/// As many of the figures as have room, the first ones first, and a bar where there is room for
/// one.
std::string progressLine(std::size_t done, const Found& found, std::size_t failed, double seconds) {
    constexpr std::size_t widestBar = 40;
    constexpr std::size_t shortestBar = 8;
    const std::size_t total = found.jobCount;
    const double rate = seconds > 0 ? static_cast<double>(done) / seconds : 0;
    std::ostringstream speed;
    speed << std::fixed << std::setprecision(rate < 10 ? 1 : 0) << rate << "/s";
    std::vector<std::string> figures{std::to_string(done) + '/' + std::to_string(total) + ' ' +
                                     std::to_string(100 * done / total) + '%'};
    if (failed > 0) {
        figures.push_back(std::to_string(failed) + " failed");
    }
    if (done > 0) {
        figures.push_back(minutesAndSeconds(static_cast<double>(total - done) / rate) + " left");
    }
    figures.push_back(speed.str());
    // A line that fills the last column wraps on some terminals.
    const std::size_t room = terminalWidth() - std::min<std::size_t>(terminalWidth(), 1);
    std::string line;
    for (const std::string& figure : figures) {
        line += line.size() + figure.size() + 2 <= room ? (line.empty() ? "" : "  ") + figure : "";
    }
    const std::size_t barRoom = room - std::min(room, line.size() + 3);
    if (barRoom < shortestBar) {
        return line;
    }
    const std::size_t width = std::min(widestBar, barRoom);
    const std::size_t filled = width * done / total;
    return '[' + std::string(filled, '#') + std::string(width - filled, '-') + "] " + line;
}

} // namespace

Report::Report(const ReportOptions& reportOptions, const Found& whatIsFound)
    : options{reportOptions}, found{whatIsFound}, isProgressShown{isErrorTerminal() && !isDumb() &&
                                                                  !reportOptions.isQuiet &&
                                                                  whatIsFound.jobCount > 1} {}

void Report::add(const Job& job, const Outcome& outcome) {
    ++counts[static_cast<std::size_t>(outcome.status)];
    clearProgress();
    if (options.isJson) {
        printJson(job, outcome);
    } else if (!options.isQuiet || outcome.status == JobStatus::Failed) {
        printLine(job, outcome, options.isVerbose);
    }
}

void Report::tick() {
    std::cout.flush();
    if (isProgressShown) {
        std::cerr << eraseLine
                  << progressLine(doneCount(), found, count(JobStatus::Failed), secondsSoFar())
                  << std::flush;
    }
}

void Report::end(bool isInterrupted) {
    clearProgress();
    const bool isOneFile = found.jobCount == 1 && found.ignoredCount + found.reachedCount == 0;
    if (options.isQuiet || (isOneFile && !isInterrupted)) {
        return;
    }
    std::ostringstream sums;
    sums << (isInterrupted ? "Interrupted: " : "");
    if (count(JobStatus::Planned) > 0) {
        sums << count(JobStatus::Planned) << " to convert, ";
    }
    sums << count(JobStatus::Converted) << " converted, " << count(JobStatus::Failed) << " failed, "
         << count(JobStatus::Skipped) + found.reachedCount << " skipped";
    if (found.reachedCount > 0) {
        sums << " (" << found.reachedCount << " of the kind asked for already)";
    }
    sums << ", " << found.ignoredCount << " ignored";
    if (doneCount() < found.jobCount) {
        sums << ", " << found.jobCount - doneCount() << " not begun";
    }
    std::cerr << sums.str() << " in " << std::fixed << std::setprecision(1) << secondsSoFar()
              << " s\n";
}

std::size_t Report::doneCount() const {
    return std::accumulate(counts.begin(), counts.end(), std::size_t{0});
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
