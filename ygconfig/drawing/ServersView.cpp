// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/ServersView.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "ygconfig/drawing/Details.h"
#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

/// The pieces between the separators, one more than there are separators.
std::vector<std::string_view> pieces(std::string_view text, char separator) {
    std::vector<std::string_view> found;
    for (std::size_t end = text.find(separator); end != std::string_view::npos;
         end = text.find(separator)) {
        found.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    found.push_back(text);
    return found;
}

/// One of an entry's addresses, cut as the library cuts it.
struct Offer {
    explicit Offer(std::string_view item) : text(item) {
        const auto parts = pieces(item, ':');
        isUsable = parts.size() > 1;
        const std::size_t host = parts.size() > 2 ? 1 : 0;
        if (isUsable) {
            text = parts[host];
            (text += ':') += parts[host + 1];
        }
        if (host == 1)
            weight = parts[0];
    }

    std::string text;  ///< host:port, or the item
    bool isUsable = false;
    std::optional<std::string> weight;
};

std::string percentage(std::size_t count) {
    std::array<char, 32> digits{};
    std::snprintf(digits.data(), digits.size(), "%.3g%%", 100.0 / static_cast<double>(count));
    return digits.data();
}

std::string textOr(std::optional<std::string_view> text, std::string_view otherwise) {
    return text ? quotedIfEmpty(*text) : std::string(otherwise);
}

}  // namespace

ServersView::ServersView(const YGServerCfgLoader& loader, bool colour)
    : loader_(loader),
      paint_(colour),
      file_(xml::Document::parseFile(loader.configPath().value_or("")).document) {}

std::string ServersView::servers(std::string_view shownPath) const {
    std::vector<std::pair<std::string_view, YGServerCfgLoader::Group>> groups;
    forEachField(loader_, [&](std::string_view name, const auto& value) {
        if constexpr (std::is_convertible_v<decltype(value), YGServerCfgLoader::Group>) {
            if (value)
                groups.emplace_back(name, value);
        }
    });
    std::sort(groups.begin(), groups.end(), [](const auto& left, const auto& right) {
        return left.second->serverType() < right.second->serverType();
    });

    Details details;
    details.add(quotedIfEmpty(shownPath));
    details.add("md5", loader_.configMd5());
    details.addIf(groups.empty(), "nothing was loaded");
    std::string text = paint_(Tone::heading, "Servers") + "  " + std::move(details).text() + '\n';
    for (const auto& [name, group] : groups)
        text += '\n' + drawTree(groupBranch(name, *group), paint_);
    return text;
}

Branch ServersView::groupBranch(std::string_view fieldName,
                                const YGServerAddrListTag& group) const {
    Details details;
    details.add("type " + std::to_string(group.serverType()));
    details.add(fieldName);
    details.add("domain", group.glooxDomain());
    details.addIf(!group.serverAddrList(), paint_(Tone::mark, "not in the file"));
    Branch branch{nameOr(group.serverDescription(), "(no description)"), Tone::page};
    if (group.serverAddrList()) {
        details.addIf(group.serverAddrList()->empty(), "no servers");
        for (const auto& server : *group.serverAddrList()) {
            Details chosen;
            chosen.add(printable(server->ipAddr().value_or("")) + ':' +
                       std::to_string(server->serverPort()));
            chosen.add("key " + std::to_string(server->serverKey()));
            branch.children.push_back({nameOr(server->serverName(), "(no name)"), Tone::element,
                                       std::move(chosen).text()});
        }
        Branch addresses = addressesBranch(group.serverType());
        if (!addresses.children.empty())
            branch.children.push_back(std::move(addresses));
    }
    branch.details = std::move(details).text();
    return branch;
}

Branch ServersView::addressesBranch(std::uint64_t serverType) const {
    Branch branch{"addresses", Tone::quiet};
    const auto groups =
        file_.root().query("/application/server[@type=" + std::to_string(serverType) + "]");
    if (groups.empty())
        return branch;
    for (const xml::Node& child : xml::Element(groups.front()).children()) {
        if (child.isElement())
            branch.children.push_back(entryBranch(xml::Element(child)));
    }
    return branch;
}

Branch ServersView::entryBranch(const xml::Element& entry) const {
    const auto key = entry.attribute("key");
    const auto names = entry.attribute("name");
    const auto addrs = entry.attribute("addrs");
    Branch branch{textOr(names, "(no name)"), Tone::plain, "key " + textOr(key, "missing")};
    std::vector<Offer> offers;
    for (const std::string_view item : pieces(addrs.value_or(""), ';'))
        offers.emplace_back(item);
    const auto usable = static_cast<std::size_t>(std::count_if(
        offers.begin(), offers.end(), [](const Offer& each) { return each.isUsable; }));
    const bool isRead = key && names && addrs && usable > 0;
    if (!isRead)
        branch.details = joined(branch.details, paint_(Tone::mark, "passed over"));
    if (!addrs)
        return branch;
    for (const Offer& offer : offers) {
        Details details;
        if (!isRead || !offer.isUsable)
            details.add(paint_(Tone::mark, "passed over"));
        else
            details.add("chance " + percentage(usable));
        details.add("weight", offer.weight);
        branch.children.push_back(
            {quotedIfEmpty(offer.text), Tone::slot, std::move(details).text()});
    }
    return branch;
}

}  // namespace yg::tool
