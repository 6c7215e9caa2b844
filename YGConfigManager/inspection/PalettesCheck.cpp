// SPDX-License-Identifier: MIT
//
// Names and keys of palettes: those of one theme only, those that nothing uses.
#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "YGConfigManager/host/Immortal.h"
#include "YGConfigManager/inspection/Checks.h"
#include "YGConfigManager/inspection/PaletteFiles.h"
#include "YGConfigManager/inspection/PaletteMeasures.h"
#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/text/Nearest.h"

namespace yg {

namespace {

using Names = PaletteFile::Names;

/// What has to be in both themes: what an application asks for.
struct Asked {
    Naming kind;
    std::string_view query;  ///< what defines it, whether or not it counts
    std::string_view thing;
    std::string_view consequence;
};

constexpr Asked asked[] = {
    {Naming::colorKey, "/ROOT/SWPALETTE/APP_MAP/COLORES/*[@KEY]", "the key",
     "the key shows red there"},
    {Naming::fontKey, "/ROOT/SWPALETTE/APP_MAP/FONTS/*[@KEY]", "the key",
     "the key shows the system font of 12 points there"},
    {Naming::image, "/ROOT/SWPALETTE/BITMAPS/*[@NAME]", "the image", "it shows no image there"},
};

constexpr Naming palettesOwn[] = {Naming::color, Naming::font};

text::KnownWords wordsOf(const Names& names) {
    std::vector<std::string> words;
    for (const auto& [name, use] : names)
        words.push_back(name);
    return text::KnownWords(words);
}

/// Those that are not in the excluded ones.
std::vector<const NameUse*> onlyIn(const Names& wanted, const Names& excluded) {
    std::vector<const NameUse*> only;
    for (const auto& [name, use] : wanted) {
        if (!excluded.contains(name))
            only.push_back(use);
    }
    return only;
}

Place placeOf(const NameUse& use) {
    return use.element.valuePlace(use.row->name).value_or(Place());
}

/// The section that an entry is in.
Place sectionOf(const Names& names) {
    return names.empty() ? Place()
                         : names.begin()->value->element.parent().tagPlace().value_or(Place());
}

/// Whether an error says that a section of the file is not read.
bool lacksSections(const PaletteFile& file, const Loaded& loaded, const Gathering& findings) {
    return std::ranges::any_of(findings.found(), [&](const Found& found) {
        const std::string_view rule = found.finding.rule.name;
        return (rule == "unknown-palette-section" || rule == "palette-root-name") &&
               loaded.files.nameOf(found.finding.place.file) == file.name();
    });
}

/// "NavTabs" of "NavTabs.text".
std::string_view familyOf(std::string_view key) {
    return key.substr(0, std::min(key.rfind('.'), key.size()));
}

/// How many keys there are of each family.
std::map<std::string_view, std::size_t> familiesOf(const Names& names, const Names& others) {
    std::map<std::string_view, std::size_t> families;
    for (const Names* each : {&names, &others}) {
        for (const auto& [name, use] : *each)
            ++families[familyOf(name)];
    }
    return families;
}

std::vector<std::string> valuesOf(const std::vector<const NameUse*>& uses) {
    std::vector<std::string> values;
    values.reserve(uses.size());
    for (const NameUse* use : uses)
        values.emplace_back(use->value);
    return values;
}

/// Reports what is in one theme and not in the other, which the application asks for in both.
void checkAsked(const Asked& what, const PaletteFile& file, const PaletteFile& other,
                const Loaded& loaded, Gathering& findings) {
    const Names& here = file.defined(what.kind);
    const Names& there = other.defined(what.kind);
    auto only = onlyIn(here, there);
    if (only.empty())
        return;
    if (there.empty()) {
        // One section that is missing is one mistake.
        if (!lacksSections(other, loaded, findings))
            findings.onElement("missing-in-other-theme"_rule, only.front()->element.parent(),
                               {.message = text::format("the whole section is missing in %@: %@.",
                                                        other.name(), what.consequence)});
        return;
    }
    // What is there and does not count has a finding of its own.
    std::set<std::string, std::less<>> written;
    for (const xml::Node& node :
         loaded.files.file(other.name()).document().document.root().query(what.query))
        written.emplace(xml::Element(node).attribute(only.front()->row->name).value_or(""));

    text::KnownWords candidates(valuesOf(onlyIn(there, here)));
    text::KnownWords own(valuesOf(only));
    const auto families = familiesOf(here, there);
    for (const NameUse* use : only) {
        if (written.contains(use->value))
            continue;
        std::string_view meant = candidates.nearest(use->value);
        if (own.nearest(meant) != use->value)
            meant = {};
        // Of two spellings that with fewer keys like it is the mistake, else that of the dark
        // theme.
        const std::size_t alike = families.at(familyOf(use->value));
        const std::size_t alikeMeant = meant.empty() ? 0 : families.at(familyOf(meant));
        if (!meant.empty() && (alike > alikeMeant || (alike == alikeMeant && !file.isDark())))
            continue;
        Details details;
        details.message = text::format("%@ '%@' is missing in the %@ theme, %@: %@.", what.thing,
                                       use->value, other.theme(), other.name(), what.consequence);
        if (meant.empty()) {
            details.related.push_back({sectionOf(there), "the section of the other theme"});
        } else {
            details.suggestion = meant;
            details.related.push_back(
                {placeOf(**there.find(meant)), "the nearest that the other theme has"});
        }
        findings.onAttribute("missing-in-other-theme"_rule, use->element, use->row->name,
                             std::move(details));
    }
}

/// Reports colours or fonts of one theme only that it uses: those that it does not use are found as
/// unused, and those that the other uses as unknown there.
void checkOwn(Naming kind, const PaletteFile& file, const PaletteFile& other, Gathering& findings) {
    const Names& others = other.defined(kind);
    if (others.empty())
        return;
    for (const NameUse* use : onlyIn(file.defined(kind), others)) {
        if (file.used(kind).contains(use->value) && !other.used(kind).contains(use->value))
            findings.onAttribute(
                "name-in-one-theme"_rule, use->element, "NAME",
                {.message =
                     text::format("'%@' is a name of the %@ theme only.", use->value, file.theme()),
                 .related = {{sectionOf(others), "the section of the other theme"}}});
    }
}

/// A strip is cut into as many pieces in both themes.
void checkStrips(const PaletteFile& light, const PaletteFile& dark, Gathering& findings) {
    const auto report = [&](const PaletteFile& file, const PaletteFile& other,
                            std::string_view name, const Image& image, const Image& strip) {
        const NameUse* const use = *file.defined(Naming::image).find(name);
        const NameUse* const otherUse = *other.defined(Naming::image).find(name);
        const std::size_t pieces = squarePieces(strip);
        std::string message = text::format(
            "image '%@' has %ld × %ld pixels; that of the %@ theme has %ld × %ld, a strip of %ld "
            "pieces, ",
            name, image.pixelWidth(), image.pixelHeight(), other.theme(), strip.pixelWidth(),
            strip.pixelHeight(), pieces);
        message += image.pixelWidth() % pieces == 0
                       ? "which are of another shape here."
                       : text::format("and this width does not divide by %ld.", pieces);
        findings.onAttribute("uneven-strips"_rule, use->element,
                             use->element.attribute("PATH") ? "PATH" : "NAME",
                             {.message = std::move(message),
                              .related = {{otherUse->element.tagPlace().value_or(Place()),
                                           "the image of the other theme"}}});
    };
    for (const auto& [name, use] : light.defined(Naming::image)) {
        const auto ofLight = light.palette().getCustomImage(name);
        const auto ofDark = dark.palette().getCustomImage(name);
        if (!ofLight || !ofDark ||
            ofLight->pixelWidth() * ofDark->pixelHeight() ==
                ofDark->pixelWidth() * ofLight->pixelHeight())
            continue;
        const std::size_t lightPieces = squarePieces(*ofLight);
        const std::size_t darkPieces = squarePieces(*ofDark);
        // Of two strips nobody knows which is right.
        if (darkPieces > 1)
            report(light, dark, name, *ofLight, *ofDark);
        else if (lightPieces > 1)
            report(dark, light, name, *ofDark, *ofLight);
    }
}

}  // namespace

std::size_t squarePieces(const Image& image) {
    const std::size_t height = image.pixelHeight();
    return image.pixelWidth() % height != 0 ? 1 : image.pixelWidth() / height;
}

const PaletteFile::Names& PaletteFile::of(Naming kind, const ByKind& names) {
    static Immortal<const Names> none;
    const auto found = names.find(kind);
    return found == names.end() ? *none : found->second;
}

void PaletteFile::add(const NameUse& use) {
    (use.row->defines ? defined_ : used_)[use.row->names].set(use.value, &use);
}

const NameUse* PaletteFile::colorOf(std::string_view key) const {
    const NameUse* const* const entry = defined(Naming::colorKey).find(key);
    const auto name = entry ? (*entry)->element.attribute("VALUE") : std::nullopt;
    const NameUse* const* const color =
        name && !name->empty() ? defined(Naming::color).find(*name) : nullptr;
    return color ? *color : nullptr;
}

std::vector<PaletteFile> paletteFilesOf(const Loaded& loaded, const Gathering& findings) {
    std::vector<PaletteFile> files;
    for (const LoadedPalette& palette : loaded.palettes)
        files.emplace_back(palette, loaded.files.pathOf(palette.file));
    for (const NameUse& use : findings.names()) {
        switch (use.row->names) {
            case Naming::color:
            case Naming::font:
            case Naming::image:
            case Naming::colorKey:
            case Naming::fontKey: {
                const auto found = std::ranges::find(files, use.file(), &PaletteFile::path);
                if (found != files.end())
                    found->add(use);
                break;
            }
            default:
                break;
        }
    }
    return files;
}

std::vector<std::pair<const PaletteFile*, const PaletteFile*>> themesOf(
    const std::vector<PaletteFile>& files) {
    const PaletteFile* shipped[2] = {};
    const PaletteFile* used[2] = {};
    for (const PaletteFile& file : files) {
        const std::size_t theme = file.isDark() ? 1 : 0;
        used[theme] = &file;
        if (!file.isUsers())
            shipped[theme] = &file;
    }
    std::vector<std::pair<const PaletteFile*, const PaletteFile*>> themes;
    if (shipped[0] && shipped[1])
        themes.emplace_back(shipped[0], shipped[1]);
    if (used[0] && used[1] && !std::ranges::equal(used, shipped))
        themes.emplace_back(used[0], used[1]);
    return themes;
}

void checkThemes(const std::vector<PaletteFile>& files, const Loaded& loaded, Gathering& findings) {
    for (const auto& [light, dark] : themesOf(files)) {
        for (const Asked& what : asked) {
            checkAsked(what, *light, *dark, loaded, findings);
            checkAsked(what, *dark, *light, loaded, findings);
        }
        for (const Naming kind : palettesOwn) {
            checkOwn(kind, *light, *dark, findings);
            checkOwn(kind, *dark, *light, findings);
        }
        checkStrips(*light, *dark, findings);
    }
}

void checkPaletteNames(const std::vector<PaletteFile>& files, Gathering& findings) {
    for (const PaletteFile& file : files) {
        for (const Naming kind : palettesOwn) {
            const Names& defined = file.defined(kind);
            const Names& used = file.used(kind);
            // What a key that names nothing probably means is used.
            std::set<std::string, std::less<>> meant;
            text::KnownWords words = wordsOf(defined);
            for (const NameUse* use : onlyIn(used, defined))
                meant.emplace(words.nearest(use->value));
            for (const auto& [name, use] : defined) {
                if (!used.empty() && !name.empty() && !used.contains(name) && !meant.contains(name))
                    findings.onAttribute(kind == Naming::color ? "unused-palette-color"_rule
                                                               : "unused-palette-font"_rule,
                                         use->element, "NAME");
            }
        }
    }
}

void checkPalettes(const Loaded& loaded, Gathering& findings) {
    const std::vector<PaletteFile> files = paletteFilesOf(loaded, findings);
    checkThemes(files, loaded, findings);
    checkPaletteNames(files, findings);
    checkPaletteNumbers(files, findings);
    checkImages(files, loaded, findings);
    checkContrast(files, loaded, findings);
}

}  // namespace yg
