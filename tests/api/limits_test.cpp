// What the built library does with little: of memory, descriptors, room and rights, and with files
// that announce more than they have.
#include "tests/support/andi_text.h"
#include "tests/support/built_library.h"

#include <sys/stat.h>

#include <csignal>
#include <vector>

namespace korlit {
namespace {

using namespace test;
namespace fs = std::filesystem;

using LimitsTest = BuiltLibraryTest;

const Source idleCall{"Andi2Dunvale", ""};

void limit(decltype(RLIMIT_AS) resource, rlim_t most = RLIM_INFINITY) {
    rlimit both{};
    getrlimit(resource, &both);
    both.rlim_cur = std::min(most, both.rlim_max);
    setrlimit(resource, &both);
}

/// The start of a run of one channel up to its samples, of which it announces so many.
std::string runOf(int pointCount) {
    const std::string signal = " 30000s 2d 'mAU':20 r16 1f 6f";
    return RunText{.signal = "r52 " + std::to_string(pointCount) + signal}.bytes().substr(0, 418);
}

TEST_F(LimitsTest, GiantsFindNoMemoryInALittleAddressSpace) {
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
        {{andi.first, "list.cdf"},
         "ReadAndi 5: Error allocating memory\n0 list.cdf: " + untouchedMessage},
        {{andi.first, "name.cdf"}, "0 name.cdf: Error reading Andi File name.cdf"},
        {{andi.first, "data.cdf"}, "0 data.cdf: Out of Memory reading Andi File data.cdf"},
        {{andi.first, "points.cdf"}, "0 points.sli: Out of memory reading data"},
        {{aPair.first, "slice.sli"}, "0 slice.sli: Out of memory reading file slice.sli"},
        {{aRun.first, "whole.run"}, "0 whole.run: Out of Memory !!!\r\nNo Mem for plpfData[0]."}};
    for (const auto& [source, answer] : cases) {
        const auto convert = [&, &source = source] {
            limit(RLIMIT_AS, 512 * mebibyte);
            const std::string text = call(source);
            return text + problems();
        };
        EXPECT_EQ(inChild(convert).text, answer);
    }
}

TEST_F(LimitsTest, AFileSizeLimitIsAFailedWriteAndNoSignal) {
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

TEST_F(LimitsTest, TellsWhichFileFoundNoDescriptor) {
    const Source older{aPair.first, "old.sli"};
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

TEST_F(LimitsTest, AHostileFileTakesLittleMemoryAndTime) {
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
        const Source source{isRun ? aRun.first : andi.first, path};
        const Ending idle = inChild([] { return call(idleCall); });
        const Ending ending = inChild([&] { return call(source); });
        EXPECT_EQ(ending.text, answer);
        const std::int64_t taken = ending.peakBytes - idle.peakBytes;
        if (!isSanitized) {
            EXPECT_LE(taken, 16 * std::ssize(bytes) + (isRun ? 72 : 8) * mebibyte) << path;
            EXPECT_LT(ending.seconds, 1) << path;
        }
        // `scripts/measure` reads it.
        std::cout << "hostile " << path << ' ' << bytes.size() << ' ' << taken << ' '
                  << ending.seconds << std::endl; // before the next child has a copy of it
    }
    EXPECT_EQ(fs::file_size("large.sli"), 2060);
    EXPECT_NE(readFile("within1.cdf").find(std::string(64 * mebibyte, '\0')), std::string::npos);
    EXPECT_NE(folder.dump("peaks1.cdf", "-h").find("peak_number = 32767"), std::string::npos);
    EXPECT_EQ(folder.dump("peaks9.cdf", "-h").find("peak_number ="), std::string::npos);
}

/// Converts in a process that has no more rights than others; "bound" where it can't give up its
/// own.
std::string callAsNobody(const Source& source) {
    const auto convert = [&] {
        constexpr uid_t nobody = 65534;
        // Nobody may not be allowed to where the libraries are.
        loadLibrary();
        dlopen(builtSibling.c_str(), RTLD_NOW);
        return geteuid() != 0 || seteuid(nobody) == 0 ? call(source) : "bound";
    };
    return inChild(convert).text;
}

TEST_F(LimitsTest, OldFilesThatMayNotBeWrittenStay) {
    const std::pair<Source, std::string> cases[]{
        {andi, "0 two.sli: Error writing Merivolta Slice File two.sli"},
        {aPair, "0 run.cdf: Error writing Andi File run.cdf"},
        {aRun, "0 dad_run.run: Error writing Andi File dad_run3.cdf"}};
    if (callAsNobody(idleCall) == "bound") {
        GTEST_SKIP() << "root may write everything";
    }
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

TEST_F(LimitsTest, PipesDevicesAndWhatMayNotBeReadAreNoSources) {
    struct {
        std::string name;
        Source source;
        std::string answer;
    } const cases[]{{"two.cdf", andi, "0 two.cdf: Error opening Andi file two.cdf"},
                    {"run.sli", aPair, "0 run.sli: Error opening Merivolta Raw Data file run.sli"},
                    {"run.rpt", aPair, "0 run.rpt: Error opening Merivolta Report file run.rpt"},
                    {"dad_run.run", aRun, "0 dad_run.run: Unable to open\r\n\"dad_run.run\""}};
    if (callAsNobody(idleCall) == "bound") {
        GTEST_SKIP() << "root may read everything";
    }
    fs::permissions(".", fs::perms{0777});
    for (const auto& [name, source, answer] : cases) {
        fs::rename(name, "kept");
        for (const std::string kind : {"pipe", "device", "secret"}) {
            kind == "pipe"     ? void(mkfifo(name.c_str(), 0666))
            : kind == "device" ? fs::create_symlink("/dev/zero", name)
                               : fs::permissions(folder.write(name, readFile("kept")), fs::perms{});
            EXPECT_EQ(callAsNobody(source), answer) << kind;
            fs::remove(name);
        }
        fs::rename("kept", name);
    }
    EXPECT_EQ(problems(), "");
}

} // namespace
} // namespace korlit
