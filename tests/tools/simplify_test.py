#!/usr/bin/env python3
"""Drawings written as plain SVG: simplify_test.py TOOL [unittest's arguments]."""
import re
import unittest

from tool import main, run, samples, svg

SIMPLIFIED = (  # what a drawing holds, what its simplified form holds between the tags of the outermost svg
    ("<style>.a{fill:red!important}</style><g color='#00f' stroke='currentColor' stroke-width='1mm'>"
     "<rect class='a' width='50%' height='1em' fill='lime' stroke='inherit'/></g>",
     '<path d="M0 0L4.5 0 4.5 12 0 12Z" fill="#f00" stroke="#00f" stroke-width="3.7795277"/>'),
    ("<defs><symbol id='s' viewBox='0 0 1 1'><line x2='1' stroke='red'/></symbol></defs>"
     "<use xlink:href='#s' x='2' width='4' height='4' opacity='.5' stroke-width='3'/>",
     '<defs><clipPath id="c1"><path d="M0 0L1 0 1 1 0 1Z"/></clipPath></defs>'
     '<g transform="matrix(1 0 0 1 2 0)" opacity=".5"><g transform="matrix(4 0 0 4 0 0)" clip-path="url(#c1)">'
     '<path d="M0 0L1 0" stroke="#f00" stroke-width="3"/></g></g>'),
    ("<switch><path systemLanguage='fr' d='M0 0h1'/><path d='M1-.5h.25q3 0 3 3z'/></switch><g opacity='.1'>"
     "<path d='M0 0h9' fill='none'/></g><path d='M0 0h9' display='none'/>",
     '<path d="M1-.5L1.25-.5C3.25-.5 4.25 .5 4.25 2.5Z"/>'),
    ("<rect x='1e-7' y='-1e20' width='123456.789' height='2e20' fill='#abcdef' fill-opacity='25e-2'/>",
     '<path d="M1e-7-2147483520L123456.79-2147483520 123456.79 2147483520 1e-7 2147483520Z" fill="#abcdef" '
     'fill-opacity=".25"/>'),
    ("<defs><linearGradient id='a'><stop stop-color='red'/><stop offset='50%' stop-opacity='.5'/></linearGradient>"
     "<radialGradient id='b' xlink:href='#a' gradientUnits='userSpaceOnUse' cx='3' cy='3' r='.1' fx='9'/></defs>"
     "<rect width='2' height='4' fill='url(#a)'/><rect width='2' height='4' stroke='url(#a)'/>"
     "<path d='M0 0h9' fill='url(#a) blue' stroke='url(#b)'/>",
     '<defs><linearGradient id="g1" gradientUnits="userSpaceOnUse" x1="0" y1="0" x2="1" y2="0" '
     'gradientTransform="matrix(2 0 0 4 0 0)"><stop offset="0" stop-color="#f00"/><stop offset=".5" '
     'stop-color="#000" stop-opacity=".5"/></linearGradient>'
     '<radialGradient id="g2" gradientUnits="userSpaceOnUse" cx="3" cy="3" r=".1" fx="3.1"><stop offset="0" '
     'stop-color="#f00"/><stop offset=".5" stop-color="#000" stop-opacity=".5"/></radialGradient></defs>'
     '<path d="M0 0L2 0 2 4 0 4Z" fill="url(#g1)"/><path d="M0 0L2 0 2 4 0 4Z" stroke="url(#g1)"/>'
     '<path d="M0 0L9 0" fill="#00f" stroke="url(#g2)"/>'),
    ("<defs><pattern id='p' width='.5' height='.5' patternContentUnits='objectBoundingBox'><path d='M0 0h1v1z'/>"
     "</pattern><pattern id='q' width='1' height='1'><path display='none' d='M0 0h1'/></pattern></defs>"
     "<rect width='2' height='4' fill='url(#p)' stroke='url(#q)'/>",
     '<defs><pattern id="p1" patternUnits="userSpaceOnUse" x="0" y="0" width="1" height="2">'
     '<g transform="matrix(2 0 0 4 0 0)"><path d="M0 0L1 0 1 1Z"/></g></pattern></defs>'
     '<path d="M0 0L2 0 2 4 0 4Z" fill="url(#p1)"/>'),
    ("<defs><clipPath id='a'><path d='M0 0h1v1z' clip-rule='evenodd'/></clipPath><path id='s' d='M0 0h9v9z' "
     "transform='scale(2)' clip-path='url(#a)'/><clipPath id='b' clip-path='url(#a)'>"
     "<use xlink:href='#s' x='1' clip-path='url(#a)'/></clipPath></defs><path d='M0 0h5v5z' clip-path='url(#b)'/>",
     '<defs><clipPath id="c1"><path d="M0 0L1 0 1 1Z" clip-rule="evenodd"/></clipPath>'
     '<clipPath id="c2" transform="matrix(.5 0 0 .5 0 0)"><path d="M0 0L1 0 1 1Z" clip-rule="evenodd"/></clipPath>'
     '<clipPath id="c3" clip-path="url(#c2)"><path d="M0 0L1 0 1 1Z" clip-rule="evenodd"/></clipPath>'
     '<clipPath id="c4" clip-path="url(#c1)"><path d="M0 0L9 0 9 9Z" transform="matrix(2 0 0 2 1 0)" '
     'clip-path="url(#c3)"/></clipPath></defs><g clip-path="url(#c4)"><path d="M0 0L5 0 5 5Z"/></g>'),
    ("<defs><mask id='m' maskContentUnits='objectBoundingBox'><circle r='0'/><path d='M0 0h1v1z' fill='#fff'/></mask>"
     "<mask id='n' width='0'/></defs><g mask='url(#m)'><rect width='2' height='4'/></g>"
     "<path d='M0 0h1v1z' mask='url(#n)'/>",
     '<defs><mask id="m1" maskUnits="userSpaceOnUse" x="-.2" y="-.4" width="2.4" height="4.8">'
     '<g transform="matrix(2 0 0 4 0 0)"><path d="M0 0L1 0 1 1Z" fill="#fff"/></g></mask>'
     '<mask id="m2" maskUnits="userSpaceOnUse" x="-.1" y="-.1" width="0" height="1.2"></mask></defs>'
     '<g mask="url(#m1)"><path d="M0 0L2 0 2 4 0 4Z"/></g><g mask="url(#m2)"><path d="M0 0L1 0 1 1Z"/></g>'),
    ("<a xlink:href='http://x/?a&amp;b'><image width='1in' height='2' xlink:href='data:image/gif;base64,AAE='/></a>"
     "<a xlink:href='#i'><image id='i' width='1' height='2' xlink:href='i.png' overflow='visible' "
     "preserveAspectRatio='xMinYMin slice'/></a>",
     '<a xlink:href="http://x/?a&amp;b"><image x="0" y="0" width="96" height="2" '
     'xlink:href="data:image/gif;base64,AAE="/></a><image x="0" y="0" width="1" height="2" '
     'preserveAspectRatio="xMinYMin slice" overflow="visible" xlink:href="i.png"/>'),
    ("<path d='M0 0h9' stroke-dasharray='1mm 2%' stroke='red icc-color(p, .5)' fill='none' stroke-linecap='round'/>",
     '<path d="M0 0L9 0" fill="none" stroke="#f00 icc-color(p,.5)" stroke-linecap="round" '
     'stroke-dasharray="3.7795277,.18"/>'),
    ("<clipPath id='c'><text y='1' font-size='9' opacity='.5' fill='red'>e</text></clipPath><path id='p' d='M0 0v9' "
     "clip-path='url(#c)'/><text font-size='2em' x='1' transform='scale(2)' text-decoration='underline' fill='lime'> "
     "a&amp;<tspan fill='red' dx='3'>b  c</tspan></text><text><textPath xlink:href='#p'>f\u00e9</textPath></text>",
     '<defs><clipPath id="c1"><text xml:space="preserve"><tspan x="0" y="1" font-size="9">e</tspan></text></clipPath>'
     '</defs><g clip-path="url(#c1)"><path d="M0 0L0 9"/></g><text xml:space="preserve" '
     'transform="matrix(2 0 0 2 0 0)"><tspan text-decoration="underline" font-size="24" fill="#0f0"><tspan x="1" '
     'y="0" font-size="24" fill="#0f0">a&amp;</tspan></tspan><tspan text-decoration="underline" font-size="24" '
     'fill="#0f0"><tspan dx="3" font-size="24" fill="#f00">b c</tspan></tspan></text><text xml:space="preserve">'
     '<tspan x="0" y="0" rotate="90" font-size="12">f</tspan><tspan rotate="90" font-size="12">\u00e9</tspan></text>'),
)


