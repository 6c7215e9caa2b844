// SPDX-License-Identifier: MIT
#include "crash/Savers.h"

#include <cstdint>
#include <memory>
#include <optional>

#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/net/HttpGet.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/settings/Transport.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"
#include "YGConfigManager/xml/Document.h"

namespace yg::testing {

namespace {

Save setItems() {
    const auto store = YGAppConfigManager::initWithFileName("settings.xml");
    return [store](long number) {
        return store->setConfigItem("counting", "value", std::nullopt, textOf(number));
    };
}

Save saveSettings() {
    const auto store = YGAppConfigManager::initWithFileName("settings.xml");
    return [store](long number) {
        const auto made =
            xml::Document::parseText("<config><value>" + textOf(number) + "</value></config>");
        store->saveAppConfigFile(&made.document, "settings.xml");
        return true;
    };
}

Save replaceWebPages() {
    const auto table = YGWebPageUrlConfig::initWithFileName("web_page_urls.xml");
    return [table](long number) {
        return table->replaceDataFromServer("<urls><url key='a'>" + textOf(number) +
                                            "</url></urls>");
    };
}

Save downloadUrls() {
    const auto body = std::make_shared<std::string>();
    const RequestUrlsOver transport{
        [body](const std::string&, const net::GetCompletion& completion) {
            completion(*body, std::nullopt, std::nullopt);
        }};
    return [manager = transport.make(), body](long number) {
        *body = R"({"urlConfigList":[],"md5Value":")" + textOf(number) + R"("})";
        manager->updateHttpReqUrls();
        return true;
    };
}

Save deliverServers() {
    const std::shared_ptr<YGServerCfgLoader> loader = YGServerCfgLoader::initWithIsGray(false);
    return [loader](long number) {
        return loader->reloadServerConfigWithData(
            "<application><a text='" + textOf(number) + "'/></application>", "digest");
    };
}

class QuietHost final : public Host {
public:
    explicit QuietHost(const std::string& root) : host_(root) {}

    std::optional<std::string> getStorageFilePath(std::int64_t area,
                                                  std::optional<std::string_view> folder,
                                                  std::optional<std::string_view> name,
                                                  bool isNeedWrite) override {
        return host_.getStorageFilePath(area, folder, name, isNeedWrite);
    }
    std::optional<std::string> getUserRightDescription() override { return std::nullopt; }
    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view) override {
        return std::nullopt;
    }
    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view) override {
        return std::nullopt;
    }
    std::shared_ptr<const MappingDic> getMappingDicForKey(std::string_view) override {
        return nullptr;
    }
    std::optional<std::string> getDefualtFolderPath(std::int64_t) override { return std::nullopt; }
    std::optional<std::string> configServer() override { return "127.0.0.1:8080"; }
    void writeLog(LogChannel, std::string_view) override {}

private:
    StandAloneHost host_;
};

}  // namespace

std::shared_ptr<Host> quietHost(const std::string& root) {
    return std::make_shared<QuietHost>(root);
}

const std::vector<Saver>& savers() {
    static const std::vector<Saver> all = {
        {"setConfigItem", "settings.xml", false, setItems},
        {"saveAppConfigFile", "settings.xml", false, saveSettings},
        {"replaceDataFromServer", "web_page_urls.xml", true, replaceWebPages},
        {"updateHttpReqUrls", "request_urls_json.txt", false, downloadUrls},
        {"reloadServerConfigWithData", "skeleton_v1.xml", false, deliverServers},
    };
    return all;
}

}  // namespace yg::testing
