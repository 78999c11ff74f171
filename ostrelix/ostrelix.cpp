// The sibling library: the least that reading a pair needs. It knows the files that Korlit writes.
#include "native/ostrelix.h"
#include "platform/message_box.h"
#include "platform/text.h"

#include <array>

using namespace korlit;

#define OSTRELIX_ENTRY extern "C" __attribute__((visibility("default")))

/// Reads the header from the start of the slice file. A file too short for one gives an empty
/// header and the answer 0.
OSTRELIX_ENTRY std::int16_t ReadChromHeader(const char* path, SliHeader* header,
                                            std::int32_t /*unused*/) {
    CFile slice;
    *header = {};
    if (slice.Open(path) && slice.Read(header, sizeof *header) == std::int64_t{sizeof *header}) {
        return 1;
    }
    *header = {};
    return 0;
}

OSTRELIX_ENTRY std::int32_t GetSliDataOffSet(std::uint16_t formatVersion, std::uint32_t* offset) {
    if (formatVersion != sliceFormatVersion) {
        return 0;
    }
    *offset = sliceDataOffset;
    return 1;
}

OSTRELIX_ENTRY std::int32_t FileReadError(const char* path) {
    std::array<char, 1024> text{};
    formatText(text, "The version of the file %s is not known", path);
    MessageBoxA(GetActiveWindow(), text.data(), "Ostrelix");
    return 0;
}

/// The fields that are read from a report stand where they stood in every revision that is known,
/// so only the revision itself changes.
OSTRELIX_ENTRY std::int32_t UpdateRepHeader(CFile* /*report*/, RepHeader* header,
                                            std::int32_t /*unused*/) {
    constexpr auto current =
        static_cast<std::uint16_t>(currentHeaderRevision << headerRevisionShift);
    const auto others = static_cast<std::uint16_t>(header->ReportFlags & ~headerRevisionMask);
    header->ReportFlags = static_cast<std::uint16_t>(others | current);
    return 1;
}
