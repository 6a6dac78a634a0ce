#!/bin/bash
# Builds everything and runs every test: the portable core natively, with
# AddressSanitizer and UndefinedBehaviorSanitizer, with ThreadSanitizer, and
# the two Windows builds (Quenda.exe and its tests, 64-bit and 32-bit) under
# Wine, each with the check that Quenda.exe imports only what the handheld
# offers.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
"$root/scripts/install-deps.sh"
. "$root/scripts/lib/xvfb.sh"
. "$root/scripts/lib/wine-env.sh"

passed=0
failed=0
results=$(mktemp)

cleanup() {
    if [ -n "${WINEPREFIX:-}" ]; then
        wineserver -k 2>/dev/null || true
        wineserver -w 2>/dev/null || true
    fi
    quenda_stop_xvfb
    rm -f "$results"
}
trap cleanup EXIT

run_preset() {
    local preset=$1
    echo "== $preset"
    if ! { cmake --preset "$preset" >/dev/null && cmake --build --preset "$preset"; }; then
        failed=$((failed + 1))
        return 1
    fi
    local status=0
    # Windows programs run one at a time: two of them showing windows on the
    # same display can take each other's focus. A test that hangs fails.
    local jobs=2
    [[ "$preset" == windows* ]] && jobs=1
    ctest --preset "$preset" -j"$jobs" --timeout 300 2>&1 | tee "$results" || status=$?
    local line
    line=$(grep -E "tests passed, [0-9]+ tests failed out of [0-9]+" "$results" | tail -1)
    if [ -n "$line" ]; then
        local bad total
        bad=$(echo "$line" | sed -E 's/.* ([0-9]+) tests failed out of ([0-9]+).*/\1/')
        total=$(echo "$line" | sed -E 's/.* tests failed out of ([0-9]+).*/\1/')
        passed=$((passed + total - bad))
        failed=$((failed + bad))
    else
        failed=$((failed + 1))
    fi
    return $status
}

export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1
status=0
run_preset native || status=1
run_preset sanitize || status=1
run_preset tsan || status=1

# The importer under libFuzzer for a bounded time, from the committed seeds.
echo "== fuzz"
if cmake --preset fuzz >/dev/null && cmake --build --preset fuzz --target import_fuzzer &&
    (mkdir -p build/fuzz/corpus && cd build/fuzz &&
        ./bin/import_fuzzer -max_total_time="${QUENDA_FUZZ_SECONDS:-60}" -max_len=4096 -timeout=10 \
            -print_final_stats=1 corpus "$root/fuzz/corpus/import" 2>&1 | tail -3); then
    passed=$((passed + 1))
else
    failed=$((failed + 1))
    status=1
fi

# One display for all Windows tests; one Wine prefix and server for each
# build's (the 32-bit build's prefix is 32-bit, as the handheld is).
quenda_start_xvfb
run_windows() {
    local preset=$1 arch=$2
    quenda_wine_env "$root/build/$preset/wineprefix" "$arch"
    wineserver -p
    # Start Wine's background services now, with nowhere to write: started by
    # a test, they would hold ctest's output pipe open after it ends.
    wine cmd.exe /c exit </dev/null >/dev/null 2>&1
    local result=0
    run_preset "$preset" || result=1
    echo "== $preset: imports"
    if "$root/scripts/check-imports.sh" "$root/build/$preset"; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        result=1
    fi
    wineserver -k 2>/dev/null || true
    wineserver -w 2>/dev/null || true
    return $result
}
run_windows windows win64 || status=1
run_windows windows32 win32 || status=1

echo "total: $passed passed, $failed failed"
exit $status
