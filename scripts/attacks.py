#!/usr/bin/env python3
"""Reads attacks of full size with build/svgtree, draws others with build/svgdraw, and prints the processor time
and memory that each took.

Called by ./dev test --hostile. Every attack must end by itself, with a tree, a picture or an error, within SECONDS
(or SHEET_SECONDS, DRAW_SECONDS) and the default budgets.
"""
import base64
import gzip
import multiprocessing
import os
import struct
import subprocess
import sys
import tempfile
import zlib

CHECK = ["build/svgtree", "--check"]
DRAW, DRAW_PDF, DRAW_PS = (["build/svgdraw", "-f", name] for name in ("png", "pdf", "ps"))
SECONDS = 120
SHEET_SECONDS = 3  # of a drawing of 1 MB whose style sheet is the attack: ORT_LIMIT_RULE_STEPS
DRAW_SECONDS = 10
MILLION = 1000000
SVG = "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink'>"


def svg(*parts):
    return "".join((SVG, *parts, "</svg>")).encode()


def style(text):
    return svg("<style>", text, "</style><rect class='a' id='a'/>")


def million(template):
    """The template a million times, with its number for %d."""
    if "%d" not in template:
        return template * MILLION
    return "".join([template.replace("%d", str(i)) for i in range(MILLION)])


def gzip_bomb():
    """Half a megabyte of members that inflate to 2 GB."""
    member = gzip.compress(b"<g/>" * (MILLION * 16), 9)
    return gzip.compress(SVG.encode()) + member * 32


def laughs():
    entities = "".join(f"<!ENTITY a{i} '{f'&a{i - 1};' * 10}'>" for i in range(1, 12))
    return f"<!DOCTYPE svg [<!ENTITY a0 'lol'>{entities}]>{SVG}&a11;</svg>".encode()


def doctype(declarations, *parts):
    return f"<!DOCTYPE svg [{declarations}]>".encode() + svg(*parts)


