#include "host/files/staging.h"

#include "api/exports.h"
#include "host/files/andi_image.h"
#include "host/files/source_name.h"
#include "host/system/standard_error.h"
#include "native/native_records.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <string_view>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

template <typename Record>
Record readRecord(const fs::path& file, std::int64_t place) {
    Record record{};
    std::ifstream in{file, std::ios::binary};
    in.seekg(place);
    in.read(reinterpret_cast<char*>(&record), sizeof record);
    return record;
}

/// Puts a file of the source's under the name by which the library finds it.
void placeLink(const StagedFile& file, const fs::path& stage) {
    std::error_code error;
    const fs::path place = stage / file.stagedName;
    fs::create_symlink(fs::absolute(file.path), place, error);
    if (error && fs::exists(file.path)) {
        fs::copy_file(file.path, place); // a file system without links
    }
}

void replaceAll(std::string& text, const std::string& word, const std::string& other) {
    for (std::size_t place = text.find(word); place != std::string::npos;
         place = text.find(word, place + other.size())) {
        text.replace(place, word.size(), other);
    }
}

std::string oneLine(std::string_view text) {
    std::string line;
    for (const char character : text) {
        if (character != '\r' && character != '\n') {
            line += character;
        } else if (!line.empty() && line.back() != ' ') {
            line += ' ';
        }
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

/// The library's words with the paths that its user knows.
std::string trueText(std::string text, const Plan& plan, const fs::path& stage) {
    for (const auto& files : {plan.sources, plan.targets}) {
        for (const StagedFile& file : files) {
            replaceAll(text, (stage / file.stagedName).string(), file.path.string());
        }
    }
    return oneLine(text);
}

std::string convertedText(const Plan& plan) {
    std::string text = formatOf(plan.kind).convertedText;
    for (const StagedFile& target : plan.targets) {
        text += target.path.string() + (&target == &plan.targets.back() ? "." : ", ");
    }
    return text;
}

void countPair(StagedResult& result, const Plan& plan, const fs::path& stage) {
    const fs::path slice = stage / plan.targets.front().stagedName;
    const fs::path report = stage / plan.targets.back().stagedName;
    result.points = readRecord<SliHeader>(slice, 0).PointCount;
    result.peaks = readRecord<ResHeader>(report, sizeof(RepHeader)).PeakCount;
}

std::int64_t lengthOf(const AndiImage& image, const std::string& variable) {
    const AndiVariable* found = variableOf(image, variable);
    return found == nullptr ? 0 : found->ElementCount;
}

/// The files name the staged source as theirs so far.
void completeAndiFiles(StagedResult& result, const Plan& plan, const fs::path& stage) {
    for (const StagedFile& target : plan.targets) {
        if (!fs::exists(stage / target.stagedName)) {
            throw std::runtime_error{channelsChangedText};
        }
        AndiImage image;
        const std::string path = (stage / target.stagedName).string();
        if (const std::string reason = loadHeader(image, path); !reason.empty()) {
            throw std::runtime_error{reason};
        }
        result.points += lengthOf(image, "ordinate_values");
        result.peaks += lengthOf(image, "peak_retention_time");
        nameSource(image, path, plan.source);
    }
}

} // namespace

StagedResult convertStaged(const Plan& plan, const fs::path& stage) {
    for (const StagedFile& file : plan.sources) {
        placeLink(file, stage);
    }
    const Format& format = formatOf(plan.kind);
    std::string path = (stage / plan.sources.front().stagedName).string();
    std::string message(
        std::max<std::size_t>(path.size() + KORLIT_MESSAGE_ROOM, KORLIT_MESSAGE_MINIMUM), '\0');
    path.resize(path.size() + KORLIT_PATH_ROOM);
    const StandardErrorCapture boxes;
    StagedResult result{.isConverted = format.convert(path.data(), message.data()) == 1,
                        .message = message.substr(0, message.find('\0'))};
    if (result.message.empty()) {
        result.message = result.isConverted ? convertedText(plan) : boxes.text();
    }
    result.message = trueText(result.message, plan, stage);
    if (result.isConverted && format.isAndi) {
        countPair(result, plan, stage);
    } else if (result.isConverted) {
        completeAndiFiles(result, plan, stage);
    }
    return result;
}

} // namespace korlit::host
