#include "host/files/recognise.h"

#include "dunvale/run_records.h"
#include "native/native_records.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>

namespace korlit::host {

namespace {

constexpr std::array<const char*, 4> kindNames{"unknown", "andi", "merivolta", "dunvale"};

constexpr std::string_view andiSignature = "CDF\x01";

/// The start of a file, as far as any format's test looks.
struct FileStart {
    std::array<char, sizeof(RunFileHead) + sizeof(RunInfo) + 2 + sizeof(SliHeadP)> bytes{};
    std::int64_t length = 0;   ///< of what is in `bytes`
    std::int64_t fileSize = 0; ///< -1 for what is no regular file
};

FileStart startOf(const std::string& file) {
    FileStart start;
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        return start;
    }
    start.fileSize = static_cast<std::int64_t>(std::filesystem::file_size(file, error));
    std::ifstream in{file, std::ios::binary};
    in.read(start.bytes.data(), start.bytes.size());
    start.length = in.gcount();
    return start;
}

bool isSliceName(const std::string& file) {
    std::string extension = std::filesystem::path{file}.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char letter) { return std::tolower(letter); });
    return extension == sliceExtension;
}

template <typename Record>
Record recordAt(const FileStart& start, std::size_t place) {
    Record record{};
    std::memcpy(&record, start.bytes.data() + place, sizeof record);
    return record;
}

bool isPlausibleRun(const FileStart& start) {
    constexpr float lowestVersion = 1.0F;
    constexpr float highestVersion = 100.0F;
    constexpr std::size_t countPlace = sizeof(RunFileHead) + sizeof(RunInfo);
    if (start.length < std::ssize(start.bytes)) {
        return false;
    }
    const auto version = recordAt<float>(start, 0);
    const auto channelCount = recordAt<std::int16_t>(start, countPlace);
    const auto head = recordAt<SliHeadP>(start, countPlace + sizeof channelCount);
    return version >= lowestVersion && version <= highestVersion && channelCount >= 1 &&
           channelCount <= maxChannels && head.PointCount >= 0 &&
           head.PointCount * std::int64_t{sizeof(float)} <= start.fileSize;
}

} // namespace

const char* kindName(FileKind kind) {
    return kindNames[static_cast<std::size_t>(kind)];
}

FileKind recognise(const std::string& file) {
    const FileStart start = startOf(file);
    const std::string_view bytes{start.bytes.data(), static_cast<std::size_t>(start.length)};
    if (bytes.starts_with(andiSignature)) {
        return FileKind::Andi;
    }
    if (isSliceName(file)) {
        return start.fileSize >= std::int64_t{sizeof(SliHeader)} ? FileKind::Merivolta
                                                                 : FileKind::Unknown;
    }
    return isPlausibleRun(start) ? FileKind::Dunvale : FileKind::Unknown;
}

} // namespace korlit::host
