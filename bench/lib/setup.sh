# Sourced by the Windows benchmark scripts.
#   quenda_bench_setup TARGET KEY [BUILD-DIR]
#       builds TARGET for Windows (default build folder: build/windows), sets up
#       that build's Wine prefix, writes the generated file to $bench_file and
#       arranges for the key, the files and the Wine server to go at exit
#   quenda_bench_reg_import
#       (re)creates the key from the file with Wine's reg import, timed

quenda_bench_setup() {
    local target=$1
    bench_key=$2
    bench_build=${3:-$root/build/windows}
    case $bench_build in /*) ;; *) bench_build=$root/$bench_build ;; esac
    cmake --preset windows -B "$bench_build" >/dev/null
    cmake --build "$bench_build" --target "$target" >/dev/null
    . "$root/scripts/lib/wine-env.sh"
    quenda_wine_env "$bench_build/wineprefix"
    bench_work=$(mktemp -d)
    trap quenda_bench_cleanup EXIT
    bench_file=$bench_work/bench.reg
    python3 "$root/bench/lib/generate-reg.py" "$bench_file" "$bench_key"
}

quenda_bench_cleanup() {
    wine reg delete "HKCU\\$bench_key" /f >/dev/null 2>&1 || true
    wineserver -k 2>/dev/null || true
    wineserver -w 2>/dev/null || true
    rm -rf "$bench_work"
}

quenda_bench_reg_import() {
    wine reg delete "HKCU\\$bench_key" /f >/dev/null 2>&1 || true
    local start
    start=$(date +%s%3N)
    wine reg import "$(winepath -w "$bench_file")" >/dev/null 2>&1
    echo "reg import of the generated subtree: $(($(date +%s%3N) - start)) ms"
}
