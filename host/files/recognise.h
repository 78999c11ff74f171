// Which of the formats a file is in, by its name and its first bytes.
#pragma once

#include "host/files/formats.h"

#include <string>

namespace korlit::host {

/// The kind of a regular file. A file with the extension of a format is of that one or unknown; a
/// signature goes before it. Anything else is unknown, and so is what can't be read.
FileKind recognise(const std::string& file);
FileKind recognise(const std::string& file, const FileStart& start);

/// The same for a file that was named to be converted: what isn't recognised is of the kind whose
/// extension it has, else ANDI, so that a conversion has words for it.
FileKind kindToConvert(const std::string& file, const FileStart& start);

/// The same for a file that was found in a folder: what isn't recognised is of the kind whose usual
/// extension it has, else unknown.
FileKind kindFound(const std::string& file, const FileStart& start);

/// Whether a name ends as those of data do by custom. Some data are known by that alone, and so is
/// what is cut.
bool hasNameOfData(const std::string& file);

} // namespace korlit::host
