// SPDX-License-Identifier: MIT
//
// The application's settings: texts by section and item, kept in one small XML file
//
//   <config>
//       <SECTION>
//           <ITEM description="what it is for">TEXT</ITEM>
//       </SECTION>
//   </config>
//
// A store reads the file once and holds it in memory; each change rewrites the file at once. At any
// moment, also after a crash or a power failure, the file on the disk is the last complete one.
// Comments, elements and attributes that have no meaning here, the file's mode and a link in its
// place survive each write. A file that is missing or damaged is never replaced by an empty one: it
// has to be made, with its root element, by hand or from a shipped default.
//
// Any thread may read and write items at the same time. Two stores of one file, in one process or
// in several, do not see each other's changes, and a save undoes all that the other has saved since
// this store read the file: make one store and share it, or open every one of them with
// OtherWriters::merged.
//
// Nothing is thrown: when memory does not suffice, which is logged, there is no store, no item, no
// change or a document without a root element.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/export.h"
#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/xml/Document.h"

namespace yg {

/// What a store does about others that write its file.
enum class OtherWriters {
    /// Nothing: a save writes what the store holds.
    ignored,
    /// A save keeps what others have written. It takes the advisory lock of the file's folder, and
    /// if the file is not as the store last read or wrote it, it makes the store's own changes that
    /// are not on the disk yet on what the file is now, one after the other, each as setConfigItem
    /// does. The outcome is written and is what the store holds from then on; changes of others are
    /// seen only then. So stores that all merge, in any number of processes of one machine, lose no
    /// saved change to each other, whichever of the processes are killed. Of two changes of an item
    /// the one saved last stays.
    ///
    /// A file that cannot be read or is no longer well-formed is not written over; a file that is
    /// gone is written as the store holds it. A change that could not be saved, also because
    /// another process kept the lock for 10 seconds, stays in memory and is made again by the next
    /// save. Stores that ignore others, saveAppConfigFile and programs that do not take the lock
    /// replace the whole file as ever.
    merged,
};

class Reporter;

class YG_EXPORT YGAppConfigManager {
public:
    /// A store of the file of this name in the user's storage. Null when the name is absent or
    /// empty, or when the host has no path for it. When the file is missing or not well-formed XML
    /// the store is empty; nothing is logged. Findings, also of what a call cannot do, go to the
    /// sink; see diagnostics/DiagnosticsSink.h.
    static std::shared_ptr<YGAppConfigManager> initWithFileName(
        OptionalText fileName, DiagnosticsSink* sink = nullptr,
        OtherWriters otherWriters = OtherWriters::ignored);

    /// Always null: a store needs a file name.
    [[deprecated(
        "answers null always: call initWithFileName")]] static std::shared_ptr<YGAppConfigManager>
    init() {
        return nullptr;
    }

    YGAppConfigManager(const YGAppConfigManager&) = delete;
    YGAppConfigManager& operator=(const YGAppConfigManager&) = delete;
    virtual ~YGAppConfigManager();

    /// Stores a text as the item's and rewrites the file. An item that is there keeps its
    /// description; a new one becomes the last of its section, a new section the last of the file,
    /// and `itemDescription`, if there is one, is written beside it.
    ///
    /// False, with nothing changed, when section, item or text is absent, section or item is empty
    /// or no element name, or when the file could not be read with it at the next start, for which
    /// the limits of xml::Document hold: a text or a description of more than 10,000,000 bytes with
    /// its escapes ("&lt;" is four), a name of more than 50,000 bytes, one name more than the
    /// 100,000 different ones of a document. The finding is then `no-element-name` or
    /// `unreadable-setting`. True otherwise, also when the file could not be written (the change is
    /// then kept in memory; the finding `unsaved-file` says why) or its root element is missing or
    /// not named config (the change is then lost; the finding is `lost-setting`). Waits for the
    /// disk; readers do not.
    virtual bool setConfigItem(OptionalText section, OptionalText itemName,
                               OptionalText itemDescription, OptionalText itemText);

