// Does a line of work through the library's exports, as a host does.
#include "api/exports.h"
#include "bench/work.h"

#include <cstring>
#include <vector>

using namespace korlit::bench;

namespace {

struct Direction {
    std::string_view name;
    const char* extension;
    int32_t (*convert)(char* path, char* message);
};

constexpr std::array<Direction, 3> directions{{
    {.name = "to-pair", .extension = ".cdf", .convert = Andi2Merivolta},
    {.name = "to-andi", .extension = ".sli", .convert = Merivolta2Andi},
    {.name = "run-to-andi", .extension = ".run", .convert = Dunvale2Andi},
}};

bool convert(const Direction& direction, const std::string& file) {
    std::vector<char> path(file.size() + KORLIT_PATH_ROOM);
    std::vector<char> message(file.size() + KORLIT_MESSAGE_ROOM + KORLIT_MESSAGE_MINIMUM);
    std::memcpy(path.data(), file.c_str(), file.size() + 1);
    if (direction.convert(path.data(), message.data()) == 1) {
        return true;
    }
    std::fprintf(stderr, "%s\n", message.data());
    return false;
}

} // namespace

int main(int argc, char** argv) {
    const Work work = readWork(std::span{argv + 1, static_cast<std::size_t>(argc - 1)});
    for (const Direction& direction : directions) {
        for (std::int64_t i = 0; direction.name == work.direction && i < work.conversions; ++i) {
            if (!convert(direction, pathOf(work, i, direction.extension))) {
                return 1;
            }
        }
    }
    return 0;
}
