#!/usr/bin/env bats
bats_require_minimum_version 1.5.0
# Any trace as it comes: packed, in any encoding, behind prefixes, in several files, still growing. ZTDECODE is the command.

setup() {
    cd "$BATS_TEST_TMPDIR"
    printf '%s\n' '# a comment' '' '000001S 02 21 07' '000002R 02 03 0a' 'link up' >plain
    printf '%s\n' '# a comment' '' '000001S 02 21 07' '	- all leds OFF' '000002R 02 03 0a' "	- digit dialed '*'" \
        'link up' >wanted
    totals='5 lines = 2 with messages + 0 refused + 1 no trace line + 1 blank + 1 comment'
}

decoded() { # FILE: its texts are those that are wanted
    "$ZTDECODE" "$1" >output
    cmp output wanted
}

texts() { # LINE TEXT: what is printed for one line, given on standard input
    [ "$(printf '%s\n' "$1" | "$ZTDECODE" --no-input 2>error)" = "$2" ]
}

@test "compressed files by content, from files and standard input" {
    gzip -c plain >a
    xz -c plain >b
    zstd -qc plain >c
    bzip2 -c plain >d
    lz4 -qc <plain >e
    gzip -c a >f
    for file in a b c d e f; do
        decoded "$file"
        "$ZTDECODE" <"$file" | cmp - wanted
        "$ZTDECODE" --check "$file" | grep -Fx "$file: $totals"
    done
}

@test "members of tar and zip files have names" {
    mkdir day
    cp plain day/coupler3.spzt
    printf '000001S 09 01\n' >day/coupler4.spzt
    gzip -c plain >day/coupler5.gz
    tar cf day.tar day/coupler3.spzt day/coupler4.spzt day/coupler5.gz
    zstd -q day.tar
    zip -q day.zip day/coupler3.spzt day/coupler4.spzt day/coupler5.gz
    for file in day.tar day.tar.zst day.zip; do
        run -1 "$ZTDECODE" --check "$file"
        grep -Fx "$file/day/coupler3.spzt: $totals" <<<"$output"
        grep -Fx "$file/day/coupler5.gz: $totals" <<<"$output"
        grep -Fx "ztdecode: $file/day/coupler4.spzt:1:9: the length says 9 bytes, the line has 1" <<<"$output"
    done
}

