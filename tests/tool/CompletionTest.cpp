// SPDX-License-Identifier: MIT
//
// Completion in the shells themselves. tests/tool/completion has a driver for each.
#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/TemporaryFolder.h"
#include "ygconfig/commandline/Usage.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::UnorderedElementsAre;
using yg::files::TemporaryFolder;

using Lines = std::vector<std::string>;

const std::string project = YG_PROJECT_FOLDER;
const std::string root = " --root " + project + "/examples/terminal ";

struct Shell {
    std::string name;
    std::string command;  ///< runs the driver
    std::string script;   ///< in completions/
};

void PrintTo(const Shell& shell, std::ostream* out) {
    *out << shell.name;
}

std::string quoted(const std::string& text) {
    std::string whole = "'";
    for (const char each : text)
        whole.append(each == '\'' ? "'\\''" : std::string(1, each));
    return whole + "'";
}

bool isInstalled(const Shell& shell) {
    return std::system(("command -v " + shell.name + " >/dev/null").c_str()) == 0;
}

class Completion : public testing::TestWithParam<Shell> {
protected:
    void SetUp() override {
        if (!isInstalled(GetParam()))
            GTEST_SKIP() << GetParam().name << " is not installed";
    }

    bool isFish() const { return GetParam().name == "fish"; }

    /// What is completed at the "<TAB>" of each line, in a folder that must stay empty but for
    /// what the shell keeps in its home.
    std::map<std::string, Lines> complete(const Lines& lines) const {
        const TemporaryFolder folder;
        folder.makeFolder("home");
        folder.makeFolder("here");
        const std::string tool = YG_TOOL;
        std::string command = "cd " + quoted(folder.at("here")) + " && env -u XDG_CONFIG_HOME " +
                              "-u XDG_DATA_HOME HOME=" + quoted(folder.at("home")) +
                              " LC_ALL=C.UTF-8 PATH=" + quoted(tool.substr(0, tool.rfind('/'))) +
                              ":$PATH " + GetParam().command +
                              quoted(project + "/tests/tool/completion/drive." + GetParam().name) +
                              " " + quoted(project + "/completions/" + GetParam().script);
        for (const std::string& line : lines)
            command += " " + quoted(line);
        FILE* const pipe = ::popen((command + " 2>&1 </dev/null").c_str(), "r");
        std::string output;
        std::array<char, 4096> part{};
        while (std::fgets(part.data(), part.size(), pipe))
            output += part.data();
        EXPECT_EQ(::pclose(pipe), 0) << output;
        EXPECT_THAT(folder.names("here"), IsEmpty());
        std::map<std::string, Lines> completed;
        std::string line;
        std::istringstream text(output);
        for (std::string each; std::getline(text, each);) {
            if (each.starts_with("> "))
                completed[line = each.substr(2)] = {};
            else
                completed[line].push_back(each);
        }
        EXPECT_EQ(completed.size(), lines.size()) << output;
        return completed;
    }

    Lines complete(const std::string& line) const { return complete(Lines{line}).begin()->second; }
};

TEST_P(Completion, KnowsEachCommandAndOption) {
    const auto usages = yg::tool::usages();
    const auto lineOf = [](const yg::tool::CommandUsage& usage) {
        return "ygconfig" + std::string(usage.command->words.empty() ? "" : " ") +
               std::string(usage.command->words);
    };
    Lines lines;
    for (const auto& usage : usages) {
        lines.push_back(lineOf(usage) + " -<TAB>");
        if (!usage.below.empty())
            lines.push_back(lineOf(usage) + " <TAB>");
    }
    auto completed = complete(lines);
    for (const auto& usage : usages) {
        Lines names;
        for (const auto& option : usage.options) {
            for (const std::string& name : option.names)
                names.push_back(name);
        }
        EXPECT_THAT(completed[lineOf(usage) + " -<TAB>"],
                    testing::UnorderedElementsAreArray(names));
        EXPECT_THAT(completed[lineOf(usage) + " <TAB>"], IsSupersetOf(usage.below));
    }
}

TEST_P(Completion, OfAWordIsWhatBeginsSo) {
    EXPECT_THAT(complete("ygconfig ev<TAB>"), ElementsAre("event"));
    EXPECT_THAT(complete("ygconfig dump ev<TAB>"), ElementsAre("events"));
    EXPECT_THAT(complete("ygconfig event ev<TAB>"), Not(Contains("event")));
    EXPECT_THAT(complete("ygconfig lint --fa<TAB>"), ElementsAre("--fail-on"));
    EXPECT_THAT(complete("ygconfig dump layout -- --fa<TAB>"), IsEmpty());
}

TEST_P(Completion, OfChoicesListsThem) {
    const auto severities = UnorderedElementsAre("error", "warning", "info", "never");
    EXPECT_THAT(complete("ygconfig lint --fail-on <TAB>"), severities);
    EXPECT_THAT(complete("ygconfig lint --format js<TAB>"), ElementsAre("json"));
    EXPECT_THAT(complete("ygconfig names web-page-<TAB>"), ElementsAre("web-page-file"));
    EXPECT_THAT(complete("ygconfig lint --format=js<TAB>"),
                ElementsAre(isFish() ? "--format=json" : "json"));
}

