// Writes what is installed beside the command into a folder: its manual page and completions.
#include "host/share/completions.h"
#include "host/share/manual.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

namespace {

void write(const std::filesystem::path& file, const std::string& text) {
    std::ofstream out;
    out.exceptions(std::ios::failbit | std::ios::badbit);
    out.open(file);
    out << text << std::flush;
}

} // namespace

int main(int argumentCount, char** arguments) try {
    using namespace korlit::host;
    if (argumentCount != 3) {
        std::cerr << "write_share FOLDER DATE\n";
        return 2;
    }
    const std::filesystem::path folder{arguments[1]};
    std::filesystem::create_directories(folder);
    const CommandInfo korlit = commandTree();
    write(folder / "korlit.1", manualPage(korlit, arguments[2]));
    write(folder / "korlit.bash", bashCompletion(korlit));
    write(folder / "_korlit", zshCompletion(korlit));
    write(folder / "korlit.fish", fishCompletion(korlit));
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
