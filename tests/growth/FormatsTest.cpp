// SPDX-License-Identifier: MIT
//
// What each format itself is made of, again and again: the work grows with the size of the file,
// and is at most five times that of a plain layout of the size.
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "YGConfigManager/host/JsonValue.h"
#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"

#include "growth/Constructs.h"
#include "growth/Counting.h"
#include "growth/Loaders.h"

namespace yg::testing {

namespace {

using Content = std::function<std::string(std::size_t bytes)>;

struct Format {
    std::string_view name;
    MakeWork make;
    bool isReported = false;

    friend std::ostream& operator<<(std::ostream& out, const Format& one) {
        return out << one.name;
    }
};

/// The same part again and again, "#" in it being the number of the part, between two texts.
Content parts(std::string_view open, std::string_view part, std::string_view close) {
    return [open, part, close](std::size_t bytes) {
        const auto numbered = [&](std::size_t i) {
            std::string text;
            for (const char letter : part) {
                if (letter == '#')
                    text += number(i);
                else
                    text += letter;
            }
            return text;
        };
        return joined(open, repeated(bytes, numbered), close);
    };
}

/// Two rows of parts, each of half the bytes.
Content halves(std::string_view open, std::string_view first, std::string_view between,
               std::string_view second, std::string_view close) {
    return [=](std::size_t bytes) {
        return joined(parts(open, first, between)(bytes / 2), parts("", second, close)(bytes / 2));
    };
}

std::string loadRequestUrls(const std::string& path) {
    newHost().storagePath = path;
    const auto manager = YGHttpReqUrlMgr::make();
    manager->readUrlModelFromFile();
    return manager->urlModel() ? "" : "refused";
}

std::string loadRequestUrlsReported(const std::string& path) {
    static CountingSink sink;
    newHost().storagePath = path;
    const auto manager = YGHttpReqUrlMgr::make(&sink);
    manager->readUrlModelFromFile();
    return manager->urlModel() ? "" : "refused";
}

/// The host reads its file from a folder.
MakeWork hostWork(const Content& content) {
    return [content](std::size_t bytes) {
        const std::string file = content(bytes);
        writeFile("host.json", file);
        return Work{file.size(), [] { return StandAloneHost::open(runFolder()).error; }};
    };
}

MakeWork jsonWork(const Content& content) {
    return [content](std::size_t bytes) {
        const std::string text = content(bytes);
        return Work{text.size(), [text]() -> std::string {
                        const JsonValue::Parsed parsed = JsonValue::parse(text);
                        if (!parsed)
                            return parsed.error;
                        std::string written;
                        parsed.value->appendTo(written);
                        return "";
                    }};
    };
}

MakeWork urlWork(const Content& content) {
    return fileWork(loadRequestUrls, content);
}

/// References from a file to the panels of another one.
MakeWork referencesWork(const Content& references, std::string (*load)(const std::string&),
                        std::string_view panels) {
    return [=](std::size_t bytes) {
        const std::string file = references(bytes);
        const std::string path = writeFile("file.xml", file);
        writeFile("panels.xml", panels);
        return Work{file.size() + panels.size(), [load, path] { return load(path); }};
    };
}

std::string loadStylesWithReusePanels(const std::string& path) {
    return loadLayout(path, "", runFolder() + "/panels.xml");
}

std::string loadMagicPanelsWithReusePanels(const std::string& path) {
    return loadLayout("", path, runFolder() + "/panels.xml");
}

std::string loadStylesWithMagicPanels(const std::string& path) {
    return loadLayout(path, runFolder() + "/panels.xml", "");
}

std::vector<Format> formats() {
    constexpr std::string_view reusePanels =
        "<r><reuse_panel name='bar'><panel name='in'/></reuse_panel></r>";
    constexpr std::string_view magicPanels =
        "<r><magic_panels name='g'><magic_panel name='m'><panel name='p'/></magic_panel>"
        "</magic_panels></r>";
    const Content sameStyles =
        parts("<styles>", "<style name='same'><panel name='p'/></style>", "</styles>");
    const Content differentStyles =
        parts("<styles>", "<style name='s#'><panel name='p'/></style>", "</styles>");
    const Content magicGroups = parts("<r>",
                                      "<magic_panels name='g#'><magic_panel name='m'><panel "
                                      "name='p'/></magic_panel></magic_panels>",
                                      "</r>");
    const Content events =
        parts("<event_list>",
              "<command_event><c name='c#'/></command_event>"
              "<event_template name='t#'><e name='e' command='c#'/></event_template>"
              "<element_event name='g#'><event name='e'/><i src='t#'/></element_event>",
              "</event_list>");
    const Content palette = parts("<ROOT><SWPALETTE><COLORES>", "<COLOR NAME='c#' R='1' G='2'/>",
                                  "</COLORES></SWPALETTE></ROOT>");
    const Content servers =
        parts("<application><server type='1'>", "<a key='#' name='n#' addrs='192.0.2.1:#'/>",
              "</server></application>");
    const Content settings = parts("<config>", "<s#><i#>text</i#></s#>", "</config>");
    const Content webPages = parts("<urls>", "<url key='k#'>http://h/#</url>", "</urls>");
    const Content manyUrls = parts("{\"md5Value\":\"1\",\"urlConfigList\":[",
                                   "{\"urlKey\":\"k#\",\"urlValue\":\"v#\"},", "{}]}");

    return {
        // ---- layout ----
        {"layoutSameStyles", fileWork(loadStyles, sameStyles)},
        {"layoutSameStylesReported", fileWork(loadStylesReported, sameStyles), true},
        {"layoutDifferentStyles", fileWork(loadStyles, differentStyles)},
        {"layoutDifferentTabStyles", fileWork(loadTabStyles, differentStyles)},
        {"layoutOverriddenStyles", fileWork(loadSoftStyles, differentStyles)},
        {"layoutOverriddenStylesReported", fileWork(loadSoftStylesReported, differentStyles), true},
        {"layoutPanels", fileWork(loadStyles, parts("<styles><style name='s'>",
                                                    "<panel name='p#'/>", "</style></styles>"))},
        {"layoutElements",
         fileWork(loadStyles, parts("<styles><style name='s'><panel>", "<element name='e#'/>",
                                    "</panel></style></styles>"))},
        {"layoutDestinations",
         fileWork(loadStyles,
                  parts("<styles><style name='s'><panel><element name='e' event_dispatch_dest='",
                        "d#;", "'/></panel></style></styles>"))},
        {"layoutUnknownAttributesReported",
         fileWork(loadStylesReported,
                  parts("<styles>", "<style name='s' a='1' b='2' c='3'/>", "</styles>")),
         true},
        {"layoutReuseReferences",
         referencesWork(parts("<styles><style name='s'><panel>", "<reuse_panel name='bar'/>",
                              "</panel></style></styles>"),
                        loadStylesWithReusePanels, reusePanels)},
        {"layoutUnknownReferences",
         referencesWork(parts("<styles><style name='s'><panel>", "<reuse_panel name='b#'/>",
                              "</panel></style></styles>"),
                        loadStylesWithReusePanels, reusePanels)},
        {"layoutMagicReferences",
         referencesWork(parts("<styles><style name='s'><panel>", "<magic_panels name='g'/>",
                              "</panel></style></styles>"),
                        loadStylesWithMagicPanels, magicPanels)},
        {"layoutReusePanels",
         fileWork(loadReusePanels,
                  parts("<r>", "<reuse_panel name='r#'><panel name='p'/></reuse_panel>", "</r>"))},
        {"layoutSameReusePanels",
         fileWork(loadReusePanels,
                  parts("<r>", "<reuse_panel name='r'><panel name='p'/></reuse_panel>", "</r>"))},
        {"layoutReuseReferencesInMagicPanels",
         referencesWork(
             parts("<r><magic_panels name='g'><magic_panel name='m'><panel name='p'>",
                   "<reuse_panel name='bar'/>", "</panel></magic_panel></magic_panels></r>"),
             loadMagicPanelsWithReusePanels, reusePanels)},
        {"layoutMagicGroups", fileWork(loadMagicPanels, magicGroups)},
        {"layoutMagicGroupsReported", fileWork(loadMagicPanelsReported, magicGroups), true},
        {"layoutOverriddenMagicGroupsReported", fileWork(loadSoftMagicPanelsReported, magicGroups),
         true},
        {"layoutMagicMembers",
         fileWork(loadMagicPanels, parts("<r><magic_panels name='g'>",
                                         "<magic_panel name='m#'><panel name='p'/></magic_panel>",
                                         "</magic_panels></r>"))},

        // ---- events ----
        {"eventsOfEachKind", fileWork(loadEvents, events)},
        {"eventsOfEachKindReported", fileWork(loadEventsReported, events), true},
        {"eventsSame",
         fileWork(loadEvents,
                  parts("<event_list>", "<element_event name='g'><event name='e'/></element_event>",
                        "</event_list>"))},
        {"eventsSameReported",
         fileWork(loadEventsReported,
                  parts("<event_list>", "<event_template name='t'><e name='e'/></event_template>",
                        "</event_list>")),
         true},
        {"eventsInOneGroup",
         fileWork(loadEvents, parts("<event_list><element_event name='g'>", "<event name='e#'/>",
                                    "</element_event></event_list>"))},
        {"eventsIncludedAgain",
         fileWork(loadEvents,
                  parts("<event_list><event_template name='t'><e name='e'/></event_template>"
                        "<element_event name='g'>",
                        "<i src='t'/>", "</element_event></event_list>"))},
        {"eventsOfUnknownTemplatesReported",
         fileWork(loadEventsReported, parts("<event_list><event_template name='t'>",
                                            "<i src='u#'/>", "</event_template></event_list>")),
         true},

        // ---- palette ----
        {"paletteColours", fileWork(loadPalette, palette)},
        {"paletteColoursReported", fileWork(loadPaletteReported, palette), true},
        {"paletteSameColours",
         fileWork(loadPalette, parts("<ROOT><SWPALETTE><COLORES>", "<COLOR NAME='c'/>",
                                     "</COLORES></SWPALETTE></ROOT>"))},
        {"paletteFonts",
         fileWork(loadPalette, parts("<ROOT><SWPALETTE><FONTS>",
                                     "<FONT NAME='f#' HEIGHT='12' FACE='YG Test Square'/>",
                                     "</FONTS></SWPALETTE></ROOT>"))},
        {"paletteUnknownFonts",
         fileWork(loadPalette, parts("<ROOT><SWPALETTE><FONTS>",
                                     "<FONT NAME='f#' HEIGHT='12' FACE='no font #'/>",
                                     "</FONTS></SWPALETTE></ROOT>"))},
        {"paletteUnknownFontsReported",
         fileWork(loadPaletteReported, parts("<ROOT><SWPALETTE><FONTS>",
                                             "<FONT NAME='f#' HEIGHT='12' FACE='no font #'/>",
                                             "</FONTS></SWPALETTE></ROOT>")),
         true},
        {"paletteKeys", fileWork(loadPalette, parts("<ROOT><SWPALETTE><APP_MAP><COLORES>",
                                                    "<ITEM KEY='k#' VALUE='c#'/>",
                                                    "</COLORES></APP_MAP></SWPALETTE></ROOT>"))},
        {"paletteKeysReported",
         fileWork(loadPaletteReported,
                  parts("<ROOT><SWPALETTE><APP_MAP><COLORES>", "<ITEM KEY='k#' VALUE='c#'/>",
                        "</COLORES></APP_MAP></SWPALETTE></ROOT>")),
         true},

        // ---- servers ----
        {"serverEntries", fileWork(loadServers, servers)},
        {"serverEntriesReported", fileWork(loadServersReported, servers), true},
        {"serverEntriesDelivered", fileWork(deliverServers, servers)},
        {"serverNames",
         fileWork(loadServers, parts("<application><server type='1'><a key='1' name='", "n#;",
                                     "' addrs='h:1;h:2'/></server></application>"))},
        {"serverAddresses",
         fileWork(loadServers, parts("<application><server type='1'><a key='1' name='n' addrs='",
                                     "h:#;", "'/></server></application>"))},
        {"serverAddressesReported",
         fileWork(loadServersReported,
                  parts("<application><server type='1'><a key='1' name='n' addrs='", "h:x#;",
                        "'/></server></application>")),
         true},
        {"serverNamesAndAddresses",
         fileWork(loadServers, halves("<application><server type='1'><a key='1' name='", "n#;",
                                      "' addrs='", "h:#;", "'/></server></application>"))},
        {"serverGroups",
         fileWork(loadServers, parts("<application>", "<server type='1'/>", "</application>"))},
        {"serverGroupsReported",
         fileWork(loadServersReported,
                  parts("<application>", "<server type='1'/>", "</application>")),
         true},

        // ---- settings and web pages ----
        {"settingsSections", fileWork(loadSettings, settings)},
        {"settingsItems",
         fileWork(loadSettings, parts("<config><s>", "<i#>t</i#>", "</s></config>"))},
        {"settingsSameSections",
         fileWork(loadSettings, parts("<config>", "<s><i#>t</i#></s>", "</config>"))},
        {"settingsSameItemsReported",
         fileWork(loadSettingsReported, parts("<config><s>", "<item>text</item>", "</s></config>")),
         true},
        {"webPageAddresses", fileWork(loadWebPages, webPages)},
        {"webPageAddressesReported", fileWork(loadWebPagesReported, webPages), true},
        {"webPageAddressesReplaced", fileWork(replaceWebPages, webPages)},
        {"webPageSameKeysReported",
         fileWork(loadWebPagesReported, parts("<urls>", "<url key='k'>a</url>", "</urls>")), true},
        {"webPageAmpersands", fileWork(replaceWebPages, parts("<urls><url key='k'>http://h/?",
                                                              "a=#&", "</url></urls>"))},

        // ---- JSON ----
        {"jsonMembers", jsonWork(parts("{", "\"m#\":1,", "\"m\":1}"))},
        {"jsonSameMembers", jsonWork(parts("{", "\"m\":1,", "\"m\":1}"))},
        {"jsonDeepLists", jsonWork([](std::size_t bytes) {
             const std::string deep = joined(copies(200, "["), copies(200, "]"));
             return joined("[", repeated(bytes, joined(deep, ",")), "0]");
         })},
        {"jsonDeepObjects", jsonWork([](std::size_t bytes) {
             const std::string deep = joined(copies(200, "{\"a\":"), "1", copies(200, "}"));
             return joined("[", repeated(bytes, joined(deep, ",")), "0]");
         })},
        {"jsonTooDeep", jsonWork(parts("", "[", ""))},
        {"jsonLongText", jsonWork(parts("\"", "t", "\""))},
        {"jsonLongNames", jsonWork([](std::size_t bytes) {
             const std::string part = joined("\"", std::string(400, 'n'), "#\":1,");
             return parts("{", part, "\"m\":1}")(bytes);
         })},
        {"jsonTexts", jsonWork(parts("[", "\"t\",", "0]"))},
        {"jsonEscapes", jsonWork(parts("\"", "\\n\\u4e2d\\ud83d\\ude00", "\""))},
        {"jsonNumbers", jsonWork(parts("[", "#,1.5,-2e3,", "0]"))},
        {"jsonLongNumber", jsonWork(parts("[0.", "1", "]"))},
        {"jsonLongWholeNumber", jsonWork(parts("[1", "0", "]"))},
        {"jsonLongExponent", jsonWork(parts("[1e-", "9", "]"))},
        {"jsonLiterals", jsonWork(parts("[", "null,true,false,", "0]"))},
        {"jsonEmptyLists", jsonWork(parts("[", "[],", "0]"))},
        {"jsonEmptyObjects", jsonWork(parts("[", "{},", "0]"))},
        {"jsonBlanks", jsonWork(parts("[", " \n", "0]"))},
        {"jsonChinese", jsonWork(parts("[", "\"\xE4\xB8\xAD\",", "0]"))},
        {"jsonLateError", jsonWork(parts("[", "\"t\",\n", "]"))},
        {"jsonLateWrongByte", jsonWork(parts("[", "\"t\",\n", "\"\xFF\"]"))},
        {"requestUrlEntries", urlWork(manyUrls)},
        {"requestUrlEntriesReported", fileWork(loadRequestUrlsReported, manyUrls), true},
        {"requestUrlSameKeysReported",
         fileWork(loadRequestUrlsReported,
                  parts("{\"urlConfigList\":[", "{\"urlKey\":\"k\",\"urlValue\":\"v\"},", "{}]}")),
         true},
        {"requestUrlOtherValues", urlWork(parts("{\"urlConfigList\":[", "[],#,", "0]}"))},
        {"requestUrlMembers", urlWork(parts("{", "\"m#\":1,", "\"m\":1}"))},
        {"hostMappings",
         hostWork(parts("{\"mappings\":{", "\"k#\":{\"n\":[\"t\"]},", "\"k\":{}}}"))},
        {"hostMappingTexts",
         hostWork(parts("{\"mappings\":{\"k\":{\"n\":[", "\"t#\",", "\"t\"]}}}"))},
        {"hostMembers", hostWork(parts("{", "\"m#\":1,", "\"m\":1}"))},
    };
}

class FormatGrowth : public ::testing::TestWithParam<Format> {};

TEST_P(FormatGrowth, IsLinear) {
    constexpr std::size_t bytes = 6'000;
    const Format& one = GetParam();
    // Fonts, queries and tables are made at their first use.
    one.make(100).run();
    const Measured small = measure(one.make, bytes);
    const Measured large = measure(one.make, 8 * bytes);
    expectLinear(small, large);
    expectInProportion(large, plainLayoutLoad(one.isReported), one.isReported);
}

INSTANTIATE_TEST_SUITE_P(formats, FormatGrowth, ::testing::ValuesIn(formats()),
                         [](const auto& which) { return std::string(which.param.name); });

}  // namespace

}  // namespace yg::testing
