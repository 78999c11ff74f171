// Moves on systems that lack some kinds of them, and beside those of other processes.
#include "host/system/moves.h"

#include "host/convert/delivery.h"
#include "host/system/file_identity.h"
#include "tests/support/own_devices.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <functional>

namespace {

/// What the system says of renames of a kind, and of links; 0 where it has them.
int errorOfKinds = 0;
int errorOfLinks = 0;
std::function<void()> beforeRename = [] {};

} // namespace

// They stand in front of those of the C library.
#pragma GCC visibility push(default)
extern "C" {
int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned kind) {
    beforeRename();
    errno = errorOfKinds;
    return kind != 0 && errorOfKinds != 0
               ? -1
               : static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, kind));
}
int link(const char* from, const char* to) {
    errno = errorOfLinks;
    return errorOfLinks != 0
               ? -1
               : static_cast<int>(syscall(SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0));
}
}
#pragma GCC visibility pop

namespace korlit::host {
namespace {

using test::readFile;
namespace fs = std::filesystem;

class Moves : public testing::Test {
  protected:
    ~Moves() override { errorOfKinds = errorOfLinks = 0; }

    /// Runs a case on each system.
    template <typename Case>
    void onEachSystem(Case run) {
        for (const auto& [kinds, links] :
             std::initializer_list<std::pair<int, int>>{{0, 0},
                                                        {EINVAL, 0},
                                                        {ENOSYS, EPERM},
                                                        {EOPNOTSUPP, EOPNOTSUPP},
                                                        {EINVAL, EMLINK}}) {
            SCOPED_TRACE(std::to_string(kinds) + " and " + std::to_string(links));
            errorOfKinds = kinds;
            errorOfLinks = links;
            for (const auto& entry : fs::directory_iterator{folder.path("")}) {
                fs::remove_all(entry.path());
            }
            run();
        }
    }

    test::TempFolder folder;
    const fs::path staged = folder.path("staged");
    const fs::path place = folder.path("place");
    const fs::path aside = folder.path("aside");
};

TEST_F(Moves, NeverGoOverWhatIsThere) {
    onEachSystem([&] {
        folder.write("staged", "new");
        EXPECT_EQ(moveToFreePlace(staged, place), std::error_code{});
        EXPECT_EQ(readFile(place), "new");
        EXPECT_FALSE(fs::exists(staged));
        EXPECT_EQ(moveToFreePlace(staged, aside), std::errc::no_such_file_or_directory);
        EXPECT_EQ(moveToFreePlace(place, folder.path("none/place")),
                  std::errc::no_such_file_or_directory);
        for (const std::string kind : {"file", "folder", "link", "itself"}) {
            folder.write("staged", "new");
            fs::remove_all(place);
            kind == "file"     ? void(folder.write("place", "old"))
            : kind == "folder" ? void(fs::create_directory(place))
            : kind == "link"
                ? fs::create_symlink("nowhere", place)
                : void(syscall(SYS_linkat, AT_FDCWD, staged.c_str(), AT_FDCWD, place.c_str(), 0));
            const auto before = occupantOf(place);
            EXPECT_EQ(moveToFreePlace(staged, place), std::errc::file_exists) << kind;
            EXPECT_EQ(occupantOf(place), before);
            EXPECT_EQ(readFile(staged), "new");
        }
    });
}

TEST_F(Moves, ExchangeTwoFilesOrLeaveThem) {
    onEachSystem([&] {
        folder.write("staged", "new");
        EXPECT_EQ(exchange(staged, place, aside), std::errc::no_such_file_or_directory);
        EXPECT_EQ(readFile(staged), "new");
        folder.write("place", "old");
        EXPECT_EQ(exchange(staged, place, aside), std::error_code{});
        EXPECT_EQ(readFile(place), "new");
        EXPECT_EQ(readFile(staged), "old");
        EXPECT_FALSE(occupantOf(aside));
    });
}

// Each state that a kill can leave, and what is in its place, staged and aside behind the end of
// it.
TEST_F(Moves, AreEndedFromAnyStateThatAKillLeaves) {
    struct State {
        const char *staged, *place, *aside;
        bool operator==(const State&) const = default;
    };
    const std::pair<State, std::array<std::string, 3>> cases[]{
        {{"new", "", ""}, {"new", "", ""}},
        {{"new", "old", ""}, {"new", "old", ""}},
        // the old file is out of its place, for the new one or on its way back
        {{"new", "", "old"}, {"new", "old", ""}},
        {{"", "new", "old"}, {"old", "new", ""}},
        {{"", "new", ""}, {"", "new", ""}},
        // somebody else has come to the place
        {{"new", "other", "old"}, {"new", "other", "old"}},
        // a second name of the same file
        {{"twin", "new", ""}, {"", "new", ""}},
        {{"twin", "new", "old"}, {"old", "new", ""}}};
    onEachSystem([&] {
        for (const auto& [before, after] : cases) {
            for (const fs::path& each : {staged, place, aside}) {
                fs::remove(each);
            }
            const auto make = [&](const char* name, const std::string& bytes) {
                if (bytes == "twin") {
                    syscall(SYS_linkat, AT_FDCWD, place.c_str(), AT_FDCWD, staged.c_str(), 0);
                } else if (!bytes.empty()) {
                    folder.write(name, bytes);
                }
            };
            make("place", before.place);
            make("aside", before.aside);
            make("staged", before.staged);
            EXPECT_EQ(tidyMove(staged, place, aside), std::error_code{});
            EXPECT_EQ((std::array{readFile(staged), readFile(place), readFile(aside)}), after)
                << before.staged << ' ' << before.place << ' ' << before.aside;
        }
    });
}

TEST_F(Moves, TellFilesOfEqualNumberOnTwoDevicesApart) {
    folder.write("staged", "new");
    folder.write("place", "other");
    fs::last_write_time(staged, fs::last_write_time(place));
    test::areDevicesOwn = true;
    EXPECT_EQ(identityOf(staged)->inode, identityOf(place)->inode);
    EXPECT_NE(identityOf(staged), identityOf(place));
    // One that is no second name of what is in place is not taken away.
    EXPECT_EQ(tidyMove(staged, place, aside), std::error_code{});
    EXPECT_EQ(readFile(staged), "new");
    test::areDevicesOwn = false;
}

class Deliveries : public Moves {
  protected:
    ~Deliveries() override {
        beforeRename = [] {};
    }

