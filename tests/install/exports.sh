#!/usr/bin/env bash
# The shared library exports the functions that the public headers declare, and nothing else.
# usage: exports.sh LIBRARY HEADER...
set -euo pipefail
library=$1
shift

declared() { # without comments, on one line
  cat "$@" | "${CC:-cc}" -w -fpreprocessed -E -P -x c - | tr '\n' ' ' |
    grep -oE '\bORT_API [^(;]*\(' | grep -oE '\w+ ?\($' | tr -d ' (' | sort
}
exported() { nm -D --defined-only "$library" | sed 's/.* //; s/@.*//' | sort; }

diff --label declared --label exported -u0 <(declared "$@") <(exported)
