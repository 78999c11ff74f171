// `korlit convert` as a shell runs it.
#include "tests/support/andi_text.h"
#include "tests/support/command.h"
#include "tests/support/run_text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>

namespace korlit {
namespace {

using namespace test;
namespace fs = std::filesystem;

class Convert : public testing::Test {
  protected:
    Convert() {
        folder.write("good.cdf", AndiText{}.bytes());
        folder.write("bad.cdf", "CD");
    }

    CommandResult convert(const std::string& arguments, const std::string& environment = "") const {
        return runCommand(folder, "convert " + arguments, environment);
    }

    /// What stands in a folder below, hidden files but for the harness's own included.
    std::string list(const std::string& below = "") const {
        std::set<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator{folder.path(below)}) {
            const std::string name = fs::relative(entry, folder.path(below)).string();
            if (entry.is_regular_file() && name != ".output" && name != ".errors") {
                names.insert(name);
            }
        }
        std::string all;
        for (const std::string& name : names) {
            all += name + " ";
        }
        return all;
    }

    void makePair(const std::string& stem) const {
        folder.write(stem + ".sli", readFile(SAMPLES "gc_run.sli"));
        folder.write(stem + ".rpt", readFile(SAMPLES "gc_run.rpt"));
    }

    /// `count` files to convert in the folder "in", of all kinds, and broken ones among them.
    void makeArchive(std::size_t count) const {
        fs::create_directory(folder.path("in"));
        for (std::size_t i = 0; i < count; ++i) {
            const std::string stem = "in/" + std::to_string(i) + "_";
            switch (i % 5) {
            case 0:
                makePair(stem);
                break;
            case 1:
                folder.write(stem + ".run", RunText{.count = "2s", .channels = 2}.bytes());
                break;
            case 2:
                folder.write(stem + ".cdf", AndiText{}.bytes().substr(0, 900));
                break;
            default:
                folder.write(stem + ".cdf", AndiText{}.bytes());
                break;
            }
        }
    }

    /// Files that the archive's good files become, and the good and the broken ones.
    static constexpr std::size_t outputsOfFive = 1 + 2 + 2 + 2;

    std::size_t filesIn(const std::string& below) const {
        const std::string names = list(below);
        return static_cast<std::size_t>(std::ranges::count(names, ' '));
    }

