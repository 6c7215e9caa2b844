// SPDX-License-Identifier: MIT
//
// The addresses of web pages by key, kept in one small XML file
//
//   <urls>
//       <url key="KEY">ADDRESS</url>
//   </urls>
//
// that a server may replace as a whole. Any thread may look up, and replace, at the same time.
// Nothing is thrown: when memory does not suffice, which is logged, there is no table, no change or
// a document without a root element.
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

class Reporter;

class YG_EXPORT YGWebPageUrlConfig {
public:
    /// A table of the file of this name in the user's storage. Null when the name is absent or
    /// empty, or when the host has no path for it. When the file is missing or not well-formed XML
    /// the table is empty; nothing is logged. Findings, also of keys that are not found, go to the
    /// sink; see diagnostics/DiagnosticsSink.h.
    static std::shared_ptr<YGWebPageUrlConfig> initWithFileName(OptionalText fileName,
                                                                DiagnosticsSink* sink = nullptr);

    YGWebPageUrlConfig(const YGWebPageUrlConfig&) = delete;
    YGWebPageUrlConfig& operator=(const YGWebPageUrlConfig&) = delete;
    ~YGWebPageUrlConfig();

    /// The address of the key, "" when it is empty in the file; of several the first in the file.
    /// "about:blank", with a numbered message in the business log, when the key is absent or empty
    /// (1), no UTF-8 (2) or not in the table (3), and when memory runs out (4). A key with an
    /// apostrophe goes into an XPath query as it stands: it is program text, whose evaluation has
    /// no bound. No other thread waits for it.
    std::string getWebPageUrlByKey(OptionalText key) const;

    /// The keys that getWebPageUrlByKey finds, in the order of the file, each once; none with an
    /// apostrophe. Empty when memory does not suffice.
    std::vector<std::string> keys() const;

    /// Replaces the table by a new one in XML, in whose addresses "&" stands for itself (also in
    /// "&amp;", which therefore stays as it is in the address), and rewrites the file: whoever
    /// looks, also after a crash, finds the old one or the new one. Of several replacements at the
    /// same time the file ends as the table does. False when the text is not well-formed or memory
    /// does not suffice for the table, with nothing changed, and when the file could not be
    /// written, with the new table in place. Waits for the disk; lookups do not. In findings about
    /// the new table, columns count each "&" as the five characters "&amp;".
    bool replaceDataFromServer(OptionalText text);

    /// The text with each occurrence of the target replaced, in one pass from left to right. Letter
    /// case does not count, but there must be one occurrence in which it agrees; otherwise, and for
    /// an absent text, the text as it is. Absent as well when memory does not suffice.
    static std::optional<std::string> replaceSubstring(OptionalText text, OptionalText target,
                                                       OptionalText replacement);

    /// The host's path of a file in the user's storage, one that can be written if `isNeedWrite`.
    static std::optional<std::string> getFilePath(OptionalText fileName, bool isNeedWrite);

    /// A copy of the whole table as it is in memory (the name is spelt so in the interface);
    /// without a root element when the file was missing or damaged.
    xml::Document docment() const;

    /// The name given at construction.
    const std::string& fileName() const { return fileName_; }

private:
    using Addresses = RecordMap<std::string>;

    YGWebPageUrlConfig(std::string_view fileName, const std::string& path, DiagnosticsSink* sink);

    std::optional<std::string> find(std::string_view key) const;
    bool replace(std::string_view text);
    xml::Document current() const;
    std::uint64_t install(xml::Document document, const Reporter& reporter);

    xml::Document docment_;
    const std::string fileName_;
    /// Guards `docment_`, which is replaced and never changed, `addresses_` and `generation_`.
    mutable std::mutex lock_;
    /// What a query by a key without an apostrophe finds.
    Addresses addresses_;
    std::uint64_t generation_ = 0;
    DiagnosticsSink* const sink_;
};

}  // namespace yg
