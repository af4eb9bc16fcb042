#!/bin/sh
# usage: installed.sh BUILD_DIR SOURCE_DIR
# Installs the build below a folder of its own, and builds and runs a C program with nothing but what was installed.
set -eu

build=$1
source=$2
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

DESTDIR=$dir/root cmake --install "$build" >"$dir/log" || {
    cat "$dir/log"
    exit 1
}
pc=$(find "$dir/root" -name ztdecode.pc)
libdir=$(dirname "$(dirname "$pc")")
PKG_CONFIG_LIBDIR=$(dirname "$pc")
PKG_CONFIG_SYSROOT_DIR=$dir/root
export PKG_CONFIG_LIBDIR PKG_CONFIG_SYSROOT_DIR

version=$(pkg-config --modversion ztdecode)
if [ "$(basename "$(readlink -f "$libdir/libztdecode.so")")" != "libztdecode.so.$version" ]; then
    echo "libztdecode.so does not lead to libztdecode.so.$version:"
    ls -l "$libdir"
    exit 1
fi

# The flags are words.
# shellcheck disable=SC2046
cc -std=c99 -Wall -Wextra -Wpedantic -Werror "$source/tests/script/installed.c" -o "$dir/program" \
    $(pkg-config --cflags --libs ztdecode)
LD_LIBRARY_PATH=$libdir "$dir/program"

command=$(find "$dir/root" -type f -path '*/bin/ztdecode')
"$command" --version
if [ -z "$(find "$dir/root" -path '*/man1/ztdecode.1')" ]; then
    echo "the manual page is not installed"
    exit 1
fi
