// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/records/RecordMap.h"

#include "ygconfig/report/Model.h"

namespace yg::tool {

namespace {

using Palette = RootContents::Palette;

/// "#rrggbbaa"
std::string colorText(const Color& color) {
    const auto level = [](double component) {
        return static_cast<unsigned>(std::lround(component * 255));
    };
    char text[16];
    std::snprintf(text, sizeof text, "#%02x%02x%02x%02x", level(color.red), level(color.green),
                  level(color.blue), level(color.alpha));
    return text;
}

std::string base64(std::string_view bytes) {
    constexpr std::string_view letters =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        std::uint32_t group = 0;
        for (std::size_t i = at; i < at + 3; ++i)
            group = group << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0);
        const std::size_t count = std::min<std::size_t>(bytes.size() - at, 3);
        for (std::size_t i = 0; i < 4; ++i)
            text += i <= count ? letters[group >> (18 - 6 * i) & 63] : '=';
    }
    return text;
}

/// The files of images as addresses with the data in them, up to a number of bytes together.
class ImageData {
public:
    /// The address, or why there is none.
    struct Answer {
        std::string address = {};
        std::string_view whyNone = {};
    };

    Answer of(const RootContents& contents, const std::optional<std::string>& path) {
        const auto file = path ? contents.imageFile(*path) : std::nullopt;
        if (!file)
            return {.whyNone = "The file is not in the image folder, so it is not in the report."};
        const std::string* const known = addresses_.find(*file);
        if (!known && bytes_ < mostBytes)
            read(*file);
        const std::string* const address = known ? known : addresses_.find(*file);
        if (!address || bytes_ + address->size() > mostBytes)
            return {.whyNone = "The report has no more room for images."};
        if (address->empty())
            return {.whyNone = "The file can no longer be read."};
        bytes_ += address->size();
        return {.address = *address};
    }

private:
    /// Of all addresses in the report.
    static constexpr std::size_t mostBytes = std::size_t{2} * 1024 * 1024;

    /// A file that is too large has no entry.
    void read(const std::string& file) {
        const files::FileReading reading = files::readWholeFile(file, mostBytes);
        const std::string_view bytes = reading.bytes;
        std::string address;
        if (bytes.starts_with("\x89PNG\r\n\x1a\n"))
            address = "data:image/png;base64," + base64(bytes);
        else if (bytes.starts_with("\xFF\xD8\xFF"))
            address = "data:image/jpeg;base64," + base64(bytes);
        if (reading)
            addresses_.set(file, std::move(address));
    }

    RecordMap<std::string> addresses_;
    std::size_t bytes_ = 0;
};

class PaletteWriter {
public:
    PaletteWriter(JsonWriter& json, ModelSource& source, ImageData& images)
        : json_(json), source_(source), images_(images) {}

    void write(const Palette& palette) {
        const YGPaletteLoad& loaded = *palette.palette;
        json_.object([&] {
            json_.member("file", palette.file);
            json_.member("style", palette.style);
            json_.member("isUsers", palette.isUsers);
            // What a key shows that the palette does not have.
            json_.member("noColor", colorText(loaded.getCustomColor(std::nullopt)));
            json_.member("noFont", [&] { writeFont(loaded.getCustomFont(std::nullopt)); });
            writeEntries("colors", palette, Naming::color, loaded.customColors(),
                         [&](const std::string&, const Color& color) {
                             json_.member("color", colorText(color));
                             if (color.alpha < 1)
                                 json_.member("alpha", color.alpha);
                         });
            writeKeys("colorKeys", palette, Naming::colorKey, loaded.keyColorNames());
            writeEntries("fonts", palette, Naming::font, loaded.customFonts(),
                         [&](const std::string& name, const Font& font) {
                             json_.member("faceName", font.faceName());
                             json_.member("pointSize", font.pointSize());
                             json_.member("asked", beside(palette, Naming::font, name, "FACE"));
                         });
            writeKeys("fontKeys", palette, Naming::fontKey, loaded.keyFontNames());
            writeEntries("images", palette, Naming::image, loaded.customImages(),
                         [&](const std::string& name, const Image& image) {
                             writeImage(image, beside(palette, Naming::image, name, "PATH"));
                         });
            json_.member("pairs", [&] { writePairs(palette); });
        });
    }

private:
    void writeFont(const Font& font) {
        json_.object([&] {
            json_.member("faceName", font.faceName());
            json_.member("pointSize", font.pointSize());
        });
    }

    template <class Value, class Write>
    void writeEntries(std::string_view member, const Palette& palette, Naming kind,
                      const RecordMap<Value>& entries, const Write& write) {
        json_.member(member, [&] {
            json_.list(entries, [&](const auto& entry) {
                json_.object([&] {
                    json_.member("name", entry.key);
                    write(entry.key, entry.value);
                    source_.places.writeAt(
                        json_, source_.places.definition(kind, entry.key, palette.file));
                });
            });
        });
    }

    void writeKeys(std::string_view member, const Palette& palette, Naming kind,
                   const PaletteNames& keys) {
        json_.member(member, [&] {
            json_.list(keys, [&](const auto& entry) {
                json_.object([&] {
                    json_.member("key", entry.key);
                    json_.member("name", entry.value);
                    source_.places.writeAt(
                        json_, source_.places.definition(kind, entry.key, palette.file));
                });
            });
        });
    }

    void writeImage(const Image& image, const std::optional<std::string>& path) {
        json_.member("file", path);
        json_.member("width", image.width());
        json_.member("height", image.height());
        json_.member("pixelWidth", image.pixelWidth());
        json_.member("pixelHeight", image.pixelHeight());
        json_.member("scale", static_cast<double>(image.pixelWidth()) / image.width());
        json_.member("strip", squarePieces(image));
        const ImageData::Answer data = images_.of(source_.contents, path);
        if (data.whyNone.empty())
            json_.member("data", data.address);
        else
            json_.member("whyNoData", data.whyNone);
    }

    void writePairs(const Palette& palette) {
        std::vector<const ContrastPair*> pairs;
        for (const ContrastPair& pair : source_.contents.contrasts()) {
            if (pair.palette == palette.file)
                pairs.push_back(&pair);
        }
        json_.list(pairs, [&](const ContrastPair* pair) {
            json_.object([&] {
                json_.member("text", pair->text);
                json_.member("ground", pair->ground);
                if (pair->over)
                    json_.member("over", *pair->over);
                json_.member("minimum", pair->minimum);
                json_.member("ratio", pair->ratio);
                json_.member("ratioText", pair->ratioText);
                json_.member("passes", pair->isEnough);
                source_.places.writeAt(json_, pair->place);
            });
        });
    }

    std::optional<std::string> beside(const Palette& palette, Naming kind, const std::string& name,
                                      std::string_view attribute) const {
        const NamePlace* const place = source_.places.definitionOf(kind, name, palette.file);
        return place ? source_.inspection.attributeBeside(*place, attribute) : std::nullopt;
    }

    JsonWriter& json_;
    ModelSource& source_;
    ImageData& images_;
};

}  // namespace

void writePalettes(JsonWriter& json, ModelSource& source) {
    ImageData images;
    PaletteWriter writer(json, source, images);
    json.list(source.contents.palettes(), [&](const Palette& palette) { writer.write(palette); });
}

}  // namespace yg::tool
