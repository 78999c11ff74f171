// A sibling library that is told when it is built what to leave out or do wrong.
#include "native/ostrelix.h"

#include <cstdio>
#include <filesystem>

using namespace korlit;

#ifdef SHRINKS
static std::filesystem::path slicePath;
#endif

#ifndef WITHOUT_READ_CHROM_HEADER
extern "C" std::int16_t ReadChromHeader(const char* path, SliHeader* header, std::int32_t zero) {
#ifdef THROWS_AT_ONCE
    throw CFile{};
#endif
    CFile slice;
    const bool isRead = slice.Open(path) && slice.Read(header, sizeof *header) > 0 && zero == 0;
#ifdef VANISHES
    std::filesystem::remove(std::filesystem::path{path}.replace_extension(VANISHES));
#endif
#ifdef SHRINKS
    slicePath = path;
#endif
    return isRead ? 1 : 0;
}
#endif

#ifndef WITHOUT_GET_SLI_DATA_OFFSET
extern "C" std::int32_t GetSliDataOffSet(std::uint16_t /*version*/, std::uint32_t* offset) {
#ifdef REFUSES_VERSION
    return 0;
#endif
#ifdef SHRINKS
    // By a few bytes, so that its last number is cut.
    const auto file = slicePath.replace_extension(SHRINKS);
    std::filesystem::resize_file(file, std::filesystem::file_size(file) - 3);
#endif
    *offset = 2048;
    return 77;
}
#endif

#ifdef WITH_FILE_READ_ERROR
extern "C" std::int32_t FileReadError(const char* path) {
    std::fprintf(stderr, "refused %s\n", path);
    return 1;
}
#endif

#ifndef WITHOUT_UPDATE_REP_HEADER
extern "C" std::int32_t UpdateRepHeader(CFile* report, RepHeader* header, std::int32_t /*zero*/) {
#ifdef THROWS_ON_UPDATE
    throw 1;
#endif
    // The report is open: what is read from it is the header as it stands there.
    return static_cast<std::int32_t>(report->Read(header, sizeof *header));
}
#endif
