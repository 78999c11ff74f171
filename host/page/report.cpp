#include "host/page/report.h"

#include "host/manifest/manifest.h"
#include "host/page/page.h"

namespace korlit::host {

int reportManifests(const PageOptions& options) {
    return withManifests(options.manifests,
                         {.command = "report", .use = [&](const Manifest& manifest) {
                              writePage(options.output, manifest);
                              return 0;
                          }});
}

} // namespace korlit::host
