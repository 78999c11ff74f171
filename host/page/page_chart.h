// The chromatograms of a page.
#pragma once

#include "host/manifest/record.h"

#include <cstddef>
#include <string>

namespace korlit::host {

/// A picture of a channel, to which others of the page can point by its number.
std::string pictureOf(const RecordedChannel& channel, std::size_t number, std::size_t stretches);

/// The same with scales and with the names of its peaks. `isDrawn` has it point to the picture of
/// that number, which the page shows elsewhere.
std::string chartOf(const RecordedChannel& channel, std::size_t number, std::size_t stretches,
                    bool isDrawn);

/// The scales and the peaks alone.
std::string legendOf(const RecordedChannel& channel);

} // namespace korlit::host
