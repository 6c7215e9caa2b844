// SPDX-License-Identifier: MIT
//
// One load of a palette: the file of a style, its sections and their entries.
#include <cstddef>
#include <span>
#include <string>
#include <type_traits>
#include <utility>

#include "YGConfigManager/graphics/FontServices.h"
#include "YGConfigManager/graphics/ImageFileReader.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/host/YGFrameComFun.h"
#include "YGConfigManager/palette/ColorOrSubstitute.h"
#include "YGConfigManager/palette/PaletteAttributes.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/records/Entry.h"
#include "YGConfigManager/text/Paths.h"

namespace yg {

namespace {

constexpr std::int64_t storageArea = 1;

std::optional<std::string_view> fileNameOf(std::int8_t style) {
    switch (style) {
        case 0:
            return "palette_white.xml";
        case 1:
            return "palette_black.xml";
        default:
            return std::nullopt;
    }
}

/// A section: where it is in the file, the line that is logged when it is there, and how it is
/// read.
struct Section {
    std::string_view path;
    std::string_view logLine;
    void (YGPaletteLoad::*read)(const xml::Element&);
    xml::Element element;  ///< the first at its path; empty when there is none
};

/// Finds the sections in an element, and what stands beside them, which has no effect.
void findSections(Entry& entry, const std::string& above, std::span<Section> sections) {
    const std::string path = above + '/' + std::string(entry.name());
    bool leadsOn = false;
    for (Section& section : sections) {
        leadsOn = leadsOn || section.path.starts_with(path + '/');
        if (section.path != path)
            continue;
        if (section.element)
            return entry.drop("second-palette-section"_rule);
        section.element = entry.element();
        return entry.leave();
    }
    if (!leadsOn)
        return entry.drop(above.empty() ? "palette-root-name"_rule : "unknown-palette-section"_rule,
                          {}, entry.name());
    entry.forEachElement([&](Entry& inner) { findSections(inner, path, sections); });
}

/// Calls `visit(Entry&, const Record&)` for each entry of a section, all its elements, that has a
/// name.
template <class Record, class Visit>
void forEachNamed(DiagnosticsSink* sink, const xml::Element& section, Visit visit) {
    reading(Reporter(sink), section, [&](Entry& entries) {
        entries.forEachElement([&](Entry& entry) {
            Record record;
            if (!entry.read(record).empty())
                return entry.drop("palette-entry-without-name"_rule);
            // An image has no key that would have to name it.
            if (record.name->empty() && !std::is_same_v<Record, ImageEntry>)
                entry.report("unreachable-palette-name"_rule, "NAME");
            visit(entry, record);
        });
    });
}

/// A map while a section is added to it.
template <class Value>
struct Additions {
    /// Stores the value of an entry, in the place of an earlier one of its name.
    void set(Entry& entry, std::string_view name, Value value) {
        const auto earlier = entry.define(name, places);
        if (values.set(name, std::move(value)))
            entry.report(duplicate, attribute, name, earlier);
    }

