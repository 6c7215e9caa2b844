// SPDX-License-Identifier: MIT
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/text/Utf8.h"
#include "YGConfigManager/xml/Decoding.h"
#include "YGConfigManager/xml/Document.h"

#include "files/TemporaryFolder.h"
#include "xml/XmlTesting.h"

namespace yg::xml {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

std::string said(const std::optional<Place>& place) {
    return place ? std::to_string(place->begin.line) + ":" + std::to_string(place->begin.column)
                 : "none";
}

/// "name line:column attribute@line:column …" for each element from this one on.
std::string placesBelow(const Element& top) {
    std::string all;
    for (const Node& node : top.query("descendant-or-self::*")) {
        const Element element(node);
        all +=
            (all.empty() ? "" : "; ") + std::string(element.name()) + " " + said(element.place());
        for (const Attribute attribute : element.attributes())
            all += joined(" ", attribute.name, "@", said(element.attributePlace(attribute.name)));
    }
    return all;
}

std::string places(std::string_view bytes) {
    const ParseResult result = Document::parseBytes(bytes, withPositions);
    EXPECT_TRUE(result) << result.error;
    EXPECT_EQ(outline(result.document), outline(Document::parseBytes(bytes).document));
    return placesBelow(result.document.root());
}

Document kept(std::string_view text) {
    return Document::parseText(text, withPositions).document;
}

TEST(Places, IsWhereATagAndAnAttributeBegin) {
    EXPECT_EQ(places("<a/>"), "a 1:1");
    EXPECT_EQ(places("<a b='1' c='2'/>"), "a 1:1 b@1:4 c@1:10");
    EXPECT_EQ(places("<a>\n  <b c='1'/>x<d/>\n</a>"), "a 1:1; b 2:3 c@2:6; d 2:14");
    EXPECT_EQ(places("<?xml version='1.0'?>\n<!--\n-->\n <a/>"), "a 4:2");
    EXPECT_EQ(places("<a><b></b><c></c\n><d/></a>"), "a 1:1; b 1:4; c 1:11; d 2:2");
}

TEST(Places, OfAttributesOverSeveralLines) {
    EXPECT_EQ(places("<a\n  b='1'\n\n  c\n=\n'2' d='x\ny' e='3'\n/>"),
              "a 1:1 b@2:3 c@4:3 d@6:5 e@7:4");
}

TEST(Places, OfAttributesWhoseValuesLookLikeMarkup) {
    EXPECT_EQ(places("<a b='x>y' c=\"'\" d='\"' e='f=\"g\"'><h i='/>' j=';'/></a>"),
              "a 1:1 b@1:4 c@1:12 d@1:18 e@1:24; h 1:34 i@1:37 j@1:44");
    EXPECT_EQ(places("<a b='&lt;c d=&quot;e&quot;&gt;' f='&#65;'/>"), "a 1:1 b@1:4 f@1:34");
}

TEST(Places, EndBehindTheClosingQuoteHoweverLongTheAttribute) {
    for (const std::size_t size :
         {1U, 60U, 150U, 190U, 195U, 196U, 197U, 198U, 200U, 300U, 3'000U}) {
        const std::string value = repeated("中", size);
        const Element root =
            kept("<a b='" + value + "' c=\"'\"\n" + value.substr(0, 3) + "='\n" + value + "'/>")
                .root();
        const auto column = static_cast<std::uint32_t>(size);
        EXPECT_EQ(root.attributePlace("b"), (Place{"", {1, 4}, {1, column + 8}}));
        EXPECT_EQ(root.attributePlace("c"), (Place{"", {1, column + 9}, {1, column + 14}}));
        EXPECT_EQ(root.attributePlace("中"), (Place{"", {2, 1}, {3, column + 2}}));
    }
}

TEST(Places, CountsCrLfAsOneLineBreak) {
    EXPECT_EQ(places("<a>\r\n\r\n<b\r\n c='1'/>\r\n<d/></a>"), "a 1:1; b 3:1 c@4:2; d 5:1");
}

TEST(Places, CountsATabAsOneColumn) {
    EXPECT_EQ(places("\t<a>\n\t\t<b\tc='1'/></a>"), "a 1:2; b 2:3 c@2:6");
}

TEST(Places, CountsCharactersNotBytes) {
    EXPECT_EQ(places("<a>中文<b 键='值' c='1'/>\n\xF0\xA0\x80\x80<页/></a>"),
              "a 1:1; b 1:6 键@1:9 c@1:15; 页 2:2");
}

TEST(Places, IsTheOneInAFileOfAnyEncoding) {
    EXPECT_EQ(places("<?xml version='1.0' encoding='gbk'?>\r\n<a>\r\n\xD6\xD0<\xD6\xD0 "
                     "\xCE\xC4='\xD6\xD0' c='1'/></a>"),
              "a 2:1; 中 3:2 文@3:5 c@3:11");
    EXPECT_EQ(places("\xFF\xFE<\0a\0>\0\r\0\n\0\x2D\x4E<\0b\0 \0c\0=\0'\0'\0/\0>\0<\0/\0a\0>\0"sv),
              "a 1:1; b 2:2 c@2:5");
    EXPECT_EQ(places("\xFE\xFF\0<\0a\0>\0\n\x4E\x2D\0<\0b\0/\0>\0<\0/\0a\0>"sv), "a 1:1; b 2:2");
    EXPECT_EQ(places("\xEF\xBB\xBF<a b=''/>"), "a 1:1 b@1:4");
}

TEST(Places, IsRightWithNamespaces) {
    EXPECT_EQ(places("<a xmlns='u'\n p:b='1' xmlns:p='v'><p:c d=''/></a>"),
              "a 1:1 xmlns@1:4 p:b@2:2 xmlns:p@2:10; p:c 2:22 d@2:27");
}

TEST(Places, IsRightAfterTheDocumentType) {
    EXPECT_EQ(places("<!DOCTYPE a\nSYSTEM '<b c=\"d\"/>'\n>\n<!-- <b/> --><a b='1'/>"),
              "a 4:14 b@4:17");
}

TEST(Places, IsRightBeyondLine65535) {
    EXPECT_EQ(places(joined("<a>", repeated("\n", 200'000), " <b/></a>")), "a 1:1; b 200001:2");
}

TEST(Places, NamesTheFileAsItWasGiven) {
    const files::TemporaryFolder folder;
    files::put(folder / "a.xml", "<a><b/></a>");
    const std::string path = folder / "./a.xml";
    const Element root = Document::parseFile(path, withPositions).document.root();
    EXPECT_EQ(root.place()->file, path);
    EXPECT_EQ(Element(root.childAt(0)).place()->file, path);
    EXPECT_EQ(kept("<a/>").root().place()->file, "");
}

TEST(Places, IsAbsentWhenNobodyAsked) {
    const Element root = documentOf("<a b='1'/>").root();
    EXPECT_EQ(root.place(), std::nullopt);
    EXPECT_EQ(root.attributePlace("b"), std::nullopt);
}

TEST(Places, OfEachKindGoFromItsFirstCharacterToItsLast) {
    const Element root = kept("<a b='1'\n>x y\n<!--c--><?d?>\n<![CDATA[e]]><f/></a >").root();
    const auto both = [](const std::optional<Place>& place) {
        return said(place) + "-" + std::to_string(place->end.line) + ":" +
               std::to_string(place->end.column);
    };
    EXPECT_EQ(both(root.place()), "1:1-4:23");
    EXPECT_EQ(both(root.tagPlace()), "1:1-2:2");
    EXPECT_EQ(both(root.attributePlace("b")), "1:4-1:9");
    EXPECT_EQ(both(root.valuePlace("b")), "1:7-1:8");
    EXPECT_EQ(both(root.childAt(0).place()), "2:2-3:1");
    EXPECT_EQ(both(root.childAt(1).place()), "3:1-3:9");
    EXPECT_EQ(both(root.childAt(2).place()), "3:9-3:14");
    EXPECT_EQ(both(root.childAt(3).place()), "4:1-4:14");
    EXPECT_EQ(both(root.childAt(4).place()), "4:14-4:18");
    EXPECT_EQ(both(Element(root.childAt(4)).tagPlace()), "4:14-4:18");
}

TEST(Places, OfAPartOfAValueFollowReferencesAndLineBreaks) {
    const Element root =
        kept("<a x='&amp;' b='1&amp;&#x4e2d;\r\n&#0065;中|' c=''\n d='e,f'/>").root();
    const auto columns = [&](std::size_t offset, std::size_t length) {
        const std::optional<Place> place = root.valuePlace("b", offset, length);
        return said(place) + "-" + std::to_string(place->end.line) + ":" +
               std::to_string(place->end.column);
    };
    ASSERT_EQ(root.attribute("b"), "1&中 A中|");
    EXPECT_EQ(columns(0, 1), "1:17-1:18");
    EXPECT_EQ(columns(1, 1), "1:18-1:23");
    EXPECT_EQ(columns(0, 2), "1:17-1:23");
    EXPECT_EQ(columns(2, 3), "1:23-1:31");
    EXPECT_EQ(columns(3, 1), "1:23-1:31");
    EXPECT_EQ(columns(5, 1), "1:31-2:1");
    EXPECT_EQ(columns(6, 1), "2:1-2:8");
    EXPECT_EQ(columns(7, 3), "2:8-2:9");
    EXPECT_EQ(columns(10, 1), "2:9-2:10");
    EXPECT_EQ(columns(11, 0), "2:10-2:10");
    EXPECT_EQ(columns(1, 0), "1:18-1:18");
    EXPECT_EQ(columns(10, std::string_view::npos), "2:9-2:10");
    EXPECT_EQ(columns(12, 1), "2:10-2:10");
    EXPECT_EQ(columns(std::string_view::npos, std::string_view::npos), "2:10-2:10");
    EXPECT_EQ(said(root.valuePlace("c")), "2:15");
    EXPECT_EQ(root.valuePlace("c")->end, root.valuePlace("c")->begin);
    EXPECT_EQ(said(root.valuePlace("d", 2)), "3:7");
}

TEST(Places, OfMissingAttributesAreAbsent) {
    const Element root = kept("<a b='1'/>").root();
    EXPECT_EQ(root.attributePlace("c"), std::nullopt);
    EXPECT_EQ(root.valuePlace("c"), std::nullopt);
}

/// What begins a reference to a character makes any text be read by callbacks.
constexpr std::string_view builtByCallbacks = "<!--&#-->";

/// Looks at all places of a document against the text that they were read from.
class PlacesCheck {
public:
    explicit PlacesCheck(std::string_view bytes) : text_(decodeXml(std::string(bytes)).text) {
        lines_.emplace_back();
        for (std::size_t at = 0; at <= text_.size();) {
            lines_.back().push_back(at);
            if (at == text_.size())
                break;
            if (text_[at] == '\n')
                lines_.emplace_back();
            at += text::firstCharacter(std::string_view(text_).substr(at)).size;
        }
        const ParseResult result = Document::parseBytes(bytes, withPositions);
        EXPECT_TRUE(result) << result.error;
        for (const Node& node : result.document.query("//node()"))
            check(node);
    }

    std::size_t checked() const { return checked_; }

private:
    using Offsets = std::pair<std::size_t, std::size_t>;

    std::size_t offsetOf(TextPoint point) const {
        return lines_.at(point.line - 1).at(point.column - 1);
    }

    Offsets offsetsOf(const std::optional<Place>& place) const {
        if (!place)
            throw std::runtime_error("something without a place");
        return {offsetOf(place->begin), offsetOf(place->end)};
    }

    std::string textAt(const std::optional<Place>& place) const {
        const auto [begin, end] = offsetsOf(place);
        return text_.substr(begin, end - begin);
    }

    void check(const Node& node) {
        ++checked_;
        const std::string text = textAt(node.place());
        EXPECT_EQ(plain(rootOf("<x>" + text + "</x>").firstChild()), plain(node)) << text;
        if (const Node next = node.nextSibling()) {
            EXPECT_LE(offsetsOf(node.place()).second, offsetsOf(next.place()).first) << text;
        }
        if (const Element parent = node.parent()) {
            EXPECT_GE(offsetsOf(node.place()).first, offsetsOf(parent.tagPlace()).second) << text;
            EXPECT_LT(offsetsOf(node.place()).second, offsetsOf(parent.place()).second) << text;
        }
        if (node.isElement())
            checkTag(Element(node));
    }

    void checkTag(const Element& element) {
        const std::string tag = textAt(element.tagPlace());
        EXPECT_TRUE(tag.starts_with(joined("<", element.name()))) << tag;
        EXPECT_TRUE(tag.ends_with('>')) << tag;
        EXPECT_EQ(offsetsOf(element.tagPlace()).first, offsetsOf(element.place()).first) << tag;
        std::size_t before = offsetsOf(element.tagPlace()).first + 1 + element.name().size();
        for (const Attribute attribute : element.attributes()) {
            ++checked_;
            const std::optional<Place> place = element.attributePlace(attribute.name);
            EXPECT_LT(before, offsetsOf(place).first) << tag;
            before = offsetsOf(place).second;
            EXPECT_TRUE(textAt(place).starts_with(attribute.name)) << tag;
            EXPECT_EQ(rootOf("<x " + textAt(place) + "/>").attribute(attribute.name),
                      attribute.value);
            checkValue(element, attribute);
        }
        EXPECT_LT(before, offsetsOf(element.tagPlace()).second) << tag;
    }

    /// The parts of a value follow each other and are read as what they are the places of.
    void checkValue(const Element& element, const Attribute& attribute) {
        const auto [begin, end] = offsetsOf(element.valuePlace(attribute.name));
        EXPECT_EQ(end + 1, offsetsOf(element.attributePlace(attribute.name)).second);
        EXPECT_EQ(text_[begin - 1], text_[end]);
        std::size_t before = begin;
        for (std::size_t at = 0; at < attribute.value.size();) {
            const std::string_view rest = attribute.value.substr(at);
            const std::string_view one = rest.substr(0, text::firstCharacter(rest).size);
            const std::optional<Place> place = element.valuePlace(attribute.name, at, one.size());
            EXPECT_EQ(offsetsOf(place).first, before);
            before = offsetsOf(place).second;
            const char quote = text_[end];
            EXPECT_EQ(rootOf(joined("<x y=", std::string(1, quote), textAt(place),
                                    std::string(1, quote), "/>"))
                          .attribute("y"),
                      one);
            at += one.size();
        }
        EXPECT_EQ(before, end);
    }

    std::string text_;
    std::vector<std::vector<std::size_t>> lines_;  ///< where each of their characters begins
    std::size_t checked_ = 0;
};

TEST(Places, AreThoseOfTheTextTheyWereReadFrom) {
    const std::pair<std::string_view, std::size_t> inputs[] = {
        {"<a/>", 1},
        {"<?xml version='1.0'?>\r\n<?xml-x y='<a>'?><!--<b c='>'>--><a> <b/> </a><!--x-->", 5},
        {"<!DOCTYPE a PUBLIC \"'\" '\">\"<!--'>\n<a>x<b/>y</a>", 4},
        {"<a>&amp;&#x4e2d;&lt;<b> &#32; </b>&gt;\r\n<![CDATA[]]><![CDATA[<x>]]]> z</a>", 7},
        {"<a b='&amp;&#x4e2d;&lt;' "
         "c=\"'>&#9;&#10;&#13;&#x7F;&#x80;&#x7FF;&#x800;&#xFFFD;&#x10000;&#x10FFFF;'\" "
         "d='\r\n\r\r\n\t\n'\n/>",
         4},
        {"<中 键\t=\n'值&#x1F600;&#0065;' n = \"&quot;>\">行<情 c=''/>\xF0\xA0\x80\x80</中\n>", 7},
        {"<a xmlns='u' p:b='1' xmlns:p='v'><p:c d=''/><?p?><?p ?><?p  q?></a>", 9},
        {"<a> <b> </b> <!-- --> <c/> </a>", 4},
        {"<?xml version='1.0' encoding='gbk'?>\r\n<a>\r\n\xD6\xD0<\xD6\xD0 "
         "\xCE\xC4='\xD6\xD0&amp;' c='1'/></a>"sv,
         5},
        {"\xFF\xFE<\0a\0>\0\r\0\n\0\x2D\x4E<\0b\0 \0c\0=\0'\0\x2D\x4E'\0/\0>\0<\0/\0a\0>\0"sv, 4},
        {"\xEF\xBB\xBF<a b='\r\n'>\r\nx\r\n</a>", 3},
    };
    for (const auto& [bytes, count] : inputs) {
        SCOPED_TRACE(bytes);
        EXPECT_EQ(PlacesCheck(bytes).checked(), count);
        if (bytes.find('\0') == std::string_view::npos) {
            EXPECT_EQ(PlacesCheck(joined(bytes, builtByCallbacks)).checked(), count + 1);
        }
    }
}

TEST(Places, AreThoseOfTheSampleFiles) {
    std::size_t checked = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(YG_SAMPLE_FOLDER)) {
        if (entry.path().extension() != ".xml")
            continue;
        SCOPED_TRACE(entry.path());
        const std::string bytes = files::contentOf(entry.path());
        const std::size_t count = PlacesCheck(bytes).checked();
        EXPECT_EQ(PlacesCheck(joined(bytes, builtByCallbacks)).checked(), count + 1);
        checked += count;
    }
    EXPECT_GT(checked, 1000U);
}

TEST(Places, OfWhatCodeMadeIsAbsent) {
    Element root = kept("<a b='1'/>").root();
    root.setAttribute("c", "2");
    root.setAttribute("b", "3");
    EXPECT_EQ(root.attributePlace("c"), std::nullopt);
    EXPECT_EQ(said(root.attributePlace("b")), "1:4");
    EXPECT_EQ(root.valuePlace("b"), std::nullopt);
    EXPECT_EQ(root.appendChild(Element::create("d")).place(), std::nullopt);
    EXPECT_EQ(Element::create("a").place(), std::nullopt);
}

TEST(Places, OfATextThatCodeChangedIsAbsent) {
    Element root = kept("<a>x<b/></a>").root();
    Element other = kept("<a>x</a>").root();
    other.setContent("y");
    EXPECT_EQ(other.firstChild().place(), std::nullopt);
    EXPECT_EQ(said(other.place()), "1:1");
    root.setContent("y");
    EXPECT_EQ(root.firstChild().place(), std::nullopt);
}

// White space alone is freed at once when something is put beside it.
TEST(Places, OfWhatTakesTheMemoryOfWhiteSpaceAreAbsent) {
    Document document = kept(joined("<a>", repeated("<b> </b>", 5'000), "</a>"));
    for (Node& node : document.query("//b")) {
        Element(node).appendChild(Element::create("c"));
        node.remove();
    }
    document.releaseRemoved();
    Element root = document.root();
    std::size_t wrong = 0;
    for (int i = 0; i < 15'000; ++i)
        wrong += root.appendChild(Element::create("new")).place() ? 1 : 0;
    EXPECT_EQ(wrong, 0U);
}

TEST(Places, StaysAfterRenaming) {
    Element root = kept("\n<a b='1'/>").root();
    root.rename("longer");
    EXPECT_EQ(placesBelow(root), "longer 2:1 b@2:4");
}

TEST(Places, OfACopyIsThatOfItsSource) {
    const Document document = kept("<a>\n<b c='1'><d/></b></a>");
    const std::string expected = placesBelow(document.root());
    EXPECT_EQ(placesBelow(Element(document.root().copy())), expected);
    EXPECT_EQ(placesBelow(document.copy().root()), expected);
    EXPECT_EQ(placesBelow(Element(Element(document.root().copy()).childAt(0).copy())),
              "b 2:1 c@2:4; d 2:10");
}

TEST(Places, OfAnAddedOneIsThatOfItsSource) {
    const files::TemporaryFolder folder;
    files::put(folder / "1.xml", "<a>\n<old/></a>");
    files::put(folder / "2.xml", "<b>\n\n<c d='1'/></b>");
    const Document first = Document::parseFile(folder / "1.xml", withPositions).document;
    Element root = first.root();
    {
        const Element source = Document::parseFile(folder / "2.xml", withPositions).document.root();
        root.appendChild(source.childAt(0));
        root.insertChild(source, 0);
        Node old = elementAt(first, "//old");
        old.replaceWith(source.childAt(0));
        EXPECT_EQ(placesBelow(Element(old)), "old 2:1");
    }
    EXPECT_EQ(placesBelow(root), "a 1:1; b 1:1; c 3:1 d@3:4; c 3:1 d@3:4; c 3:1 d@3:4");
    for (const Node& node : root.query("//c|//b"))
        EXPECT_EQ(node.place()->file, folder / "2.xml");
    EXPECT_EQ(root.place()->file, folder / "1.xml");
}

TEST(Places, OfAnAddedOneFromATreeWithoutPositionsIsAbsent) {
    Element root = kept("<a/>").root();
    EXPECT_EQ(root.appendChild(documentOf("<b/>").root()).place(), std::nullopt);
    Element other = documentOf("<b/>").root();
    EXPECT_EQ(said(other.appendChild(root).place()), "1:1");
    EXPECT_EQ(other.place(), std::nullopt);
}

TEST(Places, OfATakenOutPartStays) {
    const Document document = kept("<a>\n<b c='1'><d/></b></a>");
    Element b(document.root().childAt(0));
    b.remove();
    EXPECT_EQ(placesBelow(b), "b 2:1 c@2:4; d 2:10");
}

TEST(Places, OfAnElementAddedToItselfIsThatOfItsSource) {
    for (const std::size_t index : {0U, 1U, 2U}) {
        const Document document = kept("<a>\n<b/>\n\n<c><d/></c></a>");
        Element root = document.root();
        const Element added(root.insertChild(root, index));
        EXPECT_EQ(placesBelow(added), "a 1:1; b 2:1; c 4:1; d 4:4") << index;
    }
}

// The memory of what is freed is used again, and places must not be found under it.
TEST(Places, OfANewElementIsAbsentAlsoAfterRemovedOnesWereFreed) {
    Document document = kept(joined("<a>", repeated("<b x='1'/>", 5'000), "</a>"));
    for (Node& node : document.query("//b"))
        node.remove();
    document.releaseRemoved();
    Element root = document.root();
    std::size_t wrong = 0;
    for (int i = 0; i < 5'000; ++i) {
        Element added(root.appendChild(Element::create("new")));
        added.setAttribute("y", "2");
        wrong += added.place() || added.attributePlace("y") ? 1 : 0;
    }
    EXPECT_EQ(wrong, 0U);
    EXPECT_EQ(said(root.place()), "1:1");
}

TEST(Places, CopyingBackAndForthKeepsEachFileOnce) {
    Element left = kept("<a><x/></a>").root();
    Element right = kept("<b><y/></b>").root();
    for (int i = 0; i < 12; ++i) {
        left.appendChild(right.childAt(0));
        right.appendChild(left.childAt(0));
    }
    EXPECT_LE(Tree::treeOf(left)->sources.size(), 2U);
    EXPECT_LE(Tree::treeOf(right)->sources.size(), 2U);
}

}  // namespace
}  // namespace yg::xml
