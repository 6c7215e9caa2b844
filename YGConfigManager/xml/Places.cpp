// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Places.h"

#include <algorithm>
#include <charconv>

#include "YGConfigManager/text/Utf8.h"
#include "YGConfigManager/xml/Tree.h"

namespace yg::xml {

namespace {

/// The size in UTF-8 of what a reference, from "&" to ";", stands for.
std::size_t sizeOfReference(std::string_view reference) {
    if (reference[1] != '#')
        return 1;  // one of the five entities
    const bool isHex = reference[2] == 'x';
    std::uint32_t character = 0;
    std::from_chars(reference.data() + (isHex ? 3 : 2), reference.data() + reference.size() - 1,
                    character, isHex ? 16 : 10);
    return character < 0x80 ? 1 : character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
}

bool isQuote(char c) {
    return c == '"' || c == '\'';
}

using Origins = std::unordered_map<const void*, Origin>;

/// Goes through a well-formed text without an internal subset, and in step through its tree unless
/// that is empty.
class Scan {
public:
    Scan(std::string_view text, SourceIndex& index) : text_(text), index_(index) {}

    /// Notes where the nodes and attributes of the tree begin.
    Scan(std::string_view text, SourceIndex& index, const Source& source, Tree& tree)
        : text_(text),
          index_(index),
          source_(&source),
          origins_(&tree.origins),
          next_(tree.memory.first_child()) {}

    void run() {
        while (at_ < text_.size()) {
            const std::size_t markup = std::min(text_.find('<', at_), text_.size());
            if (markup > at_)
                take(pugi::node_pcdata, markup);
            else if (isAt("<!--"))
                take(pugi::node_comment, behind("-->", at_ + 4));
            else if (isAt("<![CDATA["))
                take(pugi::node_cdata, behind("]]>", at_ + 9));
            else if (isAt("<?"))
                takeInstruction();
            else if (isAt("<!"))
                at_ = endOfTag(at_);
            else if (isAt("</"))
                takeEnd(behind(">", at_));
            else
                takeStart();
        }
    }

private:
    bool isAt(std::string_view markup) const { return text_.substr(at_, markup.size()) == markup; }

    std::size_t behind(std::string_view delimiter, std::size_t from) const {
        return text_.find(delimiter, from) + delimiter.size();
    }

    /// The first such character from there on, of which there is one. The standard library's
    /// find_first_of() calls a function for each character.
    std::size_t next(std::size_t at, auto&& isWanted) const {
        while (!isWanted(text_[at]))
            ++at;
        return at;
    }

    /// Behind the first ">" that is not between quotes.
    std::size_t endOfTag(std::size_t at) const {
        while (text_[at = next(at, [](char c) { return isQuote(c) || c == '>'; })] != '>')
            at = text_.find(text_[at], at + 1) + 1;
        return at + 1;
    }

    void note(const void* of, std::size_t begin) {
        if (of)
            (*origins_)[of] = {source_, static_cast<std::uint32_t>(begin)};
    }

    /// A node without children, or text that the tree does not hold as it is white space alone.
    void take(pugi::xml_node_type type, std::size_t end) {
        if (next_.type() == type) {
            if (!isBlankText(next_))
                note(next_.internal_object(), at_);
            next_ = next_.next_sibling();
        }
        at_ = end;
    }

    /// Only the declaration has the target "xml".
    void takeInstruction() {
        const std::size_t end = behind("?>", at_ + 2);
        if (isAt("<?xml") && text::isWhiteSpace(text_[at_ + 5]))
            at_ = end;
        else
            take(pugi::node_pi, end);
    }

    void takeStart() {
        element_ = next_;
        next_ = element_.first_child();
        note(element_.internal_object(), at_);
        const std::size_t begin = at_;
        at_ = next(at_, [](char c) { return text::isWhiteSpace(c) || c == '/' || c == '>'; });
        takeAttributes();
        const bool isEmpty = text_[at_] == '/';
        at_ += isEmpty ? 2 : 1;
        open_.push_back(index_.elements.size());
        index_.elements.push_back(
            {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(at_), 0});
        if (isEmpty)
            takeEnd(at_);
    }

    /// Up to the "/" or ">" that ends the tag.
    void takeAttributes() {
        pugi::xml_attribute attribute = element_.first_attribute();
        while (text_[at_ = next(at_, [](char c) { return !text::isWhiteSpace(c); })] != '/' &&
               text_[at_] != '>') {
            note(attribute.internal_object(), at_);
            attribute = attribute.next_attribute();
            const std::size_t quote = next(at_, isQuote);
            at_ = text_.find(text_[quote], quote + 1);
            index_.values.push_back(
                {static_cast<std::uint32_t>(quote + 1), static_cast<std::uint32_t>(at_)});
            takeValue(quote + 1, at_++);
        }
    }

    void takeValue(std::size_t at, std::size_t end) {
        const std::string_view upToEnd = text_.substr(0, end);
        while (at < end) {
            const std::size_t mark = at++;
            if (upToEnd[mark] != '&' && upToEnd[mark] != '\r')
                continue;
            const bool isReference = upToEnd[mark] == '&';
            at = isReference ? behind(";", mark)
                             : mark + (upToEnd.substr(mark, 2) == "\r\n" ? 2 : 1);
            if (const std::size_t size =
                    isReference ? sizeOfReference(upToEnd.substr(mark, at - mark)) : 1;
                size < at - mark)
                shorten(mark, at, size);
        }
    }

    void shorten(std::size_t begin, std::size_t end, std::size_t size) {
        const std::size_t readBegin = index_.asRead(begin);
        index_.shortened.push_back(
            {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(readBegin),
             static_cast<std::uint32_t>(end), static_cast<std::uint32_t>(readBegin + size)});
    }

