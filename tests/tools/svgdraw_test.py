#!/usr/bin/env python3
"""What svgdraw draws, by single pixels, and how it treats files: svgdraw_test.py TOOL [arguments]."""
import base64
import os
import struct
import subprocess
import tempfile
import unittest
import zlib

import tool
from tool import main, run

os.environ.setdefault("LSAN_OPTIONS", "print_suppressions=0:suppressions=" +
                      os.path.join(os.path.dirname(os.path.abspath(__file__)), "leaks_of_libraries.txt"))


def svg(content, size="width='20' height='10'"):
    return ("<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
            f"{size}>{content}</svg>")


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def png(width, height, color):
    rows = height * (b"\0" + bytes(color) * width)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


def data(mime, content):
    return f"data:{mime};base64,{base64.b64encode(content).decode()}"


RED = data("image/png", png(2, 1, (255, 0, 0)))
INNER = data("image/svg+xml", svg("<rect width='50%' height='4' fill='lime'/>",
                                  "width='4' height='4'").encode())
STOPS = "<stop offset='0' stop-color='red'/><stop offset='1' stop-color='blue'/>"
NOTHING, BLACK = "00000000", "000000ff"
DRAWN = (  # name, content of a drawing of 20 by 10, pixels: (x, y, rrggbbaa)
    ("fills and strokes", "<rect x='2' y='2' width='6' height='6' fill='red' stroke='blue' stroke-width='2'/>"
     "<path d='M10 0h10v10h-10zM12 2h6v6h-6z' fill-rule='evenodd'/>",
     ((0, 0, NOTHING), (1, 5, "0000ffff"), (5, 5, "ff0000ff"), (11, 1, BLACK), (15, 5, NOTHING))),
    ("dashes and caps", "<path d='M0 2H20' stroke='red' stroke-width='4' stroke-dasharray='5 5'/>"
     "<path d='M5 7H15' stroke='red' stroke-width='4' stroke-linecap='square'/>",
     ((2, 1, "ff0000ff"), (7, 1, NOTHING), (12, 1, "ff0000ff"), (3, 6, "ff0000ff"), (1, 6, NOTHING))),
    ("opacity of shapes and groups", "<g opacity='.5'><rect width='8' height='10'/><rect width='8' height='10'/></g>"
     "<rect x='10' width='8' height='10' stroke='black' stroke-width='4' opacity='.5'/>",
     ((4, 5, "00000080"), (11, 5, "00000080"), (15, 5, "00000080"))),
    ("gradients", f"<linearGradient id='l'>{STOPS}</linearGradient><rect width='20' height='5' fill='url(#l)'/>"
     "<linearGradient id='s' x2='.25' spreadMethod='reflect' xlink:href='#l'/>"
     "<rect y='5' width='20' height='5' fill='url(#s)' fill-opacity='.5'/>",
     ((0, 2, "f90006ff"), (19, 2, "0600f9ff"), (5, 7, "1a00e580"), (10, 7, "e5001a80"))),
    ("patterns", "<pattern id='p' width='4' height='4' patternUnits='userSpaceOnUse'>"
     "<rect width='2' height='4' fill='red'/></pattern><rect width='20' height='10' fill='url(#p)'/>",
     ((0, 0, "ff0000ff"), (2, 0, NOTHING), (17, 9, "ff0000ff"), (19, 9, NOTHING))),
    ("opacity of a pattern's shape", "<pattern id='p' width='4' height='4' patternUnits='userSpaceOnUse'>"
     "<rect width='4' height='4'/></pattern><rect width='20' height='10' fill='url(#p)' opacity='.5'/>",
     ((5, 5, "00000080"),)),
    ("clips", "<clipPath id='a'><rect width='5' height='10'/></clipPath><clipPath id='b' clip-path='url(#d)'>"
     "<rect x='10' width='2' height='10'/><rect x='14' width='2' height='10'/></clipPath>"
     "<clipPath id='d'><rect x='0' width='20' height='5'/></clipPath>"
     "<rect width='20' height='10' fill='red' clip-path='url(#a)'/>"
     "<rect width='20' height='10' fill='blue' clip-path='url(#b)'/>",
     ((2, 5, "ff0000ff"), (7, 5, NOTHING), (11, 2, "0000ffff"), (13, 2, NOTHING), (15, 2, "0000ffff"), (11, 7, NOTHING))),
    ("masks", "<mask id='m'><rect width='10' height='10' fill='white'/><rect x='10' width='10' height='10' fill='red'/></mask>"
     "<rect width='20' height='10' mask='url(#m)'/>", ((5, 5, BLACK), (15, 5, "00000036"))),
    ("markers", "<marker id='m' overflow='visible' markerUnits='userSpaceOnUse'><rect x='-2' width='4' height='9' fill='red'/></marker>"
     "<path d='M5 0H15' marker-end='url(#m)'/>", ((14, 4, "ff0000ff"), (5, 4, NOTHING))),
    ("images", f"<image width='8' height='10' xlink:href='{RED}' preserveAspectRatio='none'/>"
     f"<image x='12' width='8' height='8' xlink:href='{INNER}'/>",
     ((4, 5, "ff0000ff"), (13, 4, "00ff00ff"), (17, 4, NOTHING))),
    ("text", "<text y='10' font-size='12' font-family='DejaVu Sans' textLength='20' lengthAdjust='spacingAndGlyphs'"
     " font-weight='bold' fill='red'>\u2588</text>", ((10, 5, "ff0000ff"),)),
    ("text in a stretched space", "<text y='2' font-size='3' font-family='DejaVu Sans' transform='scale(1 4)'>"
     "\u2588\u2588\u2588\u2588</text>", (*((x, 6, BLACK) for x in (1, 3, 5, 8)), (11, 6, NOTHING))),
    ("lenient numbers", "<rect width='5' height='5' transform='translate(10-1.5)'/>", ((12, 2, BLACK), (12, 4, NOTHING))),
)
WRONG = (  # arguments, status, message
    (("x.svg",), 2, "a drawing and a picture are wanted"),
    (("x.svg", "x.tiff"), 2, "'x.tiff' does not end in .png, .pdf, .ps or .svg"),
    (("-b", "nocolor", "x.svg", "y.png"), 2, "--background nocolor: no color"),
    (("-f", "gif", "x.svg", "y.png"), 2, "--format gif: png, pdf, ps or svg is wanted"),
    (("a.svg", "b.svg", "nowhere.png"), 2, "'nowhere.png' is no folder for several pictures"),
    (("-w", "inf", "x.svg", "y.png"), 2, "--width: a number above 0 is wanted"),
    (("--limit", "pixels=0", "x.svg", "y.png"), 2, "--limit pixels=0: no number above 0"),
    (("in.svg", "nowhere/y.png"), 1, "cannot write 'nowhere/y.png': No such file or directory"),
    (("--id", "none", "in.svg", "y.png"), 1, "no element has the id 'none'"),
    (("-w", "99999", "in.svg", "y.png"), 1, "a picture of 99999 x 50000 pixels is too large"),
    (("--limit", "pixels=100", "in.svg", "y.png"), 1, "error 1930: Limit of 100 pixels exceeded"),
    (("--limit", "painted=100", "in.svg", "y.png"), 1, "error 1930: Limit of 100 painted pixels exceeded"),
    (("bad.svg", "y.png"), 1, "error 1700: XML: "),
    (("in.svg", "full.png"), 1, "cannot write 'full.png': No space left on device"),
)


