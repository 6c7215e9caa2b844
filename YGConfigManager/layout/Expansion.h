// SPDX-License-Identifier: MIT
//
// What references, slots and page names add to a load or a look-up beyond what its files hold,
// counted before it is added. Internal.
#pragma once

#include <cstddef>
#include <string_view>
#include <type_traits>
#include <unordered_map>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"

namespace yg {

/// What fails, as the log says it.
inline constexpr std::string_view loadName = "load style config";
inline constexpr std::string_view pageName = "find style";

/// How large something is, in the units of YGStyleConfigLoad's limits.
struct Extent {
    std::size_t elements = 0;
    std::size_t bytes = 0;
};

/// A node with all below it.
Extent extentOf(const xml::Node& node);

/// XML text, at the most: what it holds is not known before it is parsed, but each node and
/// attribute begins with one of a few characters. A replacement changes this as it changes the
/// text.
Extent extentOfXml(std::string_view text);

/// The text with each occurrence of `target` replaced, computed without making it.
Extent extentOfReplacing(std::string_view text, std::string_view target,
                         std::string_view replacement);

/// The panels that references can place, by their records, each measured once.
class PanelExtents {
public:
    /// Measures a panel that was just read, with all below it; those in it that are known are not
    /// measured again.
    void add(const PanelConfigInfo& panel);

    /// Nothing for a panel that was not added.
    Extent of(const PanelConfigInfo& panel) const;

private:
    Extent measured(const PanelConfigInfo& panel) const;

    std::unordered_map<const PanelConfigInfo*, Extent> known_;
};

/// What one load or look-up has added so far. It counts for its thread while it lives; one that is
/// made while another lives leaves the counting to that one.
class Expansion {
public:
    /// What adds, as the log says it.
    static constexpr std::string_view load = "references add";
    static constexpr std::string_view page = "a custom page adds";

    explicit Expansion(std::string_view subject);
    ~Expansion();
    Expansion(const Expansion&) = delete;
    Expansion& operator=(const Expansion&) = delete;

    /// Counts what is about to be added, if one counts on this thread; false, and nothing counted,
    /// when it does not fit. The first time that is logged.
    static bool mayAdd(const Extent& extent);

    /// Whether something did not fit.
    bool isRefused() const { return isRefused_; }

private:
    bool add(const Extent& extent);

    const std::string_view subject_;
    Extent added_;
    bool isRefused_ = false;
};

/// Does the work of a public operation that reads a part of a layout, within the limits of a load.
template <class Work>
std::invoke_result_t<Work> guardedLoad(Work work) {
    return guarded(loadName, [&] {
        const Expansion expansion(Expansion::load);
        return work();
    });
}

}  // namespace yg
