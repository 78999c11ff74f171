// What a file holds when the disk takes no more.
#include "platform/file_size_signal.h"
#include "platform/files.h"
#include "tests/support/module_test.h"

#include <sys/resource.h>

#include <utility>
#include <vector>

namespace korlit {
namespace {

using LostWrites = test::ModuleTest;

/// Largest size that a file of this process may have, for as long as it lives.
class FileSizeLimited {
  public:
    explicit FileSizeLimited(rlim_t most) {
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limited{.rlim_cur = most, .rlim_max = before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    FileSizeLimited(const FileSizeLimited&) = delete;
    FileSizeLimited& operator=(const FileSizeLimited&) = delete;
    ~FileSizeLimited() { setrlimit(RLIMIT_FSIZE, &before); }

  private:
    FileSizeSignalHeld held;
    rlimit before{};
};

/// Places and sizes.
using PlacedWrites = std::vector<std::pair<std::int64_t, std::int64_t>>;

struct Written {
    std::string bytes; ///< of the file
    bool isWhole;
    bool operator==(const Written&) const = default;
};

/// What becomes of these writes, the first of 'a', the second of 'b' and so on, in a file that may
/// have `most` bytes.
Written writtenWithin(rlim_t most, const std::string& path, const PlacedWrites& writes) {
    const FileSizeLimited limited{most};
    const int file = _lcreat(path.c_str());
    char fill = 'a';
    for (const auto& [place, size] : writes) {
        const std::string bytes(static_cast<std::size_t>(size), fill++);
        _llseek(file, place, SeekOrigin::Start);
        _hwrite(file, bytes.data(), size);
    }
    const bool isWhole = _lflush(file) == 0;
    _llseek(file, 0, SeekOrigin::Start);
    EXPECT_TRUE(isWhole || _hwrite(file, "z", 1) == 0);
    EXPECT_EQ(_lclose(file), isWhole ? 0 : fileError);
    return {test::readFile(path), isWhole};
}

TEST_F(LostWrites, NothingGoesOutBehindALoss) {
    const std::string ten(10, 'a');
    const std::pair<PlacedWrites, std::string> cases[]{
        {{{0, 10}, {100000, 10}}, ten},
        // What comes behind the loss would find room: it lies ahead of it.
        {{{100000, 10}, {0, 10}}, ""},
        {{{100000, 10}, {0, 65536}}, ""},
        {{{100000, 65536}, {0, 10}}, ""},
        {{{100000, 65536}, {0, 65536}}, ""},
        {{{0, 10}, {100000, 10}, {20, 10}, {300000, 10}, {5, 65536}}, ten},
        {{{0, 65536}, {65536, 9999}, {0, 10}}, std::string(65536, 'a') + std::string(4464, 'b')},
        {{{65536, 9999}, {0, 65536}}, std::string(65536, '\0') + std::string(4464, 'a')}};
    for (const auto& [writes, left] : cases) {
        EXPECT_TRUE(writtenWithin(70000, folder.path("x"), writes) == (Written{left, false}))
            << writes.size() << " from " << writes.front().first;
    }
}

TEST_F(LostWrites, WhatFindsNoRoomLeavesWhatCameAheadOfIt) {
    PlacedWrites writes;
    std::string whole;
    std::vector<std::size_t> ends{1};
    for (const int size : {100, 65436, 1, 65535, 65536, 2}) {
        writes.emplace_back(std::ssize(whole), size);
        whole.append(static_cast<std::size_t>(size), static_cast<char>('`' + ends.size()));
        ends.push_back(whole.size());
    }
    for (const std::size_t end : ends) {
        for (const std::size_t room : {end - 1, end, end + 1}) {
            EXPECT_TRUE(writtenWithin(room, folder.path("x"), writes) ==
                        (Written{whole.substr(0, room), room >= whole.size()}))
                << room;
        }
    }
}

} // namespace
} // namespace korlit