def decode(picture):
    """Width, height and rows of RGBA of a PNG as Cairo writes it: 8 bits, not interlaced."""
    width, height, _, kind = struct.unpack(">IIBB", picture[16:26])
    size, packed, at = {2: 3, 6: 4}[kind], b"", 8
    while at < len(picture):
        length, = struct.unpack(">I", picture[at:at + 4])
        if picture[at + 4:at + 8] == b"IDAT":
            packed += picture[at + 8:at + 8 + length]
        at += 12 + length
    raw, rows, above = zlib.decompress(packed), [], bytes(width * size)
    for y in range(height):
        start = y * (1 + width * size)
        row, method = bytearray(raw[start + 1:start + 1 + width * size]), raw[start]
        for i in range(len(row)):
            left, up = row[i - size] if i >= size else 0, above[i]
            corner = above[i - size] if i >= size else 0
            paeth = min((left, up, corner), key=lambda v: abs(left + up - corner - v))
            row[i] = (row[i] + (0, left, up, (left + up) // 2, paeth)[method]) & 255
        rows.append([row[i:i + size].hex() + ("ff" if size == 3 else "") for i in range(0, len(row), size)])
        above = row
    return width, height, rows


def draw(content, *options):
    """Exit status, picture and messages."""
    done = subprocess.run([tool.TOOL, *options, "-", "-"], input=content.encode(), check=False,
                          capture_output=True, timeout=120)
    return done.returncode, done.stdout, done.stderr.decode()


class Drawing(unittest.TestCase):
    def test_pixels(self):
        for name, content, pixels in DRAWN:
            with self.subTest(name):
                status, picture, messages = draw(svg(content))
                self.assertEqual((status, messages), (0, ""))
                width, height, rows = decode(picture)
                self.assertEqual((width, height), (20, 10))
                for x, y, expected in pixels:
                    self.assertEqual(rows[y][x], expected, (x, y))

    def test_sizes(self):
        drawing = svg("<rect id='r' x='1' y='1' width='2' height='3' stroke='red'/><text id='t' x='9' y='-9' "
                      "font-size='10' font-family='DejaVu Sans' textLength='20' lengthAdjust='spacingAndGlyphs'>\u2588</text>")
        for options, size in (((), (20, 10)), (("-s", "1.5"), (30, 15)), (("-w", "50"), (50, 25)),
                              (("-w", "50", "-h", "50"), (50, 50)), (("-a", "-w", "50", "-h", "50"), (50, 25)),
                              (("-i", "r"), (3, 4)), (("-i", "t"), (21, 12))):
            with self.subTest(options):
                self.assertEqual(decode(draw(drawing, *options)[1])[:2], size)
        self.assertEqual(decode(draw(svg("", "width='1in' height='1mm'"), "-d", "254")[1])[:2], (254, 10))
        self.assertEqual(decode(draw(drawing, "-b", "#f00")[1])[2][9][19], "ff0000ff")

    def test_formats(self):
        drawing = svg("<title>T</title><a xlink:href='http://x/'><rect width='9' height='9' opacity='.5'/></a>"
                      "<mask id='m'><rect width='9' height='9' fill='#888'/></mask><circle r='9' mask='url(#m)'/>")
        for name, start in (("pdf", b"%PDF"), ("ps", b"%!PS"), ("svg", b"<?xml"), ("png", b"\x89PNG")):
            with self.subTest(name):
                status, picture, messages = draw(drawing, "-f", name)
                self.assertEqual((status, picture[:len(start)], messages), (0, start, ""))
        self.assertIn(b"http://x/", draw(drawing, "-f", "pdf")[1])
        self.assertNotIn(b"http://x/", draw(drawing.replace("<a", "<g opacity='.5'><rect width='4' height='4'/><a").replace(
            "</a>", "</a></g>"), "-f", "pdf")[1])

    def test_what_is_not_drawn_is_said_once(self):
        outside = "<image width='9' height='9' xlink:href='x.png'/>"
        broken = f"<image width='9' height='9' xlink:href='{data('image/png', b'no')}'/>"
        effects = "<filter/><foreignObject/><rect width='9' height='9'><animate/><set/></rect>"
        inner = f"<image width='9' height='9' xlink:href='{data('image/svg+xml', svg(effects).encode())}'/>"
        status, _, messages = draw(svg(2 * (outside + broken + effects + inner)))
        self.assertEqual((status, messages), (0, "".join(f"standard input: warning: {text}\n" for text in (
            "an embedded image is no whole PNG, JPEG or SVG of a possible size", "animations are not drawn",
            "filters are not drawn", "foreignObject is not drawn", "images outside of the drawing are not opened"))))

    def test_files(self):
        with tempfile.TemporaryDirectory() as folder:
            for name in ("in", "other"):
                with open(os.path.join(folder, name + ".svg"), "w", encoding="utf-8") as file:
                    file.write(svg(""))
            with open(os.path.join(folder, "bad.svg"), "w", encoding="utf-8") as file:
                file.write("<svg")
            os.symlink("/dev/full", os.path.join(folder, "full.png"))
            for arguments, status, message in WRONG:
                with self.subTest(arguments):
                    found = run(*arguments, cwd=folder)
                    self.assertEqual(found[:2], (status, ""))
                    self.assertIn(message, found[2])
                    self.assertFalse(os.path.exists(os.path.join(folder, "y.png")))
                    self.assertTrue(os.path.islink(os.path.join(folder, "full.png")))
            os.mkdir(os.path.join(folder, "out"))
            self.assertEqual(run("--jobs", "2", "in.svg", "other.svg", "out", cwd=folder), (0, "", ""))
            self.assertEqual(sorted(os.listdir(os.path.join(folder, "out"))), ["in.png", "other.png"])
            for arguments in (("in.svg", "in.svg"), ("in.svg", "./in.svg", "out")):
                self.assertEqual(run(*arguments, cwd=folder)[0], 2)

    def test_options_are_those_of_completions_and_manual(self):
        tool.check_options(self)


if __name__ == "__main__":
    main(name="svgdraw")
