// SPDX-License-Identifier: MIT
//
// The server configuration of the terminal: chooses the file by the user's right level, reads it
// into one group of servers for each server type, applies and saves what the login server delivers.
//
// One thread at a time uses a loader: nobody may read its groups while another thread reloads.
// Nothing is thrown: a file that cannot be read is logged as "load style config fail:" with the
// reason and leaves everything as it was; so it is when memory does not suffice. Every load chooses
// the servers' addresses again.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/export.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/servers/RandomSource.h"
#include "YGConfigManager/servers/ServerOffer.h"
#include "YGConfigManager/servers/YGServerAddrListTag.h"
#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/text/OwnedText.h"
#include "YGConfigManager/xml/Document.h"

namespace yg {

class YG_EXPORT YGServerCfgLoader {
public:
    /// The servers of one type.
    using Group = std::shared_ptr<YGServerAddrListTag>;

    /// A loader with its file loaded; `isGray` says whether the user belongs to the grey-release
    /// group. Null when the host answers no path for the file, or without memory for a loader. When
    /// the file is missing, as with an empty path, or not XML the loader has no groups. Addresses
    /// are chosen by numbers from `random`, null for the system's; it must live as long as the
    /// loader.
    static std::shared_ptr<YGServerCfgLoader> initWithIsGray(bool isGray,
                                                             DiagnosticsSink* sink = nullptr,
                                                             RandomSource* random = nullptr);

    YGServerCfgLoader(const YGServerCfgLoader&) = delete;
    YGServerCfgLoader& operator=(const YGServerCfgLoader&) = delete;
    ~YGServerCfgLoader() = default;

    /// Makes `configPath` the path of the file for the user's right level as it is now and for
    /// `isGray`: "skeleton_v1.xml" for "free", also for no level, "skeleton_l2_v1.xml" for any
    /// other, with "_gray" before "_v1" for a grey-release user. Loads nothing.
    void initConfigFilePath(bool isGray);

    /// Loads the file at `configPath` again.
    void reloadConfig();

    /// Applies a configuration that was delivered as XML bytes: its groups replace all groups,
    /// `serverConfigMd5` becomes `configMd5` and the root's "md5", in the place of one that is
    /// there. Then saves it as the file for the right level as it is now; `configPath` stays.
    /// False, with nothing changed or written, when the bytes are absent, empty or not XML, when
    /// the file that they make could not be read again (the limits of xml::Document and 256 MiB
    /// hold for it), or when memory does not suffice. True once it is applied, also when it could
    /// not be saved: the finding `unsaved-file` says why.
    bool reloadServerConfigWithData(OptionalText data, OptionalText serverConfigMd5);

    /// Replaces all groups, and `configMd5` if the root has one, by those of a document. False,
    /// with nothing changed, for a document without a root element.
    bool loadServerCfg(const xml::Document& document);

    /// The group of a server type; null for a type that is never loaded and before a load.
    Group listTagWithServerType(std::uint64_t serverType) const;

    /// The servers of a type's group in the order of the document; empty when there is none. The
    /// list lives as long as the group.
    const ServerAddrList& serversOfType(std::uint64_t serverType) const;

    /// What the entries of each type's group offer, in their order. The file at `configPath` is
    /// read for it again, so that a delivery since counts only if it was saved there. A type
    /// without a group is missing, all are when the file cannot be read or memory does not suffice.
    std::map<std::uint64_t, std::vector<ServerOffer>> offers() const;

    /// Chooses the file for the right level as it is now and loads it.
    void reloadServerConfigWhenRightChanged();

    /// Loads the file of the "free" right level, whatever the user's is; it becomes `configPath`.
    void reloadFreeRightServerConfig();

    /// The path that was chosen last; absent when the host had none.
    const std::optional<std::string>& configPath() const { return configPath_; }

