// SPDX-License-Identifier: MIT
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/layout/ElementConfigInfo.h"

#include "layout/RecordText.h"

namespace {

using ::testing::ElementsAre;
using ::testing::Pair;
using yg::ElementConfigInfo;
using yg::testing::fieldsOf;

std::string addressOf(const ElementConfigInfo& element) {
    std::ostringstream text;
    text << "0x" << std::hex << reinterpret_cast<std::uintptr_t>(&element);
    return text.str();
}

TEST(ElementConfigInfo, BeginsWithEveryFieldAbsentOrFalse) {
    EXPECT_THAT(
        fieldsOf(ElementConfigInfo()),
        ElementsAre(Pair("elementName", "absent"), Pair("elementParam", "absent"),
                    Pair("elementProperty", "absent"), Pair("elementUuid", "absent"),
                    Pair("elementEvent", "absent"), Pair("eventDispathDestArray", "absent"),
                    Pair("eventDispathSrcArray", "absent"), Pair("isFristReponder", "false"),
                    Pair("alwaysRecvEvent", "false"), Pair("eventNotChangeStyle", "false")));
}

TEST(ElementConfigInfo, KeepsWhatItIsGiven) {
    const auto sources = std::make_shared<std::vector<std::string>>();
    ElementConfigInfo element;
    element.setElementName("Grid");
    element.setElementParam("");
    element.setElementProperty("rows=20");
    element.setElementUuid("u1");
    element.setElementEvent("quote_list");
    element.setEventDispathDestArray(
        std::make_shared<std::vector<std::string>>(std::vector<std::string>{"a", "b"}));
    element.setEventDispathSrcArray(sources);
    element.setIsFristReponder(true);
    element.setAlwaysRecvEvent(true);
    element.setEventNotChangeStyle(true);
    sources->push_back("later");
    EXPECT_THAT(
        fieldsOf(element),
        ElementsAre(Pair("elementName", "\"Grid\""), Pair("elementParam", "\"\""),
                    Pair("elementProperty", "\"rows=20\""), Pair("elementUuid", "\"u1\""),
                    Pair("elementEvent", "\"quote_list\""),
                    Pair("eventDispathDestArray", "[\"a\", \"b\"]"),
                    Pair("eventDispathSrcArray", "[\"later\"]"), Pair("isFristReponder", "true"),
                    Pair("alwaysRecvEvent", "true"), Pair("eventNotChangeStyle", "true")));
}

TEST(ElementConfigInfo, DescriptionTellsNameParameterAndIdentifier) {
    ElementConfigInfo element;
    element.setElementName("行情表");
    element.setElementParam("沪深A股");
    element.setElementUuid("quote.list");
    EXPECT_EQ(element.description(),
              "(ElementConfigInfo *)" + addressOf(element) + " ,行情表, 沪深A股, [quote.list]");
}

TEST(ElementConfigInfo, DescriptionPrintsAbsentTextsAsNullAndEmptyOnesAsNothing) {
    ElementConfigInfo element;
    EXPECT_EQ(element.description(),
              "(ElementConfigInfo *)" + addressOf(element) + " ,(null), (null), [(null)]");
    element.setElementParam("");
    EXPECT_EQ(element.description(),
              "(ElementConfigInfo *)" + addressOf(element) + " ,(null), , [(null)]");
}

}  // namespace
