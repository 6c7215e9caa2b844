// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/YGAppConfigManager.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/settings/SettingsRules.h"
#include "YGConfigManager/settings/Storage.h"

namespace yg {

namespace {

constexpr std::string_view rootName = "config";

bool isBetween(char c, char first, char last) {
    return first <= c && c <= last;
}

bool isNameStart(char c) {
    return isBetween(c, 'a', 'z') || isBetween(c, 'A', 'Z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

/// Whether a query takes the text for the name of elements and for nothing else.
bool isPlainName(std::string_view name) {
    return isNameStart(name.front()) && std::all_of(name.begin(), name.end(), [](char c) {
               return isNameStart(c) || isBetween(c, '0', '9') || c == '-' || c == '.';
           });
}

std::string queryFor(std::string_view section) {
    return std::string(rootName) + '/' + std::string(section);
}

std::string queryFor(std::string_view section, std::string_view item) {
    return queryFor(section) + '/' + std::string(item);
}

std::string itemPath(std::string_view section, std::string_view item) {
    return std::string(section) + '/' + std::string(item);
}

/// False if the file was not written although there is something to write.
bool save(const std::string& bytes, std::optional<std::string_view> fileName) {
    const std::optional<std::string> path = storagePath(fileName, true);
    return bytes.empty() || writeStoredFile(path, bytes).ok;
}

bool isElementName(std::string_view name) {
    return static_cast<bool>(xml::Element::create(name));
}

/// What in a file has an effect, and what has none.
void reportSettings(const xml::Element& root, const Reporter& reporter) {
    if (root.name() != rootName) {
        reporter.report(rules::settingsRootName, root, {}, root.name());
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
        const xml::Element section(child);
        reporter.used(section);
        reporter.attributesBut(section, {});
        for (const xml::Node& grandchild : section.children()) {
            if (!grandchild.isElement()) {
                reporter.stray(grandchild);
                continue;
            }
            const xml::Element item(grandchild);
            if (seen.set(itemPath(section.name(), item.name()), true)) {
                reporter.report(rules::duplicateItem, item, {}, item.name());
                continue;
            }
            reporter.used(item);
            if (item.attribute("description"))
                reporter.used(item, "description");
            reporter.attributesBut(item, "description");
            for (const xml::Node& part : item.children()) {
                if (part.isElement())
                    reporter.report(rules::elementInText, part, {}, part.name());
            }
        }
    }
}

}  // namespace

YGAppConfigManager::~YGAppConfigManager() = default;

std::optional<std::string> YGAppConfigManager::pathToRead(
    std::optional<std::string_view> fileName) {
    if (!fileName || fileName->empty())
        return std::nullopt;
    std::optional<std::string> path = getFilePath(fileName, false);
    return path && !path->empty() ? path : std::nullopt;
}

std::shared_ptr<YGAppConfigManager> YGAppConfigManager::initWithFileName(OptionalText fileName,
                                                                         DiagnosticsSink* sink) {
    return guarded("load app config", [&]() -> std::shared_ptr<YGAppConfigManager> {
        const auto path = pathToRead(fileName);
        if (!path)
            return nullptr;
        return std::shared_ptr<YGAppConfigManager>(new YGAppConfigManager(*fileName, *path, sink));
    });
}

YGAppConfigManager::YGAppConfigManager(std::string_view fileName, const std::string& path,
                                       DiagnosticsSink* sink)
    : fileName_(fileName), sink_(sink) {
    const Reporter reporter(sink);
    const xml::ParseResult parsed = reporter.parseFile(path);
    if (!parsed)
        reporter.report(rules::unreadableFile, {}, {}, parsed.error);
    else if (reporter)
        reportSettings(parsed.document.root(), reporter);
    docment_ = parsed.document;
    texts_ = indexOf(docment_);
}

std::optional<std::string> YGAppConfigManager::getFilePath(OptionalText fileName,
                                                           bool isNeedWrite) {
    return storagePath(fileName, isNeedWrite);
}

xml::Document YGAppConfigManager::docment() const {
    return guarded("copy app config", [this] { return current().copy(); });
}

/// The document as it is now. None that was current is ever changed, so it needs no lock.
xml::Document YGAppConfigManager::current() const {
    const std::lock_guard lock(lock_);
    return docment_;
}

std::optional<std::string> YGAppConfigManager::getItemText(OptionalText section,
                                                           OptionalText itemName) const {
    if (!section || section->empty() || !itemName || itemName->empty())
        return std::nullopt;
    // Out of memory: as if there were no such item.
    return guarded("read app config", [&]() -> std::optional<std::string> {
        if (isPlainName(*section) && isPlainName(*itemName)) {
            const std::lock_guard lock(lock_);
            const std::shared_ptr<Texts>* const texts = texts_.find(*section);
            const std::string* const text = texts ? (*texts)->find(*itemName) : nullptr;
            return text ? std::optional(*text) : std::nullopt;
        }
        const Reporter reporter(sink_);
        for (const std::string_view name : {*section, *itemName}) {
            if (reporter && !isElementName(name))
                reporter.report(rules::noElementName, {}, {}, name);
        }
        const xml::Document document = current();
        const std::vector<xml::Node> found = document.query(queryFor(*section, *itemName));
        return found.empty() ? std::nullopt : std::optional(found.front().stringValue());
    });
}

bool YGAppConfigManager::setConfigItem(OptionalText section, OptionalText itemName,
                                       OptionalText itemDescription, OptionalText itemText) {
    if (!section || !itemName || section->empty() || !itemText || itemName->empty())
        return false;
    bool isSaved = true;
    bool isLost = false;
    const bool isPlain = isPlainName(*section) && isPlainName(*itemName);
    const bool isChanged = guarded("change app config", [&] {
        std::unique_lock lock(lock_);
        while (true) {
            const std::uint64_t before = generation_;
            const xml::Document document = docment_;
            // The work that other names are has no bound, and nobody is to wait for it.
            if (!isPlain)
                lock.unlock();
            std::optional<Change> change =
                changeOf(document, *section, *itemName, itemDescription, *itemText);
            if (!change)
                return false;
            Index texts = isPlain ? Index() : indexOf(change->document);
            if (!isPlain)
                lock.lock();
            if (generation_ != before)
                continue;
            isLost = change->document.root().name() != rootName;
            if (!isPlain)
                std::swap(texts_, texts);
            else if (!isLost)
                textsOf(*section, texts_).set(*itemName, std::move(change->stored));
            std::swap(docment_, change->document);
            ++generation_;
            isSaved = save(change->bytes, fileName_);
            return true;
        }
    });
    // What is done is done, whatever becomes of the reports.
    guarded("report app config", [&] {
        const Reporter reporter(sink_);
        for (const std::string_view name : {*section, *itemName}) {
            if (reporter && !isChanged && !isElementName(name))
                reporter.report(rules::noElementName, {}, {}, name);
        }
        if (isLost)
            reporter.report(rules::lostSetting, {}, {}, itemPath(*section, *itemName));
        if (!isSaved)
            reporter.report(rules::unsavedFile, {}, {}, fileName_);
    });
    return isChanged;
}

/// A document with an item stored, and its bytes; absent when the item cannot be stored.
std::optional<YGAppConfigManager::Change> YGAppConfigManager::changeOf(
    const xml::Document& document, std::string_view section, std::string_view item,
    const std::optional<std::string_view>& description, std::string_view text) {
    Change change{document.copy(), {}, {}};
    xml::Element made = xml::Element::create(isElementName(item) ? item : "any");
    made.setContent(text);
    change.stored = made.stringValue();
    const std::vector<xml::Node> items = change.document.query(queryFor(section, item));
    if (!items.empty()) {
        // A name may be a query that finds a text.
        if (!xml::Element(items.front()).setContent(text))
            return std::nullopt;
    } else {
        if (description && !description->empty())
            made.setAttribute("description", *description);
        const std::vector<xml::Node> sections = change.document.query(queryFor(section));
        xml::Element parent =
            sections.empty() ? xml::Element::create(section) : xml::Element(sections.front());
        if (!parent || made.name() != item)
            return std::nullopt;
        if (sections.empty())
            parent = xml::Element(change.document.root().appendChild(parent));
        parent.appendChild(made);
    }
    change.bytes = change.document.serialise(xml::Form::pretty);
    if (!change.bytes.empty() && !xml::Document::canBeRead(change.bytes))
        return std::nullopt;
    return change;
}

/// The index of a section, made if there is none.
YGAppConfigManager::Texts& YGAppConfigManager::textsOf(std::string_view section, Index& index) {
    const std::shared_ptr<Texts>* const found = index.find(section);
    if (found)
        return **found;
    auto made = std::make_shared<Texts>();
    index.set(section, made);
    return *made;
}

YGAppConfigManager::Index YGAppConfigManager::indexOf(const xml::Document& document) {
    Index index;
    const xml::Element root = document.root();
    if (root.name() != rootName)
        return index;
    for (const xml::Node& section : root.children()) {
        if (!section.isElement())
            continue;
        Texts& texts = textsOf(section.name(), index);
        for (const xml::Node& item : xml::Element(section).children()) {
            if (item.isElement() && !texts.contains(item.name()))
                texts.set(item.name(), item.stringValue());
        }
    }
    return index;
}

void YGAppConfigManager::saveAppConfigFile(const xml::Document* document,
                                           OptionalText fileName) const {
    guarded("save app config", [&] {
        const std::string bytes = document ? document->serialise(xml::Form::pretty) : "";
        if (xml::Document::canBeRead(bytes))
            save(bytes, fileName);
    });
}

}  // namespace yg
