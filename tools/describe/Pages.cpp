// SPDX-License-Identifier: MIT
#include <algorithm>

#include "describe/Describe.h"
#include "describe/Words.h"

namespace yg::describe {

namespace {

/// The cells of one row of a table.
std::string row(std::initializer_list<std::string> cells) {
    std::string line = "|";
    for (const std::string& cell : cells) {
        line += ' ';
        for (const char c : cell) {
            if (c == '|')
                line += '\\';
            line += c;
        }
        line += " |";
    }
    return line + '\n';
}

std::string rule(std::size_t cells) {
    std::string line = "|";
    for (std::size_t at = 0; at < cells; ++at)
        line += "---|";
    return line + '\n';
}

std::string code(std::string_view text) {
    return '`' + std::string(text) + '`';
}

std::string linkTo(const ElementInfo& element) {
    const std::string_view name = shownName(element);
    const std::string shown = name.empty() ? std::string(element.id) : code(name);
    return '[' + shown + "](#" + std::string(element.id) + ')' +
           (element.name.empty() && !name.empty() ? " (any name)" : "");
}

std::string list(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items)
        text += (text.empty() ? "" : ", ") + item;
    return text;
}

std::string_view handlingWord(const Rule& rule) {
    switch (rule.handling) {
        case Handling::dropped:
            return "dropped";
        case Handling::replaced:
            return "replaces the earlier one";
        case Handling::defaulted:
            return "read in part";
        case Handling::unresolved:
            return "found nowhere";
        case Handling::kept:
            return "counts";
    }
    return "";
}

class Page {
public:
    explicit Page(const FormatInfo& format)
        : isJson_(format.kind == FormatKind::json), elements_(elementsOf(format)) {
        text_ = "<!-- " + std::string(generatedNote) + " -->\n# " + std::string(format.title) +
                "\n\n" + std::string(format.sentence) + '\n';
        schemas(format);
        files(format);
        for (const std::string_view note : format.notes)
            text_ += '\n' + std::string(note) + '\n';
        text_ += std::string("\n## Example\n\n```") + (isJson_ ? "json" : "xml") + '\n' +
                 std::string(format.example) + "```\n";
        text_ += isJson_ ? "\n## Objects and lists\n" : "\n## Elements\n";
        for (const ElementInfo* each : elements_)
            element(*each);
    }

    const std::string& str() const { return text_; }

private:
    void schemas(const FormatInfo& format) {
        const std::string base = "../../schemas/" + std::string(format.id);
        const auto link = [&](std::string_view suffix) {
            const std::string name = std::string(format.id) + std::string(suffix);
            return '[' + name + "](../../schemas/" + name + ')';
        };
        text_ += isJson_ ? "\nSchema: " + link(".schema.json") + ".\n"
                         : "\nSchemas: " + link(".rng") + ", " + link(".xsd") + ".\n";
    }

    void files(const FormatInfo& format) {
        text_ += "\n## Files\n\n" + row({"File", "Named by", "Use"}) + rule(3);
        for (const FileInfo& file : format.files)
            text_ += row({code(file.path), code(file.operation), std::string(file.sentence)});
    }

    void element(const ElementInfo& element) {
        const std::string_view name = shownName(element);
        text_ += "\n<a id=\"" + std::string(element.id) + "\"></a>\n### " +
                 (name.empty() ? std::string(element.id) : code(name)) + "\n\n" +
                 std::string(element.sentence) + '\n';
        names(element);
        places(element);
        content(element);
        attributes(element);
        rules(element);
    }

    void names(const ElementInfo& element) {
        if (!element.name.empty() || element.usualName.empty())
            return;
        text_ += "\nAny name will do";
        std::vector<std::string> others;
        for (const std::string_view other : element.otherThan)
            others.push_back(code(other));
        text_ += (others.empty() ? "" : " but " + list(others)) + ".\n";
    }

    void places(const ElementInfo& element) {
        std::vector<std::string> parents;
        for (const ElementInfo* each : elements_) {
            if (std::ranges::find(each->content, &element) != each->content.end())
                parents.push_back(linkTo(*each));
        }
        if (!parents.empty())
            text_ += "\nInside: " + list(parents) + ".\n";
    }

