// `korlit convert`: files and folders through the library, in worker processes.
#pragma once

#include "host/convert/planning.h"
#include "host/convert/recording.h"
#include "host/convert/report.h"
#include "host/system/processes.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace korlit::host {

struct ConvertOptions {
    WorkOptions work;
    ReportOptions report;
    RecordingOptions recording;
    std::size_t workerCount = processorCount();
    Existing existing = Existing::Refuse;
    bool isDryRun = false;     ///< only tells what would be done
    bool isCutAllowed = false; ///< converts runs that lack samples or channels
    bool isVerified = false;   ///< holds each output against its source
    /// To which interval samples that aren't equidistant are brought; 0 for the usual one.
    std::optional<std::int16_t> resampleMs{};
    bool isSynced = false; ///< has the disk hold what was written
};

/// Converts and reports. Answers 0 if all were converted, 1 if some failed, 130 for an interrupt.
/// Throws WrongUse where the options and files leave open what is to be done, before anything is
/// written.
int convertAll(const ConvertOptions& options);

} // namespace korlit::host
