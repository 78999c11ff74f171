#include "host/manifest/manifest.h"

#include "host/system/access.h"
#include "host/text/stamps.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <ctime>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace korlit::host {

namespace {

std::time_t timeOf(const ManifestRecord& record) {
    const auto time = [](const auto& each) { return timeIn(each.time).value_or(0); };
    return std::visit(time, record);
}

/// The records of several manifests by their times.
class Reader {
  public:
    explicit Reader(void (*dropOfEach)(FileRecord&)) : drop{dropOfEach} {}

    /// A kill leaves a line without its end, and whoever appends next ends it. Records of one
    /// manifest stay in their order, whatever the clocks of its machines have said.
    void read(const std::string& path) {
        if (const std::string problem = openProblem(path); !problem.empty()) {
            throw std::runtime_error{path + ": " + problem};
        }
        std::ifstream in{path, std::ios::binary};
        const std::size_t before = records.size();
        std::size_t number = 0;
        std::time_t latest = 0;
        for (std::string line; std::getline(in, line);) {
            ++number;
            if (auto record = recordIn(line)) {
                latest = std::max(latest, timeOf(*record));
                keep(latest, std::move(*record));
            } else {
                manifest.problems.push_back(path + ": line " + std::to_string(number) +
                                            " is cut or no record, and passed over");
            }
        }
        if (records.size() == before) {
            throw std::runtime_error{path + ": it is no manifest"};
        }
    }

    Manifest end() {
        while (!records.empty()) {
            add(manifest, std::move(records.extract(records.begin()).mapped()));
        }
        return std::move(manifest);
    }

  private:
    void keep(std::time_t time, ManifestRecord record) {
        if (auto* file = std::get_if<FileRecord>(&record); file != nullptr && drop != nullptr) {
            drop(*file);
        }
        records.emplace(time, std::move(record));
    }

    void (*drop)(FileRecord&);
    Manifest manifest;
    std::multimap<std::time_t, ManifestRecord> records;
};

} // namespace

void add(Manifest& manifest, ManifestRecord record) {
    if (auto* batch = std::get_if<BatchRecord>(&record)) {
        manifest.batches.push_back(std::move(*batch));
    } else {
        manifest.files.push_back(std::move(std::get<FileRecord>(record)));
    }
}

std::map<std::string, std::size_t> recordCounts(const Manifest& manifest) {
    std::map<std::string, std::size_t> counts;
    for (const FileRecord& record : manifest.files) {
        ++counts[record.batch];
    }
    return counts;
}

std::vector<std::string> unfinishedBatches(const Manifest& manifest) {
    std::map<std::string, std::size_t> counts = recordCounts(manifest);
    std::vector<std::string> words;
    for (const BatchRecord& batch : manifest.batches) {
        if (const std::size_t count = counts[batch.batch]; count < batch.fileCount) {
            words.push_back("The batch of " + batch.time + " has a record of " +
                            std::to_string(count) + " of its " + std::to_string(batch.fileCount) +
                            " files: it was interrupted, or still runs.");
        }
    }
    return words;
}

int withManifests(const std::vector<std::string>& paths, const ManifestUse& wanted) {
    constexpr int unreadable = 2;
    const std::string start = "korlit " + wanted.command + ": ";
    Reader reader{wanted.drop};
    try {
        std::ranges::for_each(paths, [&](const std::string& path) { reader.read(path); });
    } catch (const std::runtime_error& error) {
        std::cerr << start << printable(error.what()) << '\n';
        return unreadable;
    }
    const Manifest manifest = reader.end();
    for (const std::string& problem : manifest.problems) {
        std::cerr << start << printable(problem) << '\n';
    }
    return wanted.use(manifest);
}

std::string manifestProblem(const std::filesystem::path& file) {
    constexpr std::string_view recordStart = R"({"record":)";
    std::ifstream in{file, std::ios::binary};
    std::string start(recordStart.size(), '\0');
    in.read(start.data(), std::ssize(start));
    start.resize(static_cast<std::size_t>(in.gcount()));
    return recordStart.starts_with(start) ? "" : file.string() + " is there and is no manifest";
}

} // namespace korlit::host
