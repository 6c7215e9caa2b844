// SPDX-License-Identifier: MIT
//
// Explanations of servers, settings, addresses of web pages and request URLs.
#include <algorithm>
#include <cstdio>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/YGFrameComFun.h"
#include "YGConfigManager/inspection/Explanation.h"
#include "YGConfigManager/inspection/StoredNames.h"
#include "YGConfigManager/inspection/Trace.h"
#include "YGConfigManager/inspection/Wording.h"
#include "YGConfigManager/servers/AddressChoice.h"
#include "YGConfigManager/servers/AddressShares.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"
#include "YGConfigManager/text/Numbers.h"

namespace yg {

namespace {

using Outcome = ExplanationStep::Outcome;

constexpr std::string_view requestUrlFile = "request_urls_json.txt";

/// The shipped file that the user's own one hides; "" when none is hidden.
std::string hiddenFile(const Trace& trace, const std::string& file) {
    constexpr std::string_view own = "user/";
    if (!file.starts_with(own))
        return "";
    std::string shipped = "storage/" + file.substr(own.size());
    return trace.files().file(shipped).isRead() ? shipped : "";
}

/// A step for what the shipped file has when the user's own one is read.
void addHidden(Explanation& explanation, const Trace& trace, const std::string& file,
               const StoredNames& names, std::string_view group, std::string_view name) {
    for (const StoredName& each : names) {
        if (each.group == group && each.name == name)
            explanation.steps.push_back(
                {Outcome::lost,
                 trace.place(each.place, "The shipped file has this, too, but " + file +
                                             ", the user's own file, is read in its place.")});
    }
}

/// Nothing of the name, or no file.
void addNothing(Explanation& explanation, const Trace& trace, const std::string& file,
                std::string message, std::string_view name, const std::vector<std::string>& known) {
    trace.addUnreadFiles(explanation);
    RootPlace place;
    place.file = file;
    place.message = std::move(message);
    addMissing(explanation, std::move(place), name, known);
}

std::vector<std::string> namesOf(const StoredNames& names, std::string_view kind,
                                 std::string_view group) {
    std::vector<std::string> known;
    for (const StoredName& each : names) {
        if (each.kind == kind && each.group == group)
            known.push_back(each.name);
    }
    return known;
}

// ---- Servers ----

struct FoundServer {
    std::shared_ptr<YGServerAddrTag> server;  ///< null when there is none
    std::string type;
};

FoundServer findServer(const YGServerCfgLoader& loader, std::optional<std::uint64_t> type,
                       std::string_view name) {
    FoundServer found;
    forEachField(loader, [&](std::string_view, const auto& field) {
        if constexpr (std::is_same_v<decltype(field),
                                     const std::shared_ptr<YGServerAddrListTag>&>) {
            if (found.server || !field || !field->serverAddrList() ||
                (type && field->serverType() != *type))
                return;
            for (const auto& server : *field->serverAddrList()) {
                if (server->serverName() == std::string(name)) {
                    found = {server, std::to_string(field->serverType())};
                    return;
                }
            }
        }
    });
    return found;
}

std::string percent(double chance) {
    char text[32];
    const int size = std::snprintf(text, sizeof text, "%.4g %%", chance * 100);
    return {text, static_cast<std::size_t>(size)};
}

/// What can be drawn, and what cannot.
void addAddresses(Explanation& explanation, const Trace& trace, const xml::Element& entry) {
    const std::string addrs(entry.attribute("addrs").value_or(""));
    const std::vector<AddressShare> shares = addressShares(addrs);
    forEachItem(addrs, [&](std::string_view item) {
        const AddressItem address(item);
        const auto offset = static_cast<std::size_t>(item.data() - addrs.data());
        const std::string target = std::string(address.host()).append(":").append(address.port());
        const auto share = std::ranges::find(shares, target, &AddressShare::address);
        std::string text =
            "Address " + quoted(address.isOffered() ? std::string_view(target) : item);
        if (!address.isOffered() || share == shares.end())
            text += " is never chosen: it has no port.";
        else if (shares.size() == 1)
            text += " is the only one that can be chosen.";
        else
            text += " has a share of " + percent(share->chance()) + " (" +
                    std::to_string(share->numbers) + " of " + std::to_string(share->ofNumbers) +
                    " random numbers)" +
                    (address.hasWeight()
                         ? "; its weight, " + std::string(address.weight()) + ", has no effect."
                         : ".");
        explanation.steps.push_back(
            {address.isOffered() ? Outcome::taken : Outcome::lost,
             trace.place(entry.valuePlace("addrs", offset, item.size()).value_or(Place()),
                         std::move(text))});
    });
    explanation.remarks.push_back(
        shares.size() > 1 ? "A reload draws again: it changes the address with a chance of " +
                                percent(chanceOfAnother(shares, shares)) + "."
                          : "A reload of the same file changes nothing.");
}

}  // namespace

Explanation Explainer::server(std::optional<std::uint64_t> type, OptionalText name,
                              bool isGray) const {
    return guarded(explaining, [&] {
        Explanation explanation;
        Trace trace(root_);
        const auto loader = YGServerCfgLoader::initWithIsGray(isGray, &trace);
        const std::string file =
            loader && loader->configPath() ? trace.files().nameOf(*loader->configPath()) : "";
        const FoundServer found = loader ? findServer(*loader, type, *name) : FoundServer();
        const std::string wanted = found.server ? found.type : type ? std::to_string(*type) : "";
        if (!wanted.empty())
            trace.addDefinitions(explanation, trace.definitions(Naming::serverType, wanted),
                                 "server type " + wanted);
        const auto isOfType = [&](const xml::Element& entry) {
            const auto own = xml::Element(entry.parent()).attribute("type");
            return own && std::to_string(text::leadingInt32(*own)) == wanted;
        };
        std::vector<Trace::Definition> entries = trace.definitions(Naming::server, *name, isOfType);
        // Each counted entry gives a server of the name; a look-up by name finds the first.
        const auto first = std::ranges::find_if(entries, &Trace::Definition::counts);
        for (Trace::Definition& each : entries)
            each.counts = first != entries.end() && each.element == first->element;
        const xml::Element entry =
            trace.addDefinitions(explanation, entries, "server " + quoted(*name));
        if (found.server) {
            explanation.answer = std::shared_ptr<const YGServerAddrTag>(found.server);
            explanation.from = trace.placeOf(entry, "");
            addAddresses(explanation, trace, entry);
        } else {
            explanation.substitute = "null";
            addNothing(explanation, trace, file,
                       "The file has no server " + quoted(*name) +
                           (wanted.empty() ? "." : " of type " + wanted + "."),
                       *name, trace.namesOf(Naming::server));
        }
        const std::string hidden = hiddenFile(trace, file);
        if (!hidden.empty()) {
            RootPlace place;
            place.file = hidden;
            place.message = "This shipped file is not read, because " + file +
                            ", the user's own file, is there.";
            explanation.steps.push_back({Outcome::lost, std::move(place)});
        }
        return explanation;
    });
}

Explanation Explainer::setting(OptionalText file, OptionalText section, OptionalText item) const {
    return guarded(explaining, [&] {
        Explanation explanation;
        Trace trace(root_);
        const auto store = YGAppConfigManager::initWithFileName(file, &trace);
        const auto answer = store ? store->getItemText(section, item) : std::nullopt;
        const std::string path = trace.files().nameOf(
            YGAppConfigManager::getFilePath(file, false).value_or(std::string(*file)));
        const std::string what = "item " + quoted(*section) + "/" + quoted(*item);
        StoredNames names;
        std::vector<Trace::Definition> items;
        for (const auto& [each, parsed] : trace.parsed()) {
            names = settingsNames(parsed.document, each);
            for (const xml::Element& inRoot : parsed.document.root().elements()) {
                if (inRoot.name() != *section)
                    continue;
                for (const xml::Element& inSection : inRoot.elements()) {
                    if (inSection.name() == *item)
                        items.push_back(trace.judged(inSection, {}));
                }
            }
        }
        const xml::Element taken = trace.addDefinitions(explanation, items, what);
        if (answer) {
            explanation.answer = *answer;
            if (taken)
                explanation.from = trace.placeOf(taken, "");
        } else {
            explanation.substitute = "null";
            std::vector<std::string> known = namesOf(names, "setting", *section);
            std::string message = "The file has no " + what + ".";
            std::string_view meant = *item;
            if (known.empty()) {
                for (const StoredName& each : names)
                    known.push_back(each.group);
                meant = *section;
                message = "The file has no section " + quoted(*section) + " with items.";
            }
            addNothing(explanation, trace, path, std::move(message), meant, known);
        }
        if (const std::string hidden = hiddenFile(trace, path); !hidden.empty())
            addHidden(explanation, trace, path,
                      settingsNames(trace.files().file(hidden).document().document,
                                    trace.files().pathOf(hidden)),
                      *section, *item);
        return explanation;
    });
}

Explanation Explainer::webPage(OptionalText file, OptionalText key) const {
    return guarded(explaining, [&] {
        Explanation explanation;
        Trace trace(root_);
        const auto table = YGWebPageUrlConfig::initWithFileName(file, &trace);
        if (!table) {
            explanation.substitute = "null";
            addNothing(explanation, trace, std::string(*file),
                       "The host has no path for this file.", *key, {});
            return explanation;
        }
        const std::string path = trace.files().nameOf(
            YGWebPageUrlConfig::getFilePath(file, false).value_or(std::string(*file)));
        const std::vector<Trace::Definition> entries = trace.definitions(Naming::webPage, *key);
        const xml::Element taken =
            trace.addDefinitions(explanation, entries, "web page " + quoted(*key));
        explanation.answer = table->getWebPageUrlByKey(key);
        if (taken) {
            explanation.from = trace.placeOf(taken, "");
        } else {
            explanation.substitute = "about:blank";
            addNothing(explanation, trace, path,
                       "The table has no address of the key " + quoted(*key) + ".", *key,
                       trace.namesOf(Naming::webPage));
        }
        if (const std::string hidden = hiddenFile(trace, path); !hidden.empty()) {
            Trace shipped(root_);
            shipped.parsedFile(trace.files().pathOf(hidden), trace.files().file(hidden).document());
            for (const Trace::Definition& each : shipped.definitions(Naming::webPage, *key))
                explanation.steps.push_back(
                    {Outcome::lost,
                     trace.placeOf(each.element, "The shipped file has this, too, but " + path +
                                                     ", the user's own file, is read in its "
                                                     "place.")});
        }
        return explanation;
    });
}

Explanation Explainer::requestUrl(OptionalText key) const {
    return guarded(explaining, [&] {
        Explanation explanation;
        Trace trace(root_);
        const auto manager = YGHttpReqUrlMgr::make(&trace);
        if (manager)
            manager->readUrlModelFromFile();
        const auto answer = manager ? manager->httpReqUrlStringWithUrlKey(key) : std::nullopt;
        const std::string path = trace.files().nameOf(trace.gathering().lastRead());
        const auto names = requestUrlNames(trace.files().file(path).bytes(), path);
        bool isFirst = true;
        for (const StoredName& each : names.value_or(StoredNames())) {
            if (each.name != *key || !isFirst)
                continue;
            isFirst = false;
            explanation.from = trace.place(each.content ? each.contentPlace : each.place, "");
            explanation.steps.push_back(
                {Outcome::taken, trace.place(each.place, "URL " + quoted(*key) + " counts.")});
        }
        for (const Found& found : trace.gathering().found()) {
            const Finding& finding = found.finding;
            if (finding.rule.name == "duplicate-url-key" && finding.value == *key)
                explanation.steps.push_back(
                    {Outcome::lost, trace.place(finding.place, messageOf(found))});
        }
        if (answer) {
            explanation.answer = *answer;
        } else {
            explanation.substitute = "null";
            explanation.from.reset();
            addNothing(explanation, trace, path.empty() ? std::string(requestUrlFile) : path,
                       isFirst ? "The list has no entry of the key " + quoted(*key) + "."
                               : "The entry has no address.",
                       *key, namesOf(names.value_or(StoredNames()), "key", ""));
        }
        if (const std::string hidden = hiddenFile(trace, path); !hidden.empty()) {
            if (const auto shipped = requestUrlNames(trace.files().file(hidden).bytes(), hidden))
                addHidden(explanation, trace, path, *shipped, "", *key);
        }
        return explanation;
    });
}

}  // namespace yg
