#include "platform/cfile.h"
#include "platform/files.h"
#include "platform/global_memory.h"
#include "platform/profile.h"
#include "platform/text.h"
#include "tests/support/module_test.h"
#include "tests/support/own_devices.h"

#include <sys/stat.h>

namespace korlit {
namespace {

using Files = test::ModuleTest;

TEST(GlobalMemory, RefusesWhatA32BitProcessCouldNotHave) {
    for (const std::int64_t refused : {std::int64_t{-1}, globalAllocLimit, INT64_MAX, INT64_MIN}) {
        EXPECT_EQ(GlobalAlloc(refused), nullptr) << refused;
    }
    GlobalHandle noBytes = GlobalAlloc(0);
    EXPECT_NE(noBytes, nullptr);
    EXPECT_EQ(GlobalLock(noBytes), nullptr);
    EXPECT_EQ(GlobalFree(noBytes), nullptr);
}

TEST(GlobalMemory, IsZeroAndItsOwnAtAnySize) {
    constexpr std::int64_t page = 2L * 1024 * 1024;
    for (const std::int64_t size : {std::int64_t{1}, page - 17, page - 16, page, 3 * page + 1}) {
        GlobalHandle first = GlobalAlloc(size);
        GlobalHandle second = GlobalAlloc(size);
        auto* bytes = static_cast<char*>(GlobalLock(first));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bytes) % alignof(std::max_align_t), 0U);
        EXPECT_EQ(GlobalSize(first), size);
        EXPECT_EQ(std::count(bytes, bytes + size, '\0'), size);
        std::fill(bytes, bytes + size, 'x');
        const auto* others = static_cast<const char*>(GlobalLock(second));
        EXPECT_EQ(std::count(others, others + size, '\0'), size);
        GlobalFree(first);
        GlobalFree(second);
    }
}

TEST_F(Files, ReadsThroughAndPastTheWindow) {
    std::string content(200000, '\0');
    for (std::size_t i = 0; i < content.size(); ++i) {
        content[i] = static_cast<char>(i * 7 + i / 251);
    }
    const int file = _lopen(folder.write("x", content).c_str());
    ASSERT_GT(file, 0);
    // Places and sizes: within the window, across its end, past it in one go, back, across the end,
    // a header and data far behind it by turns.
    using Read = std::pair<std::int64_t, std::int64_t>;
    const Read reads[]{{0, 4},       {65530, 4},   {65534, 8},   {10, 150000},
                       {20, 100000}, {20, 4},      {199990, 20}, {65536, 65536},
                       {0, 16},      {190000, 16}, {4, 16},      {130000, 16},
                       {8, 16},      {65534, 16},  {66000, 16},  {12, 16}};
    for (const auto& [place, size] : reads) {
        const std::string expected =
            content.substr(static_cast<std::size_t>(place), static_cast<std::size_t>(size));
        std::string bytes(expected.size(), '?');
        EXPECT_EQ(_llseek(file, place, SeekOrigin::Start), place);
        EXPECT_EQ(_hread(file, bytes.data(), size), std::ssize(expected));
        EXPECT_EQ(bytes, expected);
        EXPECT_EQ(_llseek(file, 0, SeekOrigin::Current), place + std::ssize(expected));
    }
    char byte = 0;
    EXPECT_EQ(_llseek(file, -1, SeekOrigin::Start), fileError);
    EXPECT_EQ(_hread(file, &byte, 1), fileError) << "nowhere in the file";
    EXPECT_EQ(_hwrite(file, &byte, 1), fileError) << "it is open for reading";
    EXPECT_EQ(_llseek(file, INT64_MAX, SeekOrigin::Start), INT64_MAX);
    EXPECT_EQ(_llseek(file, 1, SeekOrigin::Current), fileError);
    EXPECT_EQ(_lclose(file), 0);
    EXPECT_EQ(_lclose(file), fileError);
    EXPECT_EQ(_hread(file, &byte, 1), fileError);
}

