#!/bin/bash
# Builds the export benchmark for Windows and runs it under Wine: generates a
# subtree of 10,000 keys and 50,000 values under HKCU, imports it with
# "reg import", times Quenda's export of it beside "reg export" of the same
# key, then deletes the subtree again.
#   bench/export-benchmark.sh [BUILD-DIR]   (default: build/windows)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
. "$root/bench/lib/setup.sh"
quenda_bench_setup export-benchmark 'Software\QuendaExportBench' "${1:-}"
quenda_bench_reg_import
cd "$bench_work"
wine "$bench_build/bin/export-benchmark.exe" "$bench_key"
