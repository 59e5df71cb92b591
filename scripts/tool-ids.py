#!/usr/bin/env python3
"""Replaces tool ids written as texts by their constants of src/common/tools.h.

    scripts/tool-ids.py [--dry-run] [--no-format] FILE...

In each file:
  QStringLiteral("ID_Runs"), u"ID_Runs", QLatin1String("ID_Runs"),
  QString::fromLatin1("ID_Runs")                  -> tools::kRuns
  const QString kNewTool = QStringLiteral("ID_New");  (a file's own alias of an id)
                                                  -> the line goes, kNewTool becomes tools::kNew
  for (const char* id : {"ID_New", "ID_Open"}) { ... QString::fromLatin1(id) ... }
                                                  -> for (tools::ToolId id : {tools::kNew,
                                                     tools::kOpen}) { ... id ... }
and `#include "common/tools.h"` is added where something was replaced. Comments are left as they
are. Ids that tools.h does not know, and ids in texts of any other form (a plain "ID_Runs", an
id inside a longer text such as an SQL statement), are listed for a hand to decide. Changed files
have their changed lines put through clang-format when it is installed.
"""

import argparse
import difflib
import os
import re
import shutil
import subprocess
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
TOOLS_H = os.path.join(ROOT, "src", "common", "tools.h")
INCLUDE = '#include "common/tools.h"'


def read_constants():
    text = open(TOOLS_H, encoding="utf-8").read()
    pairs = re.findall(r'inline constexpr ToolId (k\w+) = u"(ID_\w+)";', text)
    if not pairs:
        sys.exit("no tool ids found in " + TOOLS_H)
    return {tool_id: "tools::" + name for name, tool_id in pairs}


def comment_spans(text):
    """The [start, end) ranges of the comments of a C++ text, minding its literals."""
    spans = []
    i, n = 0, len(text)
    while i < n:
        c = text[i]
        if text.startswith("//", i):
            end = text.find("\n", i)
            end = n if end < 0 else end
            spans.append((i, end))
            i = end
        elif text.startswith("/*", i):
            end = text.find("*/", i + 2)
            end = n if end < 0 else end + 2
            spans.append((i, end))
            i = end
        elif c == "R" and text.startswith('R"', i) and (i == 0 or not text[i - 1].isalnum()):
            m = re.match(r'R"([^(\s]*)\(', text[i:])
            if not m:
                i += 1
                continue
            close = text.find(")" + m.group(1) + '"', i)
            i = n if close < 0 else close + len(m.group(1)) + 2
        elif c in "\"'":
            if c == "'" and i > 0 and text[i - 1].isdigit() and text[i + 1:i + 2].isalnum():
                i += 1  # a digit separator: 1'000
                continue
            i += 1
            while i < n and text[i] != c and text[i] != "\n":
                i += 2 if text[i] == "\\" else 1
            i += 1
        else:
            i += 1
    return spans


def sub_in_code(pattern, repl, text):
    """re.sub that leaves comments as they are."""
    spans = comment_spans(text)

    def in_comment(pos):
        return any(a <= pos < b for a, b in spans)

    def fn(m):
        if in_comment(m.start()):
            return m.group(0)
        return repl(m) if callable(repl) else m.expand(repl)

    return re.sub(pattern, fn, text)


def replace_literals(text, ids, unknown):
    def sub(m):
        tool_id = m.group("id")
        if tool_id in ids:
            return ids[tool_id]
        unknown.add(tool_id)
        return m.group(0)

    forms = [
        r'QStringLiteral\(\s*"(?P<id>ID_\w+)"\s*\)',
        r'QLatin1String(?:View)?\(\s*"(?P<id>ID_\w+)"\s*\)',
        r'QString::fromLatin1\(\s*"(?P<id>ID_\w+)"\s*\)',
        r'QString::fromUtf8\(\s*"(?P<id>ID_\w+)"\s*\)',
        r'\bu"(?P<id>ID_\w+)"',
    ]
    for form in forms:
        text = sub_in_code(form, sub, text)
    return text


def replace_aliases(text, ids):
    """A file's own constant for an id goes; its uses take the shared constant."""
    alias_line = re.compile(
        r'^[ \t]*(?:static[ \t]+)?const[ \t]+QString[ \t]+(k\w+)[ \t]*=[ \t]*'
        r'QStringLiteral\("(ID_\w+)"\);[ \t]*\n',
        re.M,
    )
    aliases = {}
    for m in alias_line.finditer(text):
        if m.group(2) in ids:
            aliases[m.group(1)] = ids[m.group(2)]
    if not aliases:
        return text
    text = alias_line.sub(lambda m: "" if m.group(1) in aliases else m.group(0), text)
    pattern = re.compile(r"(?<![\w:.>])(" + "|".join(map(re.escape, aliases)) + r")\b")
    return sub_in_code(pattern, lambda m: aliases[m.group(1)], text)


def matching_brace(text, open_at):
    depth = 0
    for i in range(open_at, len(text)):
        if text[i] == "{":
            depth += 1
        elif text[i] == "}":
            depth -= 1
            if depth == 0:
                return i
    return -1


