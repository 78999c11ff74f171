// The commands with their options as plain data, for what tells of them: manual, completions.
#pragma once

#include <string>
#include <vector>

namespace korlit::host {

/// An option, or an argument that has no name but the one of its value.
struct OptionInfo {
    std::vector<std::string> names;   ///< as they are typed: -r, --recursive
    std::string value;                ///< what stands for its value: FILE; empty for none
    std::vector<std::string> choices; ///< the values that it takes, if these are few
    std::string description;          ///< on one line
    bool isRequired = false;
    bool isList = false; ///< several arguments, or choices with commas between them
};

struct CommandInfo {
    std::string name;
    std::string description;
    std::string details; ///< what stands below the options in the help
    std::vector<OptionInfo> arguments;
    std::vector<OptionInfo> options;
    std::vector<CommandInfo> commands;
};

/// The whole of `korlit`, as its parser knows it.
CommandInfo commandTree();

} // namespace korlit::host
