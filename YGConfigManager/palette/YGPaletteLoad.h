// SPDX-License-Identifier: MIT
//
// The palette of the terminal's visual theme: reads the colours, fonts and images of one palette
// file, answers them by key or name, switches between the light and the dark theme, and cuts and
// scales images and fits fonts to widths.
//
// One thread at a time uses a loader: a switch clears and refills what the lookups answer from. The
// static operations are safe from any thread. Nothing is thrown: a file that cannot be read is
// logged as "load palette config fail:" with the reason and leaves everything as it was; so it is
// when memory does not suffice. Pieces and scalings for which it does not suffice are missing,
// logged too.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/export.h"
#include "YGConfigManager/graphics/Color.h"
#include "YGConfigManager/graphics/Font.h"
#include "YGConfigManager/graphics/Image.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/xml/Element.h"

namespace yg {

/// Posted to NotificationCenter::standard() on the main thread after a switch of the theme; the
/// sender is the YGPaletteLoad, which answers from the new theme by then.
inline constexpr const char* YGUIOverallStyleDidChangeNotification =
    "YGUIOverallStyleDidChangeNotification";

/// Colours, fonts and images by their own name, and names by application key, in the file's order.
using PaletteColors = RecordMap<Color>;
using PaletteFonts = RecordMap<Font>;
using PaletteImages = RecordMap<Image>;
using PaletteNames = RecordMap<std::string>;

/// Images of a group, in their order.
using ImageList = std::vector<Image>;

class YG_EXPORT YGPaletteLoad : public std::enable_shared_from_this<YGPaletteLoad> {
public:
    /// A loader of the theme's palette, fully loaded: style 0 is the light theme, 1 the dark one.
    /// Null when the host has no path for the style's file and when the file cannot be read.
    /// Findings, of later loads too, go to the sink; see diagnostics/DiagnosticsSink.h.
    static std::shared_ptr<YGPaletteLoad> initWithPaletteStyle(std::int8_t style,
                                                               DiagnosticsSink* sink = nullptr);

    YGPaletteLoad(const YGPaletteLoad&) = delete;
    YGPaletteLoad& operator=(const YGPaletteLoad&) = delete;
    ~YGPaletteLoad() = default;

    /// Switches to another theme: loads its palette now, on this thread, and posts
    /// YGUIOverallStyleDidChangeNotification later, from the main queue (host/MainQueue.h), which
    /// keeps the loader alive until then. Nothing happens for the current style; when the palette
    /// cannot be loaded or the queue does not take the task, everything stays as it was and nothing
    /// is posted.
    void reloadPaletteWithOtherStyle(std::int8_t style);

    /// The style that was loaded last.
    std::int8_t currentPaletteStyle() const { return curColorPalatteStyle_; }

    // ---- Lookups. The texts must match exactly. ----

    /// The colour of an application key; red, the mark of a missing colour, when the key is absent
    /// or unknown, or when there is no colour of the name that it has.
    Color getCustomColor(OptionalText key) const;

    /// The font of an application key; the system font of 12 points when the key is absent or
    /// unknown, or when there is no font of the name that it has.
    Font getCustomFont(OptionalText key) const;

    /// The image of this name; images have no keys. None when there is none.
    std::optional<Image> getCustomImage(OptionalText name) const;

    /// The image of this name, scaled as by getImageFromOriImageByScale; none when there is none.
    std::optional<Image> getImageByScale(OptionalText name, std::uint32_t scaleType,
                                         double scaleValue) const;

    // ---- Groups: strips of pieces side by side, equally wide, numbered from 0 at the left. ----

    /// One piece of a strip. Its place is computed in points and taken in pixels as it stands, so a
    /// strip is to have one pixel for each point; its size is the strip's in points divided by the
    /// count. None for an absent image, and for an index that is not below the count.
    static std::optional<Image> getImageByImageAndGroupIndex(const std::optional<Image>& image,
                                                             std::uint64_t groupCount,
                                                             std::uint64_t indexInGroup);

    /// All pieces of a strip. Their width is the strip's in pixels divided by the count without
    /// remainder, so that columns at the right may be left over, and counts in points as well.
    /// Null for an absent image and a count of 0; empty when there are fewer columns than pieces.
    static std::shared_ptr<ImageList> getImagesByImageAndGroupCount(
        const std::optional<Image>& image, std::uint64_t groupCount);

    /// The image drawn at another size, its aspect ratio kept: type 0 makes it `scaleValue` points
    /// wide, type 1 as many high. None for an absent image, for any other type, for a value that is
    /// not above 0, and for a size that no image can have.
    static std::optional<Image> getImageFromOriImageByScale(const std::optional<Image>& image,
                                                            std::uint32_t scaleType,
                                                            double scaleValue);

    /// One piece of a strip, scaled; none when there is no such piece or no such scaling.
    static std::optional<Image> getImageInGroupByScale(const std::optional<Image>& image,
                                                       std::uint64_t groupCount,
                                                       std::uint64_t indexInGroup,
                                                       std::uint32_t scaleType, double scaleValue);

