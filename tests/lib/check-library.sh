#!/usr/bin/env bash
# The shared library exports the functions and variables the public headers declare, and no
# others, and needs nothing at run time but the C library. $2 is the folder of the headers.
set -eu
lib=$1 headers=$2
fail=0
exported=$(nm -D --defined-only "$lib" | awk '$2 ~ /[TDBRVW]/ {print $3}' | sort -u)
declared=$(find "$headers" -name "*.h" -exec cat {} + | sed -n 's/^WEBMGMT_API \(.*\)/\1/p' |
  sed -E 's/\(.*//; s/[[:space:]]*\[.*//; s/;//; s/.*[ *]//' | sort -u)
extra=$(comm -23 <(echo "$exported") <(echo "$declared"))
missing=$(comm -13 <(echo "$exported") <(echo "$declared"))
[ -z "$extra" ] || { echo "exported but not declared:"; echo "$extra"; fail=1; }
[ -z "$missing" ] || { echo "declared but not exported:"; echo "$missing"; fail=1; }
needed=$(readelf -d "$lib" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
echo "NEEDED: $needed" | tr '\n' ' '; echo
for n in $needed; do
  case $n in
    libc.so.*|ld-linux*|libconfig_data_api.so*) ;;
    *) echo "unexpected run-time dependency: $n"; fail=1 ;;
  esac
done
# No global constructors: nothing of ours in .init_array (the library links without the C
# runtime's start files, so it has none at all; a sanitizer build keeps one entry).
if nm "$lib" 2>/dev/null | grep -q '_GLOBAL__sub_I'; then
  echo "global constructors:"; nm "$lib" | grep '_GLOBAL__sub_I'; fail=1
fi
init_hex=$(readelf -S -W "$lib" | awk '$2 == ".init_array" {print $6}')
init=$([ -z "$init_hex" ] || echo $((16#$init_hex)))
ptr=$(readelf -h "$lib" | grep -q ELF64 && echo 8 || echo 4)
if [ -n "$init" ] && [ "$init" -gt "$ptr" ]; then
  echo ".init_array holds $((init / ptr)) entries"; fail=1
fi
exit $fail
