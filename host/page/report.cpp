#include "host/page/report.h"

#include "host/files/side_files.h"
#include "host/manifest/manifest.h"
#include "host/page/page.h"
#include "host/system/whole_file.h"
#include "host/text/wrong_use.h"

namespace korlit::host {

int reportManifests(const PageOptions& options) {
    SideFiles sides;
    if (const std::string problem = sides.add(options.output, "page"); !problem.empty()) {
        throw WrongUse{"--output: " + problem};
    }
    auto most = std::filesystem::perms::all;
    for (const std::string& manifest : options.manifests) {
        if (sides.at(manifest)) {
            throw WrongUse{"--output: " + options.output.string() + " is a manifest"};
        }
        most = narrowedTo(manifest, most);
    }
    return withManifests(options.manifests,
                         {.command = "report", .use = [&](const Manifest& manifest) {
                              writePage(options.output, manifest, most);
                              return 0;
                          }});
}

} // namespace korlit::host
