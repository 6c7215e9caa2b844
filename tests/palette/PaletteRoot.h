// SPDX-License-Identifier: MIT
//
// A short way from the text of palettes to a loader: a folder with palettes and images, the host on
// it, and a main queue that the test runs.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/host/MainQueue.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"

#include "files/TemporaryFolder.h"
#include "host/RecordingHost.h"

namespace yg::testing {

/// Keeps what is posted until run() is called.
class HeldQueue final : public MainQueue {
public:
    void post(std::function<void()> task) override { tasks_.push_back(std::move(task)); }
    std::size_t size() const { return tasks_.size(); }
    void run() {
        while (!tasks_.empty()) {
            const auto task = std::move(tasks_.front());
            tasks_.pop_front();
            task();
        }
    }

private:
    std::deque<std::function<void()>> tasks_;
};

/// An image without anything to see: a row of columns, each of its own grey, so that a piece shows
/// where it was cut.
inline Image columns(std::size_t width, std::size_t height) {
    std::vector<std::uint8_t> pixels;
    for (std::size_t i = 0; i < width * height; ++i) {
        const auto grey = static_cast<std::uint8_t>(i % width);
        pixels.insert(pixels.end(), {grey, grey, grey, 255});
    }
    return *Image::fromPixels(width, height, std::move(pixels));
}

/// The column of the whole from which a piece of columns() begins.
inline int firstColumn(const Image& piece) {
    return piece.row(0).front();
}

class PaletteRoot {
public:
    PaletteRoot() {
        host->storageReadFolder = root.at("storage");
        host->defualtFolders[4] = root.at("images");
        host->queue = queue;
    }

    void writeLight(std::string_view xml) const { root.write("storage/palette_white.xml", xml); }
    void writeDark(std::string_view xml) const { root.write("storage/palette_black.xml", xml); }
    void writeImage(const std::string& name, std::size_t width, std::size_t height) const {
        root.write("images/" + name, *columns(width, height).toPng());
    }

    files::TemporaryFolder root;
    ScopedHost<> host;
    std::shared_ptr<HeldQueue> queue = std::make_shared<HeldQueue>();
};

/// A palette with this content in SWPALETTE; its first line is line 1.
inline std::string palette(std::string_view content) {
    return "<ROOT><SWPALETTE>" + std::string(content) + "</SWPALETTE></ROOT>";
}

/// The loader of a light palette with this content.
inline std::shared_ptr<YGPaletteLoad> loadPalette(std::string_view content) {
    const PaletteRoot files;
    files.writeLight(palette(content));
    return YGPaletteLoad::initWithPaletteStyle(0);
}

/// What a light palette without content gives, as text.
constexpr std::string_view emptyPalette =
    "{currentPaletteStyle=0 customColors=() keyColorNames=() customFonts=() keyFontNames=() "
    "customImages=() }";

/// The keys of a map in their order.
template <class Value>
std::vector<std::string> keysOf(const RecordMap<Value>& map) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : map)
        keys.push_back(key);
    return keys;
}

}  // namespace yg::testing
