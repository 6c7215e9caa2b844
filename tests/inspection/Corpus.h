// SPDX-License-Identifier: MIT
//
// The cases of the corpus, by subject.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "YGConfigManager/diagnostics/Rule.h"
#include "YGConfigManager/inspection/Delivery.h"

namespace yg::testing {

/// A change of one file of the sample.
struct Change {
    std::string_view file;  ///< below the root
    std::string_view was;  ///< the first such text is replaced; "" for the whole file, or a new one
    /// With ⟦ and ⟧ around the text that the finding is to be at; without them it is the whole
    /// file.
    std::string_view is;
    bool isFileRemoved = false;
};

struct Mistake {
    std::string_view rule;
    Severity severity;
    std::vector<Change> changes;  ///< at most one of them has a mark
    std::string_view suggestion = {};
    /// The changed file is delivered as this, and the sample stays as it is.
    std::optional<Delivery::Kind> delivered = {};
};

std::vector<Mistake> commonMistakes();
std::vector<Mistake> fileMistakes();
std::vector<Mistake> layoutMistakes();
std::vector<Mistake> eventMistakes();
std::vector<Mistake> paletteMistakes();
std::vector<Mistake> serverMistakes();
std::vector<Mistake> settingsMistakes();

inline std::vector<Mistake> mistakes() {
    std::vector<Mistake> all;
    for (const auto part : {commonMistakes, fileMistakes, layoutMistakes, eventMistakes,
                            paletteMistakes, serverMistakes, settingsMistakes}) {
        const std::vector<Mistake> some = part();
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

}  // namespace yg::testing
