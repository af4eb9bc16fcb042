#!/usr/bin/env bats
# What `ztdecode findings` finds, and how it says it. ZTDECODE is the command, SOURCE the project, MAKE_TRACE writes the
# traffic of an office (empty where it is not built).

load support

setup() { cd "$BATS_TEST_TMPDIR"; }

# What the command found: the line of each finding, its code, the lines that it stands on.
found() {
    "$ZTDECODE" findings -q --format ndjson "$@" |
        jq -r '"\(.line) \(.code) \(.on | map(.line | tostring) | join(","))"' | sort
}

codes() { "$ZTDECODE" findings --rules | cut -d' ' -f1; }

@test "every rule has a trace in which it fires and one in which it almost does" {
    cd "$SOURCE/tests/findings"
    is "$(ls *.fires *.almost | sort)" "$(for code in $(codes); do echo "$code.almost"; echo "$code.fires"; done | sort)"
    for code in $(codes); do
        grep -q "^#= [0-9]* $code " "$code.fires"
        run grep "^#= [0-9]* $code " "$code.almost"
        is "$status" 1
    done
}

@test "each of these traces gives what it says" {
    cd "$SOURCE/tests/findings"
    for trace in *.fires *.almost; do
        grep -q '^#=' "$trace"
        expected=$(sed -n 's/^#= //p' "$trace" | grep -v '^nothing$' | sort) || true
        [ "$(found "$trace")" = "$expected" ] || {
            printf '%s\nexpected:\n%s\ngot:\n%s\n' "$trace" "$expected" "$(found "$trace")"
            return 1
        }
    done
}

@test "every rule has its section in docs/findings.md, with its severity, and every section its rule" {
    is "$(sed -n 's/^### `\(.*\)`, \(.*\)$/\1 \2/p' "$SOURCE/docs/findings.md")" \
        "$("$ZTDECODE" findings --rules --format ndjson | jq -r '"\(.code) \(.severity)"')"
}

@test "the plain traffic of an office has no findings" {
    [ -n "$MAKE_TRACE" ] || skip "make-trace is not built"
    for lines in 10 1000 50000; do
        "$MAKE_TRACE" $lines >office
        is "$(found office)" ""
        is "$(found --columns ms office)" ""
    done
    for way in from to; do
        "$MAKE_TRACE" 5000 line $way >office
        is "$(found --layout line --direction $way office)" ""
    done
}

@test "each fault that is planted in an office is found" {
    [ -n "$MAKE_TRACE" ] || skip "make-trace is not built"
    for code in $(codes); do
        "$MAKE_TRACE" 6000 spzt from "$code" >office
        options=
        [ "$code" != slow-answer ] || options="--columns ms"
        found $options office | cut -d' ' -f2 | grep -qx "$code" || {
            echo "no $code"
            return 1
        }
    done
    run "$MAKE_TRACE" 10 spzt from no-such-fault
    is "$status" 2
}

@test "the example's planted errors are found, and nothing else" {
    is "$(found "$EXAMPLE")" "44 unknown-message 44
45 refused-command 44,45
48 reported-error 48
50 missing-bytes 50"
}

@test "a finding names file, line, severity and code, and below it the messages that it stands on" {
    run "$ZTDECODE" findings "$SOURCE/tests/findings/refused-command.fires"
    is "$status" 0
    is "${lines[0]}" "$SOURCE/tests/findings/refused-command.fires:5: warning: illegal_command: led [refused-command]"
    is "${lines[1]}" "    line 4 from digital led"
    is "${lines[2]}" "    line 5 to digital illegal_command"
    is "${lines[-1]}" "0 errors, 2 warnings, 0 notes"
}

@test "--fail-on tells scripts" {
    printf '000000S 01 2b\n000001R 01 22\n000002R 0f 1f 00 00 02 15 20 31 02 01 08 01 01 05 01 08\n' >note
    printf '000001R 03 1f 04 01\n' >warning
    printf '000001R 03 1f 03 01\n' >error
    for row in "note note 1" "note warning 0" "warning note 1" "warning warning 1" "warning error 0" "error error 1"; do
        set -- $row
        run "$ZTDECODE" findings --fail-on "$2" "$1"
        is "$row: $status" "$row: $3"
    done
    run "$ZTDECODE" findings error
    is "$status" 0
}

