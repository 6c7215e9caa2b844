// SPDX-License-Identifier: MIT
//
// The layout of the terminal: reads the style files, the tab styles, the magic panels and the reuse
// panels into records and answers styles by name, those of custom pages built on demand. What is
// declared here is in YGStyleConfigLoad.cpp (a load and its order, styles), PaneParsing.cpp (what
// is in a style or a panel), MagicAndReusePanels.cpp and CustomPages.cpp.
//
// Load once, from one thread; afterwards lookups may run on any thread, and others may read the
// records meanwhile. A lookup changes one thing only: the first page that shows the panel of a
// magic panel group gives that panel the group's name (PanelConfigInfo::magicPanelsName). Only
// setDefaultStyleName and replaceMagicPanel must not run beside others. Nothing is thrown: a file
// that cannot be read is logged as "load style config fail:" with the reason and contributes
// nothing. When memory does not suffice, that is logged, the answer is null or empty and everything
// stays as it was.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/export.h"
#include "YGConfigManager/layout/ElementConfigInfo.h"
#include "YGConfigManager/layout/PanelConfigInfo.h"
#include "YGConfigManager/layout/StyleConfigInfo.h"
#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/text/OwnedText.h"
#include "YGConfigManager/xml/Element.h"

namespace yg {

/// Styles by name, panels by name, and groups of magic panels: group name to member name to panel.
/// All keep the order of the file. The loader hands them out unchangeable; the records in them are
/// the host's to change.
using StyleMap = RecordMap<std::shared_ptr<StyleConfigInfo>>;
using PanelMap = RecordMap<std::shared_ptr<PanelConfigInfo>>;
using MagicPanelMap = RecordMap<std::shared_ptr<const PanelMap>>;

/// A style that names of custom pages can begin with.
struct PageTemplate {
    std::string name;                                ///< of the style
    xml::Element element;                            ///< the style in its file
    std::vector<std::optional<std::string>> groups;  ///< of its slots in order; absent for none
    std::size_t size = 0;                            ///< about the bytes of its XML
};

/// A member that names of custom pages can name.
struct SlotMember {
    std::string name;      ///< as written in the page's name
    std::size_t size = 0;  ///< about the bytes of its XML, for callers that build many pages
};

namespace xml {
struct ParseResult;
}
class Entry;
class PanelExtents;

class YG_EXPORT YGStyleConfigLoad {
public:
    /// What one load or one look-up may add to what its files hold by repeating it: panels in the
    /// places that refer to them, definitions and members copied into references and slots,
    /// arguments written into patterns, and the names of groups and members before those of
    /// editable panels. An element is a panel, an element or a listed name of a record, and a node
    /// or an attribute of XML; bytes are those of their names and texts. What goes beyond is not
    /// added, is logged once as "load style config fail:", and the load goes on: a reference in
    /// records places nothing, one in the expanded magic panels stays, a panel keeps its name. A
    /// custom page that goes beyond is not built.
    static constexpr std::size_t maxAddedElements = 1'000'000;
    static constexpr std::size_t maxAddedBytes = std::size_t{64} * 1024 * 1024;

    /// An empty loader: every field is absent until initWithStyleConfigPath has run. Findings of
    /// loading and of lookups go to the sink; see diagnostics/DiagnosticsSink.h.
    explicit YGStyleConfigLoad(DiagnosticsSink* sink = nullptr);
    ~YGStyleConfigLoad();
    YGStyleConfigLoad(const YGStyleConfigLoad&) = delete;
    YGStyleConfigLoad& operator=(const YGStyleConfigLoad&) = delete;

    /// The one shared loader of the application, made empty on the first call. Any thread; it lives
    /// as long as the process. Null while memory does not suffice for it.
    static const std::shared_ptr<YGStyleConfigLoad>& getShareInstance();

    /// Loads everything and answers this loader. Beside the three full paths given, files of the
    /// same names are read from the host's soft-optimize folder, "custompage_template.xml" and
    /// "magic_panels.xml" where a path is absent or empty, and "reuse_panels.xml" from the host's
    /// base-optimize folder. Soft-optimize styles and magic panel groups replace those of the same
    /// name. When the main style file yields no styles, the soft-optimize styles are dropped too.
    YGStyleConfigLoad* initWithStyleConfigPath(OptionalText styleConfigPath,
                                               OptionalText tabStylePath,
                                               OptionalText magicPanelPath);

    /// The style of that name. One that was loaded is answered itself, not as a copy; any other
    /// name is taken as a custom page, template-argument-argument…, and gives a new record each
    /// time. Null when it is neither, or a page beyond the limits above.
    std::shared_ptr<StyleConfigInfo> loadStyleConfigInfoWithName(OptionalText name) const;

    /// The styles with slots that custom pages can be made of, in the order in which they are
    /// looked for; none whose name has a "-". Empty before loading and when memory does not
    /// suffice.
    std::vector<PageTemplate> templates() const;

