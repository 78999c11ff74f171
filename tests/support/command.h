// Runs the built command as a shell does.
#pragma once

#include "tests/support/temp_folder.h"

#include <sys/wait.h>

#include <cstdlib>
#include <ostream>
#include <string>

namespace korlit::test {

struct CommandResult {
    int status = 0;
    std::string output;
    std::string errors;

    bool operator==(const CommandResult&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const CommandResult& result) {
    return out << "status " << result.status << "\n" << result.output << "---\n" << result.errors;
}

/// Runs `korlit` with `arguments`, words of the shell, in `folder`. `environment` is put ahead.
inline CommandResult runCommand(const TempFolder& folder, const std::string& arguments,
                                const std::string& environment = "") {
    const std::string output = folder.path(".output");
    const std::string errors = folder.path(".errors");
    const std::string line = "cd " + folder.path("") + " && " + environment +
                             " LSAN_OPTIONS=suppressions=" FOREIGN_LEAKS
                             ":print_suppressions=0 " BUILT_COMMAND " " +
                             arguments + " >" + output + " 2>" + errors;
    const int status = std::system(line.c_str());
    return {.status = WEXITSTATUS(status), .output = readFile(output), .errors = readFile(errors)};
}

} // namespace korlit::test
