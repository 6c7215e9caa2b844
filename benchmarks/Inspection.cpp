// SPDX-License-Identifier: MIT
//
// The inspection of a whole root, beside the load of all its files by the same loaders without a
// sink; and a parse that keeps positions, beside one that does not.
#include "YGConfigManager/inspection/Inspection.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include <benchmark/benchmark.h>

#include "YGConfigManager/host/HostOfThread.h"
#include "YGConfigManager/inspection/Loaded.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/xml/Document.h"

#include "benchmarks/Comparison.h"
#include "benchmarks/SkeletonGenerator.h"

namespace yg::benchmarks {

namespace {

/// A generated root that goes with the program.
class TemporaryRoot {
public:
    explicit TemporaryRoot(std::size_t wanted) {
        std::string name = std::filesystem::temp_directory_path() / "yg-benchmark-XXXXXX";
        require(mkdtemp(name.data()) != nullptr, "no temporary folder");
        path_ = name;
        bytes_ = makeRoot(path_, wanted);
    }
    ~TemporaryRoot() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryRoot(const TemporaryRoot&) = delete;
    TemporaryRoot& operator=(const TemporaryRoot&) = delete;

    std::string path() const { return path_; }
    std::size_t bytes() const { return bytes_; }

private:
    std::filesystem::path path_;
    std::size_t bytes_ = 0;
};

/// What an inspection loads, by the same loaders.
void loadAll(const std::string& root) {
    const auto host = std::make_shared<InspectionHost>(root);
    const HostOfThread hostOfThread(host);
    const SourceFiles files(root);
    YGStyleConfigLoad layout;
    layout.initWithStyleConfigPath(files.pathOf("config/custompage_template.xml"),
                                   files.pathOf("config/tab_styles.xml"),
                                   files.pathOf("config/magic_panels.xml"));
    const auto events = YGEventLoader::initWithEventConfigPath(files.pathOf("config/events.xml"));
    const auto white = YGPaletteLoad::initWithPaletteStyle(0);
    const auto black = YGPaletteLoad::initWithPaletteStyle(1);
    std::size_t serverFiles = 0;
    for (const char* right : {"free", "l2"}) {
        host->setUserRight(right);
        for (const bool isGray : {false, true}) {
            const auto servers = YGServerCfgLoader::initWithIsGray(isGray);
            serverFiles += servers && servers->configPath() ? 1 : 0;
        }
    }
    const auto settings = YGAppConfigManager::initWithFileName("app_config.xml");
    require(layout.styleInfos() && layout.tabStyleInfos() && events && white && black &&
                serverFiles > 0 && settings,
            "the root is not whole");
}

void inspect(const std::string& root) {
    std::string error;
    require(Inspection::open(root, error) != nullptr, "the root cannot be inspected");
}

template <class Run>
void add(const std::string& name, const std::shared_ptr<TemporaryRoot>& root, Run run) {
    benchmark::RegisterBenchmark(name.c_str(), [root, run](benchmark::State& state) {
        for (auto unused : state)
            run(root->path());
        state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * root->bytes()));
    })->Unit(benchmark::kMillisecond);
}

void addParse(const std::string& size, const std::shared_ptr<TemporaryRoot>& root) {
    const auto parse = [](bool positions) {
        return [positions](const std::string& path) {
            require(static_cast<bool>(xml::Document::parseFile(
                        path + "/config/custompage_template.xml", {.positions = positions})),
                    "no document");
        };
    };
    add("xml/parse/" + size, root, parse(false));
    add("xml/parse/" + size + "/positions", root, parse(true));
    compare({"xml/parse/" + size + "/positions", "xml/parse/" + size, 2.0});
}

}  // namespace

void registerInspection() {
    struct Size {
        std::string name;
        std::size_t bytes;
    };
    const Size sizes[] = {{"1MB", 1'000'000}, {"10MB", 10'000'000}, {"20MB", 20'000'000}};
    for (const Size& size : sizes) {
        const auto root = std::make_shared<TemporaryRoot>(size.bytes);
        addParse(size.name, root);
        add("inspection/load/" + size.name, root, loadAll);
        add("inspection/" + size.name, root, inspect);
        compare({"inspection/" + size.name, "inspection/load/" + size.name, 3.0});
    }
    compare({"xml/parse/20MB/positions", "xml/parse/1MB/positions", 21});
}

}  // namespace yg::benchmarks
