// Runs the target on every file of the folders named.
#include "fuzz/input.h"

#include <cstdio>
#include <exception>
#include <iterator>
#include <memory>

namespace {

void run(const std::filesystem::path& path) {
    std::ifstream in{path, std::ios::binary};
    const std::string content{std::istreambuf_iterator<char>{in}, {}};
    // A block of exactly the input's size, so that a sanitizer sees what is read behind it.
    const auto data = std::make_unique<std::uint8_t[]>(content.size());
    std::ranges::copy(content, data.get());
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(data.get(), content.size());
}

int replay(std::span<char*> folders) {
    int inputs = 0;
    for (const char* folder : folders) {
        for (const auto& entry : std::filesystem::directory_iterator{folder}) {
            run(entry.path());
            ++inputs;
        }
    }
    std::printf("%d inputs\n", inputs);
    return inputs > 0 ? 0 : 1;
}

} // namespace

int main(int argumentCount, char** arguments) {
    try {
        return replay({arguments + 1, arguments + argumentCount});
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "%s\n", fault.what());
        return 1;
    }
}
