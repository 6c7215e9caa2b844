// SPDX-License-Identifier: MIT
//
// A page by its name, beside a hash map of absl's, and custom pages by their number of slots.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <absl/container/flat_hash_map.h>
#include <absl/strings/string_view.h>
#include <benchmark/benchmark.h>

#include "YGConfigManager/layout/YGStyleConfigLoad.h"

#include "benchmarks/BenchmarkHost.h"
#include "benchmarks/Comparison.h"
#include "benchmarks/SkeletonGenerator.h"

namespace yg::benchmarks {

namespace {

std::shared_ptr<YGStyleConfigLoad> loadGenerated(const std::filesystem::path& root) {
    const Skeleton skeleton = makeSkeleton(root, 1'000'000);

    // Templates with one to eight slots, in the file that custom pages are searched in first.
    std::ofstream templates(skeleton.softStylePath(), std::ios::binary);
    templates << "<styles>\n";
    for (int slots = 1; slots <= 8; ++slots) {
        templates << "<style name=\"template" << slots << "\"><panel name=\"all\">";
        for (int i = 0; i < slots; ++i)
            templates << "<magic_panels name=\"group_" << i % 8 << "\"/>";
        templates << "</panel></style>\n";
    }
    templates << "</styles>\n";
    templates.close();

    setHost(std::make_shared<BenchmarkHost>(root));
    auto loader = std::make_shared<YGStyleConfigLoad>();
    loader->initWithStyleConfigPath(skeleton.stylePath(), skeleton.tabPath(), skeleton.magicPath());
    return loader;
}

void addPageByName(const std::shared_ptr<YGStyleConfigLoad>& loader) {
    auto names = std::make_shared<std::vector<std::string>>();
    auto peer =
        std::make_shared<absl::flat_hash_map<std::string, std::shared_ptr<StyleConfigInfo>>>();
    for (const auto& [name, style] : *loader->styleInfos()) {
        names->push_back(name);
        peer->emplace(name, style);
    }

    const auto library = [loader, names](benchmark::State& state) {
        std::size_t next = 0;
        const std::size_t before = allocations();
        for (auto unused : state) {
            benchmark::DoNotOptimize(loader->loadStyleConfigInfoWithName((*names)[next]));
            next = next + 1 < names->size() ? next + 1 : 0;
        }
        require(allocations() - before <= 1, "looking up a page allocates");
    };
    const auto flatHashMap = [peer, names](benchmark::State& state) {
        std::size_t next = 0;
        for (auto unused : state) {
            const std::string& name = (*names)[next];
            const auto found = peer->find(absl::string_view(name.data(), name.size()));
            benchmark::DoNotOptimize(found == peer->end() ? nullptr
                                                          : std::shared_ptr(found->second));
            next = next + 1 < names->size() ? next + 1 : 0;
        }
    };
    benchmark::RegisterBenchmark("layout/lookup", library);
    benchmark::RegisterBenchmark("layout/lookup/flat_hash_map", flatHashMap);
    compare({"layout/lookup", "layout/lookup/flat_hash_map", 1.3});
}

void addCustomPages(const std::shared_ptr<YGStyleConfigLoad>& loader) {
    for (const int slots : {1, 2, 4, 8}) {
        std::string page = "template" + std::to_string(slots);
        for (int i = 0; i < slots; ++i)
            page += "-member0";
        require(loader->loadStyleConfigInfoWithName(page) != nullptr, "no custom page");
        benchmark::RegisterBenchmark(
            ("layout/custom_page/slots:" + std::to_string(slots)).c_str(),
            [loader, page, slots](benchmark::State& state) {
                for (auto unused : state)
                    benchmark::DoNotOptimize(loader->loadStyleConfigInfoWithName(page));
                state.counters["per_slot"] =
                    benchmark::Counter(slots, benchmark::Counter::kIsIterationInvariantRate |
                                                  benchmark::Counter::kInvert);
            })
            ->Unit(benchmark::kMicrosecond);
    }
}

}  // namespace

void registerLayoutLookup() {
    std::string folder = std::filesystem::temp_directory_path() / "yg-benchmark-XXXXXX";
    require(mkdtemp(folder.data()) != nullptr, "no temporary folder");
    const auto loader = loadGenerated(folder);
    std::filesystem::remove_all(folder);
    addPageByName(loader);
    addCustomPages(loader);
}

}  // namespace yg::benchmarks
