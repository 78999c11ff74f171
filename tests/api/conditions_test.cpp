// What the machine and a hostile file can do to a host of the built library. Most of it happens in
// a child process, whose limits, user and end are its own.
#include "tests/support/andi_text.h"
#include "tests/support/host_call.h"
#include "tests/support/image.h"
#include "tests/support/run_text.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <iostream>
#include <map>
#include <thread>
#include <vector>

namespace {

bool areCallsInterrupted = false;
int transferCount = 0;
std::size_t largestTransfer = 0;
std::int64_t diskRoom = INT64_MAX; ///< bytes that files may still grow by
int flagsOfAll = ~0;               ///< those that no file was opened without

/// While that holds, every second call of the system is interrupted and the others move little.
/// Answers how much a call may move.
std::size_t granted(std::size_t byteCount) {
    static unsigned calls = 0;
    constexpr std::size_t little = 1000;
    if (!areCallsInterrupted) {
        return byteCount;
    }
    errno = EINTR;
    return ++calls % 2 == 0 ? std::min(byteCount, little) : 0;
}

bool isInterrupted() {
    return granted(1) == 0;
}

/// How many of the bytes the disk takes: those that are in the file already, and as many new ones
/// as it has room for.
std::size_t takenByDisk(int file, std::size_t byteCount, off_t offset) {
    struct stat status {};
    fstat(file, &status);
    const off_t end = offset + static_cast<off_t>(byteCount);
    const std::int64_t grown = std::max<off_t>(0, end - std::max(offset, status.st_size));
    const std::int64_t taken = std::min(grown, diskRoom);
    diskRoom -= taken;
    return byteCount - static_cast<std::size_t>(grown - taken);
}

template <typename Bytes>
ssize_t transfer(long number, int file, Bytes bytes, std::size_t byteCount, off_t offset) {
    ++transferCount;
    largestTransfer = std::max(largestTransfer, byteCount);
    const std::size_t part = granted(byteCount);
    return part == 0 && byteCount > 0 ? -1 : syscall(number, file, bytes, part, offset);
}

} // namespace

// They stand in front of those of the C library.
#pragma GCC visibility push(default)
extern "C" {
ssize_t pread(int file, void* target, size_t byteCount, off_t offset) {
    return transfer(SYS_pread64, file, target, byteCount, offset);
}
ssize_t pwrite(int file, const void* source, size_t byteCount, off_t offset) {
    const std::size_t taken = takenByDisk(file, byteCount, offset);
    errno = ENOSPC;
    return taken == 0 && byteCount > 0 ? -1 : transfer(SYS_pwrite64, file, source, taken, offset);
}
int open(const char* path, int flags, ...) {
    flagsOfAll &= flags;
    const auto file = [&] { return syscall(SYS_openat, AT_FDCWD, path, flags, 0666); };
    return isInterrupted() ? -1 : static_cast<int>(file());
}
int close(int file) {
    const auto result = static_cast<int>(syscall(SYS_close, file));
    return isInterrupted() ? -1 : result; // closed in either case
}
}
#pragma GCC visibility pop

