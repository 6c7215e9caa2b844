// SPDX-License-Identifier: MIT
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inspection/Inspected.h"

namespace yg::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

const std::string styles = "config/custompage_template.xml";
const std::string events = "config/events.xml";
const std::string urlList = "storage/request_urls_json.txt";

/// The findings about one file.
std::vector<std::string> aboutFile(const std::string& file, const std::string& bytes) {
    std::vector<std::string> lines;
    for (const std::string& line : linesOf(Files{{file, bytes}})) {
        if (line.starts_with(file + ":"))
            lines.push_back(line);
    }
    return lines;
}

std::string messageIn(const std::string& file, const std::string& bytes) {
    const files::TemporaryFolder folder;
    folder.write(file, bytes);
    const auto inspection = inspected(folder.path());
    for (const RootFinding& finding : inspection->findings()) {
        if (finding.file == file)
            return finding.message;
    }
    return {};
}

TEST(FilesCheck, MissesTheFilesThatATerminalAlwaysAsksFor) {
    const auto lines = linesOf(Files{{"README", ""}}, "missing-file");
    EXPECT_EQ(lines.size(), 13U);
    EXPECT_THAT(lines, Contains("config/events.xml:1:1 warning missing-file"));
    EXPECT_THAT(lines, Contains("storage/skeleton_l2_gray_v1.xml:1:1 warning missing-file"));
    EXPECT_THAT(linesOf(Files{{"README", ""}}), Not(Contains(HasSubstr("unreadable"))));
}

TEST(FilesCheck, MissesNothingThatTheUserHasACopyOf) {
    EXPECT_THAT(linesOf(Files{{"user/palette_white.xml", "<ROOT/>"}}, "missing-file"),
                Not(Contains(HasSubstr("palette_white"))));
}

TEST(FilesCheck, AFileThatIsThereAndCannotBeReadIsUnreadable) {
    const files::TemporaryFolder folder;
    std::filesystem::create_directories(folder.at(events));
    EXPECT_THAT(linesOf(*inspected(folder.path())),
                Contains("config/events.xml:1:1 error unreadable-file Is a directory"));
}

/// The errors and warnings about the sample with another text in the place of a file.
std::vector<std::string> faultsWith(const std::string& file, const std::string& text) {
    std::vector<std::string> lines;
    const auto inspection = inspected(YG_SAMPLE_FOLDER, {{{file, text}}});
    for (const RootFinding& finding : inspection->findings()) {
        if (finding.rule->severity != Severity::info)
            lines.push_back(lineOf(finding));
    }
    return lines;
}

TEST(FilesCheck, WhatFollowsFromAFileThatCannotBeReadIsNoFindingOfItsOwn) {
    for (const std::string file :
         {"config/custompage_template.xml", "config/tab_styles.xml", "config/magic_panels.xml",
          "config/events.xml", "soft_optimize/custompage_template.xml",
          "soft_optimize/magic_panels.xml", "base_optimize/reuse_panels.xml",
          "storage/palette_white.xml", "storage/palette_black.xml", "storage/skeleton_v1.xml",
          "storage/skeleton_l2_gray_v1.xml", "storage/app_config.xml", "storage/web_page_urls.xml",
          "storage/request_urls_json.txt", "host.json"}) {
        std::string whole = files::contentOf(YG_SAMPLE_FOLDER "/" + file);
        whole.resize(whole.size() / 2);
        for (const std::string& text :
             {std::string(), whole, std::string("<!DOCTYPE html><html><br></html>")}) {
            EXPECT_THAT(faultsWith(file, text), ElementsAre(HasSubstr(file + ":")))
                << text.substr(0, 40);
        }
    }
}

TEST(FilesCheck, SeveralErrorsOfOneFileAreOneFinding) {
    EXPECT_THAT(
        aboutFile(events, "<event_list>\n<a b=c/>\n<d e=f/>\n</event_list>"),
        ElementsAre("config/events.xml:2:6 error unreadable-file AttValue: \" or ' expected "
                    "(config/events.xml:3:6)"));
    EXPECT_EQ(messageIn(events, "<event_list>\n<a>\n</event_list>"),
              "Close <a> of line 2 before </event_list>, or correct one of the names. Nothing in "
              "the file is read until then.");
}

TEST(FilesCheck, NamesTheEncodingThatAFileIsIn) {
    // "行情" in GBK.
    const std::string gbk = "<styles>\n  <style name=\"\xD0\xD0\xC7\xE9\"/>\n</styles>";
    EXPECT_THAT(aboutFile(styles, gbk),
                ElementsAre("config/custompage_template.xml:2:16 error wrong-encoding GBK"));
    EXPECT_THAT(messageIn(styles, gbk), HasSubstr("or declare encoding=\"GBK\""));
    EXPECT_THAT(messageIn(styles, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + gbk),
                Not(HasSubstr("or declare")));
    EXPECT_THAT(aboutFile(styles, "<?xml version=\"1.0\" encoding=\"GBK\"?>\n" + gbk),
                Not(Contains(HasSubstr("wrong-encoding"))));
    EXPECT_THAT(aboutFile(styles, "<styles><style name=\"caf\xE9\"/></styles>"),
                ElementsAre("config/custompage_template.xml:1:25 error wrong-encoding 0xE9"));
    EXPECT_THAT(aboutFile(urlList, "{\"md5Value\": \"\xD0\xD0\xC7\xE9\"}"),
                ElementsAre("storage/request_urls_json.txt:1:15 error wrong-encoding GBK"));
}

