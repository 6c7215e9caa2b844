// SPDX-License-Identifier: MIT
//
// Commands that store something and cannot: the answer and the exit status are the library's, and
// one line on standard error says what was not stored and why.
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LargeInput.h"
#include "files/TemporaryFolder.h"
#include "settings/LoopbackServer.h"
#include "tool/ToolRun.h"

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using yg::files::TemporaryFolder;
using yg::testing::LoopbackServer;
using yg::testing::runTool;
using yg::testing::ToolRun;
using yg::testing::ToolSetting;

const std::string begin = "ygconfig: nothing was stored: ";

/// Larger than a limit of this size for the files of a run.
constexpr std::size_t smallDisk = std::size_t{64} * 1024;
const std::string large(2 * smallDisk, 'x');

const std::string servers = "<application><server type='1'><addr key='1' name='" + large +
                            "' addrs='h:80'/></server></application>";
const std::string pages = "<urls><url key='k'>" + large + "</url></urls>";
const std::string urls =
    R"({"md5Value":"new","urlConfigList":[{"urlKey":"k","urlValue":"new"},{"urlKey":"l","urlValue":")" +
    large + "\"}]}";
constexpr std::string_view oldUrls =
    R"({"md5Value":"old","urlConfigList":[{"urlKey":"k","urlValue":"old"}]})";

ToolRun runOn(const TemporaryFolder& root, std::vector<std::string> words,
              const ToolSetting& setting = {}) {
    words.insert(words.begin(), {"--root", root.path()});
    return runTool(words, setting);
}

/// The tool's own lines on standard error, without those that the library logs.
std::vector<std::string> complaints(const ToolRun& run) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < run.errors.size();) {
        const std::size_t end = run.errors.find('\n', at);
        const std::string line = run.errors.substr(at, end - at);
        if (line.starts_with("ygconfig"))
            lines.push_back(line);
        at = end == std::string::npos ? end : end + 1;
    }
    return lines;
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// ---- Where a file cannot be written ----------------------------------------------------------

/// A command with what it needs, all in order.
struct Command {
    std::string name;
    std::string file;  ///< that it writes, in user/
    std::vector<std::string> words;
    std::string output;
    std::string outputWithoutPath;
    int status;
    std::function<void(const TemporaryFolder&)> prepare;
};

/// What keeps the file from being written.
struct Obstacle {
    std::string name;
    std::string cause;  ///< as the complaint ends; empty where it depends on the system
    std::function<void(const TemporaryFolder& root, const std::string& path)> prepare;
    std::size_t fileSize = 0;
    bool hasPath = true;
};

std::vector<Command> commands(const LoopbackServer& server) {
    const auto put = [](std::string path, std::string_view bytes) {
        return [path = std::move(path), text = std::string(bytes)](const TemporaryFolder& root) {
            root.write(path, text);
            root.write("delivered", path == "storage/pages.xml" ? pages : servers);
        };
    };
    return {
        {"settings set",
         "app.xml",
         {"settings", "set", "app.xml", "a", "x", large.substr(1)},
         "true\n",
         "true\n",
         0,
         put("storage/app.xml", "<config><a><y>" + large + "</y></a></config>")},
        {"web-page",
         "pages.xml",
         {"web-page", "pages.xml", "--replace", "ROOT/delivered"},
         "false\n",
         "false\n",
         1,
         put("storage/pages.xml", "<urls/>")},
        {"servers deliver",
         "skeleton_v1.xml",
         {"servers", "deliver", "ROOT/delivered", "md5"},
         "true\n",
         "true\n",
         0,
         put("storage/skeleton_v1.xml", "<application/>")},
        {"request-url",
         "request_urls_json.txt",
         {"request-url", "k", "--refresh"},
         "\"new\"\n",
         "\"old\"\n",
         0,
         [&server](const TemporaryFolder& root) {
             root.write("storage/request_urls_json.txt", oldUrls);
             root.write("host.json", "{\"configServer\": \"" + server.authority() + "\"}");
         }},
    };
}

