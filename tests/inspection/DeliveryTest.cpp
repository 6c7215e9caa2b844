// SPDX-License-Identifier: MIT
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/inspection/Inspection.h"

#include "inspection/Inspected.h"

namespace yg::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using Kind = Delivery::Kind;

Delivery delivery(Kind kind, const std::string& bytes) {
    Delivery made;
    made.kind = kind;
    made.name = "new";
    made.bytes = bytes;
    return made;
}

std::shared_ptr<const Inspection> tried(const Files& files, const Delivery& delivery) {
    const files::TemporaryFolder folder;
    for (const auto& [name, bytes] : files)
        folder.write(name, bytes);
    std::string error;
    auto inspection = Inspection::ofDelivery(delivery, folder.path(), error);
    if (!inspection)
        throw std::runtime_error(error);
    for (const auto& [name, bytes] : files)
        EXPECT_EQ(files::contentOf(folder.at(name)), bytes);
    EXPECT_FALSE(std::filesystem::exists(folder.at("user"))) << "nothing is written into the root";
    return inspection;
}

std::vector<std::string> found(const Files& files, const Delivery& delivery) {
    return linesOf(*tried(files, delivery));
}

std::string servers(const std::string& entries) {
    return "<application><server type='1'>" + entries + "</server></application>";
}

