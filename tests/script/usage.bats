#!/usr/bin/env bats
# Options that say where the words go, and what a wrong word hears. ZTDECODE is the command, EXAMPLE a trace.

bats_require_minimum_version 1.5.0

setup() {
    cd "$BATS_TEST_TMPDIR"
    printf '000001S 01 2a\n000002S 02 2a\n' >trace
}

@test "--output writes to a file, which is emptied first" {
    echo 'what was there and is longer than what comes' >out
    run -1 --separate-stderr "$ZTDECODE" -n -o out trace
    [ -z "$output" ]
    [ "$(cat out)" = '	- version inquiry' ]
    "$ZTDECODE" --output=out --no-input <<<'000001S 01 2a'
    [ "$(cat out)" = '	- version inquiry' ]
    "$ZTDECODE" --count -o - trace >piped
    [ "$(cat piped)" = 1 ]
}

@test "--output is none of the files that are read, and no folder" {
    cp trace before
    ln -s trace link
    for file in trace ./trace link; do
        run -2 "$ZTDECODE" -o "$file" trace
        [ "$output" = "ztdecode: $file: is read, and cannot be written at the same time" ]
    done
    run -2 "$ZTDECODE" -o trace <trace
    cmp before trace
    mkdir folder
    run -2 "$ZTDECODE" -o folder trace
    [ "$output" = 'ztdecode: folder: Is a directory' ]
    run -2 "$ZTDECODE" -o none/such trace
    [ "$output" = 'ztdecode: none/such: No such file or directory' ]
    run -2 "$ZTDECODE" -o '' trace
    [ "${lines[0]}" = 'ztdecode: --output: its value is empty' ]
}

@test "an empty value takes no other word for it" {
    cp trace before
    for option in --output --where --link --jobs; do
        run -2 "$ZTDECODE" "$option=" trace
        [ "${lines[0]}" = "ztdecode: $option: its value is empty" ]
    done
    run -2 "$ZTDECODE" summary --output= trace
    cmp trace before
}

@test "--output is not the database that is asked" {
    "$ZTDECODE" -q --database office.db trace || [ $? = 1 ]
    cp office.db before
    run -2 "$ZTDECODE" --database office.db --sql 'select * from calls' -o office.db
    [ "$output" = 'ztdecode: office.db: is read, and cannot be written at the same time' ]
    cmp office.db before
}

@test "--invert needs something to invert" {
    run -2 "$ZTDECODE" -v trace
    [ "${lines[0]}" = 'ztdecode: --invert: needs a condition, it shows the messages for which that does not hold' ]
    run -2 "$ZTDECODE" findings -v trace
}

@test "every help fits a terminal" {
    for command in summary findings diff ladder redact report; do
        "$ZTDECODE" $command --help >help
        [ -z "$(awk 'length($0) > 79' help)" ]
    done
}

@test "--output that is full is named" {
    run -2 "$ZTDECODE" -q -o /dev/full trace
    [ "$output" = 'ztdecode: /dev/full: No space left on device' ]
}

@test "--quiet says nothing of lines, and the status still does" {
    run -1 "$ZTDECODE" --quiet --no-input trace
    [ "$output" = '	- version inquiry' ]
    run -2 "$ZTDECODE" -q trace none
    [ "${lines[${#lines[@]} - 1]}" = 'ztdecode: none: No such file or directory' ]
    echo words >log
    run -0 "$ZTDECODE" -q log
    [ "$output" = words ]
}

@test "short names are those of the long ones" {
    run -0 "$ZTDECODE" -V
    [[ "$output" == 'ztdecode '[0-9]* ]]
    [ "$("$ZTDECODE" -qcv --link ip trace)" = 1 ]
    [ "$("$ZTDECODE" -q -n -m 1 --link digital trace)" = '	- version inquiry' ]
    "$ZTDECODE" -q -j 2 trace trace >out || [ $? = 1 ]
    [ "$(grep -c inquiry out)" = 2 ]
}

@test "a wrong word hears what was meant" {
    run -2 "$ZTDECODE" --formt ndjson trace
    [ "${lines[0]}" = 'ztdecode: --formt: no such option (did you mean --format?)' ]
    run -2 "$ZTDECODE" --expalin trace
    [ "${lines[0]}" = 'ztdecode: --expalin: no such option (did you mean --explain?)' ]
    run -2 "$ZTDECODE" --xyzzyplugh trace
    [ "${lines[0]}" = 'ztdecode: --xyzzyplugh: no such option' ]
    run -2 "$ZTDECODE" sumary
    [ "$output" = 'ztdecode: sumary: No such file or directory (did you mean summary?)' ]
    run -2 "$ZTDECODE" summary --hlp
    [ "${lines[0]}" = 'ztdecode: --hlp: no such option (did you mean --help?)' ]
    [ "${lines[1]}" = 'ztdecode summary --help says how it is used' ]
}

@test "options that have no place beside each other are refused" {
    for options in '--format ndjson --check' '--format ndjson --count' '--catalog --check' '--catalog --link ip' \
        '--time delta --check' '--time delta --format ndjson' '--time delta --no-input'; do
        # shellcheck disable=SC2086
        run -2 "$ZTDECODE" $options
        [[ "$output" == *place* ]]
    done
}

@test "a file called like a subcommand" {
    cp trace summary
    run -1 --separate-stderr "$ZTDECODE" -n ./summary
    [ "$output" = '	- version inquiry' ]
    run -1 --separate-stderr "$ZTDECODE" -n -- summary
    [ "$output" = '	- version inquiry' ]
}