    /// "md5" of the last document that had one; absent before.
    const std::optional<std::string>& configMd5() const { return configMd5_; }
    void setConfigMd5(OwnedText md5) { configMd5_ = std::move(md5); }

    // The groups; null before a load, all replaced by it. A group that the document does not have
    // is there without description, domain and list.

    /// Type 1.
    const Group& appServerAddrListTag() const { return appServerAddrListTag_; }
    void setAppServerAddrListTag(Group group) { appServerAddrListTag_ = std::move(group); }

    /// Type 3.
    const Group& hisServerAddrListTag() const { return hisServerAddrListTag_; }
    void setHisServerAddrListTag(Group group) { hisServerAddrListTag_ = std::move(group); }

    /// Type 4.
    const Group& mineServerAddrListTag() const { return mineServerAddrListTag_; }
    void setMineServerAddrListTag(Group group) { mineServerAddrListTag_ = std::move(group); }

    /// Type 2.
    const Group& gssServerAddrListTag() const { return gssServerAddrListTag_; }
    void setGssServerAddrListTag(Group group) { gssServerAddrListTag_ = std::move(group); }

    /// Type 5.
    const Group& glooxMsgServerAddrListTag() const { return glooxMsgServerAddrListTag_; }
    void setGlooxMsgServerAddrListTag(Group group) {
        glooxMsgServerAddrListTag_ = std::move(group);
    }

    /// Type 7.
    const Group& superL2ServerAddrListTag() const { return superL2ServerAddrListTag_; }
    void setSuperL2ServerAddrListTag(Group group) { superL2ServerAddrListTag_ = std::move(group); }

    /// Type 8.
    const Group& domeFutureServerAddrListTag() const { return domeFutureServerAddrListTag_; }
    void setDomeFutureServerAddrListTag(Group group) {
        domeFutureServerAddrListTag_ = std::move(group);
    }

private:
    struct GroupRow;
    static const GroupRow groupRows[];

    YGServerCfgLoader(bool isGray, DiagnosticsSink* sink, RandomSource& random)
        : isGrayScaleUser_(isGray), sink_(sink), random_(random) {}

    void loadFile();
    void load(const xml::Element& root);
    bool deliver(std::optional<std::string_view> data, std::string_view serverConfigMd5);
    void read(const xml::Element& root);
    void take(YGServerCfgLoader&& loaded) noexcept;

    std::optional<std::string> configPath_;
    bool isGrayScaleUser_;
    std::optional<std::string> configMd5_;
    Group appServerAddrListTag_;
    Group hisServerAddrListTag_;
    Group mineServerAddrListTag_;
    Group gssServerAddrListTag_;
    Group glooxMsgServerAddrListTag_;
    Group superL2ServerAddrListTag_;
    Group domeFutureServerAddrListTag_;
    DiagnosticsSink* sink_;
    RandomSource& random_;
};

template <>
struct Description<YGServerCfgLoader> {
    using Loader = YGServerCfgLoader;
    static constexpr std::tuple fields{
        Field{"configPath", &Loader::configPath},
        Field{"configMd5", &Loader::configMd5, &Loader::setConfigMd5,
              AttributeInfo{.name = "md5",
                            .sentence = "The digest of a delivered configuration. It is written "
                                        "when a delivery is saved."}},
        Field{"appServerAddrListTag", &Loader::appServerAddrListTag},
        Field{"hisServerAddrListTag", &Loader::hisServerAddrListTag},
        Field{"mineServerAddrListTag", &Loader::mineServerAddrListTag},
        Field{"gssServerAddrListTag", &Loader::gssServerAddrListTag},
        Field{"glooxMsgServerAddrListTag", &Loader::glooxMsgServerAddrListTag},
        Field{"superL2ServerAddrListTag", &Loader::superL2ServerAddrListTag},
        Field{"domeFutureServerAddrListTag", &Loader::domeFutureServerAddrListTag},
    };
};

}  // namespace yg
