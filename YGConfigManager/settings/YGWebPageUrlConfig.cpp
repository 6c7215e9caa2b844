// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

#include <exception>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/settings/SettingsRules.h"
#include "YGConfigManager/settings/Storage.h"
#include "YGConfigManager/settings/UrlReports.h"
#include "YGConfigManager/text/Replace.h"
#include "YGConfigManager/text/Utf8.h"

namespace yg {

namespace {

constexpr std::string_view rootName = "urls";
constexpr std::string_view entryName = "url";
constexpr std::string_view lookUpName = "-[YGWebPageUrlConfig getWebPageUrlByKey:]";

/// The address of each key that has one and can be asked for.
RecordMap<std::string> addressesIn(const xml::Document& document) {
    RecordMap<std::string> addresses;
    const xml::Element root = document.root();
    if (root.name() != rootName)
        return addresses;
    for (const xml::Node& child : root.children()) {
        if (!child.isElement() || child.name() != entryName)
            continue;
        const auto key = xml::Element(child).attribute("key");
        if (key && !addresses.contains(*key))
            addresses.set(*key, child.stringValue());
    }
    return addresses;
}

/// What in a table has an effect, and what has none.
void reportTable(const xml::Element& root, const Reporter& reporter) {
    if (root.name() != rootName) {
        reporter.report(rules::webPageRootName, root, {}, root.name());
        return;
    }
    RecordMap<bool> seen;
    reporter.used(root);
    reporter.attributesBut(root, {});
    for (const xml::Node& child : root.children()) {
        if (!child.isElement()) {
            reporter.stray(child);
            continue;
        }
        const xml::Element entry(child);
        if (entry.name() != entryName) {
            reporter.report(rules::unknownElement, entry, {}, entry.name());
            continue;
        }
        const auto key = entry.attribute("key");
        if (!key || key->empty()) {
            reporter.report(rules::webPageWithoutKey, entry);
            continue;
        }
        if (seen.set(*key, true)) {
            reporter.report(rules::duplicateWebPage, entry, "key", *key);
            continue;
        }
        reporter.used(entry);
        if (key->find('\'') != std::string_view::npos)
            reporter.report(rules::keyWithApostrophe, entry, "key", *key);
        else
            reporter.used(entry, "key");
        reporter.attributesBut(entry, "key");
        for (const xml::Node& part : entry.children()) {
            if (part.isElement())
                reporter.report(rules::elementInText, part, {}, part.name());
        }
        const std::string address = entry.stringValue();
        if (hasBlanksAround(address))
            reporter.report(rules::blanksAroundAddress, entry, {}, address);
        if (address.find("&amp;") != std::string::npos)
            reporter.report(rules::escapedTwice, entry, {}, address);
    }
}

}  // namespace

YGWebPageUrlConfig::~YGWebPageUrlConfig() = default;

std::shared_ptr<YGWebPageUrlConfig> YGWebPageUrlConfig::initWithFileName(OptionalText fileName,
                                                                         DiagnosticsSink* sink) {
    if (!fileName || fileName->empty())
        return nullptr;
    const std::optional<std::string> path = getFilePath(fileName, false);
    if (!path || path->empty())
        return nullptr;
    return guarded("load web pages", [&] {
        return std::shared_ptr<YGWebPageUrlConfig>(new YGWebPageUrlConfig(*fileName, *path, sink));
    });
}

YGWebPageUrlConfig::YGWebPageUrlConfig(std::string_view fileName, const std::string& path,
                                       DiagnosticsSink* sink)
    : fileName_(fileName), sink_(sink) {
    const Reporter reporter(sink);
    const xml::ParseResult parsed = reporter.parseFile(path);
    if (!parsed)
        reporter.report(rules::unreadableFile, {}, {}, parsed.error);
    else if (reporter)
        reportTable(parsed.document.root(), reporter);
    install(parsed.document);
}

std::optional<std::string> YGWebPageUrlConfig::getFilePath(OptionalText fileName,
                                                           bool isNeedWrite) {
    return storagePath(fileName, isNeedWrite);
}

xml::Document YGWebPageUrlConfig::docment() const {
    const std::lock_guard lock(lock_);
    return docment_;
}

std::string YGWebPageUrlConfig::getWebPageUrlByKey(OptionalText key) const {
    std::optional<std::string> address;
    if (!key || key->empty()) {
        writeBusCommonLogInside("%s L%d 获取不到1 Key: [%@]", lookUpName, 54, key);
    } else if (!text::isValidUtf8(*key)) {
        writeBusCommonLogInside("%s L%d 获取不到2 Key: [%@]", lookUpName, 59, key);
    } else {
        try {
            address = find(*key);
            if (!address)
                writeBusCommonLogInside("%s L%d 获取不到3 Key: [%@]", lookUpName, 68, key);
        } catch (const std::exception&) {
            writeBusCommonLogInside("%s L%d 获取不到4 Key: [%@]", lookUpName, 77, key);
        }
    }
    if (address)
        return std::move(*address);
    guarded("report web pages",
            [&] { Reporter(sink_).report(rules::unknownWebPage, {}, {}, *key); });
    return "about:blank";
}

std::optional<std::string> YGWebPageUrlConfig::find(std::string_view key) const {
    if (key.find('\'') == std::string_view::npos) {
        const std::lock_guard lock(lock_);
        const std::string* const found = addresses_.find(key);
        return found ? std::optional(*found) : std::nullopt;
    }
    // The apostrophe ends the key inside the query, which then hardly ever is one.
    // The work that it may be has no bound, and nobody is to wait for it.
    const xml::Document document = docment();
    const std::vector<xml::Node> found =
        document.query("urls/url[@key='" + std::string(key) + "']");
    return found.empty() ? std::nullopt : std::optional(found.front().stringValue());
}

bool YGWebPageUrlConfig::replaceDataFromServer(OptionalText text) {
    return guarded("replace web pages", [&] { return replace(*text); });
}

bool YGWebPageUrlConfig::replace(std::string_view text) {
    const Reporter reporter(sink_);
    const xml::ParseResult parsed = orOutOfMemory(
        xml::Document::parseText(text::replaceAll(text, "&", "&amp;"), reporter.parseOptions()));
    if (!parsed) {
        reporter.report(rules::unreadableWebPages, {}, {}, parsed.error);
        return false;
    }
    if (reporter)
        reportTable(parsed.document.root(), reporter);
    std::uint64_t written = 0;
    std::uint64_t current = install(parsed.document);
    bool isWritten = false;
    // A table that replaces this one meanwhile may have been written before it: then once more.
    while (written != current) {
        const std::optional<std::string> path = getFilePath(fileName_, true);
        xml::Document document = parsed.document;
        {
            const std::lock_guard lock(lock_);
            document = docment_;
            written = generation_;
        }
        isWritten = guarded("write web pages", [&] {
            const std::string bytes = document.serialise(xml::Form::pretty);
            return xml::Document::canBeRead(bytes) && writeStoredFile(path, bytes).ok;
        });
        const std::lock_guard lock(lock_);
        current = generation_;
    }
    guarded("report web pages", [&] {
        if (!isWritten)
            reporter.report(rules::unsavedFile, {}, {}, fileName_);
    });
    return isWritten;
}

/// Makes a document the table; answers how many there were.
std::uint64_t YGWebPageUrlConfig::install(xml::Document document) {
    Addresses addresses = addressesIn(document);
    const std::lock_guard lock(lock_);
    std::swap(docment_, document);
    std::swap(addresses_, addresses);
    return ++generation_;
}

std::optional<std::string> YGWebPageUrlConfig::replaceSubstring(OptionalText text,
                                                                OptionalText target,
                                                                OptionalText replacement) {
    return guarded("replace text", [&]() -> std::optional<std::string> {
        if (!text || target->empty() || text::findText(*text, *target) == std::string_view::npos)
            return text ? std::optional(std::string(*text)) : std::nullopt;
        return text::replaceAllIgnoringCase(*text, *target, *replacement);
    });
}

}  // namespace yg
