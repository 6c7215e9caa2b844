// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Decoding.h"

#include <algorithm>
#include <cerrno>
#include <iconv.h>
#include <optional>

#include "YGConfigManager/text/Utf8.h"

namespace yg::xml {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF"sv;

std::string lineOf(std::string_view textBefore) {
    return std::to_string(1 + std::count(textBefore.begin(), textBefore.end(), '\n'));
}

std::string lowered(std::string_view name) {
    std::string lower(name);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// The encoding that an XML declaration in an ASCII-compatible text names.
std::optional<std::string> declaredEncoding(std::string_view text) {
    if (text.substr(0, 5) != "<?xml" || text.size() < 6 || !isSpace(text[5]))
        return std::nullopt;
    const std::string_view declaration = text.substr(0, text.find("?>"));
    constexpr std::string_view label = "encoding";
    std::size_t at = declaration.find(label);
    if (at == std::string_view::npos)
        return std::nullopt;
    at += label.size();
    const auto skipSpace = [&] {
        while (at < declaration.size() && isSpace(declaration[at]))
            ++at;
    };
    skipSpace();
    if (at >= declaration.size() || declaration[at] != '=')
        return std::nullopt;
    ++at;
    skipSpace();
    if (at >= declaration.size() || (declaration[at] != '"' && declaration[at] != '\''))
        return std::nullopt;
    const std::size_t end = declaration.find(declaration[at], at + 1);
    if (end == std::string_view::npos)
        return std::nullopt;
    return std::string(declaration.substr(at + 1, end - at - 1));
}

/// Letters, digits and "._-" only: iconv gives a meaning to other characters in a name.
bool isEncodingName(std::string_view name) {
    constexpr std::size_t longest = 40;
    return !name.empty() && name.size() <= longest &&
           std::all_of(name.begin(), name.end(), [](char c) {
               return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.' || c == '_' ||
                      c == '-';
           });
}

Decoded convert(std::string_view bytes, const std::string& encoding) {
    const iconv_t converter = iconv_open("UTF-8", encoding.c_str());
    if (converter == reinterpret_cast<iconv_t>(-1))
        return {{}, "Line 1: Unsupported encoding " + encoding};

    Decoded decoded;
    std::string& text = decoded.text;
    text.resize(bytes.size() + bytes.size() / 2 + 16);
    std::size_t written = 0;
    char* in = const_cast<char*>(bytes.data());
    std::size_t inLeft = bytes.size();
    while (true) {
        char* out = text.data() + written;
        std::size_t outLeft = text.size() - written;
        const std::size_t result = iconv(converter, &in, &inLeft, &out, &outLeft);
        written = text.size() - outLeft;
        if (result != static_cast<std::size_t>(-1))
            break;
        if (errno != E2BIG) {
            text.resize(written);
            decoded.error = "Line " + lineOf(text) + ": Input is not proper " + encoding;
            text.clear();
            break;
        }
        text.resize(text.size() * 2);
    }
    iconv_close(converter);
    if (decoded.error.empty())
        text.resize(written);
    return decoded;
}

}  // namespace

Decoded decodeUtf8(std::string_view text) {
    if (text.substr(0, utf8Mark.size()) == utf8Mark)
        text.remove_prefix(utf8Mark.size());
    const std::size_t valid = text::validUtf8Prefix(text);
    if (valid != text.size())
        return {{}, "Line " + lineOf(text.substr(0, valid)) + ": Input is not proper UTF-8"};
    return {std::string(text), {}};
}

Decoded decodeXml(std::string_view bytes) {
    if (bytes.substr(0, utf8Mark.size()) == utf8Mark)
        return decodeUtf8(bytes);
    if (bytes.substr(0, 2) == "\xFF\xFE"sv)
        return convert(bytes.substr(2), "UTF-16LE");
    if (bytes.substr(0, 2) == "\xFE\xFF"sv)
        return convert(bytes.substr(2), "UTF-16BE");

    const std::optional<std::string> declared = declaredEncoding(bytes);
    if (!declared)
        return decodeUtf8(bytes);
    const std::string name = lowered(*declared);
    if (!isEncodingName(name))
        return {{}, "Line 1: Unsupported encoding"};
    if (name == "utf-8" || name == "utf8")
        return decodeUtf8(bytes);
    if (name.substr(0, 6) == "utf-16" || name.substr(0, 6) == "utf-32" ||
        name.substr(0, 3) == "ucs")
        return {{}, "Line 1: Input is labelled " + *declared + " but has no byte-order mark"};
    if (name == "gb2312" || name == "gbk" || name == "gb18030")
        return convert(bytes, "GB18030");
    return convert(bytes, *declared);
}

}  // namespace yg::xml
