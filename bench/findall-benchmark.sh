#!/bin/bash
# Builds the find-all benchmark for Windows and runs it under Wine: generates
# the subtree of 10,000 keys and 50,000 values under HKCU with every value
# name beginning "QbVal", imports it with "reg import", times "Find All" for
# that text in the results window beside the finder's own walk (for one group
# of 100 keys, then for the whole subtree), and reports the longest time the
# window took to answer; then deletes the subtree.
#   bench/findall-benchmark.sh [BUILD-DIR]   (default: build/windows)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
. "$root/bench/lib/setup.sh"
# The results window needs a display, there before Wine's server starts.
. "$root/scripts/lib/xvfb.sh"
quenda_start_xvfb
trap quenda_stop_xvfb EXIT
quenda_bench_setup findall-benchmark 'Software\QuendaFindAllBench' "${1:-}"
trap 'quenda_bench_cleanup; quenda_stop_xvfb' EXIT
python3 "$root/bench/lib/generate-reg.py" "$bench_file" "$bench_key" QbVal
quenda_bench_reg_import
# One group of 100 keys first, for a figure in seconds; then all 10,000.
wine "$bench_build/bin/findall-benchmark.exe" "$bench_key\\Group00" QbVal
wine "$bench_build/bin/findall-benchmark.exe" "$bench_key" QbVal
