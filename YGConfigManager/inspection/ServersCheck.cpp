// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "YGConfigManager/inspection/Checks.h"
#include "YGConfigManager/inspection/NarrowForm.h"
#include "YGConfigManager/inspection/StoredNames.h"
#include "YGConfigManager/servers/AddressChoice.h"
#include "YGConfigManager/text/Characters.h"
#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/text/Numbers.h"
#include "YGConfigManager/text/Utf8.h"

namespace yg {

namespace {

// ---- Addresses ----

/// How many addresses of one entry are reported as odd.
constexpr std::size_t mostOddAddresses = 100;

/// How many servers are reported that not all files have.
constexpr std::size_t mostServersInSomeFiles = 100;

bool isPlainPort(std::string_view port) {
    const auto [value, oddity] = text::readLeadingInt32(port);
    return oddity == text::NumberOddity::none && value >= 1 && value <= 65535;
}

/// "40", "2.5", "40%".
bool isWeight(std::string_view text) {
    text = text::withoutBlanksAround(text);
    if (text.ends_with('%'))
        text.remove_suffix(1);
    std::size_t points = 0;
    return !text.empty() && std::ranges::all_of(text, [&](char c) {
        return text::isDigit(c) || (c == '.' && ++points == 1);
    });
}

/// Whether no host can be named so. Letters beyond ASCII can.
bool isOddHost(std::string_view host) {
    constexpr std::string_view never = " \t\r\n,|/\\@?#\"'<>";
    while (!host.empty()) {
        const text::Character next = text::firstCharacter(host);
        if (narrowFormOf(next.value) != '\0' || never.find(host.front()) != std::string_view::npos)
            return true;
        host.remove_prefix(next.size);
    }
    return false;
}

/// The text with the separators that addresses have: "a:1，b：2" becomes "a:1;b:2".
std::string withPlainSeparators(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const text::Character next = text::firstCharacter(text);
        const char narrow = narrowFormOf(next.value);
        const char c = narrow != '\0' ? narrow : text.front();
        text.remove_prefix(next.size);
        if (next.size > 1 && narrow == '\0') {
            plain.append(text.data() - next.size, next.size);
            continue;
        }
        const bool isBlank = text::isWhiteSpace(c);
        const bool isEnd = c == ';' || c == ',' || c == '|';
        const char last = plain.empty() ? ';' : plain.back();
        if (isBlank) {
            // What stands beside a separator goes, what stands between addresses is one.
            if (last != ';' && last != ':' && last != ' ')
                plain += ' ';
            continue;
        }
        if (last == ' ') {
            if (isEnd || c == ':')
                plain.pop_back();
            else
                plain.back() = ';';
        }
        plain += isEnd ? ';' : c;
    }
    if (plain.ends_with(' '))
        plain.pop_back();
    return plain;
}

std::string_view withoutScheme(std::string_view address) {
    const std::size_t scheme = address.find("://");
    if (scheme != std::string_view::npos)
        address.remove_prefix(scheme + 3);
    return address.ends_with('/') ? address.substr(0, address.size() - 1) : address;
}

/// The addresses that were probably meant; absent when that cannot be said.
std::optional<std::string> addressesMeantBy(std::string_view text) {
    const std::string plain = withPlainSeparators(text);
    std::string meant;
    bool isSound = true;
    forEachItem(plain, [&](std::string_view piece) {
        const std::string_view address = withoutScheme(piece);
        if (address.empty())
            return;
        const AddressItem item(address);
        isSound = isSound && item.isOffered() && item.count() <= 3 &&
                  (!item.hasWeight() || isWeight(item.weight())) && !item.host().empty() &&
                  !isOddHost(item.host()) && isPlainPort(item.port());
        meant.append(meant.empty() ? "" : ";").append(address);
    });
    return isSound && !meant.empty() && meant != text ? std::optional(meant) : std::nullopt;
}

/// Where an address is that another finding explains.
using Explained = std::map<std::string, std::map<TextPoint, TextPoint>>;

bool contains(const Explained& explained, const Place& place) {
    const auto file = explained.find(place.file);
    if (file == explained.end())
        return false;
    const auto next = file->second.upper_bound(place.begin);
    return next != file->second.begin() && place.end <= std::prev(next)->second;
}

/// Addresses whose host is not what its author wrote as one.
void checkHosts(const xml::Element& entry, Explained& explained, Gathering& findings) {
    const std::string_view addrs = entry.attribute("addrs").value_or("");
    std::size_t reported = 0;
    forEachItem(addrs, [&](std::string_view address) {
        const AddressItem item(address);
        // The loader reports all others.
        if (!item.isOffered() || item.count() > 3 || item.host().empty() ||
            address.find("::") != std::string_view::npos ||
            address.find('[') != std::string_view::npos)
            return;
        const bool hasOddWeight = item.hasWeight() && !isWeight(item.weight());
        if ((!hasOddWeight && !isOddHost(item.host())) || ++reported > mostOddAddresses)
            return;
        const auto offset = static_cast<std::size_t>(address.data() - addrs.data());
        const Place place = entry.valuePlace("addrs", offset, address.size()).value_or(Place());
        explained[findings.fileOf(place)].emplace(place.begin, place.end);
        findings.onPart(
            hasOddWeight ? "odd-address-weight"_rule : "odd-server-host"_rule, entry, "addrs",
            offset, address.size(),
            {.value = std::string(address),
             .message = text::format(
                 "'%@': %@; the host is read as '%@' and the port as '%@'.", address,
                 hasOddWeight ? "of three parts the first is a weight, which has no effect"
                              : "no host has blanks, commas or full-width characters",
                 item.host(), item.port()),
             .suggestion = addressesMeantBy(address)});
    });
}

bool isAbout(const Found& found, std::initializer_list<std::string_view> rules) {
    return std::ranges::find(rules, found.finding.rule.name) != rules.end();
}

// ---- Files ----

/// A shipped server file that can be read.
struct Shipped {
    std::string file;  ///< below the root
    xml::Element root;
    StoredNames names;
};

Place inFile(const std::optional<Place>& place, const std::string& path) {
    Place found = place.value_or(Place());
    found.file = path;
    return found;
}

std::vector<Shipped> shippedFiles(const Loaded& loaded, const Gathering& findings) {
    std::vector<Shipped> files;
    for (const LoadedServers& servers : loaded.servers) {
        if (!servers.file.starts_with(shippedFolder))
            continue;
        const xml::Element root = loaded.files.file(servers.file).document().document.root();
        if (root && root.name() == "application")
            files.push_back({servers.file, root,
                             serverNames(findings.names(), loaded.files.pathOf(servers.file))});
    }
    return files;
}

std::string listed(const std::vector<std::string>& names) {
    std::string list;
    for (std::size_t at = 0; at < names.size(); ++at)
        list.append(at == 0 ? "" : at + 1 < names.size() ? ", " : " and ").append(names[at]);
    return list;
}

/// Each type and each server that some of the files have is reported once, in the first of them;
/// of servers the first hundred.
void checkDifferences(const Loaded& loaded, const std::vector<Shipped>& files,
                      Gathering& findings) {
    using Key = std::tuple<std::string_view, std::string, std::string>;
    std::map<Key, std::vector<const Shipped*>> lackingFiles;
    for (const Shipped& lacking : files) {
        std::set<Key> counted;
        for (const Shipped& other : files) {
            for (const StoredName& name : missingFrom(lacking.names, other.names)) {
                if (counted.emplace(name.key()).second)
                    lackingFiles[Key(name.key())].push_back(&lacking);
            }
        }
    }
    std::size_t servers = 0;
    for (const Shipped& shipped : files) {
        for (const StoredName& name : shipped.names) {
            const auto found = lackingFiles.find(Key(name.key()));
            if (found == lackingFiles.end())
                continue;
            const bool isType = name.kind == serverTypeKind;
            if (!isType && ++servers > mostServersInSomeFiles)
                continue;
            Details details{.value = name.name};
            std::vector<std::string> lacking;
            for (const Shipped* other : found->second) {
                lacking.push_back(other->file);
                details.related.push_back(
                    {inFile(other->root.tagPlace(), loaded.files.pathOf(other->file)),
                     "this file does not have it"});
            }
            details.message = described(name) + ": " + listed(lacking) +
                              (lacking.size() == 1 ? " does" : " do") + " not have it.";
            findings.onPlace(
                isType ? "server-type-in-some-files"_rule : "server-in-some-files"_rule, name.place,
                std::move(details));
            lackingFiles.erase(found);
        }
    }
}

/// The digest is written when a delivery is saved.
void checkDigest(const Loaded& loaded, const Shipped& shipped, Gathering& findings) {
    const auto digest = shipped.root.attribute("md5");
    if (!digest)
        return;
    const Place place =
        inFile(shipped.root.attributePlace("md5"), loaded.files.pathOf(shipped.file));
    findings.add({{"digest-in-shipped-file"_rule,
                   place,
                   place,
                   std::string(shipped.root.name()),
                   "md5",
                   std::string(*digest),
                   {}}});
}

}  // namespace

