#include "host/recognise.h"

#include "dunvale/run_records.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace korlit::host {

namespace {

bool isSliceFile(const std::string& file) {
    std::string extension = std::filesystem::path{file}.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char letter) { return std::tolower(letter); });
    return extension == ".sli";
}

/// The number of channels in the head of a run file; 0 for what is no plausible head.
int channelsOfRun(const std::string& file) {
    constexpr float lowestVersion = 1.0F;
    constexpr float highestVersion = 100.0F;
    constexpr std::size_t countPlace = sizeof(RunFileHead) + sizeof(RunInfo);
    std::array<char, countPlace + sizeof(std::int16_t)> bytes{};
    // What can't be read, a pipe or a folder for one, is left to the conversion to tell.
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(file, ignored) ||
        !std::ifstream{file, std::ios::binary}.read(bytes.data(), bytes.size())) {
        return 0;
    }
    float version = 0.0F;
    std::int16_t channelCount = 0;
    std::memcpy(&version, bytes.data(), sizeof version);
    std::memcpy(&channelCount, bytes.data() + countPlace, sizeof channelCount);
    const bool isPlausible = version >= lowestVersion && version <= highestVersion &&
                             channelCount >= 1 && channelCount <= maxChannels;
    return isPlausible ? channelCount : 0;
}

} // namespace

Recognised recognise(const std::string& file) {
    if (isSliceFile(file)) {
        return {.kind = FileKind::SliceFile};
    }
    const int channelCount = channelsOfRun(file);
    return channelCount == 0 ? Recognised{}
                             : Recognised{.kind = FileKind::Run, .channelCount = channelCount};
}

} // namespace korlit::host
