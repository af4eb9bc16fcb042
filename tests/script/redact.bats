#!/usr/bin/env bats
# What `ztdecode redact` leaves of a trace, and what it says of bad input. ZTDECODE is the command.

bats_require_minimum_version 1.5.0

setup() {
    cd "$BATS_TEST_TMPDIR"
    printf 'a key for tests, no secret' >key
    cat >trace <<'END'
# the set of Dupont
line 12 is up
000001S 11 28 00 00 52 65 63 65 70 74 69 6f 6e 20 34 37 31 31
000002R 02 03 04
000003R 02 03 07
000004R 02 03 01
000005R 02 03 01
000006S 03 1d 44 75
000007S 03 21 04
000008S 01 2a 44 75
[Dupont] 07:45:02.5 000009s 0x03  0x21 0x04 0x03
END
}

redact() {
    "$ZTDECODE" redact --key key --quiet "$@"
}

# fails STATUS WORDS COMMAND...: what is said of bad input.
fails() {
    local wanted=$1 words=$2
    shift 2
    run "$@"
    [ "$status" -eq "$wanted" ] || { echo "status $status: $output"; return 1; }
    [[ $output == *"$words"* ]] || { echo "expected: $words"; echo "     got: $output"; return 1; }
}

@test "lines keep their form: what is no message is blanked, prefixes keep their times" {
    redact trace >output || [ $? -eq 1 ]
    [ "$(wc -l <output)" -eq 11 ]
    [ "$(sed -n 1p output)" = "# xxx xxx xx xxxxxx" ]
    [ "$(sed -n 2p output)" = "xxxx xx xx xx" ]
    [ "$(sed -n 8p output)" = "000006S 03 1d 00 00" ]
    [ "$(sed -n 9p output)" = "000007S 03 00 00" ]
    [ "$(sed -n 10p output)" = "000008S 01 2a 00 00" ]
    [[ $(sed -n 11p output) =~ ^\[[A-Z][a-z]{5}\]\ 07:45:02.5\ 000009s\ 0x03\ \ 0x21\ 0x04\ 0x03$ ]]
    run ! grep -q Dupont output
}

@test "a number that is dialled key by key is the number of the display" {
    redact trace >output || [ $? -eq 1 ]
    shown=$(sed -n 3p output | "$ZTDECODE" -n | sed 's/.* \([0-9]*\)"/\1/')
    dialled=$(sed -n 4,7p output | "$ZTDECODE" -n | sed "s/.*'\(.\)'/\1/" | tr -d '\n')
    [[ $shown =~ ^[0-9]{4}$ ]]
    [ "$shown" != 4711 ]
    [ "$dialled" = "$shown" ]
}

@test "a number begins anew when the handset is laid down" {
    printf '%s\n' '000001R 02 03 04' '000002R 01 02' '000003R 02 03 04' '000004R 02 03 04' >calls
    redact calls >output
    [ "$(sed -n 1p output | cut -c 9-)" = "$(sed -n 3p output | cut -c 9-)" ]
}

@test "what is kept stays" {
    redact --keep number,comment --keep line --keep refused,unknown,left_over --keep prefix --keep person trace >output || [ $? -eq 1 ]
    cmp trace output
    fails 2 "a secret is never kept" redact --keep secret trace
    fails 2 "names is none of number, person," redact --keep names trace
}

@test "UTF-16, carriage returns, a trace without an end of its last line" {
    redact trace >plain || [ $? -eq 1 ]
    iconv -f UTF-8 -t UTF-16 trace >wide
    redact wide >wide.output || [ $? -eq 1 ]
    iconv -f UTF-16 -t UTF-8 wide.output | cmp - plain
    [ "$(head -c 2 wide.output | od -An -tx1)" = " ff fe" ]
    sed 's/$/\r/' trace >crlf
    redact crlf | cmp - <(sed 's/$/\r/' plain)
    printf '000002R 02 03 04' | redact >output
    [ "$(wc -c <output)" -eq 16 ]
    fails 2 "encoded otherwise than the trace before it" redact trace wide
}

@test "what is packed comes out as text" {
    redact trace >plain || [ $? -eq 1 ]
    gzip -c trace >trace.gz
    redact trace.gz | cmp - plain
    cp trace again
    tar -cf both.tar trace again
    redact both.tar | cmp - <(cat plain plain)
}

@test "binary traces keep their lengths" {
    printf '\x02\x03\x04\x01\x2a\x05\x03\x04' >bin
    redact --layout bin1 --direction to bin >output || [ $? -eq 1 ]
    [ "$(wc -c <output)" -eq 8 ]
    [ "$(od -An -tx1 -j 3 -N 2 output)" = " 01 2a" ]
    [ "$(od -An -tx1 -N 2 output)" = " 02 03" ]
}

@test "segments are looked at together, whatever stands between them" {
    printf '%s\n' '000001S 0d 0c 81 00 12 28 00 00 52 65 63 65 70 74' '000002S 01 2a' '000003S 0b 0c 00 69 6f 6e 20 34 37 31 31 20' >segments
    "$ZTDECODE" -n segments | grep -q 'write line 2 "Reception 4711 '
    redact segments >output
    "$ZTDECODE" -n output >texts
    grep -Eq 'write line 2 "[A-Z][a-z]{8} [0-9]{4} ' texts
    run ! grep -Eq 'Reception|4711' texts
    # The words are those of the same text in one message.
    whole=$(printf '000001S 11 28 00 00 52 65 63 65 70 74 69 6f 6e 20 34 37 31 31\n' | redact | "$ZTDECODE" -n | cut -d '"' -f 2)
    grep -qF "\"$whole " texts
    # Without their end nobody knows what they say.
    head -2 segments | redact >output
    [ "$(sed -n 1p output)" = '000001S 0d 0c 81 00 12 00 00 00 00 00 00 00 00 00' ]
}

