// SPDX-License-Identifier: MIT
//
// A palette and the switch to another: loaded without and with a sink, which must be the same,
// everything in them looked up, and the images cut and scaled.
//
// The input is cut at lines "=====" into the light palette, the dark one, and an image file, which
// palettes name as "a.png".
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/host/MainQueue.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"

#include "Loaders.h"
#include "StoredFile.h"
#include "Target.h"

namespace {

using namespace yg;
using yg::fuzz::LoggingHost;
using yg::fuzz::LookingSink;
using yg::fuzz::require;
using yg::fuzz::shown;
using yg::fuzz::takeUntil;
using yg::fuzz::textOf;

class PaletteHost final : public LoggingHost {
public:
    explicit PaletteHost(std::string folder) : folder_(std::move(folder)) {}
    std::optional<std::string> getStorageFilePath(std::int64_t, std::optional<std::string_view>,
                                                  std::optional<std::string_view> name,
                                                  bool) override {
        return name ? std::optional(folder_ + "/" + std::string(*name)) : std::nullopt;
    }
    std::optional<std::string> getDefualtFolderPath(std::int64_t) override { return folder_; }

private:
    std::string folder_;
};

bool isFraction(double component) {
    return component >= 0 && component <= 1;
}

void lookUpAll(const YGPaletteLoad& loader) {
    for (const auto& [name, color] : loader.customColors())
        require(isFraction(color.red) && isFraction(color.green) && isFraction(color.blue) &&
                    isFraction(color.alpha),
                "a colour's components go from 0 to 1");
    for (const auto& [key, name] : loader.keyColorNames()) {
        const Color* color = name.empty() ? nullptr : loader.customColors().find(name);
        require(loader.getCustomColor(key) == (color ? *color : Color::redColor()),
                "a key has its colour or red");
    }
    for (const auto& [key, name] : loader.keyFontNames()) {
        const Font* font = name.empty() ? nullptr : loader.customFonts().find(name);
        require(loader.getCustomFont(key) == (font ? *font : Font::system(12)),
                "a key has its font or the system font");
    }
    for (const auto& [name, font] : loader.customFonts()) {
        require(font.pointSize() > 0, "a font has a size");
        const Font fitted = YGPaletteLoad::fixFontWithFont(font, name, 100);
        require(fitted.pointSize() <= font.pointSize(), "a font is never enlarged");
        require(fitted.pointSize() <= 1 || font.pointSize() < 1 || fitted.widthOf(name) + 1 < 100,
                "a text fits in its fitted font");
    }
}

void cutAndScale(const YGPaletteLoad& loader) {
    for (const auto& [name, image] : loader.customImages()) {
        const std::uint64_t count = name.size();
        const auto pieces = YGPaletteLoad::getImagesByImageAndGroupCount(image, count);
        require((pieces == nullptr) == (count == 0), "a count of 0 has no list");
        require(!pieces || pieces->empty() || pieces->size() == count,
                "all pieces are there or none");
        for (std::uint64_t i = 0; i <= count; ++i)
            require(YGPaletteLoad::getImageByImageAndGroupIndex(image, count, i).has_value() ==
                        (i < count),
                    "each index below the count has its piece");
        const auto scaled = loader.getImageByScale(name, 0, 40);
        require(!scaled || scaled->width() == 40, "a scaled image has its width");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const yg::files::TemporaryFolder folder{yg::fuzz::quickParent()};
    static const auto host = std::make_shared<PaletteHost>(folder.path());
    static const std::shared_ptr<Host> before = setHost(host);
    static_cast<void>(before);

    std::string_view rest = textOf(data, size);
    folder.write("palette_white.xml", takeUntil(rest, "=====\n"));
    folder.write("palette_black.xml", takeUntil(rest, "=====\n"));
    folder.write("a.png", rest);

    const auto load = [](DiagnosticsSink* sink) {
        host->log.clear();
        return YGPaletteLoad::initWithPaletteStyle(0, sink);
    };
    const auto silent = load(nullptr);
    const std::string log = host->log;
    LookingSink sink;
    const auto reported = load(&sink);
    require(shown(reported) == shown(silent), "a sink changes no answer");
    require(host->log == log, "a sink changes no log line");
    if (!silent)
        return 0;
    lookUpAll(*silent);
    cutAndScale(*silent);

    const std::string light = shown(*silent);
    silent->reloadPaletteWithOtherStyle(1);
    require(silent->currentPaletteStyle() == 1 || shown(*silent) == light,
            "a switch that fails changes nothing");
    require(runPendingMainTasks() == (silent->currentPaletteStyle() == 1 ? 1u : 0u),
            "a switch is announced once, and only when it is made");
    lookUpAll(*silent);
    return 0;
}
