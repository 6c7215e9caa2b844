// SPDX-License-Identifier: MIT
//
// The style loader: its life, the order of a load, the style files and lookups by name.
#include "YGConfigManager/layout/YGStyleConfigLoad.h"

#include <atomic>
#include <utility>

#include "YGConfigManager/host/Immortal.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/host/YGFrameComFun.h"
#include "YGConfigManager/layout/Expansion.h"
#include "YGConfigManager/layout/LayoutEntries.h"
#include "YGConfigManager/text/Paths.h"
#include "YGConfigManager/xml/Document.h"

namespace yg {

namespace {

/// The last component of a path, or the name that stands for a path without one.
std::string fileName(std::optional<std::string_view> path, std::string_view otherwise) {
    std::optional<std::string> last = text::lastPathComponent(path);
    return last && !last->empty() ? *std::move(last) : std::string(otherwise);
}

void measure(PanelExtents& extents, const std::shared_ptr<const PanelMap>& reusePanels) {
    if (!reusePanels)
        return;
    for (const auto& [name, panel] : *reusePanels)
        extents.add(*panel);
}

/// Of each group the panel that its slots show.
void measure(PanelExtents& extents, const std::shared_ptr<const MagicPanelMap>& groups) {
    if (!groups)
        return;
    for (const auto& [name, members] : *groups) {
        if (!members->empty())
            extents.add(*members->begin()->value);
    }
}

}  // namespace

YGStyleConfigLoad::YGStyleConfigLoad(DiagnosticsSink* sink) : sink_(sink) {}
YGStyleConfigLoad::~YGStyleConfigLoad() = default;

const std::shared_ptr<YGStyleConfigLoad>& YGStyleConfigLoad::getShareInstance() {
    using Shared = const std::shared_ptr<YGStyleConfigLoad>;
    static std::atomic<Shared*> instance = nullptr;
    static Immortal<Shared> none;
    Shared* known = instance;
    if (!known)
        guarded(loadName, [&] {
            auto made = std::make_unique<Shared>(std::make_shared<YGStyleConfigLoad>());
            if (instance.compare_exchange_strong(known, made.get()))
                known = made.release();
        });
    return known ? *known : *none;
}

YGStyleConfigLoad* YGStyleConfigLoad::initWithStyleConfigPath(OptionalText styleConfigPath,
                                                              OptionalText tabStylePath,
                                                              OptionalText magicPanelPath) {
    guardedLoad([&] {
        // Read by another loader, which begins where this one stands.
        YGStyleConfigLoad loaded(sink_);
        loaded.tables_.magicPanelInfos = tables_.magicPanelInfos;
        loaded.tables_.reusePanelInfos = tables_.reusePanelInfos;
        loaded.tables_.defaultStyleName = tables_.defaultStyleName;
        loaded.loadAll(styleConfigPath, tabStylePath, magicPanelPath);
        std::swap(tables_, loaded.tables_);
    });
    if (!tables_.magicPanelInfos)
        tables_.magicPanelInfos = noMagicPanels_;
    return this;
}

void YGStyleConfigLoad::loadAll(std::optional<std::string_view> styleConfigPath,
                                std::optional<std::string_view> tabStylePath,
                                std::optional<std::string_view> magicPanelPath) {
    files_ = std::make_unique<RecordMap<xml::ParseResult>>();
    writeRuntimeLog("initWithStyleConfigPath");

    const std::string styleFile = fileName(styleConfigPath, "custompage_template.xml");
    const std::string magicFile = fileName(magicPanelPath, "magic_panels.xml");
    const auto softStylePath = YGFrameComFun::getSoftOptimizeConfigFilePath(0, styleFile);
    const auto softMagicPath = YGFrameComFun::getSoftOptimizeConfigFilePath(0, magicFile);
    const auto reusePath = YGFrameComFun::getBaseOptimizeConfigFilePath(0, "reuse_panels.xml");

    // Styles resolve their references while they are read, so the order decides what they find.
    // While the reuse file is read its panels are not known yet, and the soft-optimize styles know
    // the first file's groups only. An earlier load's panels are still known meanwhile.
    RecordMap<xml::Element> stylePlaces;
    RecordMap<xml::Element> tabPlaces;
    RecordMap<xml::Element> groupPlaces;
    const auto extents = std::make_shared<PanelExtents>();
    tables_.panelExtents = extents;
    measure(*extents, tables_.reusePanelInfos);
    measure(*extents, tables_.magicPanelInfos);
    tables_.reusePanelInfos = readReusePanels(reusePath);
    measure(*extents, tables_.reusePanelInfos);
    const std::shared_ptr<MagicPanelMap> groups = readMagicPanels(magicPanelPath, groupPlaces);
    tables_.magicPanelInfos = groups;
    measure(*extents, tables_.magicPanelInfos);
    const std::shared_ptr<StyleMap> styles = readStyles(styleConfigPath, true, stylePlaces);
    tables_.styleInfos = styles;
    const std::shared_ptr<MagicPanelMap> softGroups = readMagicPanels(softMagicPath, groupPlaces);
    const std::shared_ptr<StyleMap> softStyles = readStyles(softStylePath, true, stylePlaces);
    measure(*extents, softGroups);
    for (const auto& [name, members] : *softGroups)
        groups->set(name, members);
    if (softStyles && !styles)
        Reporter(sink_).report("soft-optimize-dropped"_rule, *softStylePath);
    else if (softStyles) {
        for (const auto& [name, style] : *softStyles)
            styles->set(name, style);
    }
    tables_.tabStyleInfos = readStyles(tabStylePath, false, tabPlaces);
    keepTemplates(softStylePath, styleConfigPath);
    xml::Element magicRoot = rootOf(magicPanelPath);
    const xml::Element reuseRoot = rootOf(reusePath);
    files_.reset();
    // Nobody else may see it change: a sink may keep it, and one file may serve for several.
    if (!magicRoot.keepsTreeAlone())
        magicRoot = xml::Element(magicRoot.copy());
    expandMagicPanels(magicRoot, reuseRoot);
    keepMagicMembers(magicRoot);
}

std::shared_ptr<const StyleMap> YGStyleConfigLoad::loadConfig(OptionalText path,
                                                              bool isMainStyleConfig) {
    return guardedLoad([&]() -> std::shared_ptr<const StyleMap> {
        std::optional<std::string> before = tables_.defaultStyleName;
        RecordMap<xml::Element> places;
        try {
            return readStyles(path, isMainStyleConfig, places);
        } catch (...) {
            tables_.defaultStyleName.swap(before);
            throw;
        }
    });
}

std::shared_ptr<StyleMap> YGStyleConfigLoad::readStyles(std::optional<std::string_view> path,
                                                        bool isMainStyleConfig,
                                                        RecordMap<xml::Element>& places) {
    std::shared_ptr<StyleMap> styles;
    reading(Reporter(sink_), rootOf(path), [&](Entry& root) {
        const auto defaultName = nameIn<defaultStyle>(root);
        if (defaultName && isMainStyleConfig) {
            // No style can have the empty name, so it is free for the default.
            if (const auto earlier = root.define("", places, defaultStyle.name))
                root.report("overridden-default-style"_rule, defaultStyle.name, *defaultName,
                            earlier);
            tables_.defaultStyleName = std::string(*defaultName);
        } else if (defaultName)
            root.report("ignored-default-style"_rule, defaultStyle.name, *defaultName);
        if (!root.element().hasChildren())
            return;
        styles = std::make_shared<StyleMap>();
        root.forEachElement([&](Entry& style) {
            auto record = std::make_shared<StyleConfigInfo>();
            style.read(*record);
            const std::optional<std::string>& name = record->styleName();
            if (!name || name->empty())
                return style.drop("style-without-name"_rule);
            noteDefinition(style, *name, places, "duplicate-style"_rule, "overridden-style"_rule);
            readStyleContent(style, *record);
            styles->set(*name, std::move(record));
        });
    });
    return styles;
}

std::shared_ptr<StyleConfigInfo> YGStyleConfigLoad::parseStyleConfig(
    const xml::Element& style) const {
    return guardedLoad([&] { return readStyle(style); });
}

std::shared_ptr<StyleConfigInfo> YGStyleConfigLoad::readStyle(const xml::Element& style) const {
    return reading(Reporter(sink_), style, [&](Entry& entry) {
        auto record = std::make_shared<StyleConfigInfo>();
        entry.read(*record);
        readStyleContent(entry, *record);
        return record;
    });
}

void YGStyleConfigLoad::readStyleContent(Entry& style, StyleConfigInfo& record) const {
    if (style.name() != "style")
        style.report("style-element-name"_rule, {}, style.name());
    readContent(style, {.style = &record}, nullptr);
}

std::shared_ptr<StyleConfigInfo> YGStyleConfigLoad::loadStyleConfigInfoWithName(
    OptionalText name) const {
    if (!name)
        return nullptr;
    if (tables_.styleInfos) {
        if (const auto* style = tables_.styleInfos->find(*name))
            return *style;
    }
    return customPage(*name);
}

xml::Element YGStyleConfigLoad::getRootElementForFile(OptionalText path) const {
    return guarded(loadName, [&] { return rootOf(path); });
}

xml::Element YGStyleConfigLoad::rootOf(std::optional<std::string_view> path) const {
    if (!path || path->empty())
        return {};
    const Reporter reporter(sink_);
    const xml::ParseResult* known = files_ ? files_->find(*path) : nullptr;
    const xml::ParseResult parsed = known ? *known : reporter.parseFile(*path);
    if (files_ && !known)
        files_->set(*path, parsed);
    if (parsed)
        return parsed.document.root();
    writeRuntimeError("load style config fail:%@", parsed.error);
    if (!known)
        reporter.unreadable("unreadable-file"_rule, *path, parsed);
    return {};
}

xml::Element YGStyleConfigLoad::loadStyleConfigWithBasePath(OptionalText basePath,
                                                            OptionalText extPath) const {
    return guarded(loadName, [&]() -> xml::Element {
        const xml::Element base = rootOf(basePath);
        const xml::Element extension = rootOf(extPath);
        xml::Element merged(base.copy());
        if (!merged)
            return {};
        for (const xml::Element& child : extension.elements())
            merged.appendChild(child);
        return merged;
    });
}

/// What loadStyleConfigWithBasePath answers is only ever searched from its first child to its last,
/// so the two roots themselves serve, one after the other, without a copy of either.
void YGStyleConfigLoad::keepTemplates(std::optional<std::string_view> basePath,
                                      std::optional<std::string_view> extPath) {
    const xml::Element base = rootOf(basePath);
    const xml::Element extension = rootOf(extPath);
    if (base)
        tables_.templateRoots = {base, extension};
    else
        Reporter(sink_).report("no-templates"_rule, basePath.value_or(""));
}

bool YGStyleConfigLoad::isTureForName(OptionalText name, const xml::Element& node) {
    const auto value = node.attribute(name);
    return value && isTrueText(*value);
}

void YGStyleConfigLoad::reportOn(const xml::Element& element, const Rule& rule,
                                 std::string_view attribute, std::string_view value) const {
    reading(Reporter(sink_), element, [&](Entry& entry) { entry.drop(rule, attribute, value); });
}

}  // namespace yg
