#include "host/commands.h"
#include "host/info_data.h"
#include "host/info_page.h"
#include "host/text_output.h"
#include "host/usage.h"

#include <iostream>
#include <memory>

namespace korlit::host {

namespace {

struct InfoOptions {
    std::vector<std::string> files;
    FileKind from = FileKind::Unknown;
    bool json = false;
    bool peaks = false;
    bool signal = false;
};

void show(const std::vector<DataSet>& sets, const InfoOptions& options) {
    const auto print = options.json     ? printJson
                       : options.peaks  ? printPeaks
                       : options.signal ? printSignal
                                        : printPage;
    print(sets);
}

int showFiles(const InfoOptions& options) {
    if ((options.peaks || options.signal) && options.files.size() > 1) {
        throw WrongUse{"--peaks and --signal take one file only"};
    }
    const bool isForPeople = !options.json && !options.peaks && !options.signal;
    int status = 0;
    bool isFirst = true;
    for (const std::string& file : options.files) {
        try {
            const std::vector<DataSet> sets = loadDataSets(file, options.from);
            std::cout << (isForPeople && !isFirst ? "\n" : "");
            show(sets, options);
            isFirst = false;
        } catch (const std::exception& error) {
            printFailure(file, error.what());
            status = 1;
        }
    }
    finishOutput();
    return status;
}

constexpr auto footer =
    R"(--json prints one object per file and line, with the keys file, kind (andi,
merivolta, dunvale), sample, operator, injection_date (ISO 8601), separation_type,
autosampler_position and channels. Each channel has detector_unit, points, uniform,
sampling_interval_s, delay_time_min, run_time_min, minimum and maximum in the
detector unit with minimum_time_min and maximum_time_min, and peaks, whose keys
are the columns of --peaks. A number that a file doesn't have, or that is none,
is null.

--peaks prints a row for each peak and --signal one for each sample, with the
columns time_min and value in the detector unit; a run has the column channel
ahead of them. Times are minutes from injection, areas and heights stand as in an
ANDI file of the data. Numbers have a decimal point and all digits that a float
has. Times of samples that aren't uniform are left empty.

Examples:
  korlit info run.cdf
  korlit info --json *.sli | jq .sample
  korlit info --peaks run.cdf > peaks.csv
  korlit info --signal run.dat > signal.csv
  korlit info --from dunvale run.bin)";

} // namespace

void addInfoCommand(CLI::App& app, int& status) {
    const auto options = std::make_shared<InfoOptions>();
    CLI::App* const command =
        app.add_subcommand("info", "Shows what files hold: facts, peaks, signal");
    command->add_option("files", options->files, "ANDI files, slice files of pairs, runs")
        ->required()
        ->type_name("FILE");
    addKindOption(*command, options->from);
    CLI::Option* const json = command->add_flag("--json", options->json, "Print JSON");
    CLI::Option* const peaks = command->add_flag("--peaks", options->peaks, "Print peaks as CSV");
    command->add_flag("--signal", options->signal, "Print the signal as CSV")
        ->excludes(json)
        ->excludes(peaks);
    json->excludes(peaks);
    command->footer(footer);
    command->callback([options, &status] { status = showFiles(*options); });
}

} // namespace korlit::host
