#!/bin/sh
# usage: exports.sh LIBRARY LIST HEADER...
# Fails when the names that the shared object exports, those that the public headers declare and those of the list are not
# the same, or are not the same kind of thing (function or data). In the list a name's version follows, where it has one.
set -eu

library=$1
list=$2
shift 2
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
LC_ALL=C
export LC_ALL

nm -D --defined-only "$library" | awk '
    $2 == "A" { next } # the version itself
    {
        version = $3
        if (sub(/^[^@]*@@/, "", version)) version = " " version; else version = ""
        sub(/@@.*/, "", $3)
    }
    $2 ~ /^[TWi]$/ { print $3, "function" version; next }
    $2 ~ /^[BDRGSV]$/ { print $3, "data" version; next }
    { print $3, "of nm type", $2 }' | sort >"$dir/library"
cut -d ' ' -f 1,2 "$list" >"$dir/list"

# Declarations begin with ZTDECODE_API and end with a semicolon; comments and preprocessor lines are none.
awk '
    /^[ \t]*#/ { next }
    { text = text $0 "\n" }
    END {
        while ((begin = index(text, "/*")) > 0) {
            rest = substr(text, begin + 2)
            text = substr(text, 1, begin - 1) " " substr(rest, index(rest, "*/") + 2)
        }
        count = split(text, declarations, ";")
        for (i = 1; i <= count; ++i) {
            declaration = declarations[i]
            begin = index(declaration, "ZTDECODE_API")
            if (begin == 0) continue
            declaration = substr(declaration, begin + length("ZTDECODE_API"))
            kind = declaration ~ /^[ \n]*extern[ \n]/ ? "data" : "function"
            if (kind == "data") {
                sub(/\[.*/, "", declaration)
            } else {
                sub(/\(.*/, "", declaration)
            }
            match(declaration, /[A-Za-z_][A-Za-z0-9_]*[ \n]*$/)
            name = substr(declaration, RSTART)
            gsub(/[ \n]/, "", name)
            print name, kind
        }
    }' "$@" | sort >"$dir/headers"

status=0
if ! sort -c "$list"; then
    echo "$list is not sorted"
    status=1
fi
if ! diff -u "$list" "$dir/library"; then
    echo "the list (-) and the library (+) do not agree"
    status=1
fi
if ! diff -u "$dir/list" "$dir/headers"; then
    echo "the list (-) and the headers (+) do not agree"
    status=1
fi
[ "$status" -ne 0 ] || echo "$(wc -l <"$list") names"
exit $status
