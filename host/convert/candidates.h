// The files that a batch may convert.
#pragma once

#include "host/convert/work_options.h"
#include "host/files/listing.h"

namespace korlit::host {

/// Lists the files. What folders hold of the kind asked for already is a candidate only if
/// something is wrong with it at a second look, too, else passed over; what isn't asked for is
/// ignored there, and a problem where it was named.
///
/// Throws WrongUse where `filesFrom` can't be read.
Listing candidatesOf(const WorkOptions& options);

} // namespace korlit::host
