// What a file holds, for programs. The keys and columns are told by the command's help.
#pragma once

#include "host/data/data_set.h"

#include <vector>

namespace korlit::host {

/// Prints all but the signal as an object on one line.
void printJson(const std::vector<DataSet>& sets);

/// Print tables of comma-separated values; the rows of a run start with their channel.
void printPeaks(const std::vector<DataSet>& sets);
void printSignal(const std::vector<DataSet>& sets);

} // namespace korlit::host
