// SPDX-License-Identifier: MIT
//
// An explanation is right when the library agrees: its answer is that of the look-up, without the
// definition that it is said to come from the answer would be another one, and without those that
// lost it would be the same. Over the sample and generated roots.
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/files/UnsavedTexts.h"
#include "YGConfigManager/host/HostOfThread.h"
#include "YGConfigManager/inspection/Explanation.h"
#include "YGConfigManager/inspection/InspectionHost.h"
#include "YGConfigManager/inspection/SourceFiles.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"
#include "YGConfigManager/text/Utf8.h"

#include "LargeInput.h"
#include "findings/Root.h"
#include "records/RecordText.h"

namespace yg::testing {
namespace {

using ::testing::IsEmpty;

constexpr unsigned generatedRoots = isSanitized ? 60 : 500;

/// Names of a kind that are asked for in each root, and one that no root has.
constexpr std::size_t mostNames = 4;

/// One thing to ask for: how it is explained, and what the library answers.
struct Question {
    std::string name;
    std::function<Explanation()> explain;
    std::function<std::string()> look;  ///< null when the answer is drawn at random
};

std::string textOf(const ExplainedAnswer& answer) {
    return std::visit(
        []<class Value>(const Value& value) {
            if constexpr (std::is_same_v<Value, std::monostate>)
                return wholeText(std::shared_ptr<const StyleConfigInfo>());
            else
                return wholeText(value);
        },
        answer);
}

template <class Map>
std::vector<std::string> someOf(const Map& map) {
    std::vector<std::string> names;
    for (const auto& [name, value] : map) {
        if (names.size() < mostNames)
            names.push_back(name);
    }
    names.emplace_back("nobody");
    return names;
}

class Questions {
public:
    explicit Questions(const Root& root) : root_(root.path()), explainer_(root.path()) {}

    std::vector<Question> all(const Lookups& lookups) {
        addPages(lookups);
        addEvents();
        for (const std::int8_t style : {std::int8_t{0}, std::int8_t{1}})
            addPalette(style);
        addServers();
        for (const std::string& item : lookups.items) {
            const std::string section = item.substr(0, item.find('/'));
            const std::string name = item.substr(item.find('/') + 1);
            questions_.push_back(
                {"setting " + item,
                 [=, this] { return explainer_.setting("app_config.xml", section, name); },
                 [=] {
                     const auto text = YGAppConfigManager::initWithFileName("app_config.xml")
                                           ->getItemText(section, name);
                     return text ? wholeText(*text) : textOf({});
                 }});
        }
        for (const std::string& key : lookups.keys)
            questions_.push_back(
                {"web page " + key,
                 [=, this] { return explainer_.webPage("web_page_urls.xml", key); },
                 [=] {
                     return wholeText(YGWebPageUrlConfig::initWithFileName("web_page_urls.xml")
                                          ->getWebPageUrlByKey(key));
                 }});
        return std::move(questions_);
    }

private:
    std::shared_ptr<YGStyleConfigLoad> layout() const {
        auto loader = std::make_shared<YGStyleConfigLoad>();
        loader->initWithStyleConfigPath(root_ + "/config/custompage_template.xml",
                                        root_ + "/config/tab_styles.xml",
                                        root_ + "/config/magic_panels.xml");
        return loader;
    }

    void addPages(const Lookups& lookups) {
        std::set<std::string> pages(lookups.pages.begin(), lookups.pages.end());
        pages.emplace("nobody");
        const auto loader = layout();
        if (const auto& styles = loader->styleInfos()) {
            for (const std::string& name : someOf(*styles))
                pages.insert(name);
        }
        for (const std::string& page : pages) {
            if (questions_.size() > 4 * mostNames)
                break;
            questions_.push_back(
                {"style " + page, [=, this] { return explainer_.style(page); },
                 [=, this] { return wholeText(layout()->loadStyleConfigInfoWithName(page)); }});
        }
    }

    std::shared_ptr<YGEventLoader> events() const {
        return YGEventLoader::initWithEventConfigPath(root_ + "/config/events.xml");
    }

    void addEvents() {
        const auto loader = events();
        for (const std::string& name : someOf(loader->commandDatas()))
            questions_.push_back({"command " + name, [=, this] { return explainer_.command(name); },
                                  [=, this] { return wholeText(events()->commandByName(name)); }});
        for (const std::string& group : someOf(loader->elementEventDatas())) {
            const EventMap* const ofGroup = loader->elementEventDatas().find(group);
            for (const std::string& name : someOf(ofGroup ? *ofGroup : EventMap()))
                questions_.push_back(
                    {"event " + group + " " + name,
                     [=, this] { return explainer_.event(group, name); },
                     [=, this] { return wholeText(events()->eventByName(group, name)); }});
        }
    }

    void addPalette(std::int8_t style) {
        const auto loader = YGPaletteLoad::initWithPaletteStyle(style);
        const std::string theme = style == 0 ? "light " : "dark ";
        const auto add = [&](const std::string& what, const std::string& name, auto look) {
            questions_.push_back({theme + what + " " + name, look, [=]() -> std::string {
                                      const auto loaded =
                                          YGPaletteLoad::initWithPaletteStyle(style);
                                      if (!loaded)
                                          return textOf({});
                                      if (what == "color")
                                          return wholeText(loaded->getCustomColor(name));
                                      if (what == "font")
                                          return wholeText(loaded->getCustomFont(name));
                                      const auto image = loaded->getCustomImage(name);
                                      return image ? wholeText(*image) : textOf({});
                                  }});
        };
        for (const std::string& key :
             someOf(loader ? loader->keyColorNames() : RecordMap<std::string>()))
            add("color", key, [=, this] { return explainer_.color(key, style); });
        for (const std::string& key :
             someOf(loader ? loader->keyFontNames() : RecordMap<std::string>()))
            add("font", key, [=, this] { return explainer_.font(key, style); });
        for (const std::string& name : someOf(loader ? loader->customImages() : RecordMap<Image>()))
            add("image", name, [=, this] { return explainer_.image(name, style); });
    }