    /// The members of a group that custom pages find, patterns included, in the order of the file.
    /// Empty when there is no such group or memory does not suffice.
    std::vector<SlotMember> slotMembers(OptionalText group) const;

    /// The main styles, soft-optimize ones included; null before loading and when the main style
    /// file yields none.
    const std::shared_ptr<const StyleMap>& styleInfos() const { return tables_.styleInfos; }

    /// The tab styles; null before loading and when the tab file yields none.
    const std::shared_ptr<const StyleMap>& tabStyleInfos() const { return tables_.tabStyleInfos; }

    /// The magic panels; null before loading, empty when there are none.
    const std::shared_ptr<const MagicPanelMap>& magicPanelInfos() const {
        return tables_.magicPanelInfos;
    }

    /// The reuse panels; null before loading and when memory did not suffice for it, empty when
    /// there are none.
    const std::shared_ptr<const PanelMap>& reusePanelInfos() const {
        return tables_.reusePanelInfos;
    }

    /// Declared for the host and never filled: always null.
    const std::shared_ptr<const PanelMap>& scrollPanelDict() const { return scrollPanelDict_; }

    /// The name of the default style: "default_style" of the root of the soft-optimize style file,
    /// else of the main one, or what the host has set. Absent when neither names one.
    const std::optional<std::string>& defaultStyleName() const { return tables_.defaultStyleName; }
    void setDefaultStyleName(OwnedText name) { tables_.defaultStyleName = std::move(name); }

    /// Parses one style file into styles by name; a later style replaces an earlier one of the same
    /// name, one without a name is dropped. Null when the file cannot be read or its root has no
    /// children. Only with `isMain` does the file's "default_style" count.
    std::shared_ptr<const StyleMap> loadConfig(OptionalText path, bool isMainStyleConfig);

    /// Builds a style from its element, also from one without a name. Never null here and below,
    /// unless memory does not suffice.
    std::shared_ptr<StyleConfigInfo> parseStyleConfig(const xml::Element& style) const;

    /// Decides what a node of a style is and attaches it to the style or the panel given; what it
    /// cannot place it drops. `parentStyleInfo`, `parentPaneInfo` and `hasMagicPanels` may be null;
    /// the flag is set when a slot for magic panels is met. The two names are those of the magic
    /// panel and of the group whose content is being parsed.
    void parsePaneOrElement(const xml::Node& node,
                            const std::shared_ptr<StyleConfigInfo>& parentStyleInfo,
                            const std::shared_ptr<PanelConfigInfo>& parentPaneInfo,
                            bool* hasMagicPanels, OptionalText superMagicPanelName,
                            OptionalText superMagicPanelsName) const;

    /// A panel from the attributes of its element; never null.
    std::shared_ptr<PanelConfigInfo> parsePaneInfo(const xml::Element& panel,
                                                   OptionalText superMagicPanelName,
                                                   OptionalText superMagicPanelsName) const;

    /// An element record from its attributes; null when "name" is missing or empty.
    std::shared_ptr<ElementConfigInfo> parseElementInfo(const xml::Element& element) const;

    /// True exactly when the element has the attribute and its value is "true". Spelt so in the
    /// interface.
    static bool isTureForName(OptionalText name, const xml::Element& node);

    /// The root element of a file; empty, and logged, when it cannot be read or is not well-formed.
    /// An absent or empty path gives an empty element without a log line. The element keeps its
    /// tree alive.
    xml::Element getRootElementForFile(OptionalText path) const;

    /// A copy of the base file's root followed by copies of the other file's elements, in which
    /// custom pages look for their templates; empty when the base file cannot be read.
    xml::Element loadStyleConfigWithBasePath(OptionalText basePath, OptionalText extPath) const;

    /// The reuse panels of a file by name; never null.
    std::shared_ptr<const PanelMap> loadReusePanel(OptionalText path) const;

    /// The magic panels of a file; never null. A group without a usable member is kept, empty.
    std::shared_ptr<const MagicPanelMap> loadMagicPanel(OptionalText path) const;

    /// A copy of the magic panel file's root in which each reference to a reuse panel is replaced
    /// by its definition, as an element "panel"; empty when the magic panel file cannot be read.
    /// References beyond the limits above stay.
    xml::Element loadMagicPanelsConfigWithMagicPath(OptionalText magicPath,
                                                    OptionalText reusePath) const;

    /// Puts one panel into every magic slot of a tree of panels, at any depth and of whatever
    /// group, and sets `isFind` when there was one; never clears it. Changes the lists in place:
    /// no other thread may use them meanwhile. Does nothing when the list or the panel is null.
    static void replaceMagicPanel(const std::shared_ptr<PanelList>& panels,
                                  const std::shared_ptr<PanelConfigInfo>& panelConfigInfo,
                                  bool& isFind);

