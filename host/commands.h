// The commands of `korlit`, one file each. Each function adds its command with all its options to
// the app; run, the command sets the exit status: 0 for done, 1 for failed or different, and it
// throws where it can't do its work, which the app tells and answers with 1.
#pragma once

#include <CLI/CLI.hpp>

namespace korlit::host {

void addConvertCommand(CLI::App& app, int& status);
void addInfoCommand(CLI::App& app, int& status);
void addPlotCommand(CLI::App& app, int& status);
void addCheckCommand(CLI::App& app, int& status);
void addCompareCommand(CLI::App& app, int& status);

} // namespace korlit::host
