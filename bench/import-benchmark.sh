#!/bin/bash
# Builds the import benchmark for Windows and runs it under Wine: generates
# the 10,000-key file of the export benchmark, then times, in turns, Wine's
# "reg import" and Quenda's import of it into the emptied key.
#   bench/import-benchmark.sh [BUILD-DIR]   (default: build/windows)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
. "$root/bench/lib/setup.sh"
quenda_bench_setup import-benchmark 'Software\QuendaImportBench' "${1:-}"
wine "$bench_build/bin/import-benchmark.exe" "$(winepath -w "$bench_file")" "$bench_key"
