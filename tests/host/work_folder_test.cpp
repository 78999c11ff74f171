// Whose a folder for files on their way is.
#include "host/system/work_folder.h"

#include "tests/support/own_devices.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <sys/syscall.h>
#include <unistd.h>

#include <functional>

namespace {

/// Called ahead of the next lock alone.
std::function<void()> beforeLock;
uid_t otherUser = 0; ///< who this process is instead, if anybody

} // namespace

// They stand in front of those of the C library.
#pragma GCC visibility push(default)
extern "C" {
// Under another name here, as there is a record of that name.
int lockFile(int file, int operation) asm("flock");
int lockFile(int file, int operation) {
    if (auto call = std::exchange(beforeLock, nullptr)) {
        call();
    }
    return static_cast<int>(syscall(SYS_flock, file, operation));
}
uid_t geteuid() {
    return otherUser != 0 ? otherUser : static_cast<uid_t>(syscall(SYS_geteuid));
}
}
#pragma GCC visibility pop

namespace korlit::host {
namespace {

namespace fs = std::filesystem;

class WorkFolders : public testing::Test {
  protected:
    ~WorkFolders() override { otherUser = 0; }

    std::vector<fs::path> found() const {
        return {fs::directory_iterator{parent}, fs::directory_iterator{}};
    }

    /// The notes of all that are abandoned; those are gone then.
    std::vector<std::string> settled() const {
        std::vector<std::string> notes;
        settleAbandoned(parent, [&](WorkFolder& work) {
            notes.push_back((work.isMarked() ? "marked " : "") + work.note());
        });
        return notes;
    }

    /// Leaves a folder with a note.
    void abandon(const std::string& note, bool isMarked = false) const {
        WorkFolder work{parent};
        work.write(note, false);
        if (isMarked) {
            work.mark();
        }
        work.leave();
    }

    using Notes = std::vector<std::string>;
    test::TempFolder folder;
    const fs::path parent = folder.path("");
};

TEST_F(WorkFolders, AreTakenOverWithTheirNoteOnce) {
    abandon("a longer note");
    abandon("", true);
    {
        WorkFolder held{parent};
        EXPECT_FALSE(held.write("of one that is at work", false));
        Notes notes = settled();
        std::ranges::sort(notes);
        EXPECT_EQ(notes, (Notes{"a longer note", "marked "}));
        EXPECT_EQ(found(), std::vector{held.path()});
        EXPECT_EQ(held.note(), "of one that is at work");
        EXPECT_FALSE(held.write("short", false));
        EXPECT_EQ(held.note(), "short");
        held.forget();
        EXPECT_EQ(held.note(), "");
    }
    EXPECT_EQ(found().size(), 0U);
}

TEST_F(WorkFolders, ANoteThatIsNotWholeIsNone) {
    abandon("twenty bytes of text");
    const fs::path lock = found().front() / "lock";
    const std::string whole = test::readFile(lock);
    for (std::size_t i = 0; i <= whole.size(); ++i) {
        for (const bool isCut : {true, false}) {
            std::string bytes = whole;
            isCut ? bytes.resize(i) : bytes.resize(whole.size() + 10);
            if (!isCut && i < whole.size()) {
                bytes[i] = static_cast<char>(bytes[i] ^ 4);
            }
            folder.write(lock.lexically_relative(parent), bytes);
            std::string note;
            settleAbandoned(parent, [&](WorkFolder& work) {
                note = work.note();
                work.leave();
            });
            // The first eight bytes say whether it is marked.
            const bool isWhole = isCut ? i == whole.size() : i < 8 || i == whole.size();
            EXPECT_EQ(note, isWhole ? "twenty bytes of text" : "") << i << isCut;
        }
    }
}

TEST_F(WorkFolders, OneThatIsClearedUpWhileItIsMadeIsMadeAnew) {
    beforeLock = [&] { fs::remove_all(found().front()); };
    const WorkFolder work{parent};
    EXPECT_TRUE(work.isInPlace());
    EXPECT_EQ(found(), std::vector{work.path()});
}

TEST_F(WorkFolders, OneThatIsSomebodyElsesByNowStays) {
    {
        const WorkFolder work{parent};
        fs::rename(work.path(), folder.path("moved")); // so that its number isn't given again
        fs::create_directory(work.path());
        folder.write(work.path().filename() / "lock", "theirs");
        for (const bool areOwn : {true, false}) {
            test::areDevicesOwn = areOwn;
            EXPECT_FALSE(work.isInPlace()) << areOwn;
        }
    }
    EXPECT_EQ(found().size(), 2U);
}

TEST_F(WorkFolders, ThoseOfOthersStay) {
    abandon("mine");
    otherUser = 4711;
    EXPECT_EQ(settled(), Notes{});
    otherUser = 0;
    ASSERT_EQ(found().size(), 1U);
    const fs::path lock = found().front() / "lock";
    for (const unsigned permissions : {0770U, 0720U, 0702U}) {
        fs::permissions(found().front(), fs::perms{permissions});
        EXPECT_EQ(settled(), Notes{});
    }
    fs::permissions(found().front(), fs::perms{0700});
    // Nor is a lock followed to elsewhere.
    fs::rename(lock, lock.string() + "ed");
    fs::create_symlink("locked", lock);
    EXPECT_EQ(settled(), Notes{});
    fs::rename(lock.string() + "ed", lock);
    EXPECT_EQ(settled(), Notes{"mine"});
}

} // namespace
} // namespace korlit::host
