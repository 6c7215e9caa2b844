// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>

#include "YGConfigManager/xml/Tree.h"

namespace yg::xml {

namespace {

void appendEscaped(std::string& out, std::string_view text, bool inAttribute) {
    for (const char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '\r':
                out += "&#13;";
                break;
            case '"':
                out += inAttribute ? "&quot;" : "\"";
                break;
            case '\n':
                out += inAttribute ? "&#10;" : "\n";
                break;
            case '\t':
                out += inAttribute ? "&#9;" : "\t";
                break;
            default:
                out += c;
        }
    }
}

bool holdsText(pugi::xml_node element) {
    return std::any_of(element.begin(), element.end(), [](pugi::xml_node child) {
        return child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata;
    });
}

void appendStart(std::string& out, pugi::xml_node node) {
    switch (node.type()) {
        case pugi::node_element:
            out += '<';
            out += node.name();
            for (pugi::xml_attribute attribute : node.attributes()) {
                out += ' ';
                out += attribute.name();
                out += "=\"";
                appendEscaped(out, attribute.value(), true);
                out += '"';
            }
            out += '>';
            break;
        case pugi::node_pcdata:
            appendEscaped(out, node.value(), false);
            break;
        case pugi::node_cdata:
            out += "<![CDATA[";
            out += node.value();
            out += "]]>";
            break;
        case pugi::node_comment:
            out += "<!--";
            out += node.value();
            out += "-->";
            break;
        case pugi::node_pi:
            out += "<?";
            out += node.name();
            if (*node.value() != '\0') {
                out += ' ';
                out += node.value();
            }
            out += "?>";
            break;
        default:
            break;
    }
}

void appendEnd(std::string& out, pugi::xml_node node) {
    if (node.type() != pugi::node_element)
        return;
    out += "</";
    out += node.name();
    out += '>';
}

}  // namespace

// A loop and not a recursion, because trees that are built in code may be of any depth.
void serialiseNode(std::string& out, pugi::xml_node top, Form form) {
    constexpr auto none = static_cast<std::size_t>(-1);
    std::size_t depth = 0;
    std::size_t depthOfText = form == Form::plain ? 0 : none;  // below it nothing is added
    const auto newLine = [&] {
        out += '\n';
        out.append(4 * depth, ' ');
    };

    pugi::xml_node node = top;
    while (true) {
        appendStart(out, node);
        if (node.type() == pugi::node_element) {
            if (const pugi::xml_node child = node.first_child()) {
                if (depthOfText == none && holdsText(node))
                    depthOfText = depth;
                ++depth;
                if (depthOfText == none)
                    newLine();
                node = child;
                continue;
            }
        }
        appendEnd(out, node);
        while (node != top && !node.next_sibling()) {
            node = node.parent();
            --depth;
            if (depthOfText == none)
                newLine();
            appendEnd(out, node);
            if (depthOfText == depth && form == Form::pretty)
                depthOfText = none;
        }
        if (node == top)
            return;
        node = node.next_sibling();
        if (depthOfText == none)
            newLine();
    }
}

void serialiseDocument(std::string& out, const Tree& tree, Form form) {
    if (!tree.root())
        return;
    if (form == Form::pretty) {
        out += R"(<?xml version="1.0" encoding="UTF-8")";
        if (tree.standalone)
            out += *tree.standalone ? R"( standalone="yes")" : R"( standalone="no")";
        out += "?>\n";
    }
    for (pugi::xml_node child : tree.memory.children()) {
        if (child == tree.keep)
            continue;
        if (child == tree.nodeAfterDoctype) {
            out += "<!DOCTYPE " + tree.doctype + '>';
            if (form == Form::pretty)
                out += '\n';
        }
        serialiseNode(out, child, form);
        if (form == Form::pretty)
            out += '\n';
    }
}

}  // namespace yg::xml