@test "binary traces are unpacked, too" {
    printf '\002\041\007' | gzip -c >packed
    [ "$("$ZTDECODE" --layout bin1 packed)" = 'zt 02 00 21 07
	- all leds OFF' ]
}

@test "a damaged file gives what could be read" {
    for ((k = 0; k < 20000; ++k)); do printf '%06dS 02 21 07\n' $k; done >long
    gzip -c long >long.gz
    size=$(stat -c %s long.gz)
    head -c $((size - 100)) long.gz >cut.gz
    run -2 --separate-stderr "$ZTDECODE" --no-input cut.gz
    [ "${#lines[@]}" -gt 1000 ]
    [[ "${stderr_lines[-1]}" =~ ^ztdecode:\ cut.gz:[0-9]+:\  ]]
}

@test "archives inside each other have a depth" {
    cp plain x
    for k in 1 2 3 4 5; do tar cf y x && mv y x; done
    run -2 "$ZTDECODE" x
    [ "$output" = 'ztdecode: x/x/x/x/x: too many archives inside each other' ]
}

@test "a bomb takes no memory" {
    head -c 300000000 /dev/zero | tr '\0' a | gzip -1 >bomb.gz
    # A sanitizer's own maps are above any limit; there it is only decoded.
    run -0 sh -c '[ -n "$SANITIZED" ] || ulimit -v 120000; "$ZTDECODE" --check bomb.gz 2>&1'
    [[ "$output" == *'1 line = 0 with messages + 0 refused + 1 no trace line + 0 blank + 0 comment'* ]]
}

@test "what is no file" {
    : >empty
    run -0 "$ZTDECODE" empty
    [ -z "$output" ]
    gzip -c empty >empty.gz
    run -0 "$ZTDECODE" --check empty.gz
    [[ "$output" == *': 0 lines = '* ]]
    tar cf none.tar -T empty
    gzip none.tar
    run -2 "$ZTDECODE" none.tar.gz
    [ "$output" = 'ztdecode: none.tar.gz: no file in it' ]
    run -2 "$ZTDECODE" .
    [ "$output" = 'ztdecode: .: Is a directory' ]
    run -0 "$ZTDECODE" /dev/null
    mkfifo pipe
    cat plain >pipe &
    decoded pipe
}

@test "text in other encodings" {
    for encoding in UTF-16 UTF-16LE UTF-16BE; do
        iconv -f UTF-8 -t "$encoding" plain >x
        decoded x
    done
    { printf '\357\273\277'; tail -n +3 plain; } >x
    { printf '\357\273\277'; tail -n +3 wanted; } >y
    "$ZTDECODE" x | cmp - y
}

@test "line ends stay what they are" {
    sed 's/$/\r/' plain >x
    sed 's/$/\r/' wanted >y
    "$ZTDECODE" x | cmp - y
    tr '\n' '\r' <plain >x
    tr '\n' '\r' <wanted >y
    "$ZTDECODE" x | cmp - y
    "$ZTDECODE" --control escape x | cmp - wanted
    printf 'no newline' >z
    [ "$("$ZTDECODE" z plain 2>/dev/null | head -n 2)" = "$(printf 'no newline\n# a comment')" ]
}

@test "spellings" {
    texts '  000001S 02 21 07' '	- all leds OFF'
    texts '	000001S 02 21 07' '	- all leds OFF'
    texts '000001S	02	21 	07' '	- all leds OFF'
    texts '000001s 02 21 07' '	- all leds OFF'
    texts '000001S 0x02 0X21 0x07' '	- all leds OFF'
    texts 'ZT 02 03 0a' '	- software reset'
    texts 'zt  02	03 0A' '	- software reset'
    texts ' 02 03 0a' '	- software reset'
    texts '0x02 0x03 0x0a' '	- software reset'
    [ ! -s error ]
    [ "$(printf '\t000001S  02 21\n' | "$ZTDECODE" 2>&1 >/dev/null)" = \
        'ztdecode: -:1:11: the length says 2 bytes, the line has 1' ]
}

@test "prefixes" {
    for prefix in '2026-11-21T07:45:02.123Z ' '2026-11-21 07:45:02,1+01:00 ' '08:42:01 ' '08:42:01.5: ' \
        'Nov 21 08:42:01 host prog[12]: ' 'Nov  1 08:42:01 host prog: ' '1700000000.25 ' '1700000000 ' \
        '[coupler 3] ' '[12345.678] [coupler 4] '; do
        texts "${prefix}000001S 02 21 07" '	- all leds OFF'
        texts "${prefix}zt  02 03 0a" '	- software reset'
    done
    texts '08:42:01 10 20 calls' '08:42:01 10 20 calls'
    [ "$(echo 'Nov 21 08:42:01 host prog: 000001S 02 21 07 zz' | "$ZTDECODE" --format ndjson 2>error |
        jq -c '[.time, .prefix, .columns, .left_over]')" = \
        '["Nov 21 08:42:01","Nov 21 08:42:01 host prog:","000001",1]' ]
    [ "$(cat error)" = 'ztdecode: -:1:45: 1 word left over behind the message' ]
}

@test "a prefix of one's own" {
    printf '%s\n' 'set A> 02 03 0a' 'set B< 02 03 0a' '02 03 0a' >x
    [ "$("$ZTDECODE" --no-input --prefix 'set (?P<terminal>\w)(?P<direction>[<>])' x)" = \
        "$(printf "\t- software reset\n\t- digit dialed '*'\n\t- software reset")" ]
    run -2 "$ZTDECODE" --prefix '(' x
    [ "${lines[0]}" = 'ztdecode: --prefix: missing ): (' ]
}

@test "times" {
    printf '%s\n' '23:59:59.5 01 2a' '00:00:01 01 2a' '01 2a' >x
    [ "$("$ZTDECODE" --time relative x | grep 2a)" = '      0.000000  23:59:59.5 01 2a
      1.500000  00:00:01 01 2a
                01 2a' ]
    printf '%s\n' '000500S 01 2a' '000750S 01 2a' '001500S 01 2a' >x
    [ "$("$ZTDECODE" --time delta --columns ms x | grep 2a)" = '      0.000000  000500S 01 2a
      0.250000  000750S 01 2a
      0.750000  001500S 01 2a' ]
    [ "$(echo '1700000000.25 01 2a' | "$ZTDECODE" --time absolute | head -n 1)" = \
        '2023-11-14T22:13:20.250000  1700000000.25 01 2a' ]
    [ "$("$ZTDECODE" --format ndjson --columns number x | jq -c '[.columns, .time]' | head -n 1)" = '[500,null]' ]
    [ "$("$ZTDECODE" --format ndjson --columns s x | jq -c '[.columns, .time]' | head -n 1)" = '["000500","000500"]' ]
}

@test "terminals learn nothing from each other" {
    printf '%s\n' '[A] 00000aS 06 0c 81 00 02 28 00' '[B] 00000bS 04 0c 00 41 42' '[A] 00000aS 03 0c 00 07' >x
    [ "$("$ZTDECODE" --no-input x | grep -c 'write line')" = 2 ]
    for by in prefix columns; do
        [ "$("$ZTDECODE" --no-input --terminal $by x | head -n 3)" = '	- segment message 1/2
	- segment message 0/0
	- segment message 2/2' ]
    done
}

@test "files that are one trace" {
    printf '000001S 06 0c 81 00 02 28 00\n' >b
    printf '000002S 03 0c 00 00\n' >a
    run -0 --separate-stderr "$ZTDECODE" --no-input b a
    [ "$stderr" = 'ztdecode: b:1:1: the trace ends inside a message of 2 segments, 1 of them to come' ]
    run -0 --separate-stderr "$ZTDECODE" --no-input --join b a
    [ -z "$stderr" ]
    [ "${lines[1]}" = '	- segment message 2/2' ]
    "$ZTDECODE" --join b a >in-order
    mv b c; mv a d; mv d b; mv c a
    "$ZTDECODE" --join=name b a | cmp - in-order
    run -2 "$ZTDECODE" --join=size a b
}

@test "totals" {
    printf '%s\n' '# comment' '' 'words' '000001S 02 21 07' '000002R 09 01' '000003S 02 21 07 ff' '000004S 01 fe' \
        '000005S 01 21' '000006S 06 0c 81 00 02 28 00' >x
    run -1 --separate-stderr "$ZTDECODE" --check x
    [ "${lines[0]}" = 'x: 9 lines = 5 with messages + 1 refused + 1 no trace line + 1 blank + 1 comment' ]
    [ "${lines[1]}" = "x: 5 messages = 1 decoded + 1 unknown + 1 with missing bytes + 1 with bytes left over + 1 cut short\
 by the file's end" ]
    run -0 "$ZTDECODE" --check plain
    printf '\002\041\007\003\041' >binary
    run -1 --separate-stderr "$ZTDECODE" --check --layout bin1 binary
    [ "$stderr" = 'ztdecode: binary:2:3: the length says 3 bytes, the file has 1' ]
    printf '\002\041\007\003' >binary
    run -1 --separate-stderr "$ZTDECODE" --no-input --layout bin1 binary
    [ "$output" = '	- all leds OFF' ]
    [ "$stderr" = 'ztdecode: binary:2:2: the length says 3 bytes, the file has 0' ]
}

@test "no other layout's bytes" {
    printf '%s\n' '000001S 02 03 0a' '000002S 03 00 21 07' >x
    for layout in line lng2 zt; do
        run -1 --separate-stderr "$ZTDECODE" --no-input --layout $layout x
        [ -z "$output" ]
        [[ "$stderr" == *'not one line was decoded; they look like "000001S 02 03 0a": --layout auto would read them' ]]
    done
    echo '03 00 2a' >x
    run -1 --separate-stderr "$ZTDECODE" --no-input x
    [ -z "$output" ]
    run -0 "$ZTDECODE" --no-input --pad x
    [ "${lines[0]}" = 'line too short: expected: 14, real: 8, padded with 0xff' ]
}

@test "warnings say what would read the lines" {
    printf '%s\n' 'A: 000001S 02 21 07' 'B: 000002S 02 21 07' >x
    run -0 --separate-stderr "$ZTDECODE" x
    [[ "$stderr" == *'--prefix, with a pattern'* ]]
    head -c 100 /dev/zero >x
    run -0 --separate-stderr "$ZTDECODE" x
    [[ "$stderr" == *'--layout bin1 or bin2'* ]]
}

# Waits until a file holds a line as often as it should, for a second at most.
expect_line() { # FILE LINE TIMES
    for ((k = 0; k < 100; ++k)); do
        [ "$(tr '\r' '\n' <"$1" | grep -cFx -- "$2")" = "$3" ] && return
        sleep 0.01
    done
    cat "$1"
    return 1
}

@test "follows a file that grows, is rotated and truncated" {
    cp plain x
    "$ZTDECODE" --follow --no-input x >out 2>err 3>&- &
    child=$!
    expect_line out '	- all leds OFF' 1
    printf '000003S 02' >>x
    sleep 0.05
    printf ' 21 07\n' >>x
    expect_line out '	- all leds OFF' 2
    mv x x.1
    sleep 0.05
    echo '000004S 01 2a' >x
    expect_line out '	- version inquiry' 1
    : >x
    sleep 0.3
    echo '000005S 02 21 07' >>x
    expect_line out '	- all leds OFF' 3
    kill -INT $child
    wait $child
    [ "$(cat err)" = 'ztdecode: x: 8 lines = 5 with messages + 0 refused + 1 no trace line + 1 blank + 1 comment' ]
    run -2 "$ZTDECODE" --follow x x.1
}

@test "follows UTF-16 and carriage returns over a rotation in the middle of a line" {
    for from in UTF-16LE UTF-16BE; do
        : >out
        printf '000001S 02 21 07\n000002S 02 2' | iconv -f UTF-8 -t $from >x
        "$ZTDECODE" --follow x >out 2>err 3>&- &
        child=$!
        expect_line out '000001S 02 21 07' 1
        mv x x.1
        printf '000003S 01 2a\n' | iconv -f UTF-8 -t $from >x.new
        mv x.new x
        expect_line out '	- version inquiry' 1
        kill -INT $child
        wait $child || true
        [ "$(head -n 4 out)" = "$(printf '%s\n' '000001S 02 21 07' '	- all leds OFF' '000002S 02 2' '000003S 01 2a')" ]
        grep -q 'x:2:9: the length says 2 bytes' err
    done
    printf '000001S 02 21 07\r000002S 02 21 07\r' >x
    "$ZTDECODE" --follow x >out 2>err 3>&- &
    child=$!
    expect_line out '	- all leds OFF' 2
    mv x x.1
    printf '000003S 01 2a\r' >x
    expect_line out '	- version inquiry' 1
    kill -INT $child
    wait $child
    grep -q '^ztdecode: x: 3 lines = 3 with messages' err
}

# The median of some, since the machine may have other things to do.
@test "a line that is added to a followed file is out within a tenth of a second" {
    : >x
    "$ZTDECODE" --follow --no-input x >out 2>err 3>&- &
    child=$!
    sleep 0.2
    for k in 1 2 3 4 5 6 7 8 9; do
        begin=$(date +%s%3N)
        echo '000001S 01 2a' >>x
        while [ "$(wc -l <out)" -lt "$k" ] && [ $(($(date +%s%3N) - begin)) -lt 5000 ]; do :; done
        echo $(($(date +%s%3N) - begin))
    done >waits
    kill -INT $child
    wait $child
    [ "$(sort -n waits | sed -n 5p)" -lt 100 ]
}

@test "following ends when nobody reads the output any more" {
    cp plain x
    mkfifo output
    "$ZTDECODE" --follow x >output 2>err 3>&- &
    child=$!
    head -n 1 <output
    (sleep 10; kill -KILL $child) >/dev/null 2>&1 3>&- &
    watchdog=$!
    status=0
    wait $child || status=$?
    kill $watchdog 2>/dev/null || true
    [ "$status" != 137 ]
}

@test "a line of brackets or words takes no time" {
    awk 'BEGIN { for (i = 0; i < 200000; ++i) printf "[a] "; print "x" }' >brackets
    awk 'BEGIN { for (i = 0; i < 4000; ++i) printf "[a] "; print "x" }' >words
    timeout 10 "$ZTDECODE" brackets words >output 2>error
    cat brackets words | cmp - output
}

@test "a byte order mark in front of a prefix hides nothing" {
    texts "$(printf '\xef\xbb\xbf2026-11-21 08:42:01 000001S 02 21 07')" '	- all leds OFF'
    printf '\xef\xbb\xbfABC 000001S 02 21 07\n' >marked
    [ "$("$ZTDECODE" --no-input --prefix 'ABC' marked)" = '	- all leds OFF' ]
}

@test "carriage returns that come first through a pipe leave the lines whole" {
    (printf '10%%\r20%%\r' && sleep 0.3 && printf '000001S 02 21 07\n000001S 02 21 07\n') |
        "$ZTDECODE" --no-input >output
    [ "$(grep -c 'all leds OFF' output)" = 2 ]
}

@test "joined files, packed or not: a message that their end cuts is said once" {
    printf '# one\n000014S 05 0c 82 00 04 22\n' >s1
    gzip -kf s1
    printf '# two\n' >s2
    for files in s1 s1.gz 's1 s2' 's1.gz s2'; do
        status=0
        # shellcheck disable=SC2086
        "$ZTDECODE" --join --check $files >output 2>error || status=$?
        [ "$status" = 1 ]
        [ "$(grep -c 'the trace ends inside a message' error)" = 1 ]
    done
}

@test "--follow needs a file" {
    status=0
    "$ZTDECODE" --follow 2>error <plain || status=$?
    [ "$status" = 2 ]
    grep -q '^ztdecode: --follow: needs a FILE' error
}

@test "a file that is followed can be let go while nobody reads the output" {
    mkfifo output
    awk 'BEGIN { for (i = 0; i < 20000; ++i) print "000001S 02 21 07" }' >long
    exec 8<>output
    "$ZTDECODE" --follow long >output 2>error 8>&- 3>&- &
    local followed=$! status=0
    (sleep 10; kill -KILL "$followed") >/dev/null 2>&1 3>&- 8>&- &
    local watchdog=$!
    sleep 0.5
    kill -TERM "$followed"
    sleep 0.2
    kill -TERM "$followed" 2>/dev/null || true
    wait "$followed" || status=$?
    kill "$watchdog" 2>/dev/null || true
    exec 8>&-
    [ "$status" != 137 ]
}

@test "a database stays what it was when no trace could be read" {
    "$ZTDECODE" --database kept.db plain
    status=0
    "$ZTDECODE" --database kept.db nosuch 2>error || status=$?
    [ "$status" = 2 ]
    [ "$("$ZTDECODE" --database kept.db --format csv --sql 'select count(*) from messages' | tail -1 | tr -d '\r')" = 2 ]
}

@test "an expression that fails in an archive names its member" {
    printf '000001S 02 21 07\n' >m1
    tar cf a.tar m1
    status=0
    "$ZTDECODE" --where 'json(text)' a.tar 2>error >output || status=$?
    [ "$status" = 2 ]
    grep -q '^ztdecode: a.tar/m1:1: --where: ' error
}