std::vector<Obstacle> obstacles() {
    const auto link = [](std::string target) {
        return [target = std::move(target)](const TemporaryFolder& root, const std::string& path) {
            fs::create_directory(root.at("user"));
            fs::create_symlink(target, path);
        };
    };
    return {
        {"a full disk", "File too large", [](const TemporaryFolder&, const std::string&) {},
         smallDisk},
        {"a folder in its place", "Is a directory",
         [](const TemporaryFolder&, const std::string& path) { fs::create_directories(path); }},
        {"a link to a folder", "Is a directory", link("../storage")},
        {"a link in a circle", "Too many levels of symbolic links", link("../user/circle")},
        {"a link into a missing folder", "No such file or directory", link("none/file")},
        {"a link to a device", "not a regular file", link("/dev/full")},
        {"a pipe in its place", "not a regular file",
         [](const TemporaryFolder& root, const std::string& path) {
             fs::create_directory(root.at("user"));
             ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
         }},
        {"a folder in which no file can be made", "",
         [](const TemporaryFolder& root, const std::string&) {
             fs::create_symlink("/proc", root.at("user"));
         }},
        {"a file in place of the folder", "there is no path to write to",
         [](const TemporaryFolder& root, const std::string&) { root.write("user", ""); }, 0, false},
        {"a dangling link in place of the folder", "there is no path to write to",
         [](const TemporaryFolder& root, const std::string&) {
             fs::create_symlink("none", root.at("user"));
         },
         0, false},
    };
}

TEST(NothingStored, IsSaidInOneLineWhereverTheFileCannotBeWritten) {
    const LoopbackServer server("200 OK", urls);
    for (const Command& command : commands(server)) {
        for (const Obstacle& obstacle : obstacles()) {
            SCOPED_TRACE(command.name + " and " + obstacle.name);
            const TemporaryFolder root;
            const std::string path = root.at("user/" + command.file);
            command.prepare(root);
            obstacle.prepare(root, path);
            if (obstacle.cause.starts_with("Too many"))
                fs::create_symlink(command.file, root.at("user/circle"));
            std::vector<std::string> words = command.words;
            for (std::string& word : words) {
                if (word.starts_with("ROOT"))
                    word = root.path() + word.substr(4);
            }
            const ToolRun run = runOn(root, words, {.fileSize = obstacle.fileSize});
            EXPECT_EQ(run.output, obstacle.hasPath ? command.output : command.outputWithoutPath);
            EXPECT_EQ(run.status, command.status);
            // What cannot be written may not be readable either, which is another line.
            std::vector<std::string> lines = complaints(run);
            std::erase_if(lines, [](const std::string& line) { return !line.starts_with(begin); });
            EXPECT_THAT(lines,
                        ElementsAre(AllOf(
                            StartsWith(begin + (obstacle.hasPath ? path : command.file) + ": "),
                            EndsWith(obstacle.cause))));
        }
        SCOPED_TRACE(command.name);
        const TemporaryFolder root;
        command.prepare(root);
        std::vector<std::string> words = command.words;
        for (std::string& word : words) {
            if (word.starts_with("ROOT"))
                word = root.path() + word.substr(4);
        }
        EXPECT_THAT(complaints(runOn(root, words)), IsEmpty());
        EXPECT_TRUE(fs::exists(root.at("user/" + command.file)));
    }
}

// ---- Settings files that take no item --------------------------------------------------------

