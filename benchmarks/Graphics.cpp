// SPDX-License-Identifier: MIT
//
// Scaling and cutting images, beside cairo and gdk-pixbuf, and fitting a font to a width, beside
// Pango. The peers get the same pixels and the same texts.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <cairo.h>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <pango/pangocairo.h>

#include "YGConfigManager/graphics/Font.h"
#include "YGConfigManager/graphics/Image.h"

#include "benchmarks/Comparison.h"

namespace yg::benchmarks {

namespace {

constexpr std::size_t wide = 4000;
constexpr std::size_t high = 2000;

std::vector<std::uint8_t> pixels(std::size_t width, std::size_t height, bool isOpaque) {
    std::vector<std::uint8_t> bytes(width * height * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 4) {
        const std::size_t x = i / 4 % width;
        const std::size_t y = i / 4 / width;
        bytes[i] = static_cast<std::uint8_t>(x);
        bytes[i + 1] = static_cast<std::uint8_t>(y);
        bytes[i + 2] = static_cast<std::uint8_t>(x * y);
        bytes[i + 3] = isOpaque ? 255 : static_cast<std::uint8_t>(x + 3 * y);
    }
    return bytes;
}

Image imageOf(std::size_t width, std::size_t height, const std::vector<std::uint8_t>& rgba) {
    std::optional<Image> image = Image::fromPixels(width, height, rgba);
    require(image.has_value(), "no image");
    return *std::move(image);
}

using Surface = std::shared_ptr<cairo_surface_t>;

Surface surface(int width, int height) {
    return {cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height), cairo_surface_destroy};
}

/// The pixels with their colours multiplied by alpha, as cairo has them.
Surface surfaceOf(const std::vector<std::uint8_t>& rgba, int width, int height) {
    const Surface result = surface(width, height);
    unsigned char* const data = cairo_image_surface_get_data(result.get());
    for (std::size_t i = 0; i < rgba.size(); i += 4) {
        const std::uint32_t alpha = rgba[i + 3];
        std::uint32_t pixel = alpha << 24;
        for (std::size_t channel = 0; channel < 3; ++channel)
            pixel |= (rgba[i + channel] * alpha + 127) / 255 << (16 - 8 * channel);
        std::memcpy(data + i, &pixel, sizeof pixel);
    }
    cairo_surface_mark_dirty(result.get());
    return result;
}

using Pixbuf = std::shared_ptr<GdkPixbuf>;

/// The pixels themselves stay with the caller.
Pixbuf pixbufOf(const std::vector<std::uint8_t>& rgba, int width, int height) {
    return {gdk_pixbuf_new_from_data(rgba.data(), GDK_COLORSPACE_RGB, TRUE, 8, width, height,
                                     width * 4, nullptr, nullptr),
            g_object_unref};
}

void addScaling(const std::string& name, bool isOpaque) {
    const auto rgba =
        std::make_shared<const std::vector<std::uint8_t>>(pixels(wide, high, isOpaque));
    const Image image = imageOf(wide, high, *rgba);
    const auto library = [image](benchmark::State& state) {
        for (auto unused : state)
            benchmark::DoNotOptimize(image.scaled(wide / 2, high / 2));
    };
    const auto cairo = [source = surfaceOf(*rgba, wide, high)](benchmark::State& state) {
        for (auto unused : state) {
            const Surface target = surface(wide / 2, high / 2);
            cairo_t* const context = cairo_create(target.get());
            cairo_scale(context, 0.5, 0.5);
            cairo_set_source_surface(context, source.get(), 0, 0);
            cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_BILINEAR);
            cairo_pattern_set_extend(cairo_get_source(context), CAIRO_EXTEND_PAD);
            cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
            cairo_paint(context);
            cairo_destroy(context);
        }
    };
    const auto gdkPixbuf = [source = pixbufOf(*rgba, wide, high), rgba](benchmark::State& state) {
        for (auto unused : state)
            g_object_unref(
                gdk_pixbuf_scale_simple(source.get(), wide / 2, high / 2, GDK_INTERP_BILINEAR));
    };
    benchmark::RegisterBenchmark(name.c_str(), library)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark((name + "/cairo").c_str(), cairo)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark((name + "/gdk_pixbuf").c_str(), gdkPixbuf)
        ->Unit(benchmark::kMillisecond);
    compare({name, name + "/cairo", 3});
    compare({name, name + "/gdk_pixbuf", 1});
}

