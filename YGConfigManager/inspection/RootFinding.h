// SPDX-License-Identifier: MIT
//
// A finding about a root, as it is shown to the author of its files.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "YGConfigManager/diagnostics/Rule.h"
#include "YGConfigManager/text/Place.h"

namespace yg {

/// A place that has to do with a finding: the earlier definition, the other theme.
struct RootPlace {
    std::string file;       ///< below the root, with "/" between folders
    TextPoint begin{1, 1};  ///< line 1 and column 1 for the file as a whole
    TextPoint end{1, 1};    ///< behind the last character
    std::string message;    ///< what is there, one line
};

struct RootFinding {
    const Rule* rule = nullptr;  ///< never null
    std::string file;            ///< below the root, with "/" between folders
    TextPoint begin{1, 1};       ///< line 1 and column 1 for the file as a whole
    TextPoint end{1, 1};         ///< behind the last character
    std::string message;         ///< one line
    std::string readAs;          ///< what the library makes of it, one line; "" when that is clear
    std::string element;         ///< the element's name, "#text", "#comment"; "" for none
    std::optional<std::string> attribute;   ///< the attribute or the JSON member concerned
    std::optional<std::string> value;       ///< the text concerned
    std::optional<std::string> suggestion;  ///< can stand in the place of the text concerned
    std::vector<RootPlace> related;         ///< other places that have to do with it
    /// All that the finding is about: the whole element when that has no effect, otherwise the same
    /// as above. What a rule calls dropped can be deleted.
    TextPoint extentBegin{1, 1};
    TextPoint extentEnd{1, 1};
    /// What follows from it and is not reported by itself.
    std::vector<RootPlace> consequences;
};

}  // namespace yg