void checkServerAddresses(Gathering& findings) {
    Explained explained;
    std::vector<xml::Element> entries;
    for (const NameUse& use : findings.names()) {
        if (use.row->names == Naming::server)
            entries.push_back(use.element);
    }
    for (const xml::Element& entry : entries)
        checkHosts(entry, explained, findings);
    for (Found& found : findings.found()) {
        if (isAbout(found, {"address-with-too-many-parts"}))
            explained[found.finding.place.file].emplace(found.finding.place.begin,
                                                        found.finding.place.end);
        if (!found.suggestion &&
            isAbout(found, {"address-without-port", "odd-server-port",
                            "address-with-too-many-parts", "server-entry-without-address"})) {
            const std::string& value = found.finding.value;
            if (!isAbout(found, {"odd-server-port"}))
                found.suggestion = addressesMeantBy(value);
            else if (const std::string port = withPlainSeparators(value); isPlainPort(port))
                found.suggestion = port;
        }
    }
    // One cause is one finding.
    findings.removeIf([&](const Found& found) {
        return isAbout(found, {"address-weight", "odd-server-port"}) &&
               contains(explained, found.finding.place);
    });
}

void checkServers(const Loaded& loaded, Gathering& findings) {
    checkServerAddresses(findings);
    const std::vector<Shipped> files = shippedFiles(loaded, findings);
    checkDifferences(loaded, files, findings);
    for (const Shipped& shipped : files)
        checkDigest(loaded, shipped, findings);
}

}  // namespace yg
