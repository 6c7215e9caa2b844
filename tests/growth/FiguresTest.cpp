// SPDX-License-Identifier: MIT
//
// What the loads and look-ups of the sample terminal cost, against the figures in figures.txt. A
// figure holds for one compiler and one version of each library, which the file names; elsewhere
// the test is skipped. YG_UPDATE_FIGURES=1 in the environment rewrites the file.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <gnu/libc-version.h>
#include <map>
#include <sstream>
#include <string>
#include <unicode/uvernum.h>
#include <utility>
#include <vector>
#include <zlib.h>

#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>
#include <hb.h>
#include <libxml/parser.h>
#include <png.h>
#include <pugixml.hpp>

#include "growth/Constructs.h"
#include "growth/Loaders.h"
#include "process/SampleRoot.h"
#include "process/Uses.h"

// For the whole program in place of the C library's: with keys of hashes that are drawn, each run
// would have collisions of its own.
extern "C" void arc4random_buf(void* bytes, std::size_t size) noexcept {
    static std::uint64_t state = 1;
    for (std::size_t i = 0; i < size; ++i) {
        state = state * 6364136223846793005U + 1442695040888963407U;
        static_cast<unsigned char*>(bytes)[i] = static_cast<unsigned char>(state >> 56);
    }
}

namespace yg::testing {
namespace {

constexpr const char* figuresFile = YG_FIGURES_FILE;
constexpr const char* howToRewrite =
    "YG_UPDATE_FIGURES=1 ctest --preset ci-release -L instructions";

/// How far a figure may be from the committed one.
constexpr double room = 0.05;

/// How often what is short is repeated for its figure.
constexpr std::size_t times = 1000;

/// On what the counts depend besides the sources.
std::string build() {
    std::ostringstream text;
#if defined(__clang__)
    text << "clang " << __clang_version__;
#else
    text << "g++ " << __VERSION__;
#endif
    text << ", " << YG_BUILD_TYPE << ", glibc " << ::gnu_get_libc_version() << ", libxml2 "
         << xmlParserVersion << ", pugixml " << PUGIXML_VERSION << ", ICU " << U_ICU_VERSION
         << ", fontconfig " << FcGetVersion() << ", HarfBuzz " << ::hb_version_string()
         << ", libpng " << ::png_get_libpng_ver(nullptr) << ", zlib " << ::zlibVersion();
#if defined(__x86_64__)
    // The C library has functions for each kind of processor.
    text << ", x86-64" << (__builtin_cpu_supports("avx2") != 0 ? " with AVX2" : "");
#endif
    return text.str();
}

struct Work {
    std::string name;
    std::function<bool()> run;
};

/// Takes turns over several names: where one of them lies in memory changes its cost a little.
template <class LookUp>
std::function<bool()> repeated(std::vector<const char*> names, LookUp lookUp) {
    return [names = std::move(names), lookUp] {
        bool isFound = true;
        for (std::size_t i = 0; i < times; ++i)
            isFound = lookUp(names[i % names.size()]) && isFound;
        return isFound;
    };
}

std::vector<Work> loads(const std::string& root) {
    const std::string layout =
        writeFile("layout.xml", "<styles>" + plainLayout(std::size_t{256} * 1024) + "</styles>");
    return {
        {"load-layout", [root] { return loadsLayout(root); }},
        {"load-layout-of-256-KiB",
         [layout] {
             YGStyleConfigLoad loader;
             loader.initWithStyleConfigPath(layout, std::nullopt, std::nullopt);
             return loader.styleInfos() != nullptr;
         }},
        {"load-events", [root] { return loadsEvents(root); }},
        {"load-light-palette", [] { return YGPaletteLoad::initWithPaletteStyle(0) != nullptr; }},
        {"load-dark-palette", [] { return YGPaletteLoad::initWithPaletteStyle(1) != nullptr; }},
        {"load-servers", loadsServers},
        {"load-settings", opensSettings},
        {"load-web-pages", opensWebPages},
        {"load-request-urls", readsUrls},
        {"parse-gbk", repeated({""}, [](const char*) { return parsesAnotherEncoding(); })},
    };
}

std::vector<Work> lookUps(const std::string& root) {
    const auto layout = std::make_shared<YGStyleConfigLoad>();
    loadLayout(*layout, root);
    const auto events = YGEventLoader::initWithEventConfigPath(root + "/config/events.xml");
    const auto palette = YGPaletteLoad::initWithPaletteStyle(0);
    const auto servers = YGServerCfgLoader::initWithIsGray(false);
    const auto settings = YGAppConfigManager::initWithFileName("app_config.xml");
    const auto pages = YGWebPageUrlConfig::initWithFileName("web_page_urls.xml");
    const auto urls = YGHttpReqUrlMgr::make();
    urls->readUrlModelFromFile();
    const auto page = [layout](const char* name) {
        return layout->loadStyleConfigInfoWithName(name) != nullptr;
    };
    return {
        {"look-up-page", repeated({"市场总览", "行情报价", "自选股", "涨跌排行"}, page)},
        {"look-up-custom-page", repeated({"quote-kline-depth"}, page)},
        {"look-up-event", repeated({"select", "double_click", "key_enter", "key_f10"},
                                   [events](const char* name) {
                                       return events->eventByName("watch_list", name) != nullptr;
                                   })},
        {"look-up-color",
         repeated({"Window.background", "Window.border", "Window.text", "IndexCard.name"},
                  [palette](const char* key) {
                      return palette->getCustomColor(key) != palette->getCustomColor("no key");
                  })},
        {"look-up-font",
         repeated(
             {"NewsList.title", "NewsBody.text", "KLineChart.axis", "OrderForm.title"},
             [palette](const char* key) { return palette->getCustomFont(key).pointSize() > 0; })},
        {"look-up-image", repeated({"NavTabs.自选", "NavTabs.板块", "NavTabs.资讯", "NavTabs.研报"},
                                   [palette](const char* name) {
                                       return palette->getCustomImage(name).has_value();
                                   })},
        {"look-up-servers",
         repeated({""}, [servers](const char*) { return !servers->serversOfType(1).empty(); })},
        {"look-up-setting",
         repeated({"theme", "language", "font_scale", "rise_color"},
                  [settings](const char* name) {
                      return settings->getItemText("appearance", name).has_value();
                  })},
        {"look-up-web-page",
         repeated({"help_center", "quick_start", "shortcuts", "release_notes"},
                  [pages](const char* key) { return !pages->getWebPageUrlByKey(key).empty(); })},
        {"look-up-request-url",
         repeated({"quote_ranking", "kline_day", "dividends", "heatmap"},
                  [urls](const char* key) {
                      return urls->httpReqUrlStringWithUrlKey(key).has_value();
                  })},
        {"measure-text",
         repeated({"AW 市场", "Price 12.50", "涨跌幅", "成交量 1,234"},
                  [](const char* text) { return Font::system(12).widthOf(text) > 0; })},
    };
}

/// Once uncounted before, for what is made at the first use.
std::uint64_t costOf(const Work& work) {
    EXPECT_TRUE(work.run()) << work.name;
    return instructionsOf([&] { EXPECT_TRUE(work.run()) << work.name; });
}

struct Figures {
    std::string build;
    std::map<std::string, std::uint64_t> counts;
};

Figures committed() {
    Figures figures;
    std::ifstream file(figuresFile);
    for (std::string line; std::getline(file, line);) {
        const std::size_t blank = line.find(' ');
        if (line.starts_with("build "))
            figures.build = line.substr(blank + 1);
        else if (!line.starts_with('#') && blank != std::string::npos)
            figures.counts[line.substr(0, blank)] = std::stoull(line.substr(blank));
    }
    return figures;
}

void write(const Figures& figures) {
    std::ofstream file(figuresFile);
    file << "# Instructions of one load, and of " << times
         << " look-ups or small parses. Rewritten by\n# " << howToRewrite << "\nbuild "
         << figures.build << '\n';
    for (const auto& [name, count] : figures.counts)
        file << name << ' ' << count << '\n';
}

TEST(Figures, OfLoadsAndLookUpsAreThoseThatAreCommitted) {
    const char* const update = std::getenv("YG_UPDATE_FIGURES");
    const bool isUpdated = update && *update == '1';
    const Figures before = committed();
    if (!isUpdated && before.build != build())
        GTEST_SKIP() << "the figures are of another build: " << before.build
                     << "\nand this is one with: " << build();
    const SampleRoot root;
    useHost(root.path());
    Figures now{build(), {}};
    std::vector<Work> works = loads(root.path());
    for (Work& work : lookUps(root.path()))
        works.push_back(std::move(work));
    for (const Work& work : works) {
        const std::uint64_t count = costOf(work);
        now.counts[work.name] = count;
        const auto known = before.counts.find(work.name);
        const double ratio = known == before.counts.end()
                                 ? 0
                                 : static_cast<double>(count) / static_cast<double>(known->second);
        std::printf("%-24s %10llu instructions, %.3f of what is committed\n", work.name.c_str(),
                    static_cast<unsigned long long>(count), ratio);
        if (isUpdated)
            continue;
        EXPECT_LE(ratio, 1 + room) << work.name << " takes more instructions than before. Where "
                                   << "that is meant: " << howToRewrite;
        EXPECT_GE(ratio, 1 - room)
            << work.name << " takes fewer than before, or is new: " << howToRewrite;
    }
    if (isUpdated)
        write(now);
    else
        EXPECT_EQ(now.counts.size(), before.counts.size()) << "an old figure: " << howToRewrite;
}

}  // namespace
}  // namespace yg::testing
