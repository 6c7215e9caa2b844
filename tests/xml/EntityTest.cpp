// SPDX-License-Identifier: MIT
#include <string>
#include <string_view>

#include "YGConfigManager/xml/Document.h"

#include "files/TemporaryFolder.h"
#include "xml/XmlTesting.h"

namespace yg::xml {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::HasSubstr;

constexpr std::string_view subsetError = "A document type with an internal subset is not allowed";

/// The text is refused for its internal subset, which begins in that line.
void expectSubsetRefused(const std::string& text, int line = 1) {
    const ParseResult result = parsedText(text);
    EXPECT_FALSE(result.document.root()) << text.substr(0, 500);
    EXPECT_THAT(result.error,
                testing::EndsWith(joined("Line ", std::to_string(line), ": ", subsetError)))
        << text.substr(0, 500);
}

TEST(InternalSubset, IsRefusedWhateverItHolds) {
    for (const std::string_view subset : {
             ""sv,
             " \r\n\t "sv,
             "<!ENTITY e 'x'>"sv,
             "<!ENTITY lt '&#38;#60;'>"sv,
             "<!ENTITY % p \"<!ENTITY e 'x'>\">%p;"sv,
             "<!ENTITY e SYSTEM 'x'>"sv,
             "<!ENTITY e SYSTEM 'x' NDATA n>"sv,
             "<!NOTATION n SYSTEM 'x'>"sv,
             "<!ATTLIST a b ID #IMPLIED>"sv,
             "<!ATTLIST a b CDATA 'default' xmlns CDATA 'u'>"sv,
             "<!ELEMENT a ANY>"sv,
             "<!-- ]> -->"sv,
             "<?p ]> ?>"sv,
             "%p;"sv,
             "<"sv,
             "\""sv,
         }) {
        expectSubsetRefused(joined("<!DOCTYPE a [", subset, "]><a/>"));
        expectSubsetRefused(joined("<!DOCTYPE a SYSTEM '>' [", subset, "]><a/>"));
        expectSubsetRefused(joined("<!DOCTYPE a PUBLIC '-//x' \"[\"[", subset, "]><a/>"));
        expectSubsetRefused(joined("<!DOCTYPE a\n[", subset), 2);
    }
}

TEST(InternalSubset, IsNamedWithItsLine) {
    EXPECT_EQ(Document::parseText("<?xml version='1.0'?>\n<!--\n-->\n<!DOCTYPE a []>\n<a/>").error,
              joined("Line 4: ", subsetError));
    expectSubsetRefused("<?xml version='1.0'?>\n<!--\n-->\n<!DOCTYPE a\n[]><a/>", 5);
}

/// libxml2 reports what is wrong with these with its own context in the place of the reader, and
/// needs seconds and gigabytes for longer ones.
TEST(InternalSubset, OfAnAttackIsRefusedUnread) {
    expectSubsetRefused(
        joined("<!DOCTYPE a [<!ATTLIST a b (x", repeated("|x", 40), ") #IMPLIED>]><application/>"));
    expectSubsetRefused(joined("<!DOCTYPE a [<!ATTLIST a b NOTATION (x", repeated("|x", 200'000),
                               ") #IMPLIED>]><a/>"));
    expectSubsetRefused(joined("<!DOCTYPE a [<!ENTITY e '", repeated("x", 65'000), "'>]><a>",
                               repeated("&e;", 21'000), "</a>"));
    std::string laughs;
    for (int i = 1; i < 12; ++i)
        laughs += joined("<!ENTITY e", std::to_string(i), " '",
                         repeated(joined("&e", std::to_string(i - 1), ";"), 10), "'>");
    expectSubsetRefused(joined("<!DOCTYPE a [<!ENTITY e0 'laugh'>", laughs, "]><a>&e11;</a>"));
    expectSubsetRefused("<!DOCTYPE a [<!ENTITY % e '&#37;f;'><!ENTITY % f '&#37;e;'>%e;]><a/>");
}

TEST(InternalSubset, IsRefusedBehindWhateverEndsADocumentType) {
    const std::string attack = joined("[<!ATTLIST a b (x", repeated("|x", 40), ") #IMPLIED>]><a/>");
    expectSubsetRefused("<!DOCTYPE a>" + attack);
    expectSubsetRefused("<!DOCTYPE a SYSTEM 'x'>" + attack);
    for (const std::string_view end : {"."sv, "x"sv, "\xE4\xB8\xAD"sv, "'"sv, "<"sv, "]"sv}) {
        EXPECT_EQ(parsedText(joined("<!DOCTYPE a ", end, attack)).error.substr(0, 37),
                  "Line 1: DOCTYPE improperly terminated")
            << end;
        EXPECT_FALSE(parsedText(joined("<!DOCTYPE a SYSTEM 'x' ", end, attack))) << end;
    }
}

/// After an error libxml2 stops calling back, but reads on.
TEST(InternalSubset, IsRefusedBehindAnErrorToo) {
    const std::string attack =
        joined("<!DOCTYPE a [<!ATTLIST a b (x", repeated("|x", 40), ") #IMPLIED>]><application/>");
    for (const std::string_view before : {
             "<!-- -- -->"sv,
             "<?p\x01?>"sv,
             "<?xml version='9'?>"sv,
             "<?xml version='1.0' oops?>"sv,
             "<?xml version='1.0' <!DOCTYPE a []> ?>"sv,
             "<?xml standalone='maybe' version='1.0'?>"sv,
             "<?XML odd?>"sv,
             "<!DOCTYPE b>"sv,
             "<!DOCTYPE b SYSTEM>"sv,
         }) {
        const ParseResult result = parsedText(joined(before, attack));
        EXPECT_FALSE(result) << before;
        EXPECT_FALSE(result.document.root()) << before;
    }
    EXPECT_THAT(parsedText("<!-- -- -->" + attack).error, HasSubstr(subsetError));
    // An instruction and a comment that are too long end in the middle.
    for (const std::string_view opening : {"<?p "sv, "<!--"sv})
        EXPECT_FALSE(parsedText(joined(opening, repeated("x", 10'000'000), attack)));
}

TEST(Entity, AReferenceToAnUndeclaredOneIsAnError) {
    for (const std::string_view text : {
             "<a>&e;</a>"sv,
             "<a b='&e;'/>"sv,
             "<!DOCTYPE a><a>&e;</a>"sv,
             "<!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>"sv,
             "<!DOCTYPE a SYSTEM 'a.dtd'><a b='&e;'/>"sv,
             "<!DOCTYPE a PUBLIC '-//x' 'a.dtd'><a>&e;</a>"sv,
             "<?xml version='1.0' standalone='yes'?><!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>"sv,
             "<?xml version='1.0' standalone='no'?><!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>"sv,
         }) {
        const ParseResult result = parsedText(text);
        EXPECT_FALSE(result) << text;
        EXPECT_FALSE(result.document.root()) << text;
    }
}

/// A file that entities could name, and what a document says that names it.
class ExternalEntity : public testing::Test {
protected:
    ExternalEntity() { files::put(path_, "secret"); }

    /// The text with "FILE" replaced by the file's location.
    ParseResult parsed(std::string_view text) const {
        std::string whole(text);
        for (std::size_t at = whole.find("FILE"); at != std::string::npos; at = whole.find("FILE"))
            whole.replace(at, 4, path_);
        const ParseResult result = parsedText(whole);
        EXPECT_EQ(result.document.serialise(Form::plain).find("secret"), std::string::npos) << text;
        EXPECT_EQ(result.error.find("secret"), std::string::npos) << text;

        // The same as a file beside the one that is named.
        files::put(folder_ / "document.xml", whole);
        EXPECT_EQ(static_cast<bool>(Document::parseFile(folder_ / "document.xml")),
                  static_cast<bool>(result))
            << text;
        return result;
    }

    files::TemporaryFolder folder_;
    std::string path_ = folder_ / "named.txt";
};

TEST_F(ExternalEntity, AReferenceToAGeneralOneIsAnError) {
    for (const std::string_view text : {
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'FILE'>]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'file://FILE'>]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'named.txt'>]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY e PUBLIC '-//x' 'FILE'>]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/hostname'>]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'http://127.0.0.1:9/x'>]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'FILE'>]><a b='&e;'/>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'FILE'><!ENTITY f '&e;'>]><a>&f;</a>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'FILE'><!ENTITY f '&e;'>]><a b='&f;'/>"sv,
             "<!DOCTYPE a [<!ENTITY e SYSTEM 'FILE' NDATA n>]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!NOTATION n SYSTEM 'x'><!ENTITY e SYSTEM 'FILE' NDATA n>]><a>&e;</a>"sv,
             "<!DOCTYPE a SYSTEM 'x.dtd' [<!ENTITY e SYSTEM 'FILE'>]><a>&e;</a>"sv,
             "<?xml version='1.0' standalone='no'?><!DOCTYPE a [<!ENTITY e SYSTEM 'FILE'>]>"
             "<a>&e;</a>"sv,
         }) {
        const ParseResult result = parsed(text);
        EXPECT_FALSE(result) << text;
        EXPECT_FALSE(result.document.root()) << text;
    }
}

TEST_F(ExternalEntity, AReferenceToAParameterOneIsAnError) {
    files::put(path_, "<!ENTITY e 'secret'>");
    for (const std::string_view text : {
             "<!DOCTYPE a [<!ENTITY % p SYSTEM 'FILE'>%p;]><a/>"sv,
             "<!DOCTYPE a [<!ENTITY % p SYSTEM 'FILE'>%p;]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY % p SYSTEM 'file:///etc/hostname'>%p;]><a/>"sv,
             "<!DOCTYPE a [<!ENTITY % p PUBLIC '-//x' 'FILE'>%p;]><a/>"sv,
             "<!DOCTYPE a [<!ENTITY % i ''>%i;<!ENTITY % p SYSTEM 'FILE'>%p;]><a/>"sv,
             "<!DOCTYPE a SYSTEM 'x.dtd' [<!ENTITY % p SYSTEM 'FILE'>%p;]><a/>"sv,
             "<!DOCTYPE a SYSTEM 'x.dtd' [<!ENTITY % p SYSTEM 'FILE'>%p;]><a>&e;</a>"sv,
             "<!DOCTYPE a [<!ENTITY % p SYSTEM 'FILE'><!ENTITY % q '&#37;p;'>%q;]><a/>"sv,
         })
        EXPECT_FALSE(parsed(text)) << text;
}

TEST_F(ExternalEntity, AnExternalDocumentTypeIsNotRead) {
    files::put(path_, "<!ENTITY e 'secret'><!ATTLIST a b CDATA 'secret'>");
    EXPECT_TRUE(parsed("<!DOCTYPE a SYSTEM 'FILE'><a/>"));
    EXPECT_TRUE(parsed("<!DOCTYPE a SYSTEM 'http://127.0.0.1:9/x.dtd'><a/>"));
    EXPECT_FALSE(parsed("<!DOCTYPE a SYSTEM 'FILE'><a>&e;</a>"));
    files::put(path_, "this is not a document type <");
    EXPECT_TRUE(parsed("<!DOCTYPE a SYSTEM 'FILE'><a/>"));
}

TEST_F(ExternalEntity, InclusionsAndStyleSheetsAreNotFollowed) {
    EXPECT_EQ(plain(rootOf("<a xmlns:x='http://www.w3.org/2001/XInclude'>"
                           "<x:include href='file:///etc/hostname' parse='text'/></a>")),
              R"(<a xmlns:x="http://www.w3.org/2001/XInclude">)"
              R"(<x:include href="file:///etc/hostname" parse="text"></x:include></a>)");
    EXPECT_TRUE(parsed("<?xml-stylesheet href='FILE'?><a/>"));
}

}  // namespace
}  // namespace yg::xml
