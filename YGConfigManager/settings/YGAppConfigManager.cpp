// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/YGAppConfigManager.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/files/FolderLock.h"
#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/records/Entry.h"
#include "YGConfigManager/settings/SettingsAttributes.h"
#include "YGConfigManager/settings/Storage.h"
#include "YGConfigManager/xml/Names.h"

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

template <class Value>
std::vector<std::string> namesIn(const RecordMap<Value>& map) {
    std::vector<std::string> names;
    names.reserve(map.size());
    for (const auto& entry : map)
        names.push_back(entry.key);
    return names;
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

/// What is known of an item that counts beside its text.
void note(const Entry& section, Entry& item, RecordMap<xml::Element>& places) {
    SettingsItem attributes;
    item.read(attributes);
    item.define(itemPath(section.name(), item.name()), places);
}

/// Reports which of two names no element can have; whether both can be had.
bool reportNames(const Reporter& reporter, std::string_view file, std::string_view section,
                 std::string_view item) {
    bool areNames = true;
    for (const std::string_view name : {section, item}) {
        if (!xml::isXmlName(name)) {
            reporter.report("no-element-name"_rule, file, name);
            areNames = false;
        }
    }
    return areNames;
}

}  // namespace

/// The file as it was found, for a store that merges.
struct YGAppConfigManager::FileSeen {
    bool isFinal = false;  ///< it was looked at under the lock, or there is none to be had
    std::unique_ptr<files::FolderLock> lock;
    std::optional<std::string> writePath;
    std::string path;                  ///< of the file that was read
    std::optional<std::string> bytes;  ///< absent when there is no file
    /// What the file is; absent when that is what the store knows, or nothing.
    std::optional<xml::Document> document;
    std::string error;  ///< why nothing may be written; empty otherwise
};

/// What the store and the file are to be.
struct YGAppConfigManager::Changed {
    xml::Document document;
    std::string bytes = {};  ///< the file; empty without a root element
    Index texts = {};
    std::vector<Setting> unsaved = {};   ///< the earlier changes that were made again
    std::vector<std::string> lost = {};  ///< those that could not be made again
};

/// What there is to report.
struct YGAppConfigManager::Outcome {
    std::vector<std::string> lost;
    files::FileWriting saving{true};
};

YGAppConfigManager::~YGAppConfigManager() = default;

std::optional<std::string> YGAppConfigManager::pathToRead(
    std::optional<std::string_view> fileName) {
    if (!fileName || fileName->empty())
        return std::nullopt;
    std::optional<std::string> path = getFilePath(fileName, false);
    return path && !path->empty() ? path : std::nullopt;
}

std::shared_ptr<YGAppConfigManager> YGAppConfigManager::initWithFileName(
    OptionalText fileName, DiagnosticsSink* sink, OtherWriters otherWriters) {
    return guarded("load app config", [&]() -> std::shared_ptr<YGAppConfigManager> {
        const auto path = pathToRead(fileName);
        if (!path)
            return nullptr;
        return std::shared_ptr<YGAppConfigManager>(
            new YGAppConfigManager(*fileName, *path, sink, otherWriters));
    });
}

YGAppConfigManager::YGAppConfigManager(std::string_view fileName, const std::string& path,
                                       DiagnosticsSink* sink, OtherWriters otherWriters)
    : fileName_(fileName),
      pathRead_(path),
      otherWriters_(otherWriters),
      sink_(sink),
      knownPath_(path) {
    const Reporter reporter(sink);
    const xml::ParseResult parsed = reporter.parseFile(path);
    if (!parsed)
        reporter.unreadable("unreadable-file"_rule, path, parsed);
    docment_ = parsed.document;
    texts_ = indexOf(docment_, reporter);
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
        if (sink_)
            reportNames(Reporter(sink_), pathRead_, *section, *itemName);
        const xml::Document document = current();
        const std::vector<xml::Node> found = document.query(queryFor(*section, *itemName));
        return found.empty() ? std::nullopt : std::optional(found.front().stringValue());
    });
}

std::vector<std::string> YGAppConfigManager::sectionNames() const {
    return guarded("read app config", [&] {
        const std::lock_guard lock(lock_);
        return namesIn(texts_);
    });
}

std::vector<std::string> YGAppConfigManager::itemNames(OptionalText section) const {
    return guarded("read app config", [&] {
        const std::lock_guard lock(lock_);
        const std::shared_ptr<Texts>* const texts = section ? texts_.find(*section) : nullptr;
        return texts ? namesIn(**texts) : std::vector<std::string>();
    });
}

