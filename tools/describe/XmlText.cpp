// SPDX-License-Identifier: MIT
#include "describe/XmlText.h"

namespace yg::describe {

namespace {

std::string escaped(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '&')
            escaped += "&amp;";
        else if (c == '<')
            escaped += "&lt;";
        else if (c == '>')
            escaped += "&gt;";
        else if (c == '"')
            escaped += "&quot;";
        else
            escaped += c;
    }
    return escaped;
}

}  // namespace

void XmlText::tag(std::string_view name, Attributes attributes) {
    text_.append(2 * open_.size(), ' ');
    text_ += '<';
    text_ += name;
    for (const auto& [attribute, value] : attributes)
        text_ += ' ' + std::string(attribute) + "=\"" + escaped(value) + '"';
}

void XmlText::begin(std::string_view name, Attributes attributes) {
    tag(name, attributes);
    text_ += ">\n";
    open_.emplace_back(name);
}

void XmlText::end() {
    const std::string name = std::move(open_.back());
    open_.pop_back();
    text_.append(2 * open_.size(), ' ');
    text_ += "</" + name + ">\n";
}

void XmlText::leaf(std::string_view name, Attributes attributes) {
    tag(name, attributes);
    text_ += "/>\n";
}

void XmlText::text(std::string_view name, std::string_view content, Attributes attributes) {
    tag(name, attributes);
    text_ += '>' + escaped(content) + "</" + std::string(name) + ">\n";
}

void XmlText::comment(std::string_view content) {
    text_.append(2 * open_.size(), ' ');
    text_ += "<!-- " + std::string(content) + " -->\n";
}

}  // namespace yg::describe
