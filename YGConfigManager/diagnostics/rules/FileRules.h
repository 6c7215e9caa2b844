// SPDX-License-Identifier: MIT
//
// Rules about files as such, values of any file, and host.json. Internal: a part of RuleTable.h.
#pragma once

#include "YGConfigManager/diagnostics/Rule.h"

namespace yg {

inline constexpr Rule fileRules[] = {
    // Found by inspections.
    {"missing-file", Handling::unresolved, Severity::warning,
     "The file is missing, and a terminal always asks for it.",
     "A missing file is read as one with nothing in it, without a word. Add the file, if only with "
     "its root element."},
    {"missing-image-folder", Handling::unresolved, Severity::error,
     "The folder of the images is missing, so no image of a palette is there.",
     "The paths of images in palettes are relative to the folder images/ of the root. Add the "
     "folder "
     "with its files; where it has another name, give it this one."},
    {"byte-order-mark", Handling::kept, Severity::info,
     "A JSON file that begins with a byte-order mark is read here, but not by all programs.",
     "Some editors write the mark in front of each text in UTF-8. JSON has none, and many readers "
     "refuse it. Save the file as UTF-8 without a mark.",
     "host.json", "\xEF\xBB\xBF{\"rightLevel\": \"free\"}", "{\"rightLevel\": \"free\"}"},
    {"wrong-encoding", Handling::unresolved, Severity::error,
     "The file is not in the encoding that it is read in.",
     "XML is read in the encoding that its declaration names, without one in UTF-8; JSON always in "
     "UTF-8. In another one the file cannot be read, or its characters become others, so that no "
     "name is found. Save the file as UTF-8, or declare the encoding that it is in.",
     "config/custompage_template.xml",
     R"(<?xml version="1.0" encoding="GBK"?>
<styles default_style="行情">
    <style name="行情"><panel name="main"/></style>
</styles>)",
     R"(<?xml version="1.0" encoding="UTF-8"?>
<styles default_style="行情">
    <style name="行情"><panel name="main"/></style>
</styles>)"},
    {"lookalike-character", Handling::unresolved, Severity::error,
     "A character only looks like one of the markup, so nothing in the file is read.",
     "Word processors, chats and input methods replace straight quotes by curly ones, signs by "
     "their full-width forms, and blanks by others. XML and JSON know only those of ASCII.",
     "config/events.xml", R"(<event_list>
    <command_event><command name=“open”/></command_event>
</event_list>)",
     R"(<event_list>
    <command_event><command name="open"/></command_event>
</event_list>)"},
    {"hidden-character", Handling::kept, Severity::warning,
     "The text has a character in it that cannot be seen.",
     "A zero-width character or a no-break blank is a part of the text like any other, so a name "
     "with one is another name. It comes along when text is copied from a web page or a chat. "
     "Delete it, or write a plain blank.",
     "config/custompage_template.xml",
     "<styles default_style=\"quote\">\n"
     "    <style name=\"quote\"><panel name=\"main\"><element name=\"grid\" "
     "param=\"SH\xe2\x80\x8b\"/></panel></style>\n"
     "</styles>",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main"><element name="grid" param="SH"/></panel></style>
</styles>)"},
    {"name-with-blanks", Handling::unresolved, Severity::error,
     "The name has blanks around it or characters that cannot be seen, so it is not the one that "
     "is meant.",
     "Names are compared as they stand. This one matches none, and would match another without "
     "what cannot be seen of it.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main">
        <element name="grid" event_dispatch_dest="chart"/>
        <element name="kline" uuid="chart "/>
    </panel></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main">
        <element name="grid" event_dispatch_dest="chart"/>
        <element name="kline" uuid="chart"/>
    </panel></style>
</styles>)"},
    {"odd-separator", Handling::unresolved, Severity::error,
     "The names of a list stand between semicolons, without blanks; this is read as one name.",
     "Only \";\" separates the names of a list. A comma, a full-width sign or a blank is a part of "
     "the name beside it.",
     "config/custompage_template.xml",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main">
        <element name="grid" event_dispatch_dest="chart,news"/>
        <element name="kline" uuid="chart"/><element name="web" uuid="news"/>
    </panel></style>
</styles>)",
     R"(<styles default_style="quote">
    <style name="quote"><panel name="main">
        <element name="grid" event_dispatch_dest="chart;news"/>
        <element name="kline" uuid="chart"/><element name="web" uuid="news"/>
    </panel></style>
</styles>)"},
    {"unknown-host-member", Handling::dropped, Severity::warning,
     "No member of this name is read in host.json.",
     "The members are \"rightLevel\", \"configServer\" and \"mappings\"; letter case counts. "
     "Others are ignored.",
     "host.json", R"({"configserver": "127.0.0.1:8080"})", R"({"configServer": "127.0.0.1:8080"})"},
    {"host-member-of-wrong-type", Handling::dropped, Severity::error,
     "The member is of a type that is not read here, so no member of host.json counts.",
     "\"rightLevel\" and \"configServer\" are texts in quotes. \"mappings\" is an object of "
     "objects, which hold lists of texts. With one of another type the tool does not start, and an "
     "application goes on without any setting.",
     "host.json", R"({"rightLevel": 2})", R"({"rightLevel": "l2"})"},
    {"odd-config-server", Handling::unresolved, Severity::error,
     "The server must be a host name, or a host name, a colon and a port.",
     "The addresses of downloads are made of \"http://\", this text and a path. Leave out the "
     "scheme, the path and blanks. A port goes from 1 to 65535.",
     "host.json", R"({"configServer": "http://127.0.0.1:8080/"})",
     R"({"configServer": "127.0.0.1:8080"})"},
    {"odd-right-level", Handling::kept, Severity::error,
     "Only \"free\" in small letters is the free right level; this is read as another one.",
     "The right level is compared as it stands. With any other text than \"free\" and an empty one "
     "the server files of paying users are read.",
     "host.json", R"({"rightLevel": "Free"})", R"({"rightLevel": "free"})"},
    {"unused-mapping", Handling::dropped, Severity::warning,
     "The library asks for the mapping table \"模版通配\" alone.",
     "Another key is read by nothing but the application, if at all.", "host.json",
     R"({"mappings": {"模板通配": {"STOCK": ["SH990001"]}}})",
     R"({"mappings": {"模版通配": {"STOCK": ["SH990001"]}}})"},
};

}  // namespace yg