    /// The item's text; absent when there is no such item, or when a name is absent or empty. Of
    /// several items of one name the first in the file counts. Names go into an XPath query as they
    /// stand, here and above; one that is not an XML name is program text, whose evaluation has no
    /// bound. No other thread waits for it.
    std::optional<std::string> getItemText(OptionalText section, OptionalText itemName) const;

    /// The names of the sections in the order of the file, each once. Empty without a file and when
    /// memory does not suffice, here and below.
    std::vector<std::string> sectionNames() const;

    /// The names of a section's items in the order of the file, each once. Empty when
    /// there is no such section.
    std::vector<std::string> itemNames(OptionalText section) const;

    /// The host's path of a file in the user's storage, one that can be written if `isNeedWrite`.
    static std::optional<std::string> getFilePath(OptionalText fileName, bool isNeedWrite);

    /// Writes a document as the file of this name, pretty-printed. Does nothing without a document
    /// or a root element. If the host has no path, if the file could not be read again, or if the
    /// write fails, the finding `unsaved-file` says so, and why. Takes no lock: the document must
    /// not change meanwhile.
    void saveAppConfigFile(const xml::Document* document, OptionalText fileName) const;

    /// A copy of the whole file as it is in memory (the name is spelt so in the interface);
    /// without a root element when the file was missing or damaged.
    xml::Document docment() const;

    /// The name given at construction.
    const std::string& fileName() const { return fileName_; }

protected:
    YGAppConfigManager(std::string_view fileName, const std::string& path, DiagnosticsSink* sink,
                       OtherWriters otherWriters = OtherWriters::ignored);

    /// The path to read a store's file from; absent when there can be no store.
    static std::optional<std::string> pathToRead(std::optional<std::string_view> fileName);

private:
    using Texts = RecordMap<std::string>;

    using Index = RecordMap<std::shared_ptr<Texts>>;

    /// One call of setConfigItem.
    struct Setting {
        std::string section;
        std::string item;
        std::optional<std::string> description;
        std::string text;
    };
    struct FileSeen;
    struct Changed;
    struct Outcome;

    static bool isPlain(const Setting& setting);
    static std::string pathOf(const Setting& setting);
    static bool apply(const Setting& setting, const xml::Document& document);
    static std::optional<Changed> changed(const xml::Document& document,
                                          const std::vector<Setting>& unsaved,
                                          const Setting& setting);
    static void remember(const Setting& setting, std::vector<Setting>& unsaved);
    bool change(const Setting& setting, Outcome& outcome);
    YG_HIDDEN void store(Changed changed, FileSeen file, const Setting& setting, Outcome& outcome);
    FileSeen lookAtFile() const;
    FileSeen lockFile(const FileSeen& seen) const;
    void readFile(FileSeen& file, const FileSeen& seen) const;
    xml::Document current() const;
    static Index indexOf(const xml::Document& document, const Reporter& reporter);

    const std::string fileName_;
    const std::string pathRead_;  ///< at first; findings name it
    const OtherWriters otherWriters_;
    DiagnosticsSink* const sink_;

    /// Held by whoever changes the store, while the file is written too. Guards what follows.
    std::mutex changing_;
    std::uint64_t generation_ = 0;  ///< how often `docment_` was replaced
    /// For merging: the path of the file that `docment_` was made from, its bytes unless they are
    /// not known, and the changes in `docment_` that it does not have.
    std::string knownPath_;
    std::optional<std::string> known_;
    std::vector<Setting> unsaved_;

    /// Guards `docment_` and `texts_`, which are replaced under both locks and never changed.
    mutable std::mutex lock_;
    xml::Document docment_;
    /// What a query by two plain names finds: the first text of each item, by section.
    Index texts_;
};

}  // namespace yg
