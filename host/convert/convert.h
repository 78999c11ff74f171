// `korlit convert`: files and folders through the library, in worker processes.
#pragma once

#include "host/convert/report.h"
#include "host/convert/work_list.h"
#include "host/system/processes.h"

#include <cstddef>

namespace korlit::host {

struct ConvertOptions {
    WorkOptions work;
    ReportOptions report;
    std::size_t workerCount = processorCount();
    bool isForced = false;
    bool isSkipping = false;
};

/// Converts and reports. Answers 0 if all were converted, 1 if some failed, 130 for an interrupt.
/// Throws WrongUse for what can't be listed.
int convertAll(const ConvertOptions& options);

} // namespace korlit::host
