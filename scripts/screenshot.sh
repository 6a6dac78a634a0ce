#!/bin/bash
# Writes a PNG of an X display (the virtual one Quenda's scripts start).
#   screenshot.sh OUTPUT.png [DISPLAY]
set -euo pipefail
[ $# -ge 1 ] || { echo "usage: $0 OUTPUT.png [DISPLAY]" >&2; exit 2; }
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/install-deps.sh" imagemagick
import -display "${2:-${DISPLAY:?no display given}}" -window root "$1"
