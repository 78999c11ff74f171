#include "host/info/info_page.h"

#include "host/data/facts.h"
#include "host/text/numbers.h"
#include "host/text/stamps.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <utility>

namespace korlit::host {

namespace {

using Cells = std::vector<std::string>;

std::string padded(const std::string& text, std::size_t width, bool isRight) {
    const std::string blanks(width - std::min(width, characterCount(text)), ' ');
    return isRight ? blanks + text : text + blanks;
}

/// Prints rows of equally many cells; `isRight` says which columns go to the right.
void printTable(const std::vector<Cells>& rows, const std::vector<bool>& isRight) {
    std::vector<std::size_t> widths(isRight.size());
    for (const Cells& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], characterCount(row[i]));
        }
    }
    for (const Cells& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += padded(row[i], widths[i], isRight[i]) + "  ";
        }
        line.erase(line.find_last_not_of(' ') + 1);
        std::cout << line << '\n';
    }
}

std::string textOrDash(const std::string& text) {
    return text.empty() ? "-" : printable(text);
}

std::string injectionText(const std::string& text) {
    const auto stamp = stampIn(text);
    return stamp ? stamp->date() + ' ' + stamp->time + ' ' + stamp->offset : textOrDash(text);
}

std::string kindText(const std::vector<DataSet>& sets) {
    const std::string kind = formatOf(sets.front().kind).title;
    return sets.size() > 1 ? kind + ", " + std::to_string(sets.size()) + " channels" : kind;
}

std::string durationText(double minutes) {
    constexpr double msPerMinute = 60000;
    struct Unit {
        const char* name;
        double ms;
        double firstMs; ///< the shortest interval that is told in it
    };
    static constexpr std::array<Unit, 3> units{
        {{.name = " min", .ms = msPerMinute, .firstMs = msPerMinute},
         {.name = " s", .ms = 1000, .firstMs = 1000},
         {.name = " ms", .ms = 1, .firstMs = 0}}};
    const double ms = std::stod(roundedText(minutes * msPerMinute));
    const auto* const unit =
        std::ranges::find_if(units, [&](const Unit& each) { return ms >= each.firstMs; });
    return roundedText(ms / unit->ms) + unit->name;
}

std::string intervalText(const DataSet& set) {
    if (set.times.size() > 1) {
        return "not uniform, " + durationText(medianInterval(set)) + " in the middle";
    }
    if (!set.isUniform) {
        return "not uniform";
    }
    return hasTimes(set) ? durationText(set.samplingInterval) : "-";
}

std::string sampleText(const DataSet& set, std::size_t sample) {
    const std::string unit = set.detectorUnit.empty() ? "" : ' ' + printable(set.detectorUnit);
    return roundedText(set.signal[sample]) + unit + " at " +
           (hasTimes(set) ? threeDecimals(set.timeOf(sample)) + " min"
                          : "sample " + std::to_string(sample));
}

void printFact(const std::string& label, const std::string& value) {
    constexpr std::size_t labelWidth = 22;
    std::cout << padded(label, labelWidth, false) << value << '\n';
}

void printFileFacts(const std::vector<DataSet>& sets) {
    const DataSet& set = sets.front();
    printFact("File", printable(set.source));
    printFact("Kind", kindText(sets));
    printFact("Sample", textOrDash(set.text("sample_name")));
    printFact("Operator", textOrDash(set.text("operator_name")));
    printFact("Injected", injectionText(set.text("injection_date_time_stamp")));
    printFact("Separation", textOrDash(set.text("separation_experiment_type")));
    printFact("Autosampler position", textOrDash(set.samplePosition));
}

void printChannelFacts(const DataSet& set) {
    const auto extremes = extremesOf(set.signal);
    if (set.isTotalIon) {
        printFact("Signal", "total ion chromatogram of a mass spectrometer");
    }
    printFact("Detector unit", textOrDash(set.detectorUnit));
    printFact("Points", std::to_string(set.signal.size()));
    printFact("Sampling interval", intervalText(set));
    const double start = hasTimes(set) && !set.signal.empty() ? set.timeOf(0) : set.delayTime;
    if (start != 0) {
        printFact("First sample at", roundedText(start) + " min");
    }
    printFact("Run time", hasTimes(set) ? roundedText(set.runTime()) + " min" : "-");
    printFact("Minimum", extremes ? sampleText(set, extremes->minimum) : "-");
    printFact("Maximum", extremes ? sampleText(set, extremes->maximum) : "-");
    printFact("Peaks", std::to_string(set.peaks.size()));
}

struct ShownColumn {
    const char* title;
    std::optional<double> Peak::*value;
    std::string (*text)(double);
};
constexpr std::array<ShownColumn, 6> shownColumns{{
    {.title = "Time/min", .value = &Peak::retentionTime, .text = threeDecimals},
    {.title = "Start/min", .value = &Peak::startTime, .text = threeDecimals},
    {.title = "End/min", .value = &Peak::endTime, .text = threeDecimals},
    {.title = "Area", .value = &Peak::area, .text = roundedText},
    {.title = "Height", .value = &Peak::height, .text = roundedText},
    {.title = "Area %", .value = &Peak::areaPercent, .text = threeDecimals},
}};

void printPeakTable(const DataSet& set) {
    Cells titles{"No.", "Name"};
    for (const ShownColumn& column : shownColumns) {
        titles.emplace_back(column.title);
    }
    std::vector<Cells> rows{titles};
    for (const Peak& peak : set.peaks) {
        Cells row{std::to_string(rows.size()), textOrDash(peak.name)};
        for (const auto& [title, value, text] : shownColumns) {
            row.push_back(peak.*value ? text(*(peak.*value)) : "-");
        }
        rows.push_back(std::move(row));
    }
    std::vector<bool> isRight(titles.size(), true);
    isRight[1] = false;
    std::cout << '\n';
    printTable(rows, isRight);
}

} // namespace

void printPage(const std::vector<DataSet>& sets) {
    printFileFacts(sets);
    for (const DataSet& set : sets) {
        if (sets.size() > 1) {
            std::cout << "\nChannel " << set.channel << '\n';
        }
        printChannelFacts(set);
        if (!set.peaks.empty()) {
            printPeakTable(set);
        }
    }
}

} // namespace korlit::host
