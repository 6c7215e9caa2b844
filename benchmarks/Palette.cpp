// SPDX-License-Identifier: MIT
//
// The switch between the themes of the sample terminal, with what it consists of apart, and a
// colour by its key, beside two look-ups in hash maps of absl's.
#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <absl/container/flat_hash_map.h>
#include <absl/strings/string_view.h>
#include <benchmark/benchmark.h>

#include "YGConfigManager/host/MainQueue.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/xml/Document.h"

#include "benchmarks/BenchmarkHost.h"
#include "benchmarks/Comparison.h"

namespace yg::benchmarks {

namespace {

const std::string sample = YG_SAMPLE_FOLDER;

/// A host on the sample.
class SampleHost final : public BenchmarkHost {
public:
    SampleHost() : BenchmarkHost(sample) {}
    std::optional<std::string> getDefualtFolderPath(std::int64_t) override {
        return sample + "/images";
    }
};

/// Other benchmarks have installed theirs meanwhile.
void installSampleHost() {
    static const auto host = std::make_shared<SampleHost>();
    setHost(host);
}

std::shared_ptr<YGPaletteLoad> loadSample() {
    installSampleHost();
    auto loader = YGPaletteLoad::initWithPaletteStyle(0);
    require(loader && loader->customColors().size() >= 60 && loader->customImages().size() >= 30,
            "the sample's palette is not whole");
    return loader;
}

void addSwitch() {
    const auto loader = loadSample();
    benchmark::RegisterBenchmark("palette/switch", [loader](benchmark::State& state) {
        installSampleHost();
        std::int8_t style = loader->currentPaletteStyle();
        for (auto unused : state) {
            style = style == 0 ? 1 : 0;
            loader->reloadPaletteWithOtherStyle(style);
            require(runPendingMainTasks() == 1, "no switch");
        }
    })->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("palette/switch/parse", [](benchmark::State& state) {
        const std::array paths = {sample + "/storage/palette_white.xml",
                                  sample + "/storage/palette_black.xml"};
        std::size_t next = 0;
        for (auto unused : state) {
            benchmark::DoNotOptimize(xml::Document::parseFile(paths[next]));
            next = 1 - next;
        }
    })->Unit(benchmark::kMicrosecond);

    const auto parsed = xml::Document::parseFile(sample + "/storage/palette_white.xml");
    const auto section = [&](const char* query) {
        return xml::Element(parsed.document.query(query).at(0));
    };
    const auto add = [&](const char* name, const char* query,
                         void (YGPaletteLoad::*load)(const xml::Element&)) {
        benchmark::RegisterBenchmark(name, [loader, load,
                                            element = section(query)](benchmark::State& state) {
            installSampleHost();
            for (auto unused : state)
                (loader.get()->*load)(element);
        })->Unit(benchmark::kMicrosecond);
    };
    add("palette/switch/colors", "/ROOT/SWPALETTE/COLORES", &YGPaletteLoad::loadColor);
    add("palette/switch/fonts", "/ROOT/SWPALETTE/FONTS", &YGPaletteLoad::loadFont);
    add("palette/switch/images", "/ROOT/SWPALETTE/BITMAPS", &YGPaletteLoad::loadImage);
}

void addColorByKey() {
    using Names = absl::flat_hash_map<std::string, std::string>;
    using Colors = absl::flat_hash_map<std::string, Color>;
    const auto loader = loadSample();
    const auto keys = std::make_shared<std::vector<std::string>>();
    const auto names = std::make_shared<Names>();
    const auto colors = std::make_shared<Colors>();
    for (const auto& [key, name] : loader->keyColorNames()) {
        keys->push_back(key);
        names->emplace(key, name);
    }
    for (const auto& [name, color] : loader->customColors())
        colors->emplace(name, color);

    benchmark::RegisterBenchmark("palette/color", [loader, keys](benchmark::State& state) {
        std::size_t next = 0;
        const std::size_t before = allocations();
        for (auto unused : state) {
            benchmark::DoNotOptimize(loader->getCustomColor((*keys)[next]));
            next = next + 1 < keys->size() ? next + 1 : 0;
        }
        require(allocations() - before <= 1, "looking up a colour allocates");
    });
    benchmark::RegisterBenchmark(
        "palette/color/flat_hash_map", [keys, names, colors](benchmark::State& state) {
            std::size_t next = 0;
            for (auto unused : state) {
                const std::string& key = (*keys)[next];
                const auto name = names->find(absl::string_view(key.data(), key.size()));
                require(name != names->end(), "no name");
                const auto color = colors->find(name->second);
                Color found = color == colors->end() ? Color::redColor() : color->second;
                benchmark::DoNotOptimize(found);
                next = next + 1 < keys->size() ? next + 1 : 0;
            }
        });
    compare({"palette/color", "palette/color/flat_hash_map", 1.3});
}

}  // namespace

void registerPalette() {
    addSwitch();
    addColorByKey();
}

}  // namespace yg::benchmarks
