#!/usr/bin/env python3
"""Reads real drawings from Debian packages with svgtree and sums up what happened; see ./dev corpus.

Every drawing is read by a process of its own, built with the sanitizers: a crash, a leak or a hang
belongs to one file. The number of elements in each tree is compared with count_elements.py.
"""
import argparse
import collections
import multiprocessing
import os
import re
import subprocess
import sys
import time

from count_elements import SUPPORTED, Unreadable, count_elements

PACKAGES = ("breeze-icon-theme", "librsvg2-tests", "openclipart-svg", "papirus-icon-theme")
SAMPLE_PER_PACKAGE = 850
SECONDS_PER_FILE = 60
FOLDER = "build/corpus"
TOOL = "build/svgtree"

Result = collections.namedtuple("Result", "path fault error warnings elements expected unreadable")


def main():
    arguments = argparse.ArgumentParser(prog="./dev corpus", description=__doc__.splitlines()[0])
    arguments.add_argument("--all", action="store_true",
                           help=f"every drawing, not {SAMPLE_PER_PACKAGE} of each package")
    everything = arguments.parse_args().all
    paths = [path for package in PACKAGES for path in choose(drawings(package), everything)]
    started = time.monotonic()
    with multiprocessing.Pool() as pool:
        results = []
        for result in pool.imap_unordered(read, paths, chunksize=8):
            results.append(result)
            if sys.stderr.isatty() and len(results) % 100 == 0:
                print(f"\r{len(results)} of {len(paths)}", end=" ", file=sys.stderr, flush=True)
    return summary(results, time.monotonic() - started)


def drawings(package):
    """Sorted paths of the package's drawings (no links); downloads and unpacks it once."""
    folder = os.path.join(FOLDER, package)
    if not os.path.isdir(folder):
        unpack(package, folder)
    return sorted(os.path.join(root, name) for root, _, names in os.walk(folder) for name in names
                  if name.endswith((".svg", ".svgz")) and not os.path.islink(os.path.join(root, name)))


def unpack(package, folder):
    print(f"corpus: downloading {package}", file=sys.stderr)
    partial = folder + ".partial"
    os.makedirs(partial, exist_ok=True)
    subprocess.run(["apt-get", "download", "-qq", package], cwd=FOLDER, check=True,
                   stderr=subprocess.DEVNULL)
    archive, = (name for name in os.listdir(FOLDER) if name.startswith(package + "_"))
    with subprocess.Popen(["dpkg-deb", "--fsys-tarfile", os.path.join(FOLDER, archive)],
                          stdout=subprocess.PIPE) as unpacked:
        subprocess.run(["tar", "-x", "-C", partial, "--wildcards", "*.svg*"],
                       stdin=unpacked.stdout, check=True)
    os.remove(os.path.join(FOLDER, archive))
    os.rename(partial, folder)


def choose(paths, everything):
    """All paths, or a sample that is spread evenly over them and the same every time."""
    if everything or len(paths) <= SAMPLE_PER_PACKAGE:
        return paths
    return [paths[i * len(paths) // SAMPLE_PER_PACKAGE] for i in range(SAMPLE_PER_PACKAGE)]


def read(path):
    try:
        run = subprocess.run([TOOL, path], capture_output=True, timeout=SECONDS_PER_FILE)
    except subprocess.TimeoutExpired:
        return Result(path, f"hangs for {SECONDS_PER_FILE} seconds", None, [], None, None, None)
    messages = run.stderr.decode("utf-8", "replace")
    found = re.findall(r"^" + re.escape(path) + r": (warning|error) (\d+): (.*)$", messages, re.M)
    warnings = [int(code) for kind, code, _ in found if kind == "warning"]
    errors = [f"{code} {text}" for kind, code, text in found if kind == "error"]
    fault = None
    if run.returncode not in (0, 1) or "Sanitizer" in messages or "runtime error" in messages:
        fault = f"exit status {run.returncode}\n{messages}"
    elif (run.returncode == 1) != (len(errors) == 1):
        fault = f"exit status {run.returncode} with {len(errors)} errors"
    expected = unreadable = None
    try:
        expected = count_elements(path)
    except Unreadable as error:
        unreadable = str(error)
    return Result(path, fault, errors[0] if errors else None, warnings,
                  count_in_tree(run.stdout.decode("utf-8", "replace")), expected, unreadable)


def count_in_tree(text):
    """Number of elements in the tree that svgtree prints: one line each, beginning with its name."""
    return sum(line.split(None, 1)[0] in SUPPORTED for line in text.splitlines() if line.strip())


def summary(results, seconds):
    accepted = [r for r in results if not r.fault and not r.error]
    refused = [r for r in results if r.error]
    print(f"\r{len(results)} drawings in {seconds:.0f} s: {len(accepted)} read, "
          f"{len(refused)} refused")
    print_table("refused by error", [[r.error.split()[0]] for r in refused])
    print_table("warnings", [r.warnings for r in results])
    print(f"{sum(r.elements for r in accepted)} elements built, "
          f"{sum(r.expected or 0 for r in accepted)} by the second count")

    faults = [f"{r.path}: {r.fault}" for r in results if r.fault]
    faults += [f"{r.path}: {r.elements} elements, but {r.expected or r.unreadable}"
               for r in accepted if r.elements != r.expected]
    faults += [f"{r.path}: refused ({r.error}), but well-formed" for r in refused
               if r.error.startswith("1700 ") and r.unreadable is None
               and "amplification" not in r.error]
    with open(os.path.join(FOLDER, "report.txt"), "w", encoding="utf-8") as report:
        report.writelines(fault + "\n" for fault in faults)
        report.writelines(f"{r.path}: refused: {r.error}\n" for r in refused)
    for fault in faults[:20]:
        print(fault.splitlines()[0])
    print(f"{len(faults)} faults; faults and refused files are listed in {FOLDER}/report.txt")
    return 1 if faults else 0


def print_table(title, codes_of_files):
    """How often each code was met, and in how many files."""
    often = collections.Counter(code for codes in codes_of_files for code in codes)
    files = collections.Counter(code for codes in codes_of_files for code in set(codes))
    print(f"{title}:" + ("" if often else " none"))
    for code in sorted(often):
        print(f"  {code:>6}  {often[code]:>8} in {files[code]} files")


if __name__ == "__main__":
    sys.exit(main())
