// The data of files that a command lists.
#pragma once

#include "host/data/data_set.h"
#include "host/files/listing.h"

#include <vector>

namespace korlit::host {

/// The data sets of a file of the list, one at least; of a run the channel of that number, if it
/// isn't 0. Throws a runtime_error with the words for the user where they can't be had, and
/// WrongUse where the one file of the list lacks the channel.
std::vector<DataSet> loadListed(const Listing& listing, const ListedFile& file, int channel);

} // namespace korlit::host
