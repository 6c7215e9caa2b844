// SPDX-License-Identifier: MIT
//
// The palette loader: its life, the switch of the theme, lookups. Sections are read in
// PaletteLoading.cpp, images cut and scaled in ImageGroups.cpp, fonts fitted in FontFitting.cpp.
#include "YGConfigManager/palette/YGPaletteLoad.h"

#include "YGConfigManager/host/MainQueue.h"
#include "YGConfigManager/host/NotificationCenter.h"

namespace yg {

namespace {

constexpr double sizeOfMissingFont = 12;

/// What a key leads to by way of a name; null on any miss. The empty name leads nowhere.
template <class Value>
const Value* valueOf(const std::optional<std::string_view>& key, const PaletteNames& names,
                     const RecordMap<Value>& values) {
    const std::string* name = key ? names.find(*key) : nullptr;
    return name && !name->empty() ? values.find(*name) : nullptr;
}

}  // namespace

YGPaletteLoad::YGPaletteLoad(std::int8_t style, DiagnosticsSink* sink)
    : curColorPalatteStyle_(style), sink_(sink) {}

std::shared_ptr<YGPaletteLoad> YGPaletteLoad::initWithPaletteStyle(std::int8_t style,
                                                                   DiagnosticsSink* sink) {
    std::shared_ptr<YGPaletteLoad> loader(new YGPaletteLoad(style, sink));
    if (!loader->loadConfig(style))
        return nullptr;
    loader->sink_ = nullptr;
    return loader;
}

void YGPaletteLoad::reloadPaletteWithOtherStyle(std::int8_t style) {
    if (style == curColorPalatteStyle_ || !loadConfig(style))
        return;
    curColorPalatteStyle_ = style;
    postToMainQueue([loader = shared_from_this()] {
        NotificationCenter::standard().post(YGUIOverallStyleDidChangeNotification, loader);
    });
}

Color YGPaletteLoad::getCustomColor(const std::optional<std::string_view>& key) const {
    const Color* color = valueOf(key, keyColorNames_, customColors_);
    return color ? *color : Color::redColor();
}

Font YGPaletteLoad::getCustomFont(const std::optional<std::string_view>& key) const {
    const Font* font = valueOf(key, keyFontNames_, customFonts_);
    return font ? *font : Font::system(sizeOfMissingFont);
}

std::optional<Image> YGPaletteLoad::getCustomImage(
    const std::optional<std::string_view>& name) const {
    const Image* image = name ? customImages_.find(*name) : nullptr;
    return image ? std::optional(*image) : std::nullopt;
}

std::optional<Image> YGPaletteLoad::getImageByScale(const std::optional<std::string_view>& name,
                                                    std::uint32_t scaleType,
                                                    double scaleValue) const {
    return getImageFromOriImageByScale(getCustomImage(name), scaleType, scaleValue);
}

}  // namespace yg
