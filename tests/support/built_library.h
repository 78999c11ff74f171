// The built library in the hands of a host: good files to convert, and a process of its own for
// what happens to a whole process.
#pragma once

#include "tests/support/host_call.h"
#include "tests/support/image.h"
#include "tests/support/run_text.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <iostream>
#include <map>

namespace korlit::test {

#ifdef __SANITIZE_ADDRESS__
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

constexpr std::int64_t mebibyte = 1024 * 1024L;

struct Ending {
    std::string text; ///< what it wrote to standard error, and how it ended if not well
    std::int64_t peakBytes = 0;
    double seconds = 0; ///< of the processor
};

/// Runs an action, which answers a text, in a process of its own. One that hangs is killed.
template <typename Action>
Ending inChild(Action action) {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe(ends.data()), 0);
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDERR_FILENO);
        alarm(100);
        [&]() noexcept { std::cerr << action(); }();
        _exit(0);
    }
    close(ends[1]);
    Ending ending;
    std::array<char, 4096> part{};
    for (ssize_t count = 0; (count = read(ends[0], part.data(), part.size())) > 0;) {
        ending.text.append(part.data(), static_cast<std::size_t>(count));
    }
    close(ends[0]);
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    ending.text += status == 0 ? "" : " ENDED WITH STATUS " + std::to_string(status);
    ending.peakBytes = usage.ru_maxrss * 1024;
    for (const timeval& time : {usage.ru_utime, usage.ru_stime}) {
        ending.seconds +=
            static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    }
    return ending;
}

/// As many at any time if none is left open.
inline std::ptrdiff_t openFileCount() {
    namespace fs = std::filesystem;
    return std::distance(fs::directory_iterator{"/proc/self/fd"}, fs::directory_iterator{});
}

inline const std::string builtSibling =
    std::filesystem::path{BUILT_LIBRARY}.replace_filename("libostrelix.so");

inline void* loadLibrary() {
    return dlopen(BUILT_LIBRARY, RTLD_NOW | RTLD_LOCAL);
}

/// The export and the source of a kind, in words.
using Source = std::pair<std::string, std::string>;
inline const Source andi{"Andi2Merivolta", "two.cdf"};
inline const Source aPair{"Merivolta2Andi", "run.sli"};
inline const Source aRun{"Dunvale2Andi", "dad_run.run"};

/// Loads the library, converts and lets go of it: "1 run.cdf: Merivolta File converted to run.cdf."
inline std::string call(const Source& source) {
    void* library = loadLibrary();
    const auto entry = reinterpret_cast<Export>(dlsym(library, source.first.c_str()));
    const std::string message = source.first == aRun.first ? "" : untouchedMessage;
    const Answer answer = callAsHost(entry, source.second, message);
    dlclose(library);
    return std::to_string(answer.result) + " " + answer.path + ": " + answer.message +
           (answer.areBuffersKept ? "" : " WROTE BEHIND A BUFFER");
}

/// Its working folder holds a good file of each kind.
class BuiltLibraryTest : public testing::Test {
  protected:
    BuiltLibraryTest() {
        setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
        std::filesystem::current_path(folder.path(""));
        folder.write("two.cdf", readFile(TEST_DATA "two_peaks.cdf"));
        folder.write("run.sli", readImage(LISTINGS "two_peaks.sli.txt"));
        folder.write("run.rpt", readImage(LISTINGS "two_peaks.rpt.txt"));
        folder.write("dad_run.run", readFile(SAMPLES "dad_run.run"));
    }
    ~BuiltLibraryTest() override { std::filesystem::current_path("/"); }

    /// Converts each kind; "" if each says what it should.
    std::string wrongAnswers() const {
        std::string wrong;
        for (const auto& [source, answer] : answers) {
            const std::string got = call(source);
            wrong += got == answer ? "" : " WRONG " + got;
        }
        return wrong;
    }

    /// "" if all files are right to the byte.
    std::string wrongOutputs() const {
        std::string wrong;
        for (const auto& [name, bytes] : outputs) {
            wrong += readFile(name) == bytes ? "" : " WRONG " + name;
        }
        return wrong;
    }

    /// Converts each kind over old files that are longer than the new; "" if all is right.
    std::string problems() const {
        for (const auto& [name, bytes] : outputs) {
            folder.write(name, std::string(bytes.size() + 5000, 'x'));
        }
        const std::string wrong = wrongAnswers();
        return wrong + wrongOutputs();
    }

    TempFolder folder;
    const std::map<Source, std::string> answers{
        {andi, "1 two.sli: Wrote Merivolta file two.sli"},
        {aPair, "1 run.cdf: Merivolta File converted to run.cdf."},
        {aRun, "1 dad_run.run: "}};
    const std::map<std::string, std::string> outputs{
        {"two.sli", readImage(LISTINGS "two_peaks.sli.txt")},
        {"two.rpt", readImage(LISTINGS "two_peaks.rpt.txt")},
        {"run.cdf", readFile(TEST_DATA "two_peaks_back.cdf")},
        {"dad_run1.cdf", readFile(TEST_DATA "expected/dad_run1.cdf")},
        {"dad_run2.cdf", readFile(TEST_DATA "expected/dad_run2.cdf")},
        {"dad_run3.cdf", readFile(TEST_DATA "expected/dad_run3.cdf")}};
};

} // namespace korlit::test
