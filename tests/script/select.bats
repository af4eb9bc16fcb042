#!/usr/bin/env bats
# Which messages the options of the group Selection show. ZTDECODE is the command.

load support

# Each trace line has its number in front: shown is what numbers come out.
setup() {
    cd "$BATS_TEST_TMPDIR"
    cat >trace <<'END'
000001S 01 2a
000002R 02 03 0a
# a comment
000003S 02 14 20
000004S 05 14 11 21 03 07
000005S 02 03
000006S 03 21 04 03
000007S 02 21 1d
000008S 02 25 00
000009S 0b 13 01 02 00 02 75 30 05 01 14 63
END
}

# shown OPTION...: the numbers of the lines that are shown, and the exit status.
shown() {
    local status=0
    "$ZTDECODE" "$@" trace >output 2>errors || status=$?
    echo "$(sed -n 's/^00000\([0-9]\).*/\1/p' output | tr '\n' ' ')$status"
}

# The conditions, and the messages that they hold for by themselves. 4c is the message that the hub's message 4
# carries; 5r is a line that is refused.
conditions=(
    "--link digital|1 2 4c 6 7 8"
    "--link ip,hub|3 4 9"
    "--message led|4c 6 7"
    "--from-system|1 3 4 4c 6 7 8 9"
    "--to-system|2"
    "--grep led|2 4 4c 6 7"
    "--unknown|7 9"
    "--missing|9"
    "--refused|5r"
    "--where length>2|4 4c 6 9"
    "--where field('led')=3|6"
    "--where fields->>'led'=7|4c"
    "--where depth=0|1 2 3 4 6 7 8 9"
    "--where parent='to_set'|4c"
)

# What is shown of messages: theirs lines, and 0 or 1.
lines_of() {
    local lines
    lines=$(printf '%s\n' "$@" | sed -n 's/^\([0-9]\).*/\1/p' | sort -u | tr '\n' ' ')
    [ -n "$lines" ] && echo "${lines}0" || echo 1
}

both_of() {
    comm -12 <(tr ' ' '\n' <<<"$1" | sort) <(tr ' ' '\n' <<<"$2" | sort) | tr '\n' ' '
}

@test "each condition alone" {
    for row in "${conditions[@]}"; do
        echo "${row%%|*}"
        # shellcheck disable=SC2046,SC2086
        is "$(shown ${row%%|*})" "$(lines_of ${row#*|})"
    done
}

@test "each condition with each other one: both hold for one and the same message" {
    for i in "${!conditions[@]}"; do
        for b in "${conditions[@]:i}"; do
            a=${conditions[i]}
            # Two lists of the same option are one list.
            [ "${a%% *}" != "${b%% *}" ] || [ "${a%% *}" = --where ] || continue
            case "${a%%|*} ${b%%|*}" in
                *-system*-system) continue ;;
            esac
            echo "${a%%|*} ${b%%|*}"
            # shellcheck disable=SC2046,SC2086
            is "$(shown ${a%%|*} ${b%%|*})" "$(lines_of $(both_of "${a#*|}" "${b#*|}"))"
        done
    done
}

@test "--invert shows the other messages, and no line that is refused" {
    is "$(shown --invert --link digital)" "3 9 0"
    is "$(shown --invert --link digital --grep bizarre)" "1 2 3 4 6 8 9 0"
    is "$(shown --invert --where 'depth = 0')" "1"
    is "$(shown --invert --refused)" "1 2 3 4 6 7 8 9 0"
}

@test "lists of an option that is given twice are one, expressions all have to hold" {
    is "$(shown --link ip --link hub)" "3 4 9 0"
    is "$(shown --message led --message version_inquiry)" "1 3 4 6 7 0"
    is "$(shown --grep led --grep red)" "4 0"
    is "$(shown --where "link = 'digital'" --where "message = 'led' OR depth = 0")" "1 2 4 6 7 8 0"
}