bool YGAppConfigManager::setConfigItem(OptionalText section, OptionalText itemName,
                                       OptionalText itemDescription, OptionalText itemText) {
    if (!section || !itemName || !itemText)
        return false;
    Outcome outcome;
    const std::optional<bool> isChanged = guarded("change app config", [&] {
        if (section->empty() || itemName->empty())
            return std::optional(false);
        const Setting setting{
            std::string(*section), std::string(*itemName),
            itemDescription ? std::optional<std::string>(*itemDescription) : std::nullopt,
            std::string(*itemText)};
        return std::optional(change(setting, outcome));
    });
    // What is done is done, whatever becomes of the reports.
    guarded("report app config", [&] {
        const Reporter reporter(sink_);
        if (reporter && isChanged == false && reportNames(reporter, pathRead_, *section, *itemName))
            reporter.report("unreadable-setting"_rule, pathRead_, itemPath(*section, *itemName));
        for (const std::string& lost : outcome.lost)
            reporter.report("lost-setting"_rule, pathRead_, lost);
        if (!outcome.saving)
            reporter.unsaved(fileName_, outcome.saving.error);
    });
    return isChanged.value_or(false);
}

bool YGAppConfigManager::isPlain(const Setting& setting) {
    return isPlainName(setting.section) && isPlainName(setting.item);
}

std::string YGAppConfigManager::pathOf(const Setting& setting) {
    return itemPath(setting.section, setting.item);
}

/// Makes a change of the store and of the file; false when the item cannot be stored.
bool YGAppConfigManager::change(const Setting& setting, Outcome& outcome) {
    std::unique_lock changing(changing_);
    FileSeen file = lookAtFile();
    while (true) {
        const std::uint64_t before = generation_;
        const xml::Document document = file.document ? *file.document : docment_;
        const std::vector<Setting> unsaved = file.document ? unsaved_ : std::vector<Setting>();
        // The work that other names are has no bound, and nobody is to wait for it.
        if (!isPlain(setting) || !std::all_of(unsaved.begin(), unsaved.end(), isPlain)) {
            changing.unlock();
            file.lock.reset();
            file.isFinal = false;
        }
        std::optional<Changed> next = changed(document, unsaved, setting);
        if (!next)
            return false;
        if (!changing.owns_lock())
            changing.lock();
        if (!file.isFinal) {
            FileSeen now = lockFile(file);
            const bool isSame = generation_ == before && now.bytes == file.bytes;
            file = std::move(now);
            if (!isSame)
                continue;
        }
        store(std::move(*next), std::move(file), setting, outcome);
        return true;
    }
}

/// Writes the file, unless it must stay as it is, and makes the change the store's. All that takes
/// memory is done before the file is written.
void YGAppConfigManager::store(Changed changed, FileSeen file, const Setting& setting,
                               Outcome& outcome) {
    const bool isLost = changed.document.root().name() != rootName;
    std::vector<Setting> unsaved;
    if (otherWriters_ == OtherWriters::merged) {
        unsaved = file.document ? std::move(changed.unsaved) : unsaved_;
        if (!isLost)
            remember(setting, unsaved);
    }
    outcome.lost = std::move(changed.lost);
    if (isLost)
        outcome.lost.push_back(pathOf(setting));
    std::string path = file.writePath.value_or("");
    if (!file.error.empty())
        outcome.saving = {false, std::move(file.error)};
    else if (!changed.bytes.empty())
        outcome.saving = writeStoredFile(fileName_, file.writePath, changed.bytes);
    if (otherWriters_ == OtherWriters::merged && outcome.saving && !changed.bytes.empty()) {
        knownPath_ = std::move(path);
        known_ = std::move(changed.bytes);
        unsaved.clear();
    } else if (file.document) {
        knownPath_ = std::move(file.path);
        known_ = std::move(file.bytes);
    }
    std::swap(unsaved_, unsaved);
    ++generation_;
    const std::lock_guard lock(lock_);
    std::swap(docment_, changed.document);
    std::swap(texts_, changed.texts);
}

/// The file as it is now, without a lock: whole, but another may take its place at any time.
YGAppConfigManager::FileSeen YGAppConfigManager::lookAtFile() const {
    FileSeen file;
    if (otherWriters_ == OtherWriters::merged) {
        file.path = storagePath(fileName_, false).value_or("");
        readFile(file, {});
    }
    return file;
}

/// The file under its lock. `seen` is what it was before.
YGAppConfigManager::FileSeen YGAppConfigManager::lockFile(const FileSeen& seen) const {
    FileSeen file;
    file.isFinal = true;
    file.writePath = storagePath(fileName_, true);
    if (otherWriters_ == OtherWriters::ignored || !file.writePath || file.writePath->empty())
        return file;
    file.lock = std::make_unique<files::FolderLock>(*file.writePath);
    if (!*file.lock) {
        file.error = file.lock->error();
        return file;
    }
    file.path = *file.writePath;
    // A file of the user's own that is gone is not to become the shipped one again.
    if (file.path != knownPath_ && !files::fileExists(file.path))
        file.path = storagePath(fileName_, false).value_or("");
    readFile(file, seen);
    return file;
}

