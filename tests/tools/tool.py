"""What the tests of svgtree share: how they run it, and their command line."""
import glob
import os
import re
import shlex
import subprocess
import sys
import unittest

TOOL = ""
GOLDEN = os.path.join(os.path.dirname(__file__), "golden")


def main(update=None, name="svgtree"):
    """Runs the tests of the calling script: SCRIPT TOOL [unittest's arguments], or SCRIPT TOOL --update. TOOL is
    any tool of the build: the script takes the one that it is about."""
    global TOOL
    TOOL = os.path.join(os.path.dirname(os.path.abspath(sys.argv.pop(1))), name)
    if update and sys.argv[1:] == ["--update"]:
        update()
    else:
        unittest.main()


def run(*arguments, stdin=b"", **options):
    """Exit status, standard output and standard error of svgtree."""
    options = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **options}
    done = subprocess.run([TOOL, *arguments], input=stdin, timeout=120, check=False, **options)
    return done.returncode, (done.stdout or b"").decode(), (done.stderr or b"").decode()


def check_options(test):
    """The completions and the manual page know the options of --help."""
    name = os.path.basename(TOOL)
    options = set(re.findall(r"--[a-z-]+", run("--help")[1]))
    for path, pattern in ((f"tools/completions/{name}.bash", r"--[a-z-]+\b(?![*-])"),
                          (f"tools/completions/_{name}", r"[',)*](--[a-z-]+)"),
                          (f"docs/{name}.1", r"\\-\\-[a-z\\-]+")):
        with open(path, encoding="utf-8") as file:
            found = re.findall(pattern, file.read())
        test.assertEqual({option.replace("\\", "") for option in found}, options, path)


def svg(markup, attributes=""):
    return (f'<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" '
            f'width="9" height="9" {attributes}>{markup}</svg>').encode()


def samples():
    return sorted(glob.glob("samples/*.svg*"))


def commands():
    """Every command of golden/commands.txt and what it gives: messages, output, status. "< MARKUP" is a drawing
    with that content on its standard input, "<< TEXT" that text."""
    with open(os.path.join(GOLDEN, "commands.txt"), encoding="utf-8") as file:
        lines = re.findall(r"^\$ svgtree (.*)", file.read(), re.M)
    for line in lines:
        arguments, sign, text = re.fullmatch(r"(.*?)(?: (<<?) ?(.*))?", line.replace("\\n", "\n"), re.S).groups("")
        stdin = svg(text) if sign == "<" else text.encode()
        status, output, messages = run(*shlex.split(arguments), *["-"] * bool(sign), stdin=stdin)
        yield f"$ svgtree {line}\n{messages}{output}" + f"[{status}]\n" * (status != 0), output
