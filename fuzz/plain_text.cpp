// SPDX-License-Identifier: MIT
//
// Bytes as a text that may be plain: libxml2 accepts what is taken for that, within the limits, and
// makes the same tree of it as pugixml does, which gets it unseen.
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "YGConfigManager/xml/Builder.h"
#include "YGConfigManager/xml/Decoding.h"
#include "YGConfigManager/xml/Parser.h"
#include "YGConfigManager/xml/PlainText.h"
#include "YGConfigManager/xml/Tree.h"

#include "Target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace yg::xml;
    using yg::fuzz::require;
    std::string text = decodeXml(std::string(yg::fuzz::textOf(data, size))).text;
    if (!isPlainText(text))
        return 0;
    require(isJudgedReadable(text), "plain text is well-formed and within the limits");
    const std::shared_ptr<Tree> built = buildByCallbacks(text).tree;
    require(built != nullptr, "plain text can be read by callbacks");
    const std::shared_ptr<Tree> plain = buildInPlace(std::move(text));
    std::string ofBuilt;
    std::string ofPlain;
    serialiseDocument(ofBuilt, *built, Form::plain);
    serialiseDocument(ofPlain, *plain, Form::plain);
    require(ofPlain == ofBuilt, "plain text makes the same tree in both ways");
    require(!built->standalone && built->doctype.empty(), "plain text has no more than a tree");
    return 0;
}
