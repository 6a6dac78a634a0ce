#!/bin/bash
# Builds Quenda.exe and runs it under Wine, in a prefix of its own: the
# tests' prefix is their registry, which they change as they run, and a user
# should meet the program as it starts on a fresh device.
# Without a display it runs on a virtual one and says how to look at it.
#   run.sh [QUENDA ARGUMENTS...]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
"$root/scripts/install-deps.sh"
. "$root/scripts/lib/xvfb.sh"
. "$root/scripts/lib/wine-env.sh"

cmake --preset windows >/dev/null
cmake --build --preset windows --target Quenda

quenda_wine_env "$root/build/windows/run-wineprefix"
if [ -z "${DISPLAY:-}" ]; then
    quenda_start_xvfb
    echo "No display here: Quenda runs on the virtual display $DISPLAY."
    echo "To see it, from another shell: scripts/screenshot.sh quenda.png $DISPLAY"
    echo "Stop it with Ctrl+C."
fi
stop() {
    wineserver -k 2>/dev/null || true
    quenda_stop_xvfb
}
trap stop EXIT
# On the desktop nothing installs Quenda, so this run is its installation: it
# records the folder of the Quenda.exe it starts, from which the options
# associate .reg files with the program. Wine starts its 32-bit reg.exe
# here, which without /reg:64 writes to the 32-bit view of HKLM\SOFTWARE
# that the 64-bit Quenda.exe never reads.
wine reg add 'HKLM\SOFTWARE\Marrowick\Quenda' /v InstallDir /t REG_SZ \
    /d "$(winepath -w "$root/build/windows/bin")" /f /reg:64 >/dev/null
wine "$root/build/windows/bin/Quenda.exe" "$@"
