// SPDX-License-Identifier: MIT
//
// What is taken for plain text libxml2 would accept, and within the limits. The tests of this
// folder hold each text that they parse against both; here are more.
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/text/Utf8.h"
#include "YGConfigManager/xml/Parser.h"
#include "YGConfigManager/xml/PlainText.h"

#include "Proof.h"
#include "xml/XmlTesting.h"

namespace yg::xml {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using namespace std::string_view_literals;
using yg::testing::repeats;

constexpr std::string_view ordinary[] = {
    "<a/>",
    "<a />",
    "<a></a>",
    "<a></a >",
    "<a\n></a\r\n\t>",
    " \r\n\t<a/> \r\n\t",
    "<A_b-c.1/>",
    "<_/>",
    "<a b=''/>",
    "<a b=\"\" c=''/>",
    "<a\nb='1'\r\n\tc=\"2\"  />",
    "<a b='\"' c=\"'\"/>",
    "<a b='>'/>",
    "<a b=']]>'/>",
    "<a b='-- /> ?>' />",
    "<a b='1\r\n2\t3'/>",
    "<a b='&lt;&gt;&amp;&quot;&apos;'>&lt;&gt;&amp;&quot;&apos;</a>",
    "<a b='&amp;#65;'>&amp;#65;</a>",
    "<a>text</a>",
    "<a>]</a>",
    "<a>]]</a>",
    "<a>]] ></a>",
    "<a>]>]]</a>",
    "<a>> \" ' - -- --> ?></a>",
    "<a>\x7F</a>",
    "<a>中文，。</a>",
    "<a b='中文，。'/>",
    "<a>\xEF\xBF\xBD\xEF\xBB\xBF\xEF\xBE\xBF</a>",
    "<a>\xF0\xA0\x80\x80\xC2\x80\xF4\x8F\xBF\xBF</a>",
    "<a><b/><c><d>1</d>2</c>3</a>",
    "<a><a><a/></a></a>",
    "<ab><a/></ab>",
    "<a b='1'><c b='1'/><c b='1'/></a>",
    "<a a='1'><a a='2'/></a>",
    "<a b='1' bb='2' bbbbbbbb='3' bbbbbbbbb='4'/>",
    "<element_of_a_long_name attribute_of_a_long_name='1' attribute_of_a_long_name_too='2'/>",
    "<a name_of_one_like_others='1' name_of_two_like_others='2'/>",
    "<a><!----></a>",
    "<a><!-- <b> & ]]> \" ' - > 中，文 --></a>",
    "<!-- a --><!--b--> <a/><!-- c -->\n<!--d-->",
    "<!--><a/>--><a/>",
    "<!---><a/>--><a/>",
    "<?xml version=\"1.0\"?><a/>",
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a/>\n",
    "<?xml version=\"1.0\" encoding=\"gb2312\"?>\r\n<!-- c --><a/>",
    "<?xml version=\"1.0\" encoding=\"GBK\"?><a/>",
};

// Malformed, or beyond a limit.
constexpr std::string_view wrong[] = {
    "",
    " ",
    "a",
    "<",
    "<a",
    "<a>",
    "<a ",
    "<a b",
    "<a b=",
    "<a b='",
    "<a b=''",
    "<a/",
    "</a>",
    "</>",
    "<>",
    "<></>",
    "<a></>",
    "<a></",
    "<a></a",
    "<a></b>",
    "<a></ab>",
    "<ab></a>",
    "<a></a/>",
    "<a></a b=''>",
    "<a></A>",
    "<a><b></a></b>",
    "<a></a></a>",
    "<a/></a>",
    "<a/></>",
    "<a/><b/>",
    "<a/>text",
    "text<a/>",
    "<a/>&lt;",
    "&lt;<a/>",
    "< a/>",
    "<a/ >",
    "<a / >",
    "</ a>",
    "<a></ a>",
    "<1/>",
    "<-a/>",
    "<.a/>",
    "<a%/>",
    "<a b/>",
    "<a b=c/>",
    "<a b='c/>",
    "<a b='c\"/>",
    "<a b='c'd='e'/>",
    "<a b='c'/d='e'>",
    "<a 1='c'/>",
    "<a ='c'/>",
    "<a b=='c'/>",
    "<a b='1' b='2'/>",
    "<a b='' b=''/>",
    "<a b='1' c='2' b='3'/>",
    "<a bb='' bb=''/>",
    "<a bbbbb='' bbbbb",
    "<a bb='1' cc='' bb=''/>",
    "<a bbbbbbbb='1' c='2' bbbbbbbb='3'/>",
    "<a bbbbbbbbbbbbbbbb='1' bbbbbbbbbbbbbbbb='3'/>",
    "<a b='<'/>",
    "<a b='&'/>",
    "<a b='&lt'/>",
    "<a b='&lt ;'/>",
    "<a>&</a>",
    "<a>&;</a>",
    "<a>&lt</a>",
    "<a>&LT;</a>",
    "<a>&nbsp;</a>",
    "<a>&#0;</a>",
    "<a>]]></a>",
    "<a>]]]></a>",
    "<a>x]]>y</a>",
    "<a>\x01</a>",
    "<a>\x0B</a>",
    "<a>\x1F</a>",
    "<a b='\x1F'/>",
    "<a>\xEF\xBF\xBE</a>",
    "<a>\xEF\xBF\xBF</a>",
    "<a b='\xEF\xBF\xBE'/>",
    "<!--\xEF\xBF\xBF--><a/>",
    "<!-- \x02 --><a/>",
    "<!-- -- --><a/>",
    "<!-- ---><a/>",
    "<!-- <a/>",
    "<a/><!--",
    "<a/><!-- -",
    "<a/><!-- --",
    "<a/><!-- -- >",
    "<a><!-></a>",
    "<a><!></a>",
    "<a/><!-- & --x",
    "<!-- --",
    "<?xml version=\"1.0\"?>",
    "<?xml version=\"1.0\"><a/>",
    "<?xml?><a/>",
    "<?xml version=\"1.0\" encoding=\"\"?><a/>",
    "<?xml version=\"1.0\" encoding=\"UTF-8?><a/>",
    "<?xml version=\"1.0\"encoding=\"UTF-8\"?><a/>",
    " <?xml version=\"1.0\"?><a/>",
    "<?xml version=\"1.0\"?><?xml version=\"1.0\"?><a/>",
    "<a><?xml version=\"1.0\"?></a>",
    "\xEF\xBB\xBF<a/>",
    "<a>\0</a>"sv,
    "<a/>\0"sv,
    "<a b='\0'/>"sv,
    "\0<a/>"sv,
    "<!--\0--><a/>"sv,
    "<a/>\0<!-- -->"sv,
};

// Left to libxml2, which accepts them.
constexpr std::string_view unusual[] = {
    "<!DOCTYPE a><a/>",
    "<?p?><a/>",
    "<a><?p q?></a>",
    "<a><![CDATA[x]]></a>",
    "<a>&#65;</a>",
    "<a b='&#x41;'/>",
    "<a b = ''/>",
    "<名/>",
    "<a 名=''/>",
    "<p:a/>",
    "<a p:b='1'/>",
    "<a xmlns='u'/>",
    "<a xml:lang='x'/>",
    "<xmlx/>",
    "<?xml version='1.0'?><a/>",
    "<?xml version=\"1.0\" standalone=\"yes\"?><a/>",
    "<?xml  version=\"1.0\"?><a/>",
    "<?xml version=\"1.0\" encoding=\"Big5\"?><a/>",
};

TEST(PlainText, IsWhatOrdinaryFilesHold) {
    for (const std::string_view text : ordinary) {
        EXPECT_TRUE(isPlainText(std::string(text))) << text;
        documentOf(text);
    }
    int count = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(YG_SAMPLE_FOLDER)) {
        if (entry.path().extension() != ".xml")
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        EXPECT_TRUE(isPlainText({std::istreambuf_iterator<char>(file), {}})) << entry.path();
        ++count;
    }
    EXPECT_GE(count, 5);
}

