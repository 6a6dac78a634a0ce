#!/bin/bash
# Builds the edit benchmark for Windows and runs it under Wine: generates a
# subtree of 10,000 keys and 50,000 values under HKCU, imports it with
# "reg import", times Quenda's paste of a copy of it into its parent and the
# deletion of that copy beside "reg copy /s /f" and "reg delete /f", then
# deletes everything again.
#   bench/edit-benchmark.sh [BUILD-DIR]   (default: build/windows)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
. "$root/bench/lib/setup.sh"
tree='Software\QuendaEditBench\Tree'
quenda_bench_setup edit-benchmark "$tree" "${1:-}"
# The copy lands beside the subtree, inside the key that the clean-up (and
# the import, first) removes.
bench_key='Software\QuendaEditBench'
quenda_bench_reg_import
wine "$bench_build/bin/edit-benchmark.exe" "$tree"
