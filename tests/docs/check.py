#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Holds the pages for users against what they show.

  check.py SOURCE-ROOT --program FILE… [--write]

In README.md, docs/start.md and docs/guides:

- A block of C++ or CMake stands line by line in one of the sources that the tests compile:
  examples/host and docs/snippets.
- A console block is run and its output compared, standard error included. The commands of a page
  run one after the other in a new folder with a copy of examples/terminal, the schemas, the
  programs named on the command line, and a web server on 127.0.0.1:8080 for the folder srv. A line "…" in the output
  stands for any lines.
- A block with a title is a file that the page asks for; it is written before the commands below.
- The scripts that a block of sh names exist.

--write puts what the commands print into the pages instead of comparing it.
"""
import argparse
import difflib
import functools
import http.server
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import textwrap
import threading

FENCE = re.compile(r"^```(\S*)(?: title=\"([^\"]+)\")?\n(.*?)^```$", re.S | re.M)
SHOWN_AUTHORITY = "127.0.0.1:8080"
KNOWN = {"cpp", "cmake", "console", "sh", "xml", "json", "nginx", "text"}


class Quiet(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *_):
        pass


class Folder:
    """A folder for the commands of one page."""

    def __init__(self, source, programs):
        self.temporary = tempfile.TemporaryDirectory(prefix="yg-docs-")
        self.path = pathlib.Path(self.temporary.name)
        shutil.copytree(source / "examples/terminal", self.path / "examples/terminal")
        shutil.rmtree(self.path / "examples/terminal/user", ignore_errors=True)
        (self.path / "schemas").symlink_to(source / "schemas")
        (self.path / "bin").mkdir()
        (self.path / "srv").mkdir()
        for program in programs:
            (self.path / "bin" / program.name).symlink_to(program)
        self.server = http.server.ThreadingHTTPServer(
            ("127.0.0.1", 0), functools.partial(Quiet, directory=str(self.path / "srv")))
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        self.authority = "127.0.0.1:%d" % self.server.server_address[1]
        host = self.path / "examples/terminal/host.json"
        host.write_text(host.read_text("utf-8").replace(SHOWN_AUTHORITY, self.authority), "utf-8")
        self.status = 0

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.server.shutdown()
        self.server.server_close()
        self.temporary.cleanup()

    def write(self, name, text):
        file = self.path / name
        if self.path not in file.resolve().parents:
            raise ValueError(name + " is outside of the folder")
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, "utf-8")

    def run(self, command):
        """What a command prints on both streams."""
        command = command.replace(SHOWN_AUTHORITY, self.authority)
        ended = subprocess.run(
            ["bash", "-c", "(exit %d)\n%s" % (self.status, command)], cwd=self.path, timeout=60,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            env={"PATH": "%s:%s" % (self.path / "bin", os.environ["PATH"]), "LC_ALL": "C.UTF-8",
                 "HOME": str(self.path), "TMPDIR": str(self.path)})
        self.status = ended.returncode
        return ended.stdout.decode("utf-8").replace(self.authority, SHOWN_AUTHORITY)


def commands_of(block):
    """The commands of a console block with the output shown."""
    found = []
    lines = block.splitlines()
    while lines:
        line = lines.pop(0)
        if line.startswith("$ "):
            command = line[2:]
            while command.endswith("\\") and lines:
                command += "\n" + lines.pop(0)
            found.append((command, []))
        elif found:
            found[-1][1].append(line)
        else:
            raise ValueError("a console block begins with a command: " + line)
    return found


def matches(shown, printed):
    parts = [[]]
    for line in shown:
        if line == "…":
            parts.append([])
        else:
            parts[-1].append(line)
    if len(parts) == 1:
        return shown == printed
    pattern = r"(?:[^\n]*\n)+".join(
        "".join(re.escape(line) + "\n" for line in part) for part in parts)
    return re.fullmatch(pattern, "".join(line + "\n" for line in printed)) is not None


def run_block(block, folder, place, faults):
    """Runs a console block; answers it with what was printed."""
    lines = []
    for command, shown in commands_of(block):
        printed = folder.run(command).splitlines()
        lines += ["$ " + command] + (shown if matches(shown, printed) else printed)
        if not matches(shown, printed):
            faults.append("%s: $ %s\n%s" % (place, command, "\n".join(
                difflib.unified_diff(shown, printed, "shown", "printed", lineterm=""))))
    return "".join(line + "\n" for line in lines)


def is_in(block, sources):
    """Whether the block, moved to the right as a whole, stands in one of the texts."""
    lines = textwrap.dedent(block).rstrip("\n").split("\n")
    return any("\n" + textwrap.dedent("\n".join(candidate)) + "\n" == "\n" + "\n".join(lines) + "\n"
               for text in sources
               for candidate in windows(text.split("\n"), len(lines), lines[0].strip()))


def windows(lines, count, first):
    for at, line in enumerate(lines):
        if line.strip() == first:
            yield lines[at:at + count]


def check_page(page, source, programs, sources, faults, writes):
    text = page.read_text("utf-8")
    result = []
    behind = 0
    counts = {"blocks": 0, "commands": 0}
    with Folder(source, programs) as folder:
        for fence in FENCE.finditer(text):
            language, title, block = fence.groups()
            place = "%s:%d" % (page.relative_to(source), text.count("\n", 0, fence.start()) + 1)
            counts["blocks"] += 1
            if title:
                folder.write(title, block)
            elif language in ("cpp", "cmake"):
                if not is_in(block, sources[language]):
                    faults.append("%s: this stands in no source that the tests compile:\n%s"
                                  % (place, block))
            elif language == "console":
                counts["commands"] += len(commands_of(block))
                block = run_block(block, folder, place, faults)
            elif language == "sh":
                for script in re.findall(r"(?:^|\s)(?:\./)?(scripts/\S+)", block):
                    if not os.access(source / script, os.X_OK):
                        faults.append("%s: %s cannot be run" % (place, script))
            elif language not in KNOWN:
                faults.append("%s: nobody checks a block of '%s'" % (place, language))
            result += [text[behind:fence.start(3)], block]
            behind = fence.end(3)
    result.append(text[behind:])
    if text.count("\n```") + text.startswith("```") != 2 * counts["blocks"]:
        faults.append("%s: a block begins or ends in an odd way" % page.relative_to(source))
    if writes:
        page.write_text("".join(result), "utf-8")
    return counts


def main():
    options = argparse.ArgumentParser()
    options.add_argument("source", type=pathlib.Path)
    options.add_argument("--program", type=pathlib.Path, nargs="+", default=[])
    options.add_argument("--write", action="store_true")
    given = options.parse_args()
    source = given.source.resolve()
    programs = [program.resolve(strict=True) for program in given.program]
    folders = [source / "examples/host", source / "docs/snippets"]
    sources = {
        "cpp": [file.read_text("utf-8") for folder in folders for file in sorted(folder.glob("*"))
                if file.suffix in (".cpp", ".h")],
        "cmake": [(source / "examples/host/CMakeLists.txt").read_text("utf-8")],
    }
    pages = [source / "README.md", source / "docs/start.md",
             *sorted((source / "docs/guides").glob("*.md"))]
    faults = []
    blocks = commands = 0
    for page in pages:
        counts = check_page(page, source, programs, sources, faults, given.write)
        blocks += counts["blocks"]
        commands += counts["commands"]
    if given.write:
        return
    for fault in faults:
        print(fault)
    if not commands or not blocks:
        faults.append("nothing was checked")
    print("%d pages, %d blocks, %d commands, %d faults"
          % (len(pages), blocks, commands, len(faults)))
    sys.exit(1 if faults else 0)


main()
