// SPDX-License-Identifier: MIT
#include "growth/Constructs.h"

#include <algorithm>

namespace yg::testing {

namespace {

std::string element(std::string_view attributes) {
    return joined("<e ", attributes, "/>");
}

// ---- names ----

std::string differentElementNames(std::size_t bytes) {
    return repeated(bytes, [](std::size_t i) { return joined("<e", number(i), "/>"); });
}

std::string differentAttributeNames(std::size_t bytes) {
    return repeated(bytes, [](std::size_t i) { return element(joined("a", number(i), "=''")); });
}

std::string differentInstructions(std::size_t bytes) {
    return repeated(bytes, [](std::size_t i) { return joined("<?p", number(i), " x?>"); });
}

std::string longNames(std::size_t bytes) {
    const std::string name(4'000, 'n');
    return repeated(bytes, joined("<", name, " ", name, "=''/>"));
}

std::string longDifferentNames(std::size_t bytes) {
    const std::string name(200, 'n');
    return repeated(bytes, [&](std::size_t i) { return joined("<", name, number(i), "/>"); });
}

std::string sameBeginnings(std::size_t bytes) {
    return repeated(bytes, [](std::size_t i) {
        return joined("<", std::string(i % 200 + 1, 'n'), " ", std::string(200 - i % 200, 'n'),
                      "=''/>");
    });
}

// ---- attributes ----

std::string manyAttributes(std::size_t bytes) {
    std::string attributes;
    for (std::size_t i = 0; i < 200; ++i)
        attributes += joined("a", number(i), "='v' ");
    return repeated(bytes, element(attributes));
}

std::string tooManyAttributes(std::size_t bytes) {
    return element(repeated(bytes, [](std::size_t i) { return joined("a", number(i), "='' "); }));
}

std::string longValue(std::size_t bytes) {
    return element(joined("a='", std::string(bytes, 'v'), "'"));
}

std::string longValues(std::size_t bytes) {
    return repeated(bytes, element(joined("a='", std::string(4'000, 'v'), "'")));
}

std::string quotesInValues(std::size_t bytes) {
    return repeated(bytes, element(joined("a='", std::string(100, '"'), "' b=\"",
                                          std::string(100, '\''), "\"")));
}

std::string bracketsInValues(std::size_t bytes) {
    return repeated(bytes, element(joined("a='", std::string(200, '>'), "/>'")));
}

std::string lineEndsInValues(std::size_t bytes) {
    return element(joined("a='", repeated(bytes, "v\r\n\t "), "'"));
}

std::string referencesInAValue(std::size_t bytes) {
    return element(joined("a='", repeated(bytes, "&amp;&#65;&quot;"), "'"));
}

std::string shortValuesWithReferences(std::size_t bytes) {
    return repeated(bytes, element("a='&lt;' b='&#x4e2d;'"));
}

// ---- nesting ----

std::string nested(std::size_t bytes) {
    return repeated(bytes, copies(200, "<a>") + copies(200, "</a>"));
}

std::string nestedWithContent(std::size_t bytes) {
    return repeated(bytes, copies(200, "<a b='1'>t") + copies(200, "</a>t"));
}

std::string nestedTooDeep(std::size_t bytes) {
    return copies(bytes / 7, "<a>") + copies(bytes / 7, "</a>");
}

// ---- text ----

std::string longText(std::size_t bytes) {
    return std::string(bytes, 't');
}

std::string textAndElements(std::size_t bytes) {
    return repeated(bytes, "t<a/>");
}

std::string textAndComments(std::size_t bytes) {
    return repeated(bytes, "t<!--c-->");
}

std::string textAndInstructions(std::size_t bytes) {
    return repeated(bytes, "t<?p?>");
}

std::string elementsWithText(std::size_t bytes) {
    return repeated(bytes, "<a>t</a>");
}

std::string references(std::size_t bytes) {
    return repeated(bytes, "&amp;");
}

std::string characterReferences(std::size_t bytes) {
    return repeated(bytes, "&#65;");
}

std::string elementsWithReferences(std::size_t bytes) {
    return repeated(bytes, "<a>&lt;&#x41;</a>");
}

std::string textAndReferences(std::size_t bytes) {
    return repeated(bytes, "t&gt;");
}

std::string brackets(std::size_t bytes) {
    return repeated(bytes, "] >");
}

std::string chinese(std::size_t bytes) {
    return repeated(bytes, "<a b='\xE4\xB8\xAD\xE6\x96\x87'>\xE4\xB8\xAD\xE6\x96\x87</a>");
}

std::string chineseOnOneLine(std::size_t bytes) {
    return repeated(bytes, "\xE4\xB8\xAD\xE6\x96\x87<a/>");
}

// ---- white space ----

std::string lineFeeds(std::size_t bytes) {
    return repeated(bytes, "\n");
}

std::string elementsOnLines(std::size_t bytes) {
    return repeated(bytes, "    <a/>\n");
}

std::string elementsOnLinesOfTwo(std::size_t bytes) {
    return repeated(bytes, "<a/>\r\n");
}

std::string lineEndsOfTwo(std::size_t bytes) {
    return repeated(bytes, "\r\n");
}

std::string lineEndsOfOne(std::size_t bytes) {
    return repeated(bytes, "t\r");
}

std::string blanksOnly(std::size_t bytes) {
    return repeated(bytes, "<a> </a>");
}

std::string blanksInTags(std::size_t bytes) {
    return repeated(bytes, joined("<a", std::string(1'300, ' '), "/>"));
}

// ---- comments, CDATA, instructions ----

std::string comments(std::size_t bytes) {
    return repeated(bytes, "<!---->");
}

std::string longComment(std::size_t bytes) {
    return joined("<!--", repeated(bytes, "- c "), "-->");
}

std::string sections(std::size_t bytes) {
    return repeated(bytes, "<![CDATA[x]]>");
}

std::string emptySections(std::size_t bytes) {
    return repeated(bytes, "<![CDATA[]]>");
}

std::string elementsWithSections(std::size_t bytes) {
    return repeated(bytes, "<a><![CDATA[<]]></a>");
}

std::string longSection(std::size_t bytes) {
    return joined("<![CDATA[", repeated(bytes, "]]"), "]]>");
}

std::string instructions(std::size_t bytes) {
    return repeated(bytes, "<?p?>");
}

std::string longInstruction(std::size_t bytes) {
    return joined("<?p ", repeated(bytes, "?? "), "?>");
}

// ---- siblings ----

std::string siblings(std::size_t bytes) {
    return repeated(bytes, "<a/>");
}

std::string duplicates(std::size_t bytes) {
    return repeated(bytes, "<style name='same'><panel name='same'/></style>");
}

// ---- namespaces ----

/// Half of it declarations, 200 on each of up to 200 levels, and half of it elements in their
/// scope.
std::string declarationsInScope(std::size_t bytes) {
    std::string open;
    std::size_t levels = 0;
    while (open.size() < bytes / 2 && levels < 200) {
        open += "<a";
        for (std::size_t i = 0; i < 200; ++i)
            open += joined(" xmlns:p", number(levels * 200 + i), "='u'");
        open += ">";
        ++levels;
    }
    return open + repeated(bytes - std::min(bytes, open.size()), "<p0:b/>") +
           copies(levels, "</a>");
}

std::string prefixes(std::size_t bytes) {
    return joined("<p:a xmlns:p='u'>", repeated(bytes, "<p:b p:c=''/>"), "</p:a>");
}

std::string declarations(std::size_t bytes) {
    return repeated(bytes, "<a xmlns:p='u'/>");
}

std::string differentDeclarations(std::size_t bytes) {
    return repeated(bytes, [](std::size_t i) {
        return joined("<a xmlns:p", number(i), "='u", number(i), "'/>");
    });
}

std::string defaultDeclarations(std::size_t bytes) {
    return repeated(bytes, "<a xmlns='u'/>");
}

std::string relativeNamespaces(std::size_t bytes) {
    return repeated(bytes, "<a xmlns='a b'/>");
}

// ---- errors ----

std::string afterwards(std::size_t bytes, std::string_view error) {
    return joined(plainLayout(bytes), error);
}

std::string lateMismatch(std::size_t bytes) {
    return afterwards(bytes, "<a></b>");
}

std::string lateMismatchOnOneLine(std::size_t bytes) {
    return repeated(bytes, "<a/>\xE4\xB8\xAD") + "<a></b>";
}

std::string lateWrongByte(std::size_t bytes) {
    return afterwards(bytes, "<a>\xC0\xAF</a>");
}

std::string lateWrongByteInText(std::size_t bytes) {
    return repeated(bytes, "\xE4\xB8\xAD\n") + "\xFF";
}

std::string unknownEntities(std::size_t bytes) {
    return repeated(bytes, "&nbsp;");
}

std::string unknownPrefixes(std::size_t bytes) {
    return repeated(bytes, "<q:a/>");
}

std::string endsWithoutBeginning(std::size_t bytes) {
    return repeated(bytes, "</a>");
}

std::string beginsWithoutEnd(std::size_t bytes) {
    return copies(100, joined(repeated(bytes / 100, "<a>t</a>"), "<a>"));
}

std::string lessThanAndBlanks(std::size_t bytes) {
    return repeated(bytes, joined("<", std::string(1'300, ' ')));
}

std::string lessThan(std::size_t bytes) {
    return repeated(bytes, "<");
}

std::string openTags(std::size_t bytes) {
    return repeated(bytes, "<a ");
}

std::string openValues(std::size_t bytes) {
    return repeated(bytes, "<a b='");
}

std::string openComments(std::size_t bytes) {
    return repeated(bytes, "<!-- ");
}

std::string openSections(std::size_t bytes) {
    return repeated(bytes, "<![CDATA[ ");
}

std::string openInstructions(std::size_t bytes) {
    return repeated(bytes, "<?p ");
}

std::string openDeclarations(std::size_t bytes) {
    return repeated(bytes, "<!a ");
}

std::string openReferences(std::size_t bytes) {
    return repeated(bytes, "&a");
}

std::string sectionEnds(std::size_t bytes) {
    return repeated(bytes, "]]>");
}

// ---- encodings ----

/// Two characters of the GBK family, 中文.
std::string gbElements(std::size_t bytes) {
    return repeated(bytes, "<a b='\xD6\xD0\xCE\xC4'>\xD6\xD0\xCE\xC4</a>");
}

std::string gbText(std::size_t bytes) {
    return repeated(bytes, "\xD6\xD0\xCE\xC4\x81\x30\x81\x30");
}

std::string lateWrongGbByte(std::size_t bytes) {
    return gbText(bytes) + "\xFF";
}

std::string latinText(std::size_t bytes) {
    return repeated(bytes, "<a>\xE9\xE8</a>");
}

std::string asciiElements(std::size_t bytes) {
    return repeated(bytes / 2, "<a b='c'>t</a>");
}

constexpr std::string_view gb18030 = "<?xml version='1.0' encoding='GB18030'?>";
constexpr std::string_view gb2312 = "<?xml version='1.0' encoding='gb2312'?>";
constexpr std::string_view latin1 = "<?xml version='1.0' encoding='ISO-8859-1'?>";

using enum Verdict;
using enum Readers;

constexpr Construct table[] = {
    {"plainLayout", plainLayout},
    {"differentElementNames", differentElementNames, all, limited, "names"},
    {"differentAttributeNames", differentAttributeNames, all, limited, "names"},
    {"differentInstructions", differentInstructions, xmlOnly, limited, "names"},
    {"longNames", longNames},
    {"longDifferentNames", longDifferentNames, xmlOnly, limited, "names", "", false, 10},
    {"manyElementNames", differentElementNames, xmlOnly, limited, "names", "", false, 8},
    {"manyAttributeNames", differentAttributeNames, xmlOnly, limited, "names", "", false, 8},
    {"sameBeginnings", sameBeginnings, xmlOnly},
    {"manyAttributes", manyAttributes},
    {"tooManyAttributes", tooManyAttributes, xmlOnly, refused, "attributes"},
    {"longValue", longValue},
    {"longValues", longValues},
    {"quotesInValues", quotesInValues},
    {"bracketsInValues", bracketsInValues, xmlOnly},
    {"lineEndsInValues", lineEndsInValues, xmlOnly},
    {"referencesInAValue", referencesInAValue, xmlOnly},
    {"shortValuesWithReferences", shortValuesWithReferences, xmlOnly},
    {"nested", nested},
    {"nestedWithContent", nestedWithContent},
    {"nestedTooDeep", nestedTooDeep, xmlOnly, refused, "depth"},
    {"longText", longText},
    {"textAndElements", textAndElements},
    {"textAndComments", textAndComments},
    {"textAndInstructions", textAndInstructions},
    {"elementsWithText", elementsWithText},
    {"references", references, xmlOnly},
    {"characterReferences", characterReferences, xmlOnly},
    {"elementsWithReferences", elementsWithReferences},
    {"textAndReferences", textAndReferences, xmlOnly},
    {"brackets", brackets, xmlOnly},
    {"chinese", chinese},
    {"chineseOnOneLine", chineseOnOneLine, xmlOnly},
    {"lineFeeds", lineFeeds, xmlOnly},
    {"elementsOnLines", elementsOnLines},
    {"elementsOnLinesOfTwo", elementsOnLinesOfTwo, xmlOnly},
    {"lineEndsOfTwo", lineEndsOfTwo, xmlOnly},
    {"lineEndsOfOne", lineEndsOfOne, xmlOnly},
    {"blanksOnly", blanksOnly},
    {"blanksInTags", blanksInTags, xmlOnly},
    {"comments", comments},
    {"longComment", longComment, xmlOnly},
    {"sections", sections},
    {"emptySections", emptySections, xmlOnly},
    {"elementsWithSections", elementsWithSections},
    {"longSection", longSection, xmlOnly},
    {"instructions", instructions},
    {"longInstruction", longInstruction, xmlOnly},
    {"siblings", siblings},
    {"duplicates", duplicates},
    {"declarationsInScope", declarationsInScope, xmlOnly},
    {"prefixes", prefixes},
    {"declarations", declarations, all},
    {"differentDeclarations", differentDeclarations, xmlOnly},
    {"defaultDeclarations", defaultDeclarations, xmlOnly},
    {"relativeNamespaces", relativeNamespaces, xmlOnly},
    {"lateMismatch", lateMismatch, all, refused, "mismatch"},
    {"lateMismatchOnOneLine", lateMismatchOnOneLine, xmlOnly, refused, "mismatch"},
    {"lateWrongByte", lateWrongByte, xmlOnly, refused, ""},
    {"lateWrongByteInText", lateWrongByteInText, xmlOnly, refused, ""},
    {"unknownEntities", unknownEntities, xmlOnly, refused, "nbsp"},
    {"unknownPrefixes", unknownPrefixes, xmlOnly},
    {"endsWithoutBeginning", endsWithoutBeginning, xmlOnly, refused, ""},
    {"beginsWithoutEnd", beginsWithoutEnd, xmlOnly, refused, ""},
    {"lessThanAndBlanks", lessThanAndBlanks, xmlOnly, refused, ""},
    {"lessThan", lessThan, xmlOnly, refused, ""},
    {"openTags", openTags, xmlOnly, refused, ""},
    {"openValues", openValues, xmlOnly, refused, ""},
    {"openComments", openComments, xmlOnly, refused, ""},
    {"openSections", openSections, xmlOnly, refused, ""},
    {"openInstructions", openInstructions, xmlOnly, refused, ""},
    {"openDeclarations", openDeclarations, xmlOnly, refused, ""},
    {"openReferences", openReferences, xmlOnly, refused, ""},
    {"sectionEnds", sectionEnds, xmlOnly, refused, ""},
    {"gb18030Elements", gbElements, xmlOnly, accepted, "", gb18030},
    {"gb18030Text", gbText, xmlOnly, accepted, "", gb18030},
    {"gb2312Elements", gbElements, xmlOnly, accepted, "", gb2312},
    {"lateWrongGb18030Byte", lateWrongGbByte, xmlOnly, refused, "", gb18030},
    {"latin1Text", latinText, xmlOnly, accepted, "", latin1},
    {"utf16", asciiElements, xmlOnly, accepted, "", "", true},
};

/// With its mark, little end first; for ASCII.
std::string asUtf16(std::string_view ascii) {
    std::string text = "\xFF\xFE";
    for (const char letter : ascii) {
        text += letter;
        text += '\0';
    }
    return text;
}

}  // namespace

std::span<const Construct> constructs() {
    return table;
}

std::string documentOf(const Construct& construct, std::string_view open, std::string_view close,
                       std::size_t bytes) {
    std::string document(construct.prolog);
    document += open;
    document += construct.content(bytes);
    document += close;
    return construct.isUtf16 ? asUtf16(document) : document;
}

std::string plainLayout(std::size_t bytes) {
    return repeated(bytes, [](std::size_t i) {
        const std::string n = number(i);
        return joined("    <style name=\"page", n,
                      "\" layer=\"1\">\n"
                      "        <panel name=\"left\" split_scale=\"0.25\" vertical=\"true\">\n"
                      "            <element name=\"List\" param=\"p",
                      n,
                      "\" event=\"select\"/>\n"
                      "        </panel>\n"
                      "        <panel name=\"right\" fix_size=\"40\" is_editable=\"true\"/>\n"
                      "    </style>\n");
    });
}

std::string repeated(std::size_t bytes, const std::function<std::string(std::size_t)>& part) {
    std::string text;
    for (std::size_t i = 0; text.size() < bytes; ++i)
        text += part(i);
    return text;
}

std::string copies(std::size_t count, std::string_view part) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += part;
    return text;
}

std::string repeated(std::size_t bytes, std::string_view part) {
    std::string text;
    text.reserve(bytes + part.size());
    while (text.size() < bytes)
        text += part;
    return text;
}

}  // namespace yg::testing
