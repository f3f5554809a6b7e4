#!/usr/bin/env python3
"""What svgtree prints: svgtree_test.py TOOL [unittest's arguments], from the root.

With --update in place of those arguments it writes golden/ anew; read the difference before
committing it.
"""
import json
import math
import os
import re
import resource
import tempfile
import unittest

from tool import main, run, samples, svg

try:
    import jsonschema
except ImportError:
    jsonschema = None

GOLDEN = os.path.join(os.path.dirname(__file__), "golden")


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
        _, _, messages = run("--ids", "--strict", "--log", level, f"tests/tools/{drawing}.svg")
        messages = re.sub(r"(\t\t0x[0-9a-f]+: .*\n)+", lambda found: "".join(
            sorted(found[0].splitlines(True), key=lambda line: line.split(": ")[1])), messages)
        known = {}
        text += f"==== {drawing}.svg, level {level}\n" + re.sub(
            r"\b(0x[0-9a-f]+|[0-9a-f]{32})\b",
            lambda found: f"<{known.setdefault(found[0], len(known) + 1)}>", messages)
    return re.sub(r" $", "\u2423", text, flags=re.M)


def check_text():
    """All findings, in both forms, then those of line 19 by the strict reading."""
    drawing = "tests/tools/check.svg"
    strict = run("--check", "--strict", drawing)[1].splitlines(True)
    return (run("--check", drawing)[1] + run("--check", "--json", drawing)[1]
            + "".join(line for line in strict if ":19: " in line))


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
    ('<g fill="url(#me) none" id="me"/>', "fill",
     {"type": "paint", "paint": "iri", "fallback": "none",
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


def update():
    for path, output in golden_files():
        with open(path, "w", encoding="utf-8") as file:
            file.write(output())


if __name__ == "__main__":
    main(update)
