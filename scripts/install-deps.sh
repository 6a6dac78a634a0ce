#!/bin/bash
# Installs the Debian packages that building and testing need, when missing.
#   install-deps.sh [PACKAGE...]   extra packages to make sure of
set -euo pipefail

packages=(
    cmake ninja-build g++ clang libclang-rt-14-dev libgtest-dev googletest
    g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64
    g++-mingw-w64-i686-posix binutils-mingw-w64-i686
    wine wine64 wine32:i386 fonts-wine xvfb
    "$@"
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo=sudo
# Wine's 32-bit side (for the 32-bit build's tests) is an i386 package.
if ! dpkg --print-foreign-architectures | grep -qx i386; then
    $sudo dpkg --add-architecture i386
fi
# A failing mirror for one index need not stop the install.
$sudo apt-get update -qq || echo "apt-get update reported errors; installing anyway" >&2
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
