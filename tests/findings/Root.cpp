// SPDX-License-Identifier: MIT
#include "findings/Root.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <regex>
#include <set>
#include <utility>

#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/servers/RandomSource.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"
#include "YGConfigManager/text/Utf8.h"
#include "YGConfigManager/xml/Document.h"

#include "files/TemporaryFolder.h"
#include "records/RecordText.h"

namespace yg::testing {

namespace {

constexpr std::string_view mainFile = "config/custompage_template.xml";
constexpr std::string_view softFile = "soft_optimize/custompage_template.xml";
constexpr std::string_view magicFile = "config/magic_panels.xml";
constexpr std::string_view settingsFile = "storage/app_config.xml";
constexpr std::string_view webPageFile = "storage/web_page_urls.xml";

xml::Element rootOf(const RootFiles& files, std::string_view name) {
    const auto file = files.find(name);
    return file == files.end() ? xml::Element()
                               : xml::Document::parseBytes(file->second).document.root();
}

void addElements(const xml::Element& below, std::string_view name,
                 std::vector<xml::Element>& found) {
    for (const xml::Node& child : below.children()) {
        const xml::Element element(child);
        if (element && element.name() == name)
            found.push_back(element);
        addElements(element, name, found);
    }
}

/// The names of the first members of a group, and one that it does not have.
std::vector<std::string> membersOf(const xml::Element& magic, std::string_view group) {
    std::vector<std::string> names;
    for (const xml::Node& child : magic.children()) {
        const xml::Element element(child);
        if (element.attribute("name") != group)
            continue;
        for (const xml::Node& member : element.children()) {
            const auto name = xml::Element(member).attribute("name");
            if (name && names.size() < 3)
                names.emplace_back(*name);
        }
    }
    names.emplace_back("SH600000");
    return names;
}

std::vector<std::string> pagesOf(const RootFiles& files) {
    const xml::Element magic = rootOf(files, magicFile);
    std::vector<std::string> pages;
    for (const std::string_view file : {mainFile, softFile}) {
        const xml::Element root = rootOf(files, file);
        for (const xml::Node& child : root.children()) {
            const xml::Element style(child);
            const auto name = style.attribute("name");
            if (!name || pages.size() > 60)
                continue;
            std::vector<xml::Element> slots;
            addElements(style, "magic_panels", slots);
            std::vector<std::string> begun{std::string(*name)};
            for (std::size_t at = 0; at < std::min<std::size_t>(slots.size(), 3); ++at) {
                std::vector<std::string> longer;
                for (const std::string& page : begun) {
                    for (const std::string& member :
                         membersOf(magic, slots[at].attribute("name").value_or("")))
                        longer.push_back(page + "-" + member);
                }
                longer.resize(std::min<std::size_t>(longer.size(), 12));
                begun = std::move(longer);
            }
            pages.insert(pages.end(), begun.begin(), begun.end());
            pages.push_back(begun.front() + "-more");
        }
    }
    return pages;
}

std::string layoutAnswers(const std::string& root, const Lookups& lookups, DiagnosticsSink* sink) {
    YGStyleConfigLoad loader(sink);
    loader.initWithStyleConfigPath(root + "/" + std::string(mainFile),
                                   root + "/config/tab_styles.xml",
                                   root + "/" + std::string(magicFile));
    std::string text = wholeText(loader.defaultStyleName()) + wholeText(loader.styleInfos()) +
                       wholeText(loader.tabStyleInfos()) + wholeText(loader.magicPanelInfos()) +
                       wholeText(loader.reusePanelInfos());
    // A page is made of copies: what has no effect on it may have one elsewhere.
    YGStyleConfigLoad pages;
    pages.initWithStyleConfigPath(root + "/" + std::string(mainFile),
                                  root + "/config/tab_styles.xml",
                                  root + "/" + std::string(magicFile));
    for (const std::string& page : lookups.pages)
        text += '\n' + page + wholeText(pages.loadStyleConfigInfoWithName(page));
    return text;
}

std::string paletteAnswers(std::int8_t style, DiagnosticsSink* sink) {
    const auto loader = YGPaletteLoad::initWithPaletteStyle(style, sink);
    std::string text = wholeText(loader);
    if (!loader)
        return text;
    for (const auto& [key, name] : loader->keyColorNames())
        text += '\n' + key + wholeText(loader->getCustomColor(key));
    for (const auto& [key, name] : loader->keyFontNames())
        text += '\n' + key + wholeText(loader->getCustomFont(key));
    return text;
}

/// Always draws the same number.
class FixedSource final : public RandomSource {
public:
    explicit FixedSource(std::uint32_t number) : number_(number) {}
    std::uint32_t uniform() override { return number_; }
    int legacy() override { return static_cast<int>(number_); }

private:
    std::uint32_t number_;
};

/// With each of the first addresses of an entry chosen in turn.
std::string serverAnswers(DiagnosticsSink* sink) {
    std::string text;
    for (std::uint32_t number = 0; number < 4; ++number) {
        FixedSource random(number);
        const auto loader =
            YGServerCfgLoader::initWithIsGray(false, number == 0 ? sink : nullptr, &random);
        forEachField(*loader, [&](std::string_view name, const auto& value) {
            if (name != "configPath")
                text += wholeText(value) + '\n';
        });
    }
    return text;
}

std::string settingsAnswers(const Lookups& lookups, DiagnosticsSink* sink) {
    const auto store = YGAppConfigManager::initWithFileName("app_config.xml", sink);
    std::string text;
    for (const std::string& item : lookups.items) {
        const std::size_t slash = item.find('/');
        text += item + '=' +
                wholeText(store->getItemText(item.substr(0, slash), item.substr(slash + 1))) + '\n';
    }
    return text;
}

std::string webPageAnswers(const Lookups& lookups, DiagnosticsSink* sink) {
    const auto table = YGWebPageUrlConfig::initWithFileName("web_page_urls.xml", sink);
    std::string text;
    for (const std::string& key : lookups.keys)
        text += key + '=' + table->getWebPageUrlByKey(key) + '\n';
    return text;
}

std::string requestUrlAnswers(DiagnosticsSink* sink) {
    return wholeText(YGHttpReqUrlMgr::init(sink)->urlModel());
}

}  // namespace

RootFiles filesIn(const std::string& folder) {
    RootFiles files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file())
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        files[std::filesystem::relative(entry.path(), folder).string()] = {
            std::istreambuf_iterator<char>(file), {}};
    }
    return files;
}

