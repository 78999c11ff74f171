// What is wrong with files that nobody converts, without reading their signals.
#pragma once

#include "host/files/formats.h"

#include <string>

namespace korlit::host {

/// What stands out in a file of that kind, or in the other one of its pair; empty if nothing does.
/// `start` is the file's.
std::string flawAtFirstSight(const std::string& file, FileKind kind, const FileStart& start);

} // namespace korlit::host
