#include "host/pair_losses.h"

#include "host/andi_image.h"
#include "native/native_records.h"

#include <algorithm>
#include <array>

namespace korlit::host {

namespace {

constexpr std::size_t maxPeaks = maxWrittenPeakBytes / sizeof(PeakRecord);
constexpr std::size_t maxPeakName = 14;

struct TextRoom {
    const char* key;
    const char* name;
    std::size_t room; ///< characters, without the terminator
};

constexpr std::array<TextRoom, 3> textRooms{{
    {.key = "samplename", .name = "sample_name", .room = sizeof(SliHeader::SampleName) - 1},
    {.key = "operatorname", .name = "operator_name", .room = sizeof(SliHeader::OperatorName) - 1},
    {.key = "detectorunit", .name = "detector_unit", .room = sizeof(SliHeader::DetectorUnit) - 1},
}};

void addTexts(std::vector<std::string>& losses, const AndiImage& image) {
    for (const auto& [key, name, room] : textRooms) {
        const std::string text = textOf(image, key).value_or("");
        if (text.size() > room) {
            losses.push_back(std::string{name} + " is cut to " + std::to_string(room) +
                             " characters: " + text.substr(0, room));
        }
    }
}

void addPeaks(std::vector<std::string>& losses, const AndiImage& image) {
    const std::vector<std::string> names = rowsOf(image, variableOf(image, "peakname"));
    const std::size_t count =
        std::max(names.size(), numbersOf(variableOf(image, "peakretentiontime")).size());
    if (count > maxPeaks) {
        losses.push_back("the table of " + std::to_string(count) +
                         " peaks is left out, since a "
                         "report holds at most " +
                         std::to_string(maxPeaks));
        return;
    }
    const auto cut = std::ranges::count_if(
        names, [](const std::string& name) { return name.size() > maxPeakName; });
    if (cut > 0) {
        losses.push_back(std::to_string(cut) + (cut == 1 ? " peak name is" : " peak names are") +
                         " cut to " + std::to_string(maxPeakName) + " characters");
    }
}

} // namespace

std::vector<std::string> pairLosses(const std::string& andiFile) {
    std::vector<std::string> losses;
    AndiImage image;
    if (load(image, andiFile).empty()) {
        addTexts(losses, image);
        addPeaks(losses, image);
    }
    return losses;
}

} // namespace korlit::host
