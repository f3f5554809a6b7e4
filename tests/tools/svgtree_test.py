#!/usr/bin/env python3
"""Runs svgtree as a user would: svgtree_test.py TOOL [unittest's arguments], from the root.

With --update in the place of those arguments it writes golden/ anew; read the difference before
committing it.
"""
import contextlib
import glob
import gzip
import json
import math
import os
import pty
import re
import resource
import subprocess
import sys
import tempfile
import time
import unittest

try:
    import jsonschema
except ImportError:
    jsonschema = None

GOLDEN = os.path.join(os.path.dirname(__file__), "golden")
TOOL = ""


def run(*arguments, stdin=b"", **options):
    """Exit status, standard output and standard error of svgtree."""
    options = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **options}
    done = subprocess.run([TOOL, *arguments], input=stdin, timeout=120, check=False, **options)
    return done.returncode, (done.stdout or b"").decode(), (done.stderr or b"").decode()


def svg(markup, attributes=""):
    return (f'<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" '
            f'width="9" height="9" {attributes}>{markup}</svg>').encode()


def samples():
    return sorted(glob.glob("samples/*.svg*"))


def output_of(sample):
    _, output, messages = run("--language", "fr-CH", sample)
    return messages + output


def schema():
    return json.loads(run("--schema")[1])


def schema_text():
    """Every cell of every table, a row a line."""
    return "".join(f"{table} {json.dumps(row)}\n" for table, rows in schema().items() for row in rows)


def log_text():
    """All lines of the log: of a drawing that has everything, at each level, and of one that is read again
    without namespaces. Addresses and the names of embedded files, which differ, become numbers, ids stand
    in order although the log lists them by address, and blanks at the end of a line are visible."""
    text = ""
    for level, drawing in (*((level, "log") for level in "123456"), ("6", "unbound")):
        _, _, messages = run("--ids", "--log", level, f"tests/tools/{drawing}.svg")
        messages = re.sub(r"(\t\t0x[0-9a-f]+: .*\n)+", lambda found: "".join(
            sorted(found[0].splitlines(True), key=lambda line: line.split(": ")[1])), messages)
        known = {}
        text += f"==== {drawing}.svg, level {level}\n" + re.sub(
            r"\b(0x[0-9a-f]+|[0-9a-f]{32})\b",
            lambda found: f"<{known.setdefault(found[0], len(known) + 1)}>", messages)
    return re.sub(r" $", "\u2423", text, flags=re.M)


def check_text():
    """All findings, in both forms."""
    drawing = "tests/tools/check.svg"
    return run("--check", drawing)[1] + run("--check", "--json", drawing)[1]


def golden_files():
    """What each golden file has to hold."""
    yield os.path.join(GOLDEN, "schema.txt"), schema_text
    yield os.path.join(GOLDEN, "log.txt"), log_text
    yield os.path.join(GOLDEN, "check.txt"), check_text
    for sample in samples():
        yield os.path.join(GOLDEN, os.path.basename(sample) + ".txt"), lambda of=sample: output_of(of)


class Golden(unittest.TestCase):
    maxDiff = None

    def test_files(self):
        for path, output in golden_files():
            with self.subTest(path), open(path, encoding="utf-8") as file:
                self.assertEqual(output(), file.read())

    def test_page_of_values_lists_the_schema(self):
        """docs/values.md has a row for each kind of record, in their order."""
        with open("docs/values.md", encoding="utf-8") as file:
            page = file.read()
        rows = [[cell.strip() for cell in line.split("|")[1:5]]
                for line in re.findall(r"^\| (?:`svg_an_|paint).*", page, re.M)]
        tables = schema()
        listed = {a["row"] for element in tables["elements"] for a in element["attributes"]}
        for kind, (record, size, _, names) in enumerate(rows, 1):
            found = [a for a in tables["attributes"]
                     if a["record"] == kind and (a["property"] or a["row"] in listed)]
            names = re.sub(r"\([^)]*\)|of [^:;]*: ", "", names)
            with self.subTest(record):
                self.assertEqual(set(re.findall(r"[\w:-]+", names)), {a["name"] for a in found})
                if size.isdigit():
                    self.assertEqual({a["size"] for a in found}, {int(size)} if found else set())
        without = re.search(r"^(.*) make no value", page, re.M)[1]
        self.assertEqual(set(re.split(", | and ", without)),
                         {a["name"] for a in tables["attributes"] if a["record"] == 0})
        self.assertEqual(max(a["record"] for a in tables["attributes"]), len(rows))