TEST(PlainText, IsNothingMalformed) {
    for (const std::string_view text : wrong) {
        EXPECT_FALSE(isPlainText(std::string(text))) << text;
        EXPECT_FALSE(isJudgedReadable(std::string(text))) << text;
    }
}

TEST(PlainText, IsNothingThatOnlyTheJudgeKnows) {
    for (const std::string_view text : unusual) {
        EXPECT_FALSE(isPlainText(std::string(text))) << text;
        EXPECT_TRUE(parsedText(text)) << text;
    }
}

TEST(PlainText, IsWithinTheLimits) {
    const auto expectBetween = [](auto make, std::size_t plain, std::size_t beyond) {
        for (const std::size_t size : {plain, beyond}) {
            const std::string text = make(size);
            EXPECT_EQ(isPlainText(text), size == plain) << size << text.substr(0, 40);
            EXPECT_TRUE(isJudgedReadable(text)) << size << text.substr(0, 40);
        }
    };
    constexpr std::size_t piece = 1'000'000;
    expectBetween([](auto size) { return "<a>" + std::string(size, 'x') + "</a>"; }, piece,
                  piece + 1);
    expectBetween([](auto size) { return "<a b='" + std::string(size, 'x') + "'/>"; }, piece,
                  piece + 1);
    expectBetween([](auto size) { return "<!--" + std::string(size, 'x') + "--><a/>"; }, piece,
                  piece + 1);
    expectBetween([](auto size) { return "<" + std::string(size, 'x') + "/>"; }, 1'000, 1'001);
    expectBetween([](auto levels) { return repeated("<a>", levels) + repeated("</a>", levels); },
                  200, 201);
    const auto attributes = [](auto count) {
        std::string text = "<a";
        for (std::size_t i = 0; i < count; ++i)
            text += " b" + std::to_string(i) + "=''";
        return text + "/>";
    };
    expectBetween(attributes, 200, 201);
    const auto names = [](auto count) {
        std::string text = "<a>";
        for (std::size_t i = 1; i < count; ++i)
            text += "<b" + std::to_string(i) + "/>";
        return text + "</a>";
    };
    expectBetween(names, 400, 501);
}

