// SPDX-License-Identifier: MIT
//
// The attributes of palette entries: which member each one fills. A row that is new fails here
// until it has an example.
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "YGConfigManager/palette/PaletteAttributes.h"
#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/xml/Document.h"

namespace yg {
namespace {

std::string shown(const std::optional<std::string_view>& text) {
    return text ? '"' + std::string(*text) + '"' : "absent";
}

std::string shown(const ColorEntry& entry) {
    return text::format("%@ %d %d %d %d", shown(entry.name), static_cast<int>(entry.red * 10),
                        static_cast<int>(entry.green * 10), static_cast<int>(entry.blue * 10),
                        static_cast<int>(entry.alpha * 10));
}

std::string shown(const FontEntry& entry) {
    return text::format("%@ %d %@", shown(entry.name), static_cast<int>(entry.height * 10),
                        shown(entry.face));
}

std::string shown(const ImageEntry& entry) {
    return shown(entry.name) + ' ' + shown(entry.path);
}

template <Naming named>
std::string shown(const KeyEntry<named>& entry) {
    return shown(entry.key) + ' ' + shown(entry.value);
}

/// Expects of each row alone that it gives the entry expected.
template <class Entry>
void expectRows(const std::map<std::string_view, std::string>& expected) {
    EXPECT_EQ(expected.size(), attributesOf<Entry>.rows().size());
    for (const AttributeInfo& row : attributesOf<Entry>.rows()) {
        const auto parsed = xml::Document::parseText("<e " + std::string(row.name) + "=' 2.5x'/>");
        Entry entry;
        attributesOf<Entry>.read(parsed.document.root(), entry);
        ASSERT_TRUE(expected.contains(row.name)) << row.name;
        EXPECT_EQ(shown(entry), expected.at(row.name));
    }
}

TEST(PaletteAttributes, FillTheirMember) {
    expectRows<ColorEntry>({{"R", "absent 25 0 0 10"},
                            {"G", "absent 0 25 0 10"},
                            {"B", "absent 0 0 25 10"},
                            {"A", "absent 0 0 0 25"},
                            {"NAME", R"(" 2.5x" 0 0 0 10)"}});
    expectRows<FontEntry>({{"NAME", R"(" 2.5x" 0 absent)"},
                           {"HEIGHT", "absent 25 absent"},
                           {"FACE", R"(absent 0 " 2.5x")"}});
    expectRows<ImageEntry>({{"NAME", R"(" 2.5x" absent)"}, {"PATH", R"(absent " 2.5x")"}});
    const std::map<std::string_view, std::string> keys{{"KEY", R"(" 2.5x" absent)"},
                                                       {"VALUE", R"(absent " 2.5x")"}};
    expectRows<KeyEntry<Naming::color>>(keys);
    expectRows<KeyEntry<Naming::font>>(keys);
}

TEST(PaletteAttributes, AreWrittenInCapitals) {
    const auto parsed = xml::Document::parseText("<e name='n' r='1' a='0' Name='n'/>");
    ColorEntry entry;
    attributesOf<ColorEntry>.read(parsed.document.root(), entry);
    EXPECT_EQ(shown(entry), shown(ColorEntry()));
}

}  // namespace
}  // namespace yg
