// SPDX-License-Identifier: MIT
//
// A web page table: each lookup is what its query finds, the same with a listener; a replacement is
// applied and saved as a whole or not at all; and texts are replaced.
//
// The input is cut at lines "=====" into the stored table, its replacement, and keys, one to a
// line.
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/settings/YGWebPageUrlConfig.h"
#include "YGConfigManager/text/Split.h"
#include "YGConfigManager/text/Utf8.h"

#include "Loaders.h"
#include "StoredFile.h"
#include "Target.h"

namespace {

using namespace yg;
using yg::fuzz::LoggingHost;
using yg::fuzz::LookingSink;
using yg::fuzz::require;
using yg::fuzz::StoredFile;
using yg::fuzz::takeUntil;
using yg::fuzz::textOf;

void lookUp(const YGWebPageUrlConfig& table, const YGWebPageUrlConfig& other,
            const std::string& key) {
    const std::string address = table.getWebPageUrlByKey(key);
    require(other.getWebPageUrlByKey(key) == address, "both tables have the address");
    std::vector<xml::Node> found;
    if (!key.empty() && text::isValidUtf8(key))
        found = table.docment().query("urls/url[@key='" + key + "']");
    require(address == (found.empty() ? "about:blank" : found.front().stringValue()),
            "an address is what the query finds");
}

void lookUpAll(const YGWebPageUrlConfig& table, const YGWebPageUrlConfig& other,
               const std::vector<std::string>& keys) {
    for (const xml::Node& entry : table.docment().query("//*[@key]"))
        lookUp(table, other, std::string(*xml::Element(entry).attribute("key")));
    for (const std::string& key : keys)
        lookUp(table, other, key);
}

void replaceTexts(const std::vector<std::string>& texts) {
    if (texts.size() < 3)
        return;
    const auto once = YGWebPageUrlConfig::replaceSubstring(texts[0], texts[1], texts[2]);
    require(once.has_value(), "a text stays a text");
    require(texts[0].find(texts[1]) != std::string::npos || *once == texts[0],
            "without the target the text stays");
    const auto back = YGWebPageUrlConfig::replaceSubstring(texts[0], texts[1], texts[1]);
    require(back->size() <= texts[0].size() * (texts[1].size() + 1), "a text does not run away");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const StoredFile file;
    static const auto host = std::make_shared<LoggingHost>();
    static const std::shared_ptr<Host> before = setHost(host);
    static_cast<void>(before);
    host->storagePath = file.path();
    host->log.clear();

    std::string_view rest = textOf(data, size);
    file.put(takeUntil(rest, "=====\n"));
    const std::string_view replacement = takeUntil(rest, "=====\n");
    std::vector<std::string> keys = text::split(rest, '\n');
    if (keys.size() > 16)
        keys.resize(16);

    LookingSink sink;
    const auto table = YGWebPageUrlConfig::initWithFileName("file");
    const auto observed = YGWebPageUrlConfig::initWithFileName("file", &sink);
    lookUpAll(*table, *observed, keys);

    const std::string stored = file.bytes();
    const std::string tree = table->docment().serialise(xml::Form::pretty);
    const bool isReplaced = table->replaceDataFromServer(replacement);
    const std::string saved = file.bytes();
    require(observed->replaceDataFromServer(replacement) == isReplaced,
            "a listener changes no answer");
    require(file.bytes() == saved, "a listener changes no byte");
    if (isReplaced) {
        const auto next = YGWebPageUrlConfig::initWithFileName("file");
        require(next->docment().serialise(xml::Form::pretty) == saved,
                "written again it is the same");
        lookUpAll(*table, *next, keys);
    } else {
        require(saved == stored, "a refused table is not saved");
        // A table that cannot be saved is in place all the same.
        const auto text = YGWebPageUrlConfig::replaceSubstring(replacement, "&", "&amp;");
        const xml::ParseResult parsed = xml::Document::parseText(*text);
        require(table->docment().serialise(xml::Form::pretty) ==
                    (parsed ? parsed.document.serialise(xml::Form::pretty) : tree),
                "a table that is not well-formed changes nothing");
    }
    replaceTexts(keys);
    return 0;
}
