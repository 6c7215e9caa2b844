// SPDX-License-Identifier: MIT
//
// What fonts of one face share: its name, its file, the faces that replace it, and the last
// text measured. Any thread may call. The services that made a face outlive it.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/graphics/FontFile.h"

namespace yg {

class FontServices;

/// The faces that replace another, best first; made by FontServices.
class FontFallbacks;

/// A width that holds for every size: units of one or more faces.
class TextExtent {
public:
    void add(std::int64_t units, unsigned unitsPerEm);

    /// In points at a size.
    double at(double size) const;

private:
    struct Part {
        std::int64_t units;
        unsigned unitsPerEm;
    };
    std::vector<Part> parts_;
};

class FontFace {
public:
    /// Without a file the face has a width rule instead: half an em for each character, one for
    /// those that are wide in East Asian text, none for marks.
    FontFace(std::string name, std::shared_ptr<const FontFile> file,
             std::shared_ptr<FontFallbacks> fallbacks, FontServices& services);

    const std::string& name() const { return name_; }

    /// The width in points of the text's widest line at `size`.
    double widthOf(std::string_view text, double size) const;

    /// The same by the rule of a face without a file; takes no memory.
    static double widthByRule(std::string_view text, double size);

private:
    TextExtent extentOf(std::string_view text) const;
    TextExtent extentOfLine(const std::vector<char32_t>& line) const;
    const FontFile& fileFor(char32_t character) const;

    const std::string name_;
    const std::shared_ptr<const FontFile> file_;
    const std::shared_ptr<FontFallbacks> fallbacks_;
    FontServices& services_;

    // A font is fitted to a width by measuring one text at many sizes.
    mutable std::mutex mutex_;
    mutable std::string lastText_;
    mutable TextExtent lastExtent_;
};

}  // namespace yg
