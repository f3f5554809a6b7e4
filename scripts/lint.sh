#!/usr/bin/env bash
# All static checks, cheapest first; called in the root by ./dev lint.
set -euo pipefail

mapfile -t sources < <(find core css svg scene tools tests bench fuzz examples \
  \( -name '*.cpp' -o -name '*.h' -o -name '*.c' \) 2>/dev/null | sort)
failed=0

# check NAME COMMAND...: runs one check; a failing one does not hide the others.
check() {
  local name=$1
  shift
  if "$@"; then echo "lint: $name: ok"; else echo "lint: $name: FAILED"; failed=1; fi
}

format() {
  local report
  report=$(clang-format --dry-run -Werror "${sources[@]}" 2>&1) && return
  sed -n 's/^\([^ :]*\):[0-9].*: error: .*/\1: run clang-format -i on it/p' <<<"$report" | sort -u
  return 1
}

public_headers() {
  local header compiler
  while read -r header; do
    for compiler in "gcc -std=c11 -x c" "clang -std=c11 -x c" \
      "g++ -std=c++17 -x c++" "clang++ -std=c++17 -x c++"; do
      # shellcheck disable=SC2086
      printf '#include <svgreader/%s>\ntypedef int unit;\n' "$header" |
        $compiler -Wall -Wextra -Wconversion -Wshadow -pedantic -Werror -fsyntax-only \
          -Ibuild/release/include - || return 1
    done
  done <cmake/public_headers.txt
}

# The C and C++ of the documentation compiles: whole files as they are, statements in a function that
# knows what a host has at hand.
snippets() {
  local folder=build/lint/snippets snippet
  local flags=(-Wall -Werror -Wno-unused -Ibuild/release/include -fsyntax-only)
  rm -rf "$folder"
  mkdir -p "$folder"
  awk -v folder="$folder" '
    /^```cp?p?$/ { out = sprintf("%s/%02d.%s", folder, ++count, substr($0, 4)); next }
    /^```/       { out = "" }
    out          { print >out }' README.md docs/*.md
  for snippet in "$folder"/*; do
    grep -q '^#include' "$snippet" || sed -i '
      1i #include <stdio.h>\n#include <svgreader/svg/svg.h>
      1i void snippet(ort_core *core, svg_parser *parser, svg_e_node *element, svg_a_node *value) {
      $a }' "$snippet"
    case $snippet in
      *.c) gcc -std=c11 "${flags[@]}" "$snippet" || return 1 ;;
      *) g++ -std=c++17 "${flags[@]}" "$snippet" || return 1 ;;
    esac
  done
}

calls() {
  mkdir -p build/lint
  ninja -C build/release svgreader_objects >build/lint/calls.log || { cat build/lint/calls.log; return 1; }
  scripts/rooms.py build/release/CMakeFiles/svgreader_objects.dir
}

# A file is analyzed again when it, a header, the settings or the flags are newer than its stamp.
tidy() {
  local source stamp stale=()
  for source in "${sources[@]}"; do
    [[ $source == @(core|css|svg|scene|tools)/*.cpp ]] || continue
    stamp=build/lint/$source.ok
    [[ -f $stamp && -z $(find "$source" .clang-tidy CMakeLists.txt core css svg scene tools \
      \( -path "$source" -o -name '*.h' -o -name .clang-tidy -o -name CMakeLists.txt \) \
      -newer "$stamp" -print -quit 2>/dev/null) ]] || stale+=("$source")
  done
  ((${#stale[@]})) || return 0
  printf '%s\n' "${stale[@]}" | xargs -P "$(nproc)" -I {} bash -c '
    mkdir -p "$(dirname build/lint/{})"
    clang-tidy -p build/release --quiet {} 2> >(grep -v " generated\.$" >&2) &&
      touch build/lint/{}.ok'
}

check "layers and text" scripts/check_rules.py
check "calls between rooms" calls
check format format
check "public headers" public_headers
check "reference of the public headers" ./dev docs
check "snippets of the documentation" snippets
check "recipes of docs/adding.md" scripts/check_adding.py
check clang-tidy tidy
exit $failed
