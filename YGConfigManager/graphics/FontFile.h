// SPDX-License-Identifier: MIT
//
// A face in a font file, opened for measuring. Never changes; any thread may call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "YGConfigManager/graphics/FontContent.h"

struct hb_font_t;

namespace yg {

class FontFile {
public:
    /// The face in the content of a file, by its index as fontconfig counts them. Null when there
    /// is nothing to measure with. Faces of one file share its content.
    static std::shared_ptr<const FontFile> open(std::shared_ptr<const FontContent> content,
                                                int index);

    FontFile(const FontFile&) = delete;
    FontFile& operator=(const FontFile&) = delete;
    ~FontFile();

    /// The face's own units in the height of a line of text without space, its em.
    unsigned unitsPerEm() const { return unitsPerEm_; }

    bool hasCharacter(char32_t character) const;

    /// The width in the face's units of `count` characters from `first` on in a line of text, all
    /// of one script, a four-letter code. What stands beside them in the line shapes them too.
    /// Throws std::bad_alloc.
    std::int64_t widthOf(std::span<const char32_t> line, std::size_t first, std::size_t count,
                         std::uint32_t script) const;

private:
    explicit FontFile(hb_font_t* font);

    hb_font_t* font_;
    unsigned unitsPerEm_;
};

}  // namespace yg
