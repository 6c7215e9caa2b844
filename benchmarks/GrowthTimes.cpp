// SPDX-License-Identifier: MIT
//
// How long each loader takes for files from 10 KB to 50 MB: one line for each, the loader, the
// bytes of its file and the milliseconds of processor time of one load, the median of several.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"
#include "YGConfigManager/xml/Document.h"

#include "benchmarks/BenchmarkHost.h"
#include "benchmarks/SkeletonGenerator.h"

namespace {

using namespace yg;

/// A list of keys with addresses, each made by `entry` of its number.
template <class Entry>
std::string listOf(std::size_t bytes, const char* begin, const char* end, Entry entry) {
    std::string text = begin;
    for (std::size_t i = 0; text.size() < bytes; ++i)
        text += entry(std::to_string(i));
    return text + end;
}

std::string webPages(std::size_t bytes) {
    return listOf(bytes, "<urls>", "</urls>", [](const std::string& i) {
        return "<url key=\"page" + i + "\">https://pages.example.com/" + i + "</url>\n";
    });
}

std::string requestUrls(std::size_t bytes) {
    return listOf(bytes, R"({"md5Value": "0", "urlConfigList": [{})", "]}",
                  [](const std::string& i) {
                      return R"(, {"urlKey": "key)" + i +
                             R"(", "urlValue": "https://api.example.com/)" + i + "\"}\n";
                  });
}

struct Loader {
    const char* name;
    std::string file;  // below the root
    std::function<std::string(std::size_t bytes)> make;
    std::function<bool(const std::string& path)> load;
};

std::function<std::string(std::size_t)> generated(const char* kind) {
    return [kind](std::size_t bytes) { return benchmarks::makeFile(kind, bytes); };
}

std::vector<Loader> loaders() {
    return {
        {"XML tree", "tree.xml", generated("styles"),
         [](const std::string& path) { return !!xml::Document::parseFile(path); }},
        {"pages", "pages.xml", generated("styles"),
         [](const std::string& path) {
             YGStyleConfigLoad loader;
             loader.initWithStyleConfigPath(path, std::nullopt, std::nullopt);
             return loader.styleInfos() && !loader.styleInfos()->empty();
         }},
        {"magic panels", "magic.xml", generated("magic panels"),
         [](const std::string& path) {
             YGStyleConfigLoad loader;
             loader.initWithStyleConfigPath(std::nullopt, std::nullopt, path);
             return loader.magicPanelInfos() && !loader.magicPanelInfos()->empty();
         }},
        {"events", "events.xml", generated("events"),
         [](const std::string& path) { return !!YGEventLoader::initWithEventConfigPath(path); }},
        {"palette", "storage/palette_white.xml", generated("palette"),
         [](const std::string&) { return !!YGPaletteLoad::initWithPaletteStyle(0); }},
        {"servers", "storage/skeleton_v1.xml", generated("servers"),
         [](const std::string&) { return !!YGServerCfgLoader::initWithIsGray(false); }},
        {"settings", "storage/settings.xml", generated("settings"),
         [](const std::string&) {
             const auto store = YGAppConfigManager::initWithFileName("settings.xml");
             return store && store->getItemText("section0", "item0");
         }},
        {"web pages", "storage/pages.xml", webPages,
         [](const std::string&) {
             const auto table = YGWebPageUrlConfig::initWithFileName("pages.xml");
             return table && !table->getWebPageUrlByKey("page0").empty();
         }},
        {"request URLs", "storage/request_urls_json.txt", requestUrls,
         [](const std::string&) {
             const auto manager = YGHttpReqUrlMgr::make();
             manager->readUrlModelFromFile();
             return manager->httpReqUrlStringWithUrlKey("key0").has_value();
         }},
    };
}

double processorTime() {
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// The median of as many loads as fit into a third of a second, three at least. Negative if the
/// file is not loaded.
double timeOf(const Loader& loader, const std::string& path) {
    constexpr double enough = 300;
    constexpr std::size_t fewest = 3;
    if (!loader.load(path))
        return -1;
    std::vector<double> times;
    for (double all = 0; all < enough || times.size() < fewest; all += times.back()) {
        const double begin = processorTime();
        loader.load(path);
        times.push_back(processorTime() - begin);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

}  // namespace

int main() {
    namespace fs = std::filesystem;
    std::string root = fs::temp_directory_path() / "yg-growth-XXXXXX";
    if (!::mkdtemp(root.data()))
        return EXIT_FAILURE;
    fs::create_directory(root + "/storage");
    setHost(std::make_shared<benchmarks::BenchmarkHost>(root));
    constexpr std::size_t thousand = 1000;
    for (const Loader& loader : loaders()) {
        for (const std::size_t size : {10 * thousand, 100 * thousand, 1000 * thousand,
                                       10'000 * thousand, 50'000 * thousand}) {
            const std::string path = root + '/' + loader.file;
            const std::string text = loader.make(size);
            if (text.size() > 2 * size)
                continue;  // nothing is made as small as that
            std::ofstream(path, std::ios::binary) << text;
            const double time = timeOf(loader, path);
            if (time >= 0)
                std::printf("%s\t%zu\t%.4f\n", loader.name, text.size(), time);
            else
                std::fprintf(stderr, "%s: a file of %zu bytes is refused\n", loader.name,
                             text.size());
            std::fflush(stdout);
        }
    }
    fs::remove_all(root);
    return EXIT_SUCCESS;
}