class Simplify(unittest.TestCase):
    def simplify(self, drawing):
        status, output, messages = run("--simplify", "-", stdin=drawing)
        self.assertEqual((status, messages), (0, ""))
        self.assertEqual(run("--simplify", "-", stdin=output.encode())[1], output)
        return output

    def test_drawings(self):
        for markup, expected in SIMPLIFIED:
            with self.subTest(markup):
                output = self.simplify(svg(markup)).replace("\n", "")
                self.assertEqual(re.fullmatch("<svg [^>]*>(.*)</svg>", output)[1], expected)

    def test_samples_are_simplified_once(self):
        for sample in samples():
            with self.subTest(sample):
                status, output, _ = run("--simplify", sample)
                self.assertEqual(status, 0)
                self.simplify(output.encode())

    def test_size_and_viewport(self):
        for attributes, head in (("", 'width="9" height="9"'), ("overflow='visible'", 'width="9" height="9" '
                                                                'overflow="visible"')):
            self.assertIn(f'"http://www.w3.org/2000/svg" {head}>\n</svg>', self.simplify(svg("", attributes)))

    def test_errors(self):
        deep = "".join(f"<g id='g{i}'>" + f"<use xlink:href='#g{i + 1}'/>" * 10 + "</g>" for i in range(9))
        status, output, messages = run("--simplify", "--limit", "expanded=1000", "-",
                                       stdin=svg(deep + "<path id='g9' d='M0 0h9'/>"))
        self.assertEqual((status, output), (1, ""))
        self.assertIn("error 1930", messages)
        circle = svg("<g id='a'><use id='u' xlink:href='#a'/><path d='M0 0h9'/></g>")
        status, output, messages = run("--simplify", "-", stdin=circle)
        self.assertEqual((status, output.count("<path")), (0, 1))
        self.assertIn("'use' with id 'u'", messages)


if __name__ == "__main__":
    main()
