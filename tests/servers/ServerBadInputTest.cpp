// SPDX-License-Identifier: MIT
//
// Server files and deliveries that are broken, huge or cannot be saved.
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/servers/YGServerCfgLoader.h"

#include "LargeInput.h"
#include "diagnostics/RecordingSink.h"
#include "files/TemporaryFolder.h"
#include "host/RecordingHost.h"
#include "servers/ServerText.h"

namespace yg {
namespace {

using files::contentOf;
using files::put;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using yg::testing::largeInput;
using yg::testing::RecordingSink;
using yg::testing::ScopedHost;
using yg::testing::serversOf;

constexpr std::string_view stored =
    "<application md5='stored'><server type='1' name='stored'>"
    "<e key='1' name='a' addrs='h:1'/></server></application>";

constexpr std::string_view delivered =
    "<application><server type='1' name='delivered'>"
    "<e key='2' name='b' addrs='h:2'/></server></application>";

class ServerBadInput : public ::testing::Test {
protected:
    ServerBadInput() {
        host->storageReadFolder = folder.path();
        host->storageWriteFolder = folder.path();
    }

    std::string path() const { return folder / "skeleton_v1.xml"; }

    std::shared_ptr<YGServerCfgLoader> load(std::string_view xml) {
        put(path(), xml);
        return YGServerCfgLoader::initWithIsGray(false);
    }

    /// The groups and the stored file are as before the delivery, and nothing is beside the file.
    void expectUntouched(const YGServerCfgLoader& loader) {
        EXPECT_EQ(loader.configMd5(), "stored");
        EXPECT_EQ(loader.appServerAddrListTag()->serverDescription(), "stored");
        expectStoredFileUntouched();
    }

    void expectStoredFileUntouched() {
        EXPECT_EQ(contentOf(path()), stored);
        EXPECT_THAT(folder.names(), ElementsAre("skeleton_v1.xml"));
    }

    /// The delivery counts, whether or not it could be saved.
    static void expectDelivered(const YGServerCfgLoader& loader) {
        EXPECT_EQ(loader.configMd5(), "digest");
        EXPECT_EQ(loader.appServerAddrListTag()->serverDescription(), "delivered");
        EXPECT_THAT(serversOf(*loader.appServerAddrListTag()), ElementsAre("2 b h:2"));
        EXPECT_EQ(loader.gssServerAddrListTag()->serverAddrList(), nullptr);
    }

