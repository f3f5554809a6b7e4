#!/usr/bin/env python3
"""House rules that no compiler checks; see CONTRIBUTING.md. Prints FILE:LINE: RULE for each breach."""
import os
import re
import sys

from rooms import MAY_USE, OUTSIDE

MAX_LINES = 650
ROOMS = (*MAY_USE, "tools", "tools/svgdraw", "tests", "bench", "fuzz")
with open("cmake/public_headers.txt", encoding="utf-8") as headers:
    PUBLIC = set(headers.read().split())  # what every room may include
SOURCE = (".cpp", ".h", ".c")
TEXT = SOURCE + (".md", ".py", ".sh", ".svg", ".txt", ".json", ".in")

MARKS = re.compile(r"\b(" + "|".join(("TO" + "DO", "FIX" + "ME", "XX" + "X", "HA" + "CK")) + r")\b")
JUMPS = re.compile(r"\b(sig)?(setjmp|longjmp)\b")
OWNERS = re.compile(r"\bstd::(w?string|vector|deque|list|map|set|unordered_\w+|function|any|optional<std::"
                    r"|(unique|shared|weak)_ptr|make_(unique|shared)|(lock|scoped|unique)_(guard|lock)|i?o?f?stream)\b")
LOCALE = re.compile(r"\b(strto(d|f|ld)|atof|setlocale|isalpha|isspace|isdigit|toupper|tolower)\s*\(")
STEP = re.compile(r"(^\s*|[;)] )[A-Za-z_][\w.>-]*(\+\+|--)[;)]")
NULL_TEST = re.compile(r"\b(if|while) \([^;]*[!=]= nullptr|[!=]= nullptr \?")
LITERALS = re.compile(r'"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'|//[^\n]*|/\*.*?\*/', re.S)


def main():
    breaches = [breach for path in files() for breach in check(path)]
    print("\n".join(breaches), end="\n" if breaches else "")
    return 1 if breaches else 0


def files():
    """Every text file of the project, but those of the build."""
    for folder, folders, names in os.walk("."):
        folders[:] = sorted(name for name in folders if name not in (".git", "build", "__pycache__"))
        for path in (os.path.relpath(os.path.join(folder, name)) for name in sorted(names)):
            if path.endswith(TEXT) or path in ("dev", "CMakeLists.txt", ".ci/run"):
                yield path


def check(path):
    with open(path, encoding="utf-8", errors="replace") as file:
        text = file.read()
    lines = text.split("\n")
    room = os.path.dirname(path)
    if path.endswith(SOURCE):
        if len(lines) - 1 > MAX_LINES:
            yield f"{path}:{len(lines) - 1}: longer than {MAX_LINES} lines"
        yield from check_includes(path, room, lines)
        yield from check_code(path, room, text)
    if text and not text.endswith("\n"):
        yield f"{path}:{len(lines)}: no line end at the end of the file"
    for number, line in enumerate(lines, 1):
        if MARKS.search(line):
            yield f"{path}:{number}: unfinished work is no comment"
        if line != line.rstrip():
            yield f"{path}:{number}: blanks at the end of the line"
        if "\t" in line and path.endswith(SOURCE):
            yield f"{path}:{number}: tab in a source file"


def check_includes(path, room, lines):
    for number, line in enumerate(lines, 1):
        found = re.match(r'\s*#\s*include\s*"([^"]*)"', line)
        if not found:
            continue
        if path in PUBLIC:
            if os.path.normpath(os.path.join(room, found[1])) not in PUBLIC:
                yield f"{path}:{number}: a public header includes others by their relative names, and no other"
            continue
        target = os.path.dirname(found[1])
        if target not in ROOMS and not target.startswith(("tests/", "fuzz/")):
            yield f"{path}:{number}: include is not written from the root"
        elif room in MAY_USE and target not in may_include(room) and found[1] not in PUBLIC:
            yield f"{path}:{number}: {room}/ must not know {target}/"


def may_include(room):
    return {room} if room in OUTSIDE else MAY_USE[room] | {room}


def check_code(path, room, text):
    """Rules for the library's code; comments and literals are blanked, line numbers stay."""
    if room not in MAY_USE:
        return
    code = LITERALS.sub(lambda m: re.sub(r"[^\n]", " ", m[0]), text)
    for number, line in enumerate(code.split("\n"), 1):
        if JUMPS.search(line) and path != "core/error.cpp" and "#include" not in line:
            yield f"{path}:{number}: jumps belong to core/error.cpp; open frames with ort_protect"
        if OWNERS.search(line):
            yield f"{path}:{number}: an owning object would be lost when an error is raised"
        if LOCALE.search(line):
            yield f"{path}:{number}: result depends on the locale"
        if STEP.search(line):
            yield f"{path}:{number}: a step whose value is not used is ++i"
        if NULL_TEST.search(line):
            yield f"{path}:{number}: a pointer is tested by if (p) and if (!p)"


if __name__ == "__main__":
    sys.exit(main())
