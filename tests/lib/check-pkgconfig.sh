#!/usr/bin/env bash
# A CGI program on a host builds against the installed library with pkg-config alone.
set -eu
build=$1 src=$2
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" >/dev/null
libdir=$(dirname "$(find "$prefix" -name 'webmgmt.pc' | head -n 1)")/..
export PKG_CONFIG_PATH=$libdir/pkgconfig
cc -std=c11 -Wall -Werror -o "$prefix/prog" "$src/tests/c/header_test.c" \
  $(pkg-config --cflags --libs webmgmt) -Wl,-rpath,"$libdir"
"$prefix/prog"
echo "built and ran with: $(pkg-config --cflags --libs webmgmt)"

# The static archive: the same program links it through webmgmt-static.pc, loads no
# libwebmgmt.so and runs.
cc -std=c11 -Wall -Werror -o "$prefix/prog-static" "$src/tests/c/header_test.c" \
  $(pkg-config --static --cflags --libs webmgmt-static) -Wl,-rpath,"$libdir"
if readelf -d "$prefix/prog-static" | grep -q 'NEEDED.*libwebmgmt'; then
  echo "the program built from the static archive still needs libwebmgmt.so"; exit 1
fi
"$prefix/prog-static"
echo "built and ran with: $(pkg-config --static --cflags --libs webmgmt-static)"
