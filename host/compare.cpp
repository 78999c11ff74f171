#include "host/commands.h"
#include "host/differences.h"
#include "host/usage.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <memory>
#include <optional>
#include <utility>

namespace korlit::host {

namespace {

constexpr int areDifferent = 1;
constexpr int cannotCompare = 2;

struct CompareOptions {
    std::string a;
    std::string b;
    Comparison comparison;
    int channel = 0; ///< of runs; 0 for all
    bool json = false;
    bool quiet = false;
};

using DataSets = std::vector<DataSet>;

/// Nothing, and words about it, where a file can't be read.
std::optional<DataSets> load(const std::string& file) {
    try {
        return loadDataSets(file);
    } catch (const std::exception& error) {
        printFailure(file, error.what());
        return std::nullopt;
    }
}

/// Leaves of a run the channel that was asked for.
void pickChannel(DataSets& sets, int channel) {
    if (channel == 0 || sets.front().kind != FileKind::Dunvale) {
        return;
    }
    const auto index = static_cast<std::size_t>(channel - 1);
    if (index >= sets.size()) {
        throw WrongUse{sets.front().source + " has no channel " + std::to_string(channel) +
                       ", only " + std::to_string(sets.size())};
    }
    std::swap(sets.front(), sets[index]);
    sets.resize(1);
}

/// Throws where a run of several channels meets a file that can hold one signal only.
void checkCounts(const DataSets& a, const DataSets& b) {
    for (const auto& [run, other] : {std::pair{&a, &b}, std::pair{&b, &a}}) {
        if (run->size() > 1 && other->front().kind != FileKind::Dunvale) {
            throw WrongUse{run->front().source + " has " + std::to_string(run->size()) +
                           " channels: pick one with --channel N"};
        }
    }
}

std::vector<Difference> differencesOfAll(const DataSets& a, const DataSets& b,
                                         const Comparison& comparison) {
    std::vector<Difference> all;
    if (a.size() != b.size()) {
        all.push_back(channelDifference(a.size(), b.size()));
    }
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        for (Difference& each : differencesOf(a[i], b[i], comparison)) {
            if (std::max(a.size(), b.size()) > 1) {
                each.words.insert(0, "channel " + std::to_string(i + 1) + ": ");
                each.json["channel"] = i + 1;
            }
            all.push_back(std::move(each));
        }
    }
    return all;
}

void printLines(const std::vector<Difference>& differences) {
    for (const Difference& difference : differences) {
        std::cout << difference.words << '\n';
    }
    const std::string count = std::to_string(differences.size());
    std::cout << (differences.empty()       ? "equal"
                  : differences.size() == 1 ? "1 difference"
                                            : count + " differences")
              << '\n';
}

void printJson(const CompareOptions& options, const std::vector<Difference>& differences) {
    Json json{{"a", utf8Of(options.a)},
              {"b", utf8Of(options.b)},
              {"equal", differences.empty()},
              {"differences", Json::array()}};
    for (const Difference& difference : differences) {
        json["differences"].push_back(difference.json);
    }
    std::cout << lineOf(json);
}

int compareFiles(const CompareOptions& options) {
    std::optional<DataSets> a = load(options.a);
    std::optional<DataSets> b = load(options.b);
    if (!a || !b) {
        return cannotCompare;
    }
    pickChannel(*a, options.channel);
    pickChannel(*b, options.channel);
    checkCounts(*a, *b);
    const std::vector<Difference> differences = differencesOfAll(*a, *b, options.comparison);
    if (options.json) {
        printJson(options, differences);
    } else if (!options.quiet) {
        printLines(differences);
    }
    finishOutput();
    return differences.empty() ? 0 : areDifferent;
}

constexpr auto footer = R"(Compared are:
  signal  points, sampling interval, delay time and the samples, counted from 0
  peaks   the first with the first and so on: names, detection codes, numbers;
          a column that a side lacks is told once
  texts   the ANDI attributes that are texts, detector unit, autosampler position

A pair and a run are compared as what they become in an ANDI file. All times are
compared in minutes, whatever unit a file has them in, and count as equal within
one part in a million, since seconds and minutes are rounded each in its own way.
All other numbers, areas too, are compared exactly and as they stand. With
--tolerance T two numbers count as equal if they differ by no more than T times
the larger of the two; 0.001 is a thousandth. Not a number equals not a number.

Not compared are source_file_reference (where a file came from) and
retention_unit (the unit of times).

Runs are compared channel by channel. A run of several channels is compared with
another kind of file by --channel.

The exit status is 0 for equal, 1 for different, 2 for what can't be compared.

Examples:
  korlit compare run.sli run.cdf
  korlit compare --tolerance 0.001 --only peaks old.cdf new.cdf
  korlit compare --channel 2 run.dat run2.cdf
  korlit compare -q a.cdf b.cdf && echo same)";

void addComparisonOptions(CLI::App& command, CompareOptions& options) {
    const auto isFinite = [](const std::string& text) -> std::string {
        double number = 0;
        return CLI::detail::lexical_cast(text, number) && std::isfinite(number) && number >= 0
                   ? ""
                   : text + " is no tolerance";
    };
    command.add_option("--tolerance", options.comparison.tolerance, "Relative; see below")
        ->check(CLI::Validator{isFinite, ""})
        ->type_name("T");
    command
        .add_option("--only", options.comparison.parts,
                    "Compare these parts only: signal,peaks,texts")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::IsMember{{"signal", "peaks", "texts"}})
        ->type_name("PARTS");
    command.add_option("--channel", options.channel, "Of a run, compare this channel, from 1")
        ->check(CLI::PositiveNumber)
        ->type_name("N");
}

} // namespace

void addCompareCommand(CLI::App& app, int& status) {
    const auto options = std::make_shared<CompareOptions>();
    CLI::App* const command = app.add_subcommand("compare", "Tells in what two data sets differ");
    command->add_option("A", options->a, "ANDI file, slice file of a pair, or run")->required();
    command->add_option("B", options->b, "The other")->required();
    addComparisonOptions(*command, *options);
    CLI::Option* const json = command->add_flag("--json", options->json, "Print one JSON object");
    command->add_flag("-q,--quiet", options->quiet, "Print nothing, answer by the exit status")
        ->excludes(json);
    command->footer(footer);
    command->callback([options, &status] { status = compareFiles(*options); });
}

} // namespace korlit::host
