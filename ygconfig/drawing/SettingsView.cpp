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

/// A line, and a block below it if there is one.
std::string under(std::string line, const std::vector<Branch>& rows, const Paint& paint) {
    line += '\n';
    return rows.empty() ? line : line + '\n' + drawTrees(rows, paint);
}

}  // namespace

std::string SettingsView::settings(const xml::Document& file, const DroppedNodes& dropped,
                                   std::string_view shownPath) const {
    const xml::Element root = file.root();
    const bool isRead = root && !dropped.contains(root);
    std::vector<Branch> sections;
    std::size_t count = 0;
    if (isRead) {
        for (const xml::Node& child : root.children()) {
            if (!child.isElement())
                continue;
            Branch section{printable(child.name()), Tone::page};
            for (const xml::Node& grandchild : xml::Element(child).children()) {
                if (!grandchild.isElement())
                    continue;
                const xml::Element item(grandchild);
                const bool isDropped = dropped.contains(item);
                count += isDropped ? 0 : 1;
                Details details;
                details.add(paint_(Tone::slot, quoted(item.stringValue())));
                details.add(
                    paint_(Tone::quiet, printable(item.attribute("description").value_or(""))));
                details.addIf(isDropped, paint_(Tone::mark, "skipped"));
                section.children.push_back(
                    {printable(item.name()), Tone::plain, std::move(details).text()});
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
    std::string text = paint_(Tone::heading, "Settings") + "  " + std::move(details).text() + '\n';
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
        for (const xml::Node& child : root.children()) {
            if (!child.isElement() || child.name() != "url")
                continue;
            const auto key = xml::Element(child).attribute("key");
            const bool isDropped = dropped.contains(child);
            count += isDropped ? 0 : 1;
            Details details;
            details.add(paint_(Tone::slot, quotedIfEmpty(child.stringValue())));
            details.addIf(isDropped, paint_(Tone::mark, "skipped"));
            rows.push_back(
                {key ? quotedIfEmpty(*key) : "(no key)", Tone::element, std::move(details).text()});
        }
    }
    Details details;
    details.add(std::to_string(count));
    details.add(quotedIfEmpty(shownPath));
    details.addIf(!root, paint_(Tone::mark, "missing or damaged"));
    details.addIf(root && !isRead,
                  paint_(Tone::mark, "the root is not named urls; nothing is read"));
    return under(paint_(Tone::heading, "Web pages") + "  " + std::move(details).text(), rows,
                 paint_);
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
                {nameOr(entry->urlKey(), "(no key)"), Tone::element, std::move(details).text()});
        }
    }
    Details details;
    details.add(std::to_string(count));
    details.add(quotedIfEmpty(shownPath));
    if (list)
        details.add("md5", list->md5Value());
    details.addIf(!list, paint_(Tone::mark, "missing or damaged"));
    return under(paint_(Tone::heading, "Request URLs") + "  " + std::move(details).text(), rows,
                 paint_);
}

}  // namespace yg::tool
