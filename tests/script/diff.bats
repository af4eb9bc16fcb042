#!/usr/bin/env bats
# What two traces say differently. ZTDECODE is the command.

setup() {
    cd "$BATS_TEST_TMPDIR"
    cat >a <<'END_A'
000001S 01 2a
000002S 03 21 04 03
000003S 05 14 11 21 03 07
000004S 0b 13 01 02 00 02 75 30 05 01 14 63
000005S 02 40 01
000006S 01 46
END_A
}

is() {
    [ "$1" = "$2" ] || {
        printf 'expected: %s\n     got: %s\n' "$2" "$1"
        return 1
    }
}

# differ A B [OPTION...]: what is said, and the exit status.
differ() {
    local status=0
    "$ZTDECODE" diff "${@:3}" "$1" "$2" >output 2>errors || status=$?
    cat output errors
    echo "$status"
}

@test "a trace says the same as itself, and nothing is said of that" {
    is "$(differ a a)" 0
    is "$(differ a a --format ndjson)" 0
    is "$(differ "$EXAMPLE" "$EXAMPLE")" 0
}

@test "columns, comments, layouts, encodings, compression and prefixes do not matter" {
    { echo '# another day'; sed 's/^......S \(.*\)/zt \1/' a; } >b
    is "$(differ a b)" 0
    sed 's/^......S/[coupler 3] 09:00:01 123456s/' a | gzip >b
    is "$(differ a b)" 0
    iconv -f UTF-8 -t UTF-16 a >b
    is "$(differ a b)" 0
}

@test "a message only in one of them, with its place and its context" {
    sed 4d a >b
    is "$(differ a b -U 1)" '--- a
+++ b
  a:3 b:3  hub from to_set: HUB - to set 2 - red led 7 slow flash
- a:4      ip from start_rtp: IP - start RTP: both directions, ... local UDP port=30000 ... payload concatenation: 20 ms ... ???
  a:5 b:4  digital from feedback_dtmf: feedback dtmf on
0 changed, 1 only in a, 0 only in b, 5 the same
1'
    is "$(differ b a --unified 0 | sed -n 3p)" '+ a:4  ip from start_rtp: IP - start RTP: both directions, ... local UDP port=30000 ... payload concatenation: 20 ms ... ???'
}

@test "a value that changed, by its name; words that are no value; those of a message that is carried" {
    sed 's/75 30 05 01 14/75 32 05 01 14/; s/21 04 03/21 04 08/; s/21 03 07/21 03 08/' a >b
    is "$(differ a b -U 0)" '--- a
+++ b
~ a:2 b:2  digital from led
      led: 3 → 8
~ a:3 b:3  hub from to_set
      in led: led: 7 → 8
~ a:4 b:4  ip from start_rtp
      local_udp_port: 30000 → 30002
3 changed, 0 only in a, 0 only in b, 3 the same
1'
    echo '000001S 05 14 11 21 03 07' >one
    echo '000001S 05 14 11 21 01 07' >other
    is "$(differ one other | sed -n 4p)" '      words: slow flash → ON'
}

@test "fields that count or tell the time matter when that is asked for, others do not when that is" {
    echo '000001S 03 21 04 03' >one
    echo '000001S 03 21 04 05' >other
    is "$(differ one other | sed -n 4p)" '      led: 3 → 5'
    is "$(differ one other --ignore led)" 0
    is "$(differ one other --ignore line,led)" 0
    # A ticket: item 01 is when the call ended, 0c how long it was, 08 an address.
    echo '000001R 14 13 03 01 00 04 5f 3a 11 02 0c 00 04 00 00 00 9c 08 00 04 0a' >one
    echo '000001R 14 13 03 01 00 04 5f 3a 11 03 0c 00 04 00 00 00 9d 08 00 04 0a' >other
    is "$(differ one other)" 0
    is "$(differ one other --all-fields | sed -n 4,5p | sed 's/:.*//')" '      call_end_date
      call_duration'
    # The hour of a date, and the height of a screen.
    echo '000001S 0a 16 00 07 00 02 01 2c 13 01 05' >one
    echo '000001S 0a 16 00 07 00 02 01 2c 13 01 06' >other
    is "$(differ one other)" 0
    is "$(differ one other --all-fields | sed -n 4p)" '      h: 5 → 6'
}

@test "a message that no table knows is what its bytes are" {
    echo '000001S 03 1d 01 00' >one
    echo '000001S 03 1d 02 00' >other
    is "$(differ one other | sed -n 3,4p)" '~ one:1 other:1  digital from unknown message
      bytes: 1d0100 → 1d0200'
}

