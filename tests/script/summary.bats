#!/usr/bin/env bats
# What is on the page of `ztdecode summary`. ZTDECODE is the command, SOURCE the project.
bats_require_minimum_version 1.5.0

load support

setup() { cd "$BATS_TEST_TMPDIR"; }

# section HEADING FILE: what stands below a heading of the page.
section() { awk -v heading="$1" '$0 == heading { on = 1; next } /^$/ { on = 0 } on' "$2"; }

# The values of objects of one kind: data KIND EXPRESSION FILE...
data() {
    local kind=$1 expression=$2
    shift 2
    "$ZTDECODE" summary -q --format ndjson "$@" | jq -r "select(.kind == \"$kind\") | $expression"
}

@test "the page of the example" {
    cp "$EXAMPLE" office.spzt
    "$ZTDECODE" summary office.spzt >page
    is "$(head -5 page)" "file                       office.spzt
lines                      91: 69 with messages, 0 refused, 0 no trace line,
                           6 blank, 16 comments
messages                   69
columns                    074502 to 081516"
    is "$(section "Terminals and modules" page | head -2)" "  digital                  type set-49, design beta, software 2.21, boot 1.08,
                           data 1.05"
    section "Terminals and modules" page | grep -q 'presentation_server      type 3, software 2.04.1, serial number A41207'
    section "Messages by link, direction and name" page | grep -q '  hub to  *status_response 1, version_response 1$'
    is "$(section Calls page)" '  081236 to 081512         lines 76 to 86, G.711 A law, to 10.0.0.2 port 32000,
                           from port 30000, "4712" with "01632960123", 156 s,
                           3 packets lost (0.04 %), delay up to 40 ms'
    is "$(section Findings page)" "  1 error, 3 warnings, 0 notes
  error                    reported-error 1
  warning                  refused-command 1, unknown-message 1, missing-bytes 1"
}

@test "the same as data" {
    is "$(data summary '"\(.lines) \(.with_messages) \(.comments) \(.messages) \(.calls)"' "$EXAMPLE")" "91 69 16 69 1"
    is "$(data terminal 'select(.link == "ip") | "\(.software_version) \(.mac_address) \(.reports)"' "$EXAMPLE")" \
        "1.23 00 00 5e 00 53 05 2"
    is "$(data call '"\(.start_line) \(.stop_line) \(.ticket_line) \(.packets_lost) \(.maximum_delay)"' "$EXAMPLE")" \
        "76 86 87 3 40"
    is "$(data messages 'select(.message == "led") | .count' "$EXAMPLE")" 6
    is "$(data findings '"\(.code) \(.count)"' "$EXAMPLE" | sort | tr '\n' ' ')" \
        "missing-bytes 1 refused-command 1 reported-error 1 unknown-message 1 "
}

@test "messages add up to what the records have" {
    is "$(data messages .count "$EXAMPLE" | awk '{ n += $1 } END { print n }')" \
        "$("$ZTDECODE" --format ndjson "$EXAMPLE" | jq 'def all: 1 + ([.parts[] | all] | add // 0); select(.kind == "message") | all' | awk '{ n += $1 } END { print n }')"
}

@test "calls are those of the view of the database" {
    "$ZTDECODE" --format csv --sql "select start_line, stop_line, ticket_line from calls" "$EXAMPLE" | tr -d '\r' | tail -n +2 >view
    data call '"\(.start_line),\(.stop_line),\(.ticket_line)"' "$EXAMPLE" | diff view -
    [ -n "$MAKE_TRACE" ] || skip "make-trace is not built"
    "$MAKE_TRACE" 20000 >office
    "$ZTDECODE" --format csv --sql "select start_line, stop_line, ticket_line from calls" office | tr -d '\r' |
        tail -n +2 | sort >view
    [ "$(wc -l <view)" -gt 100 ]
    data call '[.start_line, .stop_line, .ticket_line] | map(. // "" | tostring) | join(",")' office | sort | diff view -
    "$ZTDECODE" summary office >page
    is "$(section Calls page | grep -c '^  [0-9]* to\|and on')" 100
    section Calls page | grep -q "and $(($(wc -l <view) - 100)) more calls"
}

@test "times, where the trace gives them" {
    printf '23:59:59.500 000001S 01 2b\n00:00:01.250 000002R 01 22\n' >night
    "$ZTDECODE" summary night >page
    grep -qx 'time                       23:59:59.500 to 00:00:01.250, 0:00:01.750 in all' page
    is "$(data summary .microseconds night)" 1750000
    printf '001000S 01 2b\n003500R 01 22\n' >columns
    is "$(data summary .microseconds --columns ms columns)" 2500000
    is "$(data summary .microseconds columns)" null
}

@test "several files are one page, and lines and messages add up" {
    cp "$EXAMPLE" one
    cp "$EXAMPLE" two
    "$ZTDECODE" summary one two >page
    is "$(head -1 page)" "files                      one, two"
    grep -q '^messages  *138$' page
    is "$(section Calls page | grep -c 'one, lines 76\|two, lines 76')" 2
    grep -q '2 errors, 6 warnings, 0 notes' page
}

@test "terminals behind hubs and modules behind sets have their places" {
    printf '000001R 0a 04 2a 1f 00 05 01 1d 00 00 03\n000002R 07 14 11 21 00 02 15 31\n' >places
    "$ZTDECODE" summary places >page
    section "Terminals and modules" page | grep -q '^  digital module 2  *type Z, software 1.29'
    section "Terminals and modules" page | grep -q '^  digital set 2  *type set-49, software 2.21'
}

@test "an empty trace, and no trace at all" {
    : >empty
    "$ZTDECODE" summary empty >page
    grep -q '^lines  *0: 0 with messages' page
    is "$(section Calls page)" "  none"
    is "$(section Findings page)" "  0 errors, 0 warnings, 0 notes"
    printf 'nothing\nof the kind\n' >text
    run "$ZTDECODE" summary text
    is "$status" 0
    has "$output" "2 no trace line"
}

@test "no line is longer than the page, and nothing is cut" {
    "$ZTDECODE" summary "$SOURCE"/tests/golden/every-*.spzt >page 2>/dev/null
    is "$(awk 'length($0) > 80 && $0 !~ /^ {27}[^ ]*$/ && $0 !~ /\// { print }' page)" ""
    for name in $("$ZTDECODE" --format ndjson "$SOURCE/tests/golden/every-digital.spzt" 2>/dev/null | jq -r '.message // empty' | sort -u); do
        grep -q "[ ]$name [0-9]" page || {
            echo "no $name"
            return 1
        }
    done
}

@test "what a trace brings along stays words" {
    printf '\033[31m 000001S 01 2b\n' >$'odd\033name'
    "$ZTDECODE" summary $'odd\033name' >page 2>/dev/null
    is "$(grep -c $'\033' page || true)" 0
    has "$(head -1 page)" 'odd\x1bname'
}

@test "bad input and bad usage" {
    run "$ZTDECODE" summary nowhere
    is "$status" 2
    has "$output" "nowhere: No such file"
    for row in "--format csv" "--max-loss none" "--no-such-option" "-c"; do
        run "$ZTDECODE" summary $row
        is "$row: $status" "$row: 2"
    done
    printf '000001S 05 21\n000001S 01 2b\n' >refused
    run --separate-stderr "$ZTDECODE" summary refused
    is "$status" 0
    has "$output" "1 refused"
    has "$stderr" "refused:1"
    head -c 100000 /dev/urandom >noise
    run "$ZTDECODE" summary noise
    [ "$status" -le 2 ]
}
