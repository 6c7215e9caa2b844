// SPDX-License-Identifier: MIT
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "YGConfigManager/palette/YGPaletteLoad.h"

#include "ygconfig/commandline/Suggestion.h"
#include "ygconfig/commands/Commands.h"
#include "ygconfig/commands/Names.h"
#include "ygconfig/drawing/Display.h"
#include "ygconfig/drawing/PaletteView.h"
#include "ygconfig/files/WriteOutput.h"
#include "ygconfig/json/Json.h"

namespace yg::tool {

namespace {

void declarePalette(CLI::App& app, Arguments& arguments) {
    declareNumber(app, "--palette-style", "N", arguments.paletteStyle,
                  "the theme: 0 light, 1 dark; 0 if not given");
}

template <NameKind kind>
void declareKey(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "KEY", arguments.name, "an application key", named({kind}));
    declarePalette(app, arguments);
}

void declareImage(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "NAME", arguments.name, "an image's name", named({NameKind::image}));
    declarePalette(app, arguments);
    const auto group = declareNumber(app, "--group", "COUNT", arguments.groupCount,
                                     "how many pieces the image has");
    const auto index =
        declareNumber(app, "--index", "I", arguments.indexInGroup, "the piece, from 0");
    group->needs(index);
    index->needs(group);
    const auto width =
        declareNumber(app, "--width", "W", arguments.width, "scaled to this width, in points");
    declareNumber(app, "--height", "H", arguments.height, "scaled to this height, in points")
        ->excludes(width);
    declareText(app, "-o,--output", "FILE", arguments.output, "the PNG file to write", anyFile)
        ->required();
}

/// A loader of the theme asked for; null when its palette cannot be loaded.
std::shared_ptr<YGPaletteLoad> loadPalette(const Session& session) {
    return YGPaletteLoad::initWithPaletteStyle(session.arguments.paletteStyle.value_or(0),
                                               session.unreadable);
}

/// Without a loader: what UnreadableFiles has not said, "" when it has.
Answer noPalette(const Session& session) {
    Answer answer = jsonAnswer(nullptr);
    const int style = session.arguments.paletteStyle.value_or(0);
    if (style != 0 && style != 1)
        answer.complaint =
            "ygconfig: no theme " + std::to_string(style) + "; 0 is light, 1 is dark";
    return answer;
}

Answer dumpPalette(const Session& session) {
    const auto loader = loadPalette(session);
    return loader ? jsonAnswer(loader) : noPalette(session);
}

Answer showPalette(const Session& session) {
    const auto light = YGPaletteLoad::initWithPaletteStyle(0, session.unreadable);
    const auto dark = YGPaletteLoad::initWithPaletteStyle(1, session.unreadable);
    if (!light && !dark)
        return {"", ExitCode::noAnswer, "ygconfig: no palette can be loaded"};
    return {PaletteView(light.get(), dark.get(), session.paint()).palettes()};
}

/// Why a key shows a substitute: it is not in the map, or what it names is not in `values`; ""
/// when it shows its own.
template <class Value>
std::string substituted(const std::string& kind, const std::string& key,
                        const RecordMap<std::string>& keys, const RecordMap<Value>& values) {
    const std::string* const name = keys.find(key);
    if (!name)
        return nothingNamed(kind + " key", key, namesIn(keys));
    return values.contains(*name) ? ""
                                  : nothingNamed(kind, *name, namesIn(values),
                                                 ", which key " + inQuotes(key) + " names");
}

Answer findColor(const Session& session) {
    const std::string& key = session.arguments.name;
    const auto loader = loadPalette(session);
    if (!loader)
        return noPalette(session);
    Answer answer = jsonAnswer(loader->getCustomColor(key));
    answer.complaint = substituted("color", key, loader->keyColorNames(), loader->customColors());
    return answer;
}

Answer findFont(const Session& session) {
    const std::string& key = session.arguments.name;
    const auto loader = loadPalette(session);
    if (!loader)
        return noPalette(session);
    Answer answer = jsonAnswer(loader->getCustomFont(key));
    answer.complaint = substituted("font", key, loader->keyFontNames(), loader->customFonts());
    return answer;
}

