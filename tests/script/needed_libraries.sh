#!/bin/sh
# usage: needed_libraries.sh LIBRARY
# Fails when the shared object needs anything at run time but the C library and the loader.
set -eu

dynamic=$(LC_ALL=C readelf -d "$1")
needed=$(printf '%s\n' "$dynamic" | sed -n 's/.*(NEEDED).*\[\(.*\)\]$/\1/p')
if [ -z "$needed" ]; then
    echo "$1 needs nothing at all, not even the C library: is it the right file?"
    exit 1
fi

status=0
for library in $needed; do
    case $library in
        libc.so.6 | ld-linux*.so.*) echo "needs $library" ;;
        *)
            echo "needs $library, which it must not"
            status=1
            ;;
    esac
done
exit $status
