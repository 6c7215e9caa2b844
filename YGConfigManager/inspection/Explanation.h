// SPDX-License-Identifier: MIT
//
// Why a look-up answers what it answers: where the answer is written, what its name goes through,
// and which other definitions lost and why.
//
// Each explanation loads the files that its look-up needs with a loader of its own, through the
// host that the calling thread uses, and makes the look-up. Nothing is kept, downloaded or changed.
// The steps are what that loader read and reported. Any thread may call; nothing throws: when
// memory does not suffice, an explanation is empty or lacks something, and the log has a line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "YGConfigManager/events/YGCommandData.h"
#include "YGConfigManager/events/YGEventData.h"
#include "YGConfigManager/export.h"
#include "YGConfigManager/graphics/Color.h"
#include "YGConfigManager/graphics/Font.h"
#include "YGConfigManager/graphics/Image.h"
#include "YGConfigManager/inspection/RootFinding.h"
#include "YGConfigManager/inspection/TemplateSignature.h"
#include "YGConfigManager/layout/StyleConfigInfo.h"
#include "YGConfigManager/servers/YGServerAddrTag.h"
#include "YGConfigManager/text/OptionalText.h"

namespace yg {

/// One thing that had a say in an answer, or could have had one.
struct ExplanationStep {
    /// What became of a thing in the look-up.
    enum class Outcome {
        taken,    ///< the answer goes through it
        lost,     ///< without it the answer would be the same
        missing,  ///< it is needed and not there
    };
    Outcome outcome = Outcome::taken;  ///< what became of it
    /// `message` says what it is and, when it lost, why; in a file as a whole line 1, column 1.
    RootPlace place;
};

/// What a look-up answers; std::monostate for null.
using ExplainedAnswer =
    std::variant<std::monostate, std::shared_ptr<const StyleConfigInfo>,
                 std::shared_ptr<const PanelConfigInfo>, std::shared_ptr<const ElementConfigInfo>,
                 std::shared_ptr<const YGEventData>, std::shared_ptr<const YGCommandData>,
                 std::shared_ptr<const YGServerAddrTag>, Color, Font, Image, std::string>;

/// Why a look-up answers what it answers.
struct Explanation {
    ExplainedAnswer answer;  ///< what the look-up answers
    /// What the library answers when it finds nothing, in words: "red", "the system font",
    /// "about:blank", "null". Absent when the answer is the one asked for.
    std::optional<std::string> substitute;
    /// The name that was probably meant, when there is nothing of the one asked for.
    std::optional<std::string> nearest;
    /// The element, or in JSON the entry, that the answer is written in; absent for a substitute.
    std::optional<RootPlace> from;
    /// In the order in which the look-up comes to them: of each name that it goes through all
    /// definitions, in the order of loading.
    std::vector<ExplanationStep> steps;
    /// What else is worth knowing about the answer, one sentence each.
    std::vector<std::string> remarks;
};

/// Explains the look-ups of the current host's terminal. The root is where the layout, the events
/// and host.json are, as in a stand-alone host, and what places are relative to.
class YG_EXPORT Explainer {
public:
    /// An explainer of the files below this folder.
    explicit Explainer(OptionalText root) : root_(*root) {}

    /// YGStyleConfigLoad::loadStyleConfigInfoWithName.
    Explanation style(OptionalText name) const;

    /// The first panel of this name on a page, in the order of the document.
    Explanation panel(OptionalText page, OptionalText name) const;

    /// The first element of this uuid on a page; without one the first of this name.
    Explanation element(OptionalText page, OptionalText name) const;

    /// YGEventLoader::eventByName and commandByName.
    Explanation event(OptionalText group, OptionalText name) const;
    Explanation command(OptionalText name) const;

    /// YGPaletteLoad::getCustomColor, getCustomFont and getCustomImage of a theme, 0 or 1.
    Explanation color(OptionalText key, std::int8_t paletteStyle) const;
    Explanation font(OptionalText key, std::int8_t paletteStyle) const;
    Explanation image(OptionalText name, std::int8_t paletteStyle) const;

    /// The first server of this name of a type, or of the first type that has one; with the address
    /// that this load drew for it.
    Explanation server(std::optional<std::uint64_t> type, OptionalText name, bool isGray) const;

    /// YGAppConfigManager::getItemText.
    Explanation setting(OptionalText file, OptionalText section, OptionalText item) const;

    /// YGWebPageUrlConfig::getWebPageUrlByKey.
    Explanation webPage(OptionalText file, OptionalText key) const;

    /// YGHttpReqUrlMgr::httpReqUrlStringWithUrlKey of the stored list.
    Explanation requestUrl(OptionalText key) const;

    /// The templates of custom pages in the order in which they are looked for.
    std::vector<TemplateSignature> templates() const;

private:
    std::string root_;
};

}  // namespace yg
