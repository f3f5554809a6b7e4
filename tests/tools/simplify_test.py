#!/usr/bin/env python3
"""Drawings written as plain SVG: simplify_test.py TOOL [unittest's arguments]."""
import unittest

from tool import commands, main, run, samples, svg


class Simplify(unittest.TestCase):
    def test_once_is_enough(self):
        for shown, output in commands():
            if "--simplify" in shown:
                with self.subTest(shown):
                    self.assertEqual(run("--simplify", "-", stdin=output.encode()), (0, output, ""))

    def test_samples_are_simplified_once(self):
        for sample in samples():
            with self.subTest(sample):
                status, output, _ = run("--simplify", sample)
                self.assertEqual(status, 0)
                self.assertEqual(run("--simplify", "-", stdin=output.encode()), (0, output, ""))

    def test_errors(self):
        deep = "".join(f"<g id='g{i}'>" + f"<use xlink:href='#g{i + 1}'/>" * 10 + "</g>" for i in range(9))
        status, output, messages = run("--simplify", "--limit", "expanded=1000", "-",
                                       stdin=svg(deep + "<path id='g9' d='M0 0h9'/>"))
        self.assertEqual((status, output), (1, ""))
        self.assertIn("error 1930", messages)


if __name__ == "__main__":
    main()
