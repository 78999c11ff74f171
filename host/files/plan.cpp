#include "host/files/plan.h"

namespace korlit::host {

Plan planFor(const std::string& source, FileKind kind, const std::filesystem::path& folder,
             const std::string& stem) {
    Plan plan{.source = source, .kind = kind};
    for (const auto& [ending, path] : formatOf(kind).sourceFiles(source)) {
        plan.sources.push_back({.stagedName = stem + ending, .path = path});
    }
    for (const std::string& ending : formatOf(kind).targetEndings(source)) {
        plan.targets.push_back({.stagedName = stem + ending, .path = folder / (stem + ending)});
    }
    return plan;
}

} // namespace korlit::host
