// The commands of `korlit` with all their options.
#pragma once

namespace korlit::host {

/// Runs the command that the arguments name and answers its exit status: 0 for done, 1 for failed
/// or different, 2 for wrong use, which is told on standard error. Throws where a command can't do
/// its work.
int runCommand(int argumentCount, char** arguments);

} // namespace korlit::host
