// Runs the target on every file of a folder.
#include "fuzz/input.h"

#include <cstdio>
#include <memory>

// NOLINTNEXTLINE(bugprone-exception-escape): what can't be read ends the replay
int main(int argumentCount, char** arguments) {
    int inputs = 0;
    for (const auto& entry : std::filesystem::directory_iterator{arguments[argumentCount - 1]}) {
        const std::string content = korlit::fuzz::readAll(entry.path());
        // A block of exactly the input's size, so that a sanitizer sees what is read behind it.
        const auto data = std::make_unique<std::uint8_t[]>(content.size());
        std::ranges::copy(content, data.get());
        std::fprintf(stderr, "%s\n", entry.path().c_str());
        LLVMFuzzerTestOneInput(data.get(), content.size());
        ++inputs;
    }
    return inputs > 0 ? 0 : 1;
}
