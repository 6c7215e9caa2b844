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

/// What one element with its attributes and content does not tell: names given twice, names that
/// are found nowhere, how much there is, and whether there is a comment.
const std::set<std::string, std::less<>> notInSchemas{
    "empty-event-section",
    "template-without-events",
    "duplicate-command",
    "duplicate-event",
    "duplicate-event-template",
    "duplicate-event-group",
    "overridden-template-event",
    "event-lost-to-template",
    "later-event-template",
    "unknown-event-template",
    "include-limit",
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
    for (int at = 0; at < 400; ++at) {
        const std::string text = documents.next();
        const Findings findings = schemaFindings(loaders.find(format.id)->second(text));
        ASSERT_EQ(relaxNg.accepts(text), findings.empty())
            << text << ' ' << ::testing::PrintToString(findings);
        ++(findings.empty() ? inOrder : wrong);
    }
    EXPECT_THAT(inOrder, Gt(100));
    EXPECT_THAT(wrong, Gt(100));
}

TEST_P(Agreement, TheSchemaForEditorsAcceptsWhatIsInOrder) {
    Documents documents(format, 2);
    for (int at = 0; at < 200; ++at) {
        const std::string text = documents.next();
        if (relaxNg.accepts(text)) {
            ASSERT_TRUE(xmlSchema.accepts(text)) << text;
        }
    }
}

TEST_P(Agreement, TheExampleHasNothingToReport) {
    EXPECT_THAT(loaders.find(format.id)->second(format.example), IsEmpty());
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
