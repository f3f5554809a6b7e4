#!/usr/bin/env bash
# The shared library exports the functions that the public headers declare, and nothing else; all that
# the static library defines carries a prefix of its rooms.
# usage: exports.sh SHARED STATIC HEADER...
set -euo pipefail
library=$1
archive=$2
shift 2

declared() { # without comments, on one line
  cat "$@" | "${CC:-cc}" -w -fpreprocessed -E -P -x c - | tr '\n' ' ' |
    grep -oE '\bORT_API [^(;]*\(' | grep -oE '\w+ ?\($' | tr -d ' (' | sort
}
# Each bears a version; the version itself is the only absolute symbol.
exported() { nm -D --defined-only "$library" | sed '/ A /d; s/.* //; s/@@SVGREADER_[0-9.]*$//' | sort; }

diff --label declared --label exported -u0 <(declared "$@") <(exported)

strangers=$(nm -gC --defined-only "$archive" | sed -nE 's/^[0-9a-f]{16} . //p' |
  grep -viE '^([^(]* )?(ort|css|svg|spp)_|^std::|^DW\.ref\.' || true)
[[ -z $strangers ]] || { echo "without a prefix: $strangers"; exit 1; }
