// SPDX-License-Identifier: MIT
#include "YGConfigManager/servers/YGServerCfgLoader.h"

#include <array>
#include <cstddef>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/files/AtomicWrite.h"
#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/host/YGFrameComFun.h"
#include "YGConfigManager/servers/ServerAttributes.h"
#include "YGConfigManager/servers/ServerRules.h"
#include "YGConfigManager/xml/Query.h"

namespace yg {

namespace {

// The style files' words, and a part of the interface.
constexpr std::string_view loadName = "load style config";
constexpr std::string_view deliverName = "set style config";

std::string_view freeFileName(bool isGray) {
    return isGray ? "skeleton_gray_v1.xml" : "skeleton_v1.xml";
}

/// The file for the right level that the user has now.
std::string_view currentFileName(bool isGray) {
    const std::optional<std::string> right = YGFrameComFun::getUserRightDescription();
    if (!right || right->empty() || *right == "free")
        return freeFileName(isGray);
    return isGray ? "skeleton_l2_gray_v1.xml" : "skeleton_l2_v1.xml";
}

std::optional<std::string> storagePath(std::string_view fileName, bool isNeedWrite) {
    return YGFrameComFun::getStorageFilePath(1, std::nullopt, fileName, isNeedWrite);
}

}  // namespace

/// A server type with its group.
struct YGServerCfgLoader::GroupRow {
    std::uint64_t type;
    Group YGServerCfgLoader::*group;
};

/// One document, before it counts.
struct YGServerCfgLoader::Loaded {
    std::optional<std::string> md5;
    std::array<Group, 7> groups;
};

/// In the order in which the groups are built, and draw their random numbers.
constexpr YGServerCfgLoader::GroupRow YGServerCfgLoader::groupRows[] = {
    {1, &YGServerCfgLoader::appServerAddrListTag_},
    {3, &YGServerCfgLoader::hisServerAddrListTag_},
    {4, &YGServerCfgLoader::mineServerAddrListTag_},
    {2, &YGServerCfgLoader::gssServerAddrListTag_},
    {5, &YGServerCfgLoader::glooxMsgServerAddrListTag_},
    {7, &YGServerCfgLoader::superL2ServerAddrListTag_},
    {8, &YGServerCfgLoader::domeFutureServerAddrListTag_},
};

YGServerCfgLoader::YGServerCfgLoader(bool isGray, DiagnosticsSink* sink)
    : isGrayScaleUser_(isGray), sink_(sink) {}

std::shared_ptr<YGServerCfgLoader> YGServerCfgLoader::initWithIsGray(bool isGray,
                                                                     DiagnosticsSink* sink) {
    auto loader = guarded(loadName, [&] {
        return std::shared_ptr<YGServerCfgLoader>(new YGServerCfgLoader(isGray, sink));
    });
    if (!loader)
        return nullptr;
    loader->initConfigFilePath(isGray);
    if (!loader->configPath_)
        return nullptr;
    loader->reloadConfig();
    return loader;
}

void YGServerCfgLoader::initConfigFilePath(bool isGray) {
    configPath_ = storagePath(currentFileName(isGray), false);
}

void YGServerCfgLoader::reloadConfig() {
    writeRuntimeLog("server config path:%@", configPath_);
    loadFile();
}

void YGServerCfgLoader::reloadServerConfigWhenRightChanged() {
    initConfigFilePath(isGrayScaleUser_);
    writeRuntimeLog("reload server config(%@)", configPath_);
    loadFile();
}

void YGServerCfgLoader::reloadFreeRightServerConfig() {
    configPath_ = storagePath(freeFileName(isGrayScaleUser_), false);
    if (configPath_ && !configPath_->empty())
        loadFile();
}

/// Loads the file at `configPath`; an absent or empty path is that of a missing file.
void YGServerCfgLoader::loadFile() {
    guarded(loadName, [this] {
        const Reporter reporter(sink_);
        const xml::ParseResult parsed =
            reporter.parseFile(configPath_ ? std::string_view(*configPath_) : "");
        if (!parsed) {
            writeRuntimeLog("load style config fail:%@", parsed.error);
            reporter.report(rules::unreadableFile, {}, {}, parsed.error);
            return;
        }
        take(read(parsed.document.root()));
    });
}

bool YGServerCfgLoader::reloadServerConfigWithData(OptionalText data,
                                                   OptionalText serverConfigMd5) {
    return guarded(deliverName, [&] { return deliver(data, *serverConfigMd5); });
}

bool YGServerCfgLoader::deliver(std::optional<std::string_view> data,
                                std::string_view serverConfigMd5) {
    const Reporter reporter(sink_);
    if (!data || data->empty()) {
        reporter.report(rules::unreadableDelivery, {});
        return false;
    }
    xml::ParseResult parsed =
        orOutOfMemory(xml::Document::parseBytes(*data, reporter.parseOptions()));
    if (!parsed) {
        writeRuntimeLog("set style config fail:%@", parsed.error);
        reporter.report(rules::unreadableDelivery, {}, {}, parsed.error);
        return false;
    }
    xml::Element root = parsed.document.root();
    if (const auto md5 = root.attribute("md5"))
        reporter.report(rules::replacedMd5, root, "md5", *md5);
    root.setAttribute("md5", serverConfigMd5);
    Loaded loaded = read(root);
    const std::string bytes = parsed.document.serialise(xml::Form::pretty);
    if (!xml::Document::canBeRead(bytes) || bytes.size() > files::largestFileRead) {
        constexpr std::string_view reason = "it could not be read again";
        writeRuntimeLog("set style config fail:%@", reason);
        reporter.report(rules::unreadableDelivery, {}, {}, reason);
        return false;
    }
    take(std::move(loaded));

    const std::string_view fileName = currentFileName(isGrayScaleUser_);
    const auto path = storagePath(fileName, true);
    writeRuntimeLog("(Login Server)reloadServerConfigWithData(%@)", path);
    // What was delivered counts from now on, whether or not the next start will find it.
    const files::FileWriting writing =
        path && !path->empty() ? files::writeFileAtomically(*path, bytes) : files::FileWriting{};
    guarded(deliverName, [&] {
        if (!writing)
            reporter.unsaved(fileName,
                             path && !path->empty()
                                 ? writing.error
                                 : files::describeFailure(fileName, rules::noPathToWrite));
    });
    return true;
}

bool YGServerCfgLoader::loadServerCfg(const xml::Document& document) {
    return guarded(loadName, [&] {
        const xml::Element root = document.root();
        if (!root)
            return false;
        take(read(root));
        return true;
    });
}

/// What a document loads, from a root element.
YGServerCfgLoader::Loaded YGServerCfgLoader::read(const xml::Element& root) const {
    Loaded loaded;
    YGServerCfgLoader attributes(isGrayScaleUser_, nullptr);
    readAttributes(root, applicationAttributes, attributes);
    loaded.md5 = std::move(attributes.configMd5_);
    reportDocument(root);
    for (std::size_t i = 0; i < loaded.groups.size(); ++i)
        loaded.groups[i] = std::make_shared<YGServerAddrListTag>(
            YGServerAddrListTag::read(groupRows[i].type, root, sink_));
    return loaded;
}

void YGServerCfgLoader::take(Loaded loaded) noexcept {
    if (loaded.md5)
        configMd5_ = std::move(loaded.md5);
    for (std::size_t i = 0; i < loaded.groups.size(); ++i)
        this->*groupRows[i].group = std::move(loaded.groups[i]);
}

YGServerCfgLoader::Group YGServerCfgLoader::listTagWithServerType(std::uint64_t serverType) const {
    for (const GroupRow& row : groupRows) {
        if (row.type == serverType)
            return this->*row.group;
    }
    return nullptr;
}

/// What the queries for the groups do not find.
void YGServerCfgLoader::reportDocument(const xml::Element& root) const {
    const Reporter reporter(sink_);
    if (!reporter)
        return;
    const xml::Query neverLoaded(
        "/application/server[not(@type=1 or @type=2 or @type=3 or @type=4 or @type=5 or @type=7 or "
        "@type=8)]");
    reportAttributes(root, applicationAttributes, *sink_);
    if (root.name() != "application") {
        reporter.report(rules::serverRootName, root, {}, root.name());
        return;
    }
    reporter.used(root);
    for (const xml::Node& child : root.children()) {
        if (!child.isElement())
            reporter.stray(child);
        else if (child.name() != "server")
            reporter.report(rules::unknownElement, child, {}, child.name());
    }
    for (const xml::Node& node : root.query(neverLoaded)) {
        const xml::Element group(node);
        if (const auto type = group.attribute("type"))
            reporter.report(rules::serverTypeNeverLoaded, group, "type", *type);
        else
            reporter.report(rules::serverGroupWithoutType, group);
    }
}

}  // namespace yg