namespace korlit {
namespace {

using namespace test;
namespace fs = std::filesystem;

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

using Resource = decltype(RLIMIT_AS);

void limit(Resource resource, rlim_t most = RLIM_INFINITY) {
    rlimit both{};
    getrlimit(resource, &both);
    both.rlim_cur = std::min(most, both.rlim_max);
    setrlimit(resource, &both);
}

/// As many at any time if none is left open.
std::ptrdiff_t openFileCount() {
    return std::distance(fs::directory_iterator{"/proc/self/fd"}, fs::directory_iterator{});
}

std::int64_t residentBytes() {
    std::ifstream pages{"/proc/self/statm"};
    std::int64_t all = 0;
    std::int64_t resident = 0;
    pages >> all >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

void* loadLibrary() {
    return dlopen(BUILT_LIBRARY, RTLD_NOW | RTLD_LOCAL);
}

/// Calls an export: "1 run.cdf: Merivolta File converted to run.cdf."
std::string call(const std::string& function, const std::string& path) {
    void* library = loadLibrary();
    const auto entry = reinterpret_cast<Export>(dlsym(library, function.c_str()));
    const std::string message = function == "Dunvale2Andi" ? "" : untouchedMessage;
    const Answer answer = callAsHost(entry, path, message);
    dlclose(library);
    return std::to_string(answer.result) + " " + answer.path + ": " + answer.message +
           (answer.areBuffersKept ? "" : " WROTE BEHIND A BUFFER");
}

/// The export and the source of each kind, in words.
using Source = std::pair<std::string, std::string>;
const Source andi{"Andi2Merivolta", "two.cdf"};
const Source aPair{"Merivolta2Andi", "run.sli"};
const Source aRun{"Dunvale2Andi", "dad_run.run"};

std::string call(const Source& source) {
    return call(source.first, source.second);
}

/// Its working folder holds a good file of each kind.
class ConditionsTest : public testing::Test {
  protected:
    ConditionsTest() {
        setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
        fs::current_path(folder.path(""));
        folder.write("two.cdf", readFile(TEST_DATA "two_peaks.cdf"));
        folder.write("run.sli", readImage(LISTINGS "two_peaks.sli.txt"));
        folder.write("run.rpt", readImage(LISTINGS "two_peaks.rpt.txt"));
        folder.write("dad_run.run", readFile(SAMPLES "dad_run.run"));
    }
    ~ConditionsTest() override { fs::current_path("/"); }

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

/// The start of a run of one channel up to its samples, of which it announces so many.
std::string runOf(int pointCount) {
    const std::string signal = " 30000s 2d 'mAU':20 r16 1f 6f";
    return RunText{.signal = "r52 " + std::to_string(pointCount) + signal}.bytes().substr(0, 418);
}

TEST_F(ConditionsTest, GiantsFindNoMemoryInALittleAddressSpace) {
    if (isSanitized) {
        GTEST_SKIP() << "the address sanitizer needs all address space";
    }
    const std::string points = "10 1 'point_number' 500000000";
    const std::string data = "11 1 'ordinate_values' 1 0 0 0 5 1999999996 1024";
    folder.write("list.cdf", AndiText{.globals = "12 40000000"}.bytes());
    folder.write("name.cdf", AndiText{.dimensions = "10 1 2000000000"}.bytes());
    folder.write("data.cdf", AndiText{.dimensions = points, .variables = data}.bytes());
    folder.write("points.cdf", AndiText{.dimensions = points}.bytes());
    folder.write("slice.sli", readFile("run.sli").replace(0, 4, little(500'000'000)));
    folder.write("slice.rpt", readFile("run.rpt"));
    // All of its samples are there, as a hole in the file.
    fs::resize_file(folder.write("whole.run", runOf(140'000'000)), 600'000'000);
    const std::pair<Source, std::string> cases[]{
        {{"Andi2Merivolta", "list.cdf"},
         "ReadAndi 5: Error allocating memory\n0 list.cdf: " + untouchedMessage},
        {{"Andi2Merivolta", "name.cdf"}, "0 name.cdf: Error reading Andi File name.cdf"},
        {{"Andi2Merivolta", "data.cdf"}, "0 data.cdf: Out of Memory reading Andi File data.cdf"},
        {{"Andi2Merivolta", "points.cdf"}, "0 points.sli: Out of memory reading data"},
        {{"Merivolta2Andi", "slice.sli"}, "0 slice.sli: Out of memory reading file slice.sli"},
        {{"Dunvale2Andi", "whole.run"},
         "0 whole.run: Out of Memory !!!\r\nNo Mem for plpfData[0]."}};
    for (const auto& [source, answer] : cases) {
        const auto convert = [&, &source = source] {
            limit(RLIMIT_AS, 512 * mebibyte);
            const std::string text = call(source);
            return text + problems();
        };
        EXPECT_EQ(inChild(convert).text, answer);
    }
}

TEST_F(ConditionsTest, AFileSizeLimitIsAFailedWriteAndNoSignal) {
    const std::pair<Source, std::string> cases[]{
        {andi, "0 two.sli: Error writing Merivolta file two.sli"},
        {aPair, "0 run.cdf: Error writing Andi File run.cdf"},
        {aRun, "0 dad_run.run: Error writing Andi File dad_run3.cdf"}};
    for (const auto& [source, answer] : cases) {
        for (const bool isHeldByHost : {false, true}) {
            const auto convert = [&, &source = source] {
                sigset_t signals{};
                sigemptyset(&signals);
                sigaddset(&signals, SIGXFSZ);
                std::signal(SIGXFSZ, SIG_DFL);
                pthread_sigmask(isHeldByHost ? SIG_BLOCK : SIG_UNBLOCK, &signals, nullptr);
                limit(RLIMIT_FSIZE, 100);
                std::string text = call(source);
                limit(RLIMIT_FSIZE);
                pthread_sigmask(SIG_SETMASK, nullptr, &signals);
                text += (sigismember(&signals, SIGXFSZ) == 1) == isHeldByHost ? "" : " OTHER MASK";
                sigpending(&signals);
                text += (sigismember(&signals, SIGXFSZ) == 1) == isHeldByHost ? "" : " PENDING?";
                return text + problems();
            };
            EXPECT_EQ(inChild(convert).text, answer) << isHeldByHost;
        }
    }
}

TEST_F(ConditionsTest, AFullDiskHoldsWhatCameFirst) {
    folder.write("long.cdf", AndiText{.dimensions = "10 1 'point_number' 20000",
                                      .variables = "11 1 'ordinate_values' 1 0 0 0 5 80000 1024",
                                      .data = '"' + std::string(80'000, 'x') + '"'}
                                 .bytes());
    for (const std::string name : {"two", "long"}) {
        EXPECT_EQ(call("Andi2Merivolta", name + ".cdf").front(), '1');
        const std::string slice = readFile(name + ".sli");
        const std::string report = readFile(name + ".rpt");
        // The place and size of the results are unknown until these are there.
        const std::string begun = std::string{report}.replace(135, 8, 8, '\0');
        const std::size_t all = slice.size() + report.size();
        for (const std::size_t place : {1UL, 1857UL, 2048UL, 3000UL, slice.size(),
                                        slice.size() + 288, slice.size() + 352, all}) {
            for (const std::size_t room : {place - 1, place, place + 1}) {
                diskRoom = static_cast<std::int64_t>(room);
                const std::string answer = call("Andi2Merivolta", name + ".cdf");
                diskRoom = INT64_MAX;
                const std::size_t left = room - std::min(room, slice.size());
                EXPECT_EQ(answer,
                          room < all
                              ? "0 " + name + ".sli: Error writing Merivolta file " + name + ".sli"
                              : "1 " + name + ".sli: Wrote Merivolta file " + name + ".sli");
                EXPECT_TRUE(readFile(name + ".sli") == slice.substr(0, room)) << room;
                EXPECT_TRUE(readFile(name + ".rpt") ==
                            (room < all ? begun.substr(0, left) : report))
                    << room;
            }
        }
    }
}

/// Whether this may have become that whole file: values that are filled in later may be zero.
bool isBegun(const std::string& bytes, const std::string& whole) {
    return bytes.size() <= whole.size() &&
           std::ranges::equal(bytes, whole.substr(0, bytes.size()),
                              [](char is, char due) { return is == due || is == '\0'; });
}

TEST_F(ConditionsTest, AFullDiskIsToldUnlessAllIsThere) {
    for (const Source& source : {aPair, aRun}) {
        bool isWhole = false;
        for (std::int64_t room = 0; !isWhole; room += 401) {
            isWhole = true;
            for (const auto& [name, bytes] : outputs) {
                fs::remove(name);
            }
            diskRoom = room;
            const std::string answer = call(source);
            diskRoom = INT64_MAX;
            for (const auto& [name, bytes] : outputs) {
                if (name.ends_with(".cdf") && name.starts_with("run") == (source == aPair)) {
                    const std::string left = readFile(name);
                    EXPECT_TRUE(isBegun(left, bytes)) << name << ' ' << room;
                    isWhole = isWhole && left == bytes;
                }
            }
            EXPECT_EQ(answer == answers.at(source), isWhole) << room;
        }
    }
}

TEST_F(ConditionsTest, TellsWhichFileFoundNoDescriptor) {
    const Source older{"Merivolta2Andi", "old.sli"};
    folder.write("old.sli", readFile("run.sli"));
    folder.write("old.rpt", readFile("run.rpt").replace(0, 1, "\x11"));
    const std::string noSibling = ": Fatal Error\n\n: Cannot load \"Ostrelix.dll\"";
    const std::string noReport = ": Error opening Merivolta Report file ";
    // With none free, with one, and so on. The update of an older report opens it once more.
    const std::pair<Source, std::vector<std::string>> cases[]{
        {andi,
         {"0 two.cdf: Error opening Andi file two.cdf",
          "0 two.rpt: Error writing Merivolta Report File two.rpt", answers.at(andi)}},
        {aPair, {"0 run.sli" + noSibling, "0 run.rpt" + noReport + "run.rpt", answers.at(aPair)}},
        {older,
         {"0 old.sli" + noSibling, "0 old.rpt" + noReport + "old.rpt",
          "0 old.rpt: Unable to update Report Header in File old.rpt",
          "1 old.cdf: Merivolta File converted to old.cdf."}},
        {aRun,
         {"0 dad_run.run: Unable to open\r\n\"dad_run.run\"",
          "0 dad_run.run: Error writing Andi File dad_run3.cdf", answers.at(aRun)}}};
    for (const auto& [source, texts] : cases) {
        for (std::size_t freeCount = 0; freeCount < texts.size(); ++freeCount) {
            const auto convert = [&, &source = source] {
                loadLibrary();
                closefrom(STDERR_FILENO + 1);
                const auto before = openFileCount();
                limit(RLIMIT_NOFILE, STDERR_FILENO + 1 + freeCount);
                const std::string text = call(source);
                limit(RLIMIT_NOFILE);
                return text + (openFileCount() == before ? "" : " LEFT OPEN") + problems();
            };
            EXPECT_EQ(inChild(convert).text, texts[freeCount]) << freeCount;
        }
    }
}

template <typename Entry>
std::string listOf(int tag, int count, Entry entry) {
    std::string bytes = big(tag) + big(count);
    for (int i = 0; i < count; ++i) {
        bytes += entry(i);
    }
    return bytes;
}

/// A variable of bytes, without name, dimensions and attributes.
std::string variableOf(int size, int offset) {
    return std::string(16, '\0') + big(1) + big(size) + big(offset);
}

TEST_F(ConditionsTest, AHostileFileTakesLittleMemoryAndTime) {
    const std::string start = "CDF\1" + big(0);
    const std::string absent(8, '\0');
    const auto shared = [](int) { return variableOf(900'000, 100'000); };
    const auto scattered = [](int i) { return variableOf(4, i * 7919 % 980'000); };
    const auto attribute = [](int) { return big(0) + big(2) + big(0); };
    const auto dimension = [](int i) { return big(0) + big(i); };
    // Eighty variables that share nothing, and the signal behind them.
    const auto truthful = [](int i) {
        return i < 80 ? variableOf(100'000, 8192 + i * 100'000)
                      : layOut("'ordinate_values' 1 0 0 0 5 12 8008192");
    };
    std::string large = start + layOut("10 1 'point_number' 3") + absent + listOf(11, 81, truthful);
    large.resize(8'008'192);
    const std::string noSignal = ": No ordinate values found in Andi file";
    const std::string noMemory = ": Out of Memory !!!\r\nNo Mem for plpfData[0].";
    // Behind the first of the heads that announce peaks nothing comes.
    const RunText peaks{.count = "9s",
                        .signal = "r52 1 30000s 2d 'mAU':20 r16 1f 6f 4f",
                        .results = "0s 32767s 32767s",
                        .channels = 9};
    const RunText lines{.timeTable = "r1548 32767s 32639s r68", .lines = "", .windows = ""};
    struct {
        std::string path, bytes, answer;
    } const cases[]{
        {"shared.cdf", (start + absent + absent + listOf(11, 3000, shared)).append(916'000, 'x'),
         "0 shared.cdf: Out of Memory reading Andi File shared.cdf"},
        {"scattered.cdf", start + absent + absent + listOf(11, 35'000, scattered),
         "0 scattered.sli" + noSignal},
        {"attributes.cdf", start + absent + listOf(12, 80'000, attribute) + absent,
         "0 attributes.sli" + noSignal},
        {"announced.cdf", start + big(10) + big(30'000'000),
         "0 announced.cdf: Error reading Andi File announced.cdf"},
        {"dimensions.cdf", start + listOf(10, 130'000, dimension) + absent + absent,
         "0 dimensions.sli" + noSignal},
        {"large.cdf", large + layOut("5f 7f 6f"), "1 large.sli: Wrote Merivolta file large.sli"},
        {"giant.run", runOf(500'000'000), "0 giant.run" + noMemory},
        {"beyond.run", runOf(16'777'217), "0 beyond.run" + noMemory},
        {"within.run", runOf(16'777'216), "1 within.run: "},
        {"peaks.run", peaks.bytes().substr(0, 308 + 9 * 114 + 6), "1 peaks.run: "},
        {"notes.run", RunText{.anno = "32767s"}.bytes(), "1 notes.run: "},
        {"lines.run", lines.bytes(), "1 lines.run: "}};
    for (const auto& [path, bytes, answer] : cases) {
        folder.write(path, bytes);
        const bool isRun = path.ends_with(".run");
        const Source source{isRun ? "Dunvale2Andi" : "Andi2Merivolta", path};
        const Ending idle = inChild([] { return call("Andi2Dunvale", ""); });
        const Ending ending = inChild([&] { return call(source); });
        EXPECT_EQ(ending.text, answer);
        const std::int64_t taken = ending.peakBytes - idle.peakBytes;
        const auto size = static_cast<std::int64_t>(bytes.size());
        if (!isSanitized) {
            EXPECT_LE(taken, 16 * size + (isRun ? 72 : 8) * mebibyte) << path;
            EXPECT_LT(ending.seconds, 1) << path;
        }
        std::cout << "hostile " << path << ' ' << size << ' ' << taken << ' ' << ending.seconds
                  << std::endl; // before the next child has a copy of it
    }
    EXPECT_EQ(fs::file_size("large.sli"), 2060);
    EXPECT_NE(readFile("within1.cdf").find(std::string(64 * mebibyte, '\0')), std::string::npos);
    EXPECT_NE(folder.dump("peaks1.cdf", "-h").find("peak_number = 32767"), std::string::npos);
    EXPECT_EQ(folder.dump("peaks9.cdf", "-h").find("peak_number ="), std::string::npos);
}

TEST_F(ConditionsTest, CallsMayComeFromOneThreadAfterTheOther) {
    for (int i = 0; i < 20; ++i) {
        std::string wrong = "not called";
        std::thread{[&] { wrong = problems(); }}.join();
        EXPECT_EQ(wrong, "");
    }
}

TEST_F(ConditionsTest, FewCallsMoveAWholeFileAndNoChildInheritsIt) {
    // Header and data far behind it by turns, through two windows.
    for (const auto& [source, most] : std::map<Source, int>{{andi, 4}, {aPair, 4}, {aRun, 33}}) {
        transferCount = 0;
        flagsOfAll = ~0;
        EXPECT_EQ(call(source), answers.at(source));
        EXPECT_LE(transferCount, most) << source.second;
        EXPECT_NE(flagsOfAll & O_CLOEXEC, 0);
    }
}

TEST_F(ConditionsTest, ALongSignalMovesInParts) {
    folder.write("long.sli", readFile("run.sli").replace(0, 4, little(2'000'001)));
    fs::resize_file("long.sli", 2048 + 8'000'004);
    folder.write("long.rpt", readFile("run.rpt"));
    for (const Source& source : {Source{"Merivolta2Andi", "long.sli"}, {andi.first, "long.cdf"}}) {
        largestTransfer = 0;
        EXPECT_EQ(call(source).front(), '1');
        EXPECT_TRUE(largestTransfer >= mebibyte && largestTransfer <= 4 * mebibyte)
            << largestTransfer;
    }
    EXPECT_EQ(fs::file_size("long.sli"), 2048 + 8'000'004);
}

TEST_F(ConditionsTest, AMessageBoxOnABrokenPipeIsNoSignal) {
    folder.write("huge.cdf", AndiText{.dimensions = "10 2147483647"}.bytes());
    const auto convert = [&] {
        std::signal(SIGPIPE, SIG_DFL);
        const int errors = dup(STDERR_FILENO);
        std::array<int, 2> ends{};
        const bool isBroken = pipe(ends.data()) == 0 && close(ends[0]) == 0 &&
                              dup2(ends[1], STDERR_FILENO) == STDERR_FILENO;
        const std::string answer = call("Andi2Merivolta", "huge.cdf");
        dup2(errors, STDERR_FILENO);
        return answer + (isBroken ? "" : " WAS NOT BROKEN");
    };
    EXPECT_EQ(inChild(convert).text, "0 huge.cdf: " + untouchedMessage);
}

TEST_F(ConditionsTest, SignalsOnlyInterrupt) {
    const auto convert = [&] {
        static volatile std::sig_atomic_t signalCount = 0;
        struct sigaction action {};
        action.sa_handler = [](int) { signalCount = signalCount + 1; };
        sigaction(SIGALRM, &action, nullptr);
        std::string wrong;
        for (int i = 0; i < 200; ++i) {
            for (const bool isInterrupted : {true, false}) {
                const itimerval often{.it_interval = {0, 150}, .it_value = {0, 150}};
                const itimerval never{};
                areCallsInterrupted = isInterrupted;
                setitimer(ITIMER_REAL, isInterrupted ? &often : &never, nullptr);
                wrong += isInterrupted ? wrongAnswers() : wrongOutputs();
            }
        }
        return wrong + (signalCount > 100 ? "" : " NO SIGNALS");
    };
    EXPECT_EQ(inChild(convert).text, "");
}

TEST_F(ConditionsTest, LeavesNothingBehindWhenItIsUnloaded) {
    const auto convert = [&] {
        std::string wrong;
        std::int64_t residentBefore = 0;
        const std::string sibling = fs::path{BUILT_LIBRARY}.replace_filename("libostrelix.so");
        const auto openBefore = openFileCount();
        const int rounds = isSanitized ? 50 : 1000;
        for (int i = 0; i < rounds; ++i) {
            residentBefore = i == rounds / 2 ? residentBytes() : residentBefore;
            wrong += wrongAnswers();
            for (const std::string& library : {std::string{BUILT_LIBRARY}, sibling}) {
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

TEST_F(ConditionsTest, TwoHostsMayWriteTheSameFiles) {
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

/// From here on this process has no more rights than others. Answers whether that could be done.
bool becomeNobody() {
    constexpr uid_t nobody = 65534;
    // Nobody may not be allowed to where the libraries are.
    loadLibrary();
    dlopen(fs::path{BUILT_LIBRARY}.replace_filename("libostrelix.so").c_str(), RTLD_NOW);
    return geteuid() != 0 || seteuid(nobody) == 0;
}

std::string callAsNobody(const Source& source) {
    return inChild([&] { return becomeNobody() ? call(source) : "no"; }).text;
}

bool isBoundToBeRoot() {
    return inChild([] { return becomeNobody() ? "" : "yes"; }).text == "yes";
}

TEST_F(ConditionsTest, OldFilesThatMayNotBeWrittenStay) {
    if (isBoundToBeRoot()) {
        GTEST_SKIP() << "root may write everything";
    }
    const std::pair<Source, std::string> cases[]{
        {andi, "0 two.sli: Error writing Merivolta Slice File two.sli"},
        {aPair, "0 run.cdf: Error writing Andi File run.cdf"},
        {aRun, "0 dad_run.run: Error writing Andi File dad_run3.cdf"}};
    for (const bool areThere : {false, true}) {
        for (const auto& [name, bytes] : outputs) {
            if (areThere) {
                fs::permissions(folder.write(name, bytes), fs::perms{0444});
            }
        }
        fs::permissions(".", fs::perms{0555});
        for (const auto& [source, answer] : cases) {
            EXPECT_EQ(callAsNobody(source), answer);
        }
        fs::permissions(".", fs::perms{0755});
        EXPECT_EQ(wrongOutputs() == "", areThere);
        EXPECT_EQ(fs::exists("run.cdf"), areThere);
    }
}

TEST_F(ConditionsTest, PipesDevicesAndWhatMayNotBeReadAreNoSources) {
    const std::pair<std::string, std::pair<Source, std::string>> cases[]{
        {"two.cdf", {andi, "0 two.cdf: Error opening Andi file two.cdf"}},
        {"run.sli", {aPair, "0 run.sli: Error opening Merivolta Raw Data file run.sli"}},
        {"run.rpt", {aPair, "0 run.rpt: Error opening Merivolta Report file run.rpt"}},
        {"dad_run.run", {aRun, "0 dad_run.run: Unable to open\r\n\"dad_run.run\""}}};
    if (isBoundToBeRoot()) {
        GTEST_SKIP() << "root may read everything";
    }
    fs::permissions(".", fs::perms{0777});
    for (const auto& [name, outcome] : cases) {
        fs::rename(name, "kept");
        for (const std::string kind : {"pipe", "device", "secret"}) {
            kind == "pipe"     ? void(mkfifo(name.c_str(), 0666))
            : kind == "device" ? fs::create_symlink("/dev/zero", name)
                               : fs::permissions(folder.write(name, readFile("kept")), fs::perms{});
            EXPECT_EQ(callAsNobody(outcome.first), outcome.second) << kind;
            fs::remove(name);
        }
        fs::rename("kept", name);
    }
    EXPECT_EQ(problems(), "");
}

TEST_F(ConditionsTest, ReadsAndWritesThroughLinks) {
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

TEST_F(ConditionsTest, ADecimalCommaOfTheHostChangesNothing) {
    const AndiText text{.globals = "12 2 'actual_sampling_interval' 2 4 \"0.25\" "
                                   "'retention_unit' 2 7 \"Minutes\""};
    folder.write("text.cdf", text.bytes());
    const auto convert = [&] {
        setenv("LOCPATH", TEST_DATA "locales", 1);
        std::setlocale(LC_ALL, "de_DE.UTF-8");
        const std::string point = std::localeconv()->decimal_point;
        const std::string answer = call("Andi2Merivolta", "text.cdf");
        return point + answer + problems();
    };
    EXPECT_EQ(inChild(convert).text, ",1 text.sli: Wrote Merivolta file text.sli");
    EXPECT_EQ(readFile("text.sli").substr(12, 2), little(std::int16_t{15'000})) << "milliseconds";
}

} // namespace
} // namespace korlit
