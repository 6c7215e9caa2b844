// SPDX-License-Identifier: MIT
//
// Fonts: whether a face is installed, and how wide a text is in it. A font is a small value that
// any thread may make, copy and measure with. What the machine has installed is looked up at the
// first use of any font and not again: in a configuration of fontconfig that the library loads for
// itself, or in that of the process (Font::shareFontconfig). Nothing is thrown; that memory does
// not suffice is logged.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/export.h"
#include "YGConfigManager/text/OptionalText.h"

namespace yg {

class FontFace;
class FontServices;

/// A face at a size.
class YG_EXPORT Font {
public:
    /// The size in points of a font whose size is asked for as 0 or less.
    static constexpr double defaultSize = 12;

    /// Has all fonts found in the current configuration of fontconfig of this process, as
    /// FcConfigGetCurrent answers it at the first use of any font, instead of one of our own. For
    /// applications that use fontconfig themselves or through their toolkit: the configuration is
    /// there already, so the first font comes 2 milliseconds sooner, and the fonts that the
    /// application has added to it by then are known as well. The library changes nothing in it,
    /// and holds a share of it until the process ends. The application must not change it, by
    /// FcConfigAppFontAddFile for example, while another thread uses fonts of this library; what it
    /// adds after the first use of a font stays unknown. If the process has no current
    /// configuration by then, the default one is loaded and becomes that.
    ///
    /// To be called before the first use of any font, palettes included. Answers whether fonts are
    /// found there: false after such a use, which stays as it is, unless this was called before.
    static bool shareFontconfig() noexcept;

    /// The font of the installed face `face` at `size` points; none when there is no such face. The
    /// name is that face's PostScript name, full name or family name, in any language that the face
    /// is named in; letter case and blanks do not count. Of a family the face nearest to regular
    /// upright is taken. No substitute is given: a name for which the machine has only a
    /// replacement is unknown. So is a name of more than 1,024 bytes, and any name when memory runs
    /// out. A size of 0 or less, or NaN, gives the default size. A font file is read into memory
    /// once. A file of more than 256 MiB, or one that would bring all open files above 512 MiB,
    /// counts as not installed.
    static std::optional<Font> named(OptionalText face, double size);

    /// The machine's font for user interfaces at `size` points, sizes as in named(). Never fails:
    /// with no font installed at all, or no memory to find one, the face is called "sans-serif",
    /// and its characters are half as wide as the font is high, East Asian wide ones as wide as it
    /// is high.
    static Font system(double size);

    /// The face's name in the spelling of the name by which it was found; of the system font the
    /// full name. named() finds the same face by it. Stays valid as long as any copy of the font.
    const std::string& faceName() const;

    /// The size in points, always above 0.
    double pointSize() const { return pointSize_; }

    /// The width of `text` in points, with kerning, at no particular resolution: not rounded, not
    /// hinted, and twice as much at twice the size. Of several lines the widest counts. Characters
    /// that the face lacks are measured in the face that replaces it; a tab counts as a blank,
    /// other control characters as nothing, broken UTF-8 as replacement characters. Absent: 0; so
    /// it is when memory does not suffice.
    double widthOf(OptionalText text) const;

    /// Fonts are equal when their face names and sizes are.
    friend YG_EXPORT bool operator==(const Font& left, const Font& right);

private:
    friend class FontServices;
    Font(std::shared_ptr<const FontFace> face, double size);

    std::shared_ptr<const FontFace> face_;
    double pointSize_;
};

}  // namespace yg
