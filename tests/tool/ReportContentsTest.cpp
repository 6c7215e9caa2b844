// SPDX-License-Identifier: MIT
//
// What the report's model says of palettes, servers and the other files of the storage.
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "YGConfigManager/graphics/Image.h"
#include "YGConfigManager/inspection/Inspection.h"
#include "YGConfigManager/servers/AddressShares.h"

#include "files/TemporaryFolder.h"
#include "tool/TextOf.h"
#include "ygconfig/json/Json.h"
#include "ygconfig/report/Report.h"

namespace {

using nlohmann::json;
using yg::files::TemporaryFolder;
using Files = std::vector<std::pair<std::string, std::string>>;

json modelOf(const Files& files) {
    const TemporaryFolder folder;
    for (const auto& [name, bytes] : files)
        folder.write(name, bytes);
    std::string error;
    const auto inspection =
        yg::Inspection::open(folder.path(), error, {.unsaved = {}, .keepsContents = true});
    EXPECT_NE(inspection, nullptr) << error;
    return json::parse(yg::testing::textOf(yg::tool::Text([&](yg::tool::Output& output) {
        writeModel({"root", *inspection}, output);
    })));
}

std::string palette(const std::string& sections) {
    return "<ROOT><SWPALETTE>\n" + sections + "</SWPALETTE></ROOT>";
}

std::string png(std::size_t width, std::size_t height) {
    std::vector<std::uint8_t> pixels(width * height * 4);
    // Pixels that do not pack well.
    std::uint32_t number = 1;
    for (std::uint8_t& byte : pixels)
        byte = static_cast<std::uint8_t>((number = number * 1664525 + 1013904223) >> 24);
    return *yg::Image::fromPixels(width, height, std::move(pixels))->toPng();
}

std::string image(const std::string& name, const std::string& path) {
    return "<B NAME='" + name + "' PATH='" + path + "'/>\n";
}

/// The bytes of a text in base64.
std::string decoded(std::string_view text) {
    constexpr std::string_view letters =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    unsigned bits = 0;
    int count = 0;
    for (const char letter : text.substr(0, text.find('='))) {
        bits = bits << 6 | static_cast<unsigned>(letters.find(letter));
        if ((count += 6) >= 8)
            bytes += static_cast<char>(bits >> (count -= 8) & 255);
    }
    return bytes;
}

TEST(ReportPalettes, SayColoursAsTheLibraryReadsThem) {
    const json model =
        modelOf({{"storage/palette_white.xml",
                  palette("<COLORES>\n<C NAME='a' R='255' G='127.6' B='-3'/>\n"
                          "<C NAME='b' R='1' G='2' B='3' A='0.72'/></COLORES>"
                          "<APP_MAP><COLORES>\n<I KEY='k' VALUE='b'/></COLORES></APP_MAP>")},
                 {"user/palette_black.xml", palette("<COLORES><C NAME='c'/></COLORES>")}});
    const json& light = model["palettes"][0];
    EXPECT_EQ(light["file"], "storage/palette_white.xml");
    EXPECT_EQ(light["style"], 0);
    EXPECT_EQ(light["isUsers"], false);
    EXPECT_EQ(light["noColor"], "#ff0000ff");
    EXPECT_EQ(light["colors"], json::parse(R"([{"name":"a","color":"#ff8000ff","at":[0,3,1,3,39]},
                  {"name":"b","color":"#010203b8","alpha":0.7200000286102295,"at":[0,4,1,4,41]}])"));
    EXPECT_EQ(light["colorKeys"], json::parse(R"([{"key":"k","name":"b","at":[0,5,1,5,23]}])"));
    const json& dark = model["palettes"][1];
    EXPECT_EQ(dark["style"], 1);
    EXPECT_EQ(dark["isUsers"], true);
}

TEST(ReportPalettes, PlaceNamesInTheirOwnFile) {
    const std::string colors = palette("<COLORES><C NAME='a' R='1' G='1' B='1'/></COLORES>");
    const json model = modelOf(
        {{"storage/palette_white.xml", colors}, {"user/palette_white.xml", "\n\n" + colors}});
    EXPECT_EQ(model["palettes"][0]["colors"][0]["at"][1], 2);
    EXPECT_EQ(model["palettes"][1]["colors"][0]["at"][1], 4);
}

TEST(ReportPalettes, SayWhichFaceWasAskedFor) {
    const json model =
        modelOf({{"storage/palette_white.xml",
                  palette("<FONTS><F NAME='a' HEIGHT='14.5' FACE='No such face'/></FONTS>")}});
    const json& font = model["palettes"][0]["fonts"][0];
    EXPECT_EQ(font["asked"], "No such face");
    EXPECT_NE(font["faceName"], "No such face");
    EXPECT_EQ(font["pointSize"], 14.5);
}

TEST(ReportPalettes, HoldTheBytesOfImages) {
    // Base64 ends in three ways.
    std::set<std::size_t> ends;
    for (std::size_t width = 1; width <= 6; ++width) {
        const std::string bytes = png(width, 1);
        ends.insert(bytes.size() % 3);
        const json model =
            modelOf({{"storage/palette_white.xml", palette("<BITMAPS>" + image("a", "a.png") +
                                                           image("b", "b.png") + "</BITMAPS>")},
                     {"images/a.png", bytes},
                     {"images/b.png", bytes.substr(0, bytes.size() / 2)}});
        const json& images = model["palettes"][0]["images"];
        ASSERT_EQ(images.size(), 1u);
        EXPECT_EQ(images[0]["name"], "a");
        EXPECT_EQ(images[0]["file"], "a.png");
        EXPECT_EQ(images[0]["scale"], 1.0);
        const std::string data = images[0]["data"];
        EXPECT_THAT(data, ::testing::StartsWith("data:image/png;base64,"));
        EXPECT_EQ(data.size() % 4, std::string_view("data:image/png;base64,").size() % 4);
        EXPECT_EQ(decoded(std::string_view(data).substr(data.find(',') + 1)), bytes);
    }
    EXPECT_EQ(ends.size(), 3u);
}

TEST(ReportPalettes, CountTheSquarePiecesOfStrips) {
    const json model =
        modelOf({{"storage/palette_white.xml", palette("<BITMAPS>" + image("strip", "s.png") +
                                                       image("odd", "o.png") + "</BITMAPS>")},
                 {"images/s.png", png(12, 3)},
                 {"images/o.png", png(13, 3)}});
    const json& images = model["palettes"][0]["images"];
    EXPECT_EQ(images[0]["strip"], 4);
    EXPECT_EQ(images[1]["strip"], 1);
}

TEST(ReportPalettes, HoldImagesUpToALimit) {
    std::string entries;
    Files files;
    for (int i = 0; i < 8; ++i) {
        const std::string name = std::to_string(i) + ".png";
        entries += image(name, name);
        files.emplace_back("images/" + name, png(300, 300));
    }
    // One file under many names counts as often as it is written.
    for (int i = 0; i < 8; ++i)
        entries += image("again " + std::to_string(i), "0.png");
    files.emplace_back("storage/palette_white.xml", palette("<BITMAPS>" + entries + "</BITMAPS>"));
    const json model = modelOf(files);
    std::size_t bytes = 0;
    std::size_t left = 0;
    for (const json& each : model["palettes"][0]["images"]) {
        EXPECT_NE(each.contains("data"), each.contains("whyNoData"));
        EXPECT_EQ(each["width"], 300.0);
        bytes += each.value("data", "").size();
        left += each.value("whyNoData", "") == "The report has no more room for images." ? 1 : 0;
    }
    EXPECT_LE(bytes, 2u << 20);
    EXPECT_GT(bytes, 1u << 20);
    EXPECT_GT(left, 0u);
}

TEST(ReportPalettes, HoldNoImageFromOutsideOfTheFolder) {
    const json model = modelOf({{"storage/palette_white.xml",
                                 palette("<BITMAPS>" + image("a", "../secret.png") + "</BITMAPS>")},
                                {"images/x.txt", ""},
                                {"secret.png", png(2, 2)}});
    const json& image = model["palettes"][0]["images"][0];
    EXPECT_EQ(image["pixelWidth"], 2);
    EXPECT_FALSE(image.contains("data"));
    EXPECT_EQ(image["whyNoData"],
              "The file is not in the image folder, so it is not in the report.");
}

TEST(ReportPalettes, SayTheContrastOfDeclaredPairs) {
    const std::string keys =
        "<APP_MAP><COLORES><I KEY='t' VALUE='t'/><I KEY='g' VALUE='g'/>"
        "</COLORES></APP_MAP>";
    const json model = modelOf(
        {{"storage/palette_white.xml",
          palette("<COLORES><C NAME='t' R='0' G='0' B='0'/><C NAME='g' R='255' G='255' B='255'/>"
                  "</COLORES>" +
                  keys)},
         {"storage/palette_black.xml",
          palette("<COLORES><C NAME='t' R='9' G='9' B='9'/><C NAME='g' R='0' G='0' B='0'/>"
                  "</COLORES>" +
                  keys)},
         {"contrast.json",
          "{\"pairs\": [\n{\"text\":\"t\",\"ground\":\"g\",\"minimum\":4.5,"
          "\"over\":\"g\"}]}"}});
    const auto contrast = [&](std::size_t palette) {
        json pair = model["palettes"][palette]["pairs"].at(0);
        EXPECT_EQ(model["sources"][pair["at"][0].get<std::size_t>()]["name"], "contrast.json");
        EXPECT_EQ(pair["at"][1], 2);
        pair.erase("at");
        return pair;
    };
    EXPECT_EQ(contrast(0), json::parse(R"({"text":"t","ground":"g","over":"g","minimum":4.5,
        "ratio":21.0,"ratioText":"21.00:1","passes":true})"));
    EXPECT_EQ(contrast(1)["ratioText"], "1.05:1");
    EXPECT_EQ(contrast(1)["passes"], false);
}

TEST(ReportServers, HaveTheSharesOfTheSimulation) {
    const std::string addrs = "5:h1:80;h2:81;h1:80;nohost";
    const json model = modelOf(
        {{"storage/skeleton_l2_gray_v1.xml",
          "<application md5='d'>\n<server type='3' name='n' domain='m'>\n"
          "<addr key='7' name='a;b' addrs='" +
              addrs + "'/>\n<addr key='8' name='c' addrs='nohost'/></server></application>"}});
    json servers;
    for (const json& each : model["servers"]) {
        if (!each["groups"].empty())
            servers = each;
    }
    EXPECT_EQ(servers["file"], "storage/skeleton_l2_gray_v1.xml");
    EXPECT_EQ(servers["right"], "l2");
    EXPECT_EQ(servers["isGray"], true);
    EXPECT_EQ(servers["isUsers"], false);
    EXPECT_EQ(servers["md5"], "d");
    const json& group = servers["groups"].at(0);
    EXPECT_EQ(group["type"], 3);
    EXPECT_EQ(group["description"], "n");
    EXPECT_EQ(group["domain"], "m");
    EXPECT_EQ(group["at"][1], 2);
    const json& entry = group["entries"].at(0);
    EXPECT_EQ(entry["key"], "7");
    EXPECT_EQ(entry["names"], "a;b");
    EXPECT_EQ(entry["servers"], 2);
    EXPECT_EQ(entry["at"][1], 3);
    const auto shares = yg::addressShares(addrs);
    EXPECT_EQ(entry["addresses"],
              json::parse(R"([{"address":"h1:80","weight":"5"},{"address":"h2:81"},
                  {"address":"h1:80"},{"address":"nohost"}])")
                  .patch(json::array(
                      {{{"op", "add"}, {"path", "/0/chance"}, {"value", shares[0].chance()}},
                       {{"op", "add"}, {"path", "/1/chance"}, {"value", shares[1].chance()}},
                       {{"op", "add"}, {"path", "/2/chance"}, {"value", shares[0].chance()}}})));
    EXPECT_EQ(group["entries"].at(1)["servers"], 0);
    EXPECT_FALSE(group["entries"].at(1)["addresses"].at(0).contains("chance"));
}

