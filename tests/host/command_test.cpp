// The built command, as a shell runs it.
#include "tests/support/andi_text.h"
#include "tests/support/run_text.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

namespace korlit {
namespace {

using namespace test;

/// Runs the command and answers its standard output with its exit status behind.
std::string run(const TempFolder& folder, const std::string& arguments) {
    const std::string output = folder.path("output");
    const int status =
        std::system((BUILT_COMMAND " " + arguments + " >" + output + " 2>/dev/null").c_str());
    return readFile(output) + std::to_string(WEXITSTATUS(status));
}

TEST(Command, PrintsALineForEachFile) {
    const TempFolder folder;
    const std::string good = folder.write("good.cdf", AndiText{}.bytes());
    const std::string bad = folder.write("bad.cdf", "CD");
    const std::string huge = folder.write("huge.cdf", AndiText{.dimensions = "10 -1"}.bytes());
    const std::string goodLine = good + ": Wrote Merivolta file " + folder.path("good.sli") + "\n";
    const std::string badLine = bad + ": File " + bad + " is not a supported Andi file\n";
    const std::string hugeLine =
        huge + ": Not converted; what reason there is stands on standard error\n";
    EXPECT_EQ(run(folder, "convert " + good), goodLine + "0");
    const std::string slice = folder.path("good.sli");
    EXPECT_EQ(run(folder, "convert " + slice),
              slice + ": Merivolta File converted to " + good + ".\n0");
    const std::string dunvale =
        folder.write("run.dat", RunText{.count = "2s", .channels = 2}.bytes());
    const std::string badRun = folder.write("run.data", RunText{}.bytes());
    EXPECT_EQ(run(folder, "convert " + dunvale + " " + badRun),
              dunvale + ": Dunvale File converted to " + folder.path("run1.cdf") + ", " +
                  folder.path("run2.cdf") + ".\n" + badRun +
                  ": Error: No Extension found in File \"" + badRun + "\"\n1");
    EXPECT_EQ(run(folder, "convert " + bad + " " + good), badLine + goodLine + "1");
    EXPECT_EQ(run(folder, "convert " + good + " " + huge), goodLine + hugeLine + "1");
}

TEST(Command, AnswersWrongUseWithTwo) {
    const TempFolder folder;
    for (const std::string arguments : {"", "convert", "frobnicate x", "convert --frobnicate x"}) {
        EXPECT_EQ(run(folder, arguments), "2") << arguments;
    }
    EXPECT_TRUE(run(folder, "--help").ends_with('0'));
    EXPECT_TRUE(run(folder, "--version").starts_with("korlit "));
}

} // namespace
} // namespace korlit
