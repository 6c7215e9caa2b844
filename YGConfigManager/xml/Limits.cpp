// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Limits.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

namespace yg::xml {

namespace {

/// A text between two tags, as it is written; libxml2 has the same limit for what it reads in one
/// piece.
constexpr std::size_t textLimit = 10'000'000;

/// Attributes of one element. libxml2 compares each with all others.
constexpr std::size_t attributeLimit = 256;

/// The length of the start tag that a piece begins with, up to its ">", if it has that many
/// attributes at the most. The piece ends before the next "<", which no tag can hold.
std::optional<std::size_t> lengthOfTag(std::string_view piece) {
    std::size_t attributes = 0;
    std::size_t at = 0;
    while ((at = piece.find_first_of("\"'>", at)) != std::string_view::npos) {
        if (piece[at] == '>')
            return at + 1;
        if (++attributes > attributeLimit)
            return std::nullopt;
        at = piece.find(piece[at], at + 1);
        if (at == std::string_view::npos)
            break;
        ++at;
    }
    return piece.size();
}

std::optional<Fault> excess(std::string_view text) {
    constexpr std::size_t shortest = 5;  // of an attribute, with the blank before it
    constexpr std::pair<std::string_view, std::string_view> constructs[] = {
        {"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
    for (std::size_t at = text.find('<'); at < text.size();) {
        std::size_t end = at + 1;
        bool isTag = true;
        for (const auto& [opening, closing] : constructs) {
            if (text.substr(at, opening.size()) != opening)
                continue;
            const std::size_t found = text.find(closing, at + opening.size());
            end = found == std::string_view::npos ? text.size() : found + closing.size();
            isTag = false;
        }
        const std::size_t next = std::min(text.find('<', end), text.size());
        if (isTag && next - at > attributeLimit * shortest) {
            const auto length = lengthOfTag(text.substr(at, next - at));
            if (!length)
                return Fault{at, "More than 256 attributes"};
            end = at + *length;
        }
        if (next > end && next - end > textLimit)
            return Fault{at, "Text is longer than 10 MB"};
        at = next;
    }
    return std::nullopt;
}

}  // namespace

std::optional<Fault> faultOf(const std::string& text) {
    if (text.empty())
        return Fault{0, "Document is empty"};
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return Fault{0, "Input is larger than 2 GiB"};
    // libxml2 would end the text at such a byte, or take it for another encoding.
    if (const std::size_t at = text.find('\0'); at != std::string::npos)
        return Fault{at, "Input holds a NUL character"};
    if (text.compare(0, 3, "\xEF\xBB\xBF") == 0)
        return Fault{0, "Start tag expected, '<' not found"};
    return excess(text);
}

}  // namespace yg::xml
