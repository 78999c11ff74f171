#include "host/manifest/verify.h"

#include "host/manifest/manifest.h"
#include "host/system/access.h"
#include "host/system/processes.h"
#include "host/text/json.h"
#include "host/text/numbers.h"
#include "host/text/output.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <map>
#include <thread>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

enum class FileState : std::uint8_t { Same, Changed, Gone, Unreadable };

constexpr std::array<const char*, 4> stateWords{"as it was", "changed", "gone", "can't be read"};

struct FileCheck {
    fs::path path;
    FileDigest recorded;
    bool isOutput = false; ///< so that the conversion vouches for it that made it
    FileState state = FileState::Same;
    std::string words{}; ///< more about what isn't as it was
};

/// Where a file of a batch is to be looked for.
fs::path placeOf(const std::string& path, const std::string& folder, const std::string& root) {
    if (root.empty() || folder.empty()) {
        return path;
    }
    const fs::path below = fs::path{path}.lexically_relative(folder);
    return below.empty() || *below.begin() == ".." ? fs::path{path} : fs::path{root} / below;
}

/// The files of records, each once, with the digest that counts.
class Checks {
  public:
    /// The newest record counts, but of what a conversion made no later one that only reads it.
    void add(const fs::path& place, const FileDigest& digest, bool isOutput) {
        const auto [found, isNew] = known.try_emplace(place, all.size());
        if (isNew) {
            all.push_back({.path = place, .recorded = digest, .isOutput = isOutput});
        } else if (FileCheck& check = all[found->second]; isOutput || !check.isOutput) {
            check.recorded = digest;
            check.isOutput = isOutput;
        }
    }

    std::vector<FileCheck> all;

  private:
    std::map<fs::path, std::size_t> known;
};

/// A file that failed or was passed over is vouched for by an older record, if at all.
std::vector<FileCheck> checksOf(const Manifest& manifest, const std::string& root) {
    std::map<std::string, std::string> folders;
    for (const BatchRecord& batch : manifest.batches) {
        folders.emplace(batch.batch, batch.folder);
    }
    Checks checks;
    for (const FileRecord& record : manifest.files) {
        for (const auto& [files, areOutputs] :
             {std::pair{&record.sources, false}, std::pair{&record.outputs, true}}) {
            for (const RecordedFile& file : *files) {
                if (record.isConverted() && file.digest) {
                    checks.add(placeOf(file.path, folders[record.batch], root), *file.digest,
                               areOutputs);
                }
            }
        }
    }
    return checks.all;
}

void look(FileCheck& check) {
    std::error_code error;
    const fs::file_status status = fs::status(check.path, error);
    if (status.type() == fs::file_type::not_found) {
        check.state = FileState::Gone;
        return;
    }
    const auto size = static_cast<std::int64_t>(fs::file_size(check.path, error));
    if (!error && size != check.recorded.size) {
        check.state = FileState::Changed;
        check.words =
            groupedDigits(size) + " bytes instead of " + groupedDigits(check.recorded.size);
        return;
    }
    const auto digest = digestOf(check.path);
    if (!digest) {
        check.state = FileState::Unreadable;
        check.words = openProblem(check.path);
    } else if (*digest != check.recorded) {
        check.state = FileState::Changed;
        check.words = "SHA-256 " + digest->sha256 + " instead of " + check.recorded.sha256;
    }
}

void lookAtAll(std::vector<FileCheck>& checks) {
    std::atomic<std::size_t> next = 0;
    std::vector<std::jthread> threads(std::min(processorCount(), checks.size()));
    for (std::jthread& thread : threads) {
        thread = std::jthread{[&] {
            for (std::size_t i = next++; i < checks.size(); i = next++) {
                look(checks[i]);
            }
        }};
    }
}

void printLine(const FileCheck& check) {
    std::cout << printable(check.path.string()) << ": "
              << stateWords[static_cast<std::size_t>(check.state)]
              << (check.words.empty() ? "" : " (" + check.words + ")") << '\n';
}

void printJson(const FileCheck& check) {
    constexpr std::array<const char*, 4> states{"same", "changed", "gone", "unreadable"};
    Json json{{"file", utf8Of(check.path.string())},
              {"state", states[static_cast<std::size_t>(check.state)]},
              {"words", check.words},
              {"size", check.recorded.size},
              {"sha256", check.recorded.sha256}};
    addPathBytes(json, "file", check.path.string());
    std::cout << jsonLine(json);
}

/// Answers how many are not as they were.
std::size_t tell(const std::vector<FileCheck>& checks, const VerifyOptions& options) {
    std::array<std::size_t, stateWords.size()> counts{};
    for (const FileCheck& check : checks) {
        ++counts[static_cast<std::size_t>(check.state)];
        if (!options.isQuiet || check.state != FileState::Same) {
            (options.isJson ? printJson : printLine)(check);
        }
    }
    if (!options.isQuiet) {
        std::cerr << checks.size() << " files: " << counts[0] << " as they were, " << counts[1]
                  << " changed, " << counts[2] << " gone, " << counts[3] << " can't be read\n";
    }
    return checks.size() - counts[0];
}

} // namespace

int verifyFiles(const VerifyOptions& options) {
    return withManifests("verify", options.manifests, [&](const Manifest& manifest) {
        std::vector<FileCheck> checks = checksOf(manifest, options.root);
        lookAtAll(checks);
        const std::size_t differing = tell(checks, options);
        finishOutput();
        return differing == 0 ? 0 : 1;
    });
}

} // namespace korlit::host