def replace_char_loops(text, ids, unknown):
    """for (const char* id : {"ID_A", "ID_B"}) { ... QString::fromLatin1(id) ... }"""
    loop = re.compile(r'for \(const char\* (\w+) :\s*\{((?:\s*"ID_\w+"\s*,?)+)\s*\}\)\s*\{')
    pos = 0
    while True:
        m = loop.search(text, pos)
        if not m:
            return text
        names = re.findall(r'"(ID_\w+)"', m.group(2))
        missing = [n for n in names if n not in ids]
        if missing:
            unknown.update(missing)
            pos = m.end()
            continue
        var = m.group(1)
        body_open = m.end() - 1
        body_close = matching_brace(text, body_open)
        if body_close < 0:
            pos = m.end()
            continue
        body = text[body_open:body_close + 1]
        body = re.sub(r"QString::fromLatin1\(\s*" + re.escape(var) + r"\s*\)", var, body)
        head = "for (tools::ToolId %s : {%s}) " % (var, ", ".join(ids[n] for n in names))
        text = text[: m.start()] + head + body + text[body_close + 1:]
        pos = m.start() + len(head) + len(body)


def add_include(text, path):
    if INCLUDE in text:
        return text
    lines = text.split("\n")
    own = os.path.splitext(os.path.basename(path))[0] + ".h"
    quoted = [i for i, l in enumerate(lines) if l.startswith('#include "')]
    if not quoted:
        first = next((i for i, l in enumerate(lines) if l.startswith("#include")), None)
        if first is None:
            first = next(i for i, l in enumerate(lines) if l.startswith("#pragma once")) + 1
            lines[first:first] = ["", INCLUDE]
        else:
            lines[first:first] = [INCLUDE, ""]
        return "\n".join(lines)
    # The block of project includes, past a .cpp file's own header standing alone.
    start = quoted[0]
    if (path.endswith(".cpp") and lines[start].endswith('/' + own + '"')
            and (start + 1 >= len(lines) or not lines[start + 1].startswith('#include "'))):
        rest = [i for i in quoted if i > start]
        if not rest:
            lines[start + 1:start + 1] = ["", INCLUDE]
            return "\n".join(lines)
        start = rest[0]
    end = start
    while end + 1 < len(lines) and lines[end + 1].startswith('#include "'):
        end += 1
    # Before the first that sorts after it, the rest of the block left in its order.
    at = next((i for i in range(start, end + 1) if lines[i] > INCLUDE), end + 1)
    lines.insert(at, INCLUDE)
    return "\n".join(lines)


def leftovers(text):
    """Lines whose code still holds an id in a text."""
    spans = comment_spans(text)
    lines = text.split("\n")
    found = []
    for m in re.finditer(r'"[^"\n]*\bID_\w+[^"\n]*"', text):
        if not any(a <= m.start() < b for a, b in spans):
            number = text.count("\n", 0, m.start()) + 1
            if not found or found[-1][0] != number:
                found.append((number, lines[number - 1].strip()))
    return found


def new_line_ranges(before, after):
    """The ranges of lines of `after`, from 1, that differ from `before`."""
    matcher = difflib.SequenceMatcher(None, before.split("\n"), after.split("\n"), autojunk=False)
    return [(j1 + 1, j2) for tag, _, _, j1, j2 in matcher.get_opcodes()
            if tag in ("replace", "insert") and j2 > j1]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("files", nargs="+")
    parser.add_argument("--dry-run", action="store_true", help="print the changes, write none")
    parser.add_argument("--no-format", action="store_true", help="do not run clang-format")
    args = parser.parse_args()

    ids = read_constants()
    changed = []
    changed_lines = {}
    for path in args.files:
        before = open(path, encoding="utf-8").read()
        unknown = set()
        text = replace_aliases(before, ids)
        text = replace_char_loops(text, ids, unknown)
        text = replace_literals(text, ids, unknown)
        if text != before:
            text = add_include(text, path)
        for tool_id in sorted(unknown):
            print("%s: %s is no constant of tools.h; left as it is" % (path, tool_id))
        for number, line in leftovers(text):
            print("%s:%d: left for a hand: %s" % (path, number, line))
        if text == before:
            continue
        changed.append(path)
        changed_lines[path] = new_line_ranges(before, text)
        if args.dry_run:
            sys.stdout.writelines(difflib.unified_diff(
                before.splitlines(True), text.splitlines(True), path, path))
        else:
            open(path, "w", encoding="utf-8").write(text)
    if changed and not args.dry_run and not args.no_format:
        clang_format = shutil.which("clang-format")
        if not clang_format:
            print("clang-format not found; format the changed lines by hand")
        for path, lines in changed_lines.items():
            if clang_format and lines:
                # Only the lines changed here, so the rest of the file stays as its owner left it.
                ranges = ["--lines=%d:%d" % r for r in lines]
                subprocess.run([clang_format, "-i"] + ranges + [path], check=True)
    for path in changed:
        print("changed: " + path)


if __name__ == "__main__":
    main()
