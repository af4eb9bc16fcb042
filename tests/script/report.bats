#!/usr/bin/env bats
bats_require_minimum_version 1.5.0
# The page of a trace, as far as it can be told without a browser. ZTDECODE is the command, EXAMPLE a trace.

setup() {
    cd "$BATS_TEST_TMPDIR"
}

about() { # PAGE: what it says of its trace
    sed -n 's/^<script type="application\/json" id="trace">\(.*\)<\/script>$/\1/p' "$1" | jq -c "$2"
}

@test "a page holds every line but blank ones, and names what it is of" {
    "$ZTDECODE" report "$EXAMPLE" >page
    [ "$(about page .rows)" = 85 ]
    [ "$(about page '.files | length')" = 1 ]
    [ "$(about page '[.blocks[][0]] | add')" = 85 ]
    [ "$(about page '[.kinds[][0]] | unique - [""] | sort')" = '["call_server","digital","hub","ip","presentation_server"]' ]
    [ "$(about page '.fields | [.[] | select(.[0] == "codec")] | length')" = 1 ]
}

@test "a page is one file that loads nothing" {
    "$ZTDECODE" report "$EXAMPLE" >page
    [ "$(head -n 1 page)" = '<!doctype html>' ]
    [ "$(tail -n 1 page)" = '</html>' ]
    grep -q "Content-Security-Policy\" content=\"default-src 'none'; script-src 'sha256-[A-Za-z0-9+/=]*'; style-src 'sha256-[A-Za-z0-9+/=]*';" page
    [ "$(grep -Eo '(src|href)="[^"]*"' page)" = 'href="data:,"' ]
    run ! grep -E 'https?://|@import|url\(' page
}

@test "the policy knows the script and the style by what they are" {
    "$ZTDECODE" report "$EXAMPLE" >page
    hash() { # TAG: of what stands in the element, without a newline that is not there
        perl -0777 -ne "/<$1>(.*?)<\/$2>/s and print \$1" page | openssl dgst -sha256 -binary | base64
    }
    grep -qF "script-src 'sha256-$(hash 'script type="module"' script)'" page
    grep -qF "style-src 'sha256-$(hash style style)'" page
}

@test "no name and no text of a trace is markup" {
    printf '000001S 01 01\n</script><script>alert(1)</script>\n' >'<b>&"x'
    "$ZTDECODE" report '<b>&"x' >page
    [ "$(about page '.files[0]')" = '"<b>&\"x"' ]
    run ! grep -F '<b>' page
    run ! grep -F 'alert(1)' page
}

@test "what the rules find is in the page" {
    "$ZTDECODE" report "$EXAMPLE" >page
    "$ZTDECODE" findings --format ndjson "$EXAMPLE" | jq -c 'select(.kind == "finding") | [.severity, .line]' >expected
    [ "$(wc -l <expected)" -gt 3 ]
    about page '.findings[] | [.severity, .line]' | diff expected -
    printf '%s\n' '000001S 02 21 07' >sound
    "$ZTDECODE" report sound >page
    [ "$(about page '.findings // [] | length')" = 0 ]
}

@test "refused lines are named and are in the page" {
    printf '%s\n' '000001S 02 21 07' '000002S 09 01' 'words' >trace
    run -0 --separate-stderr "$ZTDECODE" report -o page trace
    [ "$stderr" = 'ztdecode: trace:2:9: the length says 9 bytes, the line has 1' ]
    [ "$(about page .rows)" = 3 ]
    [ "$(about page '[.kinds[][3]]')" = '["decoded","refused line","no message"]' ]
    run -0 --separate-stderr "$ZTDECODE" report -q -o page trace
    [ -z "$stderr" ]
}

@test "several files and a selection" {
    printf '%s\n' '000001S 02 21 07' >one
    printf '%s\n' '000001S 02 21 07' '000002R 02 03 0a' >two
    "$ZTDECODE" report one two >page
    [ "$(about page .files)" = '["one","two"]' ]
    [ "$(about page .blocks)" = '[[1,1,0],[2,1,1]]' ]
    "$ZTDECODE" report --message led one two >page
    [ "$(about page .rows)" = 2 ]
    "$ZTDECODE" report --to-system <two >page
    [ "$(about page .blocks)" = '[[1,2,0]]' ]
}

@test "a file that is not there, an option that is none, a selection that is none" {
    run -2 --separate-stderr "$ZTDECODE" report nothing
    [ "$stderr" = 'ztdecode: nothing: No such file or directory' ]
    run -2 "$ZTDECODE" report --pag
    run -2 --separate-stderr "$ZTDECODE" report --where 'lnik = 1' "$EXAMPLE"
    [[ "$stderr" == *'no such column: lnik (did you mean link?)'* ]]
    run -2 "$ZTDECODE" report -o /nowhere/page "$EXAMPLE"
}

@test "a terminal gets no page" {
    run -2 script -qec "'$ZTDECODE' report '$EXAMPLE'" /dev/null
    [[ "$output" == *'a page is for a file: -o FILE, or > FILE'* ]]
}

@test "a page takes no memory" {
    for ((k = 0; k < 200; ++k)); do cat "$EXAMPLE"; done >long
    for ((k = 0; k < 5; ++k)); do cat long long >longer && mv longer long; done
    head -c 20000000 /dev/zero | tr '\0' a >>long
    # A sanitizer's own maps are above any limit.
    [ -n "$SANITIZED" ] || ulimit -v 262144
    "$ZTDECODE" report --progress never long >page
    [ "$(about page .rows)" -ge 500000 ]
    [ $(($(stat -c %s page) * 10)) -lt $(($(stat -c %s long) * 6)) ]
}
