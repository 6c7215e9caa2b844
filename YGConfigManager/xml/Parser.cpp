// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Parser.h"

#include <utility>

#include "YGConfigManager/xml/Builder.h"
#include "YGConfigManager/xml/Judge.h"
#include "YGConfigManager/xml/Limits.h"
#include "YGConfigManager/xml/ParseErrors.h"

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

Parsed parseUtf8(const std::string& text) {
    if (const auto found = faultOf(text)) {
        ParseErrors errors(text);
        errors.add(found->at, found->message);
        return {nullptr, errors.take()};
    }
    Parsed parsed;
    judged(text, [&](Judge& judge, bool accepts) {
        if (!accepts) {
            parsed.errors = judge.takeErrors();
            return;
        }
        // pugixml leaves character references to characters that it cannot hold, and the line ends
        // of instructions, as they are.
        const bool isPlain = !judge.hasDoctype() && text.find("&#") == std::string::npos &&
                             !(judge.hasInstruction() && text.find('\r') != std::string::npos);
        parsed.tree = isPlain ? buildQuickly(text) : nullptr;
        if (parsed.tree)
            noteStandalone(*parsed.tree, judge.context());
    });
    if (!parsed.tree && parsed.errors.empty())
        return buildByCallbacks(text);
    return parsed;
}

bool isReadable(const std::string& text) {
    bool isReadable = false;
    if (!faultOf(text))
        judged(text, [&](const Judge&, bool accepts) { isReadable = accepts; });
    return isReadable;
}

}  // namespace yg::xml
