// A sibling library that does wrong what STUB_SIBLING says.
#include "native/ostrelix.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

using namespace korlit;

namespace {

std::filesystem::path slicePath;

bool isTold(const std::string& what) {
    const char* told = std::getenv("STUB_SIBLING");
    return told != nullptr && told == what;
}

} // namespace

extern "C" std::int16_t ReadChromHeader(const char* path, SliHeader* header, std::int32_t zero) {
    if (isTold("throws")) {
        throw CFile{};
    }
    slicePath = path;
    CFile slice;
    const bool isRead = slice.Open(path) && slice.Read(header, sizeof *header) > 0 && zero == 0;
    for (const std::string extension : {"sli", "rpt"}) {
        if (isTold("removes " + extension)) {
            std::filesystem::remove(slicePath.replace_extension(extension));
        }
    }
    return isRead ? 1 : 0;
}

extern "C" std::int32_t GetSliDataOffSet(std::uint16_t /*version*/, std::uint32_t* offset) {
    for (const std::string extension : {"sli", "rpt"}) {
        if (isTold("shrinks " + extension)) { // by a few bytes, so that its last number is cut
            const auto file = slicePath.replace_extension(extension);
            std::filesystem::resize_file(file, std::filesystem::file_size(file) - 3);
        }
    }
    *offset = isTold("skips a sample") ? 2052 : 2048;
    return isTold("refuses") ? 0 : 77;
}

extern "C" std::int32_t FileReadError(const char* path) {
    std::fprintf(stderr, "refused %s\n", path);
    return 1;
}

extern "C" std::int32_t UpdateRepHeader(CFile* report, RepHeader* header, std::int32_t /*zero*/) {
    if (isTold("throws on update")) {
        throw 1;
    }
    // The report is open: what is read from it is the header as it stands there.
    return static_cast<std::int32_t>(report->Read(header, sizeof *header));
}
