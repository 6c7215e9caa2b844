// SPDX-License-Identifier: MIT
//
// Texts without document type and character references are built in a quicker way than others.
// The result must be the same. The tests of this folder compare each text they parse; here are
// more.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "YGConfigManager/xml/Document.h"

#include "xml/XmlTesting.h"

namespace yg::xml {
namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;

std::string bytesOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(Builders, AgreeOnTheSampleFiles) {
    int count = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(YG_SAMPLE_FOLDER)) {
        if (entry.path().extension() != ".xml")
            continue;
        SCOPED_TRACE(entry.path());
        const ParseResult result = parsedBytes(bytesOf(entry.path()));
        EXPECT_TRUE(result) << result.error;
        const std::string saved = result.document.serialise(Form::pretty);
        EXPECT_EQ(documentOf(saved).serialise(Form::pretty), saved);
        ++count;
    }
    EXPECT_GE(count, 5);
}

TEST(Builders, AgreeOnADocumentTypeAddedToTheSampleFiles) {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(YG_SAMPLE_FOLDER)) {
        if (entry.path().extension() != ".xml")
            continue;
        const Document document = Document::parseBytes(bytesOf(entry.path())).document;
        const std::string text = document.serialise(Form::plain);
        EXPECT_EQ(outline(Tree::raw(documentOf("<!DOCTYPE x>" + text).root())),
                  outline(Tree::raw(document.root())));
        EXPECT_EQ(outline(Tree::raw(documentOf(text + "<!-- &#65; -->").root())),
                  outline(Tree::raw(document.root())));
    }
}

TEST(Builders, AgreeOnLineBreaksAndBlanksEverywhere) {
    for (const std::string_view blank : {"\r\n"sv, "\r"sv, "\n"sv, "\t"sv, " "sv, "\r\r\n\n"sv}) {
        std::string text =
            "<a_b='x_y'_c=''_><!--_z_--><?p_q_?><d_/>_x_<e_>_</e_><![CDATA[_]]></a_>_";
        for (std::size_t at = text.find('_'); at != std::string::npos; at = text.find('_'))
            text.replace(at, 1, blank);
        documentOf(text);
        documentOf(std::string(blank) + "<?p_q?>" + text + "<!--_-->");
    }
}

/// Makes up well-formed documents, always the same ones.
class Maker {
public:
    explicit Maker(unsigned seed) : random_(seed) {}

    std::string document() {
        std::string text;
        if (one(3))
            text += one(2) ? "<?xml version='1.0'?>" : "<?xml version=\"1.0\" standalone='yes' ?>";
        misc(text);
        if (one(6))
            text += pick({"<!DOCTYPE a>", "<!DOCTYPE a\r\nPUBLIC '-//c' \"b'\" >",
                          "<!DOCTYPE a SYSTEM 'b'>"});
        misc(text);
        element(text, 0);
        misc(text);
        return text;
    }

private:
    bool one(unsigned in) { return random_() % in == 0; }

    std::string_view pick(std::initializer_list<std::string_view> from) {
        return *(from.begin() + random_() % from.size());
    }

    std::string_view name() { return pick({"a", "b", "中文", "p:c", "_x-1.2", "é", "xmlns.d"}); }

    std::string_view blank() { return pick({" ", "\n", "\t", "\r\n", "\r", "  \n\t", " \r\r\n "}); }

    std::string_view words() {
        return pick({"x", " y ", "中 文", "&lt;", "&amp;amp;", "&gt;", "&quot;&apos;", "\r\n", "\r",
                     "]]", "=", "-", "\xC2\xA0", "\xF0\xA0\x80\x80", "&#65;", "&#13;", "&#32;",
                     "/"});
    }

    void comment(std::string& text) {
        text += pick({"<!---->", "<!-- x\r\ny -->", "<!--<a>&-->", "<!-- - -->", "<!--\r-->"});
    }

    void instruction(std::string& text) {
        text += pick({"<?p?>", "<?p q?>", "<?p  q  ?>", "<?p x\r\ny?>", "<?p \r?>", "<?p <&>?>",
                      "<?p ? ?>", "<?中 文?>"});
    }

    void misc(std::string& text) {
        if (one(3) && !text.empty())
            text += blank();
        if (one(5))
            comment(text);
        if (one(5))
            instruction(text);
    }

    void attributes(std::string& text) {
        for (const std::string_view attribute :
             {"a", "中", "p:b", "xmlns", "xmlns:p", "xml:lang", "xmlns:xml", "Z"}) {
            if (!one(4))
                continue;
            text += blank();
            text += attribute;
            text += pick({"=", " = ", "\r\n=", "=\t"});
            const std::string_view quote = pick({"'", "\""});
            text += quote;
            for (unsigned i = static_cast<unsigned>(random_() % 4); i > 0; --i)
                text += one(3) ? blank() : words();
            text += quote;
        }
    }

    void element(std::string& text, int depth) {
        const std::string_view tag = name();
        text += '<';
        text += tag;
        attributes(text);
        if (one(3))
            text += blank();
        if (one(4)) {
            text += "/>";
            return;
        }
        text += '>';
        for (unsigned i = static_cast<unsigned>(random_() % 6); i > 0; --i) {
            switch (random_() % 6) {
                case 0:
                    text += blank();
                    break;
                case 1:
                    text += words();
                    break;
                case 2:
                    text += pick({"<![CDATA[]]>", "<![CDATA[ ]]>", "<![CDATA[<x>&]]>",
                                  "<![CDATA[\r\n\r]]>"});
                    break;
                case 3:
                    comment(text);
                    break;
                case 4:
                    instruction(text);
                    break;
                default:
                    if (depth < 6)
                        element(text, depth + 1);
            }
        }
        text += "</";
        text += tag;
        if (one(5))
            text += blank();
        text += '>';
    }

    std::mt19937 random_;
};

TEST(Builders, AgreeOnGeneratedDocuments) {
    std::size_t quick = 0;
    for (unsigned seed = 0; seed < 3'000; ++seed) {
        const std::string text = Maker(seed).document();
        SCOPED_TRACE(text);
        const Document document = documentOf(text);
        const std::string saved = document.serialise(Form::pretty);
        ASSERT_EQ(documentOf(saved).serialise(Form::pretty), saved);
        ASSERT_EQ(outline(documentOf(saved)), outline(document));
        if (text.find("&#") == std::string::npos && text.find("<!DOCTYPE") == std::string::npos)
            ++quick;
        if (testing::Test::HasFailure())
            break;
    }
    if (!testing::Test::HasFailure()) {
        EXPECT_GT(quick, 500U);
    }
}

TEST(Builders, AgreeOnDamagedDocuments) {
    std::mt19937 random(1);
    std::size_t refused = 0;
    for (unsigned seed = 0; seed < 3'000; ++seed) {
        std::string text = Maker(seed).document();
        for (int i = 0; i < 2; ++i) {
            const std::size_t at = random() % text.size();
            switch (random() % 3) {
                case 0:
                    text.erase(at, 1 + random() % 3);
                    break;
                case 1:
                    text.insert(at, 1, "<>&;'\"/?!-[] =\0\xFF\x01:"[random() % 18]);
                    break;
                default:
                    text[at] = static_cast<char>(random());
            }
            if (text.empty())
                text.resize(1, ' ');
        }
        SCOPED_TRACE(text);
        refused += parsedText(text) ? 0 : 1;
        if (testing::Test::HasFailure())
            break;
    }
    if (!testing::Test::HasFailure()) {
        EXPECT_GT(refused, 1'000U);
    }
}

}  // namespace
}  // namespace yg::xml
