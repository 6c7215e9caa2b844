// SPDX-License-Identifier: MIT
//
// Explanations of colours, fonts and images.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/YGFrameComFun.h"
#include "YGConfigManager/inspection/Contrast.h"
#include "YGConfigManager/inspection/Explanation.h"
#include "YGConfigManager/inspection/MemberOf.h"
#include "YGConfigManager/inspection/Trace.h"
#include "YGConfigManager/palette/PaletteAttributes.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/text/Paths.h"

namespace yg {

namespace {

using Outcome = ExplanationStep::Outcome;

std::string_view themeOf(std::int8_t style) {
    return style == 1 ? "dark" : "light";
}

/// A palette with what its loader reported.
struct TracedPalette {
    TracedPalette(const std::string& root, std::int8_t paletteStyle)
        : trace(root), style(paletteStyle) {
        loader = YGPaletteLoad::initWithPaletteStyle(style, &trace);
        file.file = trace.files().nameOf(trace.gathering().lastRead());
    }

    Trace trace;
    std::int8_t style;
    RootPlace file;  ///< as a whole
    std::shared_ptr<YGPaletteLoad> loader;
};

/// Without a loader the answer is null.
bool isThere(Explanation& explanation, const TracedPalette& palette) {
    if (palette.loader)
        return true;
    explanation.substitute = "null";
    palette.trace.addUnreadFiles(explanation);
    if (explanation.steps.empty()) {
        RootPlace place = palette.file;
        place.message = "Style " + std::to_string(palette.style) +
                        " has no palette: 0 is the light theme, 1 the dark one.";
        explanation.steps.push_back({Outcome::missing, std::move(place)});
    }
    return false;
}

template <class Value>
std::vector<std::string> namesIn(const RecordMap<Value>& map) {
    std::vector<std::string> names;
    for (const auto& [name, value] : map)
        names.push_back(name);
    return names;
}

void addMissingIn(Explanation& explanation, const TracedPalette& palette, std::string message,
                  std::string_view name, const std::vector<std::string>& known) {
    RootPlace place = palette.file;
    place.message = std::move(message);
    addMissing(explanation, std::move(place), name, known);
}

/// Key → name → value, and whether all of them are there.
template <class Value>
bool addKey(Explanation& explanation, const TracedPalette& palette, const std::string& what,
            Naming keyKind, Naming valueKind, std::string_view key,
            const RecordMap<std::string>& keys, const RecordMap<Value>& values) {
    const Trace& trace = palette.trace;
    trace.addDefinitions(explanation, trace.definitions(keyKind, key),
                         what + " key " + quoted(key));
    const std::string* const name = keys.find(key);
    if (!name) {
        addMissingIn(explanation, palette,
                     "The " + std::string(themeOf(palette.style)) + " theme has no " + what +
                         " key " + quoted(key) + ".",
                     key, namesIn(keys));
        return false;
    }
    const xml::Element value = trace.addDefinitions(
        explanation, trace.definitions(valueKind, *name), what + " " + quoted(*name));
    if (!values.contains(*name)) {
        addMissingIn(explanation, palette,
                     "The key names the " + what + " " + quoted(*name) + ", which the " +
                         std::string(themeOf(palette.style)) + " theme does not have.",
                     *name, namesIn(values));
        return false;
    }
    explanation.from = trace.placeOf(value, "");
    return true;
}

/// An entry that gives no image: what was reported in its tag.
void addUnread(Explanation& explanation, const Trace& trace, const Trace::Definition& entry) {
    const RootPlace tag = trace.placeOf(entry.element, "");
    for (const Found& found : trace.gathering().found()) {
        const Finding& finding = found.finding;
        RootPlace place = trace.place(finding.place, std::string(finding.rule.meaning));
        if (place.file == tag.file && place.begin >= tag.begin && place.end <= tag.end &&
            finding.rule.handling != Handling::replaced)
            explanation.steps.push_back({Outcome::missing, std::move(place)});
    }
    if (entry.loss)
        explanation.steps.push_back(
            {Outcome::lost,
             trace.placeOf(entry.element, std::string(entry.loss->finding.rule.meaning))});
}

std::string shownColor(const Color& color) {
    const auto byte = [](double component) {
        return static_cast<int>(std::lround(component * 255));
    };
    char text[64];
    const int size =
        std::snprintf(text, sizeof text, "#%02X%02X%02X, alpha %g", byte(color.red),
                      byte(color.green), byte(color.blue), static_cast<double>(color.alpha));
    return {text, static_cast<std::size_t>(size)};
}

/// The contrast with the grounds that contrast.json names for the key.
void addContrast(Explanation& explanation, const TracedPalette& palette, std::string_view key) {
    const std::string& bytes = palette.trace.files().file("contrast.json").bytes();
    const JsonValue::Parsed parsed = JsonValue::parse(bytes);
    const JsonList pairs = memberOf(parsed.value.value_or(JsonValue()), "pairs").list();
    for (const JsonValue& pair : pairs ? *pairs : JsonValue::List()) {
        const JsonValue text = memberOf(pair, "text");
        const JsonValue ground = memberOf(pair, "ground");
        if (!text.text() || !ground.text() || *text.text() != key)
            continue;
        const Color lower = palette.loader->getCustomColor(*ground.text());
        const Color upper = palette.loader->getCustomColor(key);
        const double ratio = contrastRatio(drawnOver(upper, lower), lower);
        char shown[32];
        const int size = std::snprintf(shown, sizeof shown, "%.2f", ratio);
        explanation.remarks.push_back("Its contrast with ground " + quoted(*ground.text()) +
                                      " is " + std::string(shown, static_cast<std::size_t>(size)) +
                                      ".");
    }
}

}  // namespace

Explanation Explainer::color(OptionalText key, std::int8_t paletteStyle) const {
    return guarded(explaining, [&] {
        Explanation explanation;
        const TracedPalette palette(root_, paletteStyle);
        if (!isThere(explanation, palette))
            return explanation;
        const YGPaletteLoad& loader = *palette.loader;
        const Color color = loader.getCustomColor(key);
        explanation.answer = color;
        if (!addKey(explanation, palette, "colour", Naming::colorKey, Naming::color, *key,
                    loader.keyColorNames(), loader.customColors())) {
            explanation.substitute = "red";
        } else {
            explanation.remarks.push_back("In the " + std::string(themeOf(paletteStyle)) +
                                          " theme it is " + shownColor(color) + ".");
            addContrast(explanation, palette, *key);
        }
        const auto otherStyle = static_cast<std::int8_t>(paletteStyle == 1 ? 0 : 1);
        const TracedPalette other(root_, otherStyle);
        if (!other.loader)
            return explanation;
        const std::string* const name = other.loader->keyColorNames().find(*key);
        explanation.remarks.push_back("In the " + std::string(themeOf(otherStyle)) +
                                      " theme it is " +
                                      (name && other.loader->customColors().contains(*name)
                                           ? shownColor(other.loader->getCustomColor(key))
                                           : "red, the substitute for a missing colour") +
                                      ".");
        return explanation;
    });
}

Explanation Explainer::font(OptionalText key, std::int8_t paletteStyle) const {
    return guarded(explaining, [&] {
        Explanation explanation;
        const TracedPalette palette(root_, paletteStyle);
        if (!isThere(explanation, palette))
            return explanation;
        const YGPaletteLoad& loader = *palette.loader;
        explanation.answer = loader.getCustomFont(key);
        if (!addKey(explanation, palette, "font", Naming::fontKey, Naming::font, *key,
                    loader.keyFontNames(), loader.customFonts())) {
            explanation.substitute = "the system font";
            return explanation;
        }
        // The font's own finding, if its face is not installed.
        for (const Found& found : palette.trace.gathering().found()) {
            const RootPlace place = palette.trace.place(found.finding.place, "");
            if (found.finding.rule.name == "unknown-font-face" &&
                place.file == explanation.from->file && place.begin >= explanation.from->begin &&
                place.end <= explanation.from->end)
                explanation.remarks.emplace_back(found.finding.rule.meaning);
        }
        return explanation;
    });
}

Explanation Explainer::image(OptionalText name, std::int8_t paletteStyle) const {
    return guarded(explaining, [&] {
        Explanation explanation;
        const TracedPalette palette(root_, paletteStyle);
        if (!isThere(explanation, palette))
            return explanation;
        const Trace& trace = palette.trace;
        const auto image = palette.loader->getCustomImage(name);
        const std::vector<Trace::Definition> definitions = trace.definitions(Naming::image, *name);
        if (!image) {
            explanation.substitute = "null";
            if (definitions.empty())
                addMissingIn(explanation, palette,
                             "The " + std::string(themeOf(paletteStyle)) + " theme has no image " +
                                 quoted(*name) + ".",
                             *name, namesIn(palette.loader->customImages()));
            for (const Trace::Definition& each : definitions)
                addUnread(explanation, trace, each);
            return explanation;
        }
        const xml::Element entry =
            trace.addDefinitions(explanation, definitions, "image " + quoted(*name));
        const std::string path(entry.attribute("PATH").value_or(""));
        explanation.answer = *image;
        explanation.from = trace.placeOf(entry, "");
        RootPlace file;
        const auto folder = YGFrameComFun::getDefualtFolderPath(imageFolderKind);
        file.file = trace.files().nameOf(text::joinPath(folder.value_or(""), path));
        char size[128];
        const int length =
            std::snprintf(size, sizeof size, "%gx%g points, %ux%u pixels", image->width(),
                          image->height(), static_cast<unsigned>(image->pixelWidth()),
                          static_cast<unsigned>(image->pixelHeight()));
        file.message = "The file has " + std::string(size, static_cast<std::size_t>(length)) + ".";
        explanation.steps.push_back({Outcome::taken, std::move(file)});
        const auto pieces = static_cast<std::uint64_t>(image->height()) == 0
                                ? 0
                                : static_cast<std::uint64_t>(image->width() / image->height());
        if (pieces > 1)
            explanation.remarks.push_back(
                static_cast<double>(pieces) * image->height() == image->width()
                    ? "As a strip of square pieces it has " + std::to_string(pieces) + "."
                    : "It cannot be cut into square pieces without a rest.");
        return explanation;
    });
}

}  // namespace yg
