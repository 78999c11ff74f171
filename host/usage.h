// What the commands' options have alike, and the words for wrong use.
#pragma once

#include "host/recognise.h"

#include <CLI/CLI.hpp>

#include <string>

namespace korlit::host {

/// Thrown for arguments that can't be followed together.
class WrongUse : public CLI::ParseError {
  public:
    explicit WrongUse(const std::string& words)
        : ParseError{"WrongUse", words, CLI::ExitCodes::ValidationError} {}
};

/// Adds --from, by which a user says what kind the files are.
void addKindOption(CLI::App& command, FileKind& kind);

/// What is wrong with the arguments: names the command or option that isn't known and suggests the
/// nearest one, or has the parser's own words.
std::string usageText(const CLI::App& app, const CLI::ParseError& error);

} // namespace korlit::host
