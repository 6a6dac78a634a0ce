#!/bin/bash
# ctest's emulator for the Windows builds: runs a test program under Wine in
# the build's own prefix (PREFIX, created on first use as a win32 or win64
# prefix, ARCH), on a virtual display when there is none.
#   wine-run.sh PREFIX ARCH PROGRAM [ARGS...]
set -u
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../../scripts/lib/xvfb.sh"
. "$here/../../scripts/lib/wine-env.sh"

prefix=$1
arch=$2
shift 2
quenda_wine_env "$prefix" "$arch"
quenda_start_xvfb
trap quenda_stop_xvfb EXIT
wine "$@"
