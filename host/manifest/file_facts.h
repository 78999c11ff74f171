// What a record tells of the data that were converted.
#pragma once

#include "host/data/data_set.h"
#include "host/manifest/record.h"

#include <vector>

namespace korlit::host {

/// Fills in sample, operator, date and channels from all signals of a file.
void describe(FileRecord& record, const std::vector<DataSet>& sets);

} // namespace korlit::host