@test "a line that is refused says so, in whichever it stands" {
    { cat a; echo '000007S 02 03'; } >b
    is "$(differ a b -q -U 0 | sed -n 3p)" '+ b:7  refused line: the length says 2 bytes, the line has 1'
    is "$(differ b b -q)" 0
    "$ZTDECODE" diff a b 2>&1 >/dev/null | grep -q '^ztdecode: b:7:'
}

@test "as JSON" {
    sed 's/75 30 05 01 14/75 32 05 01 14/; 1d' a >b
    is "$("$ZTDECODE" diff --format ndjson a b | jq -c '[.kind, .a.line, .b.line, .link, .message, .changes]')" \
        '["only_in_a",1,null,"digital","version_inquiry",null]
["changed",4,3,"ip","start_rtp",[{"field":"local_udp_port","in":null,"a":30000,"b":30002}]]'
    is "$("$ZTDECODE" diff --format ndjson -U 1 a b | jq -r .kind | tr '\n' ' ')" 'only_in_a same same changed same '
}

@test "one of them may be standard input, or a pipe" {
    is "$(differ - a <a)" 0
    is "$(differ a - <a)" 0
    is "$(differ a <(sed 1d a) -U 0 | tail -n 1)" 1
}

@test "conditions: only what is asked for is compared" {
    sed 4d a >b
    is "$(differ a b --link digital)" 0
    is "$(differ a b --link ip -U 0 | tail -n 2)" '0 changed, 1 only in a, 0 only in b, 0 the same
1'
}

@test "colours, where they are asked for" {
    sed 6d a >b
    "$ZTDECODE" diff -U 0 --color always a b | grep -q "^$(printf '\033')\[31m- a:6"
}

@test "what would act on a terminal is escaped, in names and in texts" {
    odd=$(printf 'o\033[2Jdd')
    echo '000001S 03 21 04 03' >one
    echo '000001S 03 21 04 05' >"$odd"
    "$ZTDECODE" diff --control escape one "$odd" >output || true
    is "$(sed -n 2p output)" '+++ o\x1b[2Jdd'
    ! grep -q "$(printf '\033')" output
    # A debugging text is whatever the terminal wrote.
    echo '000001S 05 18 1b 5b 32 41' >one
    echo '000001S 05 18 1b 5b 0a 41' >other
    "$ZTDECODE" diff --control escape one other >output || true
    is "$(sed -n 4p output)" '      debug_text: \x1b[2A → \x1b[\x0aA'
    ! grep -q "$(printf '\033')" output
}

@test "bad usage" {
    for words in "" a "a a a" "- -" "--join a a" "--ignore ledd a a" "-U -1 a a" "-U x a a" "--format csv a a" \
        "--where lnik=1 a a"; do
        echo "$words"
        # shellcheck disable=SC2086
        run "$ZTDECODE" diff $words <a
        is "$status" 2
        case "${lines[0]}" in ztdecode:*) ;; *) is "${lines[0]}" ztdecode: ;; esac
    done
    is "$("$ZTDECODE" diff a 2>&1 | head -n 1)" 'ztdecode: a: a second file to compare it with is missing'
    is "$("$ZTDECODE" diff a a b 2>&1 | head -n 1)" 'ztdecode: b: one too many, two files are compared'
    is "$("$ZTDECODE" diff - - 2>&1 | head -n 1)" 'ztdecode: -: standard input can be one of the two files, not both'
    is "$("$ZTDECODE" diff --ignore ledd a a 2>&1 | head -n 1)" \
        'ztdecode: --ignore: no such field: ledd (did you mean led?)'
}

@test "a file that is not there, or cannot be read to its end: nothing is made of what it lacks" {
    is "$(differ a missing)" 'ztdecode: missing: No such file or directory
2'
    is "$(differ missing a)" 'ztdecode: missing: No such file or directory
2'
    gzip -c a | head -c 40 >b
    differ a b | tail -n 1 >last
    is "$(cat last)" 2
    ! grep -q '^-' output
    if [ -e /dev/full ]; then
        sed 1d a >b
        run sh -c '"$ZTDECODE" diff a b >/dev/full'
        is "$status" 2
    fi
}

@test "an output that nobody reads any more ends the work" {
    seq -f '%06.0fS 03 21 04 03' 300000 >long
    seq -f '%06.0fS 03 21 04 05' 300000 >other
    "$ZTDECODE" diff long other | head -n 1 >first
    is "$(cat first)" '--- long'
}
