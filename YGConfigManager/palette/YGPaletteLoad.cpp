// SPDX-License-Identifier: MIT
//
// The palette loader: its life, the switch of the theme, lookups. Sections are read in
// PaletteLoading.cpp, images cut and scaled in ImageGroups.cpp, fonts fitted in FontFitting.cpp.
#include "YGConfigManager/palette/YGPaletteLoad.h"

#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/MainQueue.h"
#include "YGConfigManager/host/NotificationCenter.h"

namespace yg {

namespace {

constexpr std::string_view loadName = "load palette config";

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
    auto loader = guarded(
        loadName, [&] { return std::shared_ptr<YGPaletteLoad>(new YGPaletteLoad(style, sink)); });
    return loader && loader->loadConfig(style) ? loader : nullptr;
}

void YGPaletteLoad::reloadPaletteWithOtherStyle(std::int8_t style) {
    if (style == curColorPalatteStyle_)
        return;
    guarded(loadName, [&] {
        std::function<void()> task = [loader = shared_from_this()] {
            NotificationCenter::standard().post(YGUIOverallStyleDidChangeNotification, loader);
        };
        YGPaletteLoad loaded(curColorPalatteStyle_, sink_);
        if (!loaded.readConfig(style))
            return;
        std::swap(maps_, loaded.maps_);
        const std::int8_t before = std::exchange(curColorPalatteStyle_, style);
        // A switch without a notification would leave old and new colours side by side.
        if (!postToMainQueue(std::move(task))) {
            std::swap(maps_, loaded.maps_);
            curColorPalatteStyle_ = before;
        }
    });
}

bool YGPaletteLoad::loadConfig(std::int8_t style) {
    return guarded(loadName, [&] {
        YGPaletteLoad loaded(curColorPalatteStyle_, sink_);
        const bool isRead = loaded.readConfig(style);
        if (isRead)
            std::swap(maps_, loaded.maps_);
        return isRead;
    });
}

/// Does a step of a load, which adds to a map, in full or not at all.
template <class Map, class Step>
void YGPaletteLoad::change(Map& map, Step step) {
    guarded(loadName, [&] {
        Map before = map;
        try {
            step();
        } catch (...) {
            std::swap(map, before);
            throw;
        }
    });
}

void YGPaletteLoad::loadColor(const xml::Element& section) {
    change(maps_.customColors, [&] { readColors(section); });
}

void YGPaletteLoad::loadKeyColorName(const xml::Element& section) {
    change(maps_.keyColorNames, [&] { readKeyColors(section); });
}

void YGPaletteLoad::loadFont(const xml::Element& section) {
    change(maps_.customFonts, [&] { readFonts(section); });
}

void YGPaletteLoad::loadKeyFontName(const xml::Element& section) {
    change(maps_.keyFontNames, [&] { readKeyFonts(section); });
}

void YGPaletteLoad::loadImage(const xml::Element& section) {
    change(maps_.customImages, [&] { readImages(section); });
}

Color YGPaletteLoad::getCustomColor(OptionalText key) const {
    const Color* color = valueOf(key, maps_.keyColorNames, maps_.customColors);
    return color ? *color : Color::redColor();
}

Font YGPaletteLoad::getCustomFont(OptionalText key) const {
    const Font* font = valueOf(key, maps_.keyFontNames, maps_.customFonts);
    return font ? *font : Font::system(sizeOfMissingFont);
}

std::optional<Image> YGPaletteLoad::getCustomImage(OptionalText name) const {
    const Image* image = name ? maps_.customImages.find(*name) : nullptr;
    return image ? std::optional(*image) : std::nullopt;
}

std::optional<Image> YGPaletteLoad::getImageByScale(OptionalText name, std::uint32_t scaleType,
                                                    double scaleValue) const {
    return getImageFromOriImageByScale(getCustomImage(name), scaleType, scaleValue);
}

}  // namespace yg