/// Reads the file at `file.path`, if there is one. Bytes that were seen before are not parsed
/// again.
void YGAppConfigManager::readFile(FileSeen& file, const FileSeen& seen) const {
    if (!files::fileExists(file.path))
        return;
    files::FileReading reading = files::readWholeFile(file.path);
    if (!reading) {
        file.error = std::move(reading.error);
        return;
    }
    if (reading.bytes != known_ && reading.bytes == seen.bytes) {
        file.document = seen.document;
    } else if (reading.bytes != known_) {
        xml::ParseResult parsed = orOutOfMemory(xml::Document::parseBytes(reading.bytes));
        if (!parsed) {
            file.error = files::describeFailure(file.path, parsed.error);
            return;
        }
        file.document = std::move(parsed.document);
    }
    file.bytes = std::move(reading.bytes);
}

/// Makes a change in a document; false, with nothing changed, when the item cannot be stored.
bool YGAppConfigManager::apply(const Setting& setting, const xml::Document& document) {
    const std::vector<xml::Node> items = document.query(queryFor(setting.section, setting.item));
    // A name may be a query that finds a text, which has no content of its own.
    if (!items.empty())
        return xml::Element(items.front()).setContent(setting.text);
    const std::vector<xml::Node> sections = document.query(queryFor(setting.section));
    xml::Element parent =
        sections.empty() ? xml::Element::create(setting.section) : xml::Element(sections.front());
    xml::Element made = xml::Element::create(setting.item);
    if (!parent || !made)
        return false;
    made.setContent(setting.text);
    if (setting.description && !setting.description->empty())
        made.setAttribute("description", *setting.description);
    if (sections.empty())
        parent = xml::Element(document.root().appendChild(parent));
    parent.appendChild(made);
    return true;
}

/// The document with the earlier changes that are not on the disk yet, as far as they can still be
/// made, and with a new one; absent when the new one cannot be made or the file not be read again.
std::optional<YGAppConfigManager::Changed> YGAppConfigManager::changed(
    const xml::Document& document, const std::vector<Setting>& unsaved, const Setting& setting) {
    Changed next{document.copy()};
    for (const Setting& each : unsaved) {
        if (apply(each, next.document))
            next.unsaved.push_back(each);
        else
            next.lost.push_back(pathOf(each));
    }
    if (!apply(setting, next.document))
        return std::nullopt;
    next.bytes = next.document.serialise(xml::Form::pretty);
    if (!next.bytes.empty() && !xml::Document::canBeRead(next.bytes))
        return std::nullopt;
    next.texts = indexOf(next.document, Reporter(nullptr));
    return next;
}

/// Adds a change to those that are to be made again. One plain name among plain names needs one.
void YGAppConfigManager::remember(const Setting& setting, std::vector<Setting>& unsaved) {
    const auto same = std::find_if(unsaved.begin(), unsaved.end(), [&](const Setting& each) {
        return each.section == setting.section && each.item == setting.item;
    });
    // What other names find depends on what was changed before.
    if (same != unsaved.end() && std::all_of(unsaved.begin(), unsaved.end(), isPlain))
        same->text = setting.text;
    else
        unsaved.push_back(setting);
}

YGAppConfigManager::Index YGAppConfigManager::indexOf(const xml::Document& document,
                                                      const Reporter& reporter) {
    Index index;
    RecordMap<xml::Element> places;
    reading(reporter, document.root(), [&](Entry& root) {
        if (root.name() != rootName)
            return root.drop("settings-root-name"_rule, {}, root.name());
        root.forEachElement([&](Entry& section) {
            const std::shared_ptr<Texts>* found = index.find(section.name());
            const auto texts = found ? *found : std::make_shared<Texts>();
            if (!found)
                index.set(section.name(), texts);
            section.forEachElement([&](Entry& item) {
                if (texts->contains(item.name()))
                    return item.drop(
                        "duplicate-item"_rule, {}, item.name(),
                        item ? places.find(itemPath(section.name(), item.name())) : nullptr);
                if (item)
                    note(section, item, places);
                texts->set(item.name(), item.text());
            });
        });
    });
    return index;
}

void YGAppConfigManager::saveAppConfigFile(const xml::Document* document,
                                           OptionalText fileName) const {
    guarded("save app config", [&] {
        const std::string bytes = document ? document->serialise(xml::Form::pretty) : "";
        if (bytes.empty())
            return;
        const std::string_view name = *fileName;
        const files::FileWriting writing =
            xml::Document::canBeRead(bytes)
                ? writeStoredFile(name, storagePath(fileName, true), bytes)
                : files::FileWriting{false, files::describeFailure(name, couldNotBeReadAgain)};
        if (!writing)
            Reporter(sink_).unsaved(name, writing.error);
    });
}

}  // namespace yg
