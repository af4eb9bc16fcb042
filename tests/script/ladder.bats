#!/usr/bin/env bats
# Who said what to whom, as a picture. ZTDECODE is the command.

setup() {
    cd "$BATS_TEST_TMPDIR"
    export LC_ALL=C.UTF-8
    cat >call <<'END_CALL'
07:45:02.000 000001S 01 2a
07:45:02.250 000002R 05 21 00 02 15 31
07:45:03.250 000003S 05 14 11 21 03 07
END_CALL
}

is() {
    [ "$1" = "$2" ] || {
        printf 'expected: %s\n     got: %s\n' "$2" "$1"
        return 1
    }
}

@test "lifelines, arrows in their direction, times, what a hub passes on" {
    is "$("$ZTDECODE" ladder --width 80 call)" '             system
             │       digital set
             │       │       hub
             │       │       │       hub set 2
   1     +0  ├──────►│       │       │  version_inquiry
   2  +0.25  │◄──────┤       │       │  version_response  terminal_type: set-49,
             │       │       │       │    software_version: 2.21
   3     +1  ├───────┼──────►│       │  to_set  set_number: 2
             │       │       ├──────►│  in it: led  led: 7'
}

@test "plain characters where the locale has no others" {
    is "$(LC_ALL=C "$ZTDECODE" ladder --fields none --width 60 call)" '             system
             |    digital set
             |    |    hub
             |    |    |    hub set 2
   1     +0  +--->|    |    |  version_inquiry
   2  +0.25  |<---+    |    |  version_response
   3     +1  +----+--->|    |  to_set
             |    |    +--->|  in it: led'
    ! LC_ALL=C "$ZTDECODE" ladder "$EXAMPLE" | grep -q '[│►]'
}

