#!/usr/bin/env bash
# Installs into a fresh prefix, moves it, compiles each header alone and builds and runs the examples
# against what is there.
# usage: examples.sh BUILD SOURCE
set -euo pipefail
build=$1 source=$2
work=$build/install_test prefix=$build/install_test/moved
rm -rf "$work"

quiet() { "$@" >"$build/install_test.log" 2>&1 || { cat "$build/install_test.log"; exit 1; }; }

# run NAME COMMAND...: the example reads every sample, and says why it cannot read a folder.
run() {
  local name=$1 status=0
  shift
  (cd "$source/samples" && "$@" . boat.svg shapes.svg gradients.svg compressed.svgz) \
    >"$work/$name" 2>&1 || status=$?
  ((status == 1)) || { echo "$name: exit status $status"; exit 1; }
  diff -u "$source/tests/install/shapes.expected" "$work/$name"
}

quiet cmake --install "$build" --prefix "$work/first"
mv "$work/first" "$prefix"
for tool in svgtree svgdraw; do
  [[ -x $build/$tool ]] || continue
  for file in bin/$tool share/man/man1/$tool.1 share/bash-completion/completions/$tool \
    share/zsh/site-functions/_$tool; do
    [[ -s $prefix/$file ]] || { echo "$file is not installed"; exit 1; }
  done
done
for file in share/svgreader/json.schema.json share/doc/svgreader/LICENSE; do
  [[ -s $prefix/$file ]] || { echo "$file is not installed"; exit 1; }
done

# The headers are those of a C library.
for header in $(cd "$prefix/include" && find svgreader -name '*.h'); do
  for compiler in "${CC:-cc} -std=c11 -x c" "${CXX:-c++} -std=c++17 -x c++"; do
    # shellcheck disable=SC2086
    $compiler -Wall -Wextra -pedantic -Werror -fsyntax-only -I"$prefix/include" \
      - <<<"#include <$header>"$'\n'"typedef int unit;"
  done
done

quiet cmake -S "$source/examples" -B "$work/build" -DCMAKE_PREFIX_PATH="$prefix"
quiet cmake --build "$work/build"
run c "$work/build/shapes_c"
run cpp "$work/build/shapes_cpp"
diff -u "$source/tests/install/plot.expected" <("$work/build/plot" "$source/samples/symbols.svg")

PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name svgreader.pc)")
export PKG_CONFIG_PATH
libraries=$(pkg-config --variable=libdir svgreader)
# shellcheck disable=SC2046
quiet "${CC:-cc}" -std=c11 "$source/examples/shapes.c" $(pkg-config --cflags --libs svgreader) \
  -o "$work/shapes"
LD_LIBRARY_PATH=$libraries run pkg-config "$work/shapes"
