#!/usr/bin/env python3
"""What a drawing shows, in svgtree's words: shapes_test.py TOOL [unittest's arguments]."""
import json
import resource
import unittest

from tool import main, run, samples, svg

try:
    import jsonschema
except ImportError:
    jsonschema = None

SHOWN = svg("""<linearGradient id="g"><stop/><stop offset="1"/></linearGradient>
<pattern id="p" width="1" height="1"><rect width="1" height="1"/></pattern>
<clipPath id="c"><rect width="1" height="1"/></clipPath><mask id="m"><rect width="9" height="9"/></mask>
<g transform="translate(2 1)" opacity=".5" clip-path="url(#c)" mask="url(#m)"><path id="größe"
 transform="rotate(45)" d="M0 0 C0 4 4 4 4 0" fill="url(#g)" stroke="url(#p)" stroke-opacity=".25"/></g>
<use id="u" xlink:href="#r" x="3"/><rect id="r" width="1e-16" height="2" fill="lime" stroke-width="2"/>
<a xlink:href="#nothing"><image id="i" x="1" width="2" height="3" xlink:href="a&#10;b.png"/></a>
<text x="1" y="2" transform="scale(2)" fill="none" stroke="red">a&#x9b;<tspan fill="red">b</tspan></text>""")

LINES = r"""  svg [line 1]  viewport 0,0 9 x 9
    g [line 4]  opacity 0.5  clipPath #c  mask #m  matrix(1 0 0 1 2 1)
      path #größe [line 4]      0.82843,1 4 x 4               fill linearGradient #g  stroke pattern #p/0.25 width 1  matrix(0.707107 0.707107 -0.707107 0.707107 0 0)
    use #u [line 6]  matrix(1 0 0 1 3 0)
      rect #r [line 6]          3,0 0 x 2                     fill #00ff00  in use #u [line 6]
    rect #r [line 6]            0,0 0 x 2                     fill #00ff00
    a [line 7]  link #nothing (no such element)
      image #i [line 7]         1,0 2 x 3  a\nb.png
    text [line 8]               2,4                                         stroke #ff0000 width 1  "a\xc2\x9b"  matrix(2 0 0 2 0 0)
    tspan [line 8]                                            fill #ff0000  stroke #ff0000 width 1  "b"  matrix(2 0 0 2 0 0)
"""

MEMBERS = svg('<style>a {line-height: 1}</style><style/><title>"a</title><filter/><filter/><text/>'
              '<g y:b="" c="" xmlns:y="urn:y"><path c=""/><image xlink:href="data:,"/><use xlink:href="#a"/></g>',
              'viewBox="0 0 -1 2"')

ANSWERS = (  # arguments, drawing, answer after its first line
    (["--shapes"], SHOWN, LINES),
    (["--shapes", "--query", "i"], SHOWN, "  image #i [line 7]             1,0 2 x 3  a\\nb.png\n"),
    (["--bbox=größe"], SHOWN,  # the extremes of a curve that is turned by 45 degrees
     "  without stroke  0.82843,1 4 x 4\n  with stroke     0.32843,0.64645 4.85355 x 4.85355\n"),
    (["--bbox"], svg('<defs><rect width="1" height="1"/></defs>'),
     "  without stroke  nothing\n  with stroke     nothing\n"),
    (["--info"], MEMBERS, """\
  title               "\\"a"
  size                9 x 9 px, 2.38125 x 2.38125 mm
  viewBox             0 0 -1 2
  shapes              1
  texts               1
  images              1
  fonts               0
  links               1
  style sheets        2
  skipped elements    filter 2
  skipped attributes  c 2, y:b 1
  skipped properties  line-height 1
"""),
)


