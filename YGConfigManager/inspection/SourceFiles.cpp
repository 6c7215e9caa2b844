// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/SourceFiles.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/files/UnsavedTexts.h"
#include "YGConfigManager/inspection/FileFaults.h"
#include "YGConfigManager/text/Characters.h"
#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/text/Paths.h"
#include "YGConfigManager/text/Utf8.h"
#include "YGConfigManager/xml/Decoding.h"

namespace yg {

SourceFile::SourceFile(std::string_view path) : path_(path) {
    files::FileReading reading = files::readWholeFile(path);
    isRead_ = reading.ok;
    bytes_ = std::move(reading.bytes);
    xml::Decoded decoded = xml::decodeXml(bytes_);
    isDecoded_ = decoded.errors.empty();
    text_ = isDecoded_ ? std::move(decoded.text) : readAsGbk(bytes_).value_or(bytes_);
}

bool SourceFile::isText() const {
    return isRead_ && (isDecoded_ || text_.find('\0') == std::string::npos);
}

std::optional<std::string_view> SourceFile::line(std::uint32_t number) const {
    if (lineBegins_.empty() && isText()) {
        lineBegins_.push_back(0);
        for (std::size_t at = text_.find('\n'); at != std::string::npos; at = text_.find('\n', at))
            lineBegins_.push_back(++at);
    }
    if (number == 0 || number > lineBegins_.size())
        return std::nullopt;
    const std::size_t begin = lineBegins_[number - 1];
    const std::size_t end = number < lineBegins_.size() ? lineBegins_[number] - 1 : text_.size();
    std::string_view line = std::string_view(text_).substr(begin, end - begin);
    if (number == 1 && line.starts_with(text::byteOrderMark))
        line.remove_prefix(text::byteOrderMark.size());
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

std::optional<std::size_t> SourceFile::offsetOf(const TextPoint& point) const {
    const auto inLine = line(point.line);
    if (!inLine)
        return std::nullopt;
    std::string_view rest = *inLine;
    for (std::uint32_t column = 1; column < point.column && !rest.empty(); ++column)
        rest.remove_prefix(text::firstCharacter(rest).size);
    return static_cast<std::size_t>(rest.data() - text_.data());
}

Place SourceFile::trimmed(Place place) const {
    const auto first = offsetOf(place.begin);
    const auto behind = offsetOf(place.end);
    if (!first || !behind || *first >= *behind)
        return place;
    std::size_t begin = *first;
    std::size_t end = *behind;
    while (begin < end && text::isWhiteSpace(text_[begin]))
        ++begin;
    if (begin == end)
        return place;
    while (text::isWhiteSpace(text_[end - 1]))
        --end;
    const text::LineIndex lines(text_);
    place.begin = lines.pointAt(text_, begin);
    place.end = lines.pointAt(text_, end);
    return place;
}

const xml::ParseResult& SourceFile::document() const {
    if (!document_)
        document_ = xml::Document::parseFile(path_, {.positions = true});
    return *document_;
}

TextPoint SourceFile::Spot::beginning() {
    if (begin.line == 0)
        begin = element.place()->begin;
    return begin;
}

SourceFile::Spot* SourceFile::Spot::lastBefore(const TextPoint& point) {
    if (!content) {
        content.emplace();
        for (const xml::Element& child : element.elements())
            content->push_back({child});
    }
    const auto behind = std::ranges::upper_bound(*content, point, {}, &Spot::beginning);
    return behind == content->begin() ? nullptr : &behind[-1];
}

std::vector<xml::Element> SourceFile::elementsAt(const TextPoint& point) const {
    if (!root_.element)
        root_.element = document().document.root();
    std::vector<xml::Element> around;
    for (Spot* spot = &root_; spot && spot->element; spot = spot->lastBefore(point)) {
        if (spot->beginning() > point || spot->element.place()->end <= point)
            break;
        around.push_back(spot->element);
    }
    return around;
}

SourceFile& SourceFiles::fileNamed(std::string_view name) const {
    auto found = files_.find(name);
    if (found == files_.end())
        found = files_.emplace(name, std::make_unique<SourceFile>(pathOf(name))).first;
    return *found->second;
}

std::string SourceFiles::nameOf(std::string_view path) const {
    const std::string above = text::joinPath(root_, "/");
    return std::string(path.starts_with(above) ? path.substr(above.size()) : path);
}

std::string SourceFiles::pathOf(std::string_view name) const {
    return text::joinPath(root_, name);
}

std::vector<std::string> SourceFiles::namesIn(std::string_view folder) const {
    std::set<std::string> names;
    const std::string path = pathOf(folder);
    std::error_code error;
    for (std::filesystem::directory_iterator entry(path, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code ignored;
        if (entry->is_regular_file(ignored))
            names.insert(text::joinPath(folder, entry->path().filename().string()));
    }
    for (const std::string& unsaved : files::unsavedNamesIn(path))
        names.insert(text::joinPath(folder, unsaved));
    return {names.begin(), names.end()};
}

}  // namespace yg
