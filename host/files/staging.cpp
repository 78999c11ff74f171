#include "host/files/staging.h"

#include "api/exports.h"
#include "host/files/source_name.h"
#include "host/system/current_folder.h"
#include "host/system/open_file.h"
#include "host/system/standard_error.h"
#include "native/native_records.h"
#include "native/ostrelix.h"
#include "platform/library.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <span>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

template <typename Record>
Record readRecord(const fs::path& file, std::int64_t place) {
    Record record{};
    OpenFile{file, OpenFile::Use::Read}.read(place, std::as_writable_bytes(std::span{&record, 1}));
    return record;
}

/// The stage can't take what it must.
[[noreturn]] void fail(const Plan& plan, const fs::path& stage, const std::error_code& error) {
    throw fs::filesystem_error{"Can't write",
                               plan.targets.empty() ? stage : plan.targets.front().path, error};
}

/// The library loads its sibling anew for each pair. In a process that holds it already, that takes
/// next to no time.
void holdSibling() {
    [[maybe_unused]] static const LibraryHandle sibling = LoadLibraryA(ostrelixName);
}

/// Puts a file under the name by which the library finds it; answers the system's error.
std::error_code placeLink(const fs::path& file, const fs::path& link) {
    std::error_code error;
    fs::create_symlink(fs::absolute(file), link, error);
    // That of a file in a folder as deep as may be is too long for a link.
    constexpr std::array reasons{std::errc::operation_not_permitted,
                                 std::errc::operation_not_supported,
                                 std::errc::function_not_supported, std::errc::filename_too_long};
    const bool hasNoLinks =
        std::ranges::any_of(reasons, [&](std::errc each) { return error == each; });
    if (hasNoLinks && fs::exists(file)) {
        fs::copy_file(file, link, error);
        return error;
    }
    return hasNoLinks ? std::error_code{} : error;
}

/// The files of a source in the stage, for as long as this lives.
class Links {
  public:
    Links(const Plan& plan, const fs::path& stage) {
        for (const StagedFile& file : plan.sources) {
            const fs::path& link = places.emplace_back(stage / file.stagedName);
            if (const auto error = placeLink(file.path, link)) {
                fail(plan, stage, error);
            }
        }
    }
    Links(const Links&) = delete;
    Links& operator=(const Links&) = delete;
    ~Links() {
        std::error_code ignored;
        for (const fs::path& link : places) {
            fs::remove(link, ignored);
        }
    }

  private:
    std::vector<fs::path> places;
};

/// What stands ahead of names in the stage, so that the source's is as long as it really is, if
/// that can be: the library writes it into its files, where the true one then fits.
std::string prefixFor(const Plan& plan) {
    const std::size_t length = plan.sources.front().stagedName.size();
    const std::size_t room = plan.source.size() - std::min(plan.source.size(), length);
    return room < 2 ? "" : "." + std::string(room - 1, '/');
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
std::string trueText(const std::string& text, const Plan& plan, const std::string& prefix) {
    std::vector<std::pair<std::string, std::string>> names;
    for (const auto* files : {&plan.sources, &plan.targets}) {
        for (const StagedFile& file : *files) {
            names.emplace_back(prefix + file.stagedName, file.path.string());
        }
    }
    std::string words;
    for (std::size_t place = 0; place < text.size();) {
        const auto named = std::ranges::find_if(names, [&](const auto& each) {
            return text.compare(place, each.first.size(), each.first) == 0;
        });
        if (named == names.end()) {
            words += text[place++];
        } else {
            words += named->second;
            place += named->first.size();
        }
    }
    return oneLine(words);
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

/// The files name the staged source as theirs so far.
void completeAndiFiles(StagedResult& result, const Plan& plan, const fs::path& stage) {
    for (const StagedFile& target : plan.targets) {
        const fs::path file = stage / target.stagedName;
        try {
            const AndiCounts counts = nameSource(file, plan.source);
            result.points += counts.points;
            result.peaks += counts.peaks;
        } catch (const std::system_error& error) {
            if (!fs::exists(file)) {
                throw std::runtime_error{channelsChangedText};
            }
            throw fs::filesystem_error{"Can't write", target.path, error.code()};
        }
    }
}

/// What the system says of a failure that isn't the source's; nothing of any other.
std::error_code reasonIn(int number) {
    constexpr std::array reasons{ENOSPC, EDQUOT, EFBIG, ENAMETOOLONG, EIO, EROFS, EMFILE, ENFILE};
    return std::ranges::find(reasons, number) == reasons.end()
               ? std::error_code{}
               : std::error_code{number, std::generic_category()};
}

/// Calls the export in the stage, where it finds the source and leaves its files.
StagedResult callExport(const Plan& plan, const fs::path& stage) {
    const Format& format = formatOf(plan.kind);
    const std::string prefix = prefixFor(plan);
    std::string path = prefix + plan.sources.front().stagedName;
    std::string message(
        std::max<std::size_t>(path.size() + KORLIT_MESSAGE_ROOM, KORLIT_MESSAGE_MINIMUM), '\0');
    path.resize(path.size() + KORLIT_PATH_ROOM);
    const CurrentFolder folder{stage};
    if (folder.error()) {
        fail(plan, stage, folder.error());
    }
    const StandardErrorCapture boxes;
    errno = 0;
    StagedResult result{.isConverted = format.convert(path.data(), message.data()) == 1,
                        .reason = reasonIn(errno),
                        .message = message.substr(0, message.find('\0'))};
    result.message = trueText(result.message.empty() ? boxes.text() : result.message, plan, prefix);
    if (result.isConverted && result.message.empty()) {
        result.message = convertedText(plan);
    }
    return result;
}

} // namespace

StagedResult convertStaged(const Plan& plan, const fs::path& stage) {
    holdSibling();
    const Links links{plan, stage};
    StagedResult result = callExport(plan, stage);
    if (result.isConverted && formatOf(plan.kind).isAndi) {
        countPair(result, plan, stage);
    } else if (result.isConverted) {
        completeAndiFiles(result, plan, stage);
    }
    return result;
}

} // namespace korlit::host