def nested(use):
    """10^5 entities, of which each refers to the one before."""
    return doctype("<!ENTITY a0 ''>" + "".join(
        f"<!ENTITY a{i} '&a{i - 1};'>" for i in range(1, MILLION // 10)), use.replace("&;", "&a99999;"))


def quadratic():
    return f"<!DOCTYPE svg [<!ENTITY a '{'a' * MILLION}'>]>{SVG}{'&a;' * MILLION}</svg>".encode()


def sheet(selectors, elements):
    """A rule for the selectors, of which each has its number for %d, and elements."""
    return svg("<style>", selectors, "{fill:red}</style>", elements)


def numbered(template, count):
    return ",".join([template.replace("%d", str(i)) for i in range(count)])


# About 1 MB each, half of it selectors that meet all of the elements in the other half.
SHEET_ATTACKS = {
    "sheet: child chain over nested elements": lambda: sheet(
        "g&gt;" * 80000 + "g", "<g>" * 80000 + "</g>" * 80000),
    "sheet: descendant chain over nested elements": lambda: sheet(
        "g " * 100000 + "g", "<g>" * 100000 + "</g>" * 100000),
    "sheet: sibling chain": lambda: sheet("g~" * 120000 + "g", "<g/>" * 120000),
    "sheet: adjacent chain": lambda: sheet("g+" * 120000 + "g", "<g/>" * 120000),
    "sheet: selectors that wake": lambda: sheet(numbered("g [x^='%d']", 40000), "<g/>" * 100000),
    "sheet: selectors that wake and are tried": lambda: sheet(
        numbered("g rect:not(.a%d)", 25000), "<g/><rect/>" * 50000),
    "sheet: selectors tried in vain": lambda: sheet(numbered(":not(.a%d) g.b", 30000), "<g/>" * 100000),
    "sheet: selectors that match": lambda: sheet(numbered(":not(.a%d) g", 30000), "<g/>" * 100000),
    "sheet: children of all": lambda: sheet(numbered(":not(.a%d)&gt;.x%d", 30000), "<g/>" * 100000),
    "sheet: rules that match": lambda: sheet("g{fill:red}" * 40000 + "g", "<g/>" * 100000),
    "sheet: rules out of order": lambda: sheet(
        "".join(f":not(#a{i}){':not(.b)' if i % 2 else ''}{{fill:red}}" for i in range(17000)) + "g",
        "<g/>" * 100000),
    "sheet: words of a list": lambda: sheet(
        numbered("[class~=a%d]", 30000), f"<g class='{'a ' * 200}'/>" * 1000),
    "sheet: parts of a long value": lambda: sheet(
        numbered("[d*='ababababaa%d']", 20000), f"<g d='{'ab' * 50000}'/>" * 5),
    "sheet: equal beginnings": lambda: doctype(
        f"<!ATTLIST g x CDATA '{'v' * 100}'>", "<style>", numbered(f"[x^='{'v' * 95}%d']", 5000),
        "{fill:red}</style>", "<g/>" * 75000),
}

ATTACKS = {
    "gzip bomb": gzip_bomb,
    "billion laughs": laughs,
    "quadratic entities": quadratic,
    "entities 10^5 deep": lambda: nested("&;"),
    "entities 10^5 deep, attribute": lambda: nested("<g a='&;'/>"),
    "10^6 default attributes of 100 KB": lambda: doctype(
        f"<!ATTLIST g style CDATA '{'x:y;' * 25000}'>", "<g/>" * MILLION),
    "default namespaces by entities": lambda: doctype(
        "<!ATTLIST g " + "".join(f"xmlns:a{i} CDATA '{'u' * 900}' " for i in range(100))
        + f"><!ENTITY e '{'<g/>' * 200}'>", "&e;" * 2000),
    "10^6 attribute declarations": lambda: doctype(
        f"<!ATTLIST g {million(' a%d CDATA #IMPLIED')}>", "<g/>" * MILLION),
    "10^6 elements, 9999 declarations": lambda: doctype(
        f"<!ATTLIST g {' a CDATA #IMPLIED' * 9999}>", "<g/>" * MILLION),
    "10^6 uses of a namespace of 1 MB": lambda: svg(
        f"<x xmlns:a='{'a' * MILLION}'", million(" a:b%d=''"), "/>"),
    "10^6 uses of a namespace of 1000 bytes": lambda: svg(
        f"<x xmlns:a='{'a' * 1000}'>", "<g a:b=''/>" * MILLION, "</x>"),
    "10^6 captured prefixes of 1000 bytes": lambda: svg(
        f"<metadata><a:b xmlns:a='a' xmlns:{'b' * 1000}='a'>", "<a:b/>" * MILLION, "</a:b></metadata>"),
    "depth 10^6": lambda: svg("<g>" * MILLION, "</g>" * MILLION),
    "depth 10^6, unknown elements": lambda: svg("<x>" * MILLION, "</x>" * MILLION),
    "10^7 elements": lambda: svg("<g/>" * (10 * MILLION)),
    "10^6 attributes": lambda: svg("<rect", million(" a%d='1'"), "/>"),
    "10^6 ids": lambda: svg(million("<g id='i%d'/>")),
    "10^6 links that wait": lambda: svg(million("<use xlink:href='#i%d'/>"), million("<g id='i%d'/>")),
    "10^6 links to nothing": lambda: svg("<use xlink:href='#a'/>" * MILLION),
    "10^6 namespaces": lambda: svg("<g", million(" xmlns:a%d='urn:x'"), "/>"),
    "10^6 rules": lambda: style(million(".a%d{fill:red}")),
    "10^6 rules that match": lambda: style(".a{fill:red}" * MILLION),
    "10^6 selectors": lambda: style(million("g .a%d,") + "a{fill:red}"),
    "10^6 declarations": lambda: style(".a{" + "fill:red;" * MILLION + "}"),
    "10^6 compounds in a selector": lambda: style("g " * MILLION + "a{fill:red}"),
    "10^6 open brackets": lambda: style("a{fill:" + "(" * MILLION),
    "10^6 elements under 1000 sibling rules": lambda: svg(
        "<style>", "".join(f"g~rect+.a{i}~g,g .a{i}+g{{fill:red}}" for i in range(1000)), "</style>",
        "<g class='a1 a2 a3'/>" * MILLION),
    "10^5 elements under 20,000 rules": lambda: svg(
        "<style>", "".join(f"g:not(.a{i}){{fill:red}}" for i in range(20000)), "</style>",
        "<g/>" * (MILLION // 10)),
    "10^6 classes under 20,000 rules": lambda: svg(
        "<style>", "".join(f"[class~=a{i}]{{fill:red}}" for i in range(20000)), "</style>",
        "<g class='", "a " * MILLION, "'/>"),
    "10^6 classes": lambda: svg("<style>.a1{fill:red}</style><g class='", million("a%d "), "'/>"),
    "10^6 imports": lambda: style(million("@import 'a%d';")),
    "10^6 fonts": lambda: svg("<font><font-face font-family='a'/></font>" * MILLION),
    "10^6 embedded files": lambda: svg(million("<image xlink:href='data:image/png,%d'/>")),
    "10^6 pieces of text": lambda: svg("<text>", "a<![CDATA[b]]>" * MILLION, "</text>"),
    "100 MB: unknown attribute": lambda: svg("<rect a='", "x" * (100 * MILLION), "'/>"),
    "100 MB: bad number": lambda: svg("<rect width='", "1" * (100 * MILLION), "x'/>"),
    "100 MB: path": lambda: svg("<path d='M0 0", "L1 1" * (25 * MILLION), "'/>"),
    "100 MB: points": lambda: svg("<polygon points='", "1,2 " * (25 * MILLION), "'/>"),
    "100 MB: transforms": lambda: svg("<g transform='", "scale(2) " * (11 * MILLION), "'/>"),
    "100 MB: style attribute": lambda: svg("<g style='", "fill:red;" * (11 * MILLION), "'/>"),
    "100 MB: font families": lambda: svg("<g font-family='", "a, " * (33 * MILLION), "a'/>"),
    "100 MB: data": lambda: svg("<image xlink:href='data:image/png;base64,", "A" * (100 * MILLION), "'/>"),
    "100 MB: comment": lambda: svg("<!--", "x" * (100 * MILLION), "-->"),
    "100 MB: text": lambda: svg("<text>", "x" * (100 * MILLION), "</text>"),
    "100 MB: title": lambda: svg("<title>", "<a>x" * (25 * MILLION)),
    "100 MB: title in small pieces": lambda:
        svg("<title>", "<b>x</b>" * (12 * MILLION), "</title>"),
    "100 MB: processing instruction": lambda:
        b"<?xml-stylesheet " + b"href='a' " * (11 * MILLION) + b"?>" + svg(),
}

WHOLE = "width='100%' height='100%'"


def nest(start, end, number, inner=""):
    return start * number + inner + end * number


def chain(template, number):
    """Definitions of which each refers to the one before: %d is its number, %p that before."""
    return "".join(template.replace("%d", str(i)).replace("%p", str(i - 1)) for i in range(1, number))


def lines(number, height):
    """Of path data: they go up and down, and most cross each other."""
    return "".join(f"L{i * 7919 % 8000} {i % 2 * height}" for i in range(number))


def large(*parts, side=8000):
    return svg(*parts).replace(b"<svg ", f"<svg width='{side}' height='{side}' ".encode(), 1)


def data(mime, content):
    return f"<image {WHOLE} xlink:href='data:{mime};base64,{base64.b64encode(content).decode()}'/>"


def png(width, height, *chunks):
    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))
    packer = zlib.compressobj(9)
    row = bytes(width + 1)
    packed = b"".join([packer.compress(row) for _ in range(height)]) + packer.flush()
    head = struct.pack(">IIBBBBB", width, height, 8, 0, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + b"".join(chunk(*each) for each in (
        (b"IHDR", head), *chunks, (b"IDAT", packed), (b"IEND", b"")))


def text_bomb():
    """600 texts in a PNG, of which each inflates to 7 MB."""
    return data("image/png", png(1, 1, *[(b"zTXt", b"a\0\0" + zlib.compress(b"x" * (7 * MILLION), 9))] * 600))


def jpeg_scans():
    """A progressive JPEG of 16000 x 8000 pixels: many scans of a few bytes each."""
    head = (b"\xff\xd8\xff\xdb\0\x43\0" + b"\1" * 64 + b"\xff\xc2\0\x0b\x08" + struct.pack(">HH", 8000, 16000) +
            b"\1\1\x11\0" + b"\xff\xc4\0\x14\0\1" + bytes(15) + b"\0" + b"\xff\xc4\0\x14\x10\1" + bytes(15) + b"\xe0")
    scans = b"\xff\xda\0\x08\1\1\0\0\0\1" + bytes(8)
    return data("image/jpeg", head + scans + (b"\xff\xda\0\x08\1\1\0\1\x3f\1" + bytes(64)) * 2000 + b"\xff\xd9")


def matryoshka(depth):
    inner = svg("<rect width='9' height='9'/>")
    for _ in range(depth):
        inner = svg(data("image/svg+xml", inner) * 3)
    return inner


DRAW_ATTACKS = {
    "draw: patterns in patterns": lambda: large(chain(
        "<pattern id='p%d' width='.1' height='.1' viewBox='0 0 9 9'>"
        "<rect width='9' height='9' fill='url(#p%p)'/></pattern>", 60), f"<rect {WHOLE} fill='url(#p59)'/>"),
    "draw: patterns, each twice": lambda: svg(chain(
        "<pattern id='p%d' width='.5' height='.5'>" + "<rect width='99' height='99' fill='url(#p%p)'/>" * 2 +
        "</pattern>", 40), f"<rect {WHOLE} fill='url(#p39)'/>"),
    "draw: tiny tiles": lambda: large(
        "<pattern id='p' width='.001' height='.001' patternUnits='userSpaceOnUse'><rect width='1' height='1'/></pattern>",
        f"<rect {WHOLE} fill='url(#p)'/>"),
    "draw: masks in masks": lambda: large(chain(
        f"<mask id='m%d'><rect {WHOLE} fill='#fff' mask='url(#m%p)'/></mask>", 60), f"<rect {WHOLE} mask='url(#m59)'/>"),
    "draw: clips of clips": lambda: large(chain(
        f"<clipPath id='c%d' clip-path='url(#c%p)'><circle r='4000'/><rect {WHOLE}/></clipPath>", 60),
        f"<rect {WHOLE} clip-path='url(#c59)'/>"),
    "draw: a clip of 10^6 shapes": lambda: svg(
        "<clipPath id='c'>", "<rect width='9' height='9'/>" * MILLION, "</clipPath>", f"<rect {WHOLE} clip-path='url(#c)'/>"),
    "draw: 10^5 uses of a clip of 10^4 shapes": lambda: svg(
        "<clipPath id='c'>", "<rect width='9' height='9'/>" * 10000, "</clipPath>",
        f"<rect {WHOLE} clip-path='url(#c)'/>" * (MILLION // 10)),
    "draw: 10^5 layers within each other": lambda: large(nest("<g opacity='.9'>", "</g>", MILLION // 10, f"<rect {WHOLE}/>")),
    "draw: 10^5 layers within each other, PDF": lambda: svg(
        nest("<g opacity='.9'>", "</g>", MILLION // 10, f"<rect {WHOLE}/>")),
    "draw: 10^5 layers one after another": lambda: large(
        f"<g opacity='.9'><rect {WHOLE}/><rect {WHOLE}/></g>" * (MILLION // 10)),
    "draw: a picture of 32767 x 32767": lambda: large(f"<rect {WHOLE}/>", side=32767),
    "draw: tiny dashes on a long path": lambda: large(
        "<path d='M0 5", "H8000H0" * 10000, "' stroke='red' stroke-dasharray='.001'/>"),
    "draw: 10^5 fills, one over the other": lambda: large(f"<rect {WHOLE} fill-opacity='.5'/>" * (MILLION // 10), side=11000),
    "draw: 10^5 fills, one over the other, PostScript": lambda: large(
        f"<rect {WHOLE} fill-opacity='.5'/>" * (MILLION // 10), side=11000),
    "draw: 10^5 radial gradients": lambda: large(
        "<radialGradient id='g'><stop/><stop offset='1' stop-color='red'/></radialGradient>",
        f"<rect {WHOLE} fill='url(#g)'/>" * (MILLION // 10)),
    "draw: 10^6 uses of a long path": lambda: svg(
        "<path id='p' d='M0 0", "L1 1" * 10000, "'/>", "<use xlink:href='#p'/>" * MILLION),
    "draw: 10^6 uses of a long path, PDF": lambda: svg(
        "<path id='p' d='M0 0", "L1 1" * 10000, "'/>", "<use xlink:href='#p'/>" * MILLION),
    "draw: a path of 10^6 long lines": lambda: large("<path d='M0 0", million("L%d 9L0 8000"), "'/>"),
    "draw: a path of 10^6 lines in a row of pixels": lambda: large("<path d='M0 0", lines(MILLION, 1), "'/>"),
    "draw: a stroke of 10^5 lines in a row of pixels": lambda: large(
        "<path fill='none' stroke='red' stroke-width='.1' d='M0 0", lines(MILLION // 10, 1), "'/>"),
    "draw: a wide stroke of 10^6 joins": lambda: large(
        "<path fill='none' stroke='red' stroke-width='5000' stroke-linejoin='round' d='M0 0", lines(MILLION, 99), "'/>"),
    "draw: a wide stroke of 10^6 joins, PDF": lambda: large(
        "<path fill='none' stroke='red' stroke-width='5000' stroke-linejoin='round' d='M0 0", lines(MILLION, 99), "'/>"),
    "draw: 10^4 lines in a clip path": lambda: large(
        "<clipPath id='c'><circle r='9999'/></clipPath><g clip-path='url(#c)'><path stroke='red' d='M0 0",
        lines(MILLION // 100, 8000), "'/></g>"),
    "draw: a clip path of 10^4 lines": lambda: large(
        "<clipPath id='c'><path d='M0 0", lines(MILLION // 100, 8000), "'/></clipPath><g clip-path='url(#c)'>",
        "<circle r='9999'/>" * 1000, "</g>"),
    "draw: 10^6 letters": lambda: svg("<text y='9'>", "a " * (MILLION // 2), "</text>"),
    "draw: 10^5 letters, each at its place": lambda: svg("<text y='9' x='", "1 " * (MILLION // 10), "'>", "a" * (MILLION // 10), "</text>"),
    "draw: letters of 10^6 pixels": lambda: large("<text y='4000' font-size='1000000'>", "abcdefgh" * 1000, "</text>"),
    "draw: a PNG of 30000 x 30000": lambda: svg(data("image/png", png(30000, 30000))),
    "draw: 1000 times a PNG of 8000 x 8000": lambda: svg(
        data("image/png", png(8000, 8000)).replace("<image", "<image id='i'"), "<use xlink:href='#i'/>" * 1000),
    "draw: a PNG with texts of 4 GB": lambda: svg(text_bomb()),
    "draw: a JPEG of 2000 scans": lambda: svg(jpeg_scans()),
    "draw: drawings in drawings": lambda: matryoshka(8),
    "draw: uses of uses": lambda: svg("<defs><g id='u0'><rect width='1' height='1'/></g>", chain(
        "<g id='u%d'>" + "<use xlink:href='#u%p'/>" * 10 + "</g>", 12), "</defs><use xlink:href='#u11'/>"),
}


def run(name, make, command, limit):
    """Prints one row; true when the attack ended as it must, within limit seconds."""
    with tempfile.NamedTemporaryFile() as file:
        writer = multiprocessing.Process(target=lambda: (file.write(make()), file.flush()))
        writer.start()  # apart: a process begins with the memory of the one that made it
        writer.join()
        size = os.path.getsize(file.name)
        with tempfile.TemporaryFile() as messages:
            output = ["/dev/null"] if command is not CHECK else []
            process = subprocess.Popen(["timeout", str(SECONDS), *command, file.name, *output],
                                       stdout=messages, stderr=messages)
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
            seconds = usage.ru_utime + usage.ru_stime
            messages.seek(0)
            lines = messages.read(1 << 20).decode("utf-8", "replace").splitlines()
    last = lines[0 if command is CHECK else -1].split(": ", 1)[-1] if lines else "read"
    ended = process.returncode in (0, 1) and seconds <= limit
    print(f"{name:40} {size / 1e6:7.1f} {seconds:8.2f} {usage.ru_maxrss / 1024:8.0f}  "
          f"{last[:60] if ended else f'FAILED: exit status {process.returncode}, {limit} s are allowed'}", flush=True)
    return ended


def main():
    wanted = sys.argv[1:]
    print(f"{'attack':40} {'MB':>7} {'seconds':>8} {'peak MB':>8}  ended with")
    rows = [(name, make, CHECK, SECONDS) for name, make in ATTACKS.items()]
    rows += [(name, make, CHECK, SHEET_SECONDS) for name, make in SHEET_ATTACKS.items()]
    others = {"PDF": DRAW_PDF, "PostScript": DRAW_PS}
    rows += [(name, make, others.get(name.rsplit(", ")[-1], DRAW), DRAW_SECONDS) for name, make in DRAW_ATTACKS.items()]
    results = [run(name, *row) for name, *row in rows
               if not wanted or any(word in name for word in wanted)]
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
