// The files that charts become.
#pragma once

#include "host/plot/chart.h"

#include <filesystem>
#include <optional>

namespace korlit::host {

enum class ChartFormat { Svg, Png, Pdf };

/// The format that a file's ending asks for, in either case; nothing for another ending.
std::optional<ChartFormat> chartFormatOf(const std::filesystem::path& file);

/// Draws a chart into `target`, which comes to its place only when it is complete, and then
/// replaces a file of that name. Throws a runtime_error with words for the user.
void writeChart(const Chart& chart, ChartFormat format, const std::filesystem::path& target);

} // namespace korlit::host
