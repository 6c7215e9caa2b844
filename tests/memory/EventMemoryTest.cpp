// SPDX-License-Identifier: MIT
//
// The event loader when memory runs out: a load or a step of one counts as a whole or not at all.
#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/xml/Document.h"

#include "memory/MemoryTest.h"

#if YG_OWN_ALLOCATION

namespace yg {
namespace {

class EventMemory : public testing::MemoryTest {
protected:
    EventMemory() {
        const std::string& text = testing::longText;
        put("events.xml", "<event_list><command_event><c name='" + text + "' dispatch='" + text +
                              "'/><c name='d'/></command_event><event_template name='" + text +
                              "'><e name='open' disptch='" + text +
                              "'/></event_template><element_event name='g" + text +
                              "'><event name='" + text + "'/><include src='" + text +
                              "'/></element_event></event_list>");
    }

    std::string path() const { return root.at("events.xml"); }
    static std::string textOf(const std::shared_ptr<YGEventLoader>& loader) {
        return testing::wholeText(loader);
    }
    static std::string emptyLoader() {
        return textOf(YGEventLoader::initWithEventConfigPath(std::nullopt));
    }
};

TEST_F(EventMemory, ALoadCountsAsAWholeOrNotAtAll) {
    for (DiagnosticsSink* const sink : testing::bothSinks) {
        const auto load = [file = path(), sink] {
            return YGEventLoader::initWithEventConfigPath(file, sink);
        };
        const auto text = [](const auto& loader) {
            return loader ? textOf(loader) : emptyLoader();
        };
        everyAllocationOfTheFirstCallFails(Operation{load, text, emptyLoader()});
        everyAllocationFails(Operation{load, text, emptyLoader()});
    }
}

TEST_F(EventMemory, AStepAddsAllOrNothing) {
    const xml::Document document = xml::Document::parseFile(path()).document;
    const xml::Element events = document.root();
    std::shared_ptr<YGEventLoader> loader;
    const auto makeLoader = [&] {
        loader = YGEventLoader::initWithEventConfigPath(std::nullopt);
        loader->loadEventTemplate(events);
    };
    const auto text = [&] {
        const std::string all = textOf(loader);
        makeLoader();
        return all;
    };
    makeLoader();
    const std::string before = textOf(loader);
    const auto steps = std::to_array<std::function<void()>>({
        [&] { loader->loadCommandEvent(xml::Element(events.childAt(0))); },
        [&] { loader->loadElementEvent(events); },
        [&] { loader->loadSingleElementEvent(xml::Element(events.childAt(2))); },
    });
    for (const auto& step : steps)
        everyAllocationFails(Operation{[&] { step(); }, text, before});

    const auto makeEmpty = [&] { loader = YGEventLoader::initWithEventConfigPath(std::nullopt); };
    const auto textAndEmpty = [&] {
        const std::string all = textOf(loader);
        makeEmpty();
        return all;
    };
    makeEmpty();
    everyAllocationFails(
        Operation{[&] { loader->loadEventTemplate(events); }, textAndEmpty, emptyLoader()});
    everyAllocationFails(
        Operation{[&] { loader->loadSingleEventTemplate(xml::Element(events.childAt(1))); },
                  textAndEmpty, emptyLoader()});
}

TEST_F(EventMemory, ARecordIsMadeOrNot) {
    const std::string& text = testing::longText;
    const auto whole = [](const auto& record) { return testing::wholeText(record); };
    everyAllocationFails(Operation{
        [&] { return YGCommandData::initWithCommandInfo(text, text, text, text); }, whole, "null"});
    everyAllocationFails(
        Operation{[&] { return YGEventData::initWithEventInfo(text, text, text, text, text); },
                  whole, "null"});
}

}  // namespace
}  // namespace yg

#endif
