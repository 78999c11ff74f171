#include "host/plot/chart_file.h"

#include "host/files/extensions.h"
#include "host/plot/chart_pen.h"
#include "host/system/whole_file.h"
#include "host/text/utf8.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

struct Release {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Surface = std::unique_ptr<cairo_surface_t, Release>;
using Context = std::unique_ptr<cairo_t, Release>;

void require(cairo_status_t status) {
    if (status != CAIRO_STATUS_SUCCESS) {
        throw std::runtime_error{cairo_status_to_string(status)};
    }
}

cairo_status_t appendTo(void* stream, const unsigned char* bytes, unsigned int length) {
    auto& out = *static_cast<std::ostream*>(stream);
    out.write(reinterpret_cast<const char*>(bytes), length);
    return out ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
}

Surface surfaceFor(const Chart& chart, const ChartTarget& target, std::ostream& out) {
    switch (target.format) {
    case ChartFormat::Svg: {
        Surface surface{
            cairo_svg_surface_create_for_stream(appendTo, &out, chart.width, chart.height)};
        cairo_svg_surface_set_document_unit(surface.get(), CAIRO_SVG_UNIT_PX);
        return surface;
    }
    case ChartFormat::Pdf: {
        Surface surface{
            cairo_pdf_surface_create_for_stream(appendTo, &out, chart.width, chart.height)};
        cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE,
                                       chart.title.c_str());
        return surface;
    }
    case ChartFormat::Png:
        break;
    }
    return Surface{cairo_image_surface_create(
        CAIRO_FORMAT_RGB24, static_cast<int>(std::lround(chart.width * target.scale)),
        static_cast<int>(std::lround(chart.height * target.scale)))};
}

void render(const Chart& chart, const ChartTarget& target, std::ostream& out) {
    const Surface surface = surfaceFor(chart, target, out);
    const Context context{cairo_create(surface.get())};
    require(cairo_status(context.get()));
    if (target.format == ChartFormat::Png) {
        cairo_scale(context.get(), target.scale, target.scale);
    }
    drawChart(context.get(), chart);
    require(cairo_status(context.get()));
    if (target.format == ChartFormat::Png) {
        require(cairo_surface_write_to_png_stream(surface.get(), appendTo, &out));
    }
    cairo_surface_finish(surface.get());
    require(cairo_surface_status(surface.get()));
}

/// All that a chart writes but for numbers.
std::u32string charactersIn(const Chart& chart) {
    std::string all = chart.title + chart.subtitle + chart.note;
    for (const ChartPanel& panel : chart.panels) {
        all += panel.title + panel.unit;
        for (const ChartPeak& peak : panel.peaks) {
            all += peak.label;
        }
        for (const ChartLine& line : panel.lines) {
            all += line.name;
        }
    }
    return charactersOf(all);
}

bool hasPictureIn(cairo_scaled_font_t* font, char32_t character) {
    const std::string text = encoded(std::u32string(1, character));
    cairo_glyph_t* glyphs = nullptr;
    int count = 0;
    const cairo_status_t status =
        cairo_scaled_font_text_to_glyphs(font, 0, 0, text.c_str(), static_cast<int>(text.size()),
                                         &glyphs, &count, nullptr, nullptr, nullptr);
    const bool hasPicture =
        status == CAIRO_STATUS_SUCCESS &&
        std::all_of(glyphs, glyphs + count, [](const auto& glyph) { return glyph.index != 0; });
    cairo_glyph_free(glyphs);
    return hasPicture;
}

} // namespace

const std::vector<std::string>& chartFormatNames() {
    static const std::vector<std::string> names{"svg", "png", "pdf"};
    return names;
}

std::optional<ChartFormat> chartFormatOf(const fs::path& file) {
    const auto& names = chartFormatNames();
    const auto name = std::ranges::find_if(
        names, [&](const std::string& each) { return hasExtension(file, '.' + each); });
    return name == names.end() ? std::nullopt
                               : std::optional{static_cast<ChartFormat>(name - names.begin())};
}

void fitTo(Chart& chart, Paper sheet) {
    constexpr double pointsPerInch = 72;
    constexpr double millimetresPerInch = 25.4;
    constexpr std::size_t mostAcross = 2;
    const auto [shorter, longer] =
        sheet == Paper::A4 ? std::pair{210 / millimetresPerInch, 297 / millimetresPerInch}
                           : std::pair{8.5, 11.0};
    const bool isAcross = chart.panels.size() <= mostAcross;
    chart.width = (isAcross ? longer : shorter) * pointsPerInch;
    chart.height = (isAcross ? shorter : longer) * pointsPerInch;
}

void writeChart(const Chart& chart, const ChartTarget& target) {
    const std::string failure = "can't write " + target.file.string() + ": ";
    try {
        std::ostringstream whole;
        render(chart, target, whole);
        if (target.file == "-") {
            std::cout << whole.view();
        } else {
            writeWhole(target.file, target.permissions,
                       [&](std::ostream& out) { out << whole.view(); });
        }
    } catch (const fs::filesystem_error& error) {
        throw std::runtime_error{failure + error.code().message()};
    } catch (const std::runtime_error& error) {
        throw std::runtime_error{failure + error.what()};
    }
}

std::vector<std::string> missingPictures(const Chart& chart) {
    const Surface surface{cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1)};
    const Context context{cairo_create(surface.get())};
    setFont(context.get(), textSize);
    cairo_scaled_font_t* font = cairo_get_scaled_font(context.get());
    std::u32string characters = charactersIn(chart);
    std::ranges::sort(characters);
    characters.erase(std::unique(characters.begin(), characters.end()), characters.end());
    std::vector<std::string> missing;
    for (const char32_t character : characters) {
        if (!hasPictureIn(font, character)) {
            std::ostringstream name;
            name << "U+" << std::hex << std::uppercase << std::setw(4) << std::setfill('0')
                 << static_cast<std::uint32_t>(character);
            missing.push_back(name.str());
        }
    }
    return missing;
}

} // namespace korlit::host
