#include "host/info/info.h"

#include "host/info/info_data.h"
#include "host/info/info_page.h"
#include "host/text/json.h"
#include "host/text/output.h"
#include "host/text/wrong_use.h"

#include <iostream>

namespace korlit::host {

namespace {

void show(const std::vector<DataSet>& sets, const InfoOptions& options) {
    const auto print = options.json || options.isJsonLines ? printJson
                       : options.peaks                     ? printPeaks
                       : options.signal                    ? printSignal
                                                           : printPage;
    print(sets);
}

} // namespace

int showFiles(const InfoOptions& options) {
    if ((options.peaks || options.signal) && options.files.size() > 1) {
        throw WrongUse{"--peaks and --signal take one file only"};
    }
    const bool isForPeople =
        !options.json && !options.isJsonLines && !options.peaks && !options.signal;
    int status = 0;
    bool isFirst = true;
    for (const std::string& file : options.files) {
        try {
            std::vector<DataSet> sets = loadDataSets(file, options.from);
            pickChannel(sets, options.channel);
            std::cout << (isForPeople && !isFirst ? "\n" : "");
            show(sets, options);
            isFirst = false;
        } catch (const WrongUse&) {
            throw;
        } catch (const std::exception& error) {
            if (options.isJsonLines) {
                std::cout << failureLine(file, error.what());
            } else {
                printFailure(file, error.what());
            }
            status = 1;
        }
    }
    finishOutput();
    return status;
}

} // namespace korlit::host