    /// All pieces of a strip, each of them scaled; a piece without a scaling is left out, and so is
    /// one with which they would have more than 64 Mi pixels together. Null for an absent image, a
    /// count of 0 and a value that is not above 0.
    static std::shared_ptr<ImageList> getImagesInGroupByScale(const std::optional<Image>& image,
                                                              std::uint64_t groupCount,
                                                              std::uint32_t scaleType,
                                                              double scaleValue);

    // ---- Fonts ----

    /// The font of this face and size; the system font of that size when the face is absent or not
    /// installed.
    static Font fontWithName(OptionalText face, double size);

    /// The font shrunk until the text fits: of its face, in the largest size of whole points, not
    /// above its own, at which `width` exceeds the width of the text by more than 1 point, and in
    /// the size 1 when there is none. A fraction of the font's size is dropped even when the text
    /// fits already. A font of less than 1 point comes back as it is, as any font does when memory
    /// does not suffice; an absent text is 0 wide.
    static Font fixFontWithFont(const Font& font, OptionalText stringValue, double width);

    // ---- The steps of a load, which initWithPaletteStyle and the switch take. ----

    /// Loads the palette of a style; the current style stays. False, with nothing changed, when
    /// there is no path for it and when the file cannot be read. Afterwards all five maps hold what
    /// the file has; a section that it lacks leaves its map empty.
    bool loadConfig(std::int8_t style);

    /// Adds the colours of a "COLORES" section; nothing for an empty handle, as for the others.
    void loadColor(const xml::Element& section);

    /// Adds the keys of an "APP_MAP/COLORES" section.
    void loadKeyColorName(const xml::Element& section);

    /// Adds the fonts of a "FONTS" section.
    void loadFont(const xml::Element& section);

    /// Adds the keys of an "APP_MAP/FONTS" section.
    void loadKeyFontName(const xml::Element& section);

    /// Adds the images of a "BITMAPS" section, loaded from the host's image folder; an image that
    /// cannot be loaded takes an earlier one of its name away. A file is read and decoded once, and
    /// its names share the pixels. Once the files of a section have 64 Mi pixels together, as their
    /// headers declare them and damaged ones too, or 256 MiB, whatever they hold, no further entry
    /// gets an image.
    void loadImage(const xml::Element& section);

    // ---- What was loaded. The references live as long as the loader; a load refills the maps.
    // ----

    /// Colours by name.
    const PaletteColors& customColors() const { return maps_.customColors; }

    /// Names of colours by application key.
    const PaletteNames& keyColorNames() const { return maps_.keyColorNames; }

    /// Fonts by name.
    const PaletteFonts& customFonts() const { return maps_.customFonts; }

    /// Names of fonts by application key.
    const PaletteNames& keyFontNames() const { return maps_.keyFontNames; }

    /// Images by name.
    const PaletteImages& customImages() const { return maps_.customImages; }

private:
    YGPaletteLoad(std::int8_t style, DiagnosticsSink* sink);

    struct Maps {
        PaletteColors customColors;
        PaletteNames keyColorNames;
        PaletteFonts customFonts;
        PaletteNames keyFontNames;
        PaletteImages customImages;
    };

    template <class Map, class Step>
    static void change(Map& map, Step step);

    // The steps, which throw std::bad_alloc.
    bool readConfig(std::int8_t style);
    void readColors(const xml::Element& section);
    void readKeyColors(const xml::Element& section);
    void readFonts(const xml::Element& section);
    void readKeyFonts(const xml::Element& section);
    void readImages(const xml::Element& section);

    Maps maps_;
    std::int8_t curColorPalatteStyle_;  // spelt so in the interface
    DiagnosticsSink* sink_;
};

template <>
struct Description<Color> {
    static constexpr std::tuple fields{
        Field{"red", &Color::red},
        Field{"green", &Color::green},
        Field{"blue", &Color::blue},
        Field{"alpha", &Color::alpha},
    };
};

template <>
struct Description<Font> {
    static constexpr std::tuple fields{
        Field{"faceName", &Font::faceName},
        Field{"pointSize", &Font::pointSize},
    };
};

template <>
struct Description<Image> {
    static constexpr std::tuple fields{
        Field{"width", &Image::width},
        Field{"height", &Image::height},
        Field{"pixelWidth", &Image::pixelWidth},
        Field{"pixelHeight", &Image::pixelHeight},
    };
};

template <>
struct Description<YGPaletteLoad> {
    static constexpr std::tuple fields{
        Field{"currentPaletteStyle", &YGPaletteLoad::currentPaletteStyle},
        Field{"customColors", &YGPaletteLoad::customColors},
        Field{"keyColorNames", &YGPaletteLoad::keyColorNames},
        Field{"customFonts", &YGPaletteLoad::customFonts},
        Field{"keyFontNames", &YGPaletteLoad::keyFontNames},
        Field{"customImages", &YGPaletteLoad::customImages},
    };
};

}  // namespace yg
