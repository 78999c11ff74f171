// A judgement for people and for programs.
#pragma once

#include "host/compare/judgement.h"
#include "host/text/json.h"

#include <cstddef>
#include <string>

namespace korlit::host {

/// The verdict, with the channel where there are several.
std::string headlineOf(const Judgement& judgement);

/// A line for each change that is unexpected, but for those beyond `most`, which are counted.
std::string unexpectedLines(const Verdict& verdict, const std::string& indent, std::size_t most);

/// A line for each rule with how many changes it explains, or for each of these.
std::string expectedLines(const Verdict& verdict, const std::string& indent, bool isVerbose);

Json jsonOf(const std::string& a, const std::string& b, const Judgement& judgement);

} // namespace korlit::host
