// SPDX-License-Identifier: MIT
#include "ygconfig/report/LayoutModel.h"

#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace yg::tool {

namespace {

using Numbers = LayoutRecords::Numbers;

/// What the page says of the fields of a record: [field, attribute, sentence].
template <class Record>
std::vector<std::vector<std::string_view>> fieldNames() {
    std::vector<std::vector<std::string_view>> names;
    const auto add = [&](const auto& field) {
        if (!field.attribute.name.empty())
            names.push_back({field.name, field.attribute.name, field.attribute.sentence});
    };
    std::apply([&](const auto&... field) { (add(field), ...); }, Description<Record>::fields);
    return names;
}

struct NumberedPage {
    const std::string* name;
    std::string_view source;
    const StyleConfigInfo* style;
    Numbers panels;
};

struct NumberedPanel {
    const std::string* name;
    const PanelConfigInfo* panel;
    std::size_t number;
};

struct NumberedGroup {
    const std::string* name;
    std::vector<NumberedPanel> members;
};

/// The stored pages and panels, numbered.
class LayoutContent {
public:
    LayoutContent(ModelSource& source, LayoutRecords& records) : source_(source) {
        const YGStyleConfigLoad& layout = source.contents.layout();
        const auto addPages = [&](const auto& styles, std::string_view kind) {
            if (!styles)
                return;
            for (const auto& [name, style] : *styles)
                pages_.push_back(
                    {&name, kind, style.get(), records.numbersOf(*style->stylePanes())});
        };
        const auto numbered = [&](const PanelMap& panels) {
            std::vector<NumberedPanel> list;
            for (const auto& [name, panel] : panels)
                list.push_back({&name, panel.get(), records.numberOf(*panel)});
            return list;
        };
        addPages(layout.styleInfos(), "style");
        addPages(layout.tabStyleInfos(), "tab");
        if (const auto& groups = layout.magicPanelInfos()) {
            for (const auto& [name, members] : *groups)
                groups_.push_back({&name, numbered(*members)});
        }
        if (const auto& panels = layout.reusePanelInfos())
            reuse_ = numbered(*panels);
    }

    /// Members of the object that is being written.
    void write(JsonWriter& json) const {
        json.member("pages", [&] {
            json.list(pages_, [&](const NumberedPage& page) { writePage(json, page); });
        });
        json.member("groups", [&] {
            json.list(groups_, [&](const NumberedGroup& group) {
                json.object([&] {
                    json.member("name", *group.name);
                    source_.places.writeAt(
                        json, source_.places.definition(Naming::magicGroup, *group.name));
                    json.member("members", [&] { writePanels(json, group.members); });
                });
            });
        });
        json.member("reuse", [&] { writePanels(json, reuse_); });
    }

private:
    void writePage(JsonWriter& json, const NumberedPage& page) const {
        json.object([&] {
            json.member("name", *page.name);
            json.member("source", page.source);
            source_.places.writeAt(json, source_.contents.placeOf(page.style));
            json.member("layer", page.style->styleLayer());
            if (page.style->styleFucus())
                json.member("focus", page.style->styleFucus());
            json.member("panels", page.panels);
        });
    }

    void writePanels(JsonWriter& json, const std::vector<NumberedPanel>& panels) const {
        json.list(panels, [&](const NumberedPanel& each) {
            json.object([&] {
                json.member("name", *each.name);
                source_.places.writeAt(json, source_.contents.placeOf(each.panel));
                json.member("panel", each.number);
            });
        });
    }

    ModelSource& source_;
    std::vector<NumberedPage> pages_;
    std::vector<NumberedGroup> groups_;
    std::vector<NumberedPanel> reuse_;
};

}  // namespace

void writeLayout(JsonWriter& json, ModelSource& source) {
    LayoutRecords records(source);
    const LayoutContent content(source, records);
    const TemplatePages templates(source, records);
    const auto& defaultPage = source.contents.layout().defaultStyleName();
    json.object([&] {
        json.member("fields", [&] {
            json.object([&] {
                json.member("panel", fieldNames<PanelConfigInfo>());
                json.member("element", fieldNames<ElementConfigInfo>());
            });
        });
        json.member("defaults", [&] {
            json.object([&] {
                json.member("panel", PanelConfigInfo());
                json.member("element", ElementConfigInfo());
            });
        });
        content.write(json);
        if (defaultPage)
            json.member("defaultPage", defaultPage);
        json.member("templates", [&] { templates.write(json); });
        records.write(json);
    });
}

}  // namespace yg::tool
