// SPDX-License-Identifier: MIT
#include <random>

#include "findings/Root.h"

namespace yg::testing {

namespace {

using Words = std::vector<std::string_view>;

/// What an element usually has.
struct Kind {
    Words attributes;
    Words children;
};

/// The elements of a format by their names; the first is the root.
struct Grammar {
    std::string_view root;
    std::map<std::string_view, Kind> kinds;
    /// Values that attributes of some names usually have.
    std::map<std::string_view, Words> values;
};

const Words panelAttributes{"name",
                            "split_scale",
                            "fix_size",
                            "scroll_size",
                            "min_size",
                            "max_size",
                            "vertical",
                            "is_scroll_view",
                            "is_dis_split_space",
                            "is_editable",
                            "switch_expand_panel",
                            "foldPosition"};
const Words panelContent{"panel", "panel", "element", "element", "magic_panels", "reuse_panel"};
const Words elementAttributes{
    "name", "param", "property", "uuid", "event", "event_dispatch_dest", "is_first_responder"};
const Words flags{"true", "false", "true", "yes"};
const Words numbers{"0", "1", "2.5", "-3", "12", "7x", ""};
const Words names{"a", "b", "c", "chart", "side", "bar", "rtline_view", "SH600000"};

const std::map<std::string_view, Words> layoutValues{{"split_scale", numbers},
                                                     {"fix_size", numbers},
                                                     {"scroll_size", numbers},
                                                     {"min_size", numbers},
                                                     {"max_size", numbers},
                                                     {"vertical", flags},
                                                     {"is_editable", flags},
                                                     {"is_scroll_view", flags},
                                                     {"is_dis_split_space", flags},
                                                     {"is_first_responder", flags},
                                                     {"layer", numbers},
                                                     {"event_dispatch_dest", {"a;b", "", "c"}},
                                                     {"name", names}};

const std::map<std::string_view, Kind> panelKinds{
    {"panel", {panelAttributes, panelContent}},
    {"element", {elementAttributes, {}}},
};

Grammar layoutGrammar(std::string_view root, std::map<std::string_view, Kind> kinds) {
    kinds.insert(panelKinds.begin(), panelKinds.end());
    return {root, std::move(kinds), layoutValues};
}

const Grammar styles =
    layoutGrammar("styles", {{"styles", {{"default_style"}, {"style", "style", "style"}}},
                             {"style", {{"name", "name", "name", "layer", "focus"}, panelContent}},
                             {"magic_panels", {{"name"}, {}}},
                             {"reuse_panel", {{"name"}, {}}}});

const Grammar magicPanels =
    layoutGrammar("groups", {{"groups", {{}, {"magic_panels", "magic_panels"}}},
                             {"magic_panels", {{"name"}, {"magic_panel", "magic_panel"}}},
                             {"magic_panel", {{"name"}, {"panel"}}},
                             {"reuse_panel", {{"name"}, {}}}});

const Grammar reusePanels =
    layoutGrammar("reuse_panels", {{"reuse_panels", {{}, {"reuse_panel", "reuse_panel"}}},
                                   {"reuse_panel", {panelAttributes, panelContent}},
                                   {"magic_panels", {{"name"}, {}}}});

const Grammar events{
    "event_list",
    {{"event_list", {{}, {"command_event", "event_template", "element_event"}}},
     {"command_event", {{}, {"command", "command"}}},
     {"event_template", {{"name", "name"}, {"event", "include"}}},
     {"element_event", {{"name", "name"}, {"event", "include"}}},
     {"command", {{"name", "change_style", "dispatch", "addtion_data"}, {}}},
     {"event", {{"name", "name", "command", "change_style", "dispatch", "disptch"}, {}}},
     {"include", {{"src", "src"}, {}}}},
    {{"name", {"a", "b", "c", "d"}}, {"src", {"a", "b", "c", "d"}}}};

const Grammar palette{"ROOT",
                      {{"ROOT", {{}, {"SWPALETTE"}}},
                       {"SWPALETTE", {{}, {"COLORES", "APP_MAP", "FONTS"}}},
                       {"APP_MAP", {{}, {"COLORES", "FONTS"}}},
                       {"COLORES", {{}, {"C", "C", "I"}}},
                       {"FONTS", {{}, {"F", "F", "I"}}},
                       {"C", {{"NAME", "NAME", "R", "G", "B", "A"}, {}}},
                       {"F", {{"NAME", "NAME", "HEIGHT", "HEIGHT"}, {}}},
                       {"I", {{"KEY", "KEY", "VALUE", "VALUE"}, {}}}},
                      {{"NAME", {"a", "b", "c"}},
                       {"VALUE", {"a", "b", "c"}},
                       {"KEY", {"k", "l", "m"}},
                       {"R", {"0", "128", "255", "300", "1x"}},
                       {"G", {"0", "128", "255"}},
                       {"B", {"7", "128", "-1"}},
                       {"A", {"0.5", "1", "128"}},
                       {"HEIGHT", {"12", "9.5", "-1"}}}};

const Grammar servers{"application",
                      {{"application", {{"md5"}, {"server", "server", "server"}}},
                       {"server", {{"type", "type", "name", "domain"}, {"entry", "entry"}}},
                       {"entry", {{"key", "key", "name", "name", "addrs", "addrs"}, {}}}},
                      {{"type", {"1", "2", "3", "6", "1.0"}},
                       {"key", {"1", "2", "x"}},
                       {"name", {"a", "a;b", "c"}},
                       {"addrs", {"h:1", "h:2", "3:h:4", "h", "h:70000", ":5", "[::1]:6"}}}};

const Grammar settings{"config",
                       {{"config", {{}, {"chart", "side", "chart"}}},
                        {"chart", {{}, {"grid", "line", "grid"}}},
                        {"side", {{}, {"grid", "line"}}},
                        {"grid", {{"description"}, {}}},
                        {"line", {{"description"}, {}}}},
                       {}};

const Grammar webPages{"urls",
                       {{"urls", {{}, {"url", "url", "url"}}}, {"url", {{"key", "key"}, {}}}},
                       {{"key", {"a", "b", "c'd", ""}}}};

class Generator {
public:
    explicit Generator(unsigned seed) : random_(seed) {}

