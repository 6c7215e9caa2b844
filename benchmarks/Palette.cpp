// SPDX-License-Identifier: MIT
//
// The switch between the themes of the sample terminal, with what it consists of apart; palettes
// from bytes to maps, beside the same over pugixml's own lenient parser; and a colour by its key,
// beside two look-ups in hash maps of absl's.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <absl/container/flat_hash_map.h>
#include <absl/strings/string_view.h>
#include <benchmark/benchmark.h>

#include "YGConfigManager/graphics/FontServices.h"
#include "YGConfigManager/host/MainQueue.h"
#include "YGConfigManager/palette/ColorOrSubstitute.h"
#include "YGConfigManager/palette/PaletteAttributes.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/xml/Document.h"

#include "benchmarks/BenchmarkHost.h"
#include "benchmarks/Comparison.h"
#include "benchmarks/PeerTrees.h"
#include "benchmarks/SkeletonGenerator.h"

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

/// The maps of a palette but for its images.
struct PeerPalette {
    PaletteColors colors;
    PaletteNames keyColors;
    PaletteFonts fonts;
    PaletteNames keyFonts;
};

template <class Library>
PeerPalette loadPeer(const std::string& path) {
    using Node = typename Library::Node;
    const auto tree = Library::parse(path);
    PeerPalette palette;
    const auto forEachEntry = [&](const std::string& at, auto visit) {
        const auto descend = [&](const auto& self, Node node, std::string_view rest) -> void {
            const std::string_view name = rest.substr(0, rest.find('/'));
            Library::forEachElement(node, [&](Node child) {
                if (rest.empty())
                    visit(child);
                else if (Library::name(child) == name)
                    self(self, child, rest.substr(std::min(name.size() + 1, rest.size())));
            });
        };
        descend(descend, Library::root(tree), at);
    };
    const auto keysOf = [&](PaletteNames& names) {
        return [&names](Node node) {
            KeyEntry<Naming::color> entry;
            readAttributesOf<Library>(node, attributesOf<KeyEntry<Naming::color>>, entry);
            if (entry.key && entry.value)
                names.set(*entry.key, std::string(*entry.value));
        };
    };
    forEachEntry("SWPALETTE/COLORES", [&](Node node) {
        ColorEntry entry;
        readAttributesOf<Library>(node, attributesOf<ColorEntry>, entry);
        constexpr float full = 255;
        if (entry.name)
            palette.colors.set(*entry.name,
                               colorOrSubstitute(Color::sRGB(entry.red / full, entry.green / full,
                                                             entry.blue / full, entry.alpha),
                                                 0));
    });
    forEachEntry("SWPALETTE/APP_MAP/COLORES", keysOf(palette.keyColors));
    forEachEntry("SWPALETTE/FONTS", [&](Node node) {
        FontEntry entry;
        readAttributesOf<Library>(node, attributesOf<FontEntry>, entry);
        FontServices& services = FontServices::shared();
        auto font = entry.face ? services.named(*entry.face, entry.height) : std::nullopt;
        if (entry.name)
            palette.fonts.set(*entry.name, font ? *std::move(font) : services.system(entry.height));
    });
    forEachEntry("SWPALETTE/APP_MAP/FONTS", keysOf(palette.keyFonts));
    return palette;
}

/// The whole of a palette file but for its images, for which the host has no folder.
void addLoads() {
    struct Size {
        std::string name;
        std::size_t bytes;
        double goal;
    };
    for (const Size& size :
         {Size{"sample", 0, 0}, Size{"1MB", 1'000'000, 1.4}, Size{"5MB", 5'000'000, 1.4}}) {
        auto root = std::make_shared<std::string>(sample);
        if (size.bytes != 0) {
            std::string name = std::filesystem::temp_directory_path() / "yg-benchmark-XXXXXX";
            require(mkdtemp(name.data()) != nullptr, "no temporary folder");
            std::filesystem::create_directory(name + "/storage");
            std::ofstream(name + "/storage/palette_white.xml", std::ios::binary)
                << makePalette(size.bytes);
            root = std::shared_ptr<std::string>(new std::string(name), [](std::string* made) {
                std::error_code ignored;
                std::filesystem::remove_all(*made, ignored);
                delete made;
            });
        }
        const auto load = [root] {
            setHost(std::make_shared<BenchmarkHost>(*root));
            return YGPaletteLoad::initWithPaletteStyle(0);
        };
        const auto loadWithPugixml = [root] {
            return loadPeer<Pugixml>(*root + "/storage/palette_white.xml");
        };
        const auto whole = load();
        const PeerPalette peer = loadWithPugixml();
        const auto isSame = [](const auto& left, const auto& right) {
            bool is = left.size() == right.size();
            for (const auto& [key, value] : left) {
                const auto* const other = right.find(key);
                is = is && other && *other == value;
            }
            return is;
        };
        require(whole && isSame(whole->customColors(), peer.colors) &&
                    isSame(whole->keyColorNames(), peer.keyColors) &&
                    isSame(whole->keyFontNames(), peer.keyFonts) &&
                    whole->customFonts().size() == peer.fonts.size(),
                "palettes differ");
        const std::string name = "palette/load/" + size.name;
        const auto add = [](const std::string& what, const auto& work) {
            benchmark::RegisterBenchmark(what.c_str(), [work](benchmark::State& state) {
                for (auto unused : state)
                    benchmark::DoNotOptimize(work());
            })->Unit(benchmark::kMillisecond);
        };
        add(name, load);
        add(name + "/pugixml", loadWithPugixml);
        compare({name, name + "/pugixml", size.goal});
    }
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
    addLoads();
    addColorByKey();
}

}  // namespace yg::benchmarks
