# Sourced by the scripts: a virtual X display when there is none.
#   quenda_start_xvfb   sets DISPLAY to a new Xvfb display if DISPLAY is empty
#   quenda_stop_xvfb    stops the Xvfb that quenda_start_xvfb started, if any

quenda_xvfb_pid=""

quenda_start_xvfb() {
    [ -n "${DISPLAY:-}" ] && return 0
    local number=99
    while [ -e "/tmp/.X${number}-lock" ] || [ -e "/tmp/.X11-unix/X${number}" ]; do
        number=$((number + 1))
    done
    Xvfb ":${number}" -screen 0 1024x768x24 -dpi "${QUENDA_DPI:-96}" -nolisten tcp >/dev/null 2>&1 &
    quenda_xvfb_pid=$!
    export DISPLAY=":${number}"
    local tries=0
    while [ ! -e "/tmp/.X11-unix/X${number}" ] && [ $tries -lt 100 ]; do
        sleep 0.05
        tries=$((tries + 1))
    done
}

quenda_stop_xvfb() {
    if [ -n "$quenda_xvfb_pid" ]; then
        kill "$quenda_xvfb_pid" 2>/dev/null || true
        wait "$quenda_xvfb_pid" 2>/dev/null || true
        quenda_xvfb_pid=""
    fi
}
