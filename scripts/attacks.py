#!/usr/bin/env python3
"""Reads attacks of full size with build/svgtree and prints the processor time and memory that each took.

Called by ./dev test --hostile. Every attack must end by itself, with a tree or an error, within SECONDS (or
SHEET_SECONDS) and the default budgets.
"""
import gzip
import multiprocessing
import os
import subprocess
import sys
import tempfile

TOOL = "build/svgtree"
SECONDS = 120
SHEET_SECONDS = 3  # of a drawing of 1 MB whose style sheet is the attack: ORT_LIMIT_RULE_STEPS
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


def run(name, make, limit):
    """Prints one row; true when the attack ended as it must, within limit seconds."""
    with tempfile.NamedTemporaryFile() as file:
        writer = multiprocessing.Process(target=lambda: (file.write(make()), file.flush()))
        writer.start()  # apart: a process begins with the memory of the one that made it
        writer.join()
        size = os.path.getsize(file.name)
        with tempfile.TemporaryFile() as messages:
            process = subprocess.Popen(["timeout", str(SECONDS), TOOL, "--check", file.name],
                                       stdout=messages, stderr=messages)
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
            seconds = usage.ru_utime + usage.ru_stime
            messages.seek(0)
            lines = messages.read(1 << 20).decode("utf-8", "replace").splitlines()
    last = lines[0].split(": ", 1)[-1] if lines else "read"
    ended = process.returncode in (0, 1) and seconds <= limit
    print(f"{name:40} {size / 1e6:7.1f} {seconds:8.2f} {usage.ru_maxrss / 1024:8.0f}  "
          f"{last[:60] if ended else f'FAILED: exit status {process.returncode}, {limit} s are allowed'}", flush=True)
    return ended


def main():
    wanted = sys.argv[1:]
    print(f"{'attack':40} {'MB':>7} {'seconds':>8} {'peak MB':>8}  ended with")
    rows = [(name, make, SECONDS) for name, make in ATTACKS.items()]
    rows += [(name, make, SHEET_SECONDS) for name, make in SHEET_ATTACKS.items()]
    results = [run(name, *row) for name, *row in rows
               if not wanted or any(word in name for word in wanted)]
    return 0 if all(results) else 1


if __name__ == "__main__":
    sys.exit(main())
