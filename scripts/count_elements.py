#!/usr/bin/env python3
"""Counts the elements that a reader of SVG 1.1 drawings builds, without using the reader.

An element is built when it lies in the SVG namespace (or in none), has one of the supported names
and is not inside an element that is skipped. A drawing whose prefixes are not declared is read a
second time without namespaces, as the reader does it.

    scripts/count_elements.py FILE...      prints COUNT FILE, or the error instead of the count
"""
import gzip
import sys
from xml.parsers import expat

SUPPORTED = frozenset("""
    a circle clipPath color-profile defs desc ellipse font font-face font-face-src font-face-uri g
    glyph hkern image line linearGradient marker mask metadata missing-glyph path pattern polygon
    polyline radialGradient rect stop svg switch symbol text textPath title tref tspan use view
    vkern""".split())
SVG = "http://www.w3.org/2000/svg"
SEPARATOR = "*"
WRONG_ENCODING = {19}
WRONG_NAMESPACE = {27, 28, 38, 39, 40}
ENCODINGS = (None, "UTF-8", "ISO-8859-1", "US-ASCII", "UTF-16")


class Unreadable(Exception):
    """The file is no well-formed XML; the text says why."""


def count_elements(path):
    """Number of elements that a reader builds from the drawing."""
    try:
        with open(path, "rb") as file:
            data = file.read()
        if data[:2] == b"\x1f\x8b":
            data = gzip.decompress(data)
    except (OSError, EOFError) as error:
        raise Unreadable(str(error)) from error
    encoding, separator = 0, SEPARATOR
    while True:
        try:
            return count(data, ENCODINGS[encoding], separator)
        except expat.ExpatError as error:
            if error.code in WRONG_ENCODING and encoding + 1 < len(ENCODINGS):
                encoding += 1
            elif error.code in WRONG_NAMESPACE and separator:
                separator = None
            else:
                raise Unreadable(str(error)) from error


def count(data, encoding, separator):
    built = depth = skipped_from = 0

    def start(name, _attributes):
        nonlocal built, depth, skipped_from
        depth += 1
        if skipped_from:
            return
        namespace, _, local = name.rpartition(separator) if separator else ("", "", name)
        if namespace in ("", SVG) and local in SUPPORTED:
            built += 1
        else:
            skipped_from = depth

    def end(_name):
        nonlocal depth, skipped_from
        if skipped_from == depth:
            skipped_from = 0
        depth -= 1

    parser = expat.ParserCreate(encoding, separator) if separator else expat.ParserCreate(encoding)
    parser.StartElementHandler = start
    parser.EndElementHandler = end
    parser.Parse(data, True)
    return built


if __name__ == "__main__":
    for name in sys.argv[1:]:
        try:
            print(count_elements(name), name)
        except Unreadable as error:
            print(error, name)
