#include "host/manifest/newest.h"

#include <algorithm>
#include <map>
#include <set>

namespace korlit::host {

namespace {

bool haveSameOutputs(const FileRecord& a, const FileRecord& b) {
    return std::ranges::equal(a.outputs, b.outputs, {}, &RecordedFile::path, &RecordedFile::path);
}

} // namespace

std::vector<const FileRecord*> newestOf(const Manifest& manifest) {
    std::map<std::string, std::vector<const FileRecord*>> bySource;
    for (const FileRecord& record : manifest.files) {
        auto& earlier = bySource[record.sources.front().path];
        const auto isConversion = [&](const FileRecord* each) {
            return each->isConverted() && haveSameOutputs(*each, record);
        };
        if (record.result == "skipped" && std::ranges::any_of(earlier, isConversion)) {
            continue;
        }
        std::erase_if(earlier, [&](const FileRecord* each) {
            return !each->isConverted() || (record.isConverted() && isConversion(each));
        });
        earlier.push_back(&record);
    }
    std::set<const FileRecord*> counting;
    for (const auto& [source, records] : bySource) {
        counting.insert(records.begin(), records.end());
    }
    std::vector<const FileRecord*> newest;
    for (const FileRecord& record : manifest.files) {
        if (counting.contains(&record)) {
            newest.push_back(&record);
        }
    }
    return newest;
}

} // namespace korlit::host