@test "limits are options" {
    cd "$SOURCE/tests/findings"
    is "$(found --max-loss 1.1 packet-loss.fires)" ""
    is "$(found --max-loss 0.9 packet-loss.almost | cut -d' ' -f2)" packet-loss
    is "$(found --max-delay 151 long-delay.fires)" ""
    is "$(found --max-jitter 51 jitter.fires)" ""
    is "$(found --max-response 1001 slow-answer.fires)" ""
    is "$(found --max-response 999 slow-answer.almost | cut -d' ' -f2)" slow-answer
}

@test "terminals that are told apart do not answer for each other" {
    printf '08:00:00 [a] 000001S 01 2b\n08:00:01 [b] 000002R 01 22\n08:00:12 [a] 000003R 02 20 05\n' >two
    is "$(found --prefix '^\S+ \[(?P<terminal>.)\] ' --terminal prefix two | cut -d' ' -f1,2)" ""
    printf '000001S 01 2b\n' >one
    for n in $(seq 60); do printf '000001R 02 20 05\n000002R 01 22\n' >>one; done
    is "$(found --terminal columns one | cut -d' ' -f1,2 | head -1)" "1 no-answer"
    is "$(found one | cut -d' ' -f2 | grep -c no-answer || true)" 0
}

@test "joined files are one trace, and a finding names both" {
    printf '000001S 10 13 01 02 00 02 75 30 01 04 0a 00 00 02 14 01 00\n' >one
    cp one two
    is "$(found one two)" ""
    run "$ZTDECODE" findings --join one two
    is "${lines[0]}" "two:1: warning: start_rtp to 10.0.0.2 while the stream to 10.0.0.2 runs [stream-started-twice]"
    is "${lines[1]}" "    one line 1 from ip start_rtp"
}

@test "a selection leaves messages out of what is looked at" {
    is "$(found --link ip "$EXAMPLE")" ""
    is "$(found --link digital "$EXAMPLE" | wc -l)" 4
}

@test "what a trace brings along stays words" {
    printf '000001R 0c 1f 03 01\n' >$'odd\nname'
    run "$ZTDECODE" findings -q $'odd\nname'
    has "${lines[0]}" 'odd\x0aname:1: error: '
}

@test "beneath the text with --findings, and nothing else changes" {
    "$ZTDECODE" "$EXAMPLE" >plain
    "$ZTDECODE" --findings "$EXAMPLE" >with
    grep -v -e '^  > ' -e '^    line ' with | cmp - plain
    is "$(grep -A3 '^080000R' with | tail -3)" "$(printf '\t- illegal command received: 1d\n  > warning: illegal_command: a command with the code 0x1d [refused-command]\n    line 44 from digital without a name')"
    printf '000001S 03 21 04\n' >refused
    run "$ZTDECODE" -q --findings refused
    is "${lines[0]}" "000001S 03 21 04"
    has "${lines[1]}" "[refused-line]"
}

@test "bad input and bad usage" {
    run "$ZTDECODE" findings nowhere
    is "$status" 2
    has "$output" "nowhere: No such file"
    for row in "--fail-on sometimes" "--max-loss 101" "--max-loss 1.25" "--max-loss -1" "--max-delay much" "--format csv" \
        "--rules trace" "--no-such-option"; do
        run "$ZTDECODE" findings $row
        is "$row: $status" "$row: 2"
        has "$output" "ztdecode findings --help"
    done
    for row in "--check" "--format ndjson" "--join" "-c" "--catalog"; do
        run "$ZTDECODE" --findings $row "$EXAMPLE"
        is "$row: $status" "$row: 2"
    done
    head -c 100000 /dev/urandom >noise
    run "$ZTDECODE" findings noise
    [ "$status" -le 2 ]
}

@test "an output that cannot be written" {
    [ -e /dev/full ] || skip "no /dev/full"
    run sh -c '"$ZTDECODE" findings "$EXAMPLE" >/dev/full'
    is "$status" 2
}

@test "--findings says the same by several jobs" {
    start='20 00 13 01 02 00 02 75 30 01 04 0a 00 00 02 02 02 7d 00 03 01 b8 04 01 00 05 01 14 0d 01 01 14 01 00'
    awk -v start="$start" 'BEGIN {
        for (k = 1; k <= 60000; ++k) printf "%06dS %s\n", k % 1000000, k == 30000 || k == 45000 ? start : "03 21 04 03"
    }' >long
    "$ZTDECODE" -j 1 --findings long >one
    grep -q stream-started-twice one
    "$ZTDECODE" -j 4 --findings long | cmp one -
}
