// A picture in memory that is looked at by pixel, and charts to draw on it.
#pragma once

#include "host/plot/chart_panels.h"
#include "host/plot/chart_pen.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace korlit::test {

constexpr std::uint32_t white = 0xFFFFFF;

/// White paper of so many pixels.
class Canvas {
  public:
    Canvas(int width, int height)
        : surface{cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)},
          context{cairo_create(surface)} {
        host::setColour(context, host::paper);
        cairo_paint(context);
        host::setColour(context, host::ink);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas() {
        cairo_destroy(context);
        cairo_surface_destroy(surface);
    }

    operator cairo_t*() { return context; }

    std::uint32_t pixel(int x, int y) const {
        const std::ptrdiff_t row = cairo_image_surface_get_stride(surface);
        std::uint32_t bits = 0;
        std::memcpy(&bits, cairo_image_surface_get_data(surface) + y * row + 4L * x, 4);
        return bits & 0xFFFFFFU;
    }

    /// How far a pixel is from a colour.
    double distance(int x, int y, const host::Colour& colour) const {
        const std::uint32_t bits = pixel(x, y);
        return std::abs((bits >> 16U) - colour.red * 255) +
               std::abs(((bits >> 8U) & 0xFFU) - colour.green * 255) +
               std::abs((bits & 0xFFU) - colour.blue * 255);
    }

    bool has(int x, int y, const host::Colour& colour) const { return distance(x, y, colour) < 4; }

    /// The edges around all pixels of a kind; inside out where there are none.
    template <typename IsMeant>
    host::Box boundsOf(const IsMeant& isMeant) const {
        host::Box bounds{.left = 1e9, .top = 1e9};
        for (int y = 0; y < cairo_image_surface_get_height(surface); ++y) {
            for (int x = 0; x < cairo_image_surface_get_width(surface); ++x) {
                if (isMeant(x, y)) {
                    bounds = {.left = std::min<double>(bounds.left, x),
                              .top = std::min<double>(bounds.top, y),
                              .right = std::max<double>(bounds.right, x + 1),
                              .bottom = y + 1.0};
                }
            }
        }
        return bounds;
    }

    /// Of all that isn't paper.
    host::Box ink() const {
        return boundsOf([this](int x, int y) { return pixel(x, y) != white; });
    }

  private:
    cairo_surface_t* surface;
    cairo_t* context;
};

/// A chart of panels with so many lines each.
inline host::Chart chartWith(std::size_t panels, std::size_t lines, double width, double height) {
    host::ChartPanel panel{.title = "Channel", .note = "", .unit = "mAU", .lines = {}, .peaks = {}};
    for (std::size_t i = 0; i < lines; ++i) {
        panel.lines.push_back({.name = "Sample number " + std::to_string(i),
                               .points = {{0, -1e5}, {7, 12345.6}, {20, 1}}});
    }
    return {.title = "A title",
            .subtitle = "And what is below it",
            .timeQuantity = "Time",
            .timeUnit = "min",
            .note = "",
            .times = {.from = 0, .to = 20},
            .values = {},
            .panels = {panels, panel},
            .width = width,
            .height = height};
}

} // namespace korlit::test