TEST_F(Files, WritesThroughAndPastTheWindows) {
    using Writes = std::vector<std::pair<std::size_t, std::size_t>>; // place and size
    // Adjoining, patched in the window, past it, patched on disk, behind a gap, the window full to
    // the byte and one byte more, ahead of the window, a gap within one.
    const Writes mixed{{0, 4},         {4, 60000},   {2, 4},       {60004, 5532},   {65536, 1},
                       {65537, 70000}, {1, 8},       {200000, 4},  {200004, 65532}, {265536, 65535},
                       {331071, 1},    {199990, 20}, {400000, 10}, {400011, 10}};
    // A header that is patched for each stretch of data, whose end is written over from ahead.
    const Writes byTurns{{0, 1000},      {500, 4},    {1000, 50000}, {50998, 4},      {700, 5},
                         {51002, 70000}, {121000, 4}, {3, 6},        {121004, 65536}, {186538, 4},
                         {536, 6},       {186542, 8}, {186548, 4}};
    const Writes files[]{mixed,
                         byTurns,
                         // into what the other window holds, from ahead of it or over all of it
                         {{0, 100}, {150, 100}, {100, 100}},
                         {{150, 100}, {0, 100}, {100, 100}},
                         {{70000, 10}, {66000, 65536}},
                         {{0, 10}, {70000, 10}, {66000, 65536}, {65999, 4}},
                         // over the first byte alone of what the other window holds, and over the
                         // last, and into that window once more; with either window in front
                         {{70000, 10}, {0, 10}, {70005, 1}, {69000, 1001}, {70006, 1}},
                         {{300000, 1}, {70000, 10}, {0, 10}, {70005, 1}, {69000, 1001}, {70006, 1}},
                         {{0, 65000}, {200000, 10}, {10, 1}, {64999, 1000}, {11, 1}},
                         {{200000, 10}, {0, 65000}, {64999, 1000}, {10, 1}}};
    for (const Writes& writes : files) {
        const std::string path = folder.path("x");
        const int file = _lcreat(path.c_str());
        std::string expected;
        char fill = 'a';
        for (const auto& [place, size] : writes) {
            const std::string bytes(size, fill++);
            expected.resize(std::max(expected.size(), place + size));
            expected.replace(place, size, bytes);
            _llseek(file, static_cast<std::int64_t>(place), SeekOrigin::Start);
            EXPECT_EQ(_hwrite(file, bytes.data(), std::ssize(bytes)), std::ssize(bytes));
        }
        EXPECT_EQ(_hread(file, &fill, 1), fileError) << "it is open for writing";
        EXPECT_EQ(_lclose(file), 0);
        EXPECT_EQ(test::readFile(path), expected);
    }
}

TEST_F(Files, ALostByteShowsInTheNextWriteOrOnClosing) {
    const std::string bytes(65535, 'x');
    const int full = _lcreat("/dev/full");
    EXPECT_EQ(_hwrite(full, bytes.data(), 65535), 65535);
    EXPECT_EQ(_hwrite(full, "x", 1), 1);
    EXPECT_EQ(_hwrite(full, "x", 1), 0);
    EXPECT_EQ(_lclose(full), fileError);
}

TEST_F(Files, ACFileReadsAcrossItsWindow) {
    std::string bytes(50000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(i * 31 / 7);
    }
    const std::string path = folder.write("x", bytes);
    for (const std::size_t size : {1U, 7U, 1000U, 16383U, 16384U, 16385U, 40000U, 60000U}) {
        SCOPED_TRACE(size);
        CFile file;
        ASSERT_TRUE(file.Open(path.c_str()));
        std::size_t place = 0;
        for (std::size_t step = 0; place < bytes.size(); ++step) {
            const std::size_t wanted = step % 3 == 1 ? 5 : size;
            std::string read(wanted, '?');
            const std::string expected = bytes.substr(place, wanted);
            ASSERT_EQ(file.Read(read.data(), std::ssize(read)), std::ssize(expected)) << place;
            ASSERT_EQ(read.substr(0, expected.size()), expected) << place;
            file.Skip(step % 3 == 2 ? 3 : 0);
            place += expected.size() + (step % 3 == 2 ? 3 : 0);
        }
        EXPECT_EQ(file.GetRemaining(), 0);
    }
}

TEST_F(Files, TheEndOfAFileThatGrowsIsFinal) {
    CFile file;
    char bytes[4]{};
    ASSERT_TRUE(file.Open(folder.write("x", "abc").c_str()));
    EXPECT_EQ(file.Read(bytes, 2), 2);
    EXPECT_EQ(file.Read(bytes, 2), 1);
    folder.write("x", "abcdefgh");
    EXPECT_EQ(file.Read(bytes, 0), 0);
    EXPECT_EQ(file.Read(bytes, 4), 0);
    EXPECT_EQ(file.GetRemaining(), 0);
    EXPECT_STREQ(bytes, "cb");
    // What was read of the last file is none of the next.
    for (const std::string text : {"ABCDEFGH", "12345678"}) {
        ASSERT_TRUE(file.Open(folder.write("x", text).c_str()));
        EXPECT_EQ(file.Read(bytes, 3), 3);
        EXPECT_EQ(bytes, text.substr(0, 3));
        EXPECT_EQ(file.GetRemaining(), 5);
    }
}