    /// The element of a custom page: a copy of the template style in which each slot for magic
    /// panels is replaced by the member that the argument names, or by a pattern member with the
    /// argument written into it; a slot that neither serves stays. Empty when there is no such
    /// template, the number of arguments is not that of the slots or the page is beyond the limits
    /// above.
    xml::Element createXMLElementWithStyleName(OptionalText styleName) const;

    /// The key of the host's mapping "模版通配" whose list holds the value; absent when none does.
    static std::optional<std::string> getWildCardKeyWithValue(OptionalText value);

    /// The first direct child element of that element name whose attribute "name" is
    /// `attributeName`; empty when there is none.
    static xml::Element searchNodeWithNodeName(OptionalText nodeName, OptionalText attributeName,
                                               const xml::Element& rootElement);

    /// Appends all elements of that name below the root, at any depth, in document order.
    static void recursiveSearchNodeWithNodeName(OptionalText nodeName,
                                                const xml::Element& rootElement,
                                                std::vector<xml::Element>& resultList);

private:
    /// What a load fills.
    struct Tables {
        std::shared_ptr<const StyleMap> styleInfos;
        std::shared_ptr<const StyleMap> tabStyleInfos;
        std::shared_ptr<const MagicPanelMap> magicPanelInfos;
        std::shared_ptr<const PanelMap> reusePanelInfos;
        std::optional<std::string> defaultStyleName;
        std::vector<xml::Element> templateRoots;
        /// The members of the expanded magic panels by group and name: the first child of each, the
        /// first definition of a name.
        RecordMap<RecordMap<xml::Node>> magicMembers;
        std::shared_ptr<PanelExtents> panelExtents;
    };

    /// Where content stands that is being read.
    struct Around {
        StyleConfigInfo* style = nullptr;  ///< null in magic panels and reuse panels
        PanelConfigInfo* panel = nullptr;  ///< the innermost; null directly below a style
        std::string_view above = {};       ///< the name of the XML element that holds the content
        bool* hasMagicPanels = nullptr;
        std::string_view member = {};  ///< the magic panel around it and its group; "" for none
        std::string_view group = {};
    };

    class WildcardKeys;

    // The steps, which throw std::bad_alloc; what they were given to change may be half changed
    // then. Places are those of definitions so far, for findings.
    void loadAll(std::optional<std::string_view> styleConfigPath,
                 std::optional<std::string_view> tabStylePath,
                 std::optional<std::string_view> magicPanelPath);
    xml::Element rootOf(std::optional<std::string_view> path) const;
    std::shared_ptr<StyleMap> readStyles(std::optional<std::string_view> path,
                                         bool isMainStyleConfig, RecordMap<xml::Element>& places);
    std::shared_ptr<PanelMap> readReusePanels(std::optional<std::string_view> path) const;
    std::shared_ptr<MagicPanelMap> readMagicPanels(std::optional<std::string_view> path,
                                                   RecordMap<xml::Element>& places) const;
    std::shared_ptr<PanelMap> readMagicGroup(Entry& group, std::string_view groupName) const;
    std::shared_ptr<StyleConfigInfo> readStyle(const xml::Element& style) const;
    void readStyleContent(Entry& style, StyleConfigInfo& record) const;
    void readContent(Entry& entry, Around around, PanelConfigInfo* panel) const;
    void place(Entry& entry, const Around& around) const;
    void placePanel(Entry& entry, const Around& around) const;
    void placeMagicPanel(Entry& slot, const Around& around) const;
    void placeReusePanel(Entry& reference, const Around& around) const;
    bool mayPlace(const PanelConfigInfo& panel) const;
    void expandMagicPanels(const xml::Element& magicRoot, const xml::Element& reuseRoot) const;
    void keepTemplates(std::optional<std::string_view> basePath,
                       std::optional<std::string_view> extPath);
    void keepMagicMembers(const xml::Element& expanded);
    std::shared_ptr<StyleConfigInfo> customPage(std::string_view name) const;
    xml::Element buildPage(std::optional<std::string_view> styleName) const;
    xml::Element templateNamed(std::string_view name) const;
    std::optional<xml::Node> panelForSlot(const xml::Element& slot, const std::string& argument,
                                          WildcardKeys& keys) const;
    void noteFilled(const xml::Element& slot, std::string_view argument, const xml::Node& panel,
                    std::string_view wildcard) const;
    void reportOn(const xml::Element& element, const Rule& rule, std::string_view attribute,
                  std::string_view value) const;

    Tables tables_;
    /// The magic panels when memory runs out while they are loaded: empty, made beforehand.
    std::shared_ptr<const MagicPanelMap> noMagicPanels_ = std::make_shared<MagicPanelMap>();
    std::shared_ptr<const PanelMap> scrollPanelDict_;
    DiagnosticsSink* sink_;

    /// The files that a load has read, so that each is parsed once however often a step asks.
    std::unique_ptr<RecordMap<xml::ParseResult>> files_;
};

}  // namespace yg
