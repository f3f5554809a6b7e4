#!/usr/bin/env bash
# All static checks, cheapest first; called in the root by ./dev lint.
set -euo pipefail

mapfile -t sources < <(find core css svg tools tests bench fuzz \
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
  for header in core/ort.h core/ort_limits.h css/css_context.h svg/svg.h svg/svg_names.h; do
    for compiler in "gcc -std=c11 -x c" "clang -std=c11 -x c" \
      "g++ -std=c++17 -x c++" "clang++ -std=c++17 -x c++"; do
      # shellcheck disable=SC2086
      printf '#include "%s"\ntypedef int unit;\n' "$header" |
        $compiler -Wall -Wextra -Wconversion -Wshadow -pedantic -Werror -fsyntax-only -I. - ||
        return 1
    done
  done
}

# A file is analyzed again when it, a header, the settings or the flags are newer than its stamp.
tidy() {
  local source stamp stale=()
  for source in "${sources[@]}"; do
    [[ $source == @(core|css|svg|tools)/*.cpp ]] || continue
    stamp=build/lint/$source.ok
    [[ -f $stamp && -z $(find "$source" .clang-tidy CMakeLists.txt core css svg tools \
      \( -path "$source" -o -name '*.h' -o -name .clang-tidy -o -name CMakeLists.txt \) \
      -newer "$stamp" -print -quit) ]] || stale+=("$source")
  done
  ((${#stale[@]})) || return 0
  printf '%s\n' "${stale[@]}" | xargs -P "$(nproc)" -I {} bash -c '
    mkdir -p "$(dirname build/lint/{})"
    clang-tidy -p build/release --quiet {} 2> >(grep -v " generated\.$" >&2) &&
      touch build/lint/{}.ok'
}

check "layers and text" scripts/check_rules.py
check format format
check "public headers" public_headers
check clang-tidy tidy
exit $failed
