#!/usr/bin/env python3
"""Follows docs/adding.md to the letter: makes its changes in a copy of the checkout, builds what they touch,
and runs the tests of what was added. The copy stays in build/lint/adding, so that the next run is short."""
import os
import re
import subprocess
import sys

PAGE = "docs/adding.md"
COPY = "build/lint/adding"
BLOCK = re.compile(r"^( *)```diff\n(.*?)^ *```$", re.M | re.S)


def main():
    texts = {path: read(path) for path in files()}
    touched = []
    for indent, block in BLOCK.findall(read(PAGE)):
        head, *lines = [line[len(indent):] for line in block.splitlines()]
        path = head.removeprefix("+++ ")
        texts[path] = change(path, texts[path], lines)
        touched.append(path)
    write(texts)
    return build_and_test([path for path in touched if path.startswith("tests/")])


def files():
    listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard"],
                            check=True, capture_output=True, text=True).stdout.split("\n")
    return [path for path in listed if os.path.isfile(path)]


def read(path):
    with open(path, encoding="utf-8", errors="surrogateescape", newline="") as file:
        return file.read()


def change(path, text, lines):
    """The text with the lines of a diff changed, which must stand in it once."""
    before, after = ("\n".join(line[1:].removeprefix("... ").removesuffix(" ...") for line in lines
                               if line[0] in marks) for marks in (" -", " +"))
    if text.count(before) != 1:
        sys.exit(f"{PAGE}: stands {text.count(before)} times in {path}:\n{before}")
    return text.replace(before, after)


def write(texts):
    """Only what has changed is written: the build looks at the time of files."""
    for path, text in texts.items():
        target = os.path.join(COPY, path)
        if os.path.isfile(target) and read(target) == text:
            continue
        os.makedirs(os.path.dirname(target), exist_ok=True)
        with open(target, "w", encoding="utf-8", errors="surrogateescape", newline="") as file:
            file.write(text)
        os.chmod(target, os.stat(path).st_mode)
    for folder, _, names in os.walk(COPY):
        for name in names:
            path = os.path.relpath(os.path.join(folder, name), COPY)
            if not path.startswith("build/") and path not in texts:
                os.remove(os.path.join(COPY, path))


def build_and_test(tests):
    objects = [f"CMakeFiles/svgreader_tests.dir/{path}.o" for path in sorted(
        {*tests, *(path for path in files() if re.match(r"tests/support/\w+\.cpp$", path))})]
    commands = (
        "cmake -S . -B build/debug -G Ninja -DCMAKE_CXX_FLAGS=-O0 -DCMAKE_BUILD_TYPE=None >build/log",
        f"ninja -C build/debug svgtree libsvgreader.a {' '.join(objects)} >build/log",
        f"cd build/debug && g++ {' '.join(objects)} libtool_parts.a libsvgreader.a -lgtest_main -lgtest -lexpat -lz -lnettle "
        "-o added",
        "build/debug/added --gtest_brief=1 >build/log",
        "python3 tests/tools/svgtree_test.py build/debug/svgtree --update",
        "python3 tests/tools/svgtree_test.py build/debug/svgtree Golden 2>build/log",
    )
    os.makedirs(f"{COPY}/build", exist_ok=True)
    for command in commands:
        if subprocess.run(command, shell=True, cwd=COPY, check=False).returncode:
            print(f"{PAGE}: {command}")
            print(read(f"{COPY}/build/log"), end="")
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