    void addServers() {
        const auto loader = YGServerCfgLoader::initWithIsGray(false);
        std::set<std::pair<std::uint64_t, std::string>> servers{{1, "nobody"}};
        forEachField(*loader, [&](std::string_view, const auto& field) {
            if constexpr (std::is_same_v<decltype(field),
                                         const std::shared_ptr<YGServerAddrListTag>&>) {
                if (!field || !field->serverAddrList())
                    return;
                for (const auto& server : *field->serverAddrList()) {
                    if (servers.size() <= mostNames)
                        servers.emplace(field->serverType(), server->serverName().value_or(""));
                }
            }
        });
        for (const auto& each : servers)
            questions_.push_back(
                {"server " + std::to_string(each.first) + " " + each.second,
                 [this, each] { return explainer_.server(each.first, each.second, false); },
                 nullptr});
    }

    std::string root_;
    Explainer explainer_;
    std::vector<Question> questions_;
};

/// The file with the element at a place as a comment; the file as it stands when none begins there.
std::string withoutElementAt(const SourceFiles& files, const RootPlace& place) {
    const SourceFile& file = files.file(place.file);
    const auto around = file.elementsAt(place.begin);
    std::string text = file.text();
    if (around.empty() || around.back().place()->begin != place.begin)
        return text;
    std::size_t begin = 0;
    std::size_t end = 0;
    const Place whole = *around.back().place();
    const auto offsetOf = [&](const TextPoint& point) {
        const auto line = file.line(point.line);
        std::string_view rest = *line;
        for (std::uint32_t column = 1; column < point.column; ++column)
            rest.remove_prefix(text::firstCharacter(rest).size);
        return static_cast<std::size_t>(rest.data() - file.text().data());
    };
    begin = offsetOf(whole.begin);
    end = offsetOf(whole.end);
    return text.replace(begin, end - begin, "<!-- -->");
}

/// What contradicts an explanation, one line each.
std::vector<std::string> contradictions(const Root& root, const Question& question) {
    const Explanation explanation = question.explain();
    const std::string answer = textOf(explanation.answer);
    std::vector<std::string> found;
    const auto say = [&](const std::string& what, const RootPlace& place) {
        found.push_back(question.name + ": " + what + " (" + place.file + ":" +
                        std::to_string(place.begin.line) + ":" +
                        std::to_string(place.begin.column) + " " + place.message + ")");
    };
    if (question.look && answer != question.look())
        say("the look-up answers " + question.look() + ", not " + answer, {});
    if (explanation.from.has_value() == explanation.substitute.has_value())
        say("there must be either a place or a substitute", {});
    if (!question.look)
        return found;
    const SourceFiles files(root.path());
    const auto without = [&](const RootPlace& place) {
        const files::UnsavedTexts texts{
            {root.path() + "/" + place.file, withoutElementAt(files, place)}};
        const files::UnsavedTextsScope unsaved(texts);
        const Explanation changed = question.explain();
        return std::pair(textOf(changed.answer), changed.from.value_or(RootPlace()));
    };
    if (explanation.from && explanation.from->file.ends_with(".xml")) {
        const auto [changed, from] = without(*explanation.from);
        // Another definition, or the substitute, may be the same.
        if (changed == answer && from.file == explanation.from->file &&
            from.begin == explanation.from->begin)
            say("without it the answer is the same", *explanation.from);
    }
    for (const ExplanationStep& step : explanation.steps) {
        if (step.outcome == ExplanationStep::Outcome::lost && step.place.file.ends_with(".xml") &&
            without(step.place).first != answer)
            say("it lost, but without it the answer is another one", step.place);
    }
    return found;
}

std::vector<std::string> contradictions(const RootFiles& files) {
    const Root root(files);
    const HostOfThread host(std::make_shared<InspectionHost>(root.path()));
    std::vector<std::string> all;
    Questions questions(root);
    for (const Question& question : questions.all(lookupsOf(files))) {
        for (std::string& each : contradictions(root, question))
            all.push_back(std::move(each));
    }
    return all;
}

TEST(Explanations, OfTheSampleAgreeWithTheLibrary) {
    EXPECT_THAT(contradictions(filesIn(YG_SAMPLE_FOLDER)), IsEmpty());
}

class ExplanationsOfGeneratedRoots : public ::testing::TestWithParam<unsigned> {};

TEST_P(ExplanationsOfGeneratedRoots, AgreeWithTheLibrary) {
    constexpr unsigned parts = 10;
    for (unsigned seed = GetParam(); seed < generatedRoots; seed += parts)
        EXPECT_THAT(contradictions(generatedRoot(seed)), IsEmpty()) << "seed " << seed;
}

INSTANTIATE_TEST_SUITE_P(Findings, ExplanationsOfGeneratedRoots, ::testing::Range(0U, 10U));

}  // namespace
}  // namespace yg::testing
