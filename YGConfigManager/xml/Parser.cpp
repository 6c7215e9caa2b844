// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Parser.h"

#include <optional>
#include <utility>

#include "YGConfigManager/xml/Builder.h"
#include "YGConfigManager/xml/Judge.h"
#include "YGConfigManager/xml/Limits.h"
#include "YGConfigManager/xml/ParseErrors.h"
#include "YGConfigManager/xml/PlainText.h"

namespace yg::xml {

namespace {

/// Has a text judged, and the judge who decides say how it read it.
template <class Use>
void judged(const std::string& text, Use use) {
    {
        Judge judge(text, true);
        const Judge::Verdict verdict = judge.judge();
        // A right declaration of this one is left out without a word, however often it stands.
        const bool declaresXml = text.find("xmlns:xml") != std::string::npos;
        if (verdict == Judge::Verdict::malformed ||
            (verdict == Judge::Verdict::wellFormed && !declaresXml))
            return use(judge, verdict == Judge::Verdict::wellFormed);
    }
    Judge judge(text, false);
    use(judge, judge.judge() == Judge::Verdict::wellFormed);
}

}  // namespace

Parsed parseUtf8(std::string text) {
    Parsed parsed;
    if (isPlainText(text)) {
        parsed.tree = buildInPlace(std::move(text));
        return parsed;
    }
    if (const auto found = faultOf(text)) {
        ParseErrors errors(text);
        errors.add(found->at, found->message);
        parsed.errors = errors.take();
        return parsed;
    }
    bool isPlain = false;
    std::optional<bool> standalone;
    judged(text, [&](Judge& judge, bool accepts) {
        if (!accepts) {
            parsed.errors = judge.takeErrors();
            return;
        }
        // pugixml leaves character references to characters that it cannot hold, and the line ends
        // of instructions, as they are.
        isPlain = !judge.hasDoctype() && text.find("&#") == std::string::npos &&
                  !(judge.hasInstruction() && text.find('\r') != std::string::npos);
        standalone = standaloneOf(judge.context());
    });
    if (!parsed.errors.empty())
        return parsed;
    if (!isPlain)
        return buildByCallbacks(text);
    parsed.tree = buildInPlace(std::move(text));
    parsed.tree->standalone = standalone;
    return parsed;
}

bool isReadable(const std::string& text) {
    return isPlainText(text) || isJudgedReadable(text);
}

bool isJudgedReadable(const std::string& text) {
    bool isReadable = false;
    if (!faultOf(text))
        judged(text, [&](const Judge&, bool accepts) { isReadable = accepts; });
    return isReadable;
}

}  // namespace yg::xml
