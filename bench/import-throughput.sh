#!/bin/bash
# Builds the native import throughput benchmark and runs it on the 10,000-key
# file of the Windows benchmarks: the parser on the in-memory registry
# against a plain read of the file.
#   bench/import-throughput.sh [BUILD-DIR]   (default: build/native)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build/native}
cmake --preset native -B "$build" >/dev/null
cmake --build "$build" --target import-throughput >/dev/null
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
python3 "$root/bench/lib/generate-reg.py" "$work/bench.reg" 'Software\QuendaImportBench'
"$build/bin/import-throughput" "$work/bench.reg"