TEST(NothingStored, IsSaidWhereTheSettingsFileTakesNoItem) {
    struct Row {
        std::string name;
        std::optional<std::string> file;
        std::string cause;
    };
    std::string names = "<config><a>";
    for (int name = 0; name < 100'010; ++name)
        names += "<n" + std::to_string(name) + "/>";
    const std::vector<Row> rows = {
        {"missing", std::nullopt, "No such file or directory"},
        {"empty", "", ""},
        {"blank", " \n", ""},
        {"cut", "<config><a><x>1</x></a></con", "Line 1, column "},
        {"two files in one", "<config/><config/>", "Line 1, column "},
        {"plain text", "theme=white\n", "Line 1, column "},
        {"in the wrong encoding", "<config><a>\xff</a></config>", ""},
        {"with an internal subset", "<!DOCTYPE config [<!ENTITY e 'x'>]><config/>",
         "Line 1, column "},
        {"without a root element", "<!-- nothing -->", ""},
        {"with a root element of another name", "<settings/>",
         "the root element is not named config"},
        {"of too many names", names + "</a></config>", ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const TemporaryFolder root;
        const std::string path = root.at("user/app.xml");
        if (row.file)
            root.write("user/app.xml", *row.file);
        const ToolRun run = runOn(root, {"settings", "set", "app.xml", "a", "x", "2"});
        EXPECT_EQ(run.output, "true\n");
        EXPECT_EQ(run.status, 0);
        EXPECT_THAT(complaints(run), ElementsAre(StartsWith(begin + path + ": " + row.cause)));
        EXPECT_EQ(runOn(root, {"settings", "get", "app.xml", "a", "x"}).output, "null\n");
    }
    const TemporaryFolder root;
    root.write("user/app.xml", "<config/>");
    fs::resize_file(root.at("user/app.xml"), std::size_t{257} * 1024 * 1024);
    EXPECT_THAT(complaints(runOn(root, {"settings", "set", "app.xml", "a", "x", "2"})),
                ElementsAre(StartsWith(begin + root.at("user/app.xml") + ": larger than ")));
}

// Also where the root element has another name and the file cannot be written.
TEST(NothingStored, IsSaidOnceForTwoReasons) {
    const TemporaryFolder root;
    root.write("storage/app.xml", "<settings>" + large + "</settings>");
    const ToolRun run =
        runOn(root, {"settings", "set", "app.xml", "a", "x", "2"}, {.fileSize = smallDisk});
    EXPECT_EQ(run.output, "true\n");
    EXPECT_THAT(complaints(run), ElementsAre(begin + root.at("storage/app.xml") +
                                             ": the root element is not named config"));
}

TEST(NothingStored, IsSaidOfWhatIsRefused) {
    const TemporaryFolder root;
    root.write("storage/app.xml", "<config><a><x>1</x></a></config>");
    root.write("storage/pages.xml", "<urls/>");
    root.write("storage/skeleton_v1.xml", "<application/>");
    root.write("bad", "<urls><url></urls>");
    root.write("empty", "");
    const std::string bad = root.at("bad");
    struct Row {
        std::vector<std::string> words;
        std::string output;
        std::string reason;
    };
    const std::string app = root.at("storage/app.xml");
    const std::vector<Row> rows = {
        {{"settings", "set", "app.xml", "a", "1 2", "t"},
         "false\n",
         app + ": \"1 2\" cannot be the name of an element"},
        {{"settings", "set", "app.xml", "", "x", "t"},
         "false\n",
         app + ": \"\" cannot be the name of an element"},
        {{"settings", "set", "app.xml", "a", std::string(60'000, 'n'), "t"},
         "false\n",
         app + ": with the new text it could not be read again"},
        {{"settings", "set", "app.xml", "a", "x", "t", "--readonly"},
         "false\n",
         "--readonly was given"},
        {{"settings", "set", "", "a", "x", "t"}, "null\n", "there is no path for ''"},
        {{"settings", "set", "../app.xml", "a", "x", "t"},
         "null\n",
         "there is no path for '../app.xml'"},
        {{"web-page", "pages.xml", "--replace", bad}, "false\n", bad + ": Line 1: "},
        {{"web-page", "", "--replace", bad}, "null\n", "there is no path for ''"},
        {{"web-page", "pages.xml", "--replace", "-"}, "false\n", "standard input: "},
        {{"servers", "deliver", bad, "md5"}, "false\n", bad + ": Line 1: "},
        {{"servers", "deliver", root.at("empty"), "md5"},
         "false\n",
         root.at("empty") + ": it is empty"},
    };
    for (const Row& row : rows) {
        const ToolRun run = runOn(root, row.words);
        EXPECT_EQ(run.output, row.output) << row.reason;
        EXPECT_EQ(run.status, 1) << row.reason;
        EXPECT_THAT(complaints(run), ElementsAre(StartsWith(begin + row.reason)));
        EXPECT_FALSE(fs::exists(root.at("user"))) << row.reason;
    }
}

// ---- Downloads -------------------------------------------------------------------------------

TEST(NothingStored, IsSaidOfADownloadThatGivesNoList) {
    struct Row {
        std::string body;
        std::string reason;
    };
    const std::vector<Row> rows = {
        {"", "line 1, column 1: "},
        {"<html>Not here</html>", "line 1, column 1: "},
        {"[]", "not a JSON object"},
        {"{\"urlConfigList\":[]}", "the list has no digest"},
        {"{\"md5Value\":\"old\"}", "other entries than the stored list, but the same digest"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.body);
        const TemporaryFolder root;
        const LoopbackServer server("200 OK", row.body);
        root.write("storage/request_urls_json.txt", oldUrls);
        root.write("host.json", "{\"configServer\": \"" + server.authority() + "\"}");
        const ToolRun run = runOn(root, {"request-url", "k", "--refresh"});
        EXPECT_EQ(run.output, "\"old\"\n");
        EXPECT_EQ(run.status, 0);
        EXPECT_THAT(
            complaints(run),
            ElementsAre(StartsWith(begin + "http://" + server.authority() +
                                   "/mac/mac_free_free_request_urls_json.txt: " + row.reason)));
        EXPECT_FALSE(fs::exists(root.at("user")));
    }
}

TEST(NothingStored, IsSaidOfADownloadThatFails) {
    const TemporaryFolder root;
    root.write("storage/request_urls_json.txt", oldUrls);
    root.write("host.json", R"({"configServer": "127.0.0.1:1"})");
    const std::string url = "http://127.0.0.1:1/mac/mac_free_free_request_urls_json.txt: ";
    const ToolRun run = runOn(root, {"request-url", "k", "--refresh"});
    EXPECT_EQ(run.output, "\"old\"\n");
    EXPECT_THAT(complaints(run), ElementsAre(AllOf(StartsWith(begin + url), HasSubstr("connect"))));
    // The stored file is in order, and nothing else is said of it.
    const ToolRun shown = runOn(root, {"show", "request-urls", "--refresh"});
    EXPECT_THAT(complaints(shown),
                ElementsAre(AllOf(StartsWith("ygconfig: " + url), HasSubstr("connect"))));
    const LoopbackServer server("200 OK", "<html>");
    root.write("host.json", "{\"configServer\": \"" + server.authority() + "\"}");
    EXPECT_THAT(complaints(runOn(root, {"show", "request-urls", "--refresh"})),
                ElementsAre(StartsWith("ygconfig: http://" + server.authority() + "/mac/")));
}

// ---- Whatever there is of memory -------------------------------------------------------------

// Programs under sanitizers need an address space without a limit.
TEST(NothingStored, IsSaidOrTheTextIsStoredWithEachSizeOfMemory) {
    if (yg::testing::isSanitized)
        GTEST_SKIP();
    const TemporaryFolder root;
    const std::string before = "<config><a><x>old</x></a><b>" + large + large + "</b></config>";
    int stored = 0;
    int complained = 0;
    for (std::size_t memory = 16; memory <= 400; memory += memory < 40 ? 3 : 60) {
        root.write("user/app.xml", before);
        const ToolRun run = runOn(root, {"settings", "set", "app.xml", "a", "x", "new"},
                                  {.memory = memory * 1024 * 1024});
        const bool isNew =
            contentOf(root.at("user/app.xml")).find("<x>new</x>") != std::string::npos;
        EXPECT_EQ(isNew, run.status == 0 && run.errors.empty()) << memory << run.errors;
        (isNew ? stored : complained)++;
    }
    EXPECT_GT(stored, 0);
    EXPECT_GT(complained, 0);
}

}  // namespace
