// SPDX-License-Identifier: MIT
//
// The style loader: its life, the order of a load, the style files and lookups by name.
#include <map>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/host/YGFrameComFun.h"
#include "YGConfigManager/layout/Expansion.h"
#include "YGConfigManager/layout/LayoutAttributes.h"
#include "YGConfigManager/layout/LayoutRules.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/text/Paths.h"
#include "YGConfigManager/xml/Document.h"

namespace yg {

namespace {

/// The last component of a path, or the name that stands for a path without one.
std::string fileName(std::optional<std::string_view> path, std::string_view otherwise) {
    std::optional<std::string> last = text::lastPathComponent(path);
    return last && !last->empty() ? *std::move(last) : std::string(otherwise);
}

xml::Element definitionOf(std::string_view name, const RecordMap<xml::Element>& definitions) {
    const xml::Element* found = definitions.find(name);
    return found ? *found : xml::Element();
}

}  // namespace

struct YGStyleConfigLoad::FilesOfOneLoad {
    std::map<std::string, xml::ParseResult, std::less<>> parsed;
};

YGStyleConfigLoad::YGStyleConfigLoad() = default;
YGStyleConfigLoad::~YGStyleConfigLoad() = default;

void YGStyleConfigLoad::loadAll(std::optional<std::string_view> styleConfigPath,
                                std::optional<std::string_view> tabStylePath,
                                std::optional<std::string_view> magicPanelPath) {
    const Expansion expansion(Expansion::load);
    files_ = std::make_unique<FilesOfOneLoad>();
    writeRuntimeLog("initWithStyleConfigPath");

    const std::string styleFile = fileName(styleConfigPath, "custompage_template.xml");
    const std::string magicFile = fileName(magicPanelPath, "magic_panels.xml");
    const auto softStylePath = YGFrameComFun::getSoftOptimizeConfigFilePath(0, styleFile);
    const auto softMagicPath = YGFrameComFun::getSoftOptimizeConfigFilePath(0, magicFile);
    const auto reusePath = YGFrameComFun::getBaseOptimizeConfigFilePath(0, "reuse_panels.xml");

    // Styles resolve their references while they are read, so the order decides what they find.
    // While the reuse file is read its panels are not known yet, and the soft-optimize styles know
    // the first file's groups only. An earlier load's panels are still known meanwhile.
    panelExtents_ = std::make_unique<PanelExtents>();
    measure(reusePanelInfos_);
    measure(magicPanelInfos_);
    reusePanelInfos_ = readReusePanels(reusePath);
    measure(reusePanelInfos_);
    magicPanelInfos_ = readMagicPanels(magicPanelPath);
    measure(magicPanelInfos_);
    styleInfos_ = readStyles(styleConfigPath, true);
    const std::shared_ptr<MagicPanelMap> softMagicPanels = readMagicPanels(softMagicPath);
    const std::shared_ptr<StyleMap> softStyles = readStyles(softStylePath, true);
    measure(softMagicPanels);
    const auto softGroups = definitionsIn(softMagicPath);
    for (const auto& [groupName, members] : *softMagicPanels) {
        if (magicPanelInfos_->set(groupName, members))
            report(rules::replacedGroup, definitionOf(groupName, softGroups), {}, groupName);
    }
    if (softStyles) {
        const auto definitions = definitionsIn(softStylePath);
        if (!styleInfos_)
            report(rules::softOptimizeDropped, {}, {}, softStylePath.value_or(""));
        else
            for (const auto& [name, style] : *softStyles) {
                if (styleInfos_->set(name, style))
                    report(rules::overriddenStyle, definitionOf(name, definitions), {}, name);
            }
    }
    tabStyleInfos_ = readStyles(tabStylePath, false);
    keepTemplates(softStylePath, styleConfigPath);
    keepMagicMembers(expandMagicPanels(magicPanelPath, reusePath));
    files_.reset();
}

std::shared_ptr<StyleMap> YGStyleConfigLoad::readStyles(std::optional<std::string_view> path,
                                                        bool isMainStyleConfig) {
    const Expansion expansion(Expansion::load);
    const xml::Element root = rootOf(path);
    if (const auto name = root.attribute("default_style")) {
        if (isMainStyleConfig) {
            defaultStyleName_ = std::string(*name);
            used(root, "default_style");
        } else {
            report(rules::ignoredDefaultStyle, root, "default_style", *name);
        }
    }
    reportAttributesBut(root, "default_style");
    if (root)
        used(root);
    if (!root.hasChildren())
        return nullptr;

    auto styles = std::make_shared<StyleMap>();
    for (const xml::Node& child : root.children()) {
        if (!child.isElement()) {
            reportUnread(child);
            continue;
        }
        const xml::Element element(child);
        const auto name = element.attribute("name");
        if (!name || name->empty()) {
            report(rules::styleWithoutName, element);
            continue;
        }
        if (styles->set(*name, readStyle(element)))
            report(rules::duplicateStyle, element, "name", *name);
    }
    return styles;
}

std::shared_ptr<StyleConfigInfo> YGStyleConfigLoad::readStyle(const xml::Element& style) const {
    const Expansion expansion(Expansion::load);
    auto record = std::make_shared<StyleConfigInfo>();
    readAttributes(style, styleAttributes, *record);
    if (sink()) {
        used(style);
        reportAttributes(style, styleAttributes, *sink());
        if (style.name() != "style")
            report(rules::styleElementName, style, {}, style.name());
    }

    bool hasMagicPanels = false;
    for (const xml::Node& child : style.children())
        place(child, record, nullptr, &hasMagicPanels, std::nullopt, std::nullopt);
    return record;
}

xml::Element YGStyleConfigLoad::rootOf(std::optional<std::string_view> path) const {
    if (!path || path->empty())
        return {};
    const xml::ParseOptions options{.positions = sink_ != nullptr};
    xml::ParseResult once;
    const xml::ParseResult* result = &once;
    const auto known = files_ ? files_->parsed.find(*path) : decltype(files_->parsed.end()){};
    if (files_ && known != files_->parsed.end()) {
        result = &known->second;
    } else {
        if (sink())
            sink()->readingFile(*path);
        once = orOutOfMemory(xml::Document::parseFile(*path, options));
        if (files_)
            result = &files_->parsed.emplace(std::string(*path), std::move(once)).first->second;
    }
    if (!*result) {
        writeRuntimeLog("load style config fail:%@", result->error);
        const bool namesFile = result->error.compare(0, path->size(), *path) == 0;
        report(rules::unreadableFile, {}, {},
               namesFile ? result->error : std::string(*path) + ": " + result->error);
        return {};
    }
    return result->document.root();
}

xml::Element YGStyleConfigLoad::mergeTemplates(std::optional<std::string_view> basePath,
                                               std::optional<std::string_view> extPath) const {
    const xml::Element base = rootOf(basePath);
    const xml::Element extension = rootOf(extPath);
    xml::Element merged(base.copy());
    if (!merged)
        return {};
    for (const xml::Node& child : extension.children()) {
        if (child.isElement())
            merged.appendChild(child);
    }
    return merged;
}

/// What loadStyleConfigWithBasePath answers is only ever searched from its first child to its last,
/// so the two roots themselves serve, one after the other, without a copy of either.
void YGStyleConfigLoad::keepTemplates(std::optional<std::string_view> basePath,
                                      std::optional<std::string_view> extPath) {
    const xml::Element base = rootOf(basePath);
    const xml::Element extension = rootOf(extPath);
    templateRoots_.clear();
    if (base)
        templateRoots_ = {base, extension};
    else
        report(rules::noTemplates, {}, {}, basePath.value_or(""));
}

bool YGStyleConfigLoad::isTureForName(OptionalText name, const xml::Element& node) {
    const auto value = node.attribute(name);
    return value && isTrueText(*value);
}

namespace {

thread_local int quietWalks = 0;

}  // namespace

YGStyleConfigLoad::QuietWalk::QuietWalk() {
    ++quietWalks;
}

YGStyleConfigLoad::QuietWalk::~QuietWalk() {
    --quietWalks;
}

DiagnosticsSink* YGStyleConfigLoad::sink() const {
    return quietWalks == 0 ? sink_ : nullptr;
}

void YGStyleConfigLoad::report(const Rule& rule, const xml::Node& node, std::string_view attribute,
                               std::string_view value) const {
    if (sink())
        sink()->report({rule, node, std::string(attribute), std::string(value)});
}

/// The definitions that count in a file of this load, for reports on them.
RecordMap<xml::Element> YGStyleConfigLoad::definitionsIn(
    const std::optional<std::string>& path) const {
    RecordMap<xml::Element> last;
    if (!sink() || !path)
        return last;
    for (const xml::Node& child : files_->parsed[*path].document.root().children()) {
        const xml::Element element(child);
        if (const auto name = element.attribute("name"))
            last.set(*name, element);
    }
    return last;
}

void YGStyleConfigLoad::measure(const std::shared_ptr<PanelMap>& reusePanels) {
    if (!reusePanels)
        return;
    for (const auto& [name, panel] : *reusePanels)
        panelExtents_->add(*panel);
}

/// Of each group the panel that its slots show.
void YGStyleConfigLoad::measure(const std::shared_ptr<MagicPanelMap>& groups) {
    if (!groups)
        return;
    for (const auto& [name, members] : *groups) {
        if (!members->empty())
            panelExtents_->add(*members->begin()->value);
    }
}

/// Whether there is room for what is about to be added, which is then counted.
bool YGStyleConfigLoad::mayAdd(const Extent& extent, const xml::Node& node,
                               std::string_view attribute, std::string_view value) const {
    Expansion* const expansion = Expansion::current();
    if (!expansion || expansion->add(extent))
        return true;
    report(rules::expansionLimit, node, attribute, value);
    return false;
}

/// Comments and instructions are no content; text and elements are.
void YGStyleConfigLoad::reportUnread(const xml::Node& node) const {
    if (!sink())
        return;
    if (node.kind() == xml::NodeKind::text)
        report(rules::strayText, node, {}, node.stringValue());
    else if (node.isElement())
        report(rules::unreadContent, node, {}, node.name());
}

void YGStyleConfigLoad::reportAttributesBut(const xml::Element& element,
                                            std::string_view known) const {
    if (!sink() || !element)
        return;
    for (const xml::Attribute attribute : element.attributes()) {
        if (attribute.name != known)
            report(rules::unknownAttribute, element, attribute.name, attribute.value);
    }
}

void YGStyleConfigLoad::used(const xml::Element& element) const {
    if (sink())
        sink()->usedElement(element);
}

void YGStyleConfigLoad::used(const xml::Element& element, std::string_view attribute) const {
    if (sink())
        sink()->usedAttribute(element, attribute);
}

}  // namespace yg
