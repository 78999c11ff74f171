// What a file holds, as a page for people.
#pragma once

#include "host/data/data_set.h"

#include <vector>

namespace korlit::host {

/// Prints the facts of a file and the peaks of each channel.
void printPage(const std::vector<DataSet>& sets);

} // namespace korlit::host
