// What the parser of each command is made of. Seen within this room alone, which is the only one
// that knows the command line library.
#pragma once

#include "host/command/command_tree.h"
#include "host/files/inputs.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace korlit::host {

/// Adds a command, which leaves its exit status in `status` when it has run. `arguments` are those
/// that the command line has, for whoever keeps them.
void addConvertCommand(CLI::App& app, const std::vector<std::string>& arguments, int& status);
void addInfoCommand(CLI::App& app, int& status);
void addPlotCommand(CLI::App& app, int& status);
void addCheckCommand(CLI::App& app, int& status);
void addCompareCommand(CLI::App& app, int& status);
void addVerifyCommand(CLI::App& app, int& status);
void addReportCommand(CLI::App& app, int& status);

/// The files and folders that a command takes, told by `description`, and the options about them.
void addInputOptions(CLI::App& command, Inputs& inputs, const std::string& description);
/// Throws where nothing was named at all.
void requireInputs(const Inputs& inputs);

/// --from, by which a user says what kind the files are.
void addKindOption(CLI::App& command, FileKind& kind);

/// A command, or all of them, as plain data.
CommandInfo infoOf(const CLI::App& app);

/// An option that takes one of a few words.
struct Choice {
    std::string option; ///< --paper
    std::string value;  ///< what stands for the word: PAPER
    std::vector<std::string> names;
    std::string description;
};

/// Adds it; `take` gets the index of the word that was chosen.
CLI::Option* addChoice(CLI::App& command, const Choice& choice,
                       const std::function<void(std::size_t)>& take);

} // namespace korlit::host
