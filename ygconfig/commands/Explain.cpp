// SPDX-License-Identifier: MIT
#include <charconv>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <CLI/CLI.hpp>

#include "YGConfigManager/inspection/Explanation.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"

#include "ygconfig/commands/Commands.h"
#include "ygconfig/drawing/Display.h"
#include "ygconfig/drawing/ExplanationView.h"
#include "ygconfig/json/Json.h"

namespace yg::tool {

namespace {

constexpr std::string_view settingsFile = "app_config.xml";
constexpr std::string_view webPageFile = "web_page_urls.xml";

template <NameKind... kinds>
void declareNames(CLI::App& app, Arguments& arguments) {
    declareOperands(app, "NAME", arguments.items, "what is asked for", named({kinds...}));
    declareTextOrJson(app, arguments);
}

void declareStyleName(CLI::App& app, Arguments& arguments) {
    declareNames<NameKind::page>(app, arguments);
    declareFlag(app, "--templates", arguments.templates,
                "lists the templates of custom pages instead");
}

template <NameKind kind>
void declareThemed(CLI::App& app, Arguments& arguments) {
    declareNames<kind>(app, arguments);
    declareNumber(app, "--palette-style", "N", arguments.paletteStyle,
                  "the theme: 0 light, 1 dark; 0 if not given");
}

void declareServerName(CLI::App& app, Arguments& arguments) {
    declareNames<NameKind::server, NameKind::server>(app, arguments);
    declareFlag(app, "--gray", arguments.gray, "as a user in the grey release");
}

Answer wrongNames(std::string_view kind, std::string_view wanted) {
    return {"", ExitCode::unusable,
            "ygconfig explain " + std::string(kind) + ": give " + std::string(wanted)};
}

void writePlace(JsonWriter& writer, const RootPlace& place) {
    writer.member("file", place.file);
    writer.member("line", place.begin.line);
    writer.member("column", place.begin.column);
}

void writeAnswer(JsonWriter& writer, const ExplainedAnswer& answer) {
    std::visit(
        [&]<class Value>(const Value& value) {
            if constexpr (std::is_same_v<Value, std::monostate>)
                writer.write(nullptr);
            else
                writer.write(value);
        },
        answer);
}

void writeExplanation(const Explanation& explanation, Output& output) {
    JsonWriter writer(output);
    writer.object([&] {
        writer.member("answer", [&] { writeAnswer(writer, explanation.answer); });
        writer.member("from", [&] {
            if (explanation.from)
                writer.object([&] { writePlace(writer, *explanation.from); });
            else
                writer.write(nullptr);
        });
        writer.member("steps", [&] {
            writer.list(explanation.steps, [&](const ExplanationStep& step) {
                writer.object([&] {
                    writer.member("text", step.place.message);
                    writePlace(writer, step.place);
                    using Outcome = ExplanationStep::Outcome;
                    writer.member("outcome",
                                  std::string_view(step.outcome == Outcome::taken  ? "taken"
                                                   : step.outcome == Outcome::lost ? "lost"
                                                                                   : "missing"));
                });
            });
        });
    });
    writer.finish();
}

std::string jsonOf(const ExplainedAnswer& answer) {
    std::string text;
    const Sink sink = [&](std::string_view piece) { text += piece; };
    Output output(sink);
    JsonWriter writer(output);
    writeAnswer(writer, answer);
    writer.finish();
    output.flush();
    return text;
}

/// `command` is the look-up that gives the same answer.
Answer shown(const Session& session, std::string_view kind, Explanation explained,
             std::string_view command) {
    const auto explanation = std::make_shared<const Explanation>(std::move(explained));
    const ExitCode exitCode = explanation->substitute ? ExitCode::noAnswer : ExitCode::answer;
    if (session.arguments.format == "json")
        return {[explanation](Output& output) { writeExplanation(*explanation, output); },
                exitCode};
    std::string title(kind);
    std::string look = "ygconfig " + std::string(command);
    for (const std::string& name : session.arguments.items) {
        title += " '" + name + "'";
        look += " '" + name + "'";
    }
    return {
        shownExplanation(*explanation, title, jsonOf(explanation->answer), look, session.paint()),
        exitCode};
}

Answer listTemplates(const Session& session) {
    const std::vector<TemplateSignature> templates = Explainer(session.arguments.root).templates();
    const ExitCode exitCode = templates.empty() ? ExitCode::noAnswer : ExitCode::answer;
    if (session.arguments.format != "json")
        return {shownTemplates(templates, session.paint()), exitCode,
                templates.empty() ? "ygconfig: there are no templates" : ""};
    return {[templates](Output& output) {
                JsonWriter writer(output);
                writer.list(templates, [&](const TemplateSignature& signature) {
                    writer.object([&] {
                        writer.member("name", signature.name);
                        writePlace(writer, signature.place);
                        writer.member("pages", signature.pages);
                        writer.member("slots", [&] {
                            writer.list(signature.slots, [&](const auto& slot) {
                                writer.object([&] {
                                    writer.member("group", slot.group);
                                    writer.member("arguments", slot.arguments);
                                });
                            });
                        });
                    });
                });
                writer.finish();
            },
            exitCode};
}

Answer explainStyle(const Session& session) {
    const std::vector<std::string>& names = session.arguments.items;
    if (session.arguments.templates)
        return names.empty() ? listTemplates(session)
                             : wrongNames("style", "either a name or --templates");
    if (names.size() != 1)
        return wrongNames("style", "one name, that of a page, or --templates");
    return shown(session, "style", Explainer(session.arguments.root).style(names[0]), "dump style");
}

Answer explainPanel(const Session& session) {
    const std::vector<std::string>& names = session.arguments.items;
    if (names.size() != 2)
        return wrongNames("panel", "two names, those of the page and of the panel");
    return shown(session, "panel", Explainer(session.arguments.root).panel(names[0], names[1]),
                 "explain panel --format json");
}

Answer explainElement(const Session& session) {
    const std::vector<std::string>& names = session.arguments.items;
    if (names.size() != 2)
        return wrongNames("element", "two names, that of the page and the element's uuid or name");
    return shown(session, "element", Explainer(session.arguments.root).element(names[0], names[1]),
                 "explain element --format json");
}

Answer explainEvent(const Session& session) {
    const std::vector<std::string>& names = session.arguments.items;
    if (names.size() != 2)
        return wrongNames("event", "two names, those of the group and of the event");
    return shown(session, "event", Explainer(session.arguments.root).event(names[0], names[1]),
                 "event");
}

Answer explainCommand(const Session& session) {
    const std::vector<std::string>& names = session.arguments.items;
    if (names.size() != 1)
        return wrongNames("command", "one name");
    return shown(session, "command", Explainer(session.arguments.root).command(names[0]),
                 "command");
}

template <auto look>
Answer explainThemed(const Session& session, std::string_view kind, std::string_view wanted) {
    const std::vector<std::string>& names = session.arguments.items;
    if (names.size() != 1)
        return wrongNames(kind, wanted);
    const Explainer explainer(session.arguments.root);
    return shown(session, kind,
                 (explainer.*look)(names[0], session.arguments.paletteStyle.value_or(0)), kind);
}

Answer explainColor(const Session& session) {
    return explainThemed<&Explainer::color>(session, "color", "one key");
}

Answer explainFont(const Session& session) {
    return explainThemed<&Explainer::font>(session, "font", "one key");
}

Answer explainImage(const Session& session) {
    return explainThemed<&Explainer::image>(session, "image", "one name");
}

Answer explainServer(const Session& session) {
    const std::vector<std::string>& names = session.arguments.items;
    constexpr std::string_view wanted = "the server's name, or the number of its type and its name";
    if (names.empty() || names.size() > 2)
        return wrongNames("server", wanted);
    std::optional<std::uint64_t> type;
    if (names.size() == 2) {
        std::uint64_t number = 0;
        const char* const end = names[0].data() + names[0].size();
        const auto [read, error] = std::from_chars(names[0].data(), end, number);
        if (error != std::errc() || read != end)
            return wrongNames("server", wanted);
        type = number;
    }
    return shown(
        session, "server",
        Explainer(session.arguments.root).server(type, names.back(), session.arguments.gray),
        "dump servers");
}

Answer explainSetting(const Session& session) {
    const std::vector<std::string>& names = session.arguments.items;
    if (names.size() != 2 && names.size() != 3)
        return wrongNames("setting", "file, section and item; the file may be left out");
    const std::string file = names.size() == 3 ? names[0] : std::string(settingsFile);
    return shown(
        session, "setting",
        Explainer(session.arguments.root).setting(file, names[names.size() - 2], names.back()),
        "settings get");
}

Answer explainWebPage(const Session& session) {
    const std::vector<std::string>& names = session.arguments.items;
    if (names.size() != 1 && names.size() != 2)
        return wrongNames("web-page", "file and key; the file may be left out");
    const std::string file = names.size() == 2 ? names[0] : std::string(webPageFile);
    return shown(session, "web-page", Explainer(session.arguments.root).webPage(file, names.back()),
                 "web-page");
}

Answer explainUrl(const Session& session) {
    const std::vector<std::string>& names = session.arguments.items;
    if (names.size() != 1)
        return wrongNames("url", "one key");
    return shown(session, "url", Explainer(session.arguments.root).requestUrl(names[0]),
                 "request-url");
}

constexpr Command table[] = {
    {"explain", "says why a look-up answers what it answers",
     "  ygconfig explain style quote-SH990001-depth --root examples/terminal\n"
     "  ygconfig explain event watch_list select --root examples/terminal\n"
     "  ygconfig explain color QuoteGrid.名称 --palette-style 1 --root examples/terminal\n",
     explanationLegend, nullptr, nullptr},

    {"explain style", "why a page is what it is: NAME is a style's name or a custom page's",
     "  ygconfig explain style 行情报价 --root examples/terminal\n"
     "  ygconfig explain style quote-SH990001-depth --root examples/terminal\n"
     "  ygconfig explain style --templates --root examples/terminal\n",
     explanationLegend, declareStyleName, explainStyle, true, true},

    {"explain panel", "where a panel of a page comes from: NAME NAME are page and panel",
     "  ygconfig explain panel 行情报价 quote_grid --root examples/terminal\n", explanationLegend,
     declareNames<NameKind::page, NameKind::panel>, explainPanel, true, true},

    {"explain element", "where an element comes from: NAME NAME are page, and uuid or name",
     "  ygconfig explain element 行情报价 quote.grid --root examples/terminal\n", explanationLegend,
     declareNames<NameKind::page, NameKind::element>, explainElement, true, true},

    {"explain event", "why an event is what it is: NAME NAME are group and event",
     "  ygconfig explain event watch_list select --root examples/terminal\n", explanationLegend,
     declareNames<NameKind::eventGroup, NameKind::event>, explainEvent, true, true},

    {"explain command", "why a command is what it is",
     "  ygconfig explain command open_index_page --root examples/terminal\n", explanationLegend,
     declareNames<NameKind::command>, explainCommand, true, true},

    {"explain color", "why an application key has its colour",
     "  ygconfig explain color QuoteGrid.名称 --palette-style 1 --root examples/terminal\n",
     explanationLegend, declareThemed<NameKind::colorKey>, explainColor, true, true},

    {"explain font", "why an application key has its font",
     "  ygconfig explain font QuoteGrid.名称 --root examples/terminal\n", explanationLegend,
     declareThemed<NameKind::fontKey>, explainFont, true, true},

    {"explain image", "where an image comes from",
     "  ygconfig explain image logo --root examples/terminal\n", explanationLegend,
     declareThemed<NameKind::image>, explainImage, true, true},

    {"explain server", "where a server comes from and what is drawn: NAME may be TYPE NAME",
     "  ygconfig explain server 1 上海行情 --root examples/terminal\n", explanationLegend,
     declareServerName, explainServer, true, true},

    {"explain setting", "where a setting comes from: NAME… are FILE, SECTION and ITEM",
     "  ygconfig explain setting app_config.xml appearance theme --root examples/terminal\n",
     explanationLegend,
     declareNames<NameKind::settingsFile, NameKind::settingsSection, NameKind::settingsItem>,
     explainSetting, true, true},

    {"explain web-page", "where a web page's address comes from: NAME… are FILE and KEY",
     "  ygconfig explain web-page web_page_urls.xml help_center --root examples/terminal\n",
     explanationLegend, declareNames<NameKind::webPageFile, NameKind::webPage>, explainWebPage,
     true, true},

    {"explain url", "where a request URL comes from",
     "  ygconfig explain url quote_ranking --root examples/terminal\n", explanationLegend,
     declareNames<NameKind::requestUrl>, explainUrl, true, true},
};

}  // namespace

std::span<const Command> explainCommands() {
    return table;
}

}  // namespace yg::tool
