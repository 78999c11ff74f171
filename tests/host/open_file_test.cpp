// What is done to a file and to standard error through their descriptors.
#include "host/system/open_file.h"

#include "host/system/standard_error.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

namespace korlit::host {
namespace {

TEST(OpenFileTest, MovesTheRestOfAFileEitherWay) {
    const test::TempFolder folder;
    constexpr std::int64_t part = 1024L * 1024;
    std::string bytes(2 * part + 103, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    }
    for (const std::int64_t rest : {0L, 1L, part - 1, part, part + 1, 2 * part + 3}) {
        for (const std::int64_t distance : {-100L, -1L, 1L, 100L}) {
            const OpenFile file{folder.write("x", bytes), OpenFile::Use::Change};
            file.moveRest(std::ssize(bytes) - rest, distance);
            // What lies between is whatever was there.
            std::string expected = bytes;
            expected.resize(static_cast<std::size_t>(std::ssize(bytes) + distance));
            expected.replace(expected.size() - static_cast<std::size_t>(rest), std::string::npos,
                             bytes, bytes.size() - static_cast<std::size_t>(rest));
            std::string moved(expected.size() + 1, '\0');
            moved.resize(
                static_cast<std::size_t>(file.read(0, std::as_writable_bytes(std::span{moved}))));
            EXPECT_TRUE(moved == expected) << rest << " by " << distance;
        }
    }
}

TEST(StandardErrorTest, OfAForkIsItsOwn) {
    { const StandardErrorCapture first; }
    const StandardErrorCapture capture;
    EXPECT_EQ(write(STDERR_FILENO, "parent ", 7), 7);
    const pid_t child = fork();
    if (child == 0) {
        const StandardErrorCapture own;
        const bool isWritten = write(STDERR_FILENO, "child", 5) == 5;
        _exit(isWritten && own.text() == "child" ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    const StandardErrorCapture inner;
    EXPECT_EQ(write(STDERR_FILENO, "again", 5), 5);
    EXPECT_EQ(inner.text(), "again");
    EXPECT_EQ(capture.text(), "parent again");
}

} // namespace
} // namespace korlit::host
