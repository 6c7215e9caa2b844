// SPDX-License-Identifier: MIT
//
// Whole runs on palettes: dump palette, color, font, show palette, image. The runs see the fonts of
// the build only.
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "YGConfigManager/graphics/Image.h"

#include "files/FaultySaves.h"
#include "files/ScopedFileLayer.h"
#include "files/TemporaryFolder.h"
#include "graphics/TestFonts.h"
#include "tool/Golden.h"
#include "tool/ToolRun.h"
#include "ygconfig/Run.h"
#include "ygconfig/commandline/CommandLine.h"

namespace {

using nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using yg::Image;
using yg::files::contentOf;
using yg::files::TemporaryFolder;
using yg::testing::isGolden;
using yg::testing::OutputTo;
using yg::testing::ScopedFileLayer;
using yg::testing::ToolRun;
using yg::testing::ToolSetting;

const std::string sample = "examples/terminal";
const std::string light = "storage/palette_white.xml";
const std::string dark = "storage/palette_black.xml";

ToolRun runTool(const std::vector<std::string>& words, ToolSetting setting = {}) {
    setting.environment.push_back("FONTCONFIG_FILE=" + yg::testing::testFontPath("fonts.conf"));
    return yg::testing::runTool(words, setting);
}

ToolRun runOn(const TemporaryFolder& root, std::vector<std::string> words) {
    words.insert(words.begin(), {"--root", root.path()});
    return runTool(words);
}

std::string palette(const std::string& content) {
    return "<ROOT><SWPALETTE>" + content + "</SWPALETTE></ROOT>";
}

/// Writes an image of these numbers of pixels, of which `density` make a point.
void writeImage(const TemporaryFolder& root, const std::string& name, std::size_t width,
                std::size_t height, double density = 1) {
    const auto image = Image::fromPixels(
        width, height, std::vector<std::uint8_t>(width * height * 4),
        static_cast<double>(width) / density, static_cast<double>(height) / density);
    root.write("images/" + name, *image->toPng());
}

/// Where the colours, fonts and images of a palette show.
struct Root : TemporaryFolder {
    Root() {
        write(light, palette(R"(
            <COLORES><c NAME="涨" R="255" A="0.5"/></COLORES>
            <FONTS><f NAME="small" HEIGHT="9.5" FACE="YG Test Latin"/></FONTS>
            <BITMAPS><i NAME="strip" PATH="strip.png"/></BITMAPS>
            <APP_MAP><COLORES><k KEY="价格" VALUE="涨"/></COLORES>
            <FONTS><k KEY="title" VALUE="small"/></FONTS></APP_MAP>)"));
        writeImage(*this, "strip.png", 80, 20);
    }
};

const std::string fontLog = "palette fonts is empty\npalette font names is empty\n";

TEST(DumpPalette, WritesEachMapOfTheLoader) {
    const Root root;
    const ToolRun run = runOn(root, {"dump", "palette", "--palette-style", "0"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, fontLog);
    EXPECT_EQ(run.output, R"({
  "currentPaletteStyle": 0,
  "customColors": {
    "涨": {
      "red": 1.0,
      "green": 0.0,
      "blue": 0.0,
      "alpha": 0.5
    }
  },
  "keyColorNames": {
    "价格": "涨"
  },
  "customFonts": {
    "small": {
      "faceName": "YG Test Latin",
      "pointSize": 9.5
    }
  },
  "keyFontNames": {
    "title": "small"
  },
  "customImages": {
    "strip": {
      "width": 80.0,
      "height": 20.0,
      "pixelWidth": 80,
      "pixelHeight": 20
    }
  }
}
)");
}

TEST(DumpPalette, IsNullWithoutALoader) {
    const Root root;
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"dump", "palette"}, {"color", "价格"}, {"font", "title"}}) {
        for (const char* style : {"1", "2", "-1"}) {
            std::vector<std::string> all = words;
            all.insert(all.end(), {"--palette-style", style});
            const ToolRun run = runOn(root, all);
            EXPECT_EQ(run.status, 1) << words.front() << style;
            EXPECT_EQ(run.output, "null\n") << words.front() << style;
        }
    }
}

