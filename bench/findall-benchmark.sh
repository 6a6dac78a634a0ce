#!/bin/bash
# Builds the find-all benchmark for Windows and runs it under Wine: first
# "Find All" for "Microsoft" beside "Colors" over Wine's default registry;
# then generates the subtree of 10,000 keys and 50,000 values under HKCU with
# every value name beginning "QbVal", imports it with "reg import", times
# "Find All" for that text in the results window beside "Find All" for a text
# found nowhere in it, with their registry calls and the longest time the
# window took to answer, and one "Find Next" step among 100 and among 10,000
# siblings; then deletes the subtree.
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
wine "$bench_build/bin/findall-benchmark.exe" --registry Microsoft Colors
python3 "$root/bench/lib/generate-reg.py" "$bench_file" "$bench_key" QbVal
quenda_bench_reg_import
wine "$bench_build/bin/findall-benchmark.exe" "$bench_key" QbVal
