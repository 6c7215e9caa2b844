// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/YGAppConfigManager.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/settings/SettingsRules.h"
#include "YGConfigManager/settings/Storage.h"
#include "YGConfigManager/xml/Query.h"

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
    return bytes.empty() || writeStoredFile(path, bytes);
}

/// What a store answers when memory does not suffice for a copy of its own; nobody can change it.
const xml::Document& documentWithoutRoot() {
    static const auto& document = *new xml::Document;
    return document;
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

std::shared_ptr<YGAppConfigManager> YGAppConfigManager::initWithFileName(
    std::optional<std::string_view> fileName, DiagnosticsSink* sink) {
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
    documentWithoutRoot();
    const Reporter reporter(sink);
    const xml::ParseResult parsed = reporter.parseFile(path);
    if (!parsed)
        reporter.report(rules::unreadableFile, {}, {}, parsed.error);
    else if (reporter)
        reportSettings(parsed.document.root(), reporter);
    // What a sink keeps must not change with the store.
    docment_ = reporter ? parsed.document.copy() : parsed.document;
    texts_ = indexOf(docment_);
}

std::optional<std::string> YGAppConfigManager::getFilePath(std::optional<std::string_view> fileName,
                                                           bool isNeedWrite) {
    return storagePath(fileName, isNeedWrite);
}

xml::Document YGAppConfigManager::docment() const {
    return guarded(
        "copy app config",
        [this] {
            const std::lock_guard lock(lock_);
            return docment_.copy();
        },
        documentWithoutRoot());
}

std::optional<std::string> YGAppConfigManager::getItemText(
    const std::optional<std::string_view>& section,
    const std::optional<std::string_view>& itemName) const {
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
        const xml::Query query(queryFor(*section, *itemName));
        const std::lock_guard lock(lock_);
        const std::vector<xml::Node> found = docment_.query(query);
        return found.empty() ? std::nullopt : std::optional(found.front().stringValue());
    });
}

bool YGAppConfigManager::setConfigItem(const std::optional<std::string_view>& section,
                                       const std::optional<std::string_view>& itemName,
                                       const std::optional<std::string_view>& itemDescription,
                                       const std::optional<std::string_view>& itemText) {
    if (!section || !itemName || section->empty() || !itemText || itemName->empty())
        return false;
    bool isSaved = true;
    bool isLost = false;
    const bool isChanged = guarded("change app config", [&] {
        const std::lock_guard lock(lock_);
        const std::optional<std::string> bytes =
            change(*section, *itemName, itemDescription, *itemText);
        if (bytes) {
            isSaved = save(*bytes, fileName_);
            isLost = docment_.root().name() != rootName;
        }
        return bytes.has_value();
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

/// Under the lock. Answers the whole file as it is now; absent, with nothing changed, when the item
/// cannot be stored.
std::optional<std::string> YGAppConfigManager::change(
    std::string_view section, std::string_view item,
    const std::optional<std::string_view>& description, std::string_view text) {
    // Nothing is changed before it is clear that everything can be.
    xml::Element made = xml::Element::create(isElementName(item) ? item : "any");
    made.setContent(text);
    if (description && !description->empty())
        made.setAttribute("description", *description);
    if (!canBeReadAgain(made.serialise()))
        return std::nullopt;
    std::string stored = made.stringValue();
    xml::Document changed = docment_.copy();
    const std::vector<xml::Node> items = changed.query(queryFor(section, item));
    if (!items.empty()) {
        if (!xml::Element(items.front()).setContent(text))
            return std::nullopt;
    } else {
        const std::vector<xml::Node> sections = changed.query(queryFor(section));
        xml::Element parent =
            sections.empty() ? xml::Element::create(section) : xml::Element(sections.front());
        if (!parent || made.name() != item)
            return std::nullopt;
        if (sections.empty())
            parent = xml::Element(changed.root().appendChild(parent));
        parent.appendChild(made);
    }
    std::optional bytes = changed.serialise(xml::Form::pretty);
    if (!isPlainName(section) || !isPlainName(item))
        texts_ = indexOf(changed);
    else if (changed.root().name() == rootName)
        textsOf(section, texts_).set(item, std::move(stored));
    std::swap(docment_, changed);
    return bytes;
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
                                           std::optional<std::string_view> fileName) const {
    guarded("save app config", [&] {
        if (document)
            save(document->serialise(xml::Form::pretty), fileName);
    });
}

}  // namespace yg