@test "what is shown is what stands there without a selection" {
    "$ZTDECODE" trace >whole 2>errors || true
    "$ZTDECODE" --message to_set trace >output 2>errors
    is "$(cat output)" "$(sed -n '/^000004/,/^000005/p' whole | sed '$d')"
    is "$(cat output)" "$(printf '000004S 05 14 11 21 03 07\n\tHUB -  to set 2\t- red led 7 slow flash')"
    is "$("$ZTDECODE" --message to_set --no-input trace 2>errors)" \
        "$(printf '\tHUB -  to set 2\t- red led 7 slow flash')"
}

@test "in every format" {
    "$ZTDECODE" --format ndjson trace >whole 2>errors || true
    "$ZTDECODE" --format ndjson --link hub trace >output 2>errors
    is "$(cat output)" "$(jq -c 'select(.link == "hub")' whole)"
    "$ZTDECODE" --format ndjson --explain --where "field('led') = 3" trace >output 2>errors
    is "$(jq -r '.fields_detail[0].bytes | tojson' output)" '[[2,2]]'
    "$ZTDECODE" --explain --where "field('led') = 3" trace >output 2>errors
    is "$(grep -c unused output)" 1
    "$ZTDECODE" --format ndjson --refused trace >output 2>errors
    is "$(jq -r '.kind + " " + .reason' output)" "refused too_short"
    is "$("$ZTDECODE" --color always --grep '^.- green' --no-input trace 2>errors)" \
        "$("$ZTDECODE" --color always --no-input trace 2>errors | sed -n '/green led/p')"
}

@test "what decoders trace on the side stands above the text of its message" {
    "$ZTDECODE" --debug --no-input trace >whole 2>errors || true
    "$ZTDECODE" --debug --no-input --message disable_dtmf trace >output 2>errors
    is "$(cat output)" "$(grep -B 2 'disable DTMF' whole)"
    "$ZTDECODE" --debug --format ndjson --message disable_dtmf trace >output 2>errors
    is "$(jq -r .kind output | tr '\n' ' ')" "trace message "
}

@test "--audio-only leaves no other messages" {
    printf '000001S 02 32 00\n000002S 01 2a\n' >audio
    is "$("$ZTDECODE" --audio-only --count audio)" 1
    is "$("$ZTDECODE" --audio-only --no-input --from-system -C 1 audio)" \
        "$("$ZTDECODE" --audio-only --no-input audio)"
}

@test "--count" {
    is "$("$ZTDECODE" --count --link digital trace 2>errors)" 6
    is "$("$ZTDECODE" --count --refused trace 2>errors)" 1
    is "$("$ZTDECODE" --count trace 2>errors)" 8
    cp trace other
    is "$("$ZTDECODE" --count --link ip trace other 2>errors)" "$(printf 'trace:1\nother:1')"
    is "$("$ZTDECODE" --count --max-count 4 --link digital trace 2>errors)" 4
    run "$ZTDECODE" --count --link osi trace
    [ "$status" -eq 1 ]
    is "${lines[-1]}" 0
}

@test "--max-count ends a file, behind the context that was asked for" {
    is "$(shown --max-count 2 --link digital)" "1 2 0"
    is "$(shown --max-count 1 --link hub -A 2)" "3 0" # 4 would match
    is "$(shown --max-count 1 --message disable_dtmf -A 2)" "8 9 0"
    is "$(shown --max-count 1 --message disable_dtmf -C 1)" "7 8 9 0"
    cp trace other
    is "$("$ZTDECODE" --max-count 1 --no-input --link digital trace other 2>errors)" \
        "$(printf '\t- version inquiry\n\t- version inquiry')"
}