@test "words of a pattern for prefixes stay, what it finds does not" {
    echo 'term=berta at=noon 000001S 01 2a' >logged
    redact --prefix 'term=(?P<terminal>\w+) at=(?P<time>\w+) ' logged >output
    [[ $(cat output) =~ ^term=[a-z]{5}\ at=noon\ 000001S\ 01\ 2a$ ]]
    run ! grep -q berta output
}

@test "the same key gives the same, another one does not, none never" {
    redact trace >one || [ $? -eq 1 ]
    redact trace >two || [ $? -eq 1 ]
    cmp one two
    printf 'another key for tests, no secret' >other
    "$ZTDECODE" redact --key other -q trace >two || [ $? -eq 1 ]
    run ! cmp -s one two
    "$ZTDECODE" redact -q trace >one || [ $? -eq 1 ]
    "$ZTDECODE" redact -q trace >two || [ $? -eq 1 ]
    run ! cmp -s one two
}

@test "keys that are none" {
    fails 2 "no-such-key: No such file or directory" "$ZTDECODE" redact --key no-such-key trace
    : >empty
    fails 2 "empty: the key is empty" "$ZTDECODE" redact --key empty trace
    printf 'too short' >short
    fails 2 "short: the key has 9 bytes, 16 are the least" "$ZTDECODE" redact --key short trace
    fails 2 "--key: its value is missing" "$ZTDECODE" redact --key
}

@test "what is read is not written over" {
    cp trace before
    fails 2 "is read, and cannot be written at the same time" redact -o trace trace
    fails 2 "is read, and cannot be written at the same time" redact --report trace trace
    fails 2 "is read, and cannot be written at the same time" redact --report key trace
    fails 2 "is the output" redact -o output --report output trace
    cmp trace before
    fails 2 "no-such-trace: No such file or directory" redact no-such-trace
    fails 2 "no such option" redact --keeps number
}

@test "the report says how much of what, and never what" {
    "$ZTDECODE" redact --key key --report report trace >output 2>errors || [ $? -eq 1 ]
    grep -Eq '^redacted 8 messages in 11 lines$' report
    grep -Eq '^number +digital digit_dialled +4 +4$' report
    grep -Eq '^person +digital write_display_line +1 +13$' report
    grep -Eq '^comment +\(the line\) +1 +' report
    run ! grep -Eq '4711|Recept|Dupont' report
    run ! grep -q redacted errors
    "$ZTDECODE" redact --key key trace 2>errors >/dev/null || [ $? -eq 1 ]
    grep -q '^redacted 8 messages' errors
}

@test "no secret stays, whatever is kept and whatever it is written with" {
    head -c 32 /dev/zero | tr '\0' k >key
    # Master keys, which no text shows; a session string of signs; hardware addresses and half bytes that could be text.
    printf '%s\n' \
        '000001S 0d 00 13 0e 08 04 de ad be ef 09 03 ab cd ef' \
        '000002S 0e 00 13 0a 15 0a 61 c2 a7 e2 82 ac c2 b0 c2 bf' \
        '000003R 12 00 13 02 0a 06 2d 2e 21 23 24 25 0b 06 2d 2e 21 23 24 25' \
        '000004S 0f 00 13 01 02 0e 04 21 22 23 24 0f 04 22 23 24 25' >trace
    "$ZTDECODE" redact -q --key key trace >out || [ $? = 1 ]
    for bytes in 'de ad' 'ab cd' 'c2 a7' 'c2 b0' '21 23 24' '21 22 23' '23 24 25'; do
        run ! grep "$bytes" out
    done
    run -2 "$ZTDECODE" redact --keep unread trace
    [ "${lines[0]}" = 'ztdecode: --keep: bytes that no text speaks of may be keys, and are never kept' ]
}

@test "what is said of refused lines holds no word of theirs" {
    printf '%s\n' '000001S 03 4711Dupont 04 03' 'zt Dupont' >trace
    run -1 --separate-stderr "$ZTDECODE" redact --report report trace
    [ -n "$stderr" ]
    [[ "$stderr" != *Dup* && "$stderr" != *4711* ]]
    run ! grep -E 'Dup|4711' report
}

@test "words that count in a --prefix are none that stay" {
    echo 'ext 4 room 15: berta7 000001S 01 2a' >trace
    "$ZTDECODE" redact -q --prefix '\w+ \d+ room \d{2,15}: \w+ ' trace >out
    grep -q ' room ' out
    run ! grep -E '15|berta' out
}

@test "the key is not written over" {
    head -c 32 /dev/zero | tr '\0' k >key
    cp key before
    echo '000001S 01 2a' >trace
    run -2 "$ZTDECODE" redact --key key -o key trace
    cmp key before
    run -2 "$ZTDECODE" redact --key= trace
    [ "${lines[0]}" = 'ztdecode: --key: its value is empty' ]
}
