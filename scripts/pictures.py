#!/usr/bin/env python3
"""Compares pictures of real drawings; see ./dev pictures.

The same drawing is drawn twice and the pictures are compared. Without --draw, rsvg-convert draws the
drawing and what svgtree --simplify makes of it: they differ when the simplified drawing is not the
same drawing. With --draw, rsvg-convert and svgdraw draw it. With --references, svgdraw is compared
with the pictures that librsvg2-tests brings, of drawings with nothing that svgdraw says it does not
draw. With --time, the processor time of both is compared.
"""
import argparse
import collections
import multiprocessing
import os
import re
import resource
import statistics
import subprocess
import sys

import numpy
from PIL import Image, UnidentifiedImageError

from corpus import FOLDER, PACKAGES, choose, drawings

SAMPLE_PER_PACKAGE = 300
SIDE = 256  # pixels
SAME = 0.02  # root mean square over red, green, blue and alpha, each from 0 to 1
EXPLAINED_ABOVE = 0.1
WORST = 10
SECONDS = 60
PICTURES = "build/pictures"
TREE, DRAW = "build/svgtree", "build/svgdraw"
TIMED = {"breeze-icon-theme": (0, 1 << 20, 25), "papirus-icon-theme": (0, 1 << 20, 25),  # bytes, how many
         "openclipart-svg": (900_000, 1_200_000, 10)}
REPETITIONS = 7
NOT_DRAWN = re.compile(rb"[^:]* (is|are) not (drawn|opened)")
FIT = ["-w", str(SIDE), "-h", str(SIDE), "-a"]
Result = collections.namedtuple("Result", "path difference trouble")


def main():
    arguments = argparse.ArgumentParser(prog="./dev pictures", description=__doc__.splitlines()[0])
    arguments.add_argument("--draw", action="store_true", help="compare svgdraw with rsvg-convert")
    arguments.add_argument("--references", action="store_true",
                           help="compare svgdraw with the pictures of librsvg2-tests")
    arguments.add_argument("--time", action="store_true",
                           help="compare the time that svgdraw and rsvg-convert take, processes as a whole")
    arguments.add_argument("--number", type=int, default=SAMPLE_PER_PACKAGE,
                           help=f"drawings of each package (default {SAMPLE_PER_PACKAGE})")
    arguments.add_argument("--worst", type=int, default=WORST,
                           help=f"how many of the most different ones to name (default {WORST})")
    arguments.add_argument("FILE", nargs="*", help="these drawings only")
    options = arguments.parse_args()
    os.makedirs(PICTURES, exist_ok=True)
    if options.time:
        return compare_times(options.FILE)
    pair = draw_reference if options.references else draw_both if options.draw else draw_simplified
    groups = {"given": options.FILE} if options.FILE else {
        package: choose(drawings(package), options.number) for package in PACKAGES}
    if options.references:
        groups = {"librsvg2-tests": [path for path in drawings("librsvg2-tests")
                                     if os.path.exists(reference_of(path))]}
        if not any(groups.values()):
            sys.exit(f"pictures: no references; remove {FOLDER}/librsvg2-tests, so that it is unpacked again")
    results = []
    for group, paths in groups.items():
        with multiprocessing.Pool() as pool:
            found = pool.starmap(compare, [(pair, path) for path in paths], chunksize=4)
        drawn = [result for result in found if result.difference is not None]
        same = sum(result.difference < SAME for result in drawn)
        far = sum(result.difference > EXPLAINED_ABOVE for result in drawn)
        share = f"{100 * same / len(drawn):.1f} %" if drawn else "none"
        print(f"{group}: {share} of {len(drawn)} below {SAME}, {far} above {EXPLAINED_ABOVE}, "
              f"{len(found) - len(drawn)} not drawn by both", flush=True)
        results += found
    for trouble, count in collections.Counter(r.trouble for r in results if r.trouble).most_common(5):
        print(f"not drawn: {count} x {trouble}")
    drawn = [result for result in results if result.difference is not None]
    for result in sorted(drawn, key=lambda r: -r.difference)[:options.worst]:
        print(f"{result.difference:.4f} {result.path}")
    return 0 if drawn else 1


def compare_times(files):
    """Medians of interleaved runs, in milliseconds of processor time; of a group, the median of its drawings."""
    groups = {"given": files} if files else {
        package: choose([path for path in drawings(package) if least <= os.path.getsize(path) < most], number)
        for package, (least, most, number) in TIMED.items()}
    picture = os.path.join(PICTURES, "timed.png")
    for group, paths in groups.items():
        rows = []
        for path in paths:
            runs = [(milliseconds([DRAW, path, picture]),
                     milliseconds(["rsvg-convert", "--unlimited", "-o", picture, path]))
                    for _ in range(REPETITIONS)]
            rows.append([statistics.median(times) for times in zip(*runs)])
        own, other = (statistics.median(times) for times in zip(*rows))
        ratio = statistics.geometric_mean([mine / its for mine, its in rows])
        slower = sum(mine > its for mine, its in rows)
        print(f"{group}: {len(rows)} drawings, svgdraw {own:.1f} ms, rsvg-convert {other:.1f} ms, "
              f"{ratio:.2f} times as long, {slower} drawn more slowly", flush=True)
    return 0


def milliseconds(command):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    run(command)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return 1000 * (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime)


def compare(pair, path):
    try:
        first, second = pair(path, os.path.join(PICTURES, str(os.getpid())))
        return Result(path, difference(first, second), None)
    except (subprocess.SubprocessError, OSError, UnidentifiedImageError) as problem:
        message = getattr(problem, "stderr", None) or str(problem).encode()
        return Result(path, None, message.decode("utf-8", "replace").strip()[-100:])


def draw_simplified(path, scratch):
    simplified = scratch + ".svg"
    with open(simplified, "wb") as output:
        run([TREE, "--simplify", path], stdout=output)
    return convert(path, scratch + "-1.png"), convert(simplified, scratch + "-2.png")


def draw_both(path, scratch):
    run([DRAW, *FIT, path, scratch + "-2.png"])
    return convert(path, scratch + "-1.png"), scratch + "-2.png"


def draw_reference(path, scratch):
    reference = reference_of(path)
    with Image.open(reference) as picture:
        width, height = picture.size
    messages = run([DRAW, "-w", str(width), "-h", str(height), path, scratch + "-2.png"])
    left_out = NOT_DRAWN.search(messages)
    if left_out:
        raise OSError(left_out[0].decode())
    return reference, scratch + "-2.png"


def reference_of(path):
    return path.rsplit(".", 1)[0] + "-ref.png"


def convert(path, picture):
    run(["rsvg-convert", *FIT, "--unlimited", "-o", picture, path])
    return picture


def run(command, stdout=subprocess.DEVNULL):
    return subprocess.run(command, check=True, timeout=SECONDS, stdout=stdout, stderr=subprocess.PIPE).stderr


def difference(first, second):
    """Root mean square over the premultiplied channels."""
    with Image.open(first) as one, Image.open(second) as two:
        if one.size != two.size:  # a side rounded the other way
            two = two.resize(one.size)
        return float(numpy.sqrt(numpy.mean((channels(one) - channels(two)) ** 2)))


def channels(picture):
    values = numpy.asarray(picture.convert("RGBA"), dtype=numpy.float64) / 255
    values[..., :3] *= values[..., 3:]
    return values


if __name__ == "__main__":
    sys.exit(main())