TEST(DumpPalette, WantsAStyleThatIsANumber) {
    const Root root;
    for (const char* style : {"", "x", "1x", "128", "0.5"}) {
        const ToolRun run = runOn(root, {"dump", "palette", "--palette-style", style});
        EXPECT_EQ(run.status, 2) << style;
        EXPECT_EQ(run.output, "") << style;
        EXPECT_EQ(run.errors, std::string("ygconfig dump palette: --palette-style: '") + style +
                                  "' is not a whole number from -128 to 127\n");
    }
}

TEST(DumpPalette, OfTheSampleHasEveryColourFontAndImageThatItNames) {
    std::vector<json> themes;
    for (const char* style : {"0", "1"}) {
        const ToolRun run =
            runTool({"dump", "palette", "--palette-style", style, "--root", sample});
        EXPECT_EQ(run.errors, fontLog);
        themes.push_back(json::parse(run.output));
    }
    for (const json& theme : themes) {
        EXPECT_GE(theme["customColors"].size(), 60);
        EXPECT_GE(theme["keyColorNames"].size(), 120);
        EXPECT_EQ(theme["customFonts"].size(), 12);
        EXPECT_GE(theme["customImages"].size(), 30);
        for (const auto& [key, name] : theme["keyColorNames"].items())
            EXPECT_TRUE(theme["customColors"].contains(name)) << key;
        for (const auto& [key, name] : theme["keyFontNames"].items())
            EXPECT_TRUE(theme["customFonts"].contains(name)) << key;
    }
    EXPECT_EQ(themes[0]["keyColorNames"], themes[1]["keyColorNames"]);
    EXPECT_EQ(themes[0]["keyFontNames"], themes[1]["keyFontNames"]);
    EXPECT_EQ(themes[0]["customImages"], themes[1]["customImages"]);
}

TEST(PaletteColor, IsThatOfTheKeyOrRed) {
    const Root root;
    const auto colorOf = [&](const std::string& key) {
        const ToolRun run = runOn(root, {"color", "--palette-style=0", "--", key});
        EXPECT_EQ(run.status, 0);
        return json::parse(run.output);
    };
    EXPECT_EQ(colorOf("价格"), json({{"red", 1}, {"green", 0}, {"blue", 0}, {"alpha", 0.5}}));
    EXPECT_EQ(colorOf("-key"), json({{"red", 1}, {"green", 0}, {"blue", 0}, {"alpha", 1}}));
}

TEST(PaletteFont, IsThatOfTheKeyOrTheSystemFont) {
    const Root root;
    const auto fontOf = [&](const std::string& key) {
        const ToolRun run = runOn(root, {"font", "--palette-style=0", "--", key});
        EXPECT_EQ(run.status, 0);
        return json::parse(run.output);
    };
    EXPECT_EQ(fontOf("title"), json({{"faceName", "YG Test Latin"}, {"pointSize", 9.5}}));
    EXPECT_EQ(fontOf("-key"), json({{"faceName", "YG Test Square"}, {"pointSize", 12}}));
}

// ---- show palette ------------------------------------------------------------------------------

TEST(ShowPalette, OfTheSampleIsTheFile) {
    const ToolRun run = runTool({"show", "palette", "--root", sample});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_TRUE(isGolden(run.output, "show-palette.txt"));
}

