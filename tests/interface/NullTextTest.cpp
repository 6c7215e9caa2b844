// SPDX-License-Identifier: MIT
//
// Every operation of the public headers with a null pointer for each of its texts.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/graphics/Font.h"
#include "YGConfigManager/graphics/Image.h"
#include "YGConfigManager/host/JsonModel.h"
#include "YGConfigManager/host/JsonValue.h"
#include "YGConfigManager/host/NotificationCenter.h"
#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/host/YGFrameComFun.h"
#include "YGConfigManager/inspection/Explanation.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/servers/AddressShares.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGReadonlyAppConfigManager.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"
#include "YGConfigManager/xml/Document.h"
#include "YGConfigManager/xml/Query.h"

#include "settings/SettingsFixture.h"

namespace yg {
namespace {

/// Known only when the program runs.
const char* volatile nullText = nullptr;

/// Calls each setter with a null pointer and expects its getter to answer an absent text.
template <class Record, class... Pairs>
void expectAbsentAfterNull(Record&& record, Pairs... pairs) {
    const auto check = [&](auto setter, auto getter) {
        (record.*setter)("before");
        EXPECT_TRUE((record.*getter)());
        (record.*setter)(nullText);
        EXPECT_FALSE((record.*getter)());
    };
    (std::apply(check, pairs), ...);
}

TEST(NullText, InANodeIsAnEmptyText) {
    EXPECT_FALSE(xml::Document::parseFile(nullText));
    EXPECT_FALSE(xml::Document::parseBytes(nullText));
    EXPECT_FALSE(xml::Document::parseText(nullText));
    EXPECT_FALSE(xml::Document::canBeRead(nullText));
    EXPECT_FALSE(xml::Query(nullText));
    EXPECT_FALSE(xml::Element::create(nullText));
    const xml::Document document = xml::Document::parseText("<a k='v'>text</a>").document;
    xml::Element root = document.root();
    EXPECT_TRUE(document.query(nullText).empty());
    EXPECT_TRUE(root.query(nullText).empty());
    EXPECT_FALSE(root.attribute(nullText));
    EXPECT_FALSE(root.attributePlace(nullText));
    EXPECT_FALSE(root.rename(nullText));
    EXPECT_FALSE(root.setAttribute(nullText, nullText));
    EXPECT_TRUE(root.setAttribute("k", nullText));
    EXPECT_EQ(root.attribute("k"), "");
    EXPECT_TRUE(root.setContent(nullText));
    EXPECT_EQ(root.serialise(), "<a k=\"\"></a>");
}

TEST(NullText, InAMapIsTheEmptyKey) {
    RecordMap<int> map;
    EXPECT_EQ(map.find(nullText), nullptr);
    EXPECT_FALSE(map.contains(nullText));
    EXPECT_FALSE(map.set(nullText, 1));
    EXPECT_TRUE(map.set("", 2));
    EXPECT_EQ(*map.find(nullText), 2);
}

TEST(NullText, InJsonIsAnEmptyText) {
    EXPECT_FALSE(JsonValue::parse(nullText));
    EXPECT_EQ(modelWithJSON<YGHttpUrlConfigModel>(nullText), nullptr);
    EXPECT_EQ(YGHttpReqUrlModel::modelWithJSON(nullText), nullptr);
    std::string out;
    EXPECT_TRUE(appendJsonText(out, nullText));
    EXPECT_EQ(out, "\"\"");
}

TEST(NullText, AsARootIsAnEmptyText) {
    EXPECT_FALSE(StandAloneHost::open(nullText));
    EXPECT_NE(StandAloneHost::openOrDefaults(nullText), nullptr);
    StandAloneHost host(nullText);
    host.overrideUserRight("l2");
    host.overrideUserRight(nullText);
    EXPECT_FALSE(host.getUserRightDescription());
}

TEST(NullText, IsObservedAsTheEmptyName) {
    NotificationCenter center;
    int calls = 0;
    const NotificationCenter::Token token =
        center.addObserver(nullText, nullptr, [&](const Notification&) { ++calls; });
    center.post(nullText, nullptr);
    center.post("", nullptr);
    center.post("other", nullptr);
    EXPECT_EQ(calls, 2);
}

TEST(NullText, IsNoFontAndNoImage) {
    EXPECT_FALSE(Font::named(nullText, 10));
    EXPECT_FALSE(Image::fromFile(nullText));
    EXPECT_FALSE(Image::fromBytes(nullText));
    const Font font = YGPaletteLoad::fontWithName(nullText, 10);
    EXPECT_EQ(font.widthOf(nullText), 0);
    EXPECT_EQ(YGPaletteLoad::fixFontWithFont(font, nullText, 100).pointSize(), 10);
}

TEST(NullText, InARecordIsAnAbsentText) {
    expectAbsentAfterNull(
        ElementConfigInfo(),
        std::pair(&ElementConfigInfo::setElementName, &ElementConfigInfo::elementName),
        std::pair(&ElementConfigInfo::setElementParam, &ElementConfigInfo::elementParam),
        std::pair(&ElementConfigInfo::setElementProperty, &ElementConfigInfo::elementProperty),
        std::pair(&ElementConfigInfo::setElementUuid, &ElementConfigInfo::elementUuid),
        std::pair(&ElementConfigInfo::setElementEvent, &ElementConfigInfo::elementEvent));
    expectAbsentAfterNull(
        PanelConfigInfo(), std::pair(&PanelConfigInfo::setPanelName, &PanelConfigInfo::panelName),
        std::pair(&PanelConfigInfo::setSwitchExpandPanelName,
                  &PanelConfigInfo::switchExpandPanelName),
        std::pair(&PanelConfigInfo::setFoldPosition, &PanelConfigInfo::foldPosition),
        std::pair(&PanelConfigInfo::setMagicPanelsName, &PanelConfigInfo::magicPanelsName),
        std::pair(&PanelConfigInfo::setDisplayBorders, &PanelConfigInfo::displayBorders),
        std::pair(&PanelConfigInfo::setExcuteCommandInfo, &PanelConfigInfo::excuteCommandInfo));
    expectAbsentAfterNull(StyleConfigInfo(),
                          std::pair(&StyleConfigInfo::setStyleName, &StyleConfigInfo::styleName),
                          std::pair(&StyleConfigInfo::setStyleFucus, &StyleConfigInfo::styleFucus));
    expectAbsentAfterNull(
        YGCommandData(), std::pair(&YGCommandData::setCommandName, &YGCommandData::commandName),
        std::pair(&YGCommandData::setChangeStyleName, &YGCommandData::changeStyleName),
        std::pair(&YGCommandData::setDispatchParam, &YGCommandData::dispatchParam),
        std::pair(&YGCommandData::setAddtionData, &YGCommandData::addtionData));
    expectAbsentAfterNull(
        YGEventData(), std::pair(&YGEventData::setEventName, &YGEventData::eventName),
        std::pair(&YGEventData::setCommand, &YGEventData::command),
        std::pair(&YGEventData::setChangeStyleName, &YGEventData::changeStyleName),
        std::pair(&YGEventData::setDispatchParam, &YGEventData::dispatchParam),
        std::pair(&YGEventData::setAddtionData, &YGEventData::addtionData));
    expectAbsentAfterNull(YGServerAddrTag(),
                          std::pair(&YGServerAddrTag::setServerName, &YGServerAddrTag::serverName),
                          std::pair(&YGServerAddrTag::setIpAddr, &YGServerAddrTag::ipAddr));
    expectAbsentAfterNull(
        YGServerAddrListTag(),
        std::pair(&YGServerAddrListTag::setServerDescription,
                  &YGServerAddrListTag::serverDescription),
        std::pair(&YGServerAddrListTag::setGlooxDomain, &YGServerAddrListTag::glooxDomain));
    expectAbsentAfterNull(
        YGHttpUrlConfigModel(),
        std::pair(&YGHttpUrlConfigModel::setUrlKey, &YGHttpUrlConfigModel::urlKey),
        std::pair(&YGHttpUrlConfigModel::setUrlValue, &YGHttpUrlConfigModel::urlValue));
    expectAbsentAfterNull(YGHttpReqUrlModel(),
                          std::pair(&YGHttpReqUrlModel::setMd5Value, &YGHttpReqUrlModel::md5Value));
}

TEST(NullText, MakesARecordWithoutTheText) {
    const auto command = YGCommandData::initWithCommandInfo(nullText, nullText, nullText, nullText);
    EXPECT_FALSE(command->commandName() || command->changeStyleName() || command->dispatchParam() ||
                 command->addtionData());
    const auto event =
        YGEventData::initWithEventInfo(nullText, nullText, nullText, nullText, nullText);
    EXPECT_FALSE(event->eventName() || event->command() || event->changeStyleName() ||
                 event->dispatchParam() || event->addtionData());
    const auto server = YGServerAddrTag::initWithServerAddrInfo(nullText, nullText, 1, 2);
    EXPECT_FALSE(server->serverName() || server->ipAddr());
}

class NullTextOfALoader : public testing::StorageTest {};

TEST_F(NullTextOfALoader, IsNoQuestionToTheHost) {
    EXPECT_FALSE(YGFrameComFun::getStorageFilePath(1, nullText, nullText, false));
    EXPECT_FALSE(YGFrameComFun::getSoftOptimizeConfigFilePath(0, nullText));
    EXPECT_FALSE(YGFrameComFun::getBaseOptimizeConfigFilePath(0, nullText));
    EXPECT_EQ(YGFrameComFun::getMappingDicForKey(nullText), nullptr);
}

TEST_F(NullTextOfALoader, IsNoStyle) {
    YGStyleConfigLoad loader;
    EXPECT_EQ(loader.initWithStyleConfigPath(nullText, nullText, nullText), &loader);
    EXPECT_EQ(loader.styleInfos(), nullptr);
    EXPECT_EQ(loader.loadStyleConfigInfoWithName(nullText), nullptr);
    EXPECT_EQ(loader.loadConfig(nullText, true), nullptr);
    EXPECT_FALSE(loader.getRootElementForFile(nullText));
    EXPECT_FALSE(loader.loadStyleConfigWithBasePath(nullText, nullText));
    EXPECT_TRUE(loader.loadReusePanel(nullText)->empty());
    EXPECT_TRUE(loader.loadMagicPanel(nullText)->empty());
    EXPECT_FALSE(loader.loadMagicPanelsConfigWithMagicPath(nullText, nullText));
    EXPECT_FALSE(loader.createXMLElementWithStyleName(nullText));
    loader.setDefaultStyleName("before");
    loader.setDefaultStyleName(nullText);
    EXPECT_FALSE(loader.defaultStyleName());
    const xml::Element root =
        xml::Document::parseText("<panel><panel name='a'/></panel>").document.root();
    loader.parsePaneOrElement(root, nullptr, nullptr, nullptr, nullText, nullText);
    EXPECT_NE(loader.parsePaneInfo(root, nullText, nullText), nullptr);
    EXPECT_FALSE(YGStyleConfigLoad::isTureForName(nullText, root));
    EXPECT_FALSE(YGStyleConfigLoad::getWildCardKeyWithValue(nullText));
    EXPECT_FALSE(YGStyleConfigLoad::searchNodeWithNodeName(nullText, "a", root));
    EXPECT_FALSE(YGStyleConfigLoad::searchNodeWithNodeName("panel", nullText, root));
    std::vector<xml::Element> found;
    YGStyleConfigLoad::recursiveSearchNodeWithNodeName(nullText, root, found);
    EXPECT_TRUE(found.empty());
}

TEST_F(NullTextOfALoader, IsNoEventNoColourAndNoServer) {
    const auto events = YGEventLoader::initWithEventConfigPath(nullText);
    EXPECT_EQ(events->commandByName(nullText), nullptr);
    EXPECT_EQ(events->eventByName(nullText, nullText), nullptr);
    put("palette_white.xml", "<palette/>");
    host->baseOptimizeFolder = folder.path();
    host->softOptimizeFolder = folder.path();
    const auto palette = YGPaletteLoad::initWithPaletteStyle(0);
    ASSERT_NE(palette, nullptr);
    EXPECT_EQ(palette->getCustomColor(nullText), palette->getCustomColor(std::nullopt));
    EXPECT_EQ(palette->getCustomFont(nullText).pointSize(), 12);
    EXPECT_FALSE(palette->getCustomImage(nullText));
    EXPECT_FALSE(palette->getImageByScale(nullText, 0, 1));
    const Explainer explainer(nullText);
    EXPECT_EQ(explainer.style(nullText).substitute, "null");
    EXPECT_EQ(explainer.panel(nullText, nullText).substitute, "null");
    EXPECT_EQ(explainer.element(nullText, nullText).substitute, "null");
    EXPECT_EQ(explainer.event(nullText, nullText).substitute, "null");
    EXPECT_EQ(explainer.command(nullText).substitute, "null");
    EXPECT_EQ(explainer.color(nullText, 0).substitute, "red");
    EXPECT_EQ(explainer.font(nullText, 0).substitute, "the system font");
    EXPECT_EQ(explainer.image(nullText, 0).substitute, "null");
    EXPECT_EQ(explainer.server(1, nullText, false).substitute, "null");
    EXPECT_EQ(explainer.setting(nullText, nullText, nullText).substitute, "null");
    EXPECT_EQ(explainer.webPage(nullText, nullText).substitute, "null");
    EXPECT_EQ(explainer.requestUrl(nullText).substitute, "null");
    EXPECT_TRUE(addressShares(nullText).empty());
    EXPECT_EQ(withoutAddress(nullText, nullText), "");
    const auto servers = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_FALSE(servers->reloadServerConfigWithData(nullText, nullText));
    EXPECT_TRUE(servers->reloadServerConfigWithData("<servers/>", nullText));
    EXPECT_EQ(servers->configMd5(), "");
    servers->setConfigMd5(nullText);
    EXPECT_FALSE(servers->configMd5());
}

TEST_F(NullTextOfALoader, IsNoSettingAndNoAddress) {
    EXPECT_EQ(YGAppConfigManager::initWithFileName(nullText), nullptr);
    EXPECT_EQ(YGReadonlyAppConfigManager::initWithFileName(nullText), nullptr);
    EXPECT_EQ(YGWebPageUrlConfig::initWithFileName(nullText), nullptr);
    EXPECT_FALSE(YGAppConfigManager::getFilePath(nullText, true));
    EXPECT_FALSE(YGWebPageUrlConfig::getFilePath(nullText, true));
    const auto settings = YGAppConfigManager::initWithFileName("settings.xml");
    EXPECT_FALSE(settings->setConfigItem(nullText, "item", "", "text"));
    EXPECT_FALSE(settings->setConfigItem("section", nullText, "", "text"));
    EXPECT_FALSE(settings->setConfigItem("section", "item", "", nullText));
    EXPECT_TRUE(settings->setConfigItem("section", "item", nullText, "text"));
    EXPECT_FALSE(settings->getItemText(nullText, "item"));
    EXPECT_FALSE(settings->getItemText("section", nullText));
    settings->saveAppConfigFile(nullptr, nullText);
    EXPECT_FALSE(YGReadonlyAppConfigManager::initWithFileName("settings.xml")
                     ->setConfigItem(nullText, nullText, nullText, nullText));
    const auto pages = YGWebPageUrlConfig::initWithFileName("pages.xml");
    EXPECT_EQ(pages->getWebPageUrlByKey(nullText), "about:blank");
    EXPECT_FALSE(pages->replaceDataFromServer(nullText));
    EXPECT_FALSE(YGWebPageUrlConfig::replaceSubstring(nullText, "a", "b"));
    EXPECT_EQ(YGWebPageUrlConfig::replaceSubstring("aba", nullText, "b"),
              YGWebPageUrlConfig::replaceSubstring("aba", "", "b"));
    EXPECT_EQ(YGWebPageUrlConfig::replaceSubstring("aba", "a", nullText), "b");
    const testing::KeptRequests transport;
    const auto urls = transport.make();
    EXPECT_FALSE(urls->httpReqUrlStringWithUrlKey(nullText));
    urls->requestUrl(nullText, nullptr);
    EXPECT_THAT(transport.urls(), ::testing::ElementsAre(""));
}

}  // namespace
}  // namespace yg