TEST_P(Completion, OfFilesAndFoldersIsTheShells) {
    if (isFish()) {
        const std::string in = project + "/exam";
        EXPECT_THAT(complete("ygconfig diff " + in + "<TAB>"), ElementsAre(in + "ples/"));
        EXPECT_THAT(complete("ygconfig lint --root " + in + "<TAB>"), ElementsAre(in + "ples/"));
        EXPECT_THAT(complete("ygconfig report -o " + project + "/READ<TAB>"),
                    ElementsAre(project + "/README.md"));
        EXPECT_THAT(complete("ygconfig diff " + project + "/READ<TAB>"), IsEmpty());
        return;
    }
    EXPECT_THAT(complete("ygconfig diff <TAB>"), ElementsAre("<folders>"));
    EXPECT_THAT(complete("ygconfig --root <TAB>"), ElementsAre("<folders>"));
    EXPECT_THAT(complete("ygconfig lint --root=<TAB>"), ElementsAre("<folders>"));
    EXPECT_THAT(complete("ygconfig report -o <TAB>"), ElementsAre("<files>"));
    EXPECT_THAT(complete("ygconfig check-delivery servers <TAB>"), ElementsAre("<files>"));
    EXPECT_THAT(complete("ygconfig lint --palette <TAB>"), IsEmpty());
}

TEST_P(Completion, OfNamesTakesThemFromTheRoot) {
    EXPECT_THAT(complete("ygconfig event" + root + "watch_l<TAB>"), ElementsAre("watch_list"));
    EXPECT_THAT(complete("ygconfig" + root + "event watch_list sel<TAB>"), Contains("select"));
    EXPECT_THAT(
        complete("ygconfig dump style" + root + "行情报价<TAB>"),
        UnorderedElementsAre("行情报价", "行情报价-feed", "行情报价-notice", "行情报价-report"));
    EXPECT_THAT(complete("ygconfig settings get" + root + "app_config.xml appearance the<TAB>"),
                ElementsAre("theme"));
    EXPECT_THAT(complete("ygconfig explain setting" + root + "app_config.xml appearance the<TAB>"),
                ElementsAre("theme"));
    EXPECT_THAT(complete("ygconfig dump settings" + root + "<TAB>"), ElementsAre("app_config.xml"));
    EXPECT_THAT(complete("ygconfig image" + root + "log<TAB>"), ElementsAre("logo"));
    EXPECT_THAT(complete("ygconfig lint" + root + "--rule unknown-attr<TAB>"),
                ElementsAre("unknown-attribute"));
    EXPECT_THAT(complete("ygconfig event --root=" + project + "/examples/terminal watch_l<TAB>"),
                ElementsAre("watch_list"));
    EXPECT_THAT(complete("ygconfig event --root /none watch_l<TAB>"), IsEmpty());
    EXPECT_THAT(complete("ygconfig event" + root + "watch_list select s<TAB>"), IsEmpty());
    if (!isFish()) {
        EXPECT_THAT(complete("ygconfig event watch_l<TAB>" + root), ElementsAre("watch_list"));
    }
}

TEST_P(Completion, GoesOnBehindAColon) {
    const bool isBash = GetParam().name == "bash";
    EXPECT_THAT(complete("ygconfig simulate servers" + root + "--without 192.0.2.14:<TAB>"),
                ElementsAre(isBash ? "9211" : "192.0.2.14:9211"));
}

/// A root whose commands have these names.
void writeCommands(const TemporaryFolder& folder, const Lines& names) {
    std::string text = "<event_list><command_event>";
    for (const std::string& name : names)
        text += "<command name=\"" + name + "\"/>";
    folder.write("config/events.xml", text + "</command_event></event_list>");
}

TEST_P(Completion, KeepsNamesAsTheyStand) {
    const TemporaryFolder folder;
    writeCommands(folder,
                  {"n two words", "n it's", "n &quot;", "n $(touch x)", "n `touch x`", "n ;touch x",
                   "n\\b", "n*", "n~", "n&amp;", "n行情", "n=:", "-dash", "n&#10;line", "n#"});
    const std::string line = "ygconfig command --root " + folder.path() + " ";
    const auto names =
        UnorderedElementsAre("n two words", "n it's", "n \"", "n $(touch x)", "n `touch x`",
                             "n ;touch x", "n\\b", "n*", "n~", "n&", "n行情", "n=:", "n#");
    EXPECT_THAT(complete(line + "n<TAB>"), names);
    EXPECT_THAT(complete(line + "<TAB>"), names);
    EXPECT_THAT(complete(line + "'n<TAB>"), names);
    EXPECT_THAT(complete(line + "\"n<TAB>"), names);
    EXPECT_THAT(complete(line + "n\\ t<TAB>"), ElementsAre("n two words"));
    EXPECT_THAT(complete(line + "-- -d<TAB>"), ElementsAre("-dash"));
}

TEST_P(Completion, RunsNothingThatTheLineHolds) {
    for (const std::string word : {"$(touch x)", "'$(touch x)'", "\"$(touch x)\"", "`touch x`",
                                   "';touch x'", "'a[$(touch x)]'", "(touch x)", "'(touch x)'"}) {
        complete(Lines{"ygconfig " + word + " <TAB>", "ygconfig event " + word + " <TAB>",
                       "ygconfig event --root " + word + " <TAB>",
                       "ygconfig event --root=" + word + " a<TAB>",
                       "ygconfig --x=" + word + " event <TAB>", "ygconfig lint " + word + "<TAB>",
                       word + "/ygconfig event <TAB>"});
    }
}

INSTANTIATE_TEST_SUITE_P(Shells, Completion,
                         testing::Values(Shell{"bash", "bash --norc ", "ygconfig.bash"},
                                         Shell{"zsh", "zsh -f ", "_ygconfig"},
                                         Shell{"fish", "fish --no-config ", "ygconfig.fish"}),
                         [](const auto& each) { return each.param.name; });

}  // namespace
