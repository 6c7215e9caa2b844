// SPDX-License-Identifier: MIT
//
// The committed manual pages and completion.
#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "manual/Manual.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

const fs::path project = YG_PROJECT_FOLDER;

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Manual, IsWhatTheCommandsGive) {
    std::set<std::string> expected;
    for (const auto& [name, text] : yg::manual::manual(yg::tool::usages())) {
        EXPECT_EQ(contentOf(project / name), text) << name << ": run scripts/describe";
        expected.insert(name);
    }
    for (const std::string_view folder : yg::manual::generatedFolders) {
        for (const fs::directory_entry& entry : fs::directory_iterator(project / folder)) {
            EXPECT_TRUE(expected.contains(fs::relative(entry.path(), project).string()))
                << entry.path() << ": run scripts/describe";
        }
    }
}

/// What a program prints on both streams.
std::string printedBy(const std::string& command) {
    std::array<char, 4096> part{};
    std::string text;
    FILE* const pipe = ::popen((command + " 2>&1").c_str(), "r");
    while (std::fgets(part.data(), part.size(), pipe))
        text += part.data();
    ::pclose(pipe);
    return text;
}

bool isInstalled(const std::string& program) {
    return printedBy("command -v " + program) != "";
}

/// Runs a program on each page.
template <class Check>
void forEachPage(const std::string& command, const Check& check) {
    for (const fs::directory_entry& entry : fs::directory_iterator(project / "docs/man"))
        check(entry.path().filename().string(),
              printedBy(command + " '" + entry.path().string() + "'"));
}

TEST(ManualPages, HaveNoFaultForMandoc) {
    if (!isInstalled("mandoc"))
        GTEST_SKIP() << "mandoc is not installed";
    forEachPage("mandoc -T lint -W warning", [](const std::string& name, std::string text) {
        // A date would differ from build to build.
        const std::size_t undated = text.find("WARNING: missing date");
        if (undated != std::string::npos) {
            const std::size_t begin = text.rfind('\n', undated) + 1;
            text.erase(begin, text.find('\n', undated) + 1 - begin);
        }
        EXPECT_EQ(text, "") << name;
    });
}

TEST(ManualPages, HaveNoFaultForGroff) {
    if (!isInstalled("groff") || !isInstalled("preconv"))
        GTEST_SKIP() << "groff is not installed";
    forEachPage(
        "groff -k -man -Tutf8 -ww -z",
        [](const std::string& name, const std::string& text) { EXPECT_EQ(text, "") << name; });
}

TEST(ManualPages, ShowEachCommandAndOption) {
    if (!isInstalled("mandoc"))
        GTEST_SKIP() << "mandoc is not installed";
    std::map<std::string, std::string> shown;
    forEachPage("mandoc -T utf8 -O width=500", [&](const std::string& name, std::string text) {
        // Bold and italic letters are overstruck.
        for (std::size_t at = 0; (at = text.find('\b', at)) != std::string::npos;)
            text.erase(--at, 2);
        shown[name] = text;
    });
    for (const auto& usage : yg::tool::usages()) {
        const std::string words(usage.command->words);
        const std::string first = words.substr(0, words.find(' '));
        const std::string& page = shown[first.empty() ? "ygconfig.1" : "ygconfig-" + first + ".1"];
        EXPECT_THAT(shown["ygconfig.1"], HasSubstr("ygconfig " + words)) << words;
        EXPECT_THAT(page, HasSubstr(words.empty() ? "ygconfig" : "ygconfig " + words));
        for (const auto& option : usage.options) {
            for (const std::string& name : option.names)
                EXPECT_THAT(page, HasSubstr(name)) << words;
            EXPECT_THAT(page, HasSubstr(option.help)) << words;
        }
        for (const auto& operand : usage.operands)
            EXPECT_THAT(page, HasSubstr(operand.help)) << words;
        for (std::size_t begin = 0; begin < usage.command->examples.size();) {
            const std::size_t end = usage.command->examples.find('\n', begin);
            EXPECT_THAT(
                page,
                HasSubstr(std::string(usage.command->examples.substr(begin + 2, end - begin - 2))));
            begin = end + 1;
        }
        for (const char* section : {"NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "EXIT STATUS",
                                    "EXAMPLES", "FILES", "SEE ALSO"})
            EXPECT_THAT(page, HasSubstr(std::string("\n") + section + "\n")) << words;
    }
}

}  // namespace