TEST(ReportSettings, AreThoseOfEachFileAlone) {
    const json model = modelOf(
        {{"storage/app_config.xml", "<config>\n<a>\n<x description='d'>1</x>\n<y/></a></config>"},
         {"user/app_config.xml", "<config><a><x>2</x><x>3</x></a></config>"}});
    const json& shipped = model["settings"].at(0);
    EXPECT_EQ(shipped["name"], "app_config.xml");
    EXPECT_EQ(shipped["isUsers"], false);
    EXPECT_EQ(shipped["isRead"], true);
    const json& item = shipped["sections"].at(0)["items"].at(0);
    EXPECT_EQ(shipped["sections"].at(0)["name"], "a");
    EXPECT_EQ(item["name"], "x");
    EXPECT_EQ(item["text"], "1");
    EXPECT_EQ(item["description"], "d");
    EXPECT_EQ(item["at"][1], 3);
    EXPECT_EQ(item["at"][4], 25);
    const json& users = model["settings"].at(1);
    EXPECT_EQ(users["isUsers"], true);
    EXPECT_EQ(users["sections"][0]["items"][0]["text"], "2");
    EXPECT_FALSE(users["sections"][0]["items"][0].contains("isSkipped"));
    EXPECT_EQ(users["sections"][0]["items"][1]["isSkipped"], true);
}