/// The image asked for, by the operation of the library that makes it.
std::optional<Image> imageOf(const YGPaletteLoad& loader, const Arguments& arguments) {
    const bool isScaled = arguments.width || arguments.height;
    const std::uint32_t type = arguments.width ? 0 : 1;
    const double value = arguments.width ? *arguments.width : arguments.height.value_or(0);
    const std::optional<Image> image = loader.getCustomImage(arguments.name);
    if (!arguments.groupCount)
        return isScaled ? loader.getImageByScale(arguments.name, type, value) : image;
    const std::uint64_t count = *arguments.groupCount;
    const std::uint64_t index = *arguments.indexInGroup;
    return isScaled ? YGPaletteLoad::getImageInGroupByScale(image, count, index, type, value)
                    : YGPaletteLoad::getImageByImageAndGroupIndex(image, count, index);
}

Answer writeImage(const Session& session) {
    const Arguments& arguments = session.arguments;
    const auto loader = loadPalette(session);
    if (!loader)
        return noPalette(session);
    const auto image = imageOf(*loader, arguments);
    const auto png = image ? image->toPng() : std::nullopt;
    if (!png) {
        Answer answer = jsonAnswer(nullptr);
        const auto& images = loader->customImages();
        answer.complaint = images.contains(arguments.name)
                               ? "ygconfig: image " + inQuotes(arguments.name) +
                                     " does not have this piece or size"
                               : nothingNamed("image", arguments.name, namesIn(images));
        return answer;
    }
    if (const std::string error = writeOutput(*arguments.output, *png); !error.empty())
        return {"", ExitCode::failed,
                "ygconfig image: \"" + printable(*arguments.output) + "\": " + error};
    return jsonAnswer(*image);
}

constexpr std::string_view paletteNotes =
    "The palette is palette_white.xml for style 0 and palette_black.xml for style 1, in ROOT/user "
    "or\n"
    "else in ROOT/storage. For any other style, or without the file, the answer is null.\n";

constexpr std::string_view imageNotes =
    "The answer is the size of the written image in points and in pixels. If the image does not "
    "exist,\n"
    "the answer is null and nothing is written. --group and --index select one piece of a strip "
    "of\n"
    "COUNT pieces, counted from 0 at the left; --width and --height keep the aspect ratio.\n";

constexpr Command table[] = {
    {"dump palette", "the colours, fonts and images of a theme, as JSON; null if there is none",
     "  ygconfig dump palette --palette-style 1 --root examples/terminal\n", paletteNotes,
     declarePalette, dumpPalette},

    {"show palette", "the colours, fonts and images of both themes, side by side",
     "  ygconfig show palette --root examples/terminal | less -R\n", paletteLegend, nullptr,
     showPalette, true, true},

    {"color", "the colour of an application key, as JSON; red if there is none",
     "  ygconfig color QuoteGrid.名称 --palette-style 1 --root examples/terminal\n", paletteNotes,
     declareKey<NameKind::colorKey>, findColor},

    {"font", "the font of an application key, as JSON; the system font if there is none",
     "  ygconfig font QuoteGrid.名称 --palette-style 1 --root examples/terminal\n", paletteNotes,
     declareKey<NameKind::fontKey>, findFont},

    {"image", "writes an image of a theme, a piece of it or a scaled one, as PNG",
     "  ygconfig image logo -o logo.png --root examples/terminal\n"
     "  ygconfig image NavTabs.自选 --group 4 --index 1 --width 40 -o star.png --root "
     "examples/terminal\n",
     imageNotes, declareImage, writeImage},
};

/// What `list` gives of both themes.
template <class List>
NameList namesOfThemes(const Session& session, List list) {
    NameList names;
    for (const std::int8_t theme : {std::int8_t{0}, std::int8_t{1}}) {
        if (const auto loader = YGPaletteLoad::initWithPaletteStyle(theme, session.unreadable)) {
            const NameList more = namesIn(list(*loader));
            names.insert(names.end(), more.begin(), more.end());
        }
    }
    return names;
}

}  // namespace

NameList colorKeyNames(const Session& session, NameGroups) {
    return namesOfThemes(
        session, [](const auto& loader) -> const auto& { return loader.keyColorNames(); });
}

NameList fontKeyNames(const Session& session, NameGroups) {
    return namesOfThemes(
        session, [](const auto& loader) -> const auto& { return loader.keyFontNames(); });
}

NameList imageNames(const Session& session, NameGroups) {
    return namesOfThemes(
        session, [](const auto& loader) -> const auto& { return loader.customImages(); });
}

std::span<const Command> paletteCommands() {
    return table;
}

}  // namespace yg::tool
