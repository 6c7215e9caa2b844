// SPDX-License-Identifier: MIT
#include "YGConfigManager/graphics/Font.h"

#include <utility>

#include "YGConfigManager/graphics/FontFace.h"
#include "YGConfigManager/graphics/FontServices.h"

namespace yg {

Font::Font(std::shared_ptr<const FontFace> face, double size)
    : face_(std::move(face)), pointSize_(size) {}

std::optional<Font> Font::named(std::string_view face, double size) {
    return FontServices::shared().named(face, size);
}

Font Font::system(double size) {
    return FontServices::shared().system(size);
}

const std::string& Font::faceName() const {
    return face_->name();
}

double Font::widthOf(const std::optional<std::string_view>& text) const {
    return text ? face_->widthOf(*text, pointSize_) : 0;
}

bool operator==(const Font& left, const Font& right) {
    return left.pointSize() == right.pointSize() && left.faceName() == right.faceName();
}

}  // namespace yg
