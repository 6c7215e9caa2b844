// SPDX-License-Identifier: MIT
#include "YGConfigManager/diagnostics/Reporter.h"

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/host/Guarded.h"

namespace yg {

xml::ParseResult Reporter::parseFile(std::string_view path) const {
    reading(path);
    xml::ParseResult parsed =
        orOutOfMemory(xml::Document::parseFile(path, {.positions = sink_ != nullptr}));
    if (sink_)
        sink_->parsedFile(path, parsed);
    return parsed;
}

xml::ParseResult Reporter::parseBytes(std::string_view bytes) const {
    return orOutOfMemory(xml::Document::parseBytes(bytes, {.positions = sink_ != nullptr}));
}

void Reporter::unreadable(const Rule& rule, std::string_view path,
                          const xml::ParseResult& parsed) const {
    if (parsed.errors.empty())
        return unreadable(rule, path, parsed.error);
    for (const xml::ParseError& error : parsed.errors) {
        const Place place{
            std::string(path), {error.line, error.column}, {error.line, error.column}};
        report({rule, place, place, {}, {}, error.message, {}});
    }
}

void Reporter::unreadable(const Rule& rule, std::string_view path, std::string_view error) const {
    const std::string named = files::describeFailure(path, "");
    report(rule, path, error.starts_with(named) ? error.substr(named.size()) : error);
}

void Reporter::report(const Rule& rule, std::string_view path, std::string_view value) const {
    if (!sink_)
        return;
    const Place file{std::string(path), {}, {}};
    sink_->report({rule, file, file, {}, {}, std::string(value), {}});
}

void Reporter::unsaved(std::string_view fileName, std::string_view error) const {
    if (!sink_)
        return;
    const bool isNamed = !error.empty() && error != outOfMemory;
    report("unsaved-file"_rule, fileName,
           isNamed ? std::string(error) : files::describeFailure(fileName, outOfMemory));
}

}  // namespace yg
