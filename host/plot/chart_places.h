// Where the charts of a batch go.
#pragma once

#include "host/files/listing.h"
#include "host/plot/chart_file.h"

#include <filesystem>
#include <string>
#include <vector>

namespace korlit::host {

struct ChartPlace {
    std::filesystem::path file;
    std::string problem; ///< why no chart can be put there; empty if one can
};

/// The place of the chart of each file of the list. The folders below a folder that was named are
/// mirrored in `folder`. A chart is named after its file, run.svg after run.cdf; where files of one
/// name would share it, each keeps its extension, as in run.cdf.svg.
std::vector<ChartPlace> chartPlaces(const Listing& listing, const std::filesystem::path& folder,
                                    ChartFormat format);

} // namespace korlit::host
