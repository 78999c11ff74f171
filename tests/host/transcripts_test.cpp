// The command as a shell runs it, held against the transcripts that stand in
// tests/data/transcripts/.
//
// "== title" begins a transcript in a folder of its own. "+ andi NAME" or "+ run NAME" makes a
// small file, of which the "+ " lines behind change a block (andi_text.h and run_text.h have the
// words).
// "$ " is a line for the shell, with what functions.sh defines. What it prints stands below, "! "
// ahead of each line of standard error, and its status at the end if it isn't 0.
#include "tests/support/cases.h"
#include "tests/support/temp_folder.h"

#include <sys/wait.h>

#include <memory>
#include <regex>

namespace korlit {
namespace {

using namespace test;

/// The bytes of a text in which \xE9 is one byte.
std::string unescaped(std::string text) {
    for (std::smatch found; std::regex_search(text, found, std::regex{R"(\\x([0-9A-F]{2}))"});) {
        const auto byte = static_cast<char>(std::stoi(found[1], nullptr, 16));
        text = found.prefix().str() + byte + found.suffix().str();
    }
    return text;
}

class Transcripts : public testing::TestWithParam<const char*> {
  protected:
    /// Takes the lines of a file, which "+ andi NAME" or "+ run NAME" begins, and writes it.
    void takeFile(std::istringstream& in) {
        std::string kind;
        std::string name;
        in >> kind >> name;
        if (kind != "andi" && kind != "run") {
            std::string rest;
            std::getline(in >> std::ws, rest);
            file.words[kind] = name + (rest.empty() ? "" : " " + rest);
            name = fileName;
            kind = isAndi ? "andi" : "run";
        } else {
            file = {};
        }
        fileName = name;
        isAndi = kind == "andi";
        Case made = file;
        for (auto& [key, text] : made.words) {
            text = unescaped(text);
        }
        folder->write(fileName, isAndi ? andiFileOf(made) : runFileOf(made));
    }

    /// What a line of the shell prints, "! " in front of each line of standard error, and its
    /// status if it isn't 0.
    std::string shell(const std::string& line) const {
        folder->write(".line", ". " LISTINGS "transcripts/functions.sh\ncd " + folder->path("") +
                                   "\n" + line + "\n");
        const std::string run = environment + "sh " + folder->path(".line") + " >" +
                                folder->path(".output") + " 2>" + folder->path(".errors");
        const int status = WEXITSTATUS(std::system(run.c_str()));
        std::string text = readFile(folder->path(".output"));
        text += text.empty() || text.ends_with('\n') ? "" : "\n";
        std::istringstream errors{readFile(folder->path(".errors"))};
        for (std::string error; std::getline(errors, error);) {
            // How long it took is never the same.
            text += "! " + std::regex_replace(error, std::regex{R"( in [0-9.]+ s$)"}, "") + "\n";
        }
        return text + (status == 0 ? "" : "[" + std::to_string(status) + "]\n");
    }

    const std::string environment =
        "PATH=$(dirname " BUILT_COMMAND "):$PATH LIBRARY=" BUILT_LIBRARY " ODD_SYSTEM=" ODD_SYSTEM
        " ODD_LIBRARY=" ODD_LIBRARY " LC_ALL=C.UTF-8 TZ=UTC DATA=" LISTINGS " SAMPLES=" SAMPLES
        " TEST_DATA=" TEST_DATA " FOREIGN=" FOREIGN_ANDI_FILE " SHARED=" SHARED_FILES
        " LSAN_OPTIONS=suppressions=" FOREIGN_LEAKS ":print_suppressions=0 ";
    std::unique_ptr<TempFolder> folder;
    Case file;
    std::string fileName;
    bool isAndi = false;
};

TEST_P(Transcripts, GoAsTheyAreWritten) {
    const std::string name = std::string{"transcripts/"} + GetParam() + ".txt";
    std::ifstream in{LISTINGS + name};
    std::string actual;
    bool isOutput = false;
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with("== ")) {
            folder = std::make_unique<TempFolder>();
            isOutput = false;
        }
        isOutput = isOutput && !line.starts_with("# ");
        if (line.starts_with("+ ")) {
            isOutput = false;
            std::istringstream words{line.substr(2)};
            takeFile(words);
        }
        actual += isOutput && !line.starts_with("$ ") ? "" : line + "\n";
        if (line.starts_with("$ ")) {
            isOutput = true;
            actual += shell(line.substr(2));
        }
    }
    std::filesystem::create_directory(TEST_DATA "transcripts");
    std::ofstream{TEST_DATA + name} << actual;
    const std::string difference = "diff -u " LISTINGS + name + " " TEST_DATA + name;
    EXPECT_EQ(std::system(difference.c_str()), 0);
}

INSTANTIATE_TEST_SUITE_P(Of, Transcripts,
                         testing::Values("check", "compare", "convert", "info", "manifest", "plot",
                                         "resample", "verify"));

} // namespace
} // namespace korlit
