// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/SettingsView.h"

#include <cstddef>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "ygconfig/drawing/Details.h"
#include "ygconfig/drawing/Display.h"
#include "ygconfig/drawing/Tree.h"

namespace yg::tool {

namespace {

std::string quoted(std::string_view text) {
    return '"' + printable(text) + '"';
}

/// A heading, and a block below it if there is one.
std::string under(const std::string& heading, const std::vector<Branch>& rows, const Paint& paint) {
    return rows.empty() ? heading : heading + '\n' + drawTrees(rows, paint);
}

}  // namespace

std::string SettingsView::settings(const xml::Document& file, const DroppedNodes& dropped,
                                   std::string_view shownPath) const {
    const xml::Element root = file.root();
    const bool isRead = root && !dropped.contains(root);
    std::vector<Branch> sections;
    std::size_t count = 0;
    if (isRead) {
        for (const xml::Element& child : root.elements()) {
            Branch section{printable(child.name()), Tone::page};
            for (const xml::Element& item : child.elements()) {
                const bool isDropped = dropped.contains(item);
                count += isDropped ? 0 : 1;
                Details details;
                details.add(paint_(Tone::slot, quoted(item.stringValue())));
                details.add(
                    paint_(Tone::quiet, printable(item.attribute("description").value_or(""))));
                details.addIf(isDropped, paint_(Tone::mark, "skipped"));
                section.children.push_back(
                    {printable(item.name()), Tone::plain, std::move(details)});
            }
            if (section.children.empty())
                section.details = "empty";
            sections.push_back(std::move(section));
        }
    }
    Details details;
    details.add(std::to_string(count));
    details.add(quotedIfEmpty(shownPath));
    details.addIf(!root, paint_(Tone::mark, "missing or damaged; nothing can be stored"));
    details.addIf(root && !isRead,
                  paint_(Tone::mark, "the root is not named config; nothing is read"));
    std::string text = headed("Settings", details, paint_);
    for (const Branch& section : sections)
        text += '\n' + drawTree(section, paint_);
    return text;
}

std::string SettingsView::webPages(const xml::Document& file, const DroppedNodes& dropped,
                                   std::string_view shownPath) const {
    const xml::Element root = file.root();
    const bool isRead = root && !dropped.contains(root);
    std::vector<Branch> rows;
    std::size_t count = 0;
    if (isRead) {
        for (const xml::Element& child : root.elements()) {
            if (child.name() != "url")
                continue;
            const auto key = child.attribute("key");
            const bool isDropped = dropped.contains(child);
            count += isDropped ? 0 : 1;
            Details details;
            details.add(paint_(Tone::slot, quotedIfEmpty(child.stringValue())));
            details.addIf(isDropped, paint_(Tone::mark, "skipped"));
            rows.push_back(
                {key ? quotedIfEmpty(*key) : "(no key)", Tone::element, std::move(details)});
        }
    }
    Details details;
    details.add(std::to_string(count));
    details.add(quotedIfEmpty(shownPath));
    details.addIf(!root, paint_(Tone::mark, "missing or damaged"));
    details.addIf(root && !isRead,
                  paint_(Tone::mark, "the root is not named urls; nothing is read"));
    return under(headed("Web pages", details, paint_), rows, paint_);
}

std::string SettingsView::requestUrls(const std::shared_ptr<const YGHttpReqUrlModel>& list,
                                      std::string_view shownPath) const {
    std::vector<Branch> rows;
    std::size_t count = 0;
    std::set<std::string> seen;
    const auto entries = list ? list->urlConfigs() : nullptr;
    if (entries) {
        for (const auto& entry : *entries) {
            const bool isRead = entry->urlKey() && seen.insert(*entry->urlKey()).second;
            count += isRead ? 1 : 0;
            Details details;
            details.add(entry->urlValue() ? paint_(Tone::slot, quotedIfEmpty(*entry->urlValue()))
                                          : paint_(Tone::mark, "(no address)"));
            details.addIf(!isRead, paint_(Tone::mark, "skipped"));
            rows.push_back(
                {nameOr(entry->urlKey(), "(no key)"), Tone::element, std::move(details)});
        }
    }
    Details details;
    details.add(std::to_string(count));
    details.add(quotedIfEmpty(shownPath));
    if (list)
        details.add("md5", list->md5Value());
    details.addIf(!list, paint_(Tone::mark, "missing or damaged"));
    return under(headed("Request URLs", details, paint_), rows, paint_);
}

}  // namespace yg::tool
