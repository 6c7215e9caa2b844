// SPDX-License-Identifier: MIT
//
// The RELAX NG schemas against the loaders.
#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/diagnostics/Rule.h"
#include "YGConfigManager/formats/Format.h"

#include "describe/Describe.h"
#include "formats/Documents.h"
#include "formats/Loading.h"
#include "formats/Schemas.h"

namespace yg {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::Gt;
using ::testing::IsEmpty;
using ::testing::Not;
using yg::testing::Documents;
using yg::testing::Findings;
using yg::testing::loaders;
using yg::testing::RelaxNgSchema;
using yg::testing::XmlSchemaSchema;

/// What one element with its attributes and content does not show: names given twice, names that
/// are found nowhere, how much there is, other files, and whether there is a comment.
const std::set<std::string, std::less<>> notInSchemas{
    // The layout.
    "duplicate-style",
    "overridden-style",
    "ignored-default-style",
    "soft-optimize-dropped",
    "no-templates",
    "rtline-view-left-out",
    "duplicate-name",
    "replaced-group",
    "comment-before-panel",
    "unknown-magic-group",
    "empty-magic-group",
    "unknown-reuse-panel",
    "expansion-limit",
    // Events.
    "empty-event-section",
    "template-without-events",
    "duplicate-command",
    "duplicate-event",
    "duplicate-event-template",
    "duplicate-event-group",
    "overridden-template-event",
    "event-lost-to-template",
    "unknown-event-template",
    "include-limit",
    // Palettes.
    "second-palette-section",
    "no-image-folder",
    "duplicate-palette-name",
    "duplicate-palette-key",
    "unknown-palette-color",
    "unknown-palette-font",
    "unknown-font-face",
    "image-outside-folder",
    "unreadable-image",
    "too-many-image-pixels",
    "too-many-image-bytes",
    // Servers.
    "second-server-group",
    "replaced-md5",
    "too-many-servers",
    "address-weight",
    // Settings and web pages.
    "lost-setting",
    "duplicate-item",
    "duplicate-web-page",
    "escaped-twice",
};

/// Those that drop something, so that nothing more is reported of it.
const std::set<std::string, std::less<>> silencing{
    "unknown-magic-group", "unknown-reuse-panel", "second-palette-section",
    "second-server-group", "duplicate-item",      "duplicate-web-page",
};

/// The findings that a schema should make too.
Findings schemaFindings(const Findings& findings) {
    Findings kept;
    std::ranges::copy_if(findings, std::back_inserter(kept),
                         [](const std::string& rule) { return !notInSchemas.contains(rule); });
    return kept;
}

class Agreement : public ::testing::TestWithParam<const FormatInfo*> {
protected:
    const FormatInfo& format = *GetParam();
    const RelaxNgSchema relaxNg{describe::relaxNg(format)};
    const XmlSchemaSchema xmlSchema{describe::xmlSchema(format)};
};

TEST_P(Agreement, ASchemaRefusesWhatTheLoaderReportsAndNothingElse) {
    Documents documents(format, 1);
    int inOrder = 0;
    int wrong = 0;
    for (int at = 0; at < 300; ++at) {
        const std::string text = documents.next();
        const Findings all = loaders.find(format.id)->second(text);
        const Findings findings = schemaFindings(all);
        if (findings.empty() && std::ranges::any_of(all, [](const std::string& rule) {
                return silencing.contains(rule);
            }))
            continue;
        ASSERT_EQ(relaxNg.accepts(text), findings.empty())
            << text << ' ' << ::testing::PrintToString(findings);
        ++(findings.empty() ? inOrder : wrong);
    }
    EXPECT_THAT(inOrder, Gt(30));
    EXPECT_THAT(wrong, Gt(30));
}

TEST_P(Agreement, TheSchemaForEditorsAcceptsWhatIsInOrderUnderTheUsualRoot) {
    const std::string root = '<' + std::string(shownName(format.root));
    Documents documents(format, 2);
    int accepted = 0;
    for (int at = 0; at < 200; ++at) {
        const std::string text = documents.next();
        if (text.starts_with(root) && relaxNg.accepts(text)) {
            ASSERT_TRUE(xmlSchema.accepts(text)) << text;
            ++accepted;
        }
    }
    EXPECT_THAT(accepted, Gt(20));
}

TEST_P(Agreement, TheExampleHasNothingToReport) {
    EXPECT_THAT(schemaFindings(loaders.find(format.id)->second(format.example)), IsEmpty());
}

std::vector<const FormatInfo*> loadedFormats() {
    std::vector<const FormatInfo*> loaded;
    for (const auto& [id, load] : loaders)
        loaded.push_back(formatNamed(id));
    return loaded;
}

const auto nameOf = [](const auto& info) { return std::string(info.param->id); };

INSTANTIATE_TEST_SUITE_P(Formats, Agreement, ::testing::ValuesIn(loadedFormats()), nameOf);

// ---- One example for each rule ----

struct Refused {
    std::string_view rule;
    std::string_view format;
    std::string_view text;
    bool inEditorsToo;  ///< the XML Schema refuses it as well
};

const Refused refused[] = {
    {"event-root-name", "events", "<events/>", true},
    {"unknown-element", "events", "<event_list><commands/></event_list>", true},
    {"unknown-attribute", "events", "<event_list version='2'/>", true},
    {"stray-text", "events", "<event_list>text</event_list>", true},
    {"unread-content", "events",
     "<event_list><command_event><command name='a'><b/></command></command_event></event_list>",
     true},
    {"nested-event-section", "events",
     "<event_list><command_event><element_event name='a'/></command_event></event_list>", false},
    {"event-section-without-name", "events",
     "<event_list><event_template><e name='a'/></event_template></event_list>", true},
    {"event-section-without-name", "events",
     "<event_list><element_event name=''><event name='a'/></element_event></event_list>", true},
    {"command-without-name", "events",
     "<event_list><command_event><command/></command_event></event_list>", true},
    {"unreachable-command", "events",
     "<event_list><command_event><command name=''/></command_event></event_list>", true},
    {"event-without-name", "events",
     "<event_list><element_event name='g'><event/></element_event></event_list>", true},
    {"unreachable-event", "events",
     "<event_list><element_event name='g'><event name=''/></element_event></event_list>", false},
    {"event-entry-without-effect", "events",
     "<event_list><event_template name='t'><event/></event_template></event_list>", true},
    {"dispatch-spelling", "events",
     "<event_list><command_event><command name='a' disptch='b'/></command_event></event_list>",
     true},
    {"dispatch-spelling", "events",
     "<event_list><event_template name='t'><event name='a' dispatch='b'/></event_template>"
     "</event_list>",
     false},
    {"attribute-without-event", "events",
     "<event_list><event_template name='t'><include src='u' command='c'/></event_template>"
     "</event_list>",
     true},
    {"src-on-event", "events",
     "<event_list><element_event name='g'><event name='a' src='t'/></element_event></event_list>",
     false},
    {"empty-src", "events",
     "<event_list><event_template name='t'><event name='a' src=''/></event_template></event_list>",
     false},
    {"include-without-src", "events",
     "<event_list><element_event name='g'><include/></element_event></event_list>", true},
    // The layout.
    {"style-element-name", "styles", "<styles><page name='a'/></styles>", true},
    {"style-without-name", "styles", "<styles><style/></styles>", true},
    {"style-without-name", "styles", "<styles><style name=''/></styles>", true},
    {"misplaced-element", "styles", "<styles><style name='a'><element name='b'/></style></styles>",
     true},
    {"misplaced-reuse-panel", "styles",
     "<styles><style name='a'><reuse_panel name='b'/></style></styles>", true},
    {"misplaced-panel", "styles", "<styles><page name='a'><panel name='b'/></page></styles>", true},
    {"element-without-name", "styles",
     "<styles><style name='a'><panel><element name=''/></panel></style></styles>", true},
    {"missing-name", "styles", "<styles><style name='a'><magic_panels/></style></styles>", true},
    {"odd-flag", "styles", "<styles><style name='a'><panel vertical='1'/></style></styles>", true},
    {"odd-number", "styles", "<styles><style name='a' layer='1.5'/></styles>", true},
    {"odd-number", "styles", "<styles><style name='a' layer='2147483648'/></styles>", false},
    {"odd-number", "styles", "<styles><style name='a'><panel split_scale='1e39'/></style></styles>",
     false},
    {"odd-number", "styles", "<styles><style name='a'><panel fix_size='1 '/></style></styles>",
     true},
    {"empty-list", "styles",
     "<styles><style name='a'><panel><element name='b' event_dispatch_src=''/></panel></style>"
     "</styles>",
     true},
    {"unread-content", "styles",
     "<styles><style name='a'><panel><element name='b'><panel/></element></panel></style></styles>",
     true},
    {"unexpected-element-name", "magic_panels",
     "<magic_panel_groups><group name='a'/></magic_panel_groups>", true},
    {"unexpected-element-name", "magic_panels",
     "<magic_panel_groups><magic_panels name='a'><magic_panel name='b'><box/></magic_panel>"
     "</magic_panels></magic_panel_groups>",
     true},
    {"missing-name", "magic_panels", "<magic_panel_groups><magic_panels/></magic_panel_groups>",
     true},
    {"member-without-panel", "magic_panels",
     "<magic_panel_groups><magic_panels name='a'><magic_panel name='b'/></magic_panels>"
     "</magic_panel_groups>",
     true},
    {"second-panel", "magic_panels",
     "<magic_panel_groups><magic_panels name='a'><magic_panel name='b'><panel/><panel/>"
     "</magic_panel></magic_panels></magic_panel_groups>",
     true},
    {"misplaced-magic-panels", "reuse_panels",
     "<reuse_panels><reuse_panel name='a'><magic_panels name='b'/></reuse_panel></reuse_panels>",
     true},
    {"missing-name", "reuse_panels", "<reuse_panels><reuse_panel/></reuse_panels>", true},
    // Palettes.
    {"palette-root-name", "palette", "<root/>", true},
    {"unknown-palette-section", "palette", "<ROOT><COLORES/></ROOT>", true},
    {"palette-entry-without-name", "palette",
     "<ROOT><SWPALETTE><COLORES><COLOR R='1' G='1' B='1'/></COLORES></SWPALETTE></ROOT>", true},
    {"unreachable-palette-name", "palette",
     "<ROOT><SWPALETTE><FONTS><FONT NAME='' HEIGHT='1' FACE='a'/></FONTS></SWPALETTE></ROOT>",
     true},
    {"missing-attribute", "palette",
     "<ROOT><SWPALETTE><COLORES><COLOR NAME='a' R='1' G='1'/></COLORES></SWPALETTE></ROOT>", true},
    {"number-out-of-range", "palette",
     "<ROOT><SWPALETTE><COLORES><COLOR NAME='a' R='1' G='1' B='256'/></COLORES></SWPALETTE></ROOT>",
     false},
    {"font-without-size", "palette",
     "<ROOT><SWPALETTE><FONTS><FONT NAME='a' HEIGHT='0' FACE='a'/></FONTS></SWPALETTE></ROOT>",
     false},
    {"incomplete-palette-key", "palette",
     "<ROOT><SWPALETTE><APP_MAP><FONTS><ITEM KEY='a'/></FONTS></APP_MAP></SWPALETTE></ROOT>", true},
    // Servers.
    {"server-root-name", "servers", "<servers/>", true},
    {"server-group-without-type", "servers", "<application><server/></application>", true},
    {"server-type-never-loaded", "servers", "<application><server type='6'/></application>", true},
    {"incomplete-server-entry", "servers",
     "<application><server type='1'><addr key='1' name='a'/></server></application>", true},
    {"server-entry-without-address", "servers",
     "<application><server type='1'><addr key='1' name='a' addrs=''/></server></application>",
     true},
    {"server-without-name", "servers",
     "<application><server type='1'><addr key='1' name='a;' addrs='h:1'/></server></application>",
     true},
    {"empty-server-address", "servers",
     "<application><server type='1'><addr key='1' name='a' addrs='h:1;'/></server></application>",
     true},
    {"address-without-port", "servers",
     "<application><server type='1'><addr key='1' name='a' addrs='h:1;h'/></server></application>",
     true},
    {"address-without-host", "servers",
     "<application><server type='1'><addr key='1' name='a' addrs=':1'/></server></application>",
     true},
    {"address-with-too-many-parts", "servers",
     "<application><server type='1'><addr key='1' name='a' addrs='1:h:1:2'/></server>"
     "</application>",
     true},
    {"ipv6-address", "servers",
     "<application><server type='1'><addr key='1' name='a' addrs='[::1]:80'/></server>"
     "</application>",
     true},
    {"odd-server-port", "servers",
     "<application><server type='1'><addr key='1' name='a' addrs='h:70000'/></server>"
     "</application>",
     true},
    // Settings and web pages.
    {"settings-root-name", "settings", "<settings/>", true},
    {"element-in-text", "settings", "<config><a><b>c<d/></b></a></config>", false},
    {"unknown-attribute", "settings", "<config><a b='c'/></config>", false},
    {"stray-text", "settings", "<config>a</config>", true},
    {"web-page-root-name", "web_pages", "<pages/>", true},
    {"web-page-without-key", "web_pages", "<urls><url>a</url></urls>", true},
    {"key-with-apostrophe", "web_pages", "<urls><url key=\"a'b\">c</url></urls>", true},
    {"blanks-around-address", "web_pages", "<urls><url key='a'> b</url></urls>", false},
    {"element-in-text", "web_pages", "<urls><url key='a'>b<c/></url></urls>", true},
};

TEST(RefusedExamples, ARuleIsReportedAndRefused) {
    for (const auto& [rule, id, text, inEditorsToo] : refused) {
        const FormatInfo& format = *formatNamed(id);
        const std::string shown = std::string(rule) + ' ' + std::string(text);
        EXPECT_THAT(loaders.find(id)->second(text), Contains(rule)) << shown;
        EXPECT_FALSE(RelaxNgSchema(describe::relaxNg(format)).accepts(text)) << shown;
        EXPECT_EQ(!XmlSchemaSchema(describe::xmlSchema(format)).accepts(text), inEditorsToo)
            << shown;
    }
}

/// Every rule that the pages list for a format with a loader here is either in the examples or
/// named above as one that schemas do not know.
TEST(RefusedExamples, NoRuleIsForgotten) {
    for (const auto& [id, load] : loaders) {
        for (const ElementInfo* element : elementsOf(*formatNamed(id))) {
            for (const Rule* rule : element->rules) {
                const bool isRefused = std::ranges::any_of(
                    refused, [&](const Refused& each) { return each.rule == rule->name; });
                EXPECT_NE(isRefused, notInSchemas.contains(rule->name)) << rule->name;
            }
        }
    }
}

}  // namespace
}  // namespace yg
