#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Looks for links that lead nowhere. Nothing is asked for over the network.

  links.py markdown SOURCE-ROOT   the Markdown files of the repository
  links.py site FOLDER            the site that scripts/site has built: links and what pages load

A link is dead when its file, or the heading or name behind its "#", does not exist. In a site,
whatever a page loads from elsewhere is a fault as well.
"""
import html.parser
import os
import pathlib
import re
import subprocess
import sys
import unicodedata
import urllib.parse

MARKDOWN_LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")
EXTERNAL = re.compile(r"[a-z][a-z0-9+.-]*:|//", re.I)


class Page(html.parser.HTMLParser):
    """The names, links and loads of an HTML page."""

    def __init__(self, text):
        super().__init__(convert_charrefs=True)
        self.names = set()
        self.links = []
        self.loads = []
        self.feed(text)
        self.close()

    def handle_starttag(self, tag, attributes):
        given = dict(attributes)
        for name in ("id", "name"):
            if given.get(name):
                self.names.add(given[name])
        if tag in ("a", "area") and given.get("href") is not None:
            self.links.append(given["href"])
        if tag == "link" and given.get("href") and \
                given.get("rel") in ("stylesheet", "icon", "preload", "shortcut icon", "preconnect"):
            self.loads.append(given["href"])
        if tag in ("script", "img", "iframe", "source", "video", "audio") and given.get("src"):
            self.loads.append(given["src"])


def slug(heading):
    """The name that a code host gives a heading."""
    text = re.sub(r"[`*]|\]\([^)]*\)|\[", "", heading).strip().lower()
    kept = "".join(letter for letter in text
                   if letter in " -_" or unicodedata.category(letter)[0] in "LN")
    return kept.replace(" ", "-")


def names_of_markdown(text):
    text = re.sub(r"^```.*?^```$", "", text, flags=re.S | re.M)
    names = set(re.findall(r"<a id=\"([^\"]+)\"", text))
    counts = {}
    for heading in re.findall(r"^#+ +(.*?) *$", text, re.M):
        name = slug(heading)
        names.add(name + ("-%d" % counts[name] if name in counts else ""))
        counts[name] = counts.get(name, 0) + 1
    return names


def check_markdown(root):
    faults = []
    links = 0
    listed = subprocess.run(["git", "-C", str(root), "ls-files", "-co", "--exclude-standard", "*.md"],
                            stdout=subprocess.PIPE, check=True).stdout.decode("utf-8").splitlines()
    for name in listed:
        text = (root / name).read_text("utf-8")
        prose = re.sub(r"^```.*?^```$|`[^`\n]*`(?!\])", "", text, flags=re.S | re.M)
        for target in MARKDOWN_LINK.findall(prose):
            if EXTERNAL.match(target):
                continue
            links += 1
            path, _, anchor = target.partition("#")
            file = root / os.path.normpath(os.path.join(os.path.dirname(name), path)) if path \
                else root / name
            if not file.exists():
                faults.append("%s: %s does not exist" % (name, target))
            elif anchor and (file.suffix != ".md" or
                             anchor not in names_of_markdown(file.read_text("utf-8"))):
                faults.append("%s: nothing has the name %s" % (name, target))
    return len(listed), links, faults


def check_site(folder):
    faults = []
    links = 0
    pages = {file: Page(file.read_text("utf-8")) for file in sorted(folder.rglob("*.html"))}
    for file, page in pages.items():
        shown = file.relative_to(folder)
        for target in page.links + page.loads:
            if EXTERNAL.match(target):
                if target in page.loads and not target.startswith("data:"):
                    faults.append("%s: loads %s" % (shown, target))
                continue
            links += 1
            path, _, anchor = target.partition("#")
            path, anchor = (urllib.parse.unquote(part) for part in (path.partition("?")[0], anchor))
            if file.name == "404.html" and path in (".", "/"):
                path = "index.html"
            at = folder / path.lstrip("/") if path.startswith("/") else \
                pathlib.Path(os.path.normpath(file.parent / path)) if path else file
            if at.is_dir():
                at = at / "index.html"
            if not at.exists():
                faults.append("%s: %s does not exist" % (shown, target))
            elif anchor and anchor != "__top" and at in pages and anchor not in pages[at].names:
                faults.append("%s: nothing has the name %s" % (shown, target))
    for file in sorted(folder.rglob("*.css")):
        for target in re.findall(r"url\(['\"]?([^'\")]+)", file.read_text("utf-8")):
            if EXTERNAL.match(target) and not target.startswith("data:"):
                faults.append("%s: loads %s" % (file.relative_to(folder), target))
    return len(pages), links, faults


def main():
    if len(sys.argv) != 3 or sys.argv[1] not in ("markdown", "site"):
        sys.exit("usage: links.py markdown SOURCE-ROOT | site FOLDER")
    check = check_markdown if sys.argv[1] == "markdown" else check_site
    files, links, faults = check(pathlib.Path(sys.argv[2]).resolve())
    for fault in faults:
        print(fault)
    print("%d files, %d links, %d dead" % (files, links, len(faults)))
    sys.exit(1 if faults or not links else 0)


main()
