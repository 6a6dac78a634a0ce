#!/bin/bash
# Builds the search benchmark for Windows and runs it under Wine: generates a
# subtree of 10,000 keys and 50,000 values under HKCU, imports it with
# "reg import", times a search for a text that matches nothing beside
# "reg query /s" of the same subtree, then deletes the subtree again.
#   bench/search-benchmark.sh [BUILD-DIR]   (default: build/windows)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build/windows}
case $build in /*) ;; *) build=$root/$build ;; esac
key='Software\QuendaBench'

cmake --preset windows -B "$build" >/dev/null
cmake --build "$build" --target search-benchmark >/dev/null

. "$root/scripts/lib/wine-env.sh"
quenda_wine_env "$build/wineprefix"
work=$(mktemp -d)
cleanup() {
    wine reg delete "HKCU\\$key" /f >/dev/null 2>&1 || true
    wineserver -k 2>/dev/null || true
    wineserver -w 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

# 100 groups of 100 keys (the group key and 99 below it), five values of
# different types in each.
python3 - "$work/bench.reg" "$key" <<'PY'
import sys
path, key = sys.argv[1], sys.argv[2]

def hexbytes(data):
    return ",".join("%02x" % b for b in data)

lines = ["Windows Registry Editor Version 5.00", ""]
for group in range(100):
    for item in range(100):
        name = "HKEY_CURRENT_USER\\%s\\Group%02d" % (key, group)
        if item:
            name += "\\Item%02d" % item
        n = group * 100 + item
        lines += ["[%s]" % name,
                  '"Text"="value text %d for the benchmark"' % n,
                  '"Number"=dword:%08x' % n,
                  '"Blob"=hex:%s' % hexbytes(bytes((n + i) & 0xFF for i in range(24))),
                  '"List"=hex(7):%s' % hexbytes(("first %d\0second\0\0" % n).encode("utf-16-le")),
                  '"Path"=hex(2):%s' % hexbytes(("%%SystemRoot%%\\bench\\%d\0" % n).encode("utf-16-le")),
                  ""]
with open(path, "wb") as out:
    out.write(b"\xff\xfe" + "\r\n".join(lines).encode("utf-16-le"))
PY

wine reg delete "HKCU\\$key" /f >/dev/null 2>&1 || true
start=$(date +%s%3N)
wine reg import "$(winepath -w "$work/bench.reg")" >/dev/null 2>&1
echo "reg import of the generated subtree: $(($(date +%s%3N) - start)) ms"
wine "$build/bin/search-benchmark.exe" "$key"