@test "context" {
    is "$(shown -A 1 --to-system)" "2 3 0"
    is "$(shown -B 1 --to-system)" "1 2 0"
    is "$(shown -C 1 --to-system)" "1 2 3 0"
    is "$(shown -C 1 -A 2 --to-system)" "1 2 3 4 0"
    is "$(shown -B 9 --link ip)" "1 2 3 4 6 7 8 9 0"
    "$ZTDECODE" -A 1 --where "message = 'digit_dialled' OR message = 'disable_dtmf'" --no-input trace >output 2>errors
    is "$(cut -c 1-12 output | head -n 5)" \
        "$(printf '\t- digit dialed '"'*'"'\n\tHUB - version inquir\n--\n\t- disable DTMF\n\tIP - start RTP' | cut -c 1-12)"
    # Groups that touch each other are one.
    is "$("$ZTDECODE" -C 1 --link hub trace 2>errors | grep -c '^--$')" 0
    # JSON has no lines between its objects.
    "$ZTDECODE" -B 1 --grep 'digit|DTMF' --format ndjson trace 2>errors | jq -r .line >output
    is "$(tr '\n' ' ' <output)" "1 2 8 9 "
    # A refused line asked for has messages around it.
    is "$(shown -C 1 --refused)" "4 5 6 0"
}

@test "a line with several messages is shown once, above those that are asked for" {
    printf 'zt 02 00 03 0a 01 00 2a 03 00 21 04 03\n' >several
    is "$("$ZTDECODE" --grep 'reset|green' several)" \
        "$(printf 'zt 02 00 03 0a 01 00 2a 03 00 21 04 03\n\t- software reset\n\t- green led 3 ON')"
    is "$("$ZTDECODE" --grep green several)" \
        "$(printf 'zt 02 00 03 0a 01 00 2a 03 00 21 04 03\n\t- green led 3 ON')"
    is "$("$ZTDECODE" --grep green -B 1 several)" \
        "$(printf 'zt 02 00 03 0a 01 00 2a 03 00 21 04 03\n\t- version inquiry\n\t- green led 3 ON')"
    is "$("$ZTDECODE" --count several)" 3
}

@test "a message of a binary file" {
    printf '\001\052\002\003\012' >binary
    is "$("$ZTDECODE" --layout bin1 --direction to --grep dialed binary)" \
        "$(printf 'zt 02 00 03 0a\n\t- digit dialed '"'*'")"
}

@test "messages that are not shown teach what they teach" {
    # The second of two segments; the first one is not asked for.
    "$ZTDECODE" "$EXAMPLE" >whole
    for link in digital ip he hub call_server presentation_server; do
        "$ZTDECODE" --link "$link" --format ndjson "$EXAMPLE" |
            jq -c 'select(.kind == "message") | [.line, .text]' >output
        "$ZTDECODE" --format ndjson "$EXAMPLE" |
            jq -c --arg link "$link" 'select(.kind == "message" and any(recurse(.parts[]); .link == $link)) | [.line, .text]' >expected
        [ -s expected ] || [ "$link" = he ]
        is "$(cat output)" "$(cat expected)"
    done
}

