// SPDX-License-Identifier: MIT
#include "YGConfigManager/servers/YGServerCfgLoader.h"

#include <array>
#include <cstddef>
#include <iterator>

#include "YGConfigManager/files/AtomicWrite.h"
#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/host/YGFrameComFun.h"
#include "YGConfigManager/records/Entry.h"
#include "YGConfigManager/servers/ServerGroup.h"

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

std::shared_ptr<YGServerCfgLoader> YGServerCfgLoader::initWithIsGray(bool isGray,
                                                                     DiagnosticsSink* sink,
                                                                     RandomSource* random) {
    auto loader = guarded(loadName, [&] {
        return std::shared_ptr<YGServerCfgLoader>(
            new YGServerCfgLoader(isGray, sink, random ? *random : systemRandomSource()));
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
        const std::string_view path = configPath_ ? std::string_view(*configPath_) : "";
        const xml::ParseResult parsed = reporter.parseFile(path);
        if (parsed)
            return load(parsed.document.root());
        writeRuntimeError("load style config fail:%@", parsed.error);
        reporter.unreadable("unreadable-file"_rule, path, parsed);
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
        reporter.report("unreadable-delivery"_rule);
        return false;
    }
    xml::ParseResult parsed = reporter.parseBytes(*data);
    if (!parsed) {
        writeRuntimeError("set style config fail:%@", parsed.error);
        reporter.unreadable("unreadable-delivery"_rule, {}, parsed);
        return false;
    }
    xml::Element root = parsed.document.root();
    reading(reporter, root, [](Entry& application) {
        application.reportIfThere("replaced-md5"_rule, "md5");
        application.leave();
    });
    root.setAttribute("md5", serverConfigMd5);
    YGServerCfgLoader loaded(isGrayScaleUser_, sink_, random_);
    loaded.read(root);
    const std::string bytes = parsed.document.serialise(xml::Form::pretty);
    if (!xml::Document::canBeRead(bytes) || bytes.size() > files::largestFileRead) {
        constexpr std::string_view reason = "it could not be read again";
        writeRuntimeError("set style config fail:%@", reason);
        reporter.report("unreadable-delivery"_rule, {}, reason);
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
            reporter.unsaved(fileName, path && !path->empty()
                                           ? writing.error
                                           : files::describeFailure(fileName, noPathToWrite));
    });
    return true;
}

bool YGServerCfgLoader::loadServerCfg(const xml::Document& document) {
    return guarded(loadName, [&] {
        const xml::Element root = document.root();
        if (root)
            load(root);
        return static_cast<bool>(root);
    });
}

void YGServerCfgLoader::load(const xml::Element& root) {
    YGServerCfgLoader loaded(isGrayScaleUser_, sink_, random_);
    loaded.read(root);
    take(std::move(loaded));
}

/// Reads a whole document, from its root element, into this loader, which is new.
void YGServerCfgLoader::read(const xml::Element& root) {
    const Reporter reporter(sink_);
    std::array<std::vector<xml::Node>, std::size(groupRows)> found;
    reading(reporter, root, [&](Entry& application) {
        application.read(*this);
        if (application.name() != "application")
            return application.drop("server-root-name"_rule, {}, application.name());
        application.forEachElement([&](Entry& child) {
            if (child.name() != "server")
                return child.drop("unknown-element"_rule, {}, child.name());
            const auto type = child.attribute("type");
            if (!type)
                return child.drop("server-group-without-type"_rule);
            for (std::size_t row = 0; row < found.size(); ++row) {
                if (isServerType(*type, groupRows[row].type)) {
                    found[row].push_back(child.element());
                    return child.leave();
                }
            }
            child.drop("server-type-never-loaded"_rule, "type", *type);
        });
    });
    for (std::size_t row = 0; row < found.size(); ++row) {
        auto group = std::make_shared<YGServerAddrListTag>();
        group->setServerType(groupRows[row].type);
        readServerGroup(found[row], *group, reporter, random_);
        this->*groupRows[row].group = std::move(group);
    }
}

void YGServerCfgLoader::take(YGServerCfgLoader&& loaded) noexcept {
    if (loaded.configMd5_)
        configMd5_ = std::move(loaded.configMd5_);
    for (const GroupRow& row : groupRows)
        this->*row.group = std::move(loaded.*row.group);
}

YGServerCfgLoader::Group YGServerCfgLoader::listTagWithServerType(std::uint64_t serverType) const {
    for (const GroupRow& row : groupRows) {
        if (row.type == serverType)
            return this->*row.group;
    }
    return nullptr;
}

const ServerAddrList& YGServerCfgLoader::serversOfType(std::uint64_t serverType) const {
    return YGServerAddrListTag::serversOf(listTagWithServerType(serverType).get());
}

std::map<std::uint64_t, std::vector<ServerOffer>> YGServerCfgLoader::offers() const {
    return guarded(loadName, [this] {
        const xml::ParseResult parsed =
            orOutOfMemory(xml::Document::parseFile(configPath_.value_or(""), {.positions = true}));
        std::map<std::uint64_t, std::vector<ServerOffer>> offers;
        for (const GroupRow& row : groupRows) {
            const std::vector<xml::Node> found = serverGroups(parsed.document.root(), row.type);
            if (!found.empty())
                offers.emplace(row.type, serverOffers(xml::Element(found.front())));
        }
        return offers;
    });
}

}  // namespace yg
