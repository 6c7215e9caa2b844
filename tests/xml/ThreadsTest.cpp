// SPDX-License-Identifier: MIT
//
// What several threads may do at once. It shows under the thread sanitizer.
#include <atomic>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "YGConfigManager/xml/Document.h"
#include "YGConfigManager/xml/Query.h"

#include "xml/XmlTesting.h"

namespace yg::xml {
namespace {

using namespace std::string_view_literals;

template <class Work>
void onThreads(Work work) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(work);
    for (std::thread& thread : threads)
        thread.join();
}

TEST(Threads, ReadOneTreeAtOnce) {
    const Document document =
        documentOf("<a><b n='1'><c>x</c></b> <b n='2'> </b><!--d--><?e f?></a>");
    const std::string plainly = document.serialise(Form::plain);
    const Query query("//b[@n='1']/c|//b");
    std::atomic<int> wrong = 0;
    onThreads([&] {
        for (int i = 0; i < 50; ++i) {
            const Element root = document.root();
            wrong += document.serialise(Form::plain) != plainly;
            wrong += document.query(query).size() != 3;
            wrong += root.query("b").size() != 2;
            wrong += root.stringValue() != "x ";
            wrong += root.copy().serialise() != plainly;
            wrong += Element(root.childAt(1)).attribute("n") != "2";
            wrong += document.copy().serialise(Form::plain) != plainly;
        }
    });
    EXPECT_EQ(wrong, 0);
}

TEST(Threads, ReadATreeFromWhichSomethingWasTakenOut) {
    const Document document = documentOf("<a><b n='1'><c>x</c></b><b n='2'/></a>");
    Element removed(document.root().childAt(0));
    removed.remove();
    std::atomic<int> wrong = 0;
    onThreads([&] {
        for (int i = 0; i < 50; ++i) {
            wrong += document.query("//b").size() != 1;
            wrong += removed.query("//c").size() != 1;
            wrong += removed.copy().serialise() != R"(<b n="1"><c>x</c></b>)";
        }
    });
    EXPECT_EQ(wrong, 0);
}

TEST(Threads, ParseAtOnce) {
    std::atomic<int> wrong = 0;
    onThreads([&] {
        for (int i = 0; i < 50; ++i) {
            wrong += !Document::parseText("<a b='1'/>");
            wrong += !Document::parseText("<!DOCTYPE a SYSTEM 'x'><a>&#65;</a>");
            wrong += !Document::parseText("<a b='1'/>", withPositions);
            wrong += !Document::parseBytes("<?xml version='1.0' encoding='gbk'?><a>\xD6\xD0</a>");
            wrong += static_cast<bool>(Document::parseText("<a>&x;</b>"));
            wrong += Query("a[").operator bool();
        }
    });
    EXPECT_EQ(wrong, 0);
}

TEST(Threads, ChangeTreesOfTheirOwn) {
    const Document shared = documentOf("<a><b/></a>");
    std::atomic<int> wrong = 0;
    onThreads([&] {
        for (int i = 0; i < 50; ++i) {
            Element copy(shared.root().copy());
            copy.appendChild(shared.root());
            copy.childAt(0).remove();
            copy.setAttribute("n", std::to_string(i));
            wrong += copy.query("//b").size() != 1;
        }
    });
    EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace yg::xml
