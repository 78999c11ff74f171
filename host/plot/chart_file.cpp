#include "host/plot/chart_file.h"

#include "host/files/extensions.h"
#include "host/system/temporary_folder.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

struct Release {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Surface = std::unique_ptr<cairo_surface_t, Release>;
using Context = std::unique_ptr<cairo_t, Release>;

constexpr std::array<std::pair<std::string_view, ChartFormat>, 3> endings{
    {{".svg", ChartFormat::Svg}, {".png", ChartFormat::Png}, {".pdf", ChartFormat::Pdf}}};

void require(cairo_status_t status) {
    if (status != CAIRO_STATUS_SUCCESS) {
        throw std::runtime_error{cairo_status_to_string(status)};
    }
}

cairo_status_t appendTo(void* stream, const unsigned char* bytes, unsigned int length) {
    auto& out = *static_cast<std::ofstream*>(stream);
    out.write(reinterpret_cast<const char*>(bytes), length);
    return out ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
}

Surface surfaceFor(ChartFormat format, double width, double height, std::ofstream& out) {
    switch (format) {
    case ChartFormat::Svg: {
        Surface surface{cairo_svg_surface_create_for_stream(appendTo, &out, width, height)};
        cairo_svg_surface_set_document_unit(surface.get(), CAIRO_SVG_UNIT_PX);
        return surface;
    }
    case ChartFormat::Pdf:
        return Surface{cairo_pdf_surface_create_for_stream(appendTo, &out, width, height)};
    case ChartFormat::Png:
        break;
    }
    return Surface{cairo_image_surface_create(CAIRO_FORMAT_RGB24,
                                              static_cast<int>(std::lround(width)),
                                              static_cast<int>(std::lround(height)))};
}

void render(const Chart& chart, ChartFormat format, const fs::path& file) {
    std::ofstream out{file, std::ios::binary};
    const Surface surface = surfaceFor(format, chart.width, chart.height, out);
    const Context context{cairo_create(surface.get())};
    require(cairo_status(context.get()));
    drawChart(context.get(), chart);
    require(cairo_status(context.get()));
    if (format == ChartFormat::Png) {
        require(cairo_surface_write_to_png_stream(surface.get(), appendTo, &out));
    }
    cairo_surface_finish(surface.get());
    require(cairo_surface_status(surface.get()));
    out.close();
    require(out ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR);
}

} // namespace

std::optional<ChartFormat> chartFormatOf(const fs::path& file) {
    const auto* const found = std::ranges::find_if(
        endings, [&](const auto& each) { return hasExtension(file, each.first); });
    return found == endings.end() ? std::nullopt : std::optional{found->second};
}

void writeChart(const Chart& chart, ChartFormat format, const fs::path& target) {
    const std::string failure = "can't write " + target.string() + ": ";
    try {
        const fs::path folder = target.has_parent_path() ? target.parent_path() : ".";
        const TemporaryFolder stage{folder};
        const fs::path drawn = stage.path() / target.filename();
        render(chart, format, drawn);
        fs::rename(drawn, target);
    } catch (const fs::filesystem_error& error) {
        throw std::runtime_error{failure + error.code().message()};
    } catch (const std::runtime_error& error) {
        throw std::runtime_error{failure + error.what()};
    }
}

} // namespace korlit::host