TEST(FilesCheck, ADeclarationNamesTheEncodingThatTheFileIsIn) {
    EXPECT_THAT(aboutFile(styles,
                          "<?xml version=\"1.0\" encoding=\"GBK\"?>\n"
                          "<styles default_style=\"行情\"><style name=\"行情\"/></styles>"),
                Contains("config/custompage_template.xml:1:31 error wrong-encoding GBK -> UTF-8"));
    EXPECT_THAT(aboutFile(styles, "<?xml version=\"1.0\" encoding=\"utf8mb4\"?><styles/>"),
                ElementsAre("config/custompage_template.xml:1:31 error wrong-encoding utf8mb4 -> "
                            "UTF-8"));
    EXPECT_THAT(aboutFile(styles, "<?xml version=\"1.0\" encoding=\"UTF-16\"?><styles/>"),
                ElementsAre("config/custompage_template.xml:1:31 error wrong-encoding UTF-16 -> "
                            "UTF-8"));
    // ASCII is the same in both.
    EXPECT_THAT(aboutFile(styles, "<?xml version=\"1.0\" encoding=\"GBK\"?>\n<styles/>"),
                Not(Contains(HasSubstr("wrong-encoding"))));
    EXPECT_THAT(aboutFile(styles,
                          "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"GBK\"?>\n"
                          "<styles default_style=\"行情\"/>"),
                Not(Contains(HasSubstr("wrong-encoding"))));
}

TEST(FilesCheck, NamesUtf16WithoutAMark) {
    const std::string text("<\0s\0/\0>\0", 8);
    EXPECT_THAT(aboutFile(styles, text), ElementsAre("config/custompage_template.xml:1:1 error "
                                                     "wrong-encoding UTF-16 without a byte-order "
                                                     "mark"));
    EXPECT_THAT(aboutFile(urlList, std::string("\xFF\xFE{\0}\0", 6)),
                ElementsAre("storage/request_urls_json.txt:1:1 error wrong-encoding UTF-16"));
    EXPECT_THAT(aboutFile(urlList, "\xEF\xBB\xBF{\"md5Value\": \"1\", \"urlConfigList\": []}"),
                ElementsAre("storage/request_urls_json.txt:1:1 info byte-order-mark"));
}

TEST(FilesCheck, FindsCharactersThatLookLikeMarkup) {
    EXPECT_THAT(aboutFile(events, "<event_list>\n  <a b=“c”/>\n</event_list>"),
                ElementsAre("config/events.xml:2:8 error lookalike-character “c” -> \"c\""));
    EXPECT_THAT(aboutFile(events, "<event_list>\n  <a b=\"c” d=\"e\"/>\n</event_list>"),
                ElementsAre("config/events.xml:2:10 error lookalike-character ” -> \""));
    EXPECT_THAT(aboutFile(events, "<event_list>\n  <a b＝\"c\"/>\n</event_list>"),
                ElementsAre("config/events.xml:2:7 error lookalike-character ＝ -> ="));
    EXPECT_THAT(aboutFile(events, "<event_list>\n  ＜a>\n</a></event_list>"),
                ElementsAre("config/events.xml:2:3 error lookalike-character ＜ -> <"));
    EXPECT_THAT(messageIn(events, "<event_list\u00A0a=\"b\"/>"),
                HasSubstr("U+00A0 (no-break space)"));
    // In values and in text they are as good as others.
    EXPECT_THAT(aboutFile(events, "<event_list>\n  <!-- “ ＜a -->\n</event_list>"), IsEmpty());
    // The first error is another one.
    EXPECT_THAT(aboutFile(events, "<event_list>\n</a>\n<b c=“d”/>\n</event_list>"),
                Not(Contains(HasSubstr("lookalike"))));
}

