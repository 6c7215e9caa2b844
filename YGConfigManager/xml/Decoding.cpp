// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Decoding.h"

#include <algorithm>
#include <cerrno>
#include <iconv.h>
#include <mutex>
#include <new>
#include <optional>
#include <utility>

#include "YGConfigManager/process/ForkMutex.h"
#include "YGConfigManager/text/Characters.h"
#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/text/Utf8.h"
#include "YGConfigManager/xml/Names.h"

namespace yg::xml {

namespace {

using namespace std::string_view_literals;

std::string lowered(std::string_view name) {
    std::string lower(name);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return lower;
}

std::string_view declarationOf(std::string_view text) {
    return text.substr(0, text.find("?>"));
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

Decoded notProper(std::string_view textBefore, const std::string& encoding) {
    const TextPoint point = text::LineIndex(textBefore).pointAt(textBefore, textBefore.size());
    return {{}, {{point.line, point.column, "Input is not proper " + encoding}}};
}

/// An error of the declaration.
Decoded wrongLabel(std::string message) {
    return {{}, {{1, 0, std::move(message)}}};
}

/// For what takes locks of the C library that the child of a fork could find taken.
constinit ForkMutex converters;

/// An iconv converter to UTF-8; false where the encoding is not known.
class Converter {
public:
    explicit Converter(const std::string& encoding) {
        const std::lock_guard lock(converters);
        converter_ = iconv_open("UTF-8", encoding.c_str());
        if (!*this && errno == ENOMEM)
            throw std::bad_alloc();
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() {
        const std::lock_guard lock(converters);
        if (*this)
            iconv_close(converter_);
    }

    explicit operator bool() const { return converter_ != reinterpret_cast<iconv_t>(-1); }

    /// Appends the bytes' text; false if they are wrong or end within a character.
    bool convert(std::string_view bytes, std::string& text) {
        // Room for whatever becomes of one piece, 12 bytes for each byte at most: when their output
        // runs full, some of glibc's converters repeat a character without end or lose one.
        constexpr std::size_t piece = 1024;
        char out[16 * piece];
        while (!bytes.empty()) {
            char* in = const_cast<char*>(bytes.data());
            const std::size_t size = std::min(piece, bytes.size());
            std::size_t inLeft = size;
            char* outEnd = out;
            std::size_t outLeft = sizeof out;
            const std::size_t result = iconv(converter_, &in, &inLeft, &outEnd, &outLeft);
            const bool isWrong = result == static_cast<std::size_t>(-1) &&
                                 (errno != EINVAL || size == bytes.size() || inLeft == size);
            text.append(out, outEnd);
            if (isWrong)
                return false;
            bytes.remove_prefix(size - inLeft);
        }
        return true;
    }

private:
    iconv_t converter_ = reinterpret_cast<iconv_t>(-1);
};

std::size_t asciiPrefix(std::string_view text) {
    const auto* const end = std::find_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
    return static_cast<std::size_t>(end - text.begin());
}

/// `lineFeed` is how the encoding writes one; `beginning` is how the text must begin.
Decoded convert(std::string_view bytes, const std::string& encoding, std::string_view lineFeed,
                std::string_view beginning = {}) {
    Converter converter(encoding);
    if (!converter)
        return wrongLabel("Unsupported encoding " + encoding);
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 2);
    const bool isRight = converter.convert(bytes, text);
    // A declaration that is not ASCII is wrong in any encoding, as the parser will say.
    beginning = beginning.substr(0, asciiPrefix(beginning));
    if (text.compare(0, beginning.size(), beginning) != 0)
        return wrongLabel("Input is labelled " + encoding + " but is not encoded so");
    // A converter may hold back a character for an accent that follows, and takes a text that stops
    // within a shift sequence. A line feed brings out the one and is wrong in the other.
    if (!isRight || !converter.convert(lineFeed, text) || !text.ends_with('\n'))
        return notProper(text, encoding);
    text.pop_back();
    text.shrink_to_fit();
    // Some converters answer more than Unicode has.
    const std::size_t valid = text::validUtf8Prefix(text);
    if (valid != text.size())
        return notProper(std::string_view(text).substr(0, valid), encoding);
    return {std::move(text), {}};
}

}  // namespace

std::optional<std::string_view> declaredEncoding(std::string_view text) {
    if (text.substr(0, 5) != "<?xml" || text.size() < 6 || !text::isWhiteSpace(text[5]))
        return std::nullopt;
    const std::string_view declaration = declarationOf(text);
    constexpr std::string_view label = "encoding";
    std::size_t at = declaration.find(label);
    if (at == std::string_view::npos)
        return std::nullopt;
    at += label.size();
    const auto skipSpace = [&] {
        while (at < declaration.size() && text::isWhiteSpace(declaration[at]))
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
    return declaration.substr(at + 1, end - at - 1);
}

Decoded decodeUtf8(std::string text) {
    if (text.starts_with(text::byteOrderMark))
        text.erase(0, text::byteOrderMark.size());
    const std::size_t valid = text::validUtf8Prefix(text);
    if (valid != text.size())
        return notProper(std::string_view(text).substr(0, valid), "UTF-8");
    return {std::move(text), {}};
}

Decoded decodeXml(std::string bytes) {
    const std::string_view all = bytes;
    if (bytes.starts_with(text::byteOrderMark))
        return decodeUtf8(std::move(bytes));
    if (all.substr(0, 2) == "\xFF\xFE"sv)
        return convert(all.substr(2), "UTF-16LE", "\n\0"sv);
    if (all.substr(0, 2) == "\xFE\xFF"sv)
        return convert(all.substr(2), "UTF-16BE", "\0\n"sv);

    const std::optional<std::string_view> declared = declaredEncoding(all);
    if (!declared)
        return decodeUtf8(std::move(bytes));
    const std::string name = lowered(*declared);
    if (!isEncodingName(name))
        return wrongLabel("Unsupported encoding");
    if (name == "utf-8" || name == "utf8")
        return decodeUtf8(std::move(bytes));
    if (name.substr(0, 6) == "utf-16" || name.substr(0, 6) == "utf-32" ||
        name.substr(0, 3) == "ucs")
        return wrongLabel("Input is labelled " + std::string(*declared) +
                          " but has no byte-order mark");
    const bool isGbk = name == "gb2312" || name == "gbk" || name == "gb18030";
    // The declaration was read as ASCII, and must read the same in the encoding that it names.
    return convert(all, isGbk ? "GB18030" : std::string(*declared), "\n", declarationOf(all));
}

}  // namespace yg::xml