std::map<std::string, RootFiles> seedRoots(const std::string& folder) {
    static const std::map<std::string, std::vector<std::string_view>> filesOf{
        {"layout",
         {mainFile, softFile, "config/tab_styles.xml", magicFile,
          "base_optimize/reuse_panels.xml"}},
        {"events", {"config/events.xml"}},
        {"palette", {"storage/palette_white.xml", "storage/palette_black.xml", "images/a.png"}},
        {"servers", {"storage/skeleton_v1.xml"}},
        {"settings", {settingsFile}},
        {"web_pages", {webPageFile}},
        {"request_urls", {"storage/request_urls_json.txt"}}};
    std::map<std::string, RootFiles> roots;
    for (const auto& [name, bytes] : filesIn(folder)) {
        std::string_view rest = bytes;
        RootFiles root;
        for (const std::string_view file :
             filesOf.at(std::filesystem::path(folder).filename().string())) {
            const std::size_t end = rest.find("=====\n");
            root[std::string(file)] = rest.substr(0, end);
            rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 6);
        }
        if (std::ranges::all_of(root, [](const auto& file) {
                return file.first.ends_with(".png") || text::isValidUtf8(file.second);
            }))
            roots[name] = std::move(root);
    }
    return roots;
}

Lookups lookupsOf(const RootFiles& files) {
    Lookups lookups{pagesOf(files), {}, {}};
    std::set<std::string> items;
    const xml::Element settings = rootOf(files, settingsFile);
    for (const xml::Node& section : settings.children()) {
        for (const xml::Node& item : xml::Element(section).children()) {
            if (item.isElement())
                items.insert(std::string(section.name()) + '/' + std::string(item.name()));
        }
    }
    lookups.items.assign(items.begin(), items.end());
    std::set<std::string> keys;
    const xml::Element webPages = rootOf(files, webPageFile);
    for (const xml::Node& page : webPages.children())
        keys.emplace(xml::Element(page).attribute("key").value_or(""));
    lookups.keys.assign(keys.begin(), keys.end());
    return lookups;
}

Root::Root(const RootFiles& files) {
    // Without the server nothing is downloaded, so that all findings come from this thread.
    static const std::regex server(R"("configServer": *"[^"]*",?)");
    for (const auto& [name, bytes] : files)
        folder_.write(name, name == "host.json" ? std::regex_replace(bytes, server, "") : bytes);
}

Answers Root::answers(const Lookups& lookups, DiagnosticsSink* sink) const {
    const auto opened = StandAloneHost::open(folder_.path());
    EXPECT_TRUE(opened) << opened.error;
    setHost(opened.host);
    Answers answers;
    answers["layout"] = layoutAnswers(folder_.path(), lookups, sink);
    answers["events"] =
        wholeText(YGEventLoader::initWithEventConfigPath(folder_.at("config/events.xml"), sink));
    answers["light palette"] = paletteAnswers(0, sink);
    answers["dark palette"] = paletteAnswers(1, sink);
    answers["servers"] = serverAnswers(sink);
    answers["settings"] = settingsAnswers(lookups, sink);
    answers["web pages"] = webPageAnswers(lookups, sink);
    answers["request urls"] = requestUrlAnswers(sink);
    setHost(nullptr);
    return answers;
}

std::string Root::nameOf(const std::string& file) const {
    const std::string above = folder_.path() + "/";
    return file.starts_with(above) ? file.substr(above.size()) : file;
}

}  // namespace yg::testing
