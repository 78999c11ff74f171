// Lines and texts on a chart, in its colours and sizes.
#pragma once

#include <cairo.h>

#include <string>

namespace korlit::host {

struct Colour {
    double red;
    double green;
    double blue;
};
constexpr Colour paper{1, 1, 1};
constexpr Colour ink{0.13, 0.13, 0.15};
constexpr Colour faint{0.42, 0.42, 0.45};
constexpr Colour gridGrey{0.91, 0.91, 0.92};
constexpr Colour gapGrey{0.93, 0.93, 0.93};
constexpr Colour leaderGrey{0.62, 0.62, 0.65};
constexpr Colour signalBlue{0.06, 0.20, 0.48};
constexpr Colour peakBlue{0.86, 0.91, 0.97};
constexpr Colour baselineRed{0.75, 0.25, 0.20};

constexpr double titleSize = 17;
constexpr double panelTitleSize = 12;
constexpr double textSize = 11;
constexpr double smallSize = 10;

constexpr double halfCapital = 0.36; // of a font's size, in any common one

constexpr double tickLength = 5;
constexpr double smallTickLength = 3;

void setColour(cairo_t* context, const Colour& colour);

void setFont(cairo_t* context, double size, bool isBold = false);

/// How wide a text is in the font that was set.
double drawnWidth(cairo_t* context, const std::string& text);

/// The text itself, or as much of its start as is no wider than `width` with dots behind it.
std::string fitted(cairo_t* context, const std::string& text, double width);

/// `alignment`: 0 starts the text at x, 0.5 centres it there, 1 ends it there.
void drawText(cairo_t* context, const std::string& text, double x, double y, double alignment = 0);

/// Writes upwards in the font's size, with the letters' bodies centred at x.
void drawUpwards(cairo_t* context, const std::string& text, double size, double x, double y,
                 double alignment);

void drawLine(cairo_t* context, double x1, double y1, double x2, double y2);

} // namespace korlit::host