    TempFolder folder;
};

TEST_F(Convert, PrintsTheLibrarysWordsForEachFile) {
    makePair("gc");
    folder.write("huge.cdf", AndiText{.dimensions = "10 -1"}.bytes());
    folder.write("run.dat", RunText{.count = "2s", .channels = 2}.bytes());
    folder.write("ten.none", RunText{.count = "10s"}.bytes());
    const std::string noReport = "alone.sli: Error opening Merivolta Report file alone.rpt\n";
    folder.write("alone.sli", readFile(SAMPLES "gc_run.sli"));
    folder.write("b.Sli", readFile(SAMPLES "gc_run.sli"));
    folder.write("b.Rpt", readFile(SAMPLES "gc_run.rpt"));
    struct Case {
        const char* arguments;
        int status;
        std::string output;
    };
    const Case cases[]{
        {"good.cdf", 0, "good.cdf: Wrote Merivolta file good.sli\n"},
        {"gc.sli", 0, "gc.sli: Merivolta File converted to gc.cdf.\n"},
        {"b.Sli", 0, "b.Sli: Merivolta File converted to b.cdf.\n"},
        {"run.dat", 0, "run.dat: Dunvale File converted to run1.cdf, run2.cdf.\n"},
        {"bad.cdf", 1, "bad.cdf: File bad.cdf is not a supported Andi file\n"},
        {"huge.cdf", 1, "huge.cdf: ReadAndi 5: Error allocating memory\n"},
        {"alone.sli", 1, noReport},
        {"--from dunvale ten.none", 1, "ten.none: Read Error!!! Channel No. = 10.\n"},
        {"--from dunvale bad.cdf", 1, "bad.cdf: Read Error!!! Channel No. = 0.\n"},
        {"missing.cdf", 1, "missing.cdf: There is no file missing.cdf\n"},
    };
    for (const auto& [arguments, status, output] : cases) {
        EXPECT_EQ(convert(arguments), (CommandResult{status, output, ""}));
    }
    EXPECT_EQ(list(), "alone.sli b.Rpt b.Sli b.cdf bad.cdf gc.cdf gc.rpt gc.sli good.cdf good.rpt "
                      "good.sli huge.cdf "
                      "run.dat run1.cdf run2.cdf ten.none ");
    EXPECT_NE(folder.dump("gc.cdf", "-h").find("source_file_reference = \"gc.sli\""),
              std::string::npos);
    EXPECT_EQ(convert("good.cdf bad.cdf -q -j 1 --force").output,
              "bad.cdf: File bad.cdf is not a supported Andi file\n");
}

TEST_F(Convert, HarmsNothingThatExists) {
    folder.write("good.rpt", "old");
    EXPECT_EQ(
        convert("good.cdf"),
        (CommandResult{1, "good.cdf: good.rpt is there already (--force replaces it)\n", ""}));
    EXPECT_EQ(convert("good.cdf --skip-existing").status, 1) << "one of two is no whole pair";
    EXPECT_EQ(list(), "bad.cdf good.cdf good.rpt ");
    EXPECT_EQ(readFile(folder.path("good.rpt")), "old");

    folder.write("bad.sli", "old");
    EXPECT_EQ(convert("bad.cdf --force").status, 1);
    EXPECT_EQ(readFile(folder.path("bad.sli")), "old");

    EXPECT_EQ(convert("good.cdf --force").status, 0);
    EXPECT_EQ(readFile(folder.path("good.rpt")).size(), 352U);
    EXPECT_EQ(convert("good.cdf --skip-existing"),
              (CommandResult{0, "good.cdf: Skipped, good.sli is there already\n", ""}));

    // The second of two files can't come to its place: the first is put back.
    folder.write("good.sli", "old slice");
    fs::remove(folder.path("good.rpt"));
    fs::create_directory(folder.path("good.rpt"));
    EXPECT_EQ(convert("good.cdf --force"),
              (CommandResult{1, "good.cdf: Can't replace the folder good.rpt\n", ""}));
    EXPECT_EQ(readFile(folder.path("good.sli")), "old slice");

    // A source is never its own output, nor that of another file.
    folder.write("andi.sli", AndiText{}.bytes());
    EXPECT_EQ(convert("andi.sli --force").output,
              "andi.sli: It would be its own output andi.sli\n");
    makePair("gc");
    EXPECT_EQ(convert("good.cdf -o gc.sli --force").status, 0) << "asked for by name";
    folder.write("a.run", RunText{}.bytes());
    folder.write("a.dat", RunText{}.bytes());
    EXPECT_EQ(convert("a.run a.dat -q").output, "a.dat: Its file a1.cdf is that of a.run\n");
}

TEST_F(Convert, WritesWhereItIsTold) {
    fs::create_directories(folder.path("in/below/.hidden"));
    folder.write("in/below/x.cdf", AndiText{}.bytes());
    folder.write("in/below/.hidden/y.cdf", AndiText{}.bytes());
    folder.write("in/run.dat", RunText{}.bytes());
    folder.write("in/notes.txt", "no data");
    EXPECT_EQ(convert("in -d out -q").status, 0);
    EXPECT_EQ(list("out"), "run1.cdf ");
    EXPECT_EQ(convert("-r in good.cdf -d out --skip-existing -q").status, 0);
    EXPECT_EQ(list("out"), "below/x.rpt below/x.sli good.rpt good.sli run1.cdf ");
    EXPECT_EQ(convert("-r in --from andi -d only -q").status, 0);
    EXPECT_EQ(list("only"), "below/x.rpt below/x.sli ");
    EXPECT_EQ(convert("in/run.dat -o one/signal.nc -q").status, 0);
    EXPECT_EQ(convert("good.cdf -o one/pair.sli -q").status, 0);
    EXPECT_EQ(list("one"), "pair.rpt pair.sli signal.nc ");
    EXPECT_NE(folder.dump("one/signal.nc", "-h").find("source_file_reference = \"in/run.dat\""),
              std::string::npos);
    EXPECT_EQ(list("in"), "below/.hidden/y.cdf below/x.cdf notes.txt run.dat ");

    // What a folder's conversions make is no further source of it.
    for (const std::string arguments : {"in -r -q", "in -r -q --skip-existing"}) {
        EXPECT_EQ(convert(arguments), (CommandResult{0, "", ""}));
        EXPECT_EQ(list("in"), "below/.hidden/y.cdf below/x.cdf below/x.rpt below/x.sli notes.txt "
                              "run.dat run1.cdf ");
    }
    folder.write("list", "good.cdf\r\n\nin/run.dat\n");
    EXPECT_EQ(convert("--files-from list -d listed -q").status, 0);
    EXPECT_EQ(convert("--files-from - -d listed -q --force <list").status, 0);
    EXPECT_EQ(list("listed"), "good.rpt good.sli run1.cdf ");
    EXPECT_TRUE(convert("missing --files-from list -d listed --force")
                    .errors.starts_with("2 converted, 1 failed, 0 skipped in "));
}

TEST_F(Convert, TellsProgramsInJson) {
    makePair("gc");
    const std::string sample = "01234567890123456789x";
    folder.write("bad\xE9.cdf", "CD");
    folder.write("long.cdf", AndiText{.globals = oneText("sample_name", sample)}.bytes());
    std::istringstream lines{convert("gc.sli bad\xE9.cdf long.cdf --json -j 1").output};
    struct Case {
        const char* source;
        const char* kind;
        std::vector<std::string> outputs;
        const char* result;
        std::string message;
        std::vector<std::string> warnings;
        int points, peaks;
    };
    const Case cases[]{{"gc.sli",
                        "merivolta",
                        {"gc.cdf"},
                        "converted",
                        "Merivolta File converted to gc.cdf.",
                        {},
                        4800,
                        9},
                       {"bad\u00E9.cdf",
                        "andi",
                        {},
                        "failed",
                        "File bad\u00E9.cdf is not a supported Andi file",
                        {},
                        0,
                        0},
                       {"long.cdf",
                        "andi",
                        {"long.sli", "long.rpt"},
                        "converted",
                        "Wrote Merivolta file long.sli",
                        {"sample_name is cut to 20 characters: \"01234567890123456789\""},
                        3,
                        0}};
    for (const Case& each : cases) {
        std::string line;
        std::getline(lines, line);
        nlohmann::json json = nlohmann::json::parse(line);
        EXPECT_LT(json["seconds"].get<double>(), 10);
        json.erase("seconds");
        EXPECT_EQ(json, nlohmann::json({{"source", each.source},
                                        {"kind", each.kind},
                                        {"outputs", each.outputs},
                                        {"result", each.result},
                                        {"message", each.message},
                                        {"warnings", each.warnings},
                                        {"points", each.points},
                                        {"peaks", each.peaks}}));
    }
}

TEST_F(Convert, WarnsOfWhatAPairCantHold) {
    const auto warnings = [&](const std::string& cdl) {
        folder.write("x.cdl", "netcdf x {dimensions: point_number = 1; w = 32; " + cdl);
        EXPECT_EQ(
            std::system(("ncgen -k classic -o " + folder.path("x.cdf") + " " + folder.path("x.cdl"))
                            .c_str()),
            0);
        const std::string output = convert("x.cdf --force").output;
        return output.substr(output.find('\n') + 1);
    };
    const std::string signal = "float ordinate_values(point_number); ";
    const std::string data = "data: ordinate_values = 1; ";
    EXPECT_EQ(warnings("peak_number = 3; variables: " + signal +
                       "char peak_name(peak_number, w); :operator_name = \"12345678901234567\"; "
                       ":detector_unit = \"0123456789\"; " +
                       data + R"(peak_name = "12345678901234", "123456789012345", "x"; })"),
              "  warning: detector_unit is cut to 9 characters: \"012345678\"\n"
              "  warning: 1 peak name cut to 14 characters, the first is \"123456789012345\"\n");
    for (const auto& [count, expected] :
         {std::pair{570, ""},
          {571, "  warning: the table of 571 peaks is left out: a pair holds at "
                "most 570\n"}}) {
        EXPECT_EQ(warnings("peak_number = " + std::to_string(count) + "; variables: " + signal +
                           "float peak_retention_time(peak_number); " + data + "}"),
                  expected);
    }
}

TEST_F(Convert, ShardsTogetherTakeEachFileOnce) {
    makeArchive(60);
    std::multiset<std::string> sources;
    for (const std::string shard : {"1/3", "2/3", "3/3"}) {
        // Beside the inputs, so that later parts see what earlier ones have written.
        std::istringstream lines{convert("in --json --shard " + shard).output};
        std::size_t count = 0;
        for (std::string line; std::getline(lines, line); ++count) {
            sources.insert(nlohmann::json::parse(line)["source"]);
        }
        EXPECT_GT(count, 5U);
    }
    EXPECT_EQ(sources.size(), 60U);
    EXPECT_EQ(std::set<std::string>(sources.begin(), sources.end()).size(), 60U);
    EXPECT_EQ(filesIn("in"), 60U + 12 + 60 / 5 * outputsOfFive);
}

TEST_F(Convert, EachKilledWorkerCostsOneFile) {
    constexpr std::size_t count = 600;
    makeArchive(count);
    const std::string script = folder.write(
        "kill.sh", "cd " + folder.path("") +
                       "\n" BUILT_COMMAND " convert in -d out -j 2 >lines 2>sums &\n"
                       "parent=$!\n"
                       "until [ -s lines ]; do sleep 0.01; done\n"
                       "for i in 1 2 3 4 5; do\n"
                       "  kill -KILL $(cut -d' ' -f1 /proc/$parent/task/$parent/children)\n"
                       "  sleep 0.03\n"
                       "done 2>/dev/null\n"
                       "wait $parent\n");
    EXPECT_EQ(WEXITSTATUS(std::system(("sh " + script).c_str())), 1);
    const std::string lines = readFile(folder.path("lines"));
    int killed = 0;
    const std::string words = ": Not converted, its process was killed by signal 9\n";
    for (auto at = lines.find(words); at != std::string::npos; at = lines.find(words, at + 1)) {
        ++killed;
    }
    EXPECT_TRUE(killed >= 1 && killed <= 5) << killed;
    EXPECT_EQ(list("out").find(".korlit"), std::string::npos);
    // Those killed may have been broken ones, or had all their files in place already; but nothing
    // else is left to do.
    const auto convertedOf = [](const std::string& sums) { return std::stoi(sums); };
    EXPECT_GE(convertedOf(readFile(folder.path("sums"))), 480 - killed);
    const CommandResult again = convert("in -d out --skip-existing");
    EXPECT_LE(convertedOf(again.errors), killed);
    EXPECT_NE(again.errors.find(" converted, 120 failed, "), std::string::npos) << again.errors;
    EXPECT_EQ(filesIn("out"), count / 5 * outputsOfFive);
}

TEST_F(Convert, AnInterruptedBatchIsTakenUpAgain) {
    constexpr std::size_t count = 600;
    makeArchive(count);
    const std::string script =
        folder.write("interrupt.sh", "cd " + folder.path("") +
                                         "\n" BUILT_COMMAND " convert in -j 2 >lines 2>sums &\n"
                                         "parent=$!\n"
                                         "until [ -s lines ]; do sleep 0.01; done\n"
                                         "kill -INT $parent\n"
                                         "wait $parent\n");
    // A shell has its background jobs ignore SIGINT, so the command takes it up again itself.
    EXPECT_EQ(WEXITSTATUS(std::system(("sh " + script).c_str())), 130);
    const std::string sums = readFile(folder.path("sums"));
    EXPECT_TRUE(sums.starts_with("Interrupted: ") &&
                sums.find(" not begun in ") != std::string::npos)
        << sums;
    const CommandResult again = convert("in --skip-existing -j 3");
    const std::size_t before = std::stoul(sums.substr(sums.find(' ')));
    EXPECT_TRUE(again.errors.starts_with(std::to_string(480 - before) + " converted, 120 failed, "))
        << again.errors << sums;
    EXPECT_EQ(filesIn("in"), count + count / 5 + count / 5 * outputsOfFive);
}

TEST_F(Convert, AnswersWrongUseWithTwo) {
    const std::pair<const char*, const char*> cases[]{
        {"", "PATH or --files-from is required"},
        {"x --outputdir y", "unknown option --outputdir; did you mean --output-dir?"},
        {"x --frobnicate", "unknown option --frobnicate"},
        {"x -d a -o b", "--output-dir excludes --output"},
        {"x --force --skip-existing", "--force excludes --skip-existing"},
        {"x --shard 0/2", "--shard: must be I/N with I from 1 to N, as in 2/5"},
        {"x --shard 3/2", "--shard: must be I/N with I from 1 to N, as in 2/5"},
        {"x --shard 1", "--shard: must be I/N with I from 1 to N, as in 2/5"},
        {"x --from cdf", "--from: must be andi, merivolta or dunvale"},
        {"x y -o z", "--output names one file, but there are 2 to convert"},
        {"--files-from missing", "Can't read missing"}};
    for (const auto& [arguments, words] : cases) {
        EXPECT_EQ(convert(arguments), (CommandResult{2, "",
                                                     std::string{"korlit convert: "} + words +
                                                         "\nTry korlit convert --help\n"}));
    }
    folder.write("a.run", RunText{.count = "2s", .channels = 2}.bytes());
    EXPECT_EQ(convert("a.run -o one.cdf").status, 2);
    const std::pair<const char*, const char*> commands[]{
        {"", "korlit: no command\nTry korlit --help\n"},
        {"convrt x", "korlit: unknown command convrt; did you mean convert?\nTry korlit --help\n"}};
    for (const auto& [arguments, words] : commands) {
        EXPECT_EQ(runCommand(folder, arguments), (CommandResult{2, "", words}));
    }
    EXPECT_EQ(runCommand(folder, "--version").status, 0);
    EXPECT_NE(convert("--help").output.find("Examples:"), std::string::npos);
}

/// The words in a text that start with `--`.
std::set<std::string> longOptions(const std::string& text) {
    std::set<std::string> options;
    for (std::size_t at = text.find("--"); at != std::string::npos; at = text.find("--", at + 2)) {
        const std::size_t end = text.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", at);
        options.insert(text.substr(at, end - at));
    }
    options.erase("--");
    return options;
}

/// What completion in bash offers for the last of the words, and how it asks for files.
std::string offered(const TempFolder& folder, const std::string& words) {
    folder.write("complete", "source " SHARED_FILES "korlit.bash\ncompopt() { echo -n \"[$2]\"; }\n"
                             "COMP_WORDS=(korlit " +
                                 words +
                                 ")\n"
                                 "COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_korlit\n"
                                 "echo \"${COMPREPLY[@]}\"\n");
    const std::string line = "bash " + folder.path("complete") + " >" + folder.path("offered");
    EXPECT_EQ(std::system(line.c_str()), 0) << words;
    return readFile(folder.path("offered"));
}

TEST_F(Convert, BashCompletesCommandsOptionsAndValues) {
    for (const auto& [words, offer] : std::initializer_list<std::pair<const char*, const char*>>{
             {"co", "convert compare\n"},
             {"info --si", "--signal\n"},
             {"plot --from", "--from-time\n"},
             {"plot --from-time ''", "\n"},
             {"convert --from ''", "andi merivolta dunvale\n"},
             {"info --from = m", "merivolta\n"},
             {"info --from =", "andi merivolta dunvale\n"},
             {"compare --only signal,pe", "[nospace]signal,peaks\n"},
             {"convert -d ''", "[dirnames]\n"},
             {"convert -o run", "[default]\n"},
             {"check run", "[default]\n"}}) {
        EXPECT_EQ(offered(folder, words), offer) << words;
    }
}

TEST_F(Convert, ManualAndCompletionsHaveTheOptionsOfTheHelp) {
    std::string manual = readFile(SHARED_FILES "korlit.1");
    std::erase(manual, '\\');
    const std::string zsh = readFile(SHARED_FILES "_korlit");
    const std::string fish = readFile(SHARED_FILES "korlit.fish");
    for (const std::string command : {"convert", "info", "plot", "check", "compare"}) {
        const std::string help = runCommand(folder, command + " --help").output;
        const auto between = [&](const std::string& text, const std::string& from,
                                 const std::string& to) {
            const std::size_t start = text.find(from);
            return text.substr(start, text.find(to, start + from.size()) - start);
        };
        const std::set<std::string> options = longOptions(between(help, "Options:", "\n\n"));
        EXPECT_GT(options.size(), 2U) << command;
        EXPECT_EQ(options, longOptions(offered(folder, command + " --")));
        EXPECT_EQ(options, longOptions(between(zsh, "        " + command + ")", ";;")));
        const std::string fishLines = between(fish, "from " + command, "subcommand -a");
        const std::string section = between(manual, ".SS " + command, ".S");
        for (const std::string& option : options) {
            EXPECT_NE(section.find("fB" + option + "fR"), std::string::npos) << command << option;
            EXPECT_NE(fishLines.find(" -l " + option.substr(2) + ' '), std::string::npos) << option;
        }
    }
}

} // namespace
} // namespace korlit
