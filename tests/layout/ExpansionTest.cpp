// SPDX-License-Identifier: MIT
//
// Small files whose references, slots and names multiply: what one load and one page may add to
// their files is bounded, in elements and in bytes.
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <malloc.h>
#include <memory>
#include <pthread.h>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "YGConfigManager/layout/YGStyleConfigLoad.h"

#include "LargeInput.h"
#include "diagnostics/RecordingSink.h"
#include "layout/LayoutTest.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using yg::PanelConfigInfo;
using yg::PanelList;
using yg::YGStyleConfigLoad;
using yg::testing::isSanitized;
using yg::testing::LayoutFile;
using yg::testing::LayoutTest;
using yg::testing::RecordingSink;
using yg::testing::Reported;

constexpr std::size_t mostElements = 1'000'000;
constexpr std::size_t mostBytes = std::size_t{64} * 1024 * 1024;

constexpr const char* loadLog =
    "load style config fail:references add more than 1000000 elements or 67108864 bytes";
constexpr const char* pageLog =
    "load style config fail:a custom page adds more than 1000000 elements or 67108864 bytes";

std::string repeated(std::string_view text, std::size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

/// Counts the memory of trees while it lives.
class TreeMemory {
public:
    TreeMemory()
        : allocate_(pugi::get_memory_allocation_function()),
          release_(pugi::get_memory_deallocation_function()) {
        pugi::set_memory_management_functions(
            [](std::size_t size) -> void* {
                void* const memory = std::malloc(size);
                used_ += ::malloc_usable_size(memory);
                peak_ = std::max(peak_, used_);
                return memory;
            },
            [](void* memory) {
                used_ -= ::malloc_usable_size(memory);
                std::free(memory);
            });
        used_ = 0;
        peak_ = 0;
    }
    TreeMemory(const TreeMemory&) = delete;
    TreeMemory& operator=(const TreeMemory&) = delete;
    ~TreeMemory() { pugi::set_memory_management_functions(allocate_, release_); }

    /// At the most at any time since it was made; what was there before is not in it.
    static std::size_t peak() { return static_cast<std::size_t>(peak_); }

private:
    static inline std::ptrdiff_t used_ = 0;
    static inline std::ptrdiff_t peak_ = 0;
    pugi::allocation_function allocate_;
    pugi::deallocation_function release_;
};

/// How many panels and elements a list of panels holds, counted in each place where they stand.
std::size_t shown(const std::shared_ptr<PanelList>& panels) {
    std::size_t count = 0;
    for (const auto& panel : *panels)
        count += 1 + panel->paneElements()->size() + shown(panel->panePanes());
    return count;
}

std::size_t shown(const YGStyleConfigLoad& loader) {
    std::size_t count = 0;
    for (const auto& styles : {loader.styleInfos(), loader.tabStyleInfos()}) {
        if (!styles)
            continue;
        for (const auto& [name, style] : *styles)
            count += shown(style->stylePanes());
    }
    for (const auto& [name, members] : *loader.magicPanelInfos()) {
        for (const auto& [member, panel] : *members)
            count += 1 + panel->paneElements()->size() + shown(panel->panePanes());
    }
    return count;
}

std::string reuseFile(std::string_view content) {
    return "<r><reuse_panel name='r'>" + std::string(content) + "</reuse_panel></r>";
}

std::string magicFile(std::string_view member, std::string_view content) {
    return "<m><magic_panels name='g'><magic_panel name='" + std::string(member) + "'>" +
           std::string(content) + "</magic_panel></magic_panels></m>";
}

/// Elements of 40 MB, of which a load or a page may add one, but not two.
std::string large() {
    return repeated("<element name='" + std::string(10'000, 'l') + "'/>", 4'000);
}

class Expansion : public LayoutTest {
protected:
    Expansion() : LayoutTest(&sink) {
        for (const LayoutFile file : yg::testing::allLayoutFiles)
            write(file, "<r/>");
    }

    std::size_t reported(std::string_view rule) const {
        return static_cast<std::size_t>(
            std::count_if(sink.found.begin(), sink.found.end(),
                          [&](const Reported& one) { return one.rule == rule; }));
    }

    std::vector<std::string> log() const {
        std::vector<std::string> lines = host->runtimeLog();
        std::erase(lines, "initWithStyleConfigPath");
        return lines;
    }

    /// How many elements of a name the expanded form of the magic panels has.
    static std::size_t count(const yg::xml::Element& root, std::string_view name) {
        std::vector<yg::xml::Element> found;
        YGStyleConfigLoad::recursiveSearchNodeWithNodeName(name, root, found);
        return found.size();
    }

    RecordingSink sink{root.path()};
};

// ---- References to reuse panels in the expanded form -------------------------------------------

TEST_F(Expansion, OfReferencesEndsAtTheBytesThatALoadMayAdd) {
    const std::size_t size = 100'000;
    write(LayoutFile::reusePanels, reuseFile("<panel uuid='" + std::string(size, 'u') + "'/>"));
    write(LayoutFile::magicPanels,
          magicFile("x", "<panel>" + repeated("<reuse_panel name='r'/>", 3'000) + "</panel>"));
    const TreeMemory memory;
    const auto expanded = loader.loadMagicPanelsConfigWithMagicPath(path(LayoutFile::magicPanels),
                                                                    path(LayoutFile::reusePanels));
    EXPECT_LT(memory.peak(), 2 * mostBytes);
    const std::size_t left = count(expanded, "reuse_panel");
    // The names and the short values count too.
    EXPECT_EQ(3'000 - left, mostBytes / (size + 25));
    EXPECT_EQ(count(expanded, "panel"), 1 + 2 * (3'000 - left));
    EXPECT_EQ(reported("expansion-limit"), left);
    EXPECT_THAT(log(), ElementsAre(loadLog));
}

TEST_F(Expansion, OfReferencesEndsAtTheElementsThatALoadMayAdd) {
    write(LayoutFile::reusePanels, reuseFile(repeated("<panel/>", 999)));
    write(LayoutFile::magicPanels,
          magicFile("x", "<panel>" + repeated("<reuse_panel name='r'/>", 3'000) + "</panel>"));
    const TreeMemory memory;
    const auto expanded = loader.loadMagicPanelsConfigWithMagicPath(path(LayoutFile::magicPanels),
                                                                    path(LayoutFile::reusePanels));
    EXPECT_LT(memory.peak(), 150'000'000U);
    // A definition is 999 panels, itself and its name.
    EXPECT_EQ(count(expanded, "reuse_panel"), 3'000 - mostElements / 1'001);
    EXPECT_THAT(log(), ElementsAre(loadLog));
}

TEST_F(Expansion, LeavesOutWhatDoesNotFitAndGoesOnWithWhatDoes) {
    write(LayoutFile::reusePanels, "<r><reuse_panel name='large'>" + large() +
                                       "</reuse_panel><reuse_panel name='small'/></r>");
    write(LayoutFile::magicPanels, magicFile("x",
                                             "<panel><reuse_panel name='large'/>\n<reuse_panel "
                                             "name='large'/><reuse_panel name='small'/></panel>"));
    const auto expanded = loader.loadMagicPanelsConfigWithMagicPath(path(LayoutFile::magicPanels),
                                                                    path(LayoutFile::reusePanels));
    EXPECT_EQ(count(expanded, "panel"), 3U);
    EXPECT_THAT(sink.found, ElementsAre(Reported{"expansion-limit", "reuse_panel", "name", "large",
                                                 "config/magic.xml:2:14"}));
}

TEST_F(Expansion, BeginsAgainWithEachLoad) {
    write(LayoutFile::reusePanels, reuseFile(large()));
    write(LayoutFile::magicPanels, magicFile("x", "<panel><reuse_panel name='r'/></panel>"));
    for (int i = 0; i < 2; ++i) {
        const auto expanded = loader.loadMagicPanelsConfigWithMagicPath(
            path(LayoutFile::magicPanels), path(LayoutFile::reusePanels));
        EXPECT_EQ(count(expanded, "panel"), 2U);
    }
    EXPECT_THAT(sink.found, IsEmpty());
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(Expansion, OfOneMissingDefinitionCostsNothing) {
    write(LayoutFile::magicPanels,
          magicFile("x", "<panel>" + repeated("<reuse_panel name='r'/>", 3'000) + "</panel>"));
    load();
    EXPECT_EQ(reported("expansion-limit"), 0U);
    EXPECT_THAT(log(), IsEmpty());
}

// ---- References in records ----------------------------------------------------------------------

// A record is in all places that refer to it; whoever goes through the pages or copies them
// meets it in each of them.
TEST_F(Expansion, OfReusePanelsInStylesIsBounded) {
    write(LayoutFile::reusePanels, reuseFile(repeated("<element name='e'/>", 1'000)));
    write(LayoutFile::styles, "<s><style name='a'><panel>" +
                                  repeated("<reuse_panel name='r'/>", 3'000) +
                                  "</panel></style></s>");
    load();
    EXPECT_EQ(style("a")->stylePanes()->front()->panePanes()->size(), mostElements / 1'001);
    EXPECT_EQ(reported("expansion-limit"), 3'000 - mostElements / 1'001);
    EXPECT_THAT(log(), ElementsAre(loadLog));
}

TEST_F(Expansion, OfReusePanelsCountsTheirTexts) {
    write(LayoutFile::reusePanels,
          reuseFile("<element name='" + std::string(50'000, 'e') + "' event_dispatch_dest='" +
                    std::string(50'000, 'd') + "'/>"));
    write(LayoutFile::styles, "<s><style name='a'><panel>" +
                                  repeated("<reuse_panel name='r'/>", 3'000) +
                                  "</panel></style></s>");
    load();
    EXPECT_EQ(style("a")->stylePanes()->front()->panePanes()->size(), mostBytes / 100'001);
    EXPECT_THAT(log(), ElementsAre(loadLog));
}

TEST_F(Expansion, OfReferencesBelowReferencesIsTheirProduct) {
    // A hundred elements, a hundred times in a panel, which is shown in a thousand slots: ten
    // million in some kilobytes. A panel of the soft-optimize file may hold a slot of the first.
    write(LayoutFile::reusePanels, reuseFile(repeated("<element name='e'/>", 100)));
    write(LayoutFile::magicPanels,
          magicFile("x", "<panel>" + repeated("<reuse_panel name='r'/>", 100) + "</panel>"));
    write(LayoutFile::softMagicPanels, "<m><magic_panels name='h'><magic_panel name='x'><panel>" +
                                           repeated("<magic_panels name='g'/>", 10) +
                                           "</panel></magic_panel></magic_panels></m>");
    write(LayoutFile::styles,
          "<s><style name='a'>" + repeated("<magic_panels name='g'/>", 10) + "</style></s>");
    std::string tabs = "<s>";
    for (int i = 0; i < 100; ++i)
        tabs += "<style name='" + std::to_string(i) + "'>" +
                repeated("<magic_panels name='h'/>", 10) + "</style>";
    write(LayoutFile::tabs, tabs + "</s>");
    load();
    EXPECT_LE(shown(loader), mostElements + 1'000);
    EXPECT_GT(shown(loader), mostElements / 2);
    EXPECT_THAT(log(), ElementsAre(loadLog));
    EXPECT_EQ(style("a")->stylePanes()->size(), 10U);
}

TEST_F(Expansion, OfASlotMarksThePanelThatItHasNoRoomFor) {
    write(LayoutFile::magicPanels, magicFile("x", "<panel>" + large() + "</panel>"));
    write(LayoutFile::styles,
          "<s><style name='a'><magic_panels name='g'/></style>\n"
          "<style name='b'><magic_panels name='g'/></style></s>");
    load();
    EXPECT_EQ(style("a")->stylePanes()->front(), magicPanel("g", "x"));
    EXPECT_THAT(*style("b")->stylePanes(), IsEmpty());
    EXPECT_THAT(sink.found, ElementsAre(Reported{"expansion-limit", "magic_panels", "name", "g",
                                                 "config/styles.xml:2:31"}));
    EXPECT_THAT(log(), ElementsAre(loadLog));
}

TEST_F(Expansion, OfNamesInMagicPanelsIsBounded) {
    const std::size_t size = 100'000;
    const std::string group(size, 'g');
    write(LayoutFile::magicPanels, "<m><magic_panels name='" + group +
                                       "'><magic_panel name='x'><panel>" +
                                       repeated("<panel name='p' is_editable='true'/>", 2'000) +
                                       "</panel></magic_panel></magic_panels></m>");
    load();
    std::size_t bytes = 0;
    std::size_t own = 0;
    for (const auto& panel : *magicPanel(group, "x")->panePanes()) {
        bytes += panel->panelName()->size();
        own += panel->panelName() == "p";
    }
    EXPECT_LE(bytes, mostBytes + own);
    EXPECT_EQ(2'000 - own, mostBytes / (size + 3));
    EXPECT_EQ(reported("expansion-limit"), own);
    EXPECT_THAT(log(), ElementsAre(loadLog));
}

TEST_F(Expansion, OfAStyleThatIsParsedAloneIsBounded) {
    write(LayoutFile::reusePanels, reuseFile(repeated("<element name='e'/>", 1'000)));
    load();
    const auto record = loader.parseStyleConfig(yg::testing::parsed(
        "<style><panel>" + repeated("<reuse_panel name='r'/>", 3'000) + "</panel></style>"));
    EXPECT_EQ(record->stylePanes()->front()->panePanes()->size(), mostElements / 1'001);
    EXPECT_THAT(log(), ElementsAre(loadLog));
}

// ---- Custom pages -------------------------------------------------------------------------------

class PageExpansion : public Expansion {
protected:
    void writeSlots(std::size_t count) {
        write(LayoutFile::styles,
              "<s><style name='t'>" + repeated("<magic_panels name='g'/>", count) + "</style></s>");
        write(LayoutFile::softStyles, "<s/>");
    }

    /// Loads, and forgets what that said.
    void loadQuietly() {
        load();
        sink.found.clear();
        host->clear();
    }

    void expectNoPage(const std::string& name) {
        EXPECT_EQ(loader.loadStyleConfigInfoWithName(name), nullptr);
        EXPECT_THAT(sink.found, SizeIs(1));
        EXPECT_EQ(reported("expansion-limit"), 1U);
        if (!sink.found.empty()) {
            EXPECT_TRUE(sink.found.front().value == name);
            EXPECT_EQ(sink.found.front().at, "config/styles.xml:1:4");
        }
        EXPECT_THAT(log(), ElementsAre(pageLog));
        EXPECT_FALSE(loader.createXMLElementWithStyleName(name));
    }
};

TEST_F(PageExpansion, OfManySlotsWithALongMemberGivesNoPage) {
    writeSlots(1'600);
    write(LayoutFile::magicPanels,
          magicFile("x", "<panel name='" + std::string(200'000, 'n') + "'/>"));
    loadQuietly();
    const TreeMemory memory;
    expectNoPage("t" + repeated("-x", 1'600));
    EXPECT_LT(memory.peak(), 2 * mostBytes);
}

TEST_F(PageExpansion, OfManySlotsWithAMemberOfManyElementsGivesNoPage) {
    writeSlots(1'600);
    write(LayoutFile::magicPanels,
          magicFile("x", "<panel>" + repeated("<panel/>", 1'000) + "</panel>"));
    loadQuietly();
    const TreeMemory memory;
    expectNoPage("t" + repeated("-x", 1'600));
    EXPECT_LT(memory.peak(), 150'000'000U);
}

TEST_F(PageExpansion, OfSlotsInsideSlotsCounts) {
    write(LayoutFile::styles, "<s><style name='t'>" + repeated("<magic_panels name='g'>", 200) +
                                  repeated("</magic_panels>", 200) + "</style></s>");
    write(LayoutFile::softStyles, "<s/>");
    write(LayoutFile::magicPanels,
          magicFile("x", "<panel>" + repeated("<panel/>", 10'000) + "</panel>"));
    loadQuietly();
    const TreeMemory memory;
    expectNoPage("t" + repeated("-x", 200));
    EXPECT_LT(memory.peak(), 150'000'000U);
}

TEST_F(PageExpansion, OfALongArgumentInAPatternGivesNoPage) {
    const std::string argument(10'000, 'a');
    host->mappings["模版通配"] = {{"K", {argument}}};
    writeSlots(1);
    write(LayoutFile::magicPanels,
          magicFile("K", "<panel>" + repeated("<element name='K'/>", 20'000) + "</panel>"));
    loadQuietly();
    const TreeMemory memory;
    expectNoPage("t-" + argument);
    EXPECT_LT(memory.peak(), 10'000'000U);
}

TEST_F(PageExpansion, OfAnArgumentThatIsMarkupCountsTheElementsInIt) {
    // Fifteen bytes an element in the text, many times that in a tree.
    const std::string argument = repeated("<panel></panel>", 1'000);
    host->mappings["模版通配"] = {{"K", {argument}}};
    writeSlots(1);
    write(LayoutFile::magicPanels,
          magicFile("K", "<panel>" + repeated("<panel>K</panel>", 2'000) + "</panel>"));
    loadQuietly();
    const TreeMemory memory;
    expectNoPage("t-" + argument);
    EXPECT_LT(memory.peak(), 10'000'000U);
}

TEST_F(PageExpansion, OfAPatternThatShrinksCountsThePattern) {
    host->mappings["模版通配"] = {{"KKKK", {""}}};
    writeSlots(1'600);
    write(LayoutFile::magicPanels,
          magicFile("KKKK", "<panel name='" + repeated("KKKK", 50'000) + "'/>"));
    loadQuietly();
    expectNoPage("t" + std::string(1'600, '-'));
}

TEST_F(PageExpansion, OfSlotsThatStayGivesNoPage) {
    writeSlots(2);
    write(LayoutFile::magicPanels, magicFile("x", "<panel>" + large() + "</panel>"));
    loadQuietly();
    EXPECT_EQ(loader.loadStyleConfigInfoWithName("t-n-n"), nullptr);
    EXPECT_EQ(reported("expansion-limit"), 1U);
    EXPECT_THAT(log(), ElementsAre(pageLog));
    // The page's element holds the slots alone.
    EXPECT_TRUE(loader.createXMLElementWithStyleName("t-n-n"));
}

TEST_F(PageExpansion, BeginsAgainWithEachPage) {
    writeSlots(1);
    write(LayoutFile::magicPanels, magicFile("x", "<panel>" + large() + "</panel>"));
    loadQuietly();
    for (int i = 0; i < 2; ++i) {
        const auto page = loader.loadStyleConfigInfoWithName("t-x");
        ASSERT_NE(page, nullptr);
        EXPECT_EQ(shown(page->stylePanes()), 4'001U);
    }
    EXPECT_THAT(sink.found, IsEmpty());
    EXPECT_THAT(log(), IsEmpty());
}

TEST_F(PageExpansion, AsksTheHostForItsMappingOncePerPage) {
    host->mappings["模版通配"] = {{"K", {"1", "2"}}};
    writeSlots(100);
    write(LayoutFile::magicPanels, magicFile("K", "<panel name='K'/>"));
    loadQuietly();
    ASSERT_NE(loader.loadStyleConfigInfoWithName("t" + repeated("-1-2", 50)), nullptr);
    EXPECT_THAT(host->questions(), ElementsAre(HasSubstr("getMappingDicForKey")));
}

// Looking for each slot's member among all of them takes minutes here.
TEST_F(PageExpansion, LooksUpMembersAndGroupsByName) {
    constexpr std::size_t many = 200'000;
    std::string members;
    std::string groups;
    for (std::size_t i = 0; i < many; ++i) {
        const std::string number = std::to_string(i);
        members += "<magic_panel name='" + number + "'><panel/></magic_panel>";
        groups += "<magic_panels name='" + number + "'/>";
    }
    write(LayoutFile::magicPanels,
          "<m>" + groups + "<magic_panels name='g'>" + members + "</magic_panels></m>");
    writeSlots(many);
    std::vector<std::string> values;
    values.reserve(many);
    for (std::size_t i = 0; i < many; ++i)
        values.push_back("v" + std::to_string(i));
    host->mappings["模版通配"] = {{"0", values}};
    YGStyleConfigLoad fresh;
    load(fresh);
    std::string name = "t";
    for (std::size_t i = 0; i < many / 2; ++i)
        name += "-" + std::to_string(many - 1 - i) + "-v" + std::to_string(many - 1 - i);
    const auto page = fresh.loadStyleConfigInfoWithName(name);
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(shown(page->stylePanes()), many);
}

// The same for what diagnostics say of the soft-optimize files.
TEST_F(Expansion, OfFindingsOnReplacedGroupsLooksThemUpByName) {
    constexpr std::size_t many = 100'000;
    std::string groups;
    std::string styles;
    for (std::size_t i = 0; i < many; ++i) {
        groups += "<magic_panels name='" + std::to_string(i) + "'/>";
        styles += "<style name='" + std::to_string(i) + "'/>";
    }
    for (const LayoutFile file : {LayoutFile::magicPanels, LayoutFile::softMagicPanels})
        write(file, "<m>" + groups + "</m>");
    for (const LayoutFile file : {LayoutFile::styles, LayoutFile::softStyles})
        write(file, "<s>" + styles + "</s>");
    load();
    EXPECT_EQ(reported("replaced-group"), many);
    EXPECT_EQ(reported("overridden-style"), many);
    EXPECT_EQ(sink.found.front().at, "soft/magic.xml:1:18");
}

// ---- Depth --------------------------------------------------------------------------------------

/// A sanitizer takes several times the stack.
constexpr std::size_t smallStack = std::size_t{isSanitized ? 2048 : 512} * 1024;

/// Runs on a thread whose stack is small, so that a recursion that goes too deep shows.
template <class Work>
void onSmallStack(Work work) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, smallStack), 0);
    pthread_t thread;
    const auto start = [](void* argument) -> void* {
        (*static_cast<Work*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, start, &work), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

// A page is as deep as its template, a member in it and a reuse panel in that.
TEST_F(PageExpansion, OfTheDeepestFilesFitsASmallStack) {
    const std::string down = repeated("<panel>", 253);
    const std::string up = repeated("</panel>", 253);
    write(LayoutFile::reusePanels, reuseFile(down + up));
    write(LayoutFile::magicPanels, magicFile("x", down + "<reuse_panel name='r'/>" + up));
    write(LayoutFile::softStyles,
          "<s><style name='t'>" + down + "<magic_panels name='g'/>" + up + "</style></s>");
    load();
    onSmallStack([&] {
        YGStyleConfigLoad fresh(&sink);
        load(fresh);
        auto page = fresh.loadStyleConfigInfoWithName("t-x");
        ASSERT_NE(page, nullptr);
        EXPECT_EQ(shown(page->stylePanes()), 3 * 253U + 1);
        auto copy = page->copyWithZone();
        EXPECT_EQ(shown(copy->stylePanes()), 3 * 253U + 1);
        page.reset();
        copy.reset();
    });
}

TEST_F(Expansion, OfASearchInADeepTreeFitsASmallStack) {
    onSmallStack([] {
        yg::xml::Element top = yg::xml::Element::create("top");
        yg::xml::Element at = top;
        for (int i = 0; i < 100'000; ++i)
            at = yg::xml::Element(at.appendChild(yg::xml::Element::create("a")));
        std::vector<yg::xml::Element> found;
        YGStyleConfigLoad::recursiveSearchNodeWithNodeName("a", top, found);
        EXPECT_EQ(found.size(), 100'000U);
    });
}

}  // namespace