class Shapes(unittest.TestCase):
    maxDiff = None

    def answered(self, *arguments, stdin=b""):
        status, output, messages = run("--json", *arguments, stdin=stdin)
        answer = json.loads(output)
        if jsonschema:
            with open("docs/json.schema.json", encoding="utf-8") as file:
                jsonschema.validate(answer, json.load(file))
        self.assertEqual(bool(messages), bool(answer["warnings"] or answer["error"]))
        return status, answer

    def test_texts(self):
        for arguments, drawing, expected in ANSWERS:
            with self.subTest(arguments):
                status, output, messages = run(*arguments, "-", stdin=drawing)
                self.assertEqual((status, output.split("\n", 1)[1], messages), (0, expected, ""))

    def test_json(self):
        _, answer = self.answered("--shapes", "--bbox", "--query", "größe", "-", stdin=SHOWN)
        path, = answer["shapes"]
        self.assertEqual((path["kind"], path["id"], path["fill"], path["stroke"]),
                         ("shape", "größe", {"server": 2, "opacity": 1}, {"server": 5, "opacity": 0.25, "width": 1}))
        for size in (*path["box"][2:], *answer["bbox"]["box"][2:]):
            self.assertAlmostEqual(size, 4)
        _, answer = self.answered("--shapes", "-", stdin=SHOWN)
        group, use, _, link, text, span = answer["shapes"][0]["children"]
        self.assertEqual((group["opacity"], group["clip"], group["mask"], group["matrix"][4:]), (0.5, 7, 9, [2, 1]))
        self.assertEqual((use["children"][0]["use"], use["children"][0]["ctm"][4]), (use["node"], 3))
        self.assertEqual((link["link"]["target"], link["children"][0]["image"]["text"]), (None, "a\nb.png"))
        self.assertEqual([(t["origin"], t["text"], t["fill"]) for t in (text, span)],
                         [([2, 4], "a\x9b", None), (None, "b", {"rgb": "#FF0000", "opacity": 1})])
        _, answer = self.answered("--info", "-", stdin=MEMBERS)
        self.assertEqual(answer["info"]["skipped"]["attributes"], [{"name": "c", "count": 2}, {"name": "y:b", "count": 1}])
        for sample in samples():
            self.answered("--shapes", "--bbox", "--info", sample)

    def test_failures(self):
        bomb = svg('<g id="a0"><rect width="1" height="1"/></g>' + "".join(
            f'<g id="a{i}" opacity=".5">' + f'<use xlink:href="#a{i - 1}"/>' * 10 + "</g>" for i in range(1, 9)))
        status, answer = self.answered("--limit", "expanded=1000", "--shapes", "--bbox", "-", stdin=bomb)
        self.assertEqual((status, answer["error"]["code"], answer["bbox"]), (1, 1930, None))
        status, answer = self.answered("--shapes", "-", stdin=svg('<g id="a"><use xlink:href="#a"/></g>'))
        self.assertEqual((status, len(answer["warnings"]), answer["error"]), (0, 1, None))
        status, answer = self.answered("--shapes", "--bbox", "--info", "-", stdin=b"<svg")
        self.assertEqual((status, answer["shapes"], answer["bbox"], answer["info"]), (1, None, None, None))
        for arguments in (["--bbox=x"], ["--bbox", "--query", "x"], ["--shapes", "--query", "x"]):
            self.assertEqual(run(*arguments, "-", stdin=SHOWN),
                             (1, "", "standard input: no element has the id 'x'\n"))

    def test_growth(self):
        depth, name = 20_000, "n" * 20_000
        small_stack = lambda: resource.setrlimit(resource.RLIMIT_STACK, (1 << 20, 1 << 20))
        deep = svg('<g opacity=".5">' * depth + '<rect width="1" height="1"/>' + "</g>" * depth)
        named = svg(f'<rect id="{name}" width="1" height="1"/><text id="t">{name}</text>' +
                    f'<use xlink:href="#{name}"/><use xlink:href="#t"/>' * 500)
        for options in ([], ["--json"]):
            status, output, _ = run("--shapes", *options, "-", stdin=deep, preexec_fn=small_stack)
            self.assertEqual((status, output.count("opacity")), (0, depth + 2 * len(options)))
            self.assertLess(len(output), 200 * depth)
            self.assertLess(len(run("--shapes", *options, "-", stdin=named)[1]), len(named) / 20)


if __name__ == "__main__":
    main()