/// Makes texts that are nearly right, always the same ones.
class Mutants {
public:
    Mutants() {
        for (int i = 0; i < 4; ++i)
            seeds_.insert(seeds_.end(), std::begin(ordinary), std::end(ordinary));
        for (int i = 0; i < 100; ++i)
            seeds_.emplace_back(i % 2 == 0 ? small : cornered);
        seeds_.insert(seeds_.end(), std::begin(wrong), std::end(wrong));
        seeds_.insert(seeds_.end(), std::begin(unusual), std::end(unusual));
        for (const fs::directory_entry& entry :
             fs::recursive_directory_iterator(YG_SAMPLE_FOLDER)) {
            std::ifstream file(entry.path(), std::ios::binary);
            if (entry.path().extension() == ".xml")
                files_.emplace_back(std::istreambuf_iterator<char>(file),
                                    std::istreambuf_iterator<char>());
        }
    }

    /// One in a thousand is of a whole file.
    std::string next() {
        std::string text = below(1'000) == 0 ? one(files_) : one(seeds_);
        for (std::size_t changes = 1 + below(2); changes > 0; --changes)
            change(text);
        return text;
    }

private:
    static constexpr std::string_view small =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a b='1' c=\"2\">\n  <!-- x -->\n"
        "  <d e='&amp;' f='中'>]] &lt;，</d>\n  <d/>\n</a>\n";
    static constexpr std::string_view cornered = "<aa b='' bb=''><aa bb='' b=''/></aa><!-- - -->";

    static constexpr std::string_view tokens[] = {
        "<",
        ">",
        "/",
        "</",
        "/>",
        "</>",
        "<a",
        "<a>",
        "</a>",
        "<a/>",
        "<d ",
        "=",
        "'",
        "\"",
        " b='1'",
        " c=\"\"",
        "b",
        "a",
        "xml",
        "xmlns",
        ":",
        "&",
        ";",
        "&lt;",
        "&amp;",
        "&#65;",
        "&quot",
        "]",
        "]]>",
        "]]",
        "<!--",
        "-->",
        "--",
        "-",
        "<!",
        "<?",
        "?>",
        "<![CDATA[",
        "<?xml ",
        "<!DOCTYPE a>",
        " ",
        "\n",
        "\r",
        "\t",
        "\x01",
        "\x7F",
        "中",
        "，",
        "\xEF\xBF\xBE",
        "\xEF\xBF\xBF",
        "\xEF\xBF\xBD",
        "\xEF\xBB\xBF",
        "\xC2\x85",
        "\xE2\x80\xA8",
        "xml:",
        "_",
        "1",
        ".",
        " version=\"1.0\"",
        " encoding=\"UTF-8\"",
    };

    std::size_t below(std::size_t limit) { return random_() % limit; }

    const std::string& one(const std::vector<std::string>& texts) {
        return texts[below(texts.size())];
    }

    /// A part of a text, mostly a short one.
    std::string_view part(std::string_view text) {
        if (text.empty())
            return text;
        const std::size_t at = below(text.size());
        return text.substr(at, below(below(4) == 0 ? text.size() - at + 1 : 8));
    }

    void change(std::string& text) {
        const std::size_t at = below(text.size() + 1);
        const std::size_t size = part(std::string_view(text).substr(at)).size();
        switch (below(8)) {
            case 0:
                if (at < text.size())
                    text[at] = static_cast<char>(text[at] ^ 1 << below(8));
                break;
            case 1:
                if (at < text.size())
                    text[at] = static_cast<char>(below(256));
                break;
            case 2:
                text.erase(at, size);
                break;
            case 3:
                text.insert(at, std::string(part(text)));
                break;
            case 4:
                text.insert(at, std::string(part(one(seeds_))));
                break;
            case 5:
                if (!text.empty())
                    std::swap(text[at % text.size()], text[below(text.size())]);
                break;
            case 6:
                text.replace(at, size, tokens[below(std::size(tokens))]);
                break;
            default:
                text.insert(at, tokens[below(std::size(tokens))]);
        }
    }

    std::mt19937 random_;
    std::vector<std::string> seeds_;
    std::vector<std::string> files_;
};

TEST(PlainTextProof, IsAcceptedByTheJudge) {
    Mutants mutants;
    const int count = repeats(40'000, 30'000'000);
    int valid = 0;
    int plain = 0;
    for (int i = 0; i < count; ++i) {
        const std::string text = mutants.next();
        if (!text::isValidUtf8(text))
            continue;
        ++valid;
        if (!isPlainText(text))
            continue;
        ++plain;
        ASSERT_TRUE(isJudgedReadable(text)) << ::testing::PrintToString(text);
    }
    RecordProperty("valid", valid);
    RecordProperty("plain", plain);
    EXPECT_GT(valid, count / 2);
    EXPECT_GT(plain, count / 20);
}

}  // namespace
}  // namespace yg::xml
