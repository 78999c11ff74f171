#include "host/files/formats.h"

#include "api/exports.h"
#include "host/files/broken_files.h"
#include "host/files/extensions.h"
#include "native/native_records.h"

#include <algorithm>
#include <array>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;
using Endings = std::vector<std::string>;
using SourceFiles = std::vector<SourceFile>;

constexpr const char* andiExtension = ".cdf";
constexpr const char* runExtension = ".run";

int oneChannel(const FileStart& /*start*/) {
    return 1;
}

// ---- ANDI, and what is taken for it

/// "CDF" and the version 1.
bool isAndi(const FileStart& start) {
    return start.text().starts_with("CDF\x01");
}

bool isNothing(const FileStart& /*start*/) {
    return false;
}

SourceFiles andiFiles(const fs::path& source) {
    return {{.ending = andiExtension, .path = source}};
}

Endings pairEndings(int /*channelCount*/) {
    return {sliceExtension, reportExtension};
}

// ---- Merivolta pairs, which are known by their slice file

bool isSlice(const FileStart& start) {
    return start.fileSize >= std::int64_t{sizeof(SliHeader)};
}

SourceFiles pairFiles(const fs::path& slice) {
    return {{.ending = sliceExtension, .path = slice},
            {.ending = reportExtension, .path = besideWith(slice, reportExtension)}};
}

Endings andiEnding(int /*channelCount*/) {
    return {andiExtension};
}

// ---- Dunvale runs

constexpr std::size_t channelCountPlace = sizeof(RunFileHead) + sizeof(RunInfo);

/// A run has no signature, but a plausible head: a version from 1 to 100, one to nine channels, and
/// a first signal of no negative length. One that was cut within its head is known by its name
/// alone.
bool isRun(const FileStart& start) {
    constexpr std::int64_t headSize = channelCountPlace + sizeof(std::int16_t);
    if (!hasRunVersion(start) || start.length < headSize) {
        return false;
    }
    const auto channelCount = start.recordAt<std::int16_t>(channelCountPlace);
    const auto head = start.recordAt<SliHeadP>(headSize);
    return channelCount >= 1 && channelCount <= maxChannels && head.PointCount >= 0;
}

SourceFiles runFiles(const fs::path& source) {
    return {{.ending = runExtension, .path = source}};
}

int channelsOfRun(const FileStart& start) {
    return std::clamp<int>(start.recordAt<std::int16_t>(channelCountPlace), 0, maxChannels);
}

Endings channelEndings(int channelCount) {
    Endings endings;
    for (int channel = 1; channel <= channelCount; ++channel) {
        endings.push_back(std::to_string(channel) + andiExtension);
    }
    return endings;
}

/// In the order of the kinds.
constexpr std::array<Format, 4> formats{{
    {.kind = FileKind::Unknown,
     .name = "unknown",
     .title = "unknown, read as ANDI",
     .extension = nullptr,
     .usualExtension = andiExtension,
     .companionExtension = nullptr,
     .isIn = isNothing,
     .isAndi = true,
     .isFromAndi = false,
     .hasChannels = false,
     .convert = Andi2Merivolta,
     .convertedText = "",
     .sourceFiles = andiFiles,
     .channelCount = oneChannel,
     .targetEndings = pairEndings,
     .flaw = flawOfAndi},
    {.kind = FileKind::Andi,
     .name = "andi",
     .title = "ANDI",
     .extension = nullptr,
     .usualExtension = andiExtension,
     .companionExtension = nullptr,
     .isIn = isAndi,
     .isAndi = true,
     .isFromAndi = false,
     .hasChannels = false,
     .convert = Andi2Merivolta,
     .convertedText = "",
     .sourceFiles = andiFiles,
     .channelCount = oneChannel,
     .targetEndings = pairEndings,
     .flaw = flawOfAndi},
    {.kind = FileKind::Merivolta,
     .name = "merivolta",
     .title = "Merivolta pair",
     .extension = sliceExtension,
     .usualExtension = sliceExtension,
     .companionExtension = reportExtension,
     .isIn = isSlice,
     .isAndi = false,
     .isFromAndi = true,
     .hasChannels = false,
     .convert = Merivolta2Andi,
     .convertedText = "",
     .sourceFiles = pairFiles,
     .channelCount = oneChannel,
     .targetEndings = andiEnding,
     .flaw = flawOfPairFile},
    {.kind = FileKind::Dunvale,
     .name = "dunvale",
     .title = "Dunvale run",
     .extension = nullptr,
     .usualExtension = runExtension,
     .companionExtension = nullptr,
     .isIn = isRun,
     .isAndi = false,
     .isFromAndi = false,
     .hasChannels = true,
     .convert = Dunvale2Andi,
     .convertedText = "Dunvale File converted to ",
     .sourceFiles = runFiles,
     .channelCount = channelsOfRun,
     .targetEndings = channelEndings,
     .flaw = flawOfRun},
}};

static_assert(std::ranges::all_of(formats, [](const Format& format) {
    return &format == &formats[static_cast<std::size_t>(format.kind)];
}));

} // namespace

const Format& formatOf(FileKind kind) {
    return formats.at(static_cast<std::size_t>(kind));
}

std::span<const Format> knownFormats() {
    return std::span{formats}.subspan(1);
}

bool isKnown(FileKind kind) {
    return kind != FileKind::Unknown;
}

} // namespace korlit::host
