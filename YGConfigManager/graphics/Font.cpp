// SPDX-License-Identifier: MIT
#include "YGConfigManager/graphics/Font.h"

#include <utility>

#include "YGConfigManager/graphics/FontFace.h"
#include "YGConfigManager/graphics/FontServices.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Immortal.h"

namespace yg {

Font::Font(std::shared_ptr<const FontFace> face, double size)
    : face_(std::move(face)), pointSize_(size) {}

bool Font::shareFontconfig() noexcept {
    return FontServices::shareFontconfig();
}

std::optional<Font> Font::named(OptionalText face, double size) {
    return guarded("find font", [=] { return FontServices::shared().named(*face, size); });
}

Font Font::system(double size) {
    return guarded(
        "find font", [=] { return FontServices::shared().system(size); },
        Font(nullptr, FontServices::sizeOrDefault(size)));
}

const std::string& Font::faceName() const {
    static Immortal<const std::string> none(FontServices::nameOfNoFace);
    return face_ ? face_->name() : *none;
}

double Font::widthOf(OptionalText text) const {
    return guarded("measure text", [&] { return FontServices::widthOf(*this, text); });
}

bool operator==(const Font& left, const Font& right) {
    return left.pointSize() == right.pointSize() && left.faceName() == right.faceName();
}

}  // namespace yg
