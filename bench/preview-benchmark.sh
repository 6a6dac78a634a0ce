#!/bin/bash
# Builds the import preview benchmark for Windows and runs it under Wine:
# generates the 10,000-key file of the export benchmark, then times, in
# turns, the preview of it and its import into the emptied key, and the
# preview again over what the import left; prints the overlay's memory.
#   bench/preview-benchmark.sh [BUILD-DIR]   (default: build/windows)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
. "$root/bench/lib/setup.sh"
quenda_bench_setup preview-benchmark 'Software\QuendaPreviewBench' "${1:-}"
wine "$bench_build/bin/preview-benchmark.exe" "$(winepath -w "$bench_file")" "$bench_key"