    files::TemporaryFolder folder;
    ScopedHost<> host;
};

// ---- Files -----------------------------------------------------------------------------------

TEST_F(ServerBadInput, AFileCutAnywhereIsLogged) {
    for (std::size_t size = 0; size < stored.size(); size += 5) {
        host->clear();
        const auto loader = load(stored.substr(0, size));
        EXPECT_EQ(loader->appServerAddrListTag(), nullptr);
        EXPECT_THAT(host->runtimeLog(), ElementsAre("server config path:" + path(),
                                                    StartsWith("load style config fail:")));
    }
}

TEST_F(ServerBadInput, AFolderInPlaceOfTheFileIsLogged) {
    ASSERT_EQ(::mkdir(path().c_str(), 0700), 0);
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_EQ(loader->appServerAddrListTag(), nullptr);
    EXPECT_THAT(host->runtimeLog().back(), StartsWith("load style config fail:" + path() + ": "));
    // Nor can a delivery take its place.
    EXPECT_TRUE(loader->reloadServerConfigWithData(delivered, "digest"));
    expectDelivered(*loader);
    EXPECT_THAT(folder.names("skeleton_v1.xml"), IsEmpty());
}

TEST_F(ServerBadInput, AHugeFileIsRead) {
    std::string xml = "<application>";
    std::size_t entries = 0;
    const char* types[] = {"1", "2", "3", "4", "5", "7", "8"};
    for (const char* type : types) {
        xml += "<server type='" + std::string(type) + "'>";
        for (const std::size_t end = xml.size() + largeInput / 7; xml.size() < end; ++entries)
            xml += "<addr key='" + std::to_string(entries) +
                   "' name='server' addrs='40:192.0.2.1:9211;60:192.0.2.2:9211'/>\n";
        xml += "</server>";
    }
    const auto loader = load(xml + "</application>");
    std::size_t found = 0;
    for (const std::uint64_t type : yg::testing::loadedTypes)
        found += loader->listTagWithServerType(type)->serverAddrList()->size();
    EXPECT_EQ(found, entries);
}

// All groups are looked for in all of them.
TEST_F(ServerBadInput, AHugeNumberOfGroupsIsRead) {
    std::string xml = "<application>";
    while (xml.size() < largeInput * 2 / 5)
        xml += "<server type='9'/>\n<server type='1'/>\n";
    const auto loader = load(xml + "<server type='8' name='last'/></application>");
    EXPECT_EQ(loader->domeFutureServerAddrListTag()->serverDescription(), "last");
    EXPECT_THAT(serversOf(*loader->appServerAddrListTag()), IsEmpty());
}

// Every name draws from all addresses: the work is their sum, not their product.
TEST_F(ServerBadInput, AnEntryOfManyNamesAndManyAddressesIsRead) {
    std::string names = "a";
    std::string addrs = "h:1";
    for (int i = 0; i < 200'000; ++i) {
        names += ";a";
        addrs += ";h:1";
    }
    const auto loader = load("<application><server type='1'><e key='1' name='" + names +
                             "' addrs='" + addrs + "'/></server></application>");
    EXPECT_EQ(loader->appServerAddrListTag()->serverAddrList()->size(), 200'001u);
}

constexpr const char* groupLimitLog =
    "load style config fail:names add more than 250000 servers or 16777216 bytes to a group";

// Of one megabyte of separators each would otherwise become a record of some hundred bytes.
TEST_F(ServerBadInput, AGroupEndsAtItsLimit) {
    constexpr std::size_t most = 250'000;
    const auto parsed = xml::Document::parseText(
        "<application><server type='1'><e key='1' name='" + std::string(most - 1, ';') +
        "' addrs='h:1'/><e key='2' name='a;b;c' addrs='h:1'/><e key='3' name='d;e' addrs='h:1'/>"
        "<e key='4' name='f' addrs='h:1'/></server></application>");
    RecordingSink sink;
    const auto group = YGServerAddrListTag::initWithServerType(1, parsed.document.root(), &sink);
    EXPECT_THAT(sink.rules(),
                ElementsAre("server-without-name", "too-many-servers", "too-many-servers"));
    EXPECT_EQ(sink.found[1].value, ";c");
    EXPECT_EQ(sink.found[2].value, ";e");
    // What each entry names first is always there.
    ASSERT_EQ(group->serverAddrList()->size(), most + 4);
    const auto fromTheEnd = [&](std::size_t back) {
        return yg::testing::textOf(*(*group->serverAddrList())[most + 4 - back]);
    };
    EXPECT_EQ(fromTheEnd(4), "2 a h:1");
    EXPECT_EQ(fromTheEnd(3), "2 b h:1");
    EXPECT_EQ(fromTheEnd(2), "3 d h:1");
    EXPECT_EQ(fromTheEnd(1), "4 f h:1");
    EXPECT_THAT(host->runtimeLog(), ElementsAre(groupLimitLog));
}

// Each server holds the text of its address, so that names and the length of addresses multiply.
TEST_F(ServerBadInput, AGroupEndsAtTheBytesThatItMayHold) {
    constexpr std::size_t size = 100'000;
    constexpr std::size_t most = std::size_t{16} * 1024 * 1024;
    const std::string server(size, 'h');
    const auto parsed = xml::Document::parseText(
        "<application><server type='1'><e key='1' name='" + std::string(2'000, ';') + "' addrs='" +
        server +
        ":1'/><e key='2' name='a' addrs='h:1'/></server><server type='2'><e key='3' "
        "name='a' addrs='" +
        server + ":1'/></server></application>");
    RecordingSink sink;
    const auto group = YGServerAddrListTag::initWithServerType(1, parsed.document.root(), &sink);
    EXPECT_EQ(group->serverAddrList()->size(), 1 + most / size + 1);
    EXPECT_THAT(sink.rules(), ElementsAre("server-without-name", "too-many-servers"));
    EXPECT_THAT(host->runtimeLog(), ElementsAre(groupLimitLog));
    // Each group counts for itself.
    const auto other = YGServerAddrListTag::initWithServerType(2, parsed.document.root(), &sink);
    EXPECT_EQ(other->serverAddrList()->size(), 1U);
}

// ---- Deliveries ------------------------------------------------------------------------------

TEST_F(ServerBadInput, AnEmptyDeliveryChangesNothing) {
    const auto loader = load(stored);
    host->clear();
    EXPECT_FALSE(loader->reloadServerConfigWithData(std::nullopt, "digest"));
    EXPECT_FALSE(loader->reloadServerConfigWithData("", "digest"));
    expectUntouched(*loader);
    EXPECT_THAT(host->log(), IsEmpty());
    EXPECT_THAT(host->questions(), IsEmpty());
}

TEST_F(ServerBadInput, ADeliveryThatIsNoXmlChangesNothing) {
    const auto loader = load(stored);
    for (const std::string_view bytes :
         {std::string_view("no xml"), std::string_view("<application>"), std::string_view(" "),
          std::string_view("<application/><application/>"), std::string_view("\0", 1),
          std::string_view("{\"application\":{}}"), delivered.substr(0, delivered.size() - 1)}) {
        host->clear();
        EXPECT_FALSE(loader->reloadServerConfigWithData(bytes, "digest"));
        expectUntouched(*loader);
        EXPECT_THAT(host->runtimeLog(),
                    ElementsAre("set style config fail:" + xml::Document::parseBytes(bytes).error));
        EXPECT_THAT(host->questions(), IsEmpty());
    }
}

TEST_F(ServerBadInput, ADeliveryOfAnotherRootEmptiesTheGroupsAndIsSaved) {
    const auto loader = load(stored);
    EXPECT_TRUE(loader->reloadServerConfigWithData("<html><body/></html>", "digest"));
    EXPECT_EQ(loader->configMd5(), "digest");
    EXPECT_THAT(serversOf(*loader->appServerAddrListTag()), ElementsAre("null"));
    EXPECT_THAT(contentOf(path()), HasSubstr("<html md5=\"digest\">"));
}

TEST_F(ServerBadInput, AHugeDeliveryIsAppliedAndSaved) {
    std::string xml = "<application><server type='1' name='delivered'>";
    std::size_t entries = 0;
    for (; xml.size() < largeInput; ++entries)
        xml += "<addr key='1' name='server' addrs='192.0.2.1:9211'/>\n";
    const auto loader = load(stored);
    EXPECT_TRUE(loader->reloadServerConfigWithData(xml + "</server></application>", "digest"));
    EXPECT_EQ(loader->appServerAddrListTag()->serverAddrList()->size(), entries);
    const auto next = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_EQ(next->configMd5(), "digest");
    EXPECT_EQ(next->appServerAddrListTag()->serverAddrList()->size(), entries);
}

std::string withRoot(std::string_view attributes, std::string_view content) {
    return "<application" + std::string(attributes) + ">" + std::string(content) + "</application>";
}

std::string attributes(int count) {
    std::string all;
    for (int i = 0; i < count; ++i)
        all += " a" + std::to_string(i) + "=''";
    return all;
}

// Saved, it would be unreadable at the next start, and the old file gone.
TEST_F(ServerBadInput, ADeliveryThatCouldNotBeReadAgainChangesNothing) {
    const auto loader = load(stored);
    std::string names;
    for (int i = 0; i < 99'990; ++i)
        names += "<n" + std::to_string(i) + "/>";
    const std::string greater(3'000'000, '>');
    const std::string md5(10'000'001, 'x');
    for (const auto& [bytes, digest] : {
             std::pair(withRoot(attributes(256), ""), std::string("digest")),
             {withRoot("", "<server type='1'>" + greater + "</server>"), "digest"},
             {withRoot("", ""), md5},
         }) {
        host->clear();
        EXPECT_FALSE(loader->reloadServerConfigWithData(bytes, digest));
        expectUntouched(*loader);
        EXPECT_THAT(host->runtimeLog(),
                    ElementsAre("set style config fail:it could not be read again"));
        EXPECT_THAT(host->questions(), IsEmpty());
    }
    const std::string quotes(2'000'000, '"');
    for (const std::string& bytes :
         {withRoot(attributes(255), ""), withRoot(" md5=''" + attributes(255), ""),
          withRoot(" a='" + quotes + "'", ""), withRoot("", names)}) {
        EXPECT_TRUE(loader->reloadServerConfigWithData(bytes, "digest"));
        EXPECT_EQ(YGServerCfgLoader::initWithIsGray(false)->configMd5(), "digest");
    }
}

TEST_F(ServerBadInput, AHugeDeliveryThatIsCutChangesNothing) {
    std::string xml = "<application><server type='1'>";
    while (xml.size() < largeInput)
        xml += "<addr key='1' name='server' addrs='192.0.2.1:9211'/>\n";
    const auto loader = load(stored);
    EXPECT_FALSE(loader->reloadServerConfigWithData(xml, "digest"));
    expectUntouched(*loader);
}

// ---- Deliveries that cannot be saved ---------------------------------------------------------

TEST_F(ServerBadInput, WithoutAPathToWriteADeliveryCountsUnsaved) {
    const auto loader = load(stored);
    for (const auto& none : {std::optional<std::string>(), std::optional<std::string>("")}) {
        host->paths["skeleton_v1.xml"] = none;
        host->clear();
        EXPECT_TRUE(loader->reloadServerConfigWithData(delivered, "digest"));
        expectDelivered(*loader);
        EXPECT_THAT(host->runtimeLog(), ElementsAre("(Login Server)reloadServerConfigWithData(" +
                                                    none.value_or("(null)") + ")"));
    }
    expectStoredFileUntouched();
}

TEST_F(ServerBadInput, IntoAMissingFolderADeliveryCountsUnsaved) {
    const auto loader = load(stored);
    host->storageWriteFolder = folder / "none";
    EXPECT_TRUE(loader->reloadServerConfigWithData(delivered, "digest"));
    expectDelivered(*loader);
    expectStoredFileUntouched();
}

TEST_F(ServerBadInput, OntoADeviceADeliveryCountsUnsaved) {
    const auto loader = load(stored);
    host->paths["skeleton_v1.xml"] = "/dev/full";
    EXPECT_TRUE(loader->reloadServerConfigWithData(delivered, "digest"));
    expectDelivered(*loader);
    expectStoredFileUntouched();
}

/// Files cannot grow beyond a size while this lives, as on a disk that is full.
class FullDisk {
public:
    explicit FullDisk(rlim_t size) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{size, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signal_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    void (*signal_)(int);
    rlimit before_{};
};

TEST_F(ServerBadInput, OnADiskThatFillsUpADeliveryCountsUnsavedAndTheStoredFileStays) {
    for (const rlim_t size : {0u, 1u, 40u, 100u}) {
        SCOPED_TRACE(size);
        const auto loader = load(stored);
        {
            const FullDisk disk(size);
            EXPECT_TRUE(loader->reloadServerConfigWithData(delivered, "digest"));
        }
        expectDelivered(*loader);
        expectStoredFileUntouched();
    }
    // With room enough the same delivery is saved.
    const auto loader = load(stored);
    {
        const FullDisk disk(10'000);
        EXPECT_TRUE(loader->reloadServerConfigWithData(delivered, "digest"));
    }
    EXPECT_THAT(contentOf(path()), HasSubstr("delivered"));
}

/// A folder in which nothing can be made, not even by the superuser, who becomes another user for
/// as long.
class ReadOnlyFolder {
public:
    explicit ReadOnlyFolder(const std::string& path) : path_(path), user_(::geteuid()) {
        ::chmod(path_.c_str(), 0555);
        if (user_ == 0)
            changed_ = ::seteuid(65534) == 0;
    }
    ~ReadOnlyFolder() {
        if (changed_ && ::seteuid(user_) != 0)
            ADD_FAILURE() << "the user could not be changed back";
        ::chmod(path_.c_str(), 0700);
    }
    ReadOnlyFolder(const ReadOnlyFolder&) = delete;
    ReadOnlyFolder& operator=(const ReadOnlyFolder&) = delete;

    /// Whether it really is read-only here.
    bool isReadOnly() const { return ::access(path_.c_str(), W_OK) != 0 || changed_; }

private:
    std::string path_;
    uid_t user_;
    bool changed_ = false;
};

TEST_F(ServerBadInput, IntoAReadOnlyFolderADeliveryCountsUnsavedAndTheStoredFileStays) {
    const auto loader = load(stored);
    {
        const ReadOnlyFolder readOnly(folder.path());
        ASSERT_TRUE(readOnly.isReadOnly());
        EXPECT_TRUE(loader->reloadServerConfigWithData(delivered, "digest"));
    }
    expectDelivered(*loader);
    expectStoredFileUntouched();
    EXPECT_TRUE(loader->reloadServerConfigWithData(delivered, "digest"));
    EXPECT_THAT(contentOf(path()), HasSubstr("delivered"));
}

TEST_F(ServerBadInput, AReadOnlyFileIsReplacedAndKeepsItsMode) {
    const auto loader = load(stored);
    ::chmod(path().c_str(), 0440);
    EXPECT_TRUE(loader->reloadServerConfigWithData(delivered, "digest"));
    EXPECT_THAT(contentOf(path()), HasSubstr("delivered"));
    EXPECT_EQ(files::modeOf(path()), 0440u);
}

}  // namespace
}  // namespace yg
