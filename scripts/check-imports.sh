#!/bin/bash
# Checks that Quenda.exe imports only what the handheld offers: every function
# in its PE import table must be on scripts/handheld-functions.txt, or be
# called only from the shell layer (which stands in for the handheld shell on
# the desktop) or from the compiler's own runtime. Who calls an import is read
# from the link map's cross reference (Quenda.map, beside the program).
#   check-imports.sh BUILD_DIR
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:?usage: check-imports.sh BUILD_DIR}
exe=$build/bin/Quenda.exe
map=$build/bin/Quenda.map
list=$root/scripts/handheld-functions.txt
# The object files of the shell layer.
shell_objects='HandheldShell_win.cpp.obj|SoftKeyBar_win.cpp.obj'

for file in "$exe" "$map"; do
    [ -f "$file" ] || { echo "check-imports: $file is missing: build Quenda first" >&2; exit 2; }
done
case $(x86_64-w64-mingw32-objdump -f "$exe" | sed -n 's/.*file format //p') in
    pei-i386) objdump=i686-w64-mingw32-objdump ;;
    *) objdump=x86_64-w64-mingw32-objdump ;;
esac

# "DLL FUNCTION" for every import by name.
imports=$("$objdump" -p "$exe" | awk '
    /^\tDLL Name:/ { dll = $3; next }
    /^$/ { next }
    dll != "" && /^\t[0-9a-f]+\t +[0-9]+  [^ ]+$/ { print dll, $3 }
    /^The Export Tables|^PE File Base Relocations/ { dll = "" }' | sort -u)
[ -n "$imports" ] || { echo "check-imports: no imports read from $exe" >&2; exit 2; }

# "FUNCTION FILE" for every file that refers to a function's symbol (F, or
# its import pointer: __imp_F, on 32-bit _imp__F; on 32-bit a WINAPI
# function's name ends in @ and the bytes of its arguments), other than the
# import library member that defines it.
callers=$(awk '
    /^Cross Reference Table/ { table = 1; next }
    !table || /^Symbol +File$/ || /^$/ { next }
    /^[^ ]/ {
        symbol = $1; definer = $2; pending = (NF == 1); next
    }
    {
        if (pending) { pending = 0; next }   # a long name: its definer on the next line
        name = symbol
        sub(/^(__imp_|_imp__)/, "", name)
        sub(/@[0-9]+$/, "", name)
        print name, $1
    }' "$map" | sort -u)

listed=$(grep -vE '^\s*(#|$)' "$list" | awk '{print $1}' | sort -u || true)
failed=0
while read -r dll function; do
    grep -qxF "$function" <<<"$listed" && continue
    files=$(awk -v f="$function" '$1 == f { $1 = ""; print substr($0, 2) }' <<<"$callers")
    # The C run-time's _close, _read... are reached by their POSIX names.
    if [ -z "$files" ] && [ "${function#_}" != "$function" ]; then
        files=$(awk -v f="${function#_}" '$1 == f { $1 = ""; print substr($0, 2) }' <<<"$callers")
    fi
    # The C and C++ runtime's own objects come from the tool chain's folders;
    # every other object is the program's.
    program=$(grep -vE '^/usr/(lib/gcc/)?[a-z0-9_]+-w64-mingw32/' <<<"$files" || true)
    program=$(grep -vE -- "\(($shell_objects)\)$" <<<"$program" || true)
    if [ -z "$files" ]; then
        echo "$dll!$function: not on the handheld's list, and no caller found in the link map"
        failed=1
    elif [ -n "$program" ]; then
        echo "$dll!$function: not on the handheld's list, called from:"
        sed 's/^/    /' <<<"$program"
        failed=1
    fi
done <<<"$imports"

count=$(wc -l <<<"$imports")
if [ $failed -ne 0 ]; then
    echo "check-imports: $exe calls functions the handheld does not have"
    exit 1
fi
echo "check-imports: all $count imports of $exe are on the handheld or only the shell layer's or the runtime's"
