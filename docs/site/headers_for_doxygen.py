#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints a public header as Doxygen wants it.

The headers are written to be read as they stand. This brings what they leave to the reader into
the form that Doxygen asks for:

- The comment at the top of a header is about the class that the header is named after, or about
  the file when it has none.
- A comment is about all declarations below it down to the next blank line or comment.
- Declarations of what nobody calls by name (deleted and defaulted operations, what is not public,
  iterators, deduction guides, the tables of attributes) go.
"""
import os
import re
import sys


def main(path):
    with open(path, encoding="utf-8") as file:
        lines = file.read().split("\n")
    top, lines = take_top(lines)
    lines = without_tables(lines)
    lines = with_public_parts_alone(lines)
    lines = without_plain_operations(lines)
    lines = with_shared_comments(lines)
    print("\n".join(with_top(lines, top, path)))


def take_top(lines):
    """The comment at the top, and the lines without it."""
    top = []
    for at, line in enumerate(lines):
        if not line.startswith("//"):
            return top, lines[at:]
        text = line[2:]
        if "SPDX-License-Identifier" not in text and (top or text.strip()):
            top.append(text[1:] if text.startswith(" ") else text)
    return top, []


def as_markdown(top):
    """The comment with what is indented in it as code, as it is meant."""
    lines = []
    for line in top:
        is_code = line.startswith("  ")
        if is_code and lines and lines[-1] and not lines[-1].startswith("    "):
            lines.append("")
        lines.append("  " + line if is_code else line)
    return lines


def with_top(lines, top, path):
    stem = os.path.splitext(os.path.basename(path))[0]
    comment = ["/// " + line if line else "///" for line in as_markdown(top)]
    result = []
    is_placed = False
    for at, line in enumerate(lines):
        named = re.match(r"(class|struct) (YG_EXPORT )?" + stem + r"\b[^;]*$", line)
        if named and not is_placed:
            is_placed = True
            begin = len(result)
            if begin and result[begin - 1].startswith("template"):
                begin -= 1
            own = begin
            while own and result[own - 1].startswith("///"):
                own -= 1
            between = ["///"] if own < begin else []
            result[own:begin] = result[own:begin] + between + comment
        result.append(line)
    about = ["/// @file", "/// Declares " + stem + "."] if is_placed else ["/// @file", *comment]
    return about + [""] + result


def end_of_block(lines, at):
    """The line behind the one that closes the first brace opened at or behind a line."""
    depth = 0
    has_begun = False
    while at < len(lines):
        code = re.sub(r'"(\\.|[^"\\])*"|//.*', "", lines[at])
        depth += code.count("{") - code.count("}")
        has_begun = has_begun or "{" in code
        at += 1
        if has_begun and depth == 0:
            break
    return at


def without_tables(lines):
    result = []
    at = 0
    while at < len(lines):
        if lines[at] == "template <>" and lines[at + 1].startswith("struct Description<"):
            at = end_of_block(lines, at + 1)
        elif re.match(r"namespace detail {| +class YG_EXPORT Iterator {", lines[at]):
            at = end_of_block(lines, at)
        else:
            result.append(lines[at])
            at += 1
    return result


def with_public_parts_alone(lines):
    """Doxygen would leave them out as well, but not the comments that they share with others."""
    result = []
    indents = []  # of the classes whose private part is open
    for line in lines:
        indent = len(line) - len(line.lstrip())
        if re.match(r" *(private|protected):$", line):
            if not indents or indent != indents[-1]:
                indents.append(indent)
        elif indents and (re.match(r" *public:$", line) and indent == indents[-1]):
            indents.pop()
        elif indents and line.strip() == "};" and indent == indents[-1]:
            indents.pop()
        if not indents:
            result.append(line)
    return result


def without_plain_operations(lines):
    text = "\n".join(lines)
    text = re.sub(r"(\n +template <[^\n]*>)?\n +[^\n;/]*= delete;[^\n]*", "", text)
    text = re.sub(r"\n +(virtual )?~?\w+\(\)( noexcept)? = default;", "", text)
    text = re.sub(r"\n +(virtual )?~\w+\(\)( override)?;", "", text)
    text = re.sub(r"\n +friend [^\n;(]*;", "", text)
    text = re.sub(r"\n +friend [^\n;]*= default;[^\n]*", "", text)
    text = re.sub(r"\ntemplate <[^\n]*>\n\w+\([^;]*\) -> [^;]*;", "", text)
    text = re.sub(r"\n(class|struct) \w+;", "", text)
    text = re.sub(r"\nnamespace \w+ {\n((class|struct) \w+;\n?)*}[^\n]*", "", text)
    return text.split("\n")


def with_shared_comments(lines):
    result = []
    comment = []  # the one about the paragraph
    is_open = True  # whether a declaration may begin here
    depth = 0
    body = 0  # braces that are open in the body of a function
    for line in lines:
        code = line.strip()
        bare = re.sub(r'"(\\.|[^"\\])*"|//.*', "", code).strip()
        if body:
            body += bare.count("{") - bare.count("}")
            is_open = body == 0
            result.append(line)
            continue
        if not code:
            comment, is_open = [], True
        elif code.startswith("//"):
            if not result or not result[-1].strip().startswith("//"):
                comment = []
            comment.append(line)
        elif is_open and comment and not re.match(r"[}#]|\w+:$|namespace", code):
            if not result[-1].strip().startswith("//") and "///<" not in line:
                result.extend(comment)
        result.append(line)
        if code and not code.startswith("//"):
            depth += bare.count("(") - bare.count(")")
            is_open = depth == 0 and bool(re.search(r"[;}]$", bare))
            if re.search(r"\) (const )?(noexcept )?{$", bare):
                body = 1
            elif bare.endswith("{"):
                comment = []
    return result


main(sys.argv[1])
