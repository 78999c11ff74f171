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
#include <optional>
#include <string>
#include <thread>
#include <unordered_map>
#include <utility>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

enum class FileState : std::uint8_t { Same, Changed, Gone, Unreadable, Unchecked };

constexpr std::array<const char*, 5> stateWords{"as it was", "changed", "gone", "can't be read",
                                                "not checked"};

/// Where a file is to be looked for, and why it can't be.
struct Place {
    std::string path;
    std::string problem{};
};

struct FileCheck {
    std::string path;
    FileDigest recorded{};
    bool isOutput = false; ///< so that the conversion vouches for it that made it
    FileState state = FileState::Same;
    std::string words{}; ///< more about what isn't as it was
};

/// A copy is never vouched for by the original.
Place placeOf(const std::string& path, const std::string& folder, const std::string& root) {
    if (root.empty()) {
        return {path};
    }
    if (folder.empty()) {
        return {path, "the folder of its batch isn't known"};
    }
    const fs::path below = fs::path{path}.lexically_relative(folder);
    if (below.empty() || *below.begin() == "..") {
        return {path, "it wasn't below the folder of its batch"};
    }
    return {(root / below).string()};
}

/// The files of records, each once, with the digest that counts.
class Checks {
  public:
    /// The newest record counts, but of what a conversion made no later one that only reads it.
    void add(Place place, const std::optional<FileDigest>& digest, bool isOutput) {
        const auto found = known.find(place.path);
        if (found != known.end() && all[found->second].isOutput && !isOutput) {
            return;
        }
        const std::size_t at = found == known.end() ? all.size() : found->second;
        if (found == known.end()) {
            known.emplace(place.path, at);
            all.emplace_back();
        }
        if (!digest) {
            place.problem = "its record has no digest";
        }
        all[at] = {.path = std::move(place.path),
                   .recorded = digest.value_or(FileDigest{}),
                   .isOutput = isOutput,
                   .state = place.problem.empty() ? FileState::Same : FileState::Unchecked,
                   .words = std::move(place.problem)};
    }

    std::vector<FileCheck> all;

  private:
    std::unordered_map<std::string, std::size_t> known;
};

/// A file that failed or was passed over is vouched for by an older record, if at all.
std::vector<FileCheck> checksOf(const Manifest& manifest, const std::string& root) {
    std::map<std::string, std::string> folders;
    for (const BatchRecord& batch : manifest.batches) {
        folders.emplace(batch.batch, batch.folder);
    }
    Checks checks;
    for (const FileRecord& record : manifest.files) {
        if (!record.isConverted()) {
            continue;
        }
        for (const auto& [files, areOutputs] :
             {std::pair{&record.sources, false}, std::pair{&record.outputs, true}}) {
            for (const RecordedFile& file : *files) {
                checks.add(placeOf(file.path, folders[record.batch], root), file.digest,
                           areOutputs);
            }
        }
    }
    return std::move(checks.all);
}

void look(FileCheck& check) {
    if (check.state == FileState::Unchecked) {
        return;
    }
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
    std::cout << printable(check.path) << ": " << stateWords[static_cast<std::size_t>(check.state)]
              << (check.words.empty() ? "" : " (" + check.words + ")") << '\n';
}

void printJson(const FileCheck& check) {
    constexpr std::array<const char*, 5> states{"same", "changed", "gone", "unreadable",
                                                "unchecked"};
    Json json{{"file", utf8Of(check.path)},
              {"state", states[static_cast<std::size_t>(check.state)]},
              {"words", check.words},
              {"size", check.recorded.size},
              {"sha256", check.recorded.sha256}};
    addPathBytes(json, "file", check.path);
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
                  << " changed, " << counts[2] << " gone, " << counts[3] << " can't be read"
                  << (counts[4] == 0 ? "" : ", " + std::to_string(counts[4]) + " not checked")
                  << '\n';
    }
    return checks.size() - counts[0];
}

/// What no file of a manifest shows is said in words.
void tellOfGaps(const std::vector<std::string>& unfinished, bool isEmpty) {
    for (const std::string& words : unfinished) {
        std::cerr << "korlit verify: " << printable(words) << '\n';
    }
    if (isEmpty) {
        std::cerr << "korlit verify: no file was converted, so that there is none to check\n";
    }
}

/// What it has a use for.
void keepDigests(FileRecord& record) {
    FileRecord kept;
    kept.batch = std::move(record.batch);
    kept.result = std::move(record.result);
    kept.sources = std::move(record.sources);
    kept.outputs = std::move(record.outputs);
    record = std::move(kept);
}

} // namespace

int verifyFiles(const VerifyOptions& options) {
    const auto verify = [&](const Manifest& manifest) {
        std::vector<FileCheck> checks = checksOf(manifest, options.root);
        lookAtAll(checks);
        const std::size_t differing = tell(checks, options);
        finishOutput();
        tellOfGaps(unfinishedBatches(manifest), checks.empty());
        return differing == 0 && !checks.empty() && manifest.problems.empty() ? 0 : 1;
    };
    return withManifests(options.manifests,
                         {.command = "verify", .use = verify, .drop = keepDigests});
}

} // namespace korlit::host
