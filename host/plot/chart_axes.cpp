#include "host/plot/chart_axes.h"

#include "host/plot/chart_pen.h"
#include "host/plot/chart_text.h"

#include <algorithm>

namespace korlit::host {

namespace {

/// "Time / min", or "Signal / 10⁶ mAU" where the ticks leave a power of ten to the title.
std::string axisTitle(const std::string& quantity, const Ticks& ticks, const std::string& unit) {
    const std::string factor = ticks.namedExponent == 0 ? "" : "10" + raised(ticks.namedExponent);
    const std::string whole = factor + (factor.empty() || unit.empty() ? "" : " ") + unit;
    return quantity + (whole.empty() ? "" : " / " + whole);
}

/// Calls `draw` with the place and the length of each tick within the range, large ones and small
/// ones between them.
template <typename Draw>
void forEachTick(const Ticks& ticks, const Range& range, const Draw& draw) {
    for (int i = -1; i < ticks.count; ++i) {
        for (int part = 0; part < ticks.parts(); ++part) {
            const double value = ticks.value(i) + ticks.step() * part / ticks.parts();
            if (range.contains(value)) {
                draw(value, part == 0 ? tickLength : smallTickLength);
            }
        }
    }
}

} // namespace

Ticks timeTicksFor(cairo_t* context, const Plot& plot) {
    constexpr double distance = 75;
    constexpr double leastGap = 12;
    setFont(context, textSize);
    Ticks ticks;
    for (int most = static_cast<int>(plot.box.width() / distance); most > 0; --most) {
        ticks = ticksFor(plot.times, most);
        const double last = drawnWidth(context, ticks.text(ticks.count - 1));
        const double widest = std::max(last, drawnWidth(context, ticks.text(0)));
        if (widest + leastGap < plot.x(plot.times.from + ticks.step()) - plot.box.left) {
            break;
        }
    }
    return ticks;
}

void drawGrid(cairo_t* context, const Plot& plot, const Ticks& timeTicks) {
    const auto& [left, top, right, bottom] = plot.box;
    setColour(context, gridGrey);
    cairo_set_line_width(context, 0.7);
    for (int i = 0; i < plot.valueTicks.count; ++i) {
        const double y = plot.y(plot.valueTicks.value(i));
        drawLine(context, left, y, right, y);
    }
    for (int i = 0; i < timeTicks.count; ++i) {
        const double x = plot.x(timeTicks.value(i));
        drawLine(context, x, top, x, bottom);
    }
}

void drawAxes(cairo_t* context, const Plot& plot, const Ticks& timeTicks) {
    const auto& [left, top, right, bottom] = plot.box;
    setColour(context, ink);
    cairo_set_line_width(context, 0.9);
    cairo_rectangle(context, left, top, right - left, bottom - top);
    cairo_stroke(context);
    forEachTick(plot.valueTicks, plot.values, [&](double value, double length) {
        drawLine(context, plot.box.left - length, plot.y(value), plot.box.left, plot.y(value));
    });
    forEachTick(timeTicks, plot.times, [&](double time, double length) {
        drawLine(context, plot.x(time), plot.box.bottom, plot.x(time), plot.box.bottom + length);
    });
}

void writeValueAxis(cairo_t* context, const Plot& plot) {
    const Box& box = plot.box;
    setColour(context, ink);
    setFont(context, textSize);
    for (int i = 0; i < plot.valueTicks.count; ++i) {
        drawText(context, plot.valueTicks.text(i), box.left - tickLength - 3,
                 plot.y(plot.valueTicks.value(i)) + textSize * halfCapital, 1);
    }
    const std::string title = axisTitle("Signal", plot.valueTicks, plot.panel->unit);
    drawUpwards(context, fitted(context, title, box.height()), textSize, plot.outerLeft,
                (box.top + box.bottom) / 2, 0.5);
}

void writeTimeAxis(cairo_t* context, const Plot& plot, const Ticks& ticks, const Chart& chart) {
    constexpr double edge = 3;
    setColour(context, ink);
    setFont(context, textSize);
    for (int i = 0; i < ticks.count; ++i) {
        const double half = drawnWidth(context, ticks.text(i)) / 2;
        const double end = plot.box.right + outerMargin;
        const double centre = std::min(plot.x(ticks.value(i)), end - edge - half);
        drawText(context, ticks.text(i), centre, plot.box.bottom + tickLength + 3 + textSize, 0.5);
    }
    drawText(context, axisTitle(chart.timeQuantity, ticks, chart.timeUnit),
             (plot.box.left + plot.box.right) / 2, plot.box.bottom + 38, 0.5);
}

} // namespace korlit::host
