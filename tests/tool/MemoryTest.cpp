// SPDX-License-Identifier: MIT
//
// Small files of which the tool makes a long text: the records are few, and each is shown in many
// places. The text must not be in memory as a whole.
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "LargeInput.h"
#include "files/TemporaryFolder.h"
#include "tool/ToolRun.h"

namespace {

using yg::files::TemporaryFolder;
using yg::testing::OutputTo;
using yg::testing::runTool;
using yg::testing::ToolRun;

/// A sanitizer needs more for itself alone.
constexpr std::size_t memory = yg::testing::isSanitized ? 0 : 200'000'000;
/// And makes everything slower.
constexpr std::size_t leastText = yg::testing::isSanitized ? 30'000'000 : 300'000'000;

std::string repeated(std::string_view text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

/// Expects that the memory suffices for a text that is longer.
void expectLongText(const TemporaryFolder& root, std::vector<std::string> words) {
    words.insert(words.end(), {"--root", root.path()});
    const ToolRun run = runTool(words, {.outputTo = OutputTo::count, .memory = memory});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_GT(run.outputSize, leastText);
}

/// A style "s" that holds a panel of a thousand others in many places.
void writeStyle(const TemporaryFolder& root) {
    root.write(
        "base_optimize/reuse_panels.xml",
        "<r><reuse_panel name='r'>" + repeated("<panel name='p'/>", 1'000) + "</reuse_panel></r>");
    root.write("config/magic_panels.xml", "<m/>");
    root.write("config/custompage_template.xml",
               "<s><style name='s'><panel>" +
                   repeated("<reuse_panel name='r'/>", leastText / 750'000) +
                   "</panel></style></s>");
}

TEST(Memory, OfDumpLayoutIsThatOfTheRecords) {
    const TemporaryFolder root;
    writeStyle(root);
    expectLongText(root, {"dump", "layout"});
}

TEST(Memory, OfDumpStyleIsThatOfTheRecords) {
    const TemporaryFolder root;
    writeStyle(root);
    expectLongText(root, {"dump", "style", "s"});
}

TEST(Memory, OfShowStyleIsThatOfTheRecords) {
    const TemporaryFolder root;
    constexpr std::size_t levels = 200;
    // A line of the tree is indented by up to five bytes for each level.
    root.write("base_optimize/reuse_panels.xml",
               "<r><reuse_panel name='r'>" + repeated("<panel>", levels) +
                   repeated("<panel name='p'/>", 700) + repeated("</panel>", levels) +
                   "</reuse_panel></r>");
    root.write("config/magic_panels.xml", "<m/>");
    root.write("config/custompage_template.xml",
               "<s><style name='s'><panel>" +
                   repeated("<reuse_panel name='r'/>", leastText / 400'000) +
                   "</panel></style></s>");
    expectLongText(root, {"show", "style", "s"});
}

TEST(Memory, OfShowEventsIsThatOfTheRecords) {
    const TemporaryFolder root;
    std::string events;
    for (std::size_t i = 0; i <= leastText / 1'000'000; ++i)
        events += "<event name='e" + std::to_string(i) + "' command='c'/>";
    root.write("config/events.xml", "<event_list><command_event><command name='c' change_style='" +
                                        std::string(1'000'000, 's') +
                                        "'/></command_event><element_event name='g'>" + events +
                                        "</element_event></event_list>");
    expectLongText(root, {"show", "events"});
}

}  // namespace