TEST(ReportSettings, OfADamagedFileAreNone) {
    const json model = modelOf({{"storage/app_config.xml", "<config><a><x>1</x></a></config>"},
                                {"user/app_config.xml", "<config><a>"}});
    EXPECT_EQ(model["settings"].at(1)["isRead"], false);
    EXPECT_EQ(model["settings"].at(1)["sections"], json::array());
}

TEST(ReportWebPages, SayKeysAndAddresses) {
    const json model = modelOf({{"storage/web_page_urls.xml",
                                 "<urls>\n<url key='k'>http://a/?x=1&amp;y=2</url>\n<url>n</url>"
                                 "<url key='k'>again</url></urls>"}});
    const json& pages = model["webPages"].at(0)["pages"];
    ASSERT_EQ(pages.size(), 3u);
    EXPECT_EQ(pages[0]["key"], "k");
    EXPECT_EQ(pages[0]["url"], "http://a/?x=1&y=2");
    EXPECT_EQ(pages[0]["at"][1], 2);
    EXPECT_FALSE(pages[0].contains("isSkipped"));
    EXPECT_EQ(pages[1]["key"], nullptr);
    EXPECT_EQ(pages[1]["isSkipped"], true);
    EXPECT_EQ(pages[2]["isSkipped"], true);
}

