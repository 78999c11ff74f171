#include "host/plot/chart_pen.h"

#include "host/plot/chart_text.h"

#include <algorithm>
#include <numbers>

namespace korlit::host {

void setColour(cairo_t* context, const Colour& colour) {
    cairo_set_source_rgb(context, colour.red, colour.green, colour.blue);
}

void setFont(cairo_t* context, double size, bool isBold) {
    cairo_select_font_face(context, "Sans", CAIRO_FONT_SLANT_NORMAL,
                           isBold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, size);
}

double drawnWidth(cairo_t* context, const std::string& text) {
    cairo_text_extents_t extents{};
    cairo_text_extents(context, text.c_str(), &extents);
    return extents.x_advance;
}

std::string fitted(cairo_t* context, const std::string& text, double width) {
    // Hardly a character is narrower than a point, and long texts are slow to measure.
    const auto most = static_cast<std::size_t>(std::max(width, 0.0));
    std::string whole = firstCharacters(text, most);
    if (whole.size() == text.size() && drawnWidth(context, whole) <= width) {
        return whole;
    }
    std::size_t fitting = 0;
    for (std::size_t end = most; fitting < end;) {
        const std::size_t middle = (fitting + end + 1) / 2;
        const bool fits = drawnWidth(context, firstCharacters(whole, middle) + "…") <= width;
        fitting = fits ? middle : fitting;
        end = fits ? end : middle - 1;
    }
    return firstCharacters(whole, fitting) + "…";
}

void drawText(cairo_t* context, const std::string& text, double x, double y, double alignment) {
    cairo_move_to(context, x - drawnWidth(context, text) * alignment, y);
    if (cairo_surface_get_type(cairo_get_target(context)) == CAIRO_SURFACE_TYPE_IMAGE) {
        cairo_text_path(context, text.c_str()); // letters at whole pixels stand unevenly
        cairo_fill(context);
    } else {
        cairo_show_text(context, text.c_str());
    }
}

void drawUpwards(cairo_t* context, const std::string& text, double size, double x, double y,
                 double alignment) {
    cairo_save(context);
    cairo_translate(context, x + size * halfCapital, y);
    cairo_rotate(context, -std::numbers::pi / 2);
    drawText(context, text, 0, 0, alignment);
    cairo_restore(context);
}

void drawLine(cairo_t* context, double x1, double y1, double x2, double y2) {
    cairo_move_to(context, x1, y1);
    cairo_line_to(context, x2, y2);
    cairo_stroke(context);
}

} // namespace korlit::host
