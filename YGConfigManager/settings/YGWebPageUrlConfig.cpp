// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

#include <exception>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/records/Entry.h"
#include "YGConfigManager/settings/SettingsAttributes.h"
#include "YGConfigManager/settings/Storage.h"
#include "YGConfigManager/text/Replace.h"
#include "YGConfigManager/text/Utf8.h"

namespace yg {

namespace {

constexpr std::string_view rootName = "urls";
constexpr std::string_view entryName = "url";
constexpr std::string_view keyName = attributesOf<WebPage>.rows().front().name;
// The names and the numbers behind "L" are parts of fixed log texts, which support staff search
// for; they are not places in these sources.
constexpr std::string_view lookUpName = "-[YGWebPageUrlConfig getWebPageUrlByKey:]";

/// What is odd about an address that counts.
void note(Entry& entry, std::string_view key, std::string_view address,
          RecordMap<xml::Element>& places) {
    entry.define(key, places);
    if (hasBlanksAround(address))
        entry.report("blanks-around-address"_rule, {}, address);
    if (address.find("&amp;") != std::string::npos)
        entry.report("escaped-twice"_rule, {}, address);
}

/// The address of each key that can be asked for.
RecordMap<std::string> addressesIn(const xml::Document& document, const Reporter& reporter) {
    RecordMap<std::string> addresses;
    RecordMap<xml::Element> places;
    reading(reporter, document.root(), [&](Entry& root) {
        if (root.name() != rootName)
            return root.drop("web-page-root-name"_rule, {}, root.name());
        root.forEachElement([&](Entry& entry) {
            if (entry.name() != entryName)
                return entry.drop("unknown-element"_rule, {}, entry.name());
            WebPage page;
            entry.read(page);
            const auto key = page.key;
            if (!key || key->empty())
                return entry.drop("web-page-without-key"_rule);
            // find() never looks for such a key here, so it needs no check without a sink.
            if (entry && key->find('\'') != std::string_view::npos)
                return entry.drop("key-with-apostrophe"_rule, keyName, *key);
            if (addresses.contains(*key))
                return entry.drop("duplicate-web-page"_rule, keyName, *key, places.find(*key));
            addresses.set(*key, entry.text());
            if (entry)
                note(entry, *key, *addresses.find(*key), places);
        });
    });
    return addresses;
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
        reporter.unreadable("unreadable-file"_rule, path, parsed);
    install(parsed.document, reporter);
}

std::optional<std::string> YGWebPageUrlConfig::getFilePath(OptionalText fileName,
                                                           bool isNeedWrite) {
    return storagePath(fileName, isNeedWrite);
}

xml::Document YGWebPageUrlConfig::docment() const {
    return guarded("copy web pages", [this] { return current().copy(); });
}

/// The document as it is now. None that was current is ever changed, so it needs no lock.
xml::Document YGWebPageUrlConfig::current() const {
    const std::lock_guard lock(lock_);
    return docment_;
}

std::string YGWebPageUrlConfig::getWebPageUrlByKey(OptionalText key) const {
    std::optional<std::string> address;
    if (!key || key->empty()) {
        writeBusCommonWarning("%s L%d 获取不到1 Key: [%@]", lookUpName, 54, key);
    } else if (!text::isValidUtf8(*key)) {
        writeBusCommonWarning("%s L%d 获取不到2 Key: [%@]", lookUpName, 59, key);
    } else {
        try {
            address = find(*key);
            if (!address)
                writeBusCommonWarning("%s L%d 获取不到3 Key: [%@]", lookUpName, 68, key);
        } catch (const std::exception&) {
            writeBusCommonWarning("%s L%d 获取不到4 Key: [%@]", lookUpName, 77, key);
        }
    }
    if (address)
        return std::move(*address);
    guarded("report web pages", [&] { Reporter(sink_).report("unknown-web-page"_rule, {}, *key); });
    return "about:blank";
}

std::vector<std::string> YGWebPageUrlConfig::keys() const {
    return guarded("read web pages", [&] {
        std::vector<std::string> found;
        const std::lock_guard lock(lock_);
        for (const auto& [key, address] : addresses_) {
            if (key.find('\'') == std::string::npos)
                found.push_back(key);
        }
        return found;
    });
}

std::optional<std::string> YGWebPageUrlConfig::find(std::string_view key) const {
    if (key.find('\'') == std::string_view::npos) {
        const std::lock_guard lock(lock_);
        const std::string* const found = addresses_.find(key);
        return found ? std::optional(*found) : std::nullopt;
    }
    // The apostrophe ends the key inside the query, which then hardly ever is one.
    // The work that it may be has no bound, and nobody is to wait for it.
    const xml::Document document = current();
    const std::vector<xml::Node> found =
        document.query("urls/url[@key='" + std::string(key) + "']");
    return found.empty() ? std::nullopt : std::optional(found.front().stringValue());
}

bool YGWebPageUrlConfig::replaceDataFromServer(OptionalText text) {
    return guarded("replace web pages", [&] { return replace(*text); });
}

bool YGWebPageUrlConfig::replace(std::string_view text) {
    const Reporter reporter(sink_);
    const xml::ParseResult parsed = orOutOfMemory(xml::Document::parseText(
        text::replaceAll(text, "&", "&amp;"), {.positions = static_cast<bool>(reporter)}));
    if (!parsed) {
        reporter.unreadable("unreadable-web-pages"_rule, {}, parsed);
        return false;
    }
    std::uint64_t written = 0;
    std::uint64_t current = install(parsed.document, reporter);
    files::FileWriting writing{};
    // A table that replaces this one meanwhile may have been written before it: then once more.
    while (written != current) {
        const std::optional<std::string> path = getFilePath(fileName_, true);
        xml::Document document = parsed.document;
        {
            const std::lock_guard lock(lock_);
            document = docment_;
            written = generation_;
        }
        writing = guarded("write web pages", [&]() -> files::FileWriting {
            const std::string bytes = document.serialise(xml::Form::pretty);
            if (!xml::Document::canBeRead(bytes))
                return {false, files::describeFailure(fileName_, couldNotBeReadAgain)};
            return writeStoredFile(fileName_, path, bytes);
        });
        const std::lock_guard lock(lock_);
        current = generation_;
    }
    guarded("report web pages", [&] {
        if (!writing)
            reporter.unsaved(fileName_, writing.error);
    });
    return writing.ok;
}

/// Makes a document the table; answers how many there were.
std::uint64_t YGWebPageUrlConfig::install(xml::Document document, const Reporter& reporter) {
    Addresses addresses = addressesIn(document, reporter);
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
