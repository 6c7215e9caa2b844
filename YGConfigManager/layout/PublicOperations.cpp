// SPDX-License-Identifier: MIT
//
// The style loader's operations as the application calls them: each hands its work to a step of the
// same load that may run out of memory, and keeps that from the caller.
#include <atomic>
#include <memory>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Immortal.h"
#include "YGConfigManager/layout/Expansion.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"

namespace yg {

namespace {

constexpr std::string_view loadName = "load style config";
constexpr std::string_view pageName = "find style";
constexpr std::string_view panelName = "replace magic panel";

/// Lets a list that has grown since have its length of now again.
template <class List>
class Length {
public:
    explicit Length(const std::shared_ptr<List>& list)
        : list_(list), size_(list ? list->size() : 0) {}

    void restore() const {
        if (list_)
            list_->resize(size_);
    }

private:
    std::shared_ptr<List> list_;
    std::size_t size_;
};

template <class List>
Length(std::shared_ptr<List>) -> Length<List>;

}  // namespace

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
    guarded(loadName, [&] {
        // Read aside, by a loader that begins where this one stands.
        YGStyleConfigLoad loaded;
        loaded.magicPanelInfos_ = magicPanelInfos_;
        loaded.reusePanelInfos_ = reusePanelInfos_;
        loaded.defaultStyleName_ = defaultStyleName_;
        loaded.sink_ = sink_;
        loaded.loadAll(styleConfigPath, tabStylePath, magicPanelPath);
        styleInfos_.swap(loaded.styleInfos_);
        tabStyleInfos_.swap(loaded.tabStyleInfos_);
        magicPanelInfos_.swap(loaded.magicPanelInfos_);
        reusePanelInfos_.swap(loaded.reusePanelInfos_);
        templateRoots_.swap(loaded.templateRoots_);
        std::swap(magicMembers_, loaded.magicMembers_);
        panelExtents_.swap(loaded.panelExtents_);
        defaultStyleName_.swap(loaded.defaultStyleName_);
    });
    if (!magicPanelInfos_)
        magicPanelInfos_ = noMagicPanels_;
    return this;
}

std::shared_ptr<StyleConfigInfo> YGStyleConfigLoad::loadStyleConfigInfoWithName(
    OptionalText name) const {
    if (!name)
        return nullptr;
    if (styleInfos_) {
        if (const auto* style = styleInfos_->find(*name))
            return *style;
    }
    return customPage(*name);
}

// Apart from the look-up, so that a page that is there pays for none of this.
[[gnu::noinline]] std::shared_ptr<StyleConfigInfo> YGStyleConfigLoad::customPage(
    std::string_view name) const {
    return guarded(pageName, [&] {
        const Expansion expansion(Expansion::page);
        const xml::Element page = buildPage(name);
        auto record = page ? readStyle(page) : nullptr;
        // Slots that stayed may place more than a page may have.
        return expansion.isRefused() ? nullptr : record;
    });
}

std::shared_ptr<StyleMap> YGStyleConfigLoad::loadConfig(OptionalText path, bool isMainStyleConfig) {
    return guarded(loadName, [&] {
        std::optional<std::string> before = defaultStyleName_;
        try {
            return readStyles(path, isMainStyleConfig);
        } catch (...) {
            defaultStyleName_.swap(before);
            throw;
        }
    });
}

std::shared_ptr<StyleConfigInfo> YGStyleConfigLoad::parseStyleConfig(
    const xml::Element& style) const {
    return guarded(loadName, [&] { return readStyle(style); });
}

void YGStyleConfigLoad::parsePaneOrElement(const xml::Node& node,
                                           const std::shared_ptr<StyleConfigInfo>& parentStyleInfo,
                                           const std::shared_ptr<PanelConfigInfo>& parentPaneInfo,
                                           bool* hasMagicPanels, OptionalText superMagicPanelName,
                                           OptionalText superMagicPanelsName) const {
    guarded(loadName, [&] {
        const Length stylePanes(parentStyleInfo ? parentStyleInfo->stylePanes() : nullptr);
        const Length panePanes(parentPaneInfo ? parentPaneInfo->panePanes() : nullptr);
        const Length elements(parentPaneInfo ? parentPaneInfo->paneElements() : nullptr);
        const bool hadMagicPanels = hasMagicPanels && *hasMagicPanels;
        try {
            place(node, parentStyleInfo, parentPaneInfo, hasMagicPanels, superMagicPanelName,
                  superMagicPanelsName);
        } catch (...) {
            stylePanes.restore();
            panePanes.restore();
            elements.restore();
            if (hasMagicPanels)
                *hasMagicPanels = hadMagicPanels;
            throw;
        }
    });
}

std::shared_ptr<PanelConfigInfo> YGStyleConfigLoad::parsePaneInfo(
    const xml::Element& panel, OptionalText superMagicPanelName,
    OptionalText superMagicPanelsName) const {
    return guarded(loadName,
                   [&] { return takePanel(panel, superMagicPanelName, superMagicPanelsName); });
}

std::shared_ptr<ElementConfigInfo> YGStyleConfigLoad::parseElementInfo(
    const xml::Element& element) const {
    return guarded(loadName, [&] { return readElement(element); });
}

xml::Element YGStyleConfigLoad::getRootElementForFile(OptionalText path) const {
    return guarded(loadName, [&] { return rootOf(path); });
}

xml::Element YGStyleConfigLoad::loadStyleConfigWithBasePath(OptionalText basePath,
                                                            OptionalText extPath) const {
    return guarded(loadName, [&] { return mergeTemplates(basePath, extPath); });
}

std::shared_ptr<PanelMap> YGStyleConfigLoad::loadReusePanel(OptionalText path) const {
    return guarded(loadName, [&] { return readReusePanels(path); });
}

std::shared_ptr<MagicPanelMap> YGStyleConfigLoad::loadMagicPanel(OptionalText path) const {
    return guarded(loadName, [&] { return readMagicPanels(path); });
}

xml::Element YGStyleConfigLoad::loadMagicPanelsConfigWithMagicPath(OptionalText magicPath,
                                                                   OptionalText reusePath) const {
    return guarded(loadName, [&] { return expandMagicPanels(magicPath, reusePath); });
}

void YGStyleConfigLoad::replaceMagicPanel(const std::shared_ptr<PanelList>& panels,
                                          const std::shared_ptr<PanelConfigInfo>& panelConfigInfo,
                                          bool& isFind) {
    guarded(panelName, [&] { putMagicPanel(panels, panelConfigInfo, isFind); });
}

xml::Element YGStyleConfigLoad::createXMLElementWithStyleName(OptionalText styleName) const {
    return guarded(pageName, [&] { return buildPage(styleName); });
}

std::optional<std::string> YGStyleConfigLoad::getWildCardKeyWithValue(OptionalText value) {
    return guarded(pageName, [value] { return wildCardKey(*value); });
}

void YGStyleConfigLoad::recursiveSearchNodeWithNodeName(OptionalText nodeName,
                                                        const xml::Element& rootElement,
                                                        std::vector<xml::Element>& resultList) {
    guarded(pageName, [&] {
        const std::size_t before = resultList.size();
        try {
            collect(*nodeName, rootElement, resultList);
        } catch (...) {
            resultList.resize(before);
            throw;
        }
    });
}

}  // namespace yg
