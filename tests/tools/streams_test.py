#!/usr/bin/env python3
"""How svgtree treats files, streams and its command line: streams_test.py TOOL [unittest's arguments]."""
import contextlib
import glob
import gzip
import os
import pty
import re
import resource
import tempfile
import time
import unittest

import tool
from tool import main, run, samples, svg

PNG = "data:image/png;base64,iVBORw0="
class Extract(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.target = os.path.join(self.folder, "new")
        self.drawing = svg(f'<image xlink:href="{PNG}"/><image xlink:href="{PNG}"/>'
                           '<image xlink:href="data:x/../y,QUJD"/>')

    def extract(self, *options):
        return run("--extract", self.target, *options, "-", stdin=self.drawing)

    def test_names_come_from_the_data(self):
        status, output, _ = self.extract()
        found = dict(re.findall(r"new/([0-9a-f]{32}\.\w{3}) \((.*)\)\n", output))
        self.assertEqual(status, 0)
        self.assertEqual(sorted(found), sorted(os.listdir(self.target)))
        self.assertEqual(sorted(found.values()), ["image/png, 5 bytes", "unknown type, 3 bytes"])
        png, = glob.glob(self.target + "/*.png")
        other, = glob.glob(self.target + "/*.bin")
        with open(png, "rb") as a, open(other, "rb") as b:
            self.assertEqual((a.read(), b.read()), (b"\x89PNG\r", b"ABC"))

    def test_nothing_is_replaced_and_no_link_followed(self):
        self.assertEqual(self.extract(), self.extract())
        outside = os.path.join(self.folder, "outside")
        with open(outside, "w", encoding="ascii") as file:
            file.write("mine")
        png, = glob.glob(self.target + "/*.png")
        os.remove(png)
        os.symlink(outside, png)
        other, = glob.glob(self.target + "/*.bin")
        with open(other, "wb") as file:
            file.write(b"ABD")
        status, output, messages = self.extract()
        self.assertEqual((status, output), (1, ""))
        self.assertEqual(messages.count("File exists"), 2)
        self.assertTrue(os.path.islink(png))
        self.assertEqual(self.extract("--force")[0], 0)
        self.assertFalse(os.path.islink(png))
        with open(outside, encoding="ascii") as file:
            self.assertEqual(file.read(), "mine")
        self.assertEqual(len(os.listdir(self.target)), 2)

    def test_folder_that_cannot_be_made(self):
        self.target = os.path.join(self.folder, "a", "b")
        status, _, messages = self.extract()
        self.assertEqual((status, messages),
                         (1, f"svgtree: cannot write {self.target}: No such file or directory\n"))


INPUTS = (  # file, standard input, message
    ("missing.svg", b"", "error 1050: Cannot open file 'missing.svg': No such file or directory"),
    ("samples", b"", "error 1050: Cannot open file 'samples': Is a directory"),
    ("-", b"", "error 10009: File 'standard input' does not seem to be an SVG file"),
    ("-", b"\x7fELF\0\0", "error 10009: File 'standard input' does not seem to be an SVG file"),
    ("-", b"\x1f\x8b\x08\0cut", "error 1057: Error in compressed file 'standard input': "),
    ("-", svg('<rect x="?"/>'), "warning 10004: "),
    ("/dev/stdin", svg('<rect x="?"/>'), "warning 10004: "),
    ("/dev/stdin", svg("<g/>" * 20000), "error 1056: Error reading file '/dev/stdin'"),
    ("/proc/self/mem", b"", "error 1056: Error reading file '/proc/self/mem'"),
)

MISTAKES = (
    [], ["--nonsense", "-"], ["--log", "x", "-"], ["--jobs", "0", "-"], ["-", "-"], ["--force", "-"],
    ["--explain"], ["--query", "g", "--explain", "-"], ["--explain", "#a", "--property", "fil", "-"], ["--property", "fill", "-"],
    ["--refuse-property", "Fill", "-"], ["--refuse-element", "g", "-"],
    ["--limit", "nodes=x", "-"], ["--check", "--pretty", "-"], ["--check", "--ids", "-"],
    ["--simplify", "--json", "-"], ["--simplify", "-", "x.svg"], ["--limit", "depth", "-"],
    ["--limit", "width=1", "-"], ["--limit", "nodes=0", "-"], ["--limit", "nodes=9T", "-"],
    ["--limit", "nodes=99999999999999999999", "-"], ["--limit", "memory=99999999999999G", "-"],
    ["--json", "--extract", "x", "-"], ["--path", "M0 0", "-"], ["--path", "M0 0", "--json"],
)


class Streams(unittest.TestCase):
    def test_arc_and_nul_in_path_data(self):
        self.assertRegex(run("--path", "M0 0 A5 5 0 0 1 10 0")[1], r"^M 0,0\nC .*  \(arc\)\nC .* 10,0  \(arc\)\n$")
        self.assertEqual(run("--path", "-", stdin=b"M1 1\0")[::2],
                         (1, "path: error: a NUL byte ends the text\n  M1 1 \n      ^\n"))

    def test_inputs(self):
        for file, stdin, message in INPUTS:
            with self.subTest(message):
                status, output, messages = run("--stats", file, stdin=stdin)
                name = "standard input" if file == "-" else file
                self.assertTrue(messages.startswith(f"{name}: {message}"), messages)
                self.assertEqual((status, output != ""), (0, True) if "warning" in message else (1, False))

    def test_limit_of_inflated_bytes(self):
        messages = run("--limit", "inflated=1", "-", stdin=gzip.compress(svg("")))[2]
        self.assertTrue(messages.startswith("standard input: error 1930: Limit of 1 inflated bytes"), messages)

    def test_little_address_space(self):
        drawing = svg('<rect x="bad"/>' * 20000)
        for size in (1 << 30, *range(4 << 20, 24 << 20, 1 << 20)):
            def little(size=size):
                resource.setrlimit(resource.RLIMIT_AS, (size, size))
            status, _, messages = run("--ids", "-", stdin=drawing, preexec_fn=little)
            if size == 1 << 30 and status != 0:
                self.skipTest("an instrumented tool needs more than that to start")
            if status != 127:  # else the dynamic loader found no room
                last = messages.splitlines()[-1]  # it may tell the place of a value that was being made
                self.assertIn((status, "ut of memory" in last), [(0, False), (1, True)], size)

    def test_mistakes(self):
        for arguments in MISTAKES:
            with self.subTest(arguments):
                status, output, messages = run(*arguments, stdin=svg(""))
                self.assertEqual((status, output), (2, ""))
                self.assertRegex(messages, r"^svgtree: .+\nRun svgtree --help for more information.\n$")

    def test_help_and_version(self):
        for option, text in (("--help", "Usage:"), ("--version", "svgtree ")):
            status, output, messages = run(option)
            self.assertEqual((status, messages), (0, ""))
            self.assertIn(text, output)

    def test_options_are_those_of_completions_and_manual(self):
        tool.check_options(self)

    def test_output_that_cannot_be_written(self):
        reading, writing = os.pipe()
        os.close(reading)
        with open("/dev/full", "wb") as full:
            for stdout, message in ((writing, ""),
                                    (full, "svgtree: cannot write standard output: No space left on device\n")):
                status, _, messages = run("--full", *samples(), stdout=stdout)
                self.assertEqual((status, messages), (1, message))
        os.close(writing)

    def test_closed_streams(self):
        for closed, file, message in ((0, "-", "Cannot open file 'standard input': Bad file descriptor"),
                                      (1, "samples/boat.svg", "cannot write standard output")):
            status, _, messages = run(file, stdin=None, preexec_fn=lambda fd=closed: os.close(fd))
            self.assertEqual(status, 1)
            self.assertIn(message, messages)

    def test_jobs_keep_the_order(self):
        files = 3 * samples() + ["missing.svg"] + samples()
        self.assertEqual(run("--jobs", "3", *files), run(*files))

    def test_progress_only_on_a_terminal(self):
        try:
            master, terminal = pty.openpty()
        except OSError as error:
            self.skipTest(f"no terminal: {error}")
        files = 40 * ["samples/boat.svg"]
        begin = time.monotonic()
        run("--check", *files, stderr=terminal)
        seconds = time.monotonic() - begin
        os.close(terminal)
        shown = ""
        with contextlib.suppress(OSError):  # the end of a terminal's output is an error
            while part := os.read(master, 1 << 16):
                shown += part.decode()
        os.close(master)
        self.assertRegex(shown, r"^\r0 of 40 (\r\d+ of 40 )*\r\033\[K$")
        self.assertLessEqual(shown.count(" of "), 1 + 10 * seconds)
        self.assertNotIn(" of ", run("--check", *files)[2])


if __name__ == "__main__":
    main()
