// What would go wrong between the jobs of one batch.
#pragma once

#include "host/convert/planning.h"
#include "host/files/side_files.h"

namespace korlit::host {

/// Gives a problem to the jobs that can't be done beside others: a target that is a source of the
/// batch, by whatever name or link, is a problem of both, and one that another job makes too is a
/// problem of the later.
void noteConflicts(WorkList& work);

/// Throws WrongUse where a file that is written beside is a source of the batch or a target, in
/// any part of the work.
void refuseClashes(const WorkList& work, const SideFiles& sides);

} // namespace korlit::host
