#include "host/info/info.h"

#include "host/data/listed_data.h"
#include "host/files/standard_input.h"
#include "host/info/info_data.h"
#include "host/info/info_page.h"
#include "host/system/interrupts.h"
#include "host/text/json.h"
#include "host/text/output.h"
#include "host/text/wrong_use.h"

#include <iostream>

namespace korlit::host {

namespace {

bool isForPeople(const InfoOptions& options) {
    return !options.json && !options.isJsonLines && !options.peaks && !options.signal;
}

void show(const std::vector<DataSet>& sets, const InfoOptions& options) {
    const auto print = options.json || options.isJsonLines ? printJson
                       : options.peaks                     ? printPeaks
                       : options.signal                    ? printSignal
                                                           : printPage;
    print(sets);
}

void showFailure(const std::string& name, const std::string& reason, const InfoOptions& options) {
    if (options.isJsonLines) {
        std::cout << failureLine(name, reason);
    } else {
        printFailure(name, reason);
    }
}

} // namespace

int showFiles(const InfoOptions& options) {
    const Listing listing = listFiles(options.inputs, {.isStandardInputTaken = true});
    if ((options.peaks || options.signal) && listing.files.size() > 1) {
        throw WrongUse{"--peaks and --signal take one file only"};
    }
    tellIfNothingFound(listing);
    int status = 0;
    bool isFirst = true;
    watchInterrupts();
    for (const ListedFile& file : listing.files) {
        try {
            const std::vector<DataSet> sets = loadListed(listing, file, options.channel);
            std::cout << (isForPeople(options) && !isFirst ? "\n" : "");
            show(sets, options);
            isFirst = false;
        } catch (const WrongUse&) {
            throw;
        } catch (const std::exception& error) {
            // What an interrupt has cut short is no failure.
            if (!isInterrupted()) {
                showFailure(shownName(listing.pathOf(file)), error.what(), options);
            }
            status = 1;
        }
        finishOutput();
        if (isInterrupted()) {
            return interruptedStatus;
        }
    }
    return status;
}

} // namespace korlit::host
