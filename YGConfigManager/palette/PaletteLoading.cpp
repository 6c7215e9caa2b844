// SPDX-License-Identifier: MIT
//
// One load of a palette: the file of a style, its sections and their entries.
#include <cstddef>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/graphics/FontServices.h"
#include "YGConfigManager/graphics/ImageFileReader.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/host/YGFrameComFun.h"
#include "YGConfigManager/palette/ColorOrSubstitute.h"
#include "YGConfigManager/palette/PaletteAttributes.h"
#include "YGConfigManager/palette/PaletteRules.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/text/Paths.h"
#include "YGConfigManager/xml/Document.h"
#include "YGConfigManager/xml/Query.h"

namespace yg {

namespace {

constexpr std::int64_t storageArea = 1;
constexpr std::int64_t imageFolderKind = 4;

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

/// The first section that a query finds; empty when there is none.
xml::Element firstSection(const Reporter& reporter, const xml::Document& document,
                          const xml::Query& query) {
    const std::vector<xml::Node> sections = document.query(query);
    for (std::size_t i = 1; i < sections.size(); ++i)
        reporter.report(rules::secondPaletteSection, sections[i]);
    return sections.empty() ? xml::Element() : xml::Element(sections.front());
}

/// An element that is used and has no attributes to read.
void reportBare(const Reporter& reporter, const xml::Element& element) {
    reporter.used(element);
    reporter.attributesBut(element, {});
}

bool isSection(std::string_view name, bool isInMap) {
    return name == "COLORES" || name == "FONTS" || (!isInMap && name == "BITMAPS");
}

/// What stands in SWPALETTE, or in the APP_MAP of one, beside the sections.
void reportSections(const Reporter& reporter, const xml::Element& holder, bool isMap) {
    reportBare(reporter, holder);
    for (const xml::Node& child : holder.children()) {
        if (!child.isElement())
            reporter.stray(child);
        else if (!isMap && child.name() == "APP_MAP")
            reportSections(reporter, xml::Element(child), true);
        else if (!isSection(child.name(), isMap))
            reporter.report(rules::unknownPaletteSection, child, {}, child.name());
    }
}

/// What the queries for the sections do not find.
void reportDocument(const Reporter& reporter, const xml::Element& root) {
    if (!reporter)
        return;
    if (root.name() != "ROOT") {
        reporter.report(rules::paletteRootName, root, {}, root.name());
        return;
    }
    reportBare(reporter, root);
    for (const xml::Node& child : root.children()) {
        if (!child.isElement())
            reporter.stray(child);
        else if (child.name() == "SWPALETTE")
            reportSections(reporter, xml::Element(child), false);
        else
            reporter.report(rules::unknownPaletteSection, child, {}, child.name());
    }
}

/// The entries of a section: all its elements.
std::vector<xml::Element> entriesOf(const Reporter& reporter, const xml::Element& section) {
    if (section)
        reportBare(reporter, section);
    std::vector<xml::Element> entries;
    for (const xml::Node& child : section.children()) {
        if (child.isElement())
            entries.emplace_back(child);
        else
            reporter.stray(child);
    }
    return entries;
}

template <class Entry, std::size_t size>
Entry read(const xml::Element& element, const AttributeRow<Entry> (&table)[size]) {
    Entry entry;
    readAttributes(element, table, entry);
    return entry;
}

/// Reports an entry that has an effect. `ruleOf` says what is wrong with an attribute's value apart
/// from what its kind tells; null for nothing.
template <class Entry, std::size_t size, class RuleOf>
void reportEntry(const Reporter& reporter, const xml::Element& element,
                 const AttributeRow<Entry> (&table)[size], RuleOf ruleOf) {
    if (!reporter)
        return;
    reporter.used(element);
    for (const xml::Attribute attribute : element.attributes()) {
        const std::size_t row = rowOf(table, attribute.name);
        const Rule* rule =
            row < size ? oddity(table[row].kind, attribute.value) : &rules::unknownAttribute;
        if (!rule && row < size)
            rule = ruleOf(attribute);
        if (rule)
            reporter.report(*rule, element, attribute.name, attribute.value);
        else
            reporter.used(element, attribute.name);
    }
    reporter.unread(element, rules::contentInPaletteEntry);
}

const Rule* ruleOfColor(const xml::Attribute& attribute) {
    if (attribute.name == "NAME")
        return attribute.value.empty() ? &rules::unreachablePaletteName : nullptr;
    const float number = text::leadingFloat(attribute.value);
    if (attribute.name == "A")
        return number < 0 || number > 1 ? &rules::alphaOutOfRange : nullptr;
    return number < 0 || number > 255 ? &rules::colorComponentOutOfRange : nullptr;
}

void reportColor(const Reporter& reporter, const xml::Element& element) {
    reportEntry(reporter, element, colorAttributes, ruleOfColor);
    for (const std::string_view component : {"R", "G", "B"}) {
        if (reporter && !element.attribute(component))
            reporter.report(rules::missingColorComponent, element, {}, component);
    }
}

void reportFont(const Reporter& reporter, const xml::Element& element, const FontEntry& entry,
                bool isKnown) {
    const auto ruleOf = [&](const xml::Attribute& attribute) -> const Rule* {
        if (attribute.name == "NAME")
            return attribute.value.empty() ? &rules::unreachablePaletteName : nullptr;
        if (attribute.name == "HEIGHT")
            return entry.height > 0 ? nullptr : &rules::fontWithoutSize;
        return isKnown ? nullptr : &rules::unknownFontFace;
    };
    reportEntry(reporter, element, fontAttributes, ruleOf);
    if (reporter && !element.attribute("HEIGHT"))
        reporter.report(rules::fontWithoutSize, element);
    if (!entry.face)
        reporter.report(rules::unknownFontFace, element);
}

/// Whether a path, taken from a folder, leads out of it.
bool leavesFolder(std::string_view path) {
    int depth = 0;
    while (!path.empty()) {
        const std::size_t end = path.find('/');
        const std::string_view part = path.substr(0, end);
        path.remove_prefix(end == std::string_view::npos ? path.size() : end + 1);
        if (part == "..")
            --depth;
        else if (!part.empty() && part != ".")
            ++depth;
        if (depth < 0)
            return true;
    }
    return false;
}

/// Why an image has not been loaded; null when it has.
const Rule* failureOf(ImageFileReader::Outcome outcome) {
    switch (outcome) {
        case ImageFileReader::Outcome::read:
            return nullptr;
        case ImageFileReader::Outcome::tooManyPixels:
            return &rules::tooManyImagePixels;
        case ImageFileReader::Outcome::tooManyBytes:
            return &rules::tooManyImageBytes;
        default:
            return &rules::unreadableImage;
    }
}

/// Reports an image whose entry has a path. `failure` says why it has not been loaded; null when
/// it has.
void reportImage(const Reporter& reporter, const xml::Element& element, std::string_view path,
                 std::string_view fullPath, const Rule* failure) {
    if (!reporter)
        return;
    const Rule* const place = leavesFolder(path) ? &rules::imageOutsideFolder : nullptr;
    if (!failure) {
        reportEntry(reporter, element, imageAttributes, [&](const xml::Attribute& attribute) {
            return attribute.name == "PATH" ? place : nullptr;
        });
        return;
    }
    reporter.report(*failure, element, "PATH", fullPath);
    if (place)
        reporter.report(*place, element, "PATH", path);
}

/// Adds the keys of a section to `names`, which are those of `values`; `unresolved` says that there
/// is no such value.
template <class Value>
void loadKeyNames(const Reporter& reporter, const xml::Element& section,
                  const RecordMap<Value>& values, PaletteNames& names, const Rule& unresolved) {
    const auto ruleOf = [&](const xml::Attribute& attribute) {
        const bool isFound = !attribute.value.empty() && values.contains(attribute.value);
        return attribute.name == "VALUE" && !isFound ? &unresolved : nullptr;
    };
    for (const xml::Element& element : entriesOf(reporter, section)) {
        const KeyEntry entry = read(element, keyAttributes);
        if (!entry.key || !entry.value) {
            reporter.report(rules::incompletePaletteKey, element, {}, entry.key ? "VALUE" : "KEY");
            continue;
        }
        const bool replaces = names.set(*entry.key, std::string(*entry.value));
        reportEntry(reporter, element, keyAttributes, ruleOf);
        if (replaces)
            reporter.report(rules::duplicatePaletteKey, element, "KEY", *entry.key);
    }
}

}  // namespace

bool YGPaletteLoad::readConfig(std::int8_t style) {
    const Reporter reporter(sink_);
    const auto path =
        YGFrameComFun::getStorageFilePath(storageArea, std::nullopt, fileNameOf(style), false);
    if (!path || path->empty()) {
        reporter.report(rules::noPalettePath, {}, {}, std::to_string(style));
        return false;
    }
    const xml::ParseResult parsed = reporter.parseFile(*path);
    if (!parsed) {
        writeRuntimeLog("load palette config fail:%@", parsed.error);
        reporter.report(rules::unreadableFile, {}, {}, parsed.error);
        return false;
    }
    const xml::Document& document = parsed.document;
    reportDocument(reporter, document.root());

    const xml::Query colors("/ROOT/SWPALETTE/COLORES");
    const xml::Query keyColors("/ROOT/SWPALETTE/APP_MAP/COLORES");
    const xml::Query fonts("/ROOT/SWPALETTE/FONTS");
    const xml::Query keyFonts("/ROOT/SWPALETTE/APP_MAP/FONTS");
    const xml::Query images("/ROOT/SWPALETTE/BITMAPS");

    if (const auto section = firstSection(reporter, document, colors))
        readColors(section);
    if (const auto section = firstSection(reporter, document, keyColors))
        readKeyColors(section);
    // The next two lines are written when the section is there, and not when it is missing, as the
    // interface has it.
    if (const auto section = firstSection(reporter, document, fonts)) {
        writeRuntimeLog("palette fonts is empty");
        readFonts(section);
    }
    if (const auto section = firstSection(reporter, document, keyFonts)) {
        writeRuntimeLog("palette font names is empty");
        readKeyFonts(section);
    }
    if (const auto section = firstSection(reporter, document, images))
        readImages(section);
    return true;
}

void YGPaletteLoad::readColors(const xml::Element& section) {
    constexpr float full = 255;
    const Reporter reporter(sink_);
    for (const xml::Element& element : entriesOf(reporter, section)) {
        const ColorEntry entry = read(element, colorAttributes);
        if (!entry.name) {
            reporter.report(rules::paletteEntryWithoutName, element);
            continue;
        }
        // Alpha has another scale than the others. In a switch the style is still the old one.
        const auto color =
            Color::sRGB(entry.red / full, entry.green / full, entry.blue / full, entry.alpha);
        const bool replaces =
            maps_.customColors.set(*entry.name, colorOrSubstitute(color, curColorPalatteStyle_));
        reportColor(reporter, element);
        if (replaces)
            reporter.report(rules::duplicatePaletteName, element, "NAME", *entry.name);
    }
}

void YGPaletteLoad::readKeyColors(const xml::Element& section) {
    loadKeyNames(Reporter(sink_), section, maps_.customColors, maps_.keyColorNames,
                 rules::unknownPaletteColor);
}

void YGPaletteLoad::readFonts(const xml::Element& section) {
    const Reporter reporter(sink_);
    for (const xml::Element& element : entriesOf(reporter, section)) {
        const FontEntry entry = read(element, fontAttributes);
        if (!entry.name) {
            reporter.report(rules::paletteEntryWithoutName, element);
            continue;
        }
        FontServices& services = FontServices::shared();
        const auto named = entry.face ? services.named(*entry.face, entry.height) : std::nullopt;
        const bool replaces =
            maps_.customFonts.set(*entry.name, named ? *named : services.system(entry.height));
        reportFont(reporter, element, entry, named.has_value());
        if (replaces)
            reporter.report(rules::duplicatePaletteName, element, "NAME", *entry.name);
    }
}

void YGPaletteLoad::readKeyFonts(const xml::Element& section) {
    loadKeyNames(Reporter(sink_), section, maps_.customFonts, maps_.keyFontNames,
                 rules::unknownPaletteFont);
}

void YGPaletteLoad::readImages(const xml::Element& section) {
    if (!section)
        return;
    const Reporter reporter(sink_);
    const auto folder = YGFrameComFun::getDefualtFolderPath(imageFolderKind);
    if (!folder || folder->empty()) {
        reporter.report(rules::noImageFolder, section);
        return;
    }
    // A name whose image cannot be loaded ends without one, whatever it had before.
    RecordMap<std::optional<Image>> images;
    for (const auto& [name, image] : maps_.customImages)
        images.set(name, image);
    ImageFileReader reader;
    for (const xml::Element& element : entriesOf(reporter, section)) {
        const ImageEntry entry = read(element, imageAttributes);
        if (!entry.name) {
            reporter.report(rules::paletteEntryWithoutName, element);
            continue;
        }
        std::optional<Image> image;
        if (entry.path) {
            const std::string path = text::joinPath(*folder, *entry.path);
            ImageFileReader::Reading reading = reader.read(path);
            image = std::move(reading.image);
            reportImage(reporter, element, *entry.path, path, failureOf(reading.outcome));
        } else {
            reporter.report(rules::imageWithoutPath, element);
        }
        if (images.set(*entry.name, std::move(image)))
            reporter.report(rules::duplicatePaletteName, element, "NAME", *entry.name);
    }
    maps_.customImages = {};
    for (const auto& [name, image] : images) {
        if (image)
            maps_.customImages.set(name, *image);
    }
}

}  // namespace yg