const Files terminal{
    {"storage/skeleton_v1.xml", servers("<e key='1' name='East;West' addrs='a:1'/>")},
    {"storage/skeleton_l2_gray_v1.xml", servers("<e key='1' name='Deep' addrs='a:1'/>")},
    {"storage/web_page_urls.xml",
     "<urls><url key='help'>https://a.example/?x=1&amp;y=2</url><url key='news'/></urls>"},
    {"storage/request_urls_json.txt",
     R"({"md5Value": "1", "urlConfigList": [{"urlKey": "q", "urlValue": "https://q.example/"}]})"}};

TEST(Delivery, ThatIsTakenWholeGivesNoFinding) {
    EXPECT_THAT(found(terminal, delivery(Kind::servers, terminal.at("storage/skeleton_v1.xml"))),
                IsEmpty());
    EXPECT_THAT(found(terminal, delivery(Kind::webPages,
                                         "<urls><url key='help'>https://a.example/?x=1&y=2</url>"
                                         "<url key='news'/></urls>")),
                IsEmpty());
    for (const char* const digest : {"1", "2"})
        EXPECT_THAT(found(terminal, delivery(Kind::requestUrls,
                                             R"({"md5Value": ")" + std::string(digest) +
                                                 R"(", "urlConfigList": [{"urlKey": "q",)"
                                                 R"( "urlValue": "https://q.example/"}]})")),
                    IsEmpty());
}

TEST(Delivery, OfServersLosesWhatOnlyThePresentFileHas) {
    EXPECT_THAT(found(terminal, delivery(Kind::servers,
                                         servers("<e key='1' name='East;North' addrs='b:1'/>"))),
                ElementsAre("new:1:1 error lost-by-delivery 1/West (storage/skeleton_v1.xml:1:53)",
                            "new:1:48 info changed-by-delivery 1/East"
                            " (storage/skeleton_v1.xml:1:48)",
                            "new:1:53 info added-by-delivery 1/North"));
}

TEST(Delivery, OfServersReplacesTheFileOfTheRightLevel) {
    Delivery deep = delivery(Kind::servers, servers("<e key='1' name='Deep' addrs='a:1'/>"));
    deep.right = "l2";
    deep.isGray = true;
    EXPECT_THAT(found(terminal, deep), IsEmpty());
    deep.right = "";
    deep.isGray = false;
    EXPECT_THAT(found(terminal, deep), ElementsAre(HasSubstr("lost-by-delivery 1/East"),
                                                   HasSubstr("lost-by-delivery 1/West"),
                                                   HasSubstr("added-by-delivery 1/Deep")));
}

TEST(Delivery, OfServersSaysWhatIsDroppedAndOdd) {
    EXPECT_THAT(
        found(terminal, delivery(Kind::servers,
                                 "<application md5='x'><server type='1'>"
                                 "<e key='1' name='East;West' addrs='a:1;b:1,c:1'/></server>"
                                 "<server type='6'/></application>")),
        ElementsAre("new:1:14 warning replaced-md5 x",
                    "new:1:56 info changed-by-delivery 1/East (storage/skeleton_v1.xml:1:48)",
                    "new:1:61 info changed-by-delivery 1/West (storage/skeleton_v1.xml:1:53)",
                    "new:1:78 error odd-address-weight b:1,c:1 -> b:1;c:1",
                    "new:1:105 error server-type-never-loaded 6"));
}

TEST(Delivery, ThatIsNotWellFormedIsRefused) {
    EXPECT_THAT(found(terminal, delivery(Kind::servers, "")),
                ElementsAre("new:1:1 error unreadable-delivery"));
    EXPECT_THAT(found(terminal, delivery(Kind::webPages, "<urls>")),
                ElementsAre(HasSubstr("error unreadable-web-pages")));
    EXPECT_THAT(found(terminal, delivery(Kind::requestUrls, "[]")),
                ElementsAre(HasSubstr("error refused-delivery")));
}

TEST(Delivery, OfWebPagesHasColumnsAsItIsWritten) {
    EXPECT_THAT(found(terminal, delivery(Kind::webPages,
                                         "<urls><url key='help'>https://a.example/?x=1&y=2</url>"
                                         "<url key='news'>?a&b</url><url/></urls>")),
                ElementsAre("new:1:65 info changed-by-delivery news"
                            " (storage/web_page_urls.xml:1:69)",
                            "new:1:71 warning address-without-scheme ?a&b",
                            "new:1:81 error web-page-without-key"));
}

TEST(Delivery, ThatIsAWebPageLosesAllAndSaysSoOnce) {
    const auto inspection = tried(terminal, delivery(Kind::webPages, "<html><body/></html>"));
    EXPECT_THAT(linesOf(*inspection), ElementsAre("new:1:1 error html-in-place-of-file"));
    EXPECT_THAT(inspection->findings()[0].consequences, SizeIs(2));
    for (const Kind kind : {Kind::servers, Kind::requestUrls})
        EXPECT_THAT(found(terminal, delivery(kind, "<!DOCTYPE html><html><br></html>")),
                    ElementsAre("new:1:1 error html-in-place-of-file"));
}

TEST(Delivery, OfAListWithoutAnotherDigestChangesNothing) {
    EXPECT_THAT(found(terminal, delivery(Kind::requestUrls, R"({"urlConfigList": []})")),
                ElementsAre(HasSubstr("error refused-delivery")));
    EXPECT_THAT(
        found(terminal, delivery(Kind::requestUrls, R"({"md5Value": "1", "urlConfigList": []})")),
        ElementsAre(HasSubstr("error same-digest-other-entries")));
    EXPECT_THAT(
        found(terminal, delivery(Kind::requestUrls, R"({"md5Value": "2", "urlConfigList": []})")),
        ElementsAre("new:1:1 error lost-by-delivery q"
                    " (storage/request_urls_json.txt:1:48)"));
}

TEST(Delivery, ShowsItsOwnLines) {
    const auto inspection = tried(terminal, delivery(Kind::webPages, "<urls>\n<url/>&</urls>"));
    EXPECT_EQ(inspection->line("new", 2), "<url/>&</urls>");
}

TEST(Delivery, NeedsAFolderAndSettings) {
    const files::TemporaryFolder folder;
    std::string error;
    const Delivery empty = delivery(Kind::webPages, "<urls/>");
    EXPECT_EQ(Inspection::ofDelivery(empty, folder.at("nothing"), error), nullptr);
    EXPECT_THAT(error, HasSubstr("No such file"));
    folder.write("host.json", "[]");
    EXPECT_EQ(Inspection::ofDelivery(empty, folder.path(), error), nullptr);
    EXPECT_THAT(error, HasSubstr("host.json"));
}

TEST(DeliveredWebPages, AreMeantToHaveTheirAmpersandsAsTheyStand) {
    const auto inspection =
        tried({}, delivery(Kind::webPages,
                           "<urls><url key='help'>https://a.example/?x=1&amp;y=2</url></urls>"));
    for (const RootFinding& finding : inspection->findings()) {
        if (finding.rule->name == "escaped-twice") {
            EXPECT_EQ(finding.suggestion, "https://a.example/?x=1&y=2");
            return;
        }
    }
    FAIL() << "the ampersand is escaped twice";
}

}  // namespace
}  // namespace yg::testing