TEST(ShowPalette, MarksWhatAThemeLacks) {
    const TemporaryFolder root;
    root.write(light, palette(R"(
        <COLORES><c NAME="a" R="255" A="0.256"/><c NAME="b"/></COLORES>
        <FONTS><f NAME="f" HEIGHT="9.5" FACE="YG Test Latin"/></FONTS>
        <BITMAPS><i NAME="i" PATH="i.png"/><i NAME="j" PATH="none.png"/></BITMAPS>
        <APP_MAP>
            <COLORES><k KEY="good" VALUE="a"/><k KEY="wrong" VALUE="c"/><k KEY="" VALUE=""/></COLORES>
            <FONTS><k KEY="good" VALUE="f"/><k KEY="wrong" VALUE="a&#10;"/></FONTS>
        </APP_MAP>)"));
    root.write(
        dark,
        palette("<COLORES><c NAME='a'/></COLORES><BITMAPS><i NAME='k' PATH='i.png'/></BITMAPS>"));
    writeImage(root, "i.png", 5, 2, 2);
    EXPECT_EQ(runOn(root, {"show", "palette"}).output, R"(Colours  2  light          dark

a           #FF0000 25.6%  #000000
b           #000000        none

Colour keys  3  light              dark

good            a                  red: no such key
wrong           red: no colour c   red: no such key
""              red: no colour ""  red: no such key

Fonts  1  light              dark

f         YG Test Latin 9.5  none

Font keys  2  light                    dark

good          f                        system font: no such key
wrong         system font: no font a�  system font: no such key

Images  2  light                dark

i          2.5×1 of 5×2 pixels  none
k          none                 2.5×1 of 5×2 pixels
)");
}

TEST(ShowPalette, FoldsWhatIsWiderThanItsColumn) {
    const TemporaryFolder root;
    const std::string name(60, 'n');
    for (const auto& file : {light, dark})
        root.write(file, palette("<APP_MAP><FONTS><k KEY='long' VALUE='" + name +
                                 "'/><k KEY='0' VALUE='a'/></FONTS></APP_MAP>"));
    EXPECT_THAT(runOn(root, {"show", "palette"}).output,
                HasSubstr(R"(Font keys  2  light                             dark

long          system font: no font              system font: no font
                nnnnnnnnnnnnnnnnnnnnnnnnnnnnnn    nnnnnnnnnnnnnnnnnnnnnnnnnnnnnn
                nnnnnnnnnnnnnnnnnnnnnnnnnnnnnn    nnnnnnnnnnnnnnnnnnnnnnnnnnnnnn
0             system font: no font a            system font: no font a
)"));
}

TEST(ShowPalette, ShowsOneThemeWithoutTheOther) {
    const Root root;
    const ToolRun run = runOn(root, {"show", "palette"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, HasSubstr("Colours  1  light        dark (not loaded)\n\n"
                                      "涨          #FF0000 50%\n"));
    const TemporaryFolder empty;
    const ToolRun none = runOn(empty, {"show", "palette"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.output, "");
    EXPECT_THAT(none.errors, EndsWith("\nygconfig: no palette can be loaded\n"));
}

TEST(ShowPalette, DrawsSwatchesOnATerminalThatWantsColours) {
    const Root root;
    const auto shownWith = [&](std::vector<std::string> environment) {
        return runTool({"show", "palette", "--root", root.path()},
                       {.outputTo = OutputTo::terminal, .environment = std::move(environment)})
            .output;
    };
    // Half transparent on white.
    EXPECT_THAT(shownWith({"TERM=xterm"}),
                HasSubstr("\x1b[48;2;255;128;128m    \x1b[0m #FF0000 50%"));
    EXPECT_THAT(shownWith({"TERM=xterm", "NO_COLOR=1"}), Not(HasSubstr("\x1b")));
    EXPECT_THAT(runOn(root, {"show", "palette"}).output, Not(HasSubstr("\x1b")));
}

TEST(ShowPalette, AlignsTheColumnsWithSwatchesToo) {
    const Root root;
    root.write(dark, palette("<COLORES><c NAME='涨'/></COLORES>"));
    const std::string text =
        runTool({"show", "palette", "--root", root.path()},
                {.outputTo = OutputTo::terminal, .environment = {"TERM=xterm"}})
            .output;
    EXPECT_THAT(text, HasSubstr("\x1b[1;4mColours\x1b[0m  1  light             dark\n"));
    EXPECT_THAT(text, HasSubstr(" #FF0000 50%  \x1b[48;2;0;0;0m"));
}

// ---- image -------------------------------------------------------------------------------------

/// The size in points of the PNG that the options give; empty when there is none.
std::vector<double> sizeOf(const std::vector<std::string>& options) {
    const Root root;
    std::vector<std::string> words = {"image", "strip", "-o", root.at("out.png")};
    words.insert(words.end(), options.begin(), options.end());
    const ToolRun run = runOn(root, words);
    const auto image = Image::fromFile(root.at("out.png"));
    EXPECT_EQ(run.status, image ? 0 : 1);
    const json answer = json::parse(run.output);
    if (!image) {
        EXPECT_EQ(answer, nullptr);
        EXPECT_FALSE(std::filesystem::exists(root.at("out.png")));
        return {};
    }
    EXPECT_EQ(answer["width"], image->width());
    EXPECT_EQ(answer["pixelHeight"], image->pixelHeight());
    return {image->width(), image->height()};
}

TEST(WriteImage, WritesTheImageAPieceOfItOrAScaledOne) {
    using Size = std::vector<double>;
    EXPECT_EQ(sizeOf({}), (Size{80, 20}));
    EXPECT_EQ(sizeOf({"--width", "40"}), (Size{40, 10}));
    EXPECT_EQ(sizeOf({"--height=40"}), (Size{160, 40}));
    EXPECT_EQ(sizeOf({"--group", "4", "--index", "3"}), (Size{20, 20}));
    EXPECT_EQ(sizeOf({"--group", "4", "--index", "3", "--height", "10"}), (Size{10, 10}));
}

TEST(WriteImage, WritesNothingWithoutSuchAnImage) {
    using Size = std::vector<double>;
    EXPECT_EQ(sizeOf({"--group", "4", "--index", "4"}), Size());
    EXPECT_EQ(sizeOf({"--group", "0", "--index", "0"}), Size());
    EXPECT_EQ(sizeOf({"--width", "0"}), Size());
    EXPECT_EQ(sizeOf({"--width", "1e9"}), Size());
    EXPECT_EQ(sizeOf({"--palette-style", "1"}), Size());
}

TEST(WriteImage, RefusesOptionsThatDoNotGoTogether) {
    const Root root;
    const auto complaint = [&](std::vector<std::string> options) {
        options.insert(options.begin(), {"image", "strip"});
        const ToolRun run = runOn(root, options);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.output, "");
        return run.errors;
    };
    const std::string file = root.at("out.png");
    EXPECT_EQ(complaint({}), "ygconfig image: --output is required\n");
    EXPECT_EQ(complaint({"-o", file, "--index", "1"}),
              "ygconfig image: --index requires --group\n");
    EXPECT_EQ(complaint({"-o", file, "--width", "1", "--height", "1"}),
              "ygconfig image: --width excludes --height\n");
    EXPECT_EQ(complaint({"-o", file, "--width", "inf"}),
              "ygconfig image: --width: 'inf' is not a number\n");
    EXPECT_EQ(
        complaint({"-o", file, "--group", "-4"}),
        "ygconfig image: --group: '-4' is not a whole number from 0 to 18446744073709551615\n");
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(WriteImage, SaysWhyItCannotBeWritten) {
    const Root root;
    const ToolRun run = runOn(root, {"image", "strip", "-o", root.at("none/out.png")});
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.output, "");
    EXPECT_THAT(run.errors, EndsWith("ygconfig image: \"" + root.at("none/out.png") +
                                     "\": No such file or directory\n"));
}

/// What the tool complains of when the image is to go to the path.
std::string complaintOf(const Root& root, const std::string& path) {
    const ToolRun run = runOn(root, {"image", "strip", "-o", path});
    const std::size_t begin = run.errors.find("ygconfig image: ");
    EXPECT_EQ(run.status, begin == std::string::npos ? 0 : 3);
    EXPECT_EQ(run.output.empty(), begin != std::string::npos);
    return begin == std::string::npos ? "" : run.errors.substr(begin);
}

std::string fullAt(const std::string& path) {
    return "ygconfig image: \"" + path + "\": No space left on device\n";
}

TEST(WriteImage, LeavesADeviceThatTakesNothingInItsPlace) {
    const Root root;
    const auto isDevice = [](const std::string& path) {
        return std::filesystem::is_character_file(path);
    };
    std::filesystem::create_symlink("/dev/full", root.at("link.png"));
    EXPECT_EQ(complaintOf(root, root.at("link.png")), fullAt(root.at("link.png")));
    EXPECT_TRUE(std::filesystem::is_symlink(root.at("link.png")));
    EXPECT_TRUE(isDevice("/dev/full"));
    // A device of our own, so that a failure does no harm.
    const std::string path = root.at("full");
    if (::mknod(path.c_str(), S_IFCHR | 0666, makedev(1, 7)) != 0)
        GTEST_SKIP() << "no device can be made";
    EXPECT_EQ(complaintOf(root, path), fullAt(path));
    EXPECT_TRUE(isDevice(path));
}

TEST(WriteImage, GoesToADeviceOrAPipeAsItStands) {
    const Root root;
    EXPECT_EQ(complaintOf(root, "/dev/null"), "");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));

    const std::string pipe = root.at("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::string bytes;
    std::thread reader([&] {
        std::ifstream file(pipe, std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(file), {});
    });
    EXPECT_EQ(complaintOf(root, pipe), "");
    reader.join();
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_TRUE(bytes.starts_with("\x89PNG"));

    const ToolRun run = runOn(root, {"image", "strip", "-o", "/dev/stdout"});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.output.starts_with("\x89PNG"));
    EXPECT_THAT(run.output, EndsWith("}\n"));
    EXPECT_EQ(complaintOf(root, "/dev/fd/99"),
              "ygconfig image: \"/dev/fd/99\": Bad file descriptor\n");
}

TEST(WriteImage, LeavesTheOldFileWhereTheDiskIsFull) {
    const Root root;
    root.write("real/out.png", "old");
    std::filesystem::create_symlink("real/out.png", root.at("link.png"));
    ScopedFileLayer disk;
    disk->largestWrite = 10;
    disk->errorOf = [writes = 0](std::string_view call) mutable {
        return call == "write" && ++writes == 2 ? ENOSPC : 0;
    };
    const std::vector<std::string> words = {"--root", root.path(), "image",
                                            "strip",  "-o",        root.at("link.png")};
    const yg::tool::Answer answer = yg::tool::run(yg::tool::readCommandLine(words), {});
    EXPECT_EQ(answer.exitCode, yg::tool::ExitCode::failed);
    EXPECT_EQ(answer.complaint + "\n", fullAt(root.at("link.png")));
    EXPECT_EQ(contentOf(root.at("real/out.png")), "old");
    EXPECT_TRUE(std::filesystem::is_symlink(root.at("link.png")));
    const std::filesystem::directory_iterator names(root.at("real"));
    EXPECT_EQ(std::distance(begin(names), end(names)), 1);
}

yg::testing::Saving prepareImage(const yg::files::TemporaryFolder& root) {
    for (const std::string_view folder : {"storage", "images", "out"})
        std::filesystem::create_directory(root / folder);
    yg::files::put(root / light, palette("<BITMAPS><i NAME='strip' PATH='strip.png'/></BITMAPS>"));
    const auto image = Image::fromPixels(8, 2, std::vector<std::uint8_t>(8 * 2 * 4), 8, 2);
    yg::files::put(root / "images/strip.png", *image->toPng());
    yg::files::put(root / "out/out.png", "old");
    return {root / "out/out.png", [path = root.path()] {
                const std::vector<std::string> words = {"--root", path, "image",
                                                        "strip",  "-o", path + "/out/out.png"};
                const auto answer = yg::tool::run(yg::tool::readCommandLine(words), {});
                return answer.exitCode == yg::tool::ExitCode::answer;
            }};
}

TEST(WriteImageProof, AnErrorOfAnyCallLeavesOldOrNewContentAndTheRightAnswer) {
    const int savings = yg::testing::failEveryCall(prepareImage, true);
    std::printf("%d savings with a failed call\n", savings);
}

TEST(WriteImageProof, TheEndOfTheProcessAtAnyCallLeavesOldOrNewContent) {
    const int savings = yg::testing::endAtEveryCall(prepareImage);
    std::printf("%d savings with the process ended\n", savings);
}

TEST(WriteImage, ReplacesTheFileThatALinkNamesAndKeepsItsRights) {
    const Root root;
    root.write("real/out.png", "old");
    std::filesystem::permissions(root.at("real/out.png"), std::filesystem::perms::owner_read);
    std::filesystem::create_symlink("real/out.png", root.at("link.png"));
    EXPECT_EQ(complaintOf(root, root.at("link.png")), "");
    EXPECT_TRUE(std::filesystem::is_symlink(root.at("link.png")));
    EXPECT_TRUE(contentOf(root.at("real/out.png")).starts_with("\x89PNG"));
    EXPECT_EQ(std::filesystem::status(root.at("real/out.png")).permissions(),
              std::filesystem::perms::owner_read);
}

TEST(WriteImage, RefusesAFolderAndASocket) {
    const Root root;
    root.write("folder/a", "");
    EXPECT_EQ(complaintOf(root, root.at("folder")),
              "ygconfig image: \"" + root.at("folder") + "\": Is a directory\n");
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const std::string path = root.at("s");
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(complaintOf(root, path), "ygconfig image: \"" + path + "\": not a regular file\n");
    EXPECT_TRUE(std::filesystem::is_socket(path));
    ::close(socket);
}

TEST(PaletteHelp, IsTheFile) {
    EXPECT_TRUE(isGolden(runTool({"image", "--help"}).output, "help-image.txt"));
    EXPECT_TRUE(isGolden(runTool({"show", "palette", "--help"}).output, "help-show-palette.txt"));
}

}  // namespace
