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
// Any thread may read and write items at the same time. Two stores of one file do not see each
// other's changes, and the one that writes last wins: make one store and share it.
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

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/export.h"
#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/xml/Document.h"

namespace yg {

class YG_EXPORT YGAppConfigManager {
public:
    /// A store of the file of this name in the user's storage. Null when the name is absent or
    /// empty, or when the host has no path for it. When the file is missing or not well-formed XML
    /// the store is empty; nothing is logged. `sink` hears of what the file has wrong and of what a
    /// call cannot do, on the calling thread and under no lock; it must outlive the store.
    static std::shared_ptr<YGAppConfigManager> initWithFileName(OptionalText fileName,
                                                                DiagnosticsSink* sink = nullptr);

    /// Always null: a store needs a file name.
    static std::shared_ptr<YGAppConfigManager> init() { return nullptr; }

    YGAppConfigManager(const YGAppConfigManager&) = delete;
    YGAppConfigManager& operator=(const YGAppConfigManager&) = delete;
    virtual ~YGAppConfigManager();

    /// Stores a text as the item's and rewrites the file. An item that is there keeps its
    /// description; a new one becomes the last of its section, a new section the last of the file,
    /// and `itemDescription`, if there is one, is written beside it.
    ///
    /// False, with nothing changed, when section, item or text is absent, section or item is empty
    /// or no element name, or when the file could not be read with it at the next start: the limits
    /// of xml::Document hold for names, for the text with its escapes, and for the whole. True
    /// otherwise, also when the file could not be written (the change is
    /// then kept in memory) or has no root element (it is then lost). Waits for the disk.
    virtual bool setConfigItem(OptionalText section, OptionalText itemName,
                               OptionalText itemDescription, OptionalText itemText);

    /// The item's text; absent when there is no such item, or when a name is absent or empty. Of
    /// several items of one name the first in the file counts. Names go into an XPath query as they
    /// stand, here and above; one that is not an XML name is program text, whose evaluation has no
    /// bound. No other thread waits for it.
    std::optional<std::string> getItemText(OptionalText section, OptionalText itemName) const;

    /// The host's path of a file in the user's storage, one that can be written if `isNeedWrite`.
    static std::optional<std::string> getFilePath(OptionalText fileName, bool isNeedWrite);

    /// Writes a document as the file of this name, pretty-printed. Nothing happens when there is no
    /// document, no path or no root element, or when the file could not be read again; a failed
    /// write is ignored. Takes no lock: the document must not change meanwhile.
    void saveAppConfigFile(const xml::Document* document, OptionalText fileName) const;

    /// A copy of the whole file as it stands in memory (the name is spelt so in the interface);
    /// without a root element when the file was missing or damaged.
    xml::Document docment() const;

    /// The name given at construction.
    const std::string& fileName() const { return fileName_; }

protected:
    YGAppConfigManager(std::string_view fileName, const std::string& path, DiagnosticsSink* sink);

    /// The path to read a store's file from; absent when there can be no store.
    static std::optional<std::string> pathToRead(std::optional<std::string_view> fileName);

private:
    using Texts = RecordMap<std::string>;

    using Index = RecordMap<std::shared_ptr<Texts>>;

    struct Change {
        xml::Document document;
        std::string bytes;   ///< the file; empty without a root element
        std::string stored;  ///< the item's text as it was stored
    };

    static std::optional<Change> changeOf(const xml::Document& document, std::string_view section,
                                          std::string_view item,
                                          const std::optional<std::string_view>& description,
                                          std::string_view text);
    xml::Document current() const;
    static Texts& textsOf(std::string_view section, Index& index);
    static Index indexOf(const xml::Document& document);

    /// Replaced whole, never changed.
    xml::Document docment_;
    std::uint64_t generation_ = 0;  ///< how often it was replaced
    const std::string fileName_;
    /// Guards `docment_`, `generation_` and `texts_`.
    mutable std::mutex lock_;
    /// What a query by two plain names finds: the first text of each item, by section.
    Index texts_;
    DiagnosticsSink* const sink_;
};

}  // namespace yg
