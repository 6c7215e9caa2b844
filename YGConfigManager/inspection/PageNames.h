// SPDX-License-Identifier: MIT
//
// Names of pages, looked up as an application looks them up. Internal. Throws std::bad_alloc.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/inspection/Loaded.h"

namespace yg {

/// The host's mapping of wildcards to the values that may stand for them.
inline constexpr std::string_view wildcardMapping = "模版通配";

/// What looking for names may still cost, counted in names and XML nodes looked at. Building a page
/// takes time for the whole template, so a file of many names could take hours.
class Effort {
public:
    /// False when there is not so much left; then nothing more is granted.
    bool spend(std::size_t cost);

    /// text::nearest; "" when it would cost too much.
    std::string nearest(std::string_view word, std::span<const std::string> known);

private:
    std::size_t left_ = 4'000'000;
};

/// What the name of a page leads to.
struct PageAnswer {
    enum class Kind { page, tab, nothing };
    Kind kind = Kind::page;
    /// The part of the name that fails, and what to say about it.
    std::size_t offset = 0;
    std::size_t size = 0;
    Details details = {};
};

class PageNames {
public:
    /// `findings` is the layout loader's sink, which gets nothing from here. All must outlive this.
    PageNames(const Loaded& loaded, Gathering& findings, Effort& effort);
    ~PageNames();

    /// A page that is stored, one in the tab file alone, or a custom page that can be built with a
    /// panel in each slot. Counts as a page when the effort does not suffice. The answer stays
    /// until this is destroyed.
    const PageAnswer& look(const std::string& name);

private:
    struct Template {
        xml::Element style;
        /// Once it is looked up.
        std::vector<xml::Element> slots = {};
        std::size_t nodes = 0;
    };

    bool isStored(const std::string& name) const;
    void readTemplates();
    void readTemplate(const xml::Element& style);
    /// Null when there is none.
    const Template* templateNamed(const std::string& name);
    std::optional<std::vector<Finding>> build(const std::string& name);
    bool isPage(const std::string& name);
    PageAnswer answerFor(const std::string& name);
    PageAnswer refused(const std::string& name, const std::vector<Finding>& failures);
    PageAnswer failed(const std::string& name, PageAnswer answer);
    std::vector<std::string> argumentsOf(const xml::Element& slot);
    std::string repaired(const std::string& name);
    std::string suggestionFor(const std::string& name);

    const Loaded& loaded_;
    Gathering& findings_;
    Effort& effort_;
    std::shared_ptr<const MappingDic> wildcards_;
    std::size_t wildcardValues_ = 0;
    std::vector<std::string> storedNames_;
    bool hasTemplates_ = false;
    /// Those that the loader takes: of several of one name the first.
    std::map<std::string, Template, std::less<>> templates_;
    std::vector<std::string> templateNames_;
    std::unordered_map<std::string, PageAnswer> answers_;
};

}  // namespace yg