    void put(const std::string& name) {
        lastPut = "theirs " + std::to_string(renameCount);
        syscall(SYS_renameat2, AT_FDCWD, folder.write("other", lastPut).c_str(), AT_FDCWD,
                folder.path(name).c_str(), 0);
    }

    /// Has another process act ahead of the n-th rename from now on, and of some behind it.
    void disturb(int nth, const std::function<void()>& act, int times = 1) {
        renameCount = 0;
        lastPut.clear();
        beforeRename = [this, nth, act, times] {
            if (++renameCount >= nth && renameCount < nth + times) {
                act();
            }
        };
    }

    /// Delivers the files a and b over old ones, while another process acts. Answers whether all
    /// came to their places.
    bool deliverBeside(int nth, const std::function<void()>& act, int times = 1) {
        WorkFolder work{folder.path("")};
        Delivery delivery{.moves = {}, .isReplacing = true, .record = "record"};
        for (const std::string name : {"a", "b"}) {
            folder.write(name, "old");
            folder.write(work.path().filename() / name, "new");
            delivery.moves.push_back({.stagedName = name, .path = folder.path(name)});
        }
        disturb(nth, act, times);
        try {
            deliver(delivery, work);
            return true;
        } catch (const fs::filesystem_error&) {
            return false;
        }
    }

    void deliverAndDie(int nth) {
        if (fork() == 0) {
            deliverBeside(nth, [] { _exit(0); });
            _exit(1);
        }
        wait(nullptr);
    }

    /// Whether what a process that is gone had begun is complete now.
    bool settle() const {
        std::string record;
        settleAbandoned(folder.path(""),
                        [&](WorkFolder& work) { record = settleDelivery(work).value_or(""); });
        return record == "record";
    }

    /// Both files are new, or both old where others have put one, which then stays.
    void expectWhole(bool isDone, const std::string& nameOfOthers) const {
        EXPECT_TRUE(isDone || !lastPut.empty());
        EXPECT_EQ(readFile(folder.path(nameOfOthers == "a" ? "b" : "a")), isDone ? "new" : "old");
        EXPECT_TRUE(lastPut.empty() || readFile(folder.path(nameOfOthers)) == lastPut);
    }

    int renameCount = 0;
    std::string lastPut;
};

TEST_F(Deliveries, AreWholeWhateverOthersPutOrTake) {
    onEachSystem([&] {
        ASSERT_TRUE(deliverBeside(0, [] {}));
        const int last = renameCount;
        for (const std::string name : {"a", "b"}) {
            // Without either kind a look must do, and nobody sees what comes right behind it.
            for (const bool isPutting : {false, errorOfLinks == 0}) {
                const auto act = [&] {
                    isPutting ? put(name) : void(fs::remove(folder.path(name)));
                };
                for (int times = 2; isPutting && errorOfKinds == 0 && times < 6; ++times) {
                    expectWhole(deliverBeside(1, act, times), name);
                    expectWhole(deliverBeside(2, act, times), name);
                }
                for (int nth = 1; nth <= last; ++nth) {
                    SCOPED_TRACE(name + std::to_string(isPutting) + std::to_string(nth));
                    expectWhole(deliverBeside(nth, act), name);
                    EXPECT_NE(readFile(folder.path(name)), "old");
                    // One that is killed leaves it to the next, who may meet others, too.
                    for (int turn = 0; isPutting && turn <= last + 2; ++turn) {
                        SCOPED_TRACE(turn);
                        deliverAndDie(nth);
                        disturb(turn, act);
                        turn == 0 ? act() : void();
                        expectWhole(settle(), name);
                    }
                }
            }
        }
    });
}

TEST_F(Deliveries, GoOverNoFolderAndOverNoFileThatIsToStay) {
    for (const bool isReplacing : {true, false}) {
        const std::string there = folder.path(isReplacing ? "folder" : "file");
        isReplacing ? void(fs::create_directory(there)) : void(folder.write("file", "old"));
        const auto before = occupantOf(there);
        WorkFolder work{folder.path("")};
        folder.write(work.path().filename() / "a", "new");
        const Delivery delivery{.moves = {{"a", there}}, .isReplacing = isReplacing, .record = ""};
        EXPECT_THROW(deliver(delivery, work), fs::filesystem_error);
        EXPECT_EQ(occupantOf(there), before);
    }
}

} // namespace
} // namespace korlit::host
