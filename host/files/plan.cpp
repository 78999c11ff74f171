#include "host/files/plan.h"

namespace korlit::host {

namespace fs = std::filesystem;

Plan planFor(const std::string& source, FileKind kind, const fs::path& folder,
             const std::string& stem) {
    return planFor(source, kind, formatOf(kind).channelCount(startOf(source)), folder, stem);
}

Plan planFor(const std::string& source, FileKind kind, int channelCount, const fs::path& folder,
             const std::string& stem) {
    Plan plan{.source = source, .kind = kind};
    for (const auto& [ending, path] : formatOf(kind).sourceFiles(source)) {
        plan.sources.push_back({.stagedName = stem + ending, .path = path});
    }
    for (const std::string& ending : formatOf(kind).targetEndings(channelCount)) {
        plan.targets.push_back({.stagedName = stem + ending, .path = folder / (stem + ending)});
    }
    return plan;
}

} // namespace korlit::host
