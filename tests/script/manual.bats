#!/usr/bin/env bats
# The manual pages: what they say of options and functions is what there is, and formatters have no complaint. ZTDECODE is
# the command.

setup() {
    root=$BATS_TEST_DIRNAME/../..
    pages=$root/docs/man
    cd "$BATS_TEST_TMPDIR"
}

# The options that a help defines, each on a line: "  -h, --help   say this".
options_of_help() {
    sed -n 's/^  \(-[^ ]*\( --[^ ]*\)\?\).*/\1/p' | grep -o -e '--\?[A-Za-z][a-z0-9-]*' | sort -u
}

# Those that a page defines: "*-h*, *--help*" or "*--layout* _LAYOUT_".
options_of_page() {
    grep '^\*-' "$1" | grep -o -e '\*--\?[A-Za-z][a-z0-9-]*' | tr -d '*' | sort -u
}

@test "every option of a help is in its page, and the other way round" {
    "$ZTDECODE" --help >main.help
    [ "$(options_of_help <main.help | wc -l)" -ge 30 ]
    for page in "$pages"/ztdecode.1.scd "$pages"/ztdecode-*.1.scd; do
        [ -f "$page" ] || continue
        command=${page##*/ztdecode}
        command=${command%.1.scd}
        command=${command#-}
        "$ZTDECODE" ${command:+"$command"} --help >help
        options_of_help <help >expected
        [ -s expected ]
        options_of_page "$page" >found
        diff -u --label "ztdecode $command --help" --label "${page##*/}" expected found
    done
}

@test "a subcommand in the help has a page" {
    sed -n '/^Subcommands:/,/^$/s/^  \([a-z][a-z-]*\) .*/\1/p' <("$ZTDECODE" --help) >subcommands
    while read -r command; do
        [ -f "$pages/ztdecode-$command.1.scd" ] || {
            echo "ztdecode $command has no page"
            return 1
        }
    done <subcommands
}

# Whatever a page mentions with two dashes.
@test "no page speaks of an option that there is not" {
    for page in "$pages"/ztdecode*.scd; do
        name=${page##*/}
        command=$(echo "${name#ztdecode}" | sed -n 's/^-\(.*\)\.1\.scd$/\1/p')
        {
            "$ZTDECODE" --help
            [ -z "$command" ] || "$ZTDECODE" "$command" --help
        } | grep -o -e '--[a-z][a-z0-9-]*' | sort -u >known
        sed 's/pkg-config --[a-z]* --[a-z]*//' "$page" | grep -o -e '--[a-z][a-z0-9-]*' | sort -u >mentioned
        [ -z "$(comm -13 known mentioned)" ] || {
            echo "$name: $(comm -13 known mentioned)"
            return 1
        }
    done
}

@test "ztdecode(3) has every function and every datum" {
    while read -r name _; do
        case $name in Tab_*) name=Tab_ ;; esac
        grep -qE "[* (]$name[(*\\]" "$pages/ztdecode.3.scd" || {
            echo "ztdecode.3.scd does not have $name"
            return 1
        }
    done <"$root/tests/contract/exports.txt"
}

@test "ztdecode-record(5) has every key of the schema and every field" {
    jq -r '."$defs" | .message, .refused, .catalog, .word, .field | .properties | keys[]' "$root/docs/record.schema.json" |
        sort -u >keys
    [ "$(wc -l <keys)" -ge 30 ]
    while read -r key; do
        grep -qw -e "$key" "$pages/ztdecode-record.5.scd" || {
            echo "ztdecode-record.5.scd does not have $key"
            return 1
        }
    done <keys
    "$root/scripts/man-page" "$pages/ztdecode-record.5.scd" 1.2.3 >page
    head -n 1 page | grep -q 'ztdecode 1\.2\.3'
    [ "$(grep -c '^\*[a-z0-9_]*\*$' page)" -ge 500 ]
    grep -A 1 '^\*remote_ip\*$' page | grep -q '; address$'
}

@test "the tables and views of a database have the columns of ztdecode-record(5)" {
    "$ZTDECODE" --database office.db "$EXAMPLE"
    for table in messages fields lines files; do
        "$ZTDECODE" --database office.db --format csv --sql "select * from $table limit 1" | head -n 1 | tr -d '\r' |
            tr , '\n' >columns
        [ -s columns ]
        awk -v begin="*$table*" '/^# DATABASE/ { there = 1 } there && $0 == begin { on = 1; next } on && /^$/ { exit } on' \
            "$pages/ztdecode-record.5.scd" >said
        while read -r column; do
            grep -q "\*$column\*" said || {
                echo "$table: $column"
                return 1
            }
        done <columns
    done
}

# scdoc writes a paragraph's macro in front of indented ones: nobody sees it.
@test "formatters have nothing to complain of" {
    for page in "$pages"/*.scd; do
        name=${page##*/}
        name=${name%.scd}
        "$root/scripts/man-page" "$page" 1.2.3 | scdoc >"$name"
        mandoc -T lint -W warning "$name" | grep -v 'skipping paragraph macro: PP' >complaints || true
        groff -t -ww -man -Tutf8 "$name" 2>>complaints >text
        [ ! -s complaints ] || {
            cat complaints
            return 1
        }
        # A line of a literal that is too long for 80 columns is broken by nobody.
        groff -t -man -Tascii -P-c -P-b -P-o -P-u -rLL=78n "$name" | awk -v page="$name" '
            length($0) > 80 { print page ": " $0; failed = 1 }
            END { exit failed }'
    done
}

@test "lines that ztdecode-trace(5) shows are read" {
    awk '/^\t*```/ { on = !on; next } on { sub(/^\t+/, ""); print }' "$pages/ztdecode-trace.5.scd" |
        grep -E '(^|[]:RS0-9] )[0-9a-f]{2}( [0-9a-f]{2})+$' | grep -v '^081231S 03' >lines
    [ "$(wc -l <lines)" -ge 14 ]
    "$ZTDECODE" --check lines >sums
    grep -q "^lines: $(wc -l <lines) lines = $(wc -l <lines) with messages + 0 refused" sums
    printf '%s\n' '081231S 03 21 04' '081231S 02 21 x4' >refused
    "$ZTDECODE" refused >/dev/null 2>said || true
    sed 's/^ztdecode: refused:[0-9:]* //' said >reasons
    grep -Fxq -f reasons <(sed 's/^\t*//' "$pages/ztdecode-trace.5.scd")
    [ "$(wc -l <reasons)" -eq 2 ]
}
