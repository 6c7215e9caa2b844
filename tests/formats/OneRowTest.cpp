// SPDX-License-Identifier: MIT
//
// What an attribute takes: a member of the record and a row of its table. All else follows.
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/formats/Formats.h"
#include "YGConfigManager/records/AttributeTable.h"
#include "YGConfigManager/records/Entry.h"
#include "YGConfigManager/xml/Document.h"

#include "describe/Describe.h"
#include "diagnostics/RecordingSink.h"
#include "formats/Schemas.h"

namespace yg {

struct Lamp {
    std::optional<std::string> name;
    bool isOn = false;
};

template <>
struct Description<Lamp> {
    static constexpr std::tuple fields{
        Field{"name", &Lamp::name, &Lamp::name,
              AttributeInfo{.name = "name", .sentence = "The lamp's name.", .isRequired = true}},
        Field{"isOn", &Lamp::isOn, &Lamp::isOn,
              AttributeInfo{.name = "is_on", .kind = AttributeKind::flag, .sentence = "Lit."}}};
};

/// The same with one more attribute.
struct DimmedLamp : Lamp {
    int level = 0;
};

template <>
struct Description<DimmedLamp> {
    static constexpr std::tuple fields = std::tuple_cat(
        Description<Lamp>::fields, std::tuple{Field{"level", &DimmedLamp::level, &DimmedLamp::level,
                                                    AttributeInfo{.name = "level",
                                                                  .kind = AttributeKind::integer,
                                                                  .sentence = "How bright it is.",
                                                                  .least = 0,
                                                                  .most = 10}}});
};

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using yg::testing::RecordingSink;
using yg::testing::RelaxNgSchema;
using yg::testing::XmlSchemaSchema;

/// A format with one element; nothing in it depends on the record.
template <class Record>
struct Format {
    static constexpr auto rows = rowsOf(attributesOf<Record>);
    static constexpr ElementInfo root{.id = "lamp", .name = "lamp", .attributes = rows};
    static constexpr FormatInfo info{.id = "lamps",
                                     .title = "Lamps",
                                     .sentence = "Lamps.",
                                     .files = {},
                                     .root = root,
                                     .example = "<lamp name=\"a\"/>\n"};
};

template <class Record>
Record readFrom(std::string_view text, RecordingSink& sink) {
    Record record;
    reading(Reporter(&sink), xml::Document::parseText(text).document.root(),
            [&](Entry& entry) { entry.read(record); });
    return record;
}

template <class Record>
std::vector<std::string> dumpOf(const Record& record) {
    std::vector<std::string> lines;
    forEachField(record, [&](std::string_view name, const auto& value) {
        lines.push_back(std::string(name) + '=' + ::testing::PrintToString(value));
    });
    return lines;
}

constexpr std::string_view dimmed = "<lamp name='a' level='7'/>";

TEST(OneRow, WithoutItTheAttributeIsUnknown) {
    RecordingSink sink;
    readFrom<Lamp>(dimmed, sink);
    EXPECT_THAT(sink.rules(), ElementsAre("unknown-attribute"));
    const FormatInfo& format = Format<Lamp>::info;
    EXPECT_FALSE(RelaxNgSchema(describe::relaxNg(format)).accepts(dimmed));
    EXPECT_FALSE(XmlSchemaSchema(describe::xmlSchema(format)).accepts(dimmed));
    EXPECT_THAT(describe::page(format), Not(HasSubstr("level")));
}

TEST(OneRow, ItIsReadDumpedAndCopied) {
    RecordingSink sink;
    const auto lamp = readFrom<DimmedLamp>(dimmed, sink);
    EXPECT_THAT(sink.rules(), IsEmpty());
    EXPECT_EQ(lamp.level, 7);
    EXPECT_THAT(dumpOf(lamp), Contains("level=7"));
    DimmedLamp copy;
    copyFields(lamp, copy);
    EXPECT_EQ(copy.level, 7);
}

TEST(OneRow, ItsValueIsCheckedByTheLoaderAndBothSchemas) {
    const FormatInfo& format = Format<DimmedLamp>::info;
    const RelaxNgSchema relaxNg(describe::relaxNg(format));
    const XmlSchemaSchema xmlSchema(describe::xmlSchema(format));
    EXPECT_TRUE(relaxNg.accepts(dimmed));
    EXPECT_TRUE(xmlSchema.accepts(dimmed));
    constexpr std::string_view odd = "<lamp name='a' level='high'/>";
    RecordingSink sink;
    readFrom<DimmedLamp>(odd, sink);
    EXPECT_THAT(sink.rules(), ElementsAre("odd-number"));
    EXPECT_FALSE(relaxNg.accepts(odd));
    EXPECT_FALSE(xmlSchema.accepts(odd));
}

TEST(OneRow, ItIsDescribedOnThePageAndInBothSchemas) {
    const FormatInfo& format = Format<DimmedLamp>::info;
    EXPECT_THAT(describe::page(format),
                HasSubstr("| `level` | Whole number. From 0 to 10. | 0 | How bright it is. |"));
    for (const std::string& schema : {describe::relaxNg(format), describe::xmlSchema(format)}) {
        EXPECT_THAT(schema, HasSubstr(R"(name="level")"));
        EXPECT_THAT(schema, HasSubstr("How bright it is."));
    }
}

}  // namespace
}  // namespace yg
