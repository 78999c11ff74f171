// The built library in hosts of many kinds: with threads, links, signals, another locale, and those
// that load it again and again.
#include "tests/support/andi_text.h"
#include "tests/support/built_library.h"

#include <clocale>
#include <csignal>
#include <thread>

namespace korlit {
namespace {

using namespace test;
namespace fs = std::filesystem;

using HostsTest = BuiltLibraryTest;

TEST_F(HostsTest, CallsMayComeFromOneThreadAfterTheOther) {
    for (int i = 0; i < 20; ++i) {
        std::string wrong = "not called";
        std::thread{[&] { wrong = problems(); }}.join();
        EXPECT_EQ(wrong, "");
    }
}

TEST_F(HostsTest, AMessageBoxOnABrokenPipeIsNoSignal) {
    folder.write("huge.cdf", AndiText{.dimensions = "10 2147483647"}.bytes());
    const auto convert = [&] {
        std::signal(SIGPIPE, SIG_DFL);
        const int errors = dup(STDERR_FILENO);
        std::array<int, 2> ends{};
        const bool isBroken = pipe(ends.data()) == 0 && close(ends[0]) == 0 &&
                              dup2(ends[1], STDERR_FILENO) == STDERR_FILENO;
        const std::string answer = call({andi.first, "huge.cdf"});
        dup2(errors, STDERR_FILENO);
        return answer + (isBroken ? "" : " WAS NOT BROKEN");
    };
    EXPECT_EQ(inChild(convert).text, "0 huge.cdf: " + untouchedMessage);
}

std::int64_t residentBytes() {
    std::ifstream pages{"/proc/self/statm"};
    std::int64_t all = 0;
    std::int64_t resident = 0;
    pages >> all >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

TEST_F(HostsTest, LeavesNothingBehindWhenItIsUnloaded) {
    const auto convert = [&] {
        std::string wrong;
        std::int64_t residentBefore = 0;
        const auto openBefore = openFileCount();
        const int rounds = isSanitized ? 50 : 1000;
        for (int i = 0; i < rounds; ++i) {
            residentBefore = i == rounds / 2 ? residentBytes() : residentBefore;
            wrong += wrongAnswers();
            for (const std::string& library : {std::string{BUILT_LIBRARY}, builtSibling}) {
                wrong += dlopen(library.c_str(), RTLD_NOW | RTLD_NOLOAD) == nullptr ? "" : " STAYS";
            }
        }
        // The sanitizer keeps freed memory.
        const bool isGrowing = residentBytes() - residentBefore > mebibyte / 2;
        wrong += isGrowing && !isSanitized ? " GROWS" : "";
        return wrong + (openFileCount() == openBefore ? "" : " LEFT OPEN");
    };
    EXPECT_EQ(inChild(convert).text, "");
    EXPECT_EQ(wrongOutputs(), "");
}

TEST_F(HostsTest, TwoHostsMayWriteTheSameFiles) {
    const auto convert = [&] {
        const pid_t other = fork();
        std::string wrong;
        for (int i = 0; i < 200; ++i) {
            wrong += wrongAnswers();
        }
        if (other == 0) {
            _exit(wrong.empty() ? 0 : 1);
        }
        int status = 0;
        waitpid(other, &status, 0);
        return wrong + (status == 0 ? "" : " THE OTHER FAILED");
    };
    EXPECT_EQ(inChild(convert).text, "");
    EXPECT_EQ(wrongOutputs(), "");
}

TEST_F(HostsTest, ReadsAndWritesThroughLinks) {
    for (const std::string name : {"two.cdf", "run.sli", "run.rpt", "dad_run.run"}) {
        fs::rename(name, name + ".file");
        fs::create_symlink(name + ".file", name);
    }
    for (const bool isDangling : {false, true}) {
        for (const auto& [name, bytes] : outputs) {
            fs::remove(name);
            isDangling ? fs::remove(name + ".file") : folder.write(name + ".file", "old") != "";
            fs::create_symlink(name + ".file", name);
        }
        EXPECT_EQ(wrongAnswers(), "");
        EXPECT_EQ(wrongOutputs(), "");
        for (const auto& [name, bytes] : outputs) {
            EXPECT_TRUE(fs::is_symlink(name) && fs::is_regular_file(name + ".file")) << name;
        }
    }
}

TEST_F(HostsTest, ADecimalCommaOfTheHostChangesNothing) {
    const AndiText text{.globals = "12 2 'actual_sampling_interval' 2 4 \"0.25\" "
                                   "'retention_unit' 2 7 \"Minutes\""};
    folder.write("text.cdf", text.bytes());
    const auto convert = [&] {
        setenv("LOCPATH", TEST_DATA "locales", 1);
        std::setlocale(LC_ALL, "de_DE.UTF-8");
        const std::string point = std::localeconv()->decimal_point;
        const std::string answer = call({andi.first, "text.cdf"});
        return point + answer + problems();
    };
    EXPECT_EQ(inChild(convert).text, ",1 text.sli: Wrote Merivolta file text.sli");
    EXPECT_EQ(readFile("text.sli").substr(12, 2), little(std::int16_t{15'000})) << "milliseconds";
}

} // namespace
} // namespace korlit
