# Sourced by the scripts: the build's own Wine prefix.
#   quenda_wine_env PREFIX [ARCH]   exports the settings and creates the
#                                   prefix once (ARCH: win64, the default,
#                                   or win32 for the 32-bit build)

quenda_wine_env() {
    export WINEPREFIX="$1"
    # The 32-bit build's prefix is 32-bit all through, as the handheld is
    # (Wine refuses a prefix of the other kind, so say which it is).
    export WINEARCH="${2:-win64}"
    export WINEDEBUG=-all
    # No downloads of Mono or Gecko, which the program does not need.
    export WINEDLLOVERRIDES="mscoree,mshtml="
    # An English locale gives Windows-1252 as the ANSI code page.
    export LANG=en_US.UTF-8
    mkdir -p "$(dirname "$WINEPREFIX")"
    (
        flock 9
        if [ ! -f "$WINEPREFIX/system.reg" ]; then
            wineboot -i >/dev/null 2>&1
            # Without a window manager (Xvfb), Wine draws captions and
            # frames itself only for windows it does not leave to one.
            wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null 2>&1
            wineserver -w
        fi
    ) 9>"$WINEPREFIX.lock"
}
