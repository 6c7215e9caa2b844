// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Places.h"

#include <algorithm>
#include <charconv>

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

/// Goes through a well-formed text without an internal subset, and in step through its tree.
class Scan {
public:
    Scan(Tree& tree, Source& source)
        : tree_(tree), source_(source), text_(source.text()), next_(tree.memory.first_child()) {}

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

    /// Behind the first ">" that is not between quotes.
    std::size_t endOfTag(std::size_t at) const {
        while (text_[at = text_.find_first_of("\"'>", at)] != '>')
            at = text_.find(text_[at], at + 1) + 1;
        return at + 1;
    }

    void note(const void* of, std::size_t begin, std::size_t inner, std::size_t end) {
        tree_.ranges[of] = {&source_, static_cast<std::uint32_t>(begin),
                            static_cast<std::uint32_t>(inner), static_cast<std::uint32_t>(end)};
    }

    /// A node without children, or text that the tree does not hold as it is white space alone.
    void take(pugi::xml_node_type type, std::size_t end) {
        if (next_.type() == type) {
            // No handle can stand for hidden white space, which is freed at once when it goes.
            if (!isBlankText(next_))
                note(next_.internal_object(), at_, end, end);
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
        const std::size_t begin = at_;
        at_ = text_.find_first_of(" \t\r\n/>", at_);
        takeAttributes();
        const bool isEmpty = text_[at_] == '/';
        at_ += isEmpty ? 2 : 1;
        note(element_.internal_object(), begin, at_, at_);
        if (isEmpty)
            takeEnd(at_);
    }

    /// Up to the "/" or ">" that ends the tag.
    void takeAttributes() {
        for (const pugi::xml_attribute attribute : element_.attributes()) {
            const std::size_t name = text_.find_first_not_of(text::whiteSpace, at_);
            const std::size_t quote = text_.find_first_of("\"'", name);
            const std::size_t end = text_.find(text_[quote], quote + 1);
            takeValue(quote + 1, end);
            at_ = end + 1;
            note(attribute.internal_object(), name, quote + 1, at_);
        }
        at_ = text_.find_first_not_of(text::whiteSpace, at_);
    }

    void takeValue(std::size_t at, std::size_t end) {
        const std::string_view upToEnd = text_.substr(0, end);
        while ((at = upToEnd.find_first_of("&\r", at)) != std::string_view::npos) {
            const std::size_t mark = at;
            const bool isReference = upToEnd[mark] == '&';
            at = isReference ? behind(";", mark)
                             : mark + (upToEnd.substr(mark, 2) == "\r\n" ? 2 : 1);
            if (const std::size_t size =
                    isReference ? sizeOfReference(upToEnd.substr(mark, at - mark)) : 1;
                size < at - mark)
                source_.addShortened(mark, at, size);
        }
    }

    void takeEnd(std::size_t end) {
        tree_.ranges[element_.internal_object()].end = static_cast<std::uint32_t>(end);
        at_ = end;
        next_ = element_.next_sibling();
        element_ = element_.parent();
    }

    Tree& tree_;
    Source& source_;
    std::string_view text_;
    std::size_t at_ = 0;
    pugi::xml_node element_;  ///< that is open
    pugi::xml_node next_;     ///< the first of its children that the scan has not come to
};

}  // namespace

Place Source::place(std::size_t begin, std::size_t end) const {
    return {file_, lines_.pointAt(text_, begin), lines_.pointAt(text_, end)};
}

Place Source::placeInValue(std::size_t valueBegin, std::size_t valueEnd, std::size_t offset,
                           std::size_t length) const {
    const std::size_t end = asRead(valueEnd);
    const std::size_t from = std::min(asRead(valueBegin) + std::min(offset, text_.size()), end);
    length = std::min(length, end - from);
    const std::size_t begin = beginOf(from);
    return place(begin, length == 0 ? begin : endOf(from + length));
}

void Source::addShortened(std::size_t begin, std::size_t end, std::size_t size) {
    const std::size_t readBegin = asRead(begin);
    shortened_.push_back({static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(readBegin),
                          static_cast<std::uint32_t>(end),
                          static_cast<std::uint32_t>(readBegin + size)});
}

std::size_t Source::asRead(std::size_t offset) const {
    const auto next =
        std::upper_bound(shortened_.begin(), shortened_.end(), offset,
                         [](std::size_t wanted, const Shortened& one) { return wanted < one.end; });
    return next == shortened_.begin() ? offset : offset - (next[-1].end - next[-1].readEnd);
}

/// Where the byte at an offset as read begins.
std::size_t Source::beginOf(std::size_t offsetAsRead) const {
    const auto next = std::upper_bound(
        shortened_.begin(), shortened_.end(), offsetAsRead,
        [](std::size_t wanted, const Shortened& one) { return wanted < one.readEnd; });
    if (next != shortened_.end() && offsetAsRead >= next->readBegin)
        return next->begin;
    return next == shortened_.begin() ? offsetAsRead
                                      : offsetAsRead + (next[-1].end - next[-1].readEnd);
}

/// Where the byte before an offset as read ends.
std::size_t Source::endOf(std::size_t offsetAsRead) const {
    const auto next = std::lower_bound(
        shortened_.begin(), shortened_.end(), offsetAsRead,
        [](const Shortened& one, std::size_t wanted) { return one.readEnd < wanted; });
    if (next != shortened_.end() && offsetAsRead > next->readBegin)
        return next->end;
    return next == shortened_.begin() ? offsetAsRead
                                      : offsetAsRead + (next[-1].end - next[-1].readEnd);
}

void notePlaces(Tree& tree, const std::shared_ptr<Source>& source) {
    tree.sources.push_back(source);
    Scan(tree, *source).run();
}

}  // namespace yg::xml
