// SPDX-License-Identifier: MIT
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/host/YGFrameComFun.h"

#include "host/RecordingHost.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using yg::Host;
using yg::YGFrameComFun;
using yg::testing::RecordingHost;
using yg::testing::ScopedHost;

/// Breaks every rule that a host has to keep.
class ThrowingHost : public Host {
public:
    std::optional<std::string> getStorageFilePath(std::int64_t, std::optional<std::string_view>,
                                                  std::optional<std::string_view>, bool) override {
        throw std::runtime_error("storage");
    }
    std::optional<std::string> getUserRightDescription() override { throw 1; }
    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view) override {
        throw std::runtime_error("soft");
    }
    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view) override {
        throw std::runtime_error("base");
    }
    std::shared_ptr<const yg::MappingDic> getMappingDicForKey(std::string_view) override {
        throw std::runtime_error("mapping");
    }
    std::optional<std::string> getDefualtFolderPath(std::int64_t) override {
        throw std::runtime_error("folder");
    }
    void writeLog(yg::LogChannel, std::string_view) override { throw std::runtime_error("log"); }
    std::shared_ptr<yg::MainQueue> mainQueue() override { throw std::runtime_error("queue"); }
};

TEST(Host, TheOneInstalledAnswers) {
    ScopedHost<> host;
    host->userRight = "l2";
    EXPECT_EQ(yg::currentHost(), host.get());
    EXPECT_EQ(YGFrameComFun::getUserRightDescription(), "l2");
}

TEST(Host, TheDefaultIsAStandAloneHostOnTheCurrentFolder) {
    const std::shared_ptr<Host> before = yg::setHost(nullptr);
    const std::shared_ptr<Host> host = yg::currentHost();
    ASSERT_NE(std::dynamic_pointer_cast<yg::StandAloneHost>(host), nullptr);
    EXPECT_EQ(host->getDefualtFolderPath(4), "./images");
    EXPECT_EQ(yg::currentHost(), host);
    yg::setHost(before);
}

TEST(Host, NullBringsTheDefaultBack) {
    const auto host = std::make_shared<RecordingHost>();
    const std::shared_ptr<Host> before = yg::setHost(host);
    EXPECT_EQ(yg::setHost(nullptr), host);
    EXPECT_NE(yg::currentHost(), host);
    EXPECT_EQ(yg::setHost(before), nullptr);
}

TEST(Host, InstallingLetsGoOfTheOneReplaced) {
    auto host = std::make_shared<RecordingHost>();
    const std::weak_ptr<Host> watch = host;
    const std::shared_ptr<Host> before = yg::setHost(std::move(host));
    EXPECT_FALSE(watch.expired());
    yg::setHost(before);
    EXPECT_TRUE(watch.expired());
}

TEST(Host, NamesNoConfigServerByDefault) {
    EXPECT_EQ(ThrowingHost().configServer(), std::nullopt);
}

TEST(YGFrameComFun, ForwardsEveryQuestionUnchanged) {
    ScopedHost<> host;
    host->storageReadFolder = "/read";
    host->storageWriteFolder = "/write";
    host->softOptimizeFolder = "/soft";
    host->baseOptimizeFolder = "/base";
    host->defualtFolders[4] = "/images";
    host->mappings["模版通配"] = {{"STOCK", {"SH01", "SZ02"}}};

    EXPECT_EQ(YGFrameComFun::getStorageFilePath(1, std::nullopt, "a.xml", false), "/read/a.xml");
    EXPECT_EQ(YGFrameComFun::getStorageFilePath(2, "sub", "a.xml", true), "/write/a.xml");
    EXPECT_EQ(YGFrameComFun::getStorageFilePath(1, "", std::nullopt, false), std::nullopt);
    EXPECT_EQ(YGFrameComFun::getUserRightDescription(), std::nullopt);
    EXPECT_EQ(YGFrameComFun::getSoftOptimizeConfigFilePath(0, "b.xml"), "/soft/b.xml");
    EXPECT_EQ(YGFrameComFun::getBaseOptimizeConfigFilePath(0, "c.xml"), "/base/c.xml");
    EXPECT_EQ(YGFrameComFun::getDefualtFolderPath(4), "/images");
    EXPECT_EQ(YGFrameComFun::getDefualtFolderPath(5), std::nullopt);
    const auto mapping = YGFrameComFun::getMappingDicForKey("模版通配");
    ASSERT_NE(mapping, nullptr);
    EXPECT_THAT(mapping->at("STOCK"), ElementsAre("SH01", "SZ02"));
    EXPECT_EQ(YGFrameComFun::getMappingDicForKey("none"), nullptr);

    EXPECT_THAT(
        host->questions(),
        ElementsAre("getStorageFilePath(1, (null), a.xml, 0)",
                    "getStorageFilePath(2, sub, a.xml, 1)", "getStorageFilePath(1, , (null), 0)",
                    "getUserRightDescription()", "getSoftOptimizeConfigFilePath(0, b.xml)",
                    "getBaseOptimizeConfigFilePath(0, c.xml)", "getDefualtFolderPath(4)",
                    "getDefualtFolderPath(5)", "getMappingDicForKey(模版通配)",
                    "getMappingDicForKey(none)"));
    EXPECT_THAT(host->log(), IsEmpty());
}

TEST(YGFrameComFun, KeepsAbsentAndEmptyAnswersApart) {
    ScopedHost<> host;
    EXPECT_EQ(YGFrameComFun::getUserRightDescription(), std::nullopt);
    host->userRight = "";
    EXPECT_EQ(YGFrameComFun::getUserRightDescription(), "");
    host->paths["empty.xml"] = "";
    EXPECT_EQ(YGFrameComFun::getStorageFilePath(1, std::nullopt, "empty.xml", false), "");
}

TEST(YGFrameComFun, TakesAHostThatThrowsForAnAbsentAnswer) {
    ScopedHost<ThrowingHost> host;
    EXPECT_EQ(YGFrameComFun::getStorageFilePath(1, std::nullopt, "a", true), std::nullopt);
    EXPECT_EQ(YGFrameComFun::getUserRightDescription(), std::nullopt);
    EXPECT_EQ(YGFrameComFun::getSoftOptimizeConfigFilePath(0, "a"), std::nullopt);
    EXPECT_EQ(YGFrameComFun::getBaseOptimizeConfigFilePath(0, "a"), std::nullopt);
    EXPECT_EQ(YGFrameComFun::getMappingDicForKey("a"), nullptr);
    EXPECT_EQ(YGFrameComFun::getDefualtFolderPath(4), std::nullopt);
}

TEST(Host, AMessageThatItThrowsOnIsDropped) {
    ScopedHost<ThrowingHost> host;
    testing::internal::CaptureStderr();
    yg::writeRuntimeLog("a %@", "b");
    yg::writeBusCommonLogInside("%s L%d", "c", 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(Host, AMainQueueThatItThrowsOnIsTheDefaultOne) {
    ScopedHost<ThrowingHost> host;
    bool ran = false;
    yg::postToMainQueue([&ran] { ran = true; });
    EXPECT_EQ(yg::runPendingMainTasks(), 1U);
    EXPECT_TRUE(ran);
}

}  // namespace
