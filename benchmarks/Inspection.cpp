// SPDX-License-Identifier: MIT
//
// The inspection of a whole root, beside the load of all its files by the same loaders without a
// sink: of a root as authors keep it, and of a generated one with a finding in nearly each line;
// and a parse that keeps positions, beside one that does not.
#include "YGConfigManager/inspection/Inspection.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <system_error>

#include <benchmark/benchmark.h>

#include "YGConfigManager/host/HostOfThread.h"
#include "YGConfigManager/inspection/Loaded.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/text/Replace.h"
#include "YGConfigManager/xml/Document.h"

#include "benchmarks/Comparison.h"
#include "benchmarks/SkeletonGenerator.h"

namespace yg::benchmarks {

namespace {

/// The sample with its pages again and again, each time by other names.
std::size_t makeOrderlyRoot(const std::filesystem::path& root, std::size_t wanted) {
    std::filesystem::copy(YG_SAMPLE_FOLDER, root, std::filesystem::copy_options::recursive);
    const std::filesystem::path path = root / "config/custompage_template.xml";
    std::ifstream file(path, std::ios::binary);
    const std::string sample(std::istreambuf_iterator<char>(file), {});
    file.close();
    const std::string begin = "<style name=\"";
    const std::size_t end = sample.rfind("</styles>");
    const std::string pages = sample.substr(0, end).substr(sample.find(begin));
    std::string text = sample.substr(0, end);
    for (int i = 1; text.size() < wanted; ++i)
        text += text::replaceAll(pages, begin, begin + std::to_string(i) + "_");
    text += sample.substr(end);
    std::ofstream(path, std::ios::binary) << text;
    return text.size();
}

/// A root that goes with the program.
class TemporaryRoot {
public:
    TemporaryRoot(std::size_t wanted, bool isOrderly) {
        std::string name = std::filesystem::temp_directory_path() / "yg-benchmark-XXXXXX";
        require(mkdtemp(name.data()) != nullptr, "no temporary folder");
        path_ = name;
        bytes_ = isOrderly ? makeOrderlyRoot(path_, wanted) : makeRoot(path_, wanted);
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
        const auto root = std::make_shared<TemporaryRoot>(size.bytes, false);
        addParse(size.name, root);
        add("inspection/load/" + size.name, root, loadAll);
        add("inspection/" + size.name, root, inspect);
        // Each finding takes time of its own, and there is one for every 160 bytes.
        compare({"inspection/" + size.name, "inspection/load/" + size.name, 16.0});
        const auto orderly = std::make_shared<TemporaryRoot>(size.bytes, true);
        add("inspection/orderly/load/" + size.name, orderly, loadAll);
        add("inspection/orderly/" + size.name, orderly, inspect);
        compare({"inspection/orderly/" + size.name, "inspection/orderly/load/" + size.name, 4.0});
    }
    // As many findings for each byte take as long for each.
    compare({"inspection/20MB", "inspection/1MB", 25});
    compare({"xml/parse/20MB/positions", "xml/parse/1MB/positions", 21});
}

}  // namespace yg::benchmarks