    void takeEnd(std::size_t end) {
        index_.elements[open_.back()].end = static_cast<std::uint32_t>(end);
        open_.pop_back();
        at_ = end;
        next_ = element_.next_sibling();
        element_ = element_.parent();
    }

    std::string_view text_;
    SourceIndex& index_;
    const Source* source_ = nullptr;
    Origins* origins_ = nullptr;
    std::size_t at_ = 0;
    std::vector<std::size_t> open_;  ///< the elements whose end tags are still to come
    pugi::xml_node element_;         ///< that is open
    pugi::xml_node next_;            ///< the first of its children that the scan has not come to
};

}  // namespace

const SourceIndex& Source::index() const {
    if (const SourceIndex* const known = index_.load())
        return *known;
    auto made = std::make_unique<SourceIndex>(text_);
    Scan(text_, *made).run();
    return keep(std::move(made));
}

/// The first that is made stays.
const SourceIndex& Source::keep(std::unique_ptr<const SourceIndex> made) const {
    const SourceIndex* known = nullptr;
    return index_.compare_exchange_strong(known, made.get()) ? *made.release() : *known;
}

Place Source::place(std::size_t begin, std::size_t end) const {
    const text::LineIndex& lines = index().lines;
    const TextPoint first = lines.pointAt(text_, begin);
    // Most places are short parts of a line.
    constexpr std::size_t usual = 200;
    const std::string_view part = std::string_view(text_).substr(begin, end - begin);
    if (part.size() > usual || part.find('\n') != std::string_view::npos)
        return {file_, first, lines.pointAt(text_, end)};
    const auto size = static_cast<std::uint32_t>(text::countCodePoints(part));
    return {file_, first, {first.line, first.column + size}};
}

Place Source::nodePlace(std::size_t begin) const {
    const std::string_view text = text_;
    const auto upTo = [&](std::string_view delimiter, std::size_t from) {
        return place(begin, text.find(delimiter, from) + delimiter.size());
    };
    if (text[begin] != '<')
        return place(begin, std::min(text.find('<', begin), text.size()));
    if (text[begin + 1] == '?')
        return upTo("?>", begin + 2);
    if (text[begin + 1] == '!')
        return text[begin + 2] == '-' ? upTo("-->", begin + 4) : upTo("]]>", begin + 9);
    return place(begin, index().element(begin).end);
}

Place Source::tagPlace(std::size_t begin) const {
    return place(begin, index().element(begin).content);
}

Place Source::attributePlace(std::size_t begin) const {
    // Most attributes are short, and then a look at the text takes less than a search.
    constexpr std::size_t usual = 200;
    const std::string_view near = std::string_view(text_).substr(begin, usual);
    const auto* const quote = std::ranges::find_if(near, isQuote);
    const std::size_t at = static_cast<std::size_t>(quote - near.begin());
    const std::size_t end = at < near.size() ? near.find(near[at], at + 1) : std::string_view::npos;
    return place(begin, end < near.size() ? begin + end + 1 : index().valueBehind(begin).end + 1);
}

Place Source::valuePlace(std::size_t begin, std::size_t offset, std::size_t length) const {
    const SourceIndex& parts = index();
    const SourceIndex::Value& value = parts.valueBehind(begin);
    const std::size_t end = parts.asRead(value.end);
    const std::size_t from =
        std::min(parts.asRead(value.begin) + std::min(offset, text_.size()), end);
    length = std::min(length, end - from);
    const std::size_t partBegin = parts.beginOf(from);
    return place(partBegin, length == 0 ? partBegin : parts.endOf(from + length));
}

const SourceIndex::Element& SourceIndex::element(std::size_t begin) const {
    return *std::ranges::lower_bound(elements, begin, {}, &Element::begin);
}

const SourceIndex::Value& SourceIndex::valueBehind(std::size_t offset) const {
    return *std::ranges::upper_bound(values, offset, {}, &Value::begin);
}

std::size_t SourceIndex::asRead(std::size_t offset) const {
    const auto next =
        std::upper_bound(shortened.begin(), shortened.end(), offset,
                         [](std::size_t wanted, const Shortened& one) { return wanted < one.end; });
    return next == shortened.begin() ? offset : offset - (next[-1].end - next[-1].readEnd);
}

/// Where the byte at an offset as read begins.
std::size_t SourceIndex::beginOf(std::size_t offsetAsRead) const {
    const auto next = std::upper_bound(
        shortened.begin(), shortened.end(), offsetAsRead,
        [](std::size_t wanted, const Shortened& one) { return wanted < one.readEnd; });
    if (next != shortened.end() && offsetAsRead >= next->readBegin)
        return next->begin;
    return next == shortened.begin() ? offsetAsRead
                                     : offsetAsRead + (next[-1].end - next[-1].readEnd);
}

/// Where the byte before an offset as read ends.
std::size_t SourceIndex::endOf(std::size_t offsetAsRead) const {
    const auto next = std::lower_bound(
        shortened.begin(), shortened.end(), offsetAsRead,
        [](const Shortened& one, std::size_t wanted) { return one.readEnd < wanted; });
    if (next != shortened.end() && offsetAsRead > next->readBegin)
        return next->end;
    return next == shortened.begin() ? offsetAsRead
                                     : offsetAsRead + (next[-1].end - next[-1].readEnd);
}

void notePlaces(Tree& tree, const std::shared_ptr<const Source>& source) {
    tree.sources.push_back(source);
    if (tree.isBuiltInPlace()) {
        tree.ownSource = source.get();
        return;
    }
    auto index = std::make_unique<SourceIndex>(source->text_);
    Scan(source->text_, *index, *source, tree).run();
    source->keep(std::move(index));
}

}  // namespace yg::xml