    void content(const ElementInfo& element) {
        std::vector<std::string> children;
        for (const ElementInfo* each : element.content)
            children.push_back(linkTo(*each));
        if (element.holds == Content::text) {
            text_ += "\nHolds: text.";
            for (const ValueInfo* limit : limitsOf(element, {}))
                text_ += ' ' + std::string(limit->sentence);
            text_ += '\n';
        } else if (element.holds == Content::texts) {
            text_ += "\nHolds: a list of texts.\n";
        } else if (!children.empty()) {
            text_ += element.holds == Content::element ? "\nHolds exactly one of: " : "\nHolds: ";
            text_ += (element.holds == Content::items ? "a list of " : "") + list(children) + ".\n";
        }
        if (element.isLenient)
            text_ += "\nEvery member may be missing or null; other members are ignored.\n";
    }

    void attributes(const ElementInfo& element) {
        if (element.attributes.empty())
            return;
        text_ += '\n' +
                 row({isJson_ ? "Member" : "Attribute", "Value", "When missing", "Meaning"}) +
                 rule(4);
        for (const AttributeInfo& each : element.attributes) {
            std::string missing = whenMissing(each);
            if (each.isRequired)
                missing = "**required**";
            else if (isRequired(each))
                missing += ", and reported";
            text_ += row({code(each.name), kindOf(element, each), missing, meaningOf(each)});
        }
    }

    void rules(const ElementInfo& element) {
        if (element.rules.empty())
            return;
        text_ += "\nReported here:\n\n";
        for (const Rule* each : element.rules)
            text_ += "- " + code(each->name) + " (" + std::string(handlingWord(*each)) +
                     "): " + std::string(each->meaning) + '\n';
    }

    bool isJson_;
    std::vector<const ElementInfo*> elements_;
    std::string text_;
};

constexpr std::string_view common = R"(
## What holds for all of them

XML files are UTF-8 unless their declaration says otherwise. Comments and processing instructions
have no meaning, except as the first thing in a [magic panel](magic_panels.md), where custom pages
take them for its panel. What a format does not describe is dropped without a log line: an attribute
or an element of another name, an element in a place that is not its own, text between elements. The
application goes on with the rest; each such place is reported to a diagnostics sink by the name of
a rule.

- *Text* is taken as it stands, blanks too.
- A *flag* is true only for the exact text `true`; anything else is false.
- A *whole number* is the one that the text begins with, 0 without one; a fraction is dropped.
- A *number* is read the same way, with a point and an exponent.
- *Names between `;`* are taken as they stand, blanks too; an empty text gives no list.
- Of two definitions of one name the later counts, where the format does not say otherwise.

`soft_optimize/`, `base_optimize/`, `storage/`, `user/` and `images/` are folders below the root of a
stand-alone host; another host says where its files are. What the library stores is written into
`user/`, and a file there is read before the one of that name in `storage/`.

## Schemas

`schemas/` holds a RELAX NG schema and an XML Schema for each XML format and a JSON Schema for each
JSON format. They are installed in `share/YGConfigManager/schemas`.

- RELAX NG is exact: it accepts what is read without a finding, and refuses what is dropped or read
  in part because of its name, its place or its value. It does not know what other files define, nor
  names that are given twice.
- XML Schema is for editors. It cannot describe elements of any name: they are checked under the
  usual names alone, and elements that share a name in one file are checked as one. The limits of
  numbers and of the texts in elements are not checked. A root of any name is known by the usual one.
- The documents have no namespace, so an editor cannot recognise the format by itself. Name the schema in
  its settings, or in the first line of the file, which the library ignores:
  `<?xml-model href="urn:ygconfigmanager:events:rng"?>`. `catalog.xml` says which file that is.
)";

}  // namespace

std::string page(const FormatInfo& format) {
    return Page(format).str();
}

std::string indexPage(std::span<const FormatInfo* const> formats) {
    std::string text = "<!-- " + std::string(generatedNote) +
                       " -->\n# File formats\n\nThe files that the library reads.\n\n" +
                       row({"Format", "What it says", "Files"}) + rule(3);
    for (const FormatInfo* format : formats) {
        std::vector<std::string> files;
        for (const FileInfo& file : format->files)
            files.push_back(code(file.path));
        text += row({'[' + std::string(format->title) + "](" + std::string(format->id) + ".md)",
                     std::string(format->sentence), list(files)});
    }
    return text + std::string(common);
}

}  // namespace yg::describe
