#!/bin/sh
# usage: readme.sh COMMAND SOURCE_DIR
# Runs each "$ ..." line of README.md, docs/records.md, docs/queries.md, docs/findings.md and docs/scale.md, with the "> ..."
# lines that continue it, and compares what it prints, on both outputs, with the lines below it. Where they end in "...", the
# output goes on. The lines run beside examples/, with build/release/ztdecode for COMMAND.
set -eu

command=$1
source=$2
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

mkdir -p "$dir/build/release"
ln -s "$command" "$dir/build/release/ztdecode"
ln -s "$source/examples" "$dir/examples"
cd "$dir"
status=0

# check FILE LEAST: its examples, which are so many at least.
check() {
    rm -rf blocks
    mkdir blocks
    # Block N: what to run, in N.command, and what it prints, in N.expected. A block is indented by four blanks.
    awk -v blocks=blocks '
        function line(text) {
            if (text ~ /^\$ /) {
                ++count
                print substr(text, 3) >(blocks "/" count ".command")
                printf "" >(blocks "/" count ".expected")
                running = commanding = 1
            } else if (commanding && text ~ /^> /) {
                print substr(text, 3) >(blocks "/" count ".command")
            } else if (running) {
                commanding = 0
                print text >(blocks "/" count ".expected")
            }
        }
        /^    / {
            for (; empty > 0; --empty) line("")
            line(substr($0, 5))
            next
        }
        /^$/ { if (running) ++empty; next }
        { running = commanding = empty = 0 }
    ' "$source/$1"

    count=0
    for block in blocks/*.command; do
        [ -f "$block" ] || break
        block=${block%.command}
        sh "$block.command" >"$block.output" 2>&1 || true
        if [ "$(tail -n 1 "$block.expected")" = ... ]; then
            sed -i '$d' "$block.expected"
            lines=$(wc -l <"$block.expected")
            if [ "$(wc -l <"$block.output")" -le "$lines" ]; then
                echo "the output does not go on:"
                cat "$block.command"
                status=1
            fi
            sed -i "$((lines + 1)),\$d" "$block.output"
        fi
        if ! diff -u "$block.expected" "$block.output"; then
            echo "$1 shows another output of:"
            cat "$block.command"
            status=1
        fi
        count=$((count + 1))
    done
    [ "$count" -ge "$2" ] || {
        echo "only $count examples found in $1"
        status=1
    }
}

check README.md 5
check docs/records.md 6
check docs/queries.md 22
check docs/findings.md 1
check docs/scale.md 6
exit $status
