// SPDX-License-Identifier: MIT
//
// The templates of custom pages and what the names of pages may give for their slots. Internal.
// Throws std::bad_alloc.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/host/YGFrameComFun.h"
#include "YGConfigManager/inspection/TemplateSignature.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"

namespace yg {

/// What a page's name may give for the slots of each group. The host is that of the thread.
class SlotArguments {
public:
    using List = std::shared_ptr<const std::vector<std::string>>;

    /// The loader must outlive the object.
    explicit SlotArguments(const YGStyleConfigLoad& loader);

    const List& of(const std::optional<std::string>& group);

private:
    const YGStyleConfigLoad& loader_;
    const std::shared_ptr<const MappingDic> lists_;
    const std::map<std::string_view, std::vector<std::string_view>> values_;
    std::map<std::optional<std::string>, List> byGroup_;
};

/// The templates of a loader in the order in which they are looked for, or that of a name.
std::vector<TemplateSignature> signaturesOf(
    const YGStyleConfigLoad& loader, const std::function<RootPlace(const xml::Element&)>& placeOf,
    const std::optional<std::string>& name = std::nullopt);

}  // namespace yg
