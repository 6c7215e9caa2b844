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