TEST_F(Files, AReadThatFailsIsNoEnd) {
    // No process has anything at address 0.
    const char* const unreadable = "/proc/self/mem";
    CFile file;
    char byte = 'x';
    ASSERT_TRUE(file.Open(unreadable));
    EXPECT_EQ(file.Read(&byte, 1), -1);
    EXPECT_EQ(file.Read(&byte, 1), -1);
    const int handle = _lopen(unreadable);
    EXPECT_EQ(_hread(handle, &byte, 1), 0);
    EXPECT_EQ(byte, 'x');
    EXPECT_EQ(_lclose(handle), 0);
}

TEST_F(Files, NothingIsCreatedOverAnOpenCFile) {
    const std::string path = folder.write("x", "abc");
    CFile file;
    CFile another;
    ASSERT_TRUE(file.Open(path.c_str()) && another.Open(path.c_str()));
    another.Close();
    EXPECT_EQ(_lcreat(path.c_str()), fileError);
    EXPECT_EQ(test::readFile(path), "abc");
    test::areDevicesOwn = true;
    EXPECT_EQ(_lclose(_lcreat(folder.write("other", "abc").c_str())), 0);
    EXPECT_EQ(_lcreat(path.c_str()), fileError);
    test::areDevicesOwn = false;
    file.Close();
    EXPECT_EQ(_lclose(_lcreat(path.c_str())), 0);
    EXPECT_EQ(test::readFile(path), "");
}

TEST_F(Files, OpensRegularFilesOnly) {
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(_lcreat(pipe.c_str()), fileError);
    for (const std::string& path : {pipe, folder.path(""), std::string{"/dev/zero"}}) {
        EXPECT_EQ(_lopen(path.c_str()), fileError) << path;
    }
}

TEST_F(Files, ProfileValuesAreFoundWithoutRegardToCase) {
    const std::string ini =
        folder.write("p.ini", "sShortDate=no section\n[Other]\nsShortDate=no\n"
                              "[ INTL ]\r\n x = 1\r\nSSHORTDATE = \"M/d/yy\" \r\n"
                              "sShortDate=second\nlong=12345678901234567890\n"
                              "single='d m'\nlone=\"\nmixed=\"d'\nempty=\"\"");
    const auto value = [](const char* section, const char* key) {
        char text[8]{};
        GetProfileStringA(section, key, "other", text);
        return std::string{text};
    };
    setenv("KORLIT_PROFILE", ini.c_str(), 1);
    // The second is cut at the end of the target.
    const std::array<const char*, 3> cases[]{
        {"intl", "sShortDate", "M/d/yy"}, {"intl", "Long", "1234567"}, {"intl", "single", "d m"},
        {"intl", "lone", "\""},           {"intl", "mixed", "\"d'"},   {"intl", "empty", ""},
        {"intl", "missing", "other"},     {"missing", "x", "other"}};
    for (const auto& [section, key, text] : cases) {
        EXPECT_EQ(value(section, key), text) << key;
    }
    setenv("KORLIT_PROFILE", folder.path("missing").c_str(), 1);
    EXPECT_EQ(value("intl", "sShortDate"), "other");
    unsetenv("KORLIT_PROFILE");
    EXPECT_EQ(value("intl", "sShortDate"), "other");
}

TEST(NumberText, ReadsAsScanfDoes) {
    using Long = std::pair<const char*, std::int32_t>;
    const Long longs[]{{"12", 12},
                       {" \t-3x", -3},
                       {"+7", 7},
                       {"4651.9", 4651},
                       {"\n\v\f\r5", 5},
                       {"99999999999", INT32_MAX},
                       {"-99999999999", INT32_MIN}};
    for (const auto& [text, number] : longs) {
        EXPECT_EQ(readLong(text), number) << text;
    }
    for (const char* text : {"+-7", "", "x1"}) {
        EXPECT_EQ(readLong(text), std::nullopt) << text;
    }
    using Float = std::pair<const char*, std::optional<float>>;
    const Float floats[]{{" 1.5 ", 1.5F}, {"+2E2", 200.0F}, {"-.5", -0.5F},
                         {"1,5", 1.0F},   {"min", {}},      {"1e99", {}}};
    for (const auto& [text, number] : floats) {
        EXPECT_EQ(readFloat(text), number) << text;
    }
    EXPECT_EQ(readShort("70000"), 4464);
    EXPECT_EQ(readShort("-99999999999"), 0);
}

} // namespace
} // namespace korlit
