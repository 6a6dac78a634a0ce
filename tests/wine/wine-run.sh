#!/bin/bash
# ctest's emulator for the Windows build: runs a test program under Wine in
# the build's own prefix (PREFIX, created on first use), on a virtual display
# when there is none.
#   wine-run.sh PREFIX PROGRAM [ARGS...]
set -u
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../../scripts/lib/xvfb.sh"
. "$here/../../scripts/lib/wine-env.sh"

prefix=$1
shift
quenda_wine_env "$prefix"
quenda_start_xvfb
trap quenda_stop_xvfb EXIT
wine "$@"