    std::string document(const Grammar& grammar) {
        text_.clear();
        addElement(grammar, chance(40) ? "strange" : grammar.root, 0);
        return text_;
    }

    std::string requestUrls() {
        std::string text = R"({"md5Value":)" + json() + R"(,"urlConfigList":[)";
        for (unsigned left = below(5); left > 0; --left) {
            text += chance(8)
                        ? json()
                        : R"({"urlKey":)" + json() + (chance(4) ? "" : R"(,"urlValue":)" + json()) +
                              (chance(6) ? R"(,"other":1)" : "") + "}";
            text += left > 1 ? "," : "";
        }
        return text + "]" + (chance(5) ? R"(,"more":[1,2])" : "") + "}";
    }

private:
    unsigned below(std::size_t count) {
        return count == 0 ? 0 : static_cast<unsigned>(random_() % count);
    }
    /// One time in `times`.
    bool chance(unsigned times) { return below(times) == 0; }

    template <class List>
    auto oneOf(const List& list) {
        return list[below(list.size())];
    }

    std::string json() {
        const std::vector<std::string> values{R"("a")", R"("b")", R"("c")", "1", "null", R"(" d")"};
        return oneOf(values);
    }

    void addElement(const Grammar& grammar, std::string_view name, unsigned depth) {
        const auto kind = grammar.kinds.find(name);
        const Kind none{{"name"}, {"a"}};
        const Kind& is = kind == grammar.kinds.end() ? none : kind->second;
        text_ += '<';
        text_ += name;
        addAttributes(grammar, is);
        text_ += '>';
        addContent(grammar, is, name, depth);
        text_ += "</";
        text_ += name;
        text_ += '>';
        if (chance(3))
            text_ += '\n';
    }

    void addAttributes(const Grammar& grammar, const Kind& kind) {
        std::vector<std::string_view> written;
        for (unsigned left = below(5); left > 0; --left) {
            const std::string_view name =
                chance(15) || kind.attributes.empty() ? "other" : oneOf(kind.attributes);
            if (std::find(written.begin(), written.end(), name) != written.end())
                continue;
            written.push_back(name);
            const auto values = grammar.values.find(name);
            text_ += ' ';
            text_ += name;
            text_ += "=\"";
            text_ +=
                values == grammar.values.end() || chance(12) ? oneOf(names) : oneOf(values->second);
            text_ += '"';
        }
    }

    void addContent(const Grammar& grammar, const Kind& kind, std::string_view name,
                    unsigned depth) {
        constexpr unsigned deepest = 6;
        const bool isLeaf = kind.children.empty();
        for (unsigned left = depth >= deepest ? 0 : below(isLeaf ? 1 : 5); left > 0; --left) {
            if (chance(25))
                text_ += "text";
            if (chance(25))
                text_ += "<!-- comment -->";
            if (chance(15))
                addElement(grammar, strangerIn(grammar), depth + 1);
            else if (!isLeaf)
                addElement(grammar, oneOf(kind.children), depth + 1);
        }
        if (isLeaf && (&grammar == &settings || &grammar == &webPages))
            text_ += std::string(oneOf(names)) + (chance(6) ? " <b>x</b>" : "");
        if (isLeaf && chance(20) && depth < deepest)
            addElement(grammar, chance(2) ? name : "other", deepest);
    }

    /// Any element, where it should not be.
    std::string_view strangerIn(const Grammar& grammar) {
        auto kind = grammar.kinds.begin();
        std::advance(kind, below(grammar.kinds.size()));
        return chance(3) ? "other" : kind->first;
    }

    std::mt19937 random_;
    std::string text_;
};

}  // namespace

RootFiles generatedRoot(unsigned seed) {
    Generator make(seed);
    return {{"config/custompage_template.xml", make.document(styles)},
            {"config/tab_styles.xml", make.document(styles)},
            {"config/magic_panels.xml", make.document(magicPanels)},
            {"soft_optimize/custompage_template.xml", make.document(styles)},
            {"soft_optimize/magic_panels.xml", make.document(magicPanels)},
            {"base_optimize/reuse_panels.xml", make.document(reusePanels)},
            {"config/events.xml", make.document(events)},
            {"storage/palette_white.xml", make.document(palette)},
            {"storage/palette_black.xml", make.document(palette)},
            {"storage/skeleton_v1.xml", make.document(servers)},
            {"storage/app_config.xml", make.document(settings)},
            {"storage/web_page_urls.xml", make.document(webPages)},
            {"storage/request_urls_json.txt", make.requestUrls()}};
}

}  // namespace yg::testing
