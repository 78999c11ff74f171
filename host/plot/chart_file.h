// The files that charts become.
#pragma once

#include "host/plot/chart.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace korlit::host {

enum class ChartFormat : std::uint8_t { Svg, Png, Pdf };

/// The names of the formats, in the order of their values.
const std::vector<std::string>& chartFormatNames();

/// The format that a file's ending asks for, in either case; nothing for another ending.
std::optional<ChartFormat> chartFormatOf(const std::filesystem::path& file);

enum class Paper : std::uint8_t { A4, Letter };

/// Lays a chart out for a sheet: across, or upright where many panels stand above each other.
void fitTo(Chart& chart, Paper paper);

struct ChartTarget {
    ChartFormat format = ChartFormat::Svg;
    double scale = 1;           ///< pixels of a PNG for each point
    std::filesystem::path file; ///< "-" is standard output
    std::filesystem::perms permissions = std::filesystem::perms::all; ///< of the file at most
};

/// Draws a chart into a file, which comes to its place only when it is complete, and then replaces
/// one of that name. Throws a runtime_error with words for the user.
void writeChart(const Chart& chart, const ChartTarget& target);

/// The characters of a chart's texts, as U+4E2D, for which this machine has no picture.
std::vector<std::string> missingPictures(const Chart& chart);

} // namespace korlit::host
