#!/bin/sh
# usage: abi_unchanged.sh INTERFACE STORED
# Fails when a type or an enumerator of the interface is not as it was stored. INTERFACE is interface.c as a shared object,
# STORED what scripts/abi-dump wrote.
set -eu

if abidiff --no-architecture "$2" "$1"; then
    exit 0
fi
cat <<'WORDS'

The interface has other types than those of tests/contract/interface.abi. "Added variables" alone, and members at the end of
a structure that only the library makes, are growth: hosts that are compiled already do not notice. Then

    scripts/abi-dump

stores the new types; commit them with the change, and raise the minor version. Everything else breaks hosts that are
compiled already: take it back.
WORDS
exit 1
