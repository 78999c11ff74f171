// What can be seen in a file that no conversion takes, in words for whoever has to do with the
// files and not with their formats.
#pragma once

#include "host/files/plan.h"

#include <string>
#include <system_error>

namespace korlit::host {

/// Of a file that is taken for the kind: "the file is empty", "cut: 900 of 21,508 bytes are there".
/// The empty text where nothing stands out.
std::string diagnosisOf(const std::string& file, FileKind kind);

/// Why a file can't be read: the reason that a reader has, and what can be seen.
std::string withDiagnosis(const std::string& reason, const std::string& file, FileKind kind);

/// The same of a plan that couldn't be carried out: what the system said, or else what can be seen
/// in the files that it starts from.
std::string withDiagnosis(const std::string& reason, const Plan& plan, std::error_code error);

} // namespace korlit::host
