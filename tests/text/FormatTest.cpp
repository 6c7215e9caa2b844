// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include "YGConfigManager/text/Format.h"

namespace yg::text {
namespace {

struct Panel {
    std::string name;
    std::string description() const { return "<panel " + name + ">"; }
};

enum class Colour { red };

// A function of another header that formats, as the logging functions do.
template <class... Args>
std::string logged(FormatString<std::type_identity_t<Args>...> format, const Args&... args) {
    return "log: " + text::format(format, args...);
}

// A literal as template argument, to ask whether a format made from it compiles.
template <std::size_t size>
struct Literal {
    char characters[size];
    consteval Literal(const char (&literal)[size]) : characters() {
        std::copy_n(literal, size, characters);
    }
};

template <Literal literal, class... Args>
concept Compiles = requires {
    typename std::bool_constant<(FormatString<Args...>(literal.characters), true)>;
};

TEST(Format, AFormatThatFitsItsArgumentsCompiles) {
    static_assert(Compiles<"">);
    static_assert(Compiles<"100%%">);
    static_assert(Compiles<"%@ %s %d %ld %p", std::string, const char*, int, long, void*>);
    static_assert(Compiles<"%@%@", std::optional<std::string>, std::optional<std::string_view>>);
    static_assert(Compiles<"%@%@%@", Panel, const Panel*, std::shared_ptr<const Panel>>);
    static_assert(Compiles<"%p%p", Panel*, std::shared_ptr<Panel>>);
    static_assert(Compiles<"%@%s%p", char*, char[4], std::shared_ptr<int>>);
    static_assert(Compiles<"%d%d%d%d", bool, char, std::size_t, std::int8_t>);
}

TEST(Format, AnUnknownPlaceholderDoesNotCompile) {
    static_assert(!Compiles<"%x", int>);
    static_assert(!Compiles<"%i", int>);
    static_assert(!Compiles<"%lu", unsigned long>);
    static_assert(!Compiles<"%5d", int>);
    static_assert(!Compiles<"%f", double>);
    static_assert(!Compiles<"%D", int>);
    static_assert(!Compiles<"100%">);
    static_assert(!Compiles<"%l", long>);
    static_assert(!Compiles<"% d", int>);
    static_assert(formatFault<int>("%x") == FormatFault::unknownPlaceholder);
    static_assert(formatFault<>("100%") == FormatFault::unknownPlaceholder);
}

TEST(Format, TooFewArgumentsDoNotCompile) {
    static_assert(!Compiles<"%d">);
    static_assert(!Compiles<"%d and %d", int>);
    static_assert(formatFault<int>("%d and %d") == FormatFault::argumentMissing);
}

TEST(Format, TooManyArgumentsDoNotCompile) {
    static_assert(!Compiles<"", int>);
    static_assert(!Compiles<"%%", int>);
    static_assert(!Compiles<"%d", int, int>);
    static_assert(formatFault<int, int>("%d") == FormatFault::argumentSurplus);
}

TEST(Format, AnArgumentOfTheWrongKindDoesNotCompile) {
    static_assert(!Compiles<"%d", std::string>);
    static_assert(!Compiles<"%d", double>);
    static_assert(!Compiles<"%d", Colour>);
    static_assert(!Compiles<"%d", std::optional<int>>);
    static_assert(!Compiles<"%@", int>);
    static_assert(!Compiles<"%@", std::optional<int>>);
    static_assert(!Compiles<"%@", void*>);
    static_assert(!Compiles<"%@", int*>);
    static_assert(!Compiles<"%s", int>);
    static_assert(!Compiles<"%s", std::optional<std::string>>);
    static_assert(!Compiles<"%s", Panel>);
    static_assert(!Compiles<"%p", int>);
    static_assert(!Compiles<"%p", std::string>);
    static_assert(!Compiles<"%d %@", std::string, int>);
    static_assert(formatFault<double>("%d") == FormatFault::argumentOfWrongKind);
}

TEST(Format, TextStandsInItsPlace) {
    EXPECT_EQ(format("[%@|%@|%@|%@]", std::string("a"), std::string_view("b"), "c", "d"),
              "[a|b|c|d]");
    EXPECT_EQ(format("%s-%s-%s", std::string("a"), std::string_view("b"), "c"), "a-b-c");
    EXPECT_EQ(format("plain"), "plain");
    EXPECT_EQ(format(""), "");
    EXPECT_EQ(format("\xE4\xBD\xA0 %@", "\xE5\xA5\xBD"), "\xE4\xBD\xA0 \xE5\xA5\xBD");
}

TEST(Format, AbsentTextPrintsNull) {
    const char* const nothing = nullptr;
    EXPECT_EQ(format("<%@>", std::optional<std::string>()), "<(null)>");
    EXPECT_EQ(format("<%@>", std::optional<std::string_view>()), "<(null)>");
    EXPECT_EQ(format("<%@>", nothing), "<(null)>");
    EXPECT_EQ(format("<%s>", nothing), "<(null)>");
    EXPECT_EQ(format("<%@>", nullptr), "<(null)>");
    EXPECT_EQ(format("<%@>", std::shared_ptr<Panel>()), "<(null)>");
}

TEST(Format, EmptyTextPrintsNothing) {
    EXPECT_EQ(format("<%@>", std::optional<std::string>("")), "<>");
    EXPECT_EQ(format("<%@>", std::string_view()), "<>");
    EXPECT_EQ(format("<%s>", ""), "<>");
}

TEST(Format, PresentTextOfAnOptionalIsPrinted) {
    EXPECT_EQ(format("%@%@", std::optional<std::string>("a"), std::optional<std::string_view>("b")),
              "ab");
}

TEST(Format, AnObjectPrintsItsDescription) {
    const Panel panel{"main"};
    const auto shared = std::make_shared<const Panel>(Panel{"side"});
    EXPECT_EQ(format("%@", panel), "<panel main>");
    EXPECT_EQ(format("%@", &panel), "<panel main>");
    EXPECT_EQ(format("%@", shared), "<panel side>");
}

TEST(Format, IntegersOfEveryWidthPrintInFull) {
    EXPECT_EQ(format("%d %d", 0, -1), "0 -1");
    EXPECT_EQ(format("%d", std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(format("%ld", std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
    EXPECT_EQ(format("%d", std::numeric_limits<std::uint32_t>::max()), "4294967295");
    EXPECT_EQ(format("%ld", std::numeric_limits<std::int8_t>::min()), "-128");
    EXPECT_EQ(format("%d%d", true, false), "10");
}

TEST(Format, PointersPrintInHexadecimal) {
    const auto* const pointer = reinterpret_cast<const int*>(std::uintptr_t{0x1F2E});
    const char* const text = reinterpret_cast<const char*>(std::uintptr_t{0xAB});
    EXPECT_EQ(format("%p", pointer), "0x1f2e");
    EXPECT_EQ(format("%p", text), "0xab");
    EXPECT_EQ(format("%p %p", nullptr, std::shared_ptr<int>()), "0x0 0x0");
    const Panel panel{"main"};
    EXPECT_EQ(format("%p", &panel), format("%p", static_cast<const void*>(&panel)));
}

TEST(Format, TwoPercentSignsPrintOne) {
    EXPECT_EQ(format("100%%"), "100%");
    EXPECT_EQ(format("%%d %d%%%%", 5), "%d 5%%");
}

TEST(Format, PlaceholdersInArgumentsStayAsTheyAre) {
    EXPECT_EQ(format("%@ %@", "%d%%", "%@"), "%d%% %@");
}

TEST(Format, LAndDMayFollowAPlaceholder) {
    EXPECT_EQ(format("%dd%ldd%sd", 1, 2, "x"), "1d2dxd");
}

TEST(Format, ACharacterArrayEndsAtItsNulOrItsSize) {
    const char ended[8] = "ab";
    const char full[2] = {'c', 'd'};
    EXPECT_EQ(format("%s%@", ended, full), "abcd");
}

TEST(Format, BytesOfATextAreKept) {
    EXPECT_EQ(format("%@", std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(Format, AnotherFunctionCanTakeTheFormat) {
    EXPECT_EQ(logged("%@ has %d", "it", 3), "log: it has 3");
    EXPECT_EQ(logged("nothing"), "log: nothing");
}

}  // namespace
}  // namespace yg::text