void addCutting() {
    constexpr int parts = 4;
    constexpr int width = 1024;
    constexpr int height = 64;
    const auto rgba =
        std::make_shared<const std::vector<std::uint8_t>>(pixels(width, height, false));
    const Image strip = imageOf(width, height, *rgba);
    const auto library = [strip](benchmark::State& state) {
        const std::size_t before = allocations();
        for (auto unused : state) {
            for (int i = 0; i < parts; ++i)
                benchmark::DoNotOptimize(
                    strip.cut(i * width / parts, 0, width / parts, height, width / parts, height));
        }
        require(allocations() == before, "cutting allocates");
    };
    const auto gdkPixbuf = [source = pixbufOf(*rgba, width, height),
                            rgba](benchmark::State& state) {
        for (auto unused : state) {
            for (int i = 0; i < parts; ++i)
                g_object_unref(gdk_pixbuf_new_subpixbuf(source.get(), i * width / parts, 0,
                                                        width / parts, height));
        }
    };
    benchmark::RegisterBenchmark("graphics/cut", library);
    benchmark::RegisterBenchmark("graphics/cut/gdk_pixbuf", gdkPixbuf);
    compare({"graphics/cut", "graphics/cut/gdk_pixbuf", 1});
}

constexpr std::array<const char*, 4> texts = {"Shanghai Composite 3,021.55",
                                              "上证综合指数 3,021.55", "成交金额（万元）",
                                              "Turnover (10,000 CNY)"};

void addFitting() {
    const std::string face = Font::system(40).faceName();
    const auto library = [face](benchmark::State& state) {
        std::size_t next = 0;
        for (auto unused : state) {
            for (int size = 40; size > 0; --size)
                benchmark::DoNotOptimize(Font::named(face, size)->widthOf(texts[next]));
            next = (next + 1) % texts.size();
        }
    };
    const auto pango = [face](benchmark::State& state) {
        PangoFontMap* const map = pango_cairo_font_map_new();
        // A point is a unit, and widths grow with the size as they do with us.
        pango_cairo_font_map_set_resolution(PANGO_CAIRO_FONT_MAP(map), 72);
        PangoContext* const context = pango_font_map_create_context(map);
        pango_context_set_round_glyph_positions(context, FALSE);
        PangoLayout* const layout = pango_layout_new(context);
        PangoFontDescription* const font = pango_font_description_from_string(face.c_str());
        std::size_t next = 0;
        for (auto unused : state) {
            pango_layout_set_text(layout, texts[next], -1);
            for (int size = 40; size > 0; --size) {
                pango_font_description_set_size(font, size * PANGO_SCALE);
                pango_layout_set_font_description(layout, font);
                int width = 0;
                pango_layout_get_size(layout, &width, nullptr);
                benchmark::DoNotOptimize(width);
            }
            next = (next + 1) % texts.size();
        }
        pango_font_description_free(font);
        g_object_unref(layout);
        g_object_unref(context);
        g_object_unref(map);
    };
    benchmark::RegisterBenchmark("graphics/fit", library)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("graphics/fit/pango", pango)->Unit(benchmark::kMicrosecond);
    compare({"graphics/fit", "graphics/fit/pango", 1});
}

}  // namespace

void registerGraphics() {
    addScaling("graphics/scale", false);
    addScaling("graphics/scale_opaque", true);
    addCutting();
    addFitting();
}

}  // namespace yg::benchmarks
