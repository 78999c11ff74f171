#include "host/command/options.h"
#include "host/system/standard_streams.h"
#include "host/text/output.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <string_view>
#include <vector>

namespace {

/// The arguments, in which `help COMMAND` stands for `COMMAND --help`.
std::vector<char*> argumentsOf(int count, char** arguments) {
    static char help[] = "--help";
    std::vector<char*> all{arguments, arguments + count};
    const auto isHelp = [](const char* word) { return std::string_view{word} == "help"; };
    const auto behind = std::find_if_not(all.begin() + std::min(count, 1), all.end(), isHelp);
    if (behind - all.begin() > 1) {
        all.erase(all.begin() + 1, behind);
        all.push_back(help);
    }
    return all;
}

} // namespace

int main(int argumentCount, char** arguments) try {
    korlit::host::openStandardStreams();
    std::vector<char*> all = argumentsOf(argumentCount, arguments);
    return korlit::host::runCommand(static_cast<int>(all.size()), all.data());
} catch (const korlit::host::ReaderGone&) {
    return 1;
} catch (const std::exception& error) {
    std::cerr << "korlit: " << korlit::host::printable(error.what()) << '\n';
    return 1;
}
