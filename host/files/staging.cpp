#include "host/files/staging.h"

#include "api/exports.h"
#include "dunvale/run_records.h"
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
using Export = int32_t (*)(char* path, char* message);

template <typename Record>
Record readRecord(const fs::path& file, std::int64_t place) {
    Record record{};
    std::ifstream in{file, std::ios::binary};
    in.seekg(place);
    in.read(reinterpret_cast<char*>(&record), sizeof record);
    return record;
}

int channelCountOf(const std::string& runFile) {
    const auto count = readRecord<std::int16_t>(runFile, sizeof(RunFileHead) + sizeof(RunInfo));
    return std::clamp<int>(count, 0, maxChannels);
}

/// A file of the source's that the library reads, under the name by which it finds it.
struct Link {
    std::string stagedName;
    fs::path path;
};

/// The names have the extensions that the library asks for, whatever those of the source are.
std::vector<Link> linksOf(const Plan& plan) {
    switch (plan.kind) {
    case FileKind::Merivolta:
        return {{plan.stem + sliceExtension, plan.source},
                {plan.stem + reportExtension, reportOf(plan.source)}};
    case FileKind::Dunvale:
        return {{plan.stem + ".run", plan.source}};
    case FileKind::Andi:
    case FileKind::Unknown:
        break;
    }
    return {{plan.stem + ".cdf", plan.source}};
}

Export exportOf(FileKind kind) {
    switch (kind) {
    case FileKind::Merivolta:
        return Merivolta2Andi;
    case FileKind::Dunvale:
        return Dunvale2Andi;
    case FileKind::Andi:
    case FileKind::Unknown:
        break;
    }
    return Andi2Merivolta;
}

void placeLink(const Link& link, const fs::path& stage) {
    std::error_code error;
    const fs::path place = stage / link.stagedName;
    fs::create_symlink(fs::absolute(link.path), place, error);
    if (error && fs::exists(link.path)) {
        fs::copy_file(link.path, place); // a file system without links
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
    for (const Link& link : linksOf(plan)) {
        replaceAll(text, (stage / link.stagedName).string(), link.path.string());
    }
    for (const Target& target : plan.targets) {
        replaceAll(text, (stage / target.stagedName).string(), target.path.string());
    }
    return oneLine(text);
}

std::string runText(const Plan& plan) {
    std::string text = "Dunvale File converted to ";
    for (const Target& target : plan.targets) {
        text += target.path.string() + (&target == &plan.targets.back() ? "." : ", ");
    }
    return text;
}

void countPair(StagedResult& result, fs::path pair) {
    result.points = readRecord<SliHeader>(pair.replace_extension(sliceExtension), 0).PointCount;
    result.peaks =
        readRecord<ResHeader>(pair.replace_extension(reportExtension), sizeof(RepHeader)).PeakCount;
}

std::int64_t lengthOf(const AndiImage& image, const std::string& variable) {
    const AndiVariable* found = variableOf(image, variable);
    return found == nullptr ? 0 : found->ElementCount;
}

/// The files name the staged source as theirs so far.
void completeAndiFiles(StagedResult& result, const Plan& plan, const fs::path& stage) {
    for (const Target& target : plan.targets) {
        AndiImage image;
        const std::string path = (stage / target.stagedName).string();
        if (const std::string reason = loadHeader(image, path); !reason.empty()) {
            throw std::runtime_error{reason};
        }
        result.points += lengthOf(image, "ordinatevalues");
        result.peaks += lengthOf(image, "peakretentiontime");
        nameSource(image, path, plan.source);
    }
}

} // namespace

Plan planFor(const std::string& source, FileKind kind, const fs::path& folder,
             const std::string& stem) {
    Plan plan{.source = source, .kind = kind, .stem = stem, .targets = {}};
    const auto add = [&](const std::string& name) {
        plan.targets.push_back({.stagedName = name, .path = folder / name});
    };
    switch (kind) {
    case FileKind::Merivolta:
        add(stem + ".cdf");
        break;
    case FileKind::Dunvale:
        for (int channel = 1; channel <= channelCountOf(source); ++channel) {
            add(stem + std::to_string(channel) + ".cdf");
        }
        break;
    case FileKind::Andi:
    case FileKind::Unknown:
        add(stem + sliceExtension);
        add(stem + reportExtension);
        break;
    }
    return plan;
}

fs::path reportOf(const fs::path& slice) {
    fs::path report = slice;
    report.replace_extension(reportExtension);
    fs::path upperCase = slice;
    upperCase.replace_extension(".RPT");
    return !fs::exists(report) && fs::exists(upperCase) ? upperCase : report;
}

StagedResult convertStaged(const Plan& plan, const fs::path& stage) {
    const std::vector<Link> links = linksOf(plan);
    for (const Link& link : links) {
        placeLink(link, stage);
    }
    std::string path = (stage / links.front().stagedName).string();
    std::string message(
        std::max<std::size_t>(path.size() + KORLIT_MESSAGE_ROOM, KORLIT_MESSAGE_MINIMUM), '\0');
    path.resize(path.size() + KORLIT_PATH_ROOM);
    const StandardErrorCapture boxes;
    StagedResult result{.isConverted = exportOf(plan.kind)(path.data(), message.data()) == 1,
                        .message = message.substr(0, message.find('\0'))};
    if (result.message.empty()) {
        result.message = result.isConverted ? runText(plan) : boxes.text();
    }
    result.message = trueText(result.message, plan, stage);
    if (result.isConverted && plan.kind == FileKind::Andi) {
        countPair(result, stage / plan.stem);
    } else if (result.isConverted) {
        completeAndiFiles(result, plan, stage);
    }
    return result;
}

} // namespace korlit::host
