// The built library on a system whose calls are counted, interrupted, cut short, and whose disk
// fills up.
#include "tests/support/andi_text.h"
#include "tests/support/built_library.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <cerrno>
#include <csignal>

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

using SystemCallsTest = BuiltLibraryTest;

/// Whether this may have become that whole file: values that are filled in later may be zero.
bool isBegun(const std::string& bytes, const std::string& whole) {
    return bytes.size() <= whole.size() &&
           std::ranges::equal(bytes, whole.substr(0, bytes.size()),
                              [](char is, char due) { return is == due || is == '\0'; });
}

TEST_F(SystemCallsTest, AFullDiskIsToldUnlessAllIsThere) {
    const std::pair<Source, std::vector<std::string>> cases[]{
        {andi, {"two.sli", "two.rpt"}},
        {aPair, {"run.cdf"}},
        {aRun, {"dad_run1.cdf", "dad_run2.cdf", "dad_run3.cdf"}}};
    for (const auto& [source, files] : cases) {
        std::size_t all = 0;
        for (const std::string& name : files) {
            all += outputs.at(name).size();
        }
        for (std::size_t room = 0; room <= all; room += room + 401 < all ? 401 : 1) {
            std::string left;
            std::string whole;
            for (const std::string& name : files) {
                std::filesystem::remove(name);
            }
            diskRoom = static_cast<std::int64_t>(room);
            const std::string answer = call(source);
            diskRoom = INT64_MAX;
            for (const std::string& name : files) {
                EXPECT_TRUE(isBegun(readFile(name), outputs.at(name))) << name << ' ' << room;
                left += readFile(name);
                whole += outputs.at(name);
            }
            EXPECT_EQ(answer == answers.at(source), left == whole) << room;
            EXPECT_EQ(left == whole, room == all) << room;
        }
    }
}

TEST_F(SystemCallsTest, FewCallsMoveAWholeFileAndNoChildInheritsIt) {
    // Header and data far behind it by turns, through two windows.
    for (const auto& [source, most] : std::map<Source, int>{{andi, 4}, {aPair, 4}, {aRun, 33}}) {
        transferCount = 0;
        flagsOfAll = ~0;
        EXPECT_EQ(call(source), answers.at(source));
        EXPECT_LE(transferCount, most) << source.second;
        EXPECT_NE(flagsOfAll & O_CLOEXEC, 0);
    }
}

TEST_F(SystemCallsTest, ALongSignalMovesInPartsAndKeepsItsBitsBothWays) {
    const std::int32_t count = 2'000'001;
    std::string samples;
    std::string reversed;
    for (std::int32_t i = 0; i < count; ++i) {
        const std::string sample = little(static_cast<float>(i % 1001 - 500) / 7.0F);
        samples += sample;
        reversed.append(sample.rbegin(), sample.rend());
    }
    std::string header = readFile("run.sli").substr(0, 2048);
    header.replace(0, 4, little(count)).replace(1816, 8, little(1.0));
    folder.write("long.sli", header + samples);
    folder.write("long.rpt", readFile("run.rpt"));
    for (const Source& source : {Source{aPair.first, "long.sli"}, {andi.first, "long.cdf"}}) {
        largestTransfer = 0;
        EXPECT_EQ(call(source).front(), '1');
        EXPECT_TRUE(largestTransfer >= mebibyte && largestTransfer <= 4 * mebibyte)
            << largestTransfer;
    }
    EXPECT_NE(readFile("long.cdf").find(reversed), std::string::npos);
    EXPECT_NE(folder.dump("long.cdf", "-h").find("point_number = 2000001"), std::string::npos);
    const std::string slice = readFile("long.sli");
    EXPECT_TRUE(slice.substr(2048) == samples);
    EXPECT_EQ(slice.substr(4, 8), little(-500.0F / 7.0F) + little(500.0F / 7.0F));
}

TEST_F(SystemCallsTest, SignalsOnlyInterrupt) {
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

} // namespace
} // namespace korlit