PNG = "data:image/png;base64,iVBORw0="
VALUES = (  # markup of an element, one of its values, the fields that the type has
    ('<rect x="-50%"/>', "x", {"type": "length", "value": -50, "unit": "%"}),
    ('<rect x="1e999mm"/>', "x", {"type": "length", "value": math.inf, "unit": "mm"}),
    ('<rect x="-1e-400"/>', "x", {"type": "length", "value": 0, "unit": ""}),
    ('<g opacity=".5"/>', "opacity", {"type": "number", "value": 0.5}),
    ('<svg preserveAspectRatio="defer xMidYMax slice"/>', "preserveAspectRatio",
     {"type": "aspect", "defer": True, "meet": False, "align": "xMidYMax"}),
    ('<svg viewBox="0 -1 2 3.5"/>', "viewBox", {"type": "viewBox", "value": [0, -1, 2, 3.5]}),
    ('<g clip="rect(1 2 3 4)"/>', "clip", {"type": "clip", "keyword": "rect", "rect": [1, 2, 3, 4]}),
    ('<a xlink:title="&lt;é&#10;&quot;\\"/>', "xlink:title", {"type": "string", "value": '<é\n"\\'}),
    ('<g systemLanguage="de, fr-CA"/>', "systemLanguage", {"type": "names", "value": ["de", "fr-CA"]}),
    ('<g text-decoration="underline blink"/>', "text-decoration",
     {"type": "keywords", "value": ["underline", "blink"]}),
    ('<g stroke-dasharray="1 2mm"/>', "stroke-dasharray",
     {"type": "lengths", "value": [1, 2], "units": ["", "mm"]}),
    ('<g stroke-dasharray="none"/>', "stroke-dasharray", {"type": "keyword", "keyword": "none"}),
    ('<g transform="scale(2,3)"/>', "transform", {"type": "transform", "kind": 4, "value": [2, 3]}),
    ('<g color="#abc"/>', "color", {"type": "color", "rgb": "#AABBCC"}),
    ('<g fill="none"/>', "fill", {"type": "paint", "paint": "none"}),
    ('<g fill="url(#me) red" id="me"/>', "fill",
     {"type": "paint", "paint": "iri", "fallback": "#FF0000",
      "iri": {"kind": "link", "target": 2, "text": "#me", "mime": None}}),
    ('<g fill="url(x.svg#y)"/>', "fill",
     {"type": "paint", "paint": "iri", "fallback": None,
      "iri": {"kind": "name", "target": None, "text": "x.svg#y", "mime": None}}),
    ('<g fill="#cd853f icc-color(p, 0.1, 0.4, 0.8)"/>', "fill",
     {"type": "paint", "paint": "color", "rgb": "#CD853F", "colortype": 5, "colorName": "p",
      "components": [0.1, 0.4, 0.8]}),
    ('<g clip-path="none"/>', "clip-path",
     {"type": "iri", "kind": "none", "target": None, "text": None, "mime": None}),
    ('<image xlink:href="data:x,"/>', "xlink:href",
     {"type": "iri", "kind": "data", "target": None, "text": None, "mime": None}),
    ('<g color-profile="p"/>', "color-profile",
     {"type": "colorProfile", "keyword": "none", "profileName": "p"}),
    ('<g font-family="A B, serif"/>', "font-family",
     {"type": "families", "value": ["A B", {"keyword": "serif"}]}),
    ('<path d="M1 2h3 4z"/>', "d",
     {"type": "path", "vertices": 4,
      "segments": [{"op": "M", "points": [1, 2]}, {"op": "L", "points": [4, 2, 8, 2]},
                   {"op": "Z", "points": []}]}),
)


