#!/bin/bash
# Builds the tree benchmark for Windows and runs it under Wine: it creates
# 5,000 subkeys under HKCU, times loading them into the registry tree and
# counts the registry calls per child, then deletes them again.
#   bench/tree-benchmark.sh [BUILD-DIR]   (default: build/windows)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build/windows}
case $build in /*) ;; *) build=$root/$build ;; esac
key='Software\QuendaTreeBench'

cmake --preset windows -B "$build" >/dev/null
cmake --build "$build" --target tree-benchmark >/dev/null
. "$root/scripts/lib/wine-env.sh"
. "$root/scripts/lib/xvfb.sh"
quenda_wine_env "$build/wineprefix"
cleanup() {
    wine reg delete "HKCU\\$key" /f >/dev/null 2>&1 || true
    wineserver -k 2>/dev/null || true
    wineserver -w 2>/dev/null || true
    quenda_stop_xvfb 2>/dev/null || true
}
trap cleanup EXIT
[ -n "${DISPLAY:-}" ] || quenda_start_xvfb
wine "$build/bin/tree-benchmark.exe" "$key"