    RecordMap<Value>& values;
    std::string_view attribute = "NAME";
    const Rule& duplicate = "duplicate-palette-name"_rule;
    RecordMap<xml::Element> places = {};  ///< filled for a sink only
};

/// Adds the keys of a section to `names`, which are those of `values`; `unresolved` says that there
/// is no such value.
template <Naming named, class Value>
void readKeys(DiagnosticsSink* sink, const xml::Element& section, const RecordMap<Value>& values,
              PaletteNames& names, const Rule& unresolved) {
    reading(Reporter(sink), section, [&](Entry& entries) {
        Additions<std::string> keys{names, "KEY", "duplicate-palette-key"_rule};
        entries.forEachElement([&](Entry& entry) {
            KeyEntry<named> read;
            if (const auto missing = entry.read(read); !missing.empty())
                return entry.drop("incomplete-palette-key"_rule, {}, missing);
            if (entry && (read.value->empty() || !values.contains(*read.value)))
                entry.report(unresolved, "VALUE", *read.value);
            keys.set(entry, *read.key, std::string(*read.value));
        });
    });
}

}  // namespace

bool YGPaletteLoad::readConfig(std::int8_t style) {
    const Reporter reporter(sink_);
    const auto path =
        YGFrameComFun::getStorageFilePath(storageArea, std::nullopt, fileNameOf(style), false);
    if (!path || path->empty()) {
        reporter.report("no-palette-path"_rule, {}, std::to_string(style));
        return false;
    }
    const xml::ParseResult parsed = reporter.parseFile(*path);
    if (!parsed) {
        writeRuntimeError("load palette config fail:%@", parsed.error);
        reporter.unreadable("unreadable-file"_rule, *path, parsed);
        return false;
    }
    // In the order in which they are read. A line says the opposite of what it is logged for, as
    // the interface has it.
    Section sections[] = {
        {"/ROOT/SWPALETTE/COLORES", {}, &YGPaletteLoad::readColors, {}},
        {"/ROOT/SWPALETTE/APP_MAP/COLORES", {}, &YGPaletteLoad::readKeyColors, {}},
        {"/ROOT/SWPALETTE/FONTS", "palette fonts is empty", &YGPaletteLoad::readFonts, {}},
        {"/ROOT/SWPALETTE/APP_MAP/FONTS",
         "palette font names is empty",
         &YGPaletteLoad::readKeyFonts,
         {}},
        {"/ROOT/SWPALETTE/BITMAPS", {}, &YGPaletteLoad::readImages, {}},
    };
    reading(reporter, parsed.document.root(),
            [&](Entry& root) { findSections(root, {}, sections); });
    for (const Section& section : sections) {
        if (section.element && !section.logLine.empty())
            writeRuntimeLog("%@", section.logLine);
        (this->*section.read)(section.element);
    }
    return true;
}

void YGPaletteLoad::readColors(const xml::Element& section) {
    constexpr float full = 255;
    Additions<Color> colors{maps_.customColors};
    forEachNamed<ColorEntry>(sink_, section, [&](Entry& entry, const ColorEntry& read) {
        // Alpha has another scale than the others. In a switch the style is still the old one.
        const auto color =
            Color::sRGB(read.red / full, read.green / full, read.blue / full, read.alpha);
        colors.set(entry, *read.name, colorOrSubstitute(color, curColorPalatteStyle_));
    });
}

void YGPaletteLoad::readKeyColors(const xml::Element& section) {
    readKeys<Naming::color>(sink_, section, maps_.customColors, maps_.keyColorNames,
                            "unknown-palette-color"_rule);
}

void YGPaletteLoad::readFonts(const xml::Element& section) {
    Additions<Font> fonts{maps_.customFonts};
    forEachNamed<FontEntry>(sink_, section, [&](Entry& entry, const FontEntry& read) {
        FontServices& services = FontServices::shared();
        if (!(read.height > 0))
            entry.reportIfThere("font-without-size"_rule, "HEIGHT");
        auto font = read.face ? services.named(*read.face, read.height) : std::nullopt;
        if (!font)
            entry.reportIfThere("unknown-font-face"_rule, "FACE");
        fonts.set(entry, *read.name, font ? *std::move(font) : services.system(read.height));
    });
}

void YGPaletteLoad::readKeyFonts(const xml::Element& section) {
    readKeys<Naming::font>(sink_, section, maps_.customFonts, maps_.keyFontNames,
                           "unknown-palette-font"_rule);
}

void YGPaletteLoad::readImages(const xml::Element& section) {
    const auto folder =
        section ? YGFrameComFun::getDefualtFolderPath(imageFolderKind) : std::nullopt;
    if (!folder || folder->empty()) {
        return reading(Reporter(sink_), section,
                       [](Entry& images) { images.drop("no-image-folder"_rule); });
    }
    // A name whose image cannot be loaded ends without one, whatever it had before.
    RecordMap<std::optional<Image>> images;
    for (const auto& [name, image] : maps_.customImages)
        images.set(name, image);
    Additions<std::optional<Image>> additions{images};
    ImageFileReader reader;
    forEachNamed<ImageEntry>(sink_, section, [&](Entry& entry, const ImageEntry& read) {
        using Outcome = ImageFileReader::Outcome;
        ImageFileReader::Reading reading;
        const std::string path = read.path ? text::joinPath(*folder, *read.path) : "";
        if (read.path)
            reading = reader.read(path);
        if (entry && read.path && text::leadsOut(*read.path))
            entry.report("image-outside-folder"_rule, "PATH", *read.path);
        additions.set(entry, *read.name, std::move(reading.image));
        if (read.path && reading.outcome != Outcome::read)
            entry.drop(reading.outcome == Outcome::tooManyPixels  ? "too-many-image-pixels"_rule
                       : reading.outcome == Outcome::tooManyBytes ? "too-many-image-bytes"_rule
                                                                  : "unreadable-image"_rule,
                       "PATH", path);
    });
    maps_.customImages = {};
    for (const auto& [name, image] : images) {
        if (image)
            maps_.customImages.set(name, *image);
    }
}

}  // namespace yg