class Json(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with open("docs/json.schema.json", encoding="utf-8") as file:
            schema = json.load(file)
        cls.schema = jsonschema and jsonschema.Draft202012Validator(schema)

    def check(self, text):
        """The object, which must fit the schema and name no field twice."""
        def fields(pairs):
            self.assertEqual(len(pairs), len(dict(pairs)), pairs)
            return dict(pairs)
        document = json.loads(text, object_pairs_hook=fields)
        if self.schema:
            self.schema.validate(document)
        return document

    def test_samples_fit_the_schema_in_both_forms(self):
        status, lines, _ = run("--json", "--jobs", "2", *samples(), "missing.svg")
        documents = [self.check(line) for line in lines.splitlines()]
        self.assertEqual([d["file"] for d in documents], [*samples(), "missing.svg"])
        self.assertEqual(status, 1)
        for document in documents[:-1]:
            same = json.loads(run("--pretty", document["file"])[1])
            without_addresses = [re.sub("[0-9a-f]{32} ", "", json.dumps(d)) for d in (document, same)]
            self.assertEqual(*without_addresses)

    @unittest.skipUnless(jsonschema, "python3-jsonschema is not installed")
    def test_schema_refuses_what_is_not_documented(self):
        document = json.loads(run("--json", "samples/colors.svg")[1])
        document["root"]["values"][0]["more"] = 1
        self.assertFalse(self.schema.is_valid(document))

    def test_values(self):
        for markup, name, expected in VALUES:
            with self.subTest(markup):
                _, output, _ = run("--json", "-", stdin=svg(markup))
                values = self.check(output)["root"]["children"][0]["values"]
                value, = (v for v in values if v["name"] == name)
                self.assertEqual({k: v for k, v in value.items() if k not in ("name", "row", "source")},
                                 expected)

    def test_sources_flags_and_texts(self):
        sheet = "<style>text { fill: red; stroke: blue !important }</style>"
        text = '<text id="t" style="fill: gold" fill="tan">a<tspan> </tspan>b </text>'
        document = self.check(run("--json", "-", stdin=svg(sheet + text))[1])
        node = next(c for c in document["root"]["children"] if c.get("element") == "text")
        self.assertEqual([(v["name"], v["source"]) for v in node["values"] if v["type"] == "paint"],
                         [("fill", "attribute"), ("stroke", "sheet"), ("fill", "sheet"), ("fill", "style")])
        self.assertEqual(node["flags"], ["text"])
        self.assertEqual([(c.get("text"), c.get("last")) for c in node["children"]],
                         [("a", False), (None, None), ("b ", True)])
        self.assertEqual(document["names"], [{"name": "t", "node": node["node"]}])

    def test_unreadable(self):
        _, output, messages = run("--json", "-", stdin=b"<svg")
        document = self.check(output)
        error = document.pop("error")
        self.assertEqual(document, {"file": "standard input", "document": None, "warnings": [],
                                    "fonts": None, "names": None, "root": None})
        self.assertEqual(f"standard input: error {error['code']}: {error['message']}\n", messages)

    def test_file_name_that_is_not_utf8(self):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(os.fsencode(folder), b"\xff\xc3.svg")
            with open(path, "wb") as file:
                file.write(svg(""))
            document = self.check(run("--json", path)[1])
        self.assertTrue(document["file"].endswith("/\uFFFD\uFFFD.svg"))

    def test_depth_needs_no_stack(self):
        depth = 100_000
        drawing = svg("<g>" * depth + "</g>" * depth)
        small_stack = lambda: resource.setrlimit(resource.RLIMIT_STACK, (1 << 20, 1 << 20))
        for option, per_element in (("--json", 150), ("--pretty", 360), ("--full", 115)):
            status, output, _ = run(option, "-", stdin=drawing, preexec_fn=small_stack)
            self.assertEqual(status, 0)
            self.assertGreater(len(output), 3 * depth)
            self.assertLess(len(output), per_element * depth, option)


CHECKS = (  # standard input, exit status, findings
    (svg('<g id="a" xml:id="a"/><a xlink:href="x.svg"/>'), 0, []),
    (svg("<g>\n</h>"), 1, ["2:3: error 1700: XML: mismatched tag"]),
    (svg('\n<image xlink:href="data:image/png"/>'), 1,
     ["2: error 10000: image: attribute 'xlink:href': incomplete value"]),
    (svg("<g>" * 9 + "</g>" * 9), 1, [" error 1930: Limit of 8 nested elements exceeded"]),
)


class Check(unittest.TestCase):
    def test_findings(self):
        for drawing, status, findings in CHECKS:
            with self.subTest(drawing):
                count = [f" {len(findings)} finding"] * (len(findings) > 0)
                expected = "".join(f"standard input:{line}\n" for line in findings + count)
                self.assertEqual(run("--check", "--limit", "depth=8", "-", stdin=drawing), (status, expected, ""))

    def test_long_names_cost_no_more_than_their_length(self):
        name, properties = "n" * 100_000, "".join(f"p{i}:1;" for i in range(10_000))
        drawing = svg(f'<g id="{name}" style="{properties}"/>' + f'<use xlink:href="#{name}x"/>' * 100,
                      f'style="{properties}"')
        for options in ([], ["--json"]):
            status, output, _ = run("--check", *options, "-", stdin=drawing)
            self.assertEqual((status, output.count("10303"), output.count("10300")), (1, 10_000, 100))
            self.assertLess(len(output), len(drawing))


class Growth(unittest.TestCase):
    def test_long_names_are_shortened_unless_full(self):
        name = "n" * 20_000
        styled = f'<style>#{name}, .{name} {{ fill: url(#{name}) }}</style>'
        drawing = svg(styled + f'<g id="{name}"/>' + f'<use class="{name}" xlink:href="#{name}"/>' * 200)
        for options in ((), ("--links",), ("--ids",), ("--explain", name, "--property", "fill")):
            status, output, _ = run(*options, "-", stdin=drawing)
            self.assertEqual(status, 0)
            self.assertIn("n" * 100 + "...", output)
            self.assertLess(len(output), 5 * len(drawing), options)
        self.assertIn(f"#{name} ", run("--full", "--ids", "-", stdin=drawing)[1])

    def test_json_writes_long_names_and_shared_values_once(self):
        name = "n" * 20_000
        sheet = (f'<style>g {{ fill: url(#{name}z) red; clip-path: url({name}.svg); font-family: {name};'
                 f' stroke-dasharray: {"1 " * 9999} }}</style>')
        drawing = svg(sheet + f'<rect id="{name}" xml:id="a"/>' + '<g><use xlink:href="#a"/></g>' * 200)
        outputs = [run(*options, "-", stdin=drawing)[1] for options in (
            ["--json"], ["--pretty"], ["--json", "--query", "a"], ["--json", "--full"])]
        one_line, pretty, part, full = map(json.loads, outputs)
        self.assertEqual(one_line, pretty)
        self.assertLess(len(outputs[0]), 6 * len(drawing))
        rect, first, second, *_ = (c for c in one_line["root"]["children"] if "node" in c)
        whole = full["root"]["children"][-1]
        self.assertEqual(part["root"]["node"], rect["node"])
        self.assertEqual([v["type"] for v in whole["values"]], ["families", "lengths", "paint", "iri"])
        for value, same, expected in zip(first["values"], second["values"], whole["values"]):
            if value["type"] != "paint":
                self.assertEqual(value, expected)
            self.assertEqual((same["type"], same["node"]), ("same", first["node"]))
        self.assertEqual(second["children"][0]["values"][-1]["text"], "#" + name[:200] + "...")
        self.assertEqual(whole["children"][0]["values"][-1]["text"], "#" + name)


STYLED = svg("""<style>#a { fill: blue; stroke: green !important } g { marker: url(#m) }</style>
<g id="g" fill-opacity=".3" opacity=".5" clip-path="inherit" marker-mid="none">
<rect id="a" fill="red" fill-opacity="inherit" style="fill: gold; stroke: tan"/></g>""", 'color="red"')

ANSWERS = (  # arguments, drawing, answer after its first line
    (["--ids"], svg('<g id="b"/><color-profile name="c"/><g id="a"/>'),
     "  #b g\n  #c color-profile\n  #a g\n"),
    (["--links"], svg('<g id="b"/><use id="u" xlink:href="#b"/><use xlink:href="#z"/><g fill="url(x#y)"/>'),
     "  use #u xlink:href -> #b\n  use xlink:href -> #z (no such element)\n  g fill -> x#y\n"),
    (["--fonts"], svg('<font id="f"><font-face font-family="F" font-weight="bold"/></font>'),
     "  F_700____ (font #f)\n"),
    (["--explain", "#a", "--property", "fill"], STYLED,
     "  fill: #ffd700  (style)\n    overrides #0000ff  (sheet: #a)\n    overrides #ff0000  (attribute)\n"),
    (["--explain=a", "--property=stroke"], STYLED,
     "  stroke: #008000  (sheet, important: #a)\n    overrides #d2b48c  (style)\n"),
    (["--explain", "#a", "--property", "fill-opacity"], STYLED,
     "  fill-opacity: inherit  (attribute)\n    inherited from g #g: 0.3  (attribute)\n"),
    (["--explain", "#a", "--property", "color"], STYLED,
     "  color: no value\n    inherited from svg: #ff0000  (attribute)\n"),
    (["--explain", "p", "--property", "text-decoration"],
     svg('<g text-decoration="underline"><g id="p" text-decoration="inherit"/></g>'),
     "  text-decoration: inherit  (attribute)\n    inherited from g: underline  (attribute)\n"),
    (["--explain", "#a", "--property", "opacity"], STYLED, "  opacity: no value\n    initial value: 1\n"),
    (["--explain", "#a", "--property", "marker-mid"], STYLED,
     "  marker-mid: no value\n    inherited from g #g: url(#m (no such element))  (sheet: g, through marker)\n"),
    (["--explain", "#g", "--property", "clip-path"], STYLED, "  clip-path: none or inherit  (attribute)\n"),
    (["--explain", "#a", "--property", "cx"], STYLED, "  cx: no attribute of rect\n"),
    (["--query", "#b"], svg('<g id="b"><g class=" x " data-y="" i:z="a&#10;" xmlns:i="urn:i" zoom="1"/></g><g/>'),
     '  g [line 1]\n    - class: " x "\n    - data-y: ""\n    - i:z: "a\\n"\n    - zoom: "1"\n'),
    (["--language", "de", "--query", "s"],
     svg('<switch id="s"><g systemLanguage="en"/>x<a systemLanguage="fr, de-CH"/><g/></switch>'),
     "  g [line 1] [language not accepted]\n    . systemLanguage: en\n  \"x\"\n"
     "  a [line 1] [needs bbox] [language accepted] [chosen]\n    . systemLanguage: fr, de-CH\n  g [line 1]\n"),
    (["--query", "#n"], svg('<a id="n" xlink:title="&#x9b;&#127;&#9;é&#x202e;&#x2069;&#x206a;"/>'),
     '  . xlink:title: "\\xc2\\x9b\\x7f\\té\\xe2\\x80\\xae\\xe2\\x81\\xa9\u206a"\n'),
)


class Questions(unittest.TestCase):
    maxDiff = None

    def test_answers(self):
        for arguments, drawing, expected in ANSWERS:
            with self.subTest(arguments):
                status, output, messages = run(*arguments, "-", stdin=drawing)
                self.assertEqual(output.split("\n", 1)[1], expected, messages)
                self.assertEqual(status, 0)

    def test_explanation_without_property_tells_own_and_inherited_values(self):
        _, output, _ = run("--explain", "#a", "-", stdin=STYLED)
        told = re.findall(r"^  (\S+):", output, re.M)
        self.assertEqual(sorted(told), ["color", "fill", "fill-opacity", "marker", "marker-end",
                                        "marker-mid", "marker-start", "stroke"])

    def test_unknown_id(self):
        for option in ("--query", "--explain"):
            status, output, messages = run(option, "#x", "-", stdin=svg(""))
            self.assertEqual((status, output, messages),
                             (1, "", "standard input: no element has the id 'x'\n"))
        self.assertIsNone(json.loads(run("--query", "#x", "--json", "-", stdin=svg(""))[1])["root"])

    def test_query_in_json_keeps_node_numbers(self):
        _, output, _ = run("--json", "--query", "#b", "-", stdin=svg('<g/><g id="b"><g/></g>'))
        root = json.loads(output)["root"]
        self.assertEqual((root["node"], root["children"][0]["node"]), (3, 4))

    def test_answers_in_json(self):
        drawing = svg('<style>g { fill: red !important }</style><font id="f"><font-face font-family="F"/></font>'
                      '<g id="g" fill="tan"><use id="u" class="c" i:l="1" xmlns:i="urn:i" xlink:href="#z"/></g>')
        _, output, _ = run("--json", "--fonts", "--ids", "--links", "--stats", "--explain", "u", "--property",
                           "fill", "--query", "u", "-", stdin=drawing)
        whole, answers = map(self.validated, output.splitlines())
        self.assertEqual([whole["root"][k] for k in ("line", "class", "foreign")],
                         [1, "c", [{"name": "i:l", "value": "1"}]])
        self.assertEqual((answers["fonts"], answers["stats"]["elements"]), (whole["fonts"], 5))
        self.assertEqual([(i["name"], i["element"], i["node"]) for i in answers["ids"]],
                         [("f", "font", 2), ("g", "g", 4), ("u", "use", 5)])
        self.assertEqual(answers["links"], [{"node": 5, "element": "use", "name": "xlink:href", "kind": "link",
                                             "target": None, "text": "#z", "mime": None}])
        row, = answers["explain"]["rows"]
        self.assertEqual((row["value"], row["overrides"], row["initial"]), (None, [], None))
        self.assertEqual([row["inherited"][k] for k in ("holder", "important", "selector", "rgb")],
                         [4, True, "g", "#FF0000"])
        unread = self.validated(run("--json", "--ids", "--explain", "x", "-", stdin=b"<svg")[1])
        self.assertEqual((unread["ids"], unread["explain"], unread["error"]["code"]), (None, None, 1700))
        for line in run("--check", "--json", "tests/tools/check.svg")[1].splitlines():
            self.validated(line)

    def validated(self, text):
        document = json.loads(text)
        if jsonschema:
            with open("docs/json.schema.json", encoding="utf-8") as file:
                jsonschema.validate(document, json.load(file))
        return document

    def test_statistics(self):
        _, output, _ = run("--stats", "-", stdin=svg("<g>x</g>"))
        self.assertRegex(output, r"^standard input: 2 elements, 2 values, 1 texts\n"
                                 r"  time: style sheets \d+\.\d+ ms, document \d+\.\d+ ms\n"
                                 r"  memory: \d+ bytes in \d+ blocks, peak \d+ bytes\n")
        tags = [(int(b), int(n)) for b, n in re.findall(r"^ +(\d+) +(\d+)  \w+$", output, re.M)]
        self.assertEqual(tags, sorted(tags, key=lambda tag: -tag[0]))
        total = tuple(int(n) for n in re.search(r"(\d+) bytes in (\d+)", output).groups())
        self.assertEqual(tuple(map(sum, zip(*tags))), total)


PATHS = (  # text, exit status, standard output, the marked line and the caret below it
    ("M1 2 l3,4 h1z", 0, "M 1,2\nL 4,6\nL 5,6\nZ\n", ""),
    ("m0 0q3 3 6 0", 0, "M 0,0\nC 2,2 4,2 6,0\n", ""),
    ("M1 2 3 x", 1, "M 1,2\n", "  M1 2 3 x\n"
                               "         ^\n"),
    ("L1 2", 1, "", "  L1 2\n"
                    "  ^\n"),
    ("", 1, "", "  \n"
                "  ^\n"),
    ("M0 0\n\té l", 1, "M 0,0\n", "  M0 0  é l\n"
                                  "        ^\n"),
    ("M0 0 é", 1, "M 0,0\n", "  M0 0 é\n"
                             "       ^\n"),
    ("M0 0" + 40 * " 1é" + "   ", 1, "M 0,0\n", "  M0 0 1é 1é 1é 1é 1é 1é 1é 1é 1é 1é 1é 1é 1...\n"
                                                "        ^\n"),
    ("M0 0 L " + 40 * "1 1 " + "x", 1, "M 0,0\n" + 40 * "L 1,1\n",
     "  ..." + 9 * "1 1 " + "x\n" + " " * 41 + "^\n"),
)


class Paths(unittest.TestCase):
    def test_segments_and_carets(self):
        for text, status, segments, marked in PATHS:
            with self.subTest(text):
                for arguments, stdin in (("--path", text), b""), (("--path", "-"), text.encode()):
                    found = run(*arguments, stdin=stdin)
                    self.assertEqual(found[:2], (status, segments))
                    self.assertEqual(found[2].split("\n", 1)[-1], marked)

    def test_arc_and_nul(self):
        _, output, _ = run("--path", "M0 0 A5 5 0 0 1 10 0")
        self.assertRegex(output, r"^M 0,0\nC .*  \(arc\)\nC .* 10,0  \(arc\)\n$")
        self.assertEqual(run("--path", "-", stdin=b"M1 1\0")[::2],
                         (1, "path: error: a NUL byte ends the text\n  M1 1 \n      ^\n"))


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
    ["--explain"], ["--explain", "#a", "--property", "fil", "-"], ["--property", "fill", "-"],
    ["--refuse-property", "Fill", "-"], ["--limit", "nodes=x", "-"], ["--check", "--pretty", "-"], ["--check", "--ids", "-"],
    ["--limit", "depth", "-"], ["--limit", "width=1", "-"], ["--limit", "nodes=0", "-"],
    ["--limit", "nodes=9T", "-"], ["--json", "--extract", "x", "-"], ["--path", "M0 0", "-"], ["--path", "M0 0", "--json"],
)