TEST(FilesCheck, SaysPlainlyWhatIsNoJson) {
    struct Row {
        std::string bytes;
        std::string line;
    };
    for (const Row& row : {
             Row{"{\"md5Value\": \"1\",\n}", "1:17 error unreadable-url-list ,"},
             Row{"{\"md5Value\": \"1\" // no\n}", "1:18 error unreadable-url-list // no"},
             Row{"{'md5Value': \"1\"}", "1:2 error unreadable-url-list 'md5Value' -> \"md5Value\""},
             Row{"{“md5Value”: \"1\"}", "1:2 error lookalike-character “md5Value” -> \"md5Value\""},
             Row{"{\"md5Value\"：\"1\"}", "1:12 error lookalike-character ： -> :"},
             Row{"{\"md5Value\": \"1\"\n\"urlConfigList\": []}",
                 "1:14 error unreadable-url-list \"1\" -> \"1\","},
             Row{"{\"md5Value\" \"1\"}",
                 "1:2 error unreadable-url-list \"md5Value\" -> \"md5Value\":"},
             Row{"{md5Value: \"1\"}", "1:2 error unreadable-url-list md5Value -> \"md5Value\""},
             Row{"{\"md5Value\": None}", "1:14 error unreadable-url-list None -> null"},
             Row{"{\"md5Value\": abc}", "1:14 error unreadable-url-list abc -> \"abc\""},
             Row{"{\"md5Value\": 01}", "1:14 error unreadable-url-list 01"},
             Row{"{\"md5Value\": \"a\\c\"}", "1:16 error unreadable-url-list \\ -> \\\\"},
             Row{"{\"md5Value\": \"1}\n", "1:14 error unreadable-url-list \"1}"},
             Row{"{\"md5Value\": ]}", "1:12 error unreadable-url-list :"},
             Row{"{\"urlConfigList\": [}", "1:19 error unreadable-url-list ["},
             Row{"{\"urlConfigList\": []",
                 "1:21 error unreadable-url-list (storage/request_urls_json.txt:1:1)"},
             Row{"{} {}", "1:4 error unreadable-url-list {}"},
             Row{"", "1:1 error unreadable-url-list"},
         }) {
        EXPECT_THAT(aboutFile(urlList, row.bytes), ElementsAre(urlList + ":" + row.line));
    }
}

TEST(FilesCheck, TakesAnyJsonThatTheReaderTakes) {
    for (const std::string text :
         {"{\"a\": [1, -0.5e+3, true, false, null, \"\\u00e9\\n\", {}, []]}", " [ ] ", "0"}) {
        EXPECT_THAT(aboutFile("host.json", text), Not(Contains(HasSubstr("unreadable-file ,"))));
    }
    EXPECT_THAT(linesOf(Files{{"host.json", "[1, -0.5e+3]"}}, "unreadable-file"),
                ElementsAre("host.json:1:1 error unreadable-file not a JSON object"));
}

std::vector<std::string> host(const std::string& bytes) {
    return aboutFile("host.json", bytes);
}

TEST(HostCheck, FindsWhatTheHostDoesNotRead) {
    EXPECT_THAT(
        host("{\"configserver\": \"a\",\n \"rightlevel\": null, \"else\": 1}"),
        ElementsAre("host.json:1:3 warning unknown-host-member configserver -> configServer",
                    "host.json:2:3 warning unknown-host-member rightlevel -> rightLevel",
                    "host.json:2:23 warning unknown-host-member else"));
    EXPECT_THAT(host("{\"rightLevel\": 2, \"mappings\": {\"模版通配\": {\"A\": [\"b\", true]}}}"),
                ElementsAre("host.json:1:16 error host-member-of-wrong-type 2 -> \"2\"",
                            "host.json:1:52 error host-member-of-wrong-type true"));
    EXPECT_THAT(host("{\"rightLevel\": \"free\", \"rightLevel\": \"l2\"}"),
                ElementsAre("host.json:1:2 error replaced-member \"rightLevel\""));
    EXPECT_THAT(host("{\"mappings\": {\"模板通配\": {}}}"),
                ElementsAre("host.json:1:16 warning unused-mapping 模板通配 -> 模版通配"));
    EXPECT_THAT(host("{\"rightLevel\": \"Free\"}"),
                ElementsAre("host.json:1:17 error odd-right-level Free -> free"));
    EXPECT_THAT(host("{\"rightLevel\": \"free\",}"),
                ElementsAre("host.json:1:22 error unreadable-file ,"));
}

TEST(HostCheck, LeavesInOrderWhatTheHostReads) {
    for (const std::string text : {"{}", "{\"rightLevel\": null, \"mappings\": null}",
                                   "{\"rightLevel\": \"\", \"configServer\": \"\"}",
                                   "{\"rightLevel\": \"l2\", \"mappings\": {\"模版通配\": {}}}"}) {
        EXPECT_THAT(host(text), IsEmpty()) << text;
    }
}

TEST(HostCheck, WantsAHostAndAPort) {
    const auto found = [](const std::string& server) {
        return host("{\"configServer\": \"" + server + "\"}");
    };
    for (const char* const server :
         {"a", "127.0.0.1:8080", "example.com:1", "[::1]:80", "[fe80::1]", "a:65535"})
        EXPECT_THAT(found(server), IsEmpty()) << server;
    for (const auto& [server, meant] :
         std::vector<std::pair<std::string, std::string>>{{"http://a:80/", " -> a:80"},
                                                          {"a:80/b", " -> a:80"},
                                                          {" a", " -> a"},
                                                          {"a：80", " -> a:80"},
                                                          {"a:0", ""},
                                                          {"a:65536", ""},
                                                          {"a:", ""},
                                                          {":80", ""},
                                                          {"::1", ""},
                                                          {"[::1", ""},
                                                          {"[", ""},
                                                          {"a:b", ""}})
        EXPECT_THAT(found(server),
                    ElementsAre("host.json:1:19 error odd-config-server " + server + meant));
}

}  // namespace
}  // namespace yg::testing
