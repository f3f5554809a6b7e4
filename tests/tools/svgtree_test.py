#!/usr/bin/env python3
"""What svgtree prints: svgtree_test.py TOOL [unittest's arguments], from the root.

With --update in place of those arguments it writes golden/ anew; read the difference before
committing it.
"""
import json
import os
import re
import resource
import tempfile
import unittest

from tool import GOLDEN, commands, main, run, samples, svg

try:
    import jsonschema
except ImportError:
    jsonschema = None


def output_of(sample):
    _, output, messages = run("--language", "fr-CH", sample)
    return messages + output


def schema():
    return json.loads(run("--schema")[1])


def schema_text():
    """Every cell of every table, a row a line."""
    return "".join(f"{table} {json.dumps(row)}\n" for table, rows in schema().items() for row in rows)


def visible(text):
    """The text with a mark for a blank at the end of a line."""
    return re.sub(r" $", "\u2423", text, flags=re.M)


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
    return visible(text)


def check_text():
    """All findings, in both forms, then those of line 22 by the strict reading."""
    drawing = "tests/tools/check.svg"
    strict = run("--check", "--strict", drawing)[1].splitlines(True)
    return (run("--check", drawing)[1] + run("--check", "--json", drawing)[1]
            + "".join(line for line in strict if ":22: " in line))


def golden_files():
    """What each golden file has to hold."""
    yield os.path.join(GOLDEN, "schema.txt"), schema_text
    yield os.path.join(GOLDEN, "log.txt"), log_text
    yield os.path.join(GOLDEN, "check.txt"), check_text
    yield os.path.join(GOLDEN, "commands.txt"), lambda: visible("".join(shown for shown, _ in commands()))
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

    def test_answers_fit_the_schema(self):
        for shown, output in commands():
            if "--json" in shown or "--pretty" in shown:
                with self.subTest(shown):
                    for text in [output] if "--pretty" in shown else output.splitlines():
                        self.check(text)
        for line in run("--check", "--json", "tests/tools/check.svg")[1].splitlines():
            self.check(line)

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


class Check(unittest.TestCase):
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

    def test_selectors_of_many_deep_elements(self):
        count = 20_000
        drawing = svg("<g>" * count + '<rect id="r" stroke="inherit"/>' * count + "</g>" * count,
                      f'stroke-dasharray="{"1 " * 9999}" font-family="{"n" * count}" stroke="red"')
        for options in (["--query", "svg rect"], ["--query", "svg *"], ["--explain", "svg rect"], ["--explain", "svg g"]):
            for form in ([], ["--json"]):
                status, output, _ = run(*options, *form, "-", stdin=drawing)
                self.assertEqual(status, 0)
                self.assertLess(len(output), 1000 * count, options)
        self.assertEqual(run("--shapes", "--query", "svg rect", "-", stdin=drawing)[:2], (1, ""))

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


class Statistics(unittest.TestCase):
    def test_counts_add_up(self):
        _, output, _ = run("--stats", "-", stdin=svg("<g>x</g>"))
        self.assertRegex(output, r"^standard input: 2 elements, 2 values, 1 texts\n"
                                 r"  time: style sheets \d+\.\d+ ms, document \d+\.\d+ ms\n"
                                 r"  memory: \d+ bytes in \d+ blocks, peak \d+ bytes\n")
        tags = [(int(b), int(n)) for b, n in re.findall(r"^ +(\d+) +(\d+)  \w+$", output, re.M)]
        self.assertEqual(tags, sorted(tags, key=lambda tag: -tag[0]))
        total = tuple(int(n) for n in re.search(r"(\d+) bytes in (\d+)", output).groups())
        self.assertEqual(tuple(map(sum, zip(*tags))), total)
        answers = run("--json", "--stats", "-", stdin=svg("<g>x</g>"))[1].splitlines()[-1]
        self.assertEqual(json.loads(answers)["stats"]["elements"], 2)


def update():
    for path, output in golden_files():
        text = output()
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)


if __name__ == "__main__":
    main(update)