TEST(ReportRequestUrls, SayKeysAndAddresses) {
    const json model = modelOf(
        {{"user/request_urls_json.txt",
          "{\"md5Value\": \"d\", \"urlConfigList\": [\n{\"urlValue\": \"v\",\n\"urlKey\": \"k\"},"
          "{\"urlKey\": \"k\", \"urlValue\": \"w\"}, {\"urlKey\": \"n\"}]}"}});
    const json& list = model["requestUrls"].at(0);
    EXPECT_EQ(list["isUsers"], true);
    EXPECT_EQ(list["md5"], "d");
    const json& urls = list["urls"];
    ASSERT_EQ(urls.size(), 3u);
    EXPECT_EQ(urls[0]["key"], "k");
    EXPECT_EQ(urls[0]["url"], "v");
    // From the address to the key.
    EXPECT_EQ(urls[0]["at"][1], 2);
    EXPECT_EQ(urls[0]["at"][3], 3);
    EXPECT_EQ(urls[1]["isSkipped"], true);
    EXPECT_EQ(urls[1]["at"], nullptr);
    EXPECT_EQ(urls[2]["url"], nullptr);
}

TEST(ReportTables, OfAnEmptyRootAreEmpty) {
    const json model = modelOf({});
    for (const char* const subject : {"palettes", "settings", "webPages", "requestUrls"})
        EXPECT_EQ(model[subject], json::array()) << subject;
    for (const json& servers : model["servers"])
        EXPECT_EQ(servers["groups"], json::array());
}

}  // namespace
