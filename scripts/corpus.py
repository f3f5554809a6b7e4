#!/usr/bin/env python3
"""Reads real drawings from Debian packages with svgtree and sums up what happened; see ./dev corpus.

svgtree is built with the sanitizers and reads a batch of drawings at a time; after a crash, a leak or
a hang the batch is read again one by one, so that the fault belongs to one drawing. The number of
elements in each tree is compared with count_elements.py.
"""
import argparse
import collections
import json
import multiprocessing
import os
import signal
import subprocess
import sys
import time

from count_elements import Unreadable, count_elements

PACKAGES = ("breeze-icon-theme", "librsvg2-tests", "openclipart-svg", "papirus-icon-theme")
SAMPLE_PER_PACKAGE = 850
LISTED_PER_PACKAGE = 200
BATCH = 40
SECONDS = 120
FOLDER = "build/corpus"
REFERENCES = "*-ref.png"  # pictures of what some drawings of librsvg2-tests show (pictures.py)
TOOL = "build/svgtree"
Result = collections.namedtuple("Result", "path fault error warnings elements expected unreadable")


def main():
    arguments = argparse.ArgumentParser(prog="./dev corpus", description=__doc__.splitlines()[0])
    arguments.add_argument("--all", action="store_true",
                           help=f"every drawing, not {SAMPLE_PER_PACKAGE} of each package")
    arguments.add_argument("--list", action="store_true",
                           help=f"print {LISTED_PER_PACKAGE} paths of each package, read nothing")
    options = arguments.parse_args()
    number = LISTED_PER_PACKAGE if options.list else None if options.all else SAMPLE_PER_PACKAGE
    paths = [path for package in PACKAGES for path in choose(drawings(package), number)]
    if options.list:
        signal.signal(signal.SIGPIPE, signal.SIG_DFL)  # as of other tools that write lists
        print("\n".join(paths))
        return 0
    started = time.monotonic()
    batches = [paths[i:i + BATCH] for i in range(0, len(paths), BATCH)]
    with multiprocessing.Pool() as pool:
        results = []
        for batch in pool.imap(read, batches):
            results += batch
            if sys.stderr.isatty():
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
        subprocess.run(["tar", "-x", "-C", partial, "--wildcards", "*.svg*",
                        *[REFERENCES] * (package == "librsvg2-tests")],
                       stdin=unpacked.stdout, check=True)
    os.remove(os.path.join(FOLDER, archive))
    os.rename(partial, folder)


def choose(paths, number):
    """All paths, or a sample of them that is spread evenly over them and the same every time."""
    if number is None or len(paths) <= number:
        return paths
    return [paths[i * len(paths) // number] for i in range(number)]


def read(paths):
    """One Result for each drawing."""
    fault = None
    try:
        run = subprocess.run([TOOL, "--json", *paths], capture_output=True, timeout=SECONDS)
        messages = run.stderr.decode("utf-8", "replace")
        if run.returncode not in (0, 1) or "Sanitizer" in messages or "runtime error" in messages:
            fault = f"exit status {run.returncode}\n{messages}"
    except subprocess.TimeoutExpired:
        fault = f"hangs for {SECONDS} seconds"
    if fault and len(paths) > 1:
        return [result for path in paths for result in read([path])]

    lines = [] if fault else run.stdout.splitlines()
    documents = {document["file"]: document for document in map(json.loads, lines)}
    return [compare(path, fault, documents.get(path)) for path in paths]


def compare(path, fault, document):
    if document is None:
        return Result(path, fault or "no answer", None, [], None, None, None)
    error = document["error"] and f"{document['error']['code']} {document['error']['message']}"
    if not fault and (document["root"] is None) == (error is None):
        fault = "neither a tree nor an error" if error is None else "both a tree and an error"
    expected = unreadable = None
    try:
        expected = count_elements(path)
    except Unreadable as problem:
        unreadable = str(problem)
    return Result(path, fault, error, [warning["code"] for warning in document["warnings"]],
                  count_in_tree(document["root"]), expected, unreadable)


def count_in_tree(root):
    count, waiting = 0, [root] if root else []
    while waiting:
        node = waiting.pop()
        count += "element" in node
        waiting += node.get("children", [])
    return count


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
