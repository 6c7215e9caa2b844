// SPDX-License-Identifier: MIT
//
// XML as text, indented.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace yg::describe {

class XmlText {
public:
    using Attributes = std::initializer_list<std::pair<std::string_view, std::string_view>>;

    /// Begins an element; what is written until end() is inside it.
    void begin(std::string_view name, Attributes attributes = {});
    void end();

    /// An element without content, or with text alone.
    void leaf(std::string_view name, Attributes attributes = {});
    void text(std::string_view name, std::string_view content, Attributes attributes = {});

    void comment(std::string_view content);

    /// The document.
    const std::string& str() const { return text_; }

private:
    void tag(std::string_view name, Attributes attributes);

    std::string text_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    std::vector<std::string> open_;
};

}  // namespace yg::describe