class Streams(unittest.TestCase):
    def test_inputs(self):
        for file, stdin, message in INPUTS:
            with self.subTest(message):
                status, output, messages = run("--stats", file, stdin=stdin)
                name = "standard input" if file == "-" else file
                self.assertTrue(messages.startswith(f"{name}: {message}"), messages)
                self.assertEqual((status, output != ""), (0, True) if "warning" in message else (1, False))

    def test_limits(self):
        drawing = svg("<g><g/></g>")
        for limit, message in (("memory=4K", "error 1001: "), ("inflated=1", "error 1930: Limit of 1 inf"),
                               ("nodes=2", "error 1930: Limit of 2 n"), ("depth=2", "error 1930: Limit of 2 n"),
                               ("depth=1G", ""), ("recorded=1", "")):
            data = gzip.compress(drawing) if limit == "inflated=1" else drawing
            found = run("--ids", "--limit", "growth=2", "--limit", limit, "-", stdin=data)[2]
            self.assertEqual(found[:len(f"standard input: {message}")],
                             message and f"standard input: {message}")

    def test_little_address_space(self):
        drawing = svg('<rect x="bad"/>' * 20000)
        for size in (1 << 30, *range(4 << 20, 24 << 20, 1 << 20)):
            def little(size=size):
                resource.setrlimit(resource.RLIMIT_AS, (size, size))
            status, _, messages = run("--ids", "-", stdin=drawing, preexec_fn=little)
            if size == 1 << 30 and status != 0:
                self.skipTest("an instrumented tool needs more than that to start")
            if status != 127:  # else the dynamic loader found no room
                self.assertIn((status, messages.endswith("ut of memory\n")), [(0, False), (1, True)], size)

    def test_refused_names(self):
        for option in ("--refuse-element", "--refuse-property"):
            found = run("--ids", option, "zoom", option, "blink", "-", stdin=svg('<blink/><g zoom="1"/>'))
            self.assertIn("contains unsupported", found[2])

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
        options = re.findall(r"--[a-z-]+", run("--help")[1])
        for path, pattern in (("tools/completions/svgtree.bash", r"--[a-z-]+\b(?![*-])"),
                              ("tools/completions/_svgtree", r"'(?:\([^']*\)|\*)?(--[a-z-]+)"),
                              ("docs/svgtree.1", r"\\-\\-[a-z\\-]+")):
            with open(path, encoding="utf-8") as file:
                found = re.findall(pattern, file.read())
            self.assertEqual({name.replace("\\", "") for name in found}, set(options), path)

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


def update():
    for path, output in golden_files():
        with open(path, "w", encoding="utf-8") as file:
            file.write(output())


if __name__ == "__main__":
    TOOL = os.path.abspath(sys.argv.pop(1))
    if sys.argv[1:] == ["--update"]:
        update()
    else:
        unittest.main()
