#!/usr/bin/env python3
"""The rooms of the library and their arrows. Run in the root with a folder of object files, it finds the calls
between rooms (references to data included) and prints each that no arrow allows; includes are checked by
check_rules.py."""
import os
import re
import subprocess
import sys

# Each room stands below those that it uses, so that arrows cannot form a circle.
MAY_USE = {room: set(used.split()) for room, used in {
    "core":       "",
    "css":        "core",
    "svg/tables": "core",
    "svg/path":   "core",
    "svg/parser": "core css",
    "svg/names":  "core svg/parser svg/tables",
    "svg/values": "core css svg/names svg/parser svg/path svg/tables",
    "svg/style":  "core css svg/names svg/parser svg/values",
    "svg/tree":   "core css svg/names svg/parser svg/style svg/tables svg/values",
    "svg/xml":    "core css svg/names svg/parser svg/tree svg/values",
    "svg":        "core css svg/parser svg/tree svg/values svg/xml",
    "scene":      "core css svg svg/names svg/path svg/tables svg/tree svg/values svg/xml",
}.items()}
OUTSIDE = {"scene"}  # what includes public headers of other rooms only, as a host does
for place, room in enumerate(MAY_USE):
    assert MAY_USE[room] <= set(list(MAY_USE)[:place]), f"{room} uses what does not stand above it"


def main(folder):
    defined, used = {}, []
    for path in (os.path.join(path, name) for path, _, names in os.walk(folder) for name in names):
        source = os.path.relpath(path, folder).removesuffix(".o")
        if os.path.dirname(source) not in MAY_USE or not os.path.isfile(source):
            continue
        names = subprocess.run(["nm", "-C", path], check=True, capture_output=True, text=True).stdout
        for kind, name in re.findall(r"^[0-9a-f ]* ([TDRBU]) (.*)", names, re.M):
            if kind == "U":
                used.append((source, name))
            else:
                defined[name] = source
    if not defined:
        sys.exit(f"no object files in {folder}")
    arrows = {}
    for source, name in used:
        arrows.setdefault((os.path.dirname(source), os.path.dirname(defined.get(name, source))), []).append((source, name))
    breaches = [f"{source}: must not use {name.split('(')[0]}, which is in {defined[name]}"
                for (room, target), uses in arrows.items() if target not in MAY_USE[room] | {room}
                for source, name in uses]
    print("\n".join(sorted(breaches)), end="\n" if breaches else "")
    return 1 if breaches else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
