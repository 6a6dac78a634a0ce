#!/bin/bash
# Builds the hex edit benchmark for Windows and runs it under Wine: for 1 KiB
# and 1 MiB of data it prints the load with the first paint, one byte typed
# at offset 0 and a scroll to the end, and the paints each of them caused.
#   bench/hexedit-benchmark.sh [BUILD-DIR]   (default: build/windows)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build/windows}
case $build in /*) ;; *) build=$root/$build ;; esac

cmake --preset windows -B "$build" >/dev/null
cmake --build "$build" --target hexedit-benchmark >/dev/null
. "$root/scripts/lib/wine-env.sh"
. "$root/scripts/lib/xvfb.sh"
quenda_wine_env "$build/wineprefix"
cleanup() {
    wineserver -k 2>/dev/null || true
    wineserver -w 2>/dev/null || true
    quenda_stop_xvfb 2>/dev/null || true
}
trap cleanup EXIT
[ -n "${DISPLAY:-}" ] || quenda_start_xvfb
wine "$build/bin/hexedit-benchmark.exe"
