// SPDX-License-Identifier: MIT
//
// What the tests of this folder share. There are two ways to build a tree, in place and by
// callbacks: whatever is parsed here goes through both, with and without positions, and all must
// agree.
#pragma once

#include <fcntl.h>
#include <ostream>
#include <stdio.h>
#include <stdlib.h>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/xml/Builder.h"
#include "YGConfigManager/xml/Decoding.h"
#include "YGConfigManager/xml/Document.h"
#include "YGConfigManager/xml/Element.h"
#include "YGConfigManager/xml/Parser.h"
#include "YGConfigManager/xml/PlainText.h"
#include "YGConfigManager/xml/Query.h"
#include "YGConfigManager/xml/Tree.h"

namespace yg::xml {

inline constexpr ParseOptions withPositions{.positions = true};

/// The parts as one text.
template <class... Parts>
std::string joined(const Parts&... parts) {
    std::string all;
    (all.append(std::string_view(parts)), ...);
    return all;
}

inline std::string repeated(std::string_view text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i)
        all += text;
    return all;
}

/// Every node as it is kept, hidden white space too: one line each, indented by its depth.
inline std::string outline(pugi::xml_node top) {
    std::string out;
    std::size_t depth = 0;
    for (pugi::xml_node node = top; node;) {
        out.append(depth, ' ');
        out += joined(std::to_string(node.type()), " [", node.name(), "] [", node.value(), "]");
        for (pugi::xml_attribute attribute : node.attributes())
            out += joined(" ", attribute.name(), "=[", attribute.value(), "]");
        out += '\n';
        if (node.first_child()) {
            node = node.first_child();
            ++depth;
            continue;
        }
        while (node != top && !node.next_sibling()) {
            node = node.parent();
            --depth;
        }
        node = node == top ? pugi::xml_node() : node.next_sibling();
    }
    return out;
}

inline std::string outline(const Document& document) {
    return outline(Tree::raw(document.root()).root());
}

inline std::string serialised(const Tree& tree, Form form) {
    std::string text;
    serialiseDocument(text, tree, form);
    return text;
}

inline void expectSameTrees(const ParseResult& quick, const ParseResult& kept,
                            const std::string& text) {
    const std::string_view input = std::string_view(text).substr(0, 500);
    EXPECT_EQ(static_cast<bool>(quick), static_cast<bool>(kept))
        << input << "\nwithout positions: " << quick.error << "\nwith positions: " << kept.error;
    EXPECT_TRUE(!isPlainText(text) || isJudgedReadable(text)) << input;
    EXPECT_EQ(static_cast<bool>(quick), isReadable(text)) << input;
    EXPECT_EQ(static_cast<bool>(quick), static_cast<bool>(quick.document.root())) << input;
    EXPECT_EQ(static_cast<bool>(kept), static_cast<bool>(kept.document.root())) << input;
    if (!quick || !kept)
        return;
    const std::shared_ptr<Tree> built = buildByCallbacks(text).tree;
    ASSERT_TRUE(built) << input;
    EXPECT_EQ(outline(quick.document), outline(kept.document)) << input;
    EXPECT_EQ(outline(quick.document), outline(built->memory)) << input;
    for (const Form form : {Form::plain, Form::pretty}) {
        EXPECT_EQ(quick.document.serialise(form), kept.document.serialise(form)) << input;
        EXPECT_EQ(quick.document.serialise(form), serialised(*built, form)) << input;
    }
}

/// Parses in all ways and compares.
inline ParseResult parsedBytes(std::string_view bytes) {
    ParseResult quick = Document::parseBytes(bytes);
    expectSameTrees(quick, Document::parseBytes(bytes, withPositions),
                    decodeXml(std::string(bytes)).text);
    return quick;
}

inline ParseResult parsedText(std::string_view text) {
    ParseResult quick = Document::parseText(text);
    expectSameTrees(quick, Document::parseText(text, withPositions),
                    decodeUtf8(std::string(text)).text);
    return quick;
}

/// The document of a text that must be accepted.
inline Document documentOf(std::string_view text) {
    const ParseResult result = parsedText(text);
    EXPECT_TRUE(result) << text.substr(0, 500) << "\n" << result.error;
    return result.document;
}

inline Element rootOf(std::string_view text) {
    return documentOf(text).root();
}

/// Whether an element's content reads back as it was given when it is written and read again.
inline std::string plain(const Node& node) {
    return node.serialise(Form::plain);
}

inline std::vector<std::string> plain(const std::vector<Node>& nodes) {
    std::vector<std::string> texts;
    for (const Node& node : nodes)
        texts.push_back(node.serialise(Form::plain));
    return texts;
}

inline std::vector<std::string> plain(const Children& children) {
    std::vector<std::string> texts;
    for (const Node& node : children)
        texts.push_back(node.serialise(Form::plain));
    return texts;
}

inline std::vector<std::string> namesOf(const std::vector<Node>& nodes) {
    std::vector<std::string> names;
    for (const Node& node : nodes)
        names.emplace_back(node.name());
    return names;
}

/// The first node that a query selects.
inline Element elementAt(const Document& document, std::string_view query) {
    const std::vector<Node> found = document.query(query);
    EXPECT_FALSE(found.empty()) << query;
    return found.empty() ? Element() : Element(found.front());
}

inline std::ostream& operator<<(std::ostream& out, NodeKind kind) {
    constexpr const char* names[] = {"element", "text", "comment", "processing instruction"};
    return out << names[static_cast<std::size_t>(kind)];
}

/// Catches what the process writes to standard output and standard error, whoever writes it and
/// however, until it is asked.
class CapturedOutput {
public:
    CapturedOutput() : file_(tmpfile()) {
        fflush(stdout);
        fflush(stderr);
        for (int i = 0; i < 2; ++i) {
            saved_[i] = dup(i + 1);
            dup2(fileno(file_), i + 1);
        }
    }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;
    ~CapturedOutput() {
        restore();
        fclose(file_);
    }

    /// What was written; from here on nothing is caught any more.
    std::string text() {
        restore();
        std::string all(static_cast<std::size_t>(lseek(fileno(file_), 0, SEEK_END)), '\0');
        if (pread(fileno(file_), all.data(), all.size(), 0) != static_cast<ssize_t>(all.size()))
            all = "unreadable";
        return all;
    }

private:
    void restore() {
        fflush(stdout);
        fflush(stderr);
        for (int i = 0; i < 2; ++i) {
            if (saved_[i] < 0)
                continue;
            dup2(saved_[i], i + 1);
            close(saved_[i]);
            saved_[i] = -1;
        }
    }

    FILE* file_;
    int saved_[2] = {-1, -1};
};

}  // namespace yg::xml