@test "columns are what records say" {
    "$ZTDECODE" --format ndjson "$EXAMPLE" | jq -r 'select(.kind == "message") |
        [.line, .columns, .direction, .link, .message, .code, .status, .length, .bytes, .unknown, .missing] | @json' |
        while read -r row; do
            condition=$(jq -r '"line = \(.[0]) AND columns = '"'"'\(.[1])'"'"' AND direction = '"'"'\(.[2])'"'"' AND link = '"'"'\(.[3])'"'"'" +
                (if .[4] then " AND message = '"'"'\(.[4])'"'"'" else " AND message IS NULL" end) +
                (if .[5] then " AND code = \(.[5])" else " AND code IS NULL" end) +
                " AND status = '"'"'\(.[6])'"'"' AND length = \(.[7]) AND hex = '"'"'\(.[8])'"'"' AND lower(hex(bytes)) = hex" +
                " AND unknown = \(.[9]) AND missing = \(.[10]) AND time IS NULL AND depth = 0 AND parent IS NULL"' <<<"$row")
            echo "$condition"
            is "$("$ZTDECODE" --count --where "$condition" "$EXAMPLE")" 1
        done
}

@test "fields and field say the same as records" {
    "$ZTDECODE" --format ndjson "$EXAMPLE" |
        jq -r 'select(.kind == "message" and .message == "start_rtp") | .fields | tojson' >expected
    json=$(sed "s/'/''/g" expected)
    is "$("$ZTDECODE" --count --where "fields = '$json'" "$EXAMPLE")" "$(wc -l <expected)"
    is "$("$ZTDECODE" --count --where "message = 'start_rtp' AND field('codec') = fields ->> 'codec' AND
        field('remote_udp_port') = 32000 AND typeof(field('remote_udp_port')) = 'integer' AND
        field('led') IS NULL AND file LIKE '%.spzt'" "$EXAMPLE")" 1
    # Half decibels are numbers, a flag is 0 or 1.
    printf '000001S 04 29 13 06 f3\n' >voice
    "$ZTDECODE" --format ndjson voice | jq -c .fields
    is "$("$ZTDECODE" --count --where "EXISTS (SELECT 1 FROM json_each(fields) WHERE value = -6.5 AND field(key) = -6.5)" voice)" 1
}

@test "an expression over what other messages said is computed anew for each" {
    is "$(shown --where "(SELECT field('led')) = 7")" "4 0"
    is "$(shown --where "(SELECT max(value) FROM json_each(fields)) = 99")" "1" # 'both directions' is more
    is "$(shown --where "EXISTS (SELECT 1 FROM json_each(fields) WHERE key = 'unknown_code' AND value = 99)")" "9 0"
}

@test "REGEXP, LIKE and GLOB" {
    is "$(shown --where "text REGEXP '^.- green'")" "6 0"
    is "$(shown --where "text REGEXP '^.\.\.\. payload'")" "9 0" # ^ is the beginning of each line
    is "$(shown --where "text LIKE '%VERSION%'")" "1 3 0"
    is "$(shown --where "text GLOB '*version*'")" "1 3 0"
    is "$(shown --where "text NOT REGEXP 'e'")" "1"
    is "$(shown --where "message REGEXP '^led$' AND NOT unknown")" "4 6 0"
    is "$(shown --grep '(?i)DTMF$')" "8 0"
}

@test "several files, and several at once" {
    cp trace other
    printf '000001S 01 46\n' >none
    "$ZTDECODE" --link ip -C 1 trace none other >one 2>errors
    "$ZTDECODE" --jobs 3 --link ip -C 1 trace none other >several 2>errors
    is "$(cat several)" "$(cat one)"
    is "$("$ZTDECODE" --jobs 3 --count --where "link = 'ip'" trace none other 2>errors)" \
        "$(printf 'trace:1\nnone:0\nother:1')"
    is "$("$ZTDECODE" --count --where "file = 'other' AND link = 'ip'" trace other 2>errors)" \
        "$(printf 'trace:0\nother:1')"
}

@test "the exit status" {
    status=0; "$ZTDECODE" --link ip trace >output 2>errors || status=$?
    is "$status" 0 # though a line is refused,
    grep -q 'trace:6:9: the length says 2 bytes, the line has 1' errors # and named
    status=0; "$ZTDECODE" --link osi trace >output 2>errors || status=$?
    is "$status" 1
    is "$(cat output)" ""
    for jobs in 1 2; do
        cp trace other
        status=0; "$ZTDECODE" --jobs "$jobs" --link ip trace not-there >output 2>errors || status=$?
        is "$status" 2
        printf '000001S 01 2a\n' >without
        status=0; "$ZTDECODE" --jobs "$jobs" --link ip without trace >output 2>errors || status=$?
        is "$status" 0
        status=0; "$ZTDECODE" --jobs "$jobs" --link ip without without >output 2>errors || status=$?
        is "$status" 1
    done
    # Without a selection it is what it was.
    status=0; "$ZTDECODE" trace >output 2>errors || status=$?
    is "$status" 1
}

# refused EXPECTED OPTION...: before any file is read, with status 2 and this on standard error.
refused() {
    local expected=$1 status=0
    shift
    "$ZTDECODE" "$@" not-there >output 2>errors || status=$?
    is "$status" 2
    is "$(cat output)" ""
    is "$(cat errors)" "$(printf '%b' "$expected")"
}

@test "a wrong expression is refused before any file is read, with a caret at the place" {
    refused "ztdecode: --where: no such column: lnik (did you mean link?)\n    lnik = 'ip'\n    ^" --where "lnik = 'ip'"
    refused "ztdecode: --where: no such column: ip (texts stand in single quotes: 'ip')\n    link = \"ip\"\n           ^" \
        --where 'link = "ip"'
    refused "ztdecode: --where: no such column: codec (of a message's values: field('codec'))\n    link = 'ip' AND codec = 1\n                    ^" \
        --where "link = 'ip' AND codec = 1"
    refused "ztdecode: --where: near \"=\": syntax error\n    link = = 'ip'\n           ^" --where "link = = 'ip'"
    refused "ztdecode: --where: this parenthesis closes none\n    1) OR (1\n     ^" --where "1) OR (1"
    refused "ztdecode: --where: a parenthesis is not closed" --where "(link = 'ip'"
    refused "ztdecode: --where: there is no expression" --where " "
    refused "ztdecode: --where: REGEXP: missing ): (\n    text REGEXP '('\n                 ^" --where "text REGEXP '('"
    refused "ztdecode: --where: there is nothing that a parameter could stand for" --where "link = ?"
    # Of several the wrong one, and of several lines the wrong one.
    refused "ztdecode: --where: no such column: b\n    b = 1\n    ^" --where "link = 'ip'" --where "link = 'ip' AND
b = 1"
}

@test "an expression sees the message at hand and does nothing else" {
    touch victim
    before=$(ls -a)
    for expression in "load_extension('./victim')" "(SELECT count(*) FROM sqlite_master)" \
        "(SELECT count(*) FROM sqlite_schema)" "(SELECT 1 FROM pragma_database_list)" "(SELECT 1 FROM messages)" \
        "1; DELETE FROM messages" "1; ATTACH 'victim' AS v" "writefile('victim', 'x')" "readfile('victim')" \
        "(PRAGMA user_version)" "count(*) > 0" "row_number() OVER () = 1" "raise(ABORT, 'x')" "fts3_tokenizer('x')" \
        "(WITH m AS (SELECT * FROM messages) SELECT count(*) FROM m)" "link = :a" "1 UNION SELECT 1"; do
        echo "$expression"
        run "$ZTDECODE" --where "$expression" trace
        [ "$status" -eq 2 ]
        [[ "${lines[0]}" == "ztdecode: --where: "* ]]
    done
    is "$(ls -a)" "$before"
    [ ! -s victim ]
}

@test "names that do not exist are refused with the nearest one" {
    refused "ztdecode: --link: no link is called pi (did you mean ip?)" --link pi
    refused "ztdecode: --link: no link is called nonsense" --link ip,nonsense
    refused "ztdecode: --message: no message is called strt_rtp (did you mean start_rtp?)" --message strt_rtp
    refused "ztdecode: --grep: missing ): (" --grep "("
    refused "ztdecode: --to-system: no message goes both ways, and --from-system is asked for as well" \
        --from-system --to-system
    for value in -1 x 1x '' 100001; do
        run "$ZTDECODE" "-A=$value" trace
        [ "$status" -eq 2 ]
    done
    run "$ZTDECODE" --max-count 0 trace
    [ "$status" -eq 2 ]
    run "$ZTDECODE" --where
    [ "$status" -eq 2 ]
}

@test "a field that no message has is a warning" {
    run "$ZTDECODE" --count --where "field('codc') = 1" --where "fields ->> 'ledd' IS NULL" trace
    is "${lines[0]}" "ztdecode: --where: no message has a field codc (did you mean codec?)"
    is "${lines[1]}" "ztdecode: --where: no message has a field ledd (did you mean led?)"
    is "${lines[-1]}" 0
    [ "$status" -eq 1 ]
}

@test "an expression that fails on a message names it and ends the file" {
    for jobs in 1 2; do
        cp trace other
        run "$ZTDECODE" --jobs "$jobs" --where "json_extract(text, '$.a') = 1" trace other
        [ "$status" -eq 2 ]
        is "${#lines[@]}" 2
        is "${lines[0]}" "ztdecode: trace:1: --where: malformed JSON"
        is "${lines[1]}" "ztdecode: other:1: --where: malformed JSON"
    done
}

@test "expressions have bounds" {
    deep=$(printf '%05000d' 0 | tr 0 '(')1$(printf '%05000d' 0 | tr 0 ')')
    run "$ZTDECODE" --where "$deep" trace
    [ "$status" -eq 2 ]
    many=1$(printf '%05000d' 0 | sed 's/0/ AND 1/g')
    run "$ZTDECODE" --where "$many" trace
    [ "$status" -eq 2 ]
    [[ "${lines[0]}" == "ztdecode: --where: "* ]]
    run "$ZTDECODE" --grep '((((a{100}){100}){100}){100})' trace
    [ "$status" -eq 2 ]
    [[ "${lines[0]}" == "ztdecode: --grep: "* ]]
    long=$(printf '%070000d' 0)
    run "$ZTDECODE" --grep "$long" trace
    [ "$status" -eq 2 ]
    is "${lines[0]}" "ztdecode: --grep: the regular expression is longer than 64 KiB"
    # Exponential for engines that try one way after the other.
    printf '000001S 41 27 00%s\n' "$(printf ' 61%.0s' {1..63})" >letters
    is "$(timeout 10 "$ZTDECODE" --count --where "text REGEXP '(a*)*(a*)*(a|aa)+\$x'" letters)" 0
}

@test "a message that names a class that does not exist is refused, and asked like others" {
    printf '000001S 03 16 00 04\n000002S 01 2a\n' >class
    for selection in "--refused" "--where status='refused'" "--link presentation_server" "--grep RYM"; do
        # shellcheck disable=SC2086
        is "$("$ZTDECODE" $selection class 2>errors)" "000001S 03 16 00 04"
        is "$(cat errors)" "$("$ZTDECODE" class 2>&1 >output)"
        # shellcheck disable=SC2086
        is "$("$ZTDECODE" --format ndjson $selection class 2>errors | jq -r .reason)" unknown_class
    done
    is "$("$ZTDECODE" --no-input --invert --refused class 2>errors)" "$(printf '\t- version inquiry')"
    is "$("$ZTDECODE" --no-input --link digital class 2>errors)" "$(printf '\t- version inquiry')"
    is "$(wc -l <errors)" 2 # though it is not shown
}

@test "the time that a trace gives can be asked for, in packed traces too" {
    printf '%s\n' '07:45:02.5 000119S 03 21 04 03' '07:46:00.0 000120R 02 03 0a' '000121R 02 03 0a' | gzip >timed
    is "$("$ZTDECODE" --where "time < '07:46'" timed)" "$(printf '07:45:02.5 000119S 03 21 04 03\n\t- green led 3 ON')"
    is "$("$ZTDECODE" --count --where 'time IS NULL' timed)" 1
    tar cf packed timed trace
    is "$("$ZTDECODE" --count --link digital packed 2>errors)" "$(printf 'packed/timed:3\npacked/trace:6')"
    is "$("$ZTDECODE" --format csv --sql 'select line, time from messages' timed | tr -d '\r')" \
        "$(printf 'line,time\n1,07:45:02.5\n2,07:46:00.0\n3,')"
}

@test "what became of all messages is not asked of some" {
    refused 'ztdecode: --check: says what became of all messages, a selection has no place beside it\nztdecode --help says how it is used' \
        --check --link ip
}
