// SPDX-License-Identifier: MIT
//
// The server configuration when memory runs out: a load or a delivery counts as a whole or not at
// all.
#include "YGConfigManager/servers/AddressShares.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/xml/Document.h"

#include "files/TemporaryFolder.h"
#include "memory/MemoryTest.h"

#if YG_OWN_ALLOCATION

namespace yg {
namespace {

std::string servers(std::string_view name) {
    return "<application md5='" + testing::longText + std::string(name) +
           "'><server type='1' domain='" + testing::longText + "'><s key='1' name='" +
           std::string(name) + ";" + testing::longText + "' addrs='1:" + testing::longText +
           ":80'/></server><server type='8'><s key='2' name='b' addrs='b:1'/></server>"
           "</application>";
}

class ServerMemory : public testing::MemoryTest {
protected:
    ServerMemory() { put("skeleton_v1.xml", servers("old")); }

    static std::string textOf(const std::shared_ptr<YGServerCfgLoader>& loader) {
        return testing::wholeText(loader);
    }
    std::string file() const { return files::contentOf(root.at("skeleton_v1.xml")); }

    std::shared_ptr<YGServerCfgLoader> loader;
};

TEST_F(ServerMemory, ALoadCountsAsAWholeOrNotAtAll) {
    std::filesystem::remove(root.at("skeleton_v1.xml"));
    const std::string empty = textOf(YGServerCfgLoader::initWithIsGray(false));
    put("skeleton_v1.xml", servers("old"));
    for (DiagnosticsSink* const sink : testing::bothSinks) {
        const auto load = [sink] { return YGServerCfgLoader::initWithIsGray(false, sink); };
        const auto text = [&](const auto& made) { return made ? textOf(made) : empty; };
        everyAllocationOfTheFirstCallFails(Operation{load, text, empty});
        everyAllocationFails(Operation{load, text, empty});
    }
}

TEST_F(ServerMemory, AReloadThatFailsKeepsTheServers) {
    const auto prepare = [this] {
        put("skeleton_v1.xml", servers("old"));
        loader = YGServerCfgLoader::initWithIsGray(false);
        put("skeleton_v1.xml", servers("new"));
    };
    prepare();
    const std::string before = textOf(loader);
    const auto text = [this] {
        const std::string all = textOf(loader);
        loader->loadServerCfg(xml::Document::parseText(servers("old")).document);
        return all;
    };
    using Reload = void (YGServerCfgLoader::*)();
    for (const Reload reload :
         {&YGServerCfgLoader::reloadConfig, &YGServerCfgLoader::reloadServerConfigWhenRightChanged,
          &YGServerCfgLoader::reloadFreeRightServerConfig})
        everyAllocationFails(Operation{[&] { (*loader.*reload)(); }, text, before, prepare});

    const xml::Document document = xml::Document::parseText(servers("new")).document;
    everyAllocationFails(
        Operation{[&] { loader->loadServerCfg(document); }, text, before, prepare});
}

TEST_F(ServerMemory, ADeliveryIsAppliedAndSavedOrChangesNothing) {
    const std::string delivered = servers("new");
    const auto prepare = [this] {
        put("skeleton_v1.xml", servers("old"));
        loader = YGServerCfgLoader::initWithIsGray(false);
    };
    prepare();
    const std::string before = "0" + textOf(loader) + file();
    const auto text = [this](bool isApplied) {
        std::string all = (isApplied ? "1" : "0") + textOf(loader);
        const bool isOld = file() == servers("old");
        // An applied delivery that could not be saved is a true one, and the old file stays whole.
        const bool isNew =
            xml::Document::parseText(file()).document.root().attribute("md5") == "md5";
        EXPECT_TRUE(isOld || isNew) << file();
        all += isApplied ? "" : file();
        put("skeleton_v1.xml", servers("old"));
        loader->loadServerCfg(xml::Document::parseText(servers("old")).document);
        return all;
    };
    everyAllocationFails(
        Operation{[&] { return loader->reloadServerConfigWithData(delivered, "md5"); }, text,
                  before, prepare});
}

TEST_F(ServerMemory, AllOffersAreListedOrNone) {
    const auto made = YGServerCfgLoader::initWithIsGray(false);
    const auto text = [](const auto& offers) {
        std::string all;
        for (const auto& [type, entries] : offers) {
            for (const ServerOffer& entry : entries)
                all += *entry.key + *entry.names + entry.addresses.front().address + '\n';
        }
        return all;
    };
    everyAllocationFails(Operation{[&] { return made->offers(); }, text, ""});
}

TEST_F(ServerMemory, AllSharesAreAnsweredOrNone) {
    const std::string addrs = "1:" + testing::longText + ":80;2:b:1;" + testing::longText + ":1";
    const auto text = [](const auto& shares) {
        std::string all;
        for (const AddressShare& share : shares)
            all += share.address + ' ' + std::to_string(share.numbers) + '\n';
        return all;
    };
    for (const AddressRule rule : {AddressRule::plain, AddressRule::weighted}) {
        everyAllocationFails(Operation{[&] { return addressShares(addrs, rule); }, text, ""});
        everyAllocationFails(Operation{
            [&] { return drawFleet(addrs, rule, 2, 1, systemRandomSource()); },
            [](const FleetDraws& draws) { return std::to_string(draws.loads.size()); }, "0"});
    }
    const std::vector<AddressShare> shares = addressShares(addrs);
    const auto number = [](double value) { return std::to_string(value); };
    everyAllocationFails(
        Operation{[&] { return chanceOfAnother(shares, shares); }, number, number(0)});
    everyAllocationFails(Operation{[&] { return withoutAddress(addrs, "b:1"); },
                                   [](const std::string& left) { return left; }, ""});
}

TEST_F(ServerMemory, AGroupAnAddressAndARecordAreThereOrNot) {
    const std::string& text = testing::longText;
    const auto whole = [](const auto& answer) { return testing::wholeText(answer); };
    const xml::Element document = xml::Document::parseText(servers("a")).document.root();
    everyAllocationFails(Operation{
        [&] { return YGServerAddrListTag::initWithServerType(1, document); }, whole, "null"});
    const auto group = std::make_shared<YGServerAddrListTag>();
    group->setServerType(1);
    const std::string before = testing::wholeText(group);
    everyAllocationFails(Operation{[&] { group->loadServerGroupCfg(document); },
                                   [&] {
                                       const std::string all = testing::wholeText(group);
                                       *group = YGServerAddrListTag();
                                       group->setServerType(1);
                                       return all;
                                   },
                                   before});
    everyAllocationFails(Operation{
        [&] { return YGServerAddrTag::initWithServerAddrInfo(text, text, 1, 1); }, whole, "null"});
    const std::vector<std::string> items = {"1:" + text + ":80"};
    everyAllocationFails(
        Operation{[&] { return YGServerAddrListTag::changeIpByPercentNew(&items); }, whole, ""});
    everyAllocationFails(
        Operation{[&] { return YGServerAddrListTag::changeIpByPercent(&items); }, whole, ""});
}

}  // namespace
}  // namespace yg

#endif
