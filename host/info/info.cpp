#include "host/info/info.h"

#include "host/info/info_data.h"
#include "host/info/info_page.h"
#include "host/text/output.h"
#include "host/text/wrong_use.h"

#include <iostream>

namespace korlit::host {

namespace {

void show(const std::vector<DataSet>& sets, const InfoOptions& options) {
    const auto print = options.json     ? printJson
                       : options.peaks  ? printPeaks
                       : options.signal ? printSignal
                                        : printPage;
    print(sets);
}

} // namespace

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

} // namespace korlit::host