@test "no line is wider than asked for, whatever there is to say" {
    for width in 60 120; do
        for characters in C C.UTF-8; do
            for trace in "$EXAMPLE" "$BATS_TEST_DIRNAME/../golden/hub-dect.spzt" all; do
                [ "$trace" != all ] || set -- "$BATS_TEST_DIRNAME"/../golden/*.spzt
                [ "$trace" = all ] || set -- "$trace"
                LC_ALL=$characters "$ZTDECODE" ladder -q --fields all --width "$width" "$@" 2>/dev/null >picture
                python3 - "$width" picture <<'END_PYTHON'
import sys, unicodedata
for line in open(sys.argv[2], encoding="utf-8", errors="replace"):
    columns = sum(0 if unicodedata.combining(c) else 2 if unicodedata.east_asian_width(c) in "WF" else 1 for c in line.rstrip("\n"))
    assert columns <= int(sys.argv[1]), (columns, line)
END_PYTHON
            done
        done
    done
}

@test "every message has a row, or is counted in one" {
    "$ZTDECODE" --format ndjson "$EXAMPLE" |
        jq -s '[.[] | select(.kind == "message") | recurse(.parts[])] | length' >messages
    "$ZTDECODE" ladder --unfold --format mermaid "$EXAMPLE" | grep -c -e '->>' >arrows
    is "$(cat arrows)" "$(cat messages)"
}

@test "what is said again and again stands there once, and how often" {
    seq -f '%06.0fR 02 03 0a' 12 >keys
    is "$("$ZTDECODE" ladder keys | tail -n +3)" '   1  │◄──────┤  digit_dialled  digit: *  ×12, lines 1-12'
    is "$("$ZTDECODE" ladder --unfold keys | wc -l)" 14
    for k in 1 2 3 4; do printf '%s\n' '000001S 01 2a' '000002R 05 21 00 02 15 31'; done >polls
    is "$("$ZTDECODE" ladder --fields none polls | tail -n +3)" '   1  ├──────►│  version_inquiry
   2  │◄──────┤  version_response
      │       │  these 2 ×4, lines 1-8'
    "$ZTDECODE" ladder --format svg keys | grep -q '×12, lines 1–12<'
    "$ZTDECODE" ladder --format mermaid keys | grep -q '×12, lines 1-12$'
}

@test "fields that are asked for" {
    is "$("$ZTDECODE" ladder --fields software_version call | sed -n 6p)" \
        '   2  +0.25  │◄──────┤       │       │  version_response  software_version: 2.21'
    is "$("$ZTDECODE" ladder --fields none call | sed -n 6p)" '   2  +0.25  │◄──────┤       │       │  version_response'
    "$ZTDECODE" ladder --fields all,led call | grep -q 'set_number: 2'
}

@test "terminals that are told apart have lifelines of their own" {
    printf '%s\n' '[4711] 000001S 01 2a' '[4712] 000002S 01 2a' >two
    is "$("$ZTDECODE" ladder --terminal prefix two)" '      system
      │       [4711]
      │       │       [4712]
   1  ├──────►│       │  version_inquiry
   2  ├───────┼──────►│  version_inquiry'
}

@test "of more lifelines than there is room for the last ones share a place, and are named" {
    seq 1 30 | while read -r n; do echo "[T$n] 000001S 01 2a"; done >many
    "$ZTDECODE" ladder --unfold --terminal prefix --width 60 many >picture
    grep -q 'others (' picture
    grep -q '\[\[T30\]\] version_inquiry' picture
    python3 -c 'import sys; sys.exit(any(len(line) > 61 for line in open("picture", encoding="utf-8")))'
}

@test "what is wrong stands below the message" {
    printf '%s\n' '000001S 03 1d 01 00' '000002S 02 03' >wrong
    "$ZTDECODE" ladder -q --width 100 wrong >picture
    grep -A 2 unknown_code picture | grep -q '! warning unknown-message: '
    grep -q '! refused: the length says 2 bytes, the line has 1' picture
}

@test "a picture as SVG: one file, well formed, with ids of the lines" {
    "$ZTDECODE" ladder --format svg -o office.svg "$EXAMPLE"
    python3 - office.svg <<'END_PYTHON'
import sys, xml.etree.ElementTree as tree
root = tree.parse(sys.argv[1]).getroot()
ids = [e.get("id") for e in root.iter() if e.get("id")]
assert len(ids) == len(set(ids)) > 40 and "L5" in ids, ids
for link in root.iter("{http://www.w3.org/2000/svg}a"):
    assert link.get("href")[1:] in ids, link.get("href")
for element in root.iter():
    assert not any(str(v).startswith(("http:", "https:")) for v in element.attrib.values())
END_PYTHON
    grep -q 'prefers-color-scheme: dark' office.svg
}

@test "nothing of a trace is a command of the picture" {
    # A debugging text: ESC[2J<b>&;#" and a newline.
    echo '000001S 0d 18 1b 5b 32 4a 3c 62 3e 26 3b 23 22 0a' >odd
    is "$("$ZTDECODE" ladder --fields debug_text odd | tail -n 1)" \
        '   1  ├──────►│  debug_text  debug_text: \x1b[2J<b>&;#"\x0a'
    "$ZTDECODE" ladder --format svg --fields debug_text odd | grep -qF '\x1b[2J&lt;b&gt;&amp;;#&quot;\x0a<'
    "$ZTDECODE" ladder --format mermaid --fields debug_text odd | grep -qF '\x1b[2J#lt;b#gt;&#59;#35;"\x0a'
}

@test "an empty trace" {
    : >empty
    for format in text svg mermaid; do
        "$ZTDECODE" ladder --format "$format" empty >picture
        [ -s picture ]
    done
    is "$("$ZTDECODE" ladder </dev/null | head -n 1)" '      system'
}

@test "bad usage" {
    for words in "--format png" "--fields ledd" "--width 59" "--width x" "--fields" "--where lnik=1"; do
        echo "$words"
        # shellcheck disable=SC2086
        run "$ZTDECODE" ladder $words call
        is "$status" 2
        case "${lines[0]}" in ztdecode:*) ;; *) is "${lines[0]}" ztdecode: ;; esac
    done
    is "$("$ZTDECODE" ladder --fields ledd call 2>&1 | head -n 1)" \
        'ztdecode: --fields: no such field: ledd (did you mean led?)'
    run "$ZTDECODE" ladder missing
    is "$status" 2
    run "$ZTDECODE" ladder -o /nowhere/picture call
    is "$status" 2
}
