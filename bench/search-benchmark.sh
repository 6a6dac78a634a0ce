#!/bin/bash
# Builds the search benchmark for Windows and runs it under Wine: generates a
# subtree of 10,000 keys and 50,000 values under HKCU, imports it with
# "reg import", times a search for a text that matches nothing beside
# "reg query /s" of the same subtree, then deletes the subtree again.
#   bench/search-benchmark.sh [BUILD-DIR]   (default: build/windows)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
. "$root/bench/lib/setup.sh"
quenda_bench_setup search-benchmark 'Software\QuendaBench' "${1:-}"
quenda_bench_reg_import
wine "$bench_build/bin/search-benchmark.exe" "$bench_key"
