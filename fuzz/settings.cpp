// SPDX-License-Identifier: MIT
//
// A settings file with reads and writes: answers are those of the queries that the names make, they
// are the same with a listener, and what was written reads back after a restart.
//
// The input is cut at a line "=====" into the stored file and lines "SECTION|ITEM" to read or
// "SECTION|ITEM|DESCRIPTION|TEXT" to write.
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGReadonlyAppConfigManager.h"
#include "YGConfigManager/text/Split.h"

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

/// What the query of two names finds in a document.
std::optional<std::string> queried(const xml::Document& document, const std::string& section,
                                   const std::string& item) {
    if (section.empty() || item.empty())
        return std::nullopt;
    const auto found = document.query("config/" + section + "/" + item);
    return found.empty() ? std::nullopt : std::optional(found.front().stringValue());
}

/// Every item by the names of its elements.
void readAll(const YGAppConfigManager& store, const YGAppConfigManager& other) {
    const xml::Document document = store.docment();
    for (const xml::Node& item : document.query("/*/*/*")) {
        const std::string name(item.name());
        const std::string section(item.parent().name());
        const auto text = store.getItemText(section, name);
        require(text == queried(document, section, name), "an item is what the query finds");
        require(text == other.getItemText(section, name), "both stores have the item");
    }
}

void write(YGAppConfigManager& store, YGAppConfigManager& observed, const StoredFile& file,
           const std::vector<std::string>& words) {
    const std::string before = file.bytes();
    const std::string treeBefore = store.docment().serialise(xml::Form::pretty);
    const bool isStored = store.setConfigItem(words[0], words[1], words[2], words[3]);
    const std::string after = file.bytes();
    const std::string tree = store.docment().serialise(xml::Form::pretty);
    require(observed.setConfigItem(words[0], words[1], words[2], words[3]) == isStored,
            "a listener changes no answer");
    require(file.bytes() == after, "a listener changes no byte");
    require(isStored || (after == before && tree == treeBefore), "a refusal changes nothing");
    require(isStored == false || tree.empty() || after == tree, "what is stored is written");
    require(!tree.empty() || after == before, "without a root nothing is written");
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
    const std::string stored(takeUntil(rest, "=====\n"));
    file.put(stored);
    LookingSink sink;
    const auto store = YGAppConfigManager::initWithFileName("file");
    const auto observed = YGAppConfigManager::initWithFileName("file", &sink);
    const auto readonly = YGReadonlyAppConfigManager::initWithFileName("file");
    readAll(*store, *observed);

    int operations = 0;
    for (const std::string& line : text::split(rest, '\n')) {
        const std::vector<std::string> words = text::split(line, '|');
        if (words.size() < 2 || ++operations > 16)
            continue;
        const auto text = store->getItemText(words[0], words[1]);
        require(text == queried(store->docment(), words[0], words[1]),
                "a read is what the query finds");
        require(text == observed->getItemText(words[0], words[1]), "a listener changes no answer");
        if (words.size() == 4)
            write(*store, *observed, file, words);
    }
    if (file.bytes() != stored) {
        const auto next = YGAppConfigManager::initWithFileName("file");
        require(static_cast<bool>(next->docment().root()), "what was written is XML");
        require(next->docment().serialise(xml::Form::pretty) == file.bytes(),
                "written again it is the same");
        readAll(*store, *next);
    }
    const std::string bytes = file.bytes();
    require(!readonly->setConfigItem("a", "b", "", "c") && file.bytes() == bytes,
            "the readonly store never writes");
    require(host->log.empty(), "nothing is logged");
    return 0;
}
