// SPDX-License-Identifier: MIT
#include "YGConfigManager/graphics/FontFile.h"

#include <new>
#include <utility>

#include <hb-ot.h>
#include <hb.h>

namespace yg {

namespace {

struct BufferDeleter {
    void operator()(hb_buffer_t* buffer) const { hb_buffer_destroy(buffer); }
};

}  // namespace

std::shared_ptr<const FontFile> FontFile::open(std::shared_ptr<const FontContent> content,
                                               int index) {
    // The lower half counts faces, the upper one the instances of a variable face from 1.
    constexpr unsigned half = 16;
    constexpr unsigned lower = 0xFFFF;
    const auto number = static_cast<unsigned>(index);
    const auto size = static_cast<unsigned>(content->bytes().size());
    const char* const bytes = content->bytes().data();
    using Content = std::shared_ptr<const FontContent>;
    hb_blob_t* const blob =
        hb_blob_create(bytes, size, HB_MEMORY_MODE_READONLY, new Content(std::move(content)),
                       [](void* shared) { delete static_cast<Content*>(shared); });
    hb_face_t* const face = hb_face_create(blob, number & lower);
    hb_blob_destroy(blob);
    if (hb_face_get_glyph_count(face) == 0) {
        hb_face_destroy(face);
        return nullptr;
    }
    // The size in units stays that of the face, so that widths are whole numbers.
    hb_font_t* const font = hb_font_create(face);
    hb_face_destroy(face);
    if (const unsigned instance = number >> half; instance > 0)
        hb_font_set_var_named_instance(font, instance - 1);
    hb_font_make_immutable(font);
    return std::shared_ptr<const FontFile>(new FontFile(font));
}

FontFile::FontFile(hb_font_t* font)
    : font_(font), unitsPerEm_(hb_face_get_upem(hb_font_get_face(font))) {}

FontFile::~FontFile() {
    hb_font_destroy(font_);
}

bool FontFile::hasCharacter(char32_t character) const {
    hb_codepoint_t glyph = 0;
    return hb_font_get_nominal_glyph(font_, character, &glyph) != 0;
}

std::int64_t FontFile::widthOf(std::span<const char32_t> line, std::size_t first, std::size_t count,
                               std::uint32_t script) const {
    static_assert(sizeof(char32_t) == sizeof(hb_codepoint_t));
    const std::unique_ptr<hb_buffer_t, BufferDeleter> buffer(hb_buffer_create());
    // Script and direction are given and the language is left open: guessing would ask the locale.
    const auto tag = static_cast<hb_script_t>(script);
    const hb_direction_t direction = hb_script_get_horizontal_direction(tag);
    hb_buffer_set_script(buffer.get(), tag);
    hb_buffer_set_direction(buffer.get(),
                            direction == HB_DIRECTION_RTL ? direction : HB_DIRECTION_LTR);
    // HarfBuzz looks a few characters to either side; pointing near keeps its lengths small.
    constexpr std::size_t context = 8;
    const std::size_t before = first < context ? first : context;
    const std::size_t after =
        line.size() - first - count < context ? line.size() - first - count : context;
    hb_buffer_add_codepoints(buffer.get(),
                             reinterpret_cast<const hb_codepoint_t*>(line.data() + first - before),
                             static_cast<int>(before + count + after),
                             static_cast<unsigned>(before), static_cast<int>(count));
    const hb_bool_t isShaped = hb_shape_full(font_, buffer.get(), nullptr, 0, nullptr);
    if (isShaped == 0 || hb_buffer_allocation_successful(buffer.get()) == 0)
        throw std::bad_alloc();

    unsigned glyphs = 0;
    const hb_glyph_position_t* const positions =
        hb_buffer_get_glyph_positions(buffer.get(), &glyphs);
    std::int64_t width = 0;
    for (unsigned i = 0; i < glyphs; ++i)
        width += positions[i].x_advance;
    return width;
}

}  // namespace yg
