#!/bin/sh
# usage: database.sh COMMAND SOURCE_DIR
# The golden records as rows: each message and each message that it carries must stand in the table messages as its
# record has it, each value in fields as --explain has it, each other line in lines.
set -eu

command=$1
source=$2
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
status=0
traces=0

# same NAME: what was asked, against what stands in the record. Key by key, since numbers are written in several ways.
same() {
    if ! cmp -s "$dir/asked" "$dir/recorded"; then
        echo "$1:"
        diff "$dir/recorded" "$dir/asked" | head -n 20
        status=1
    fi
}

for record in "$source"/tests/golden/*.ndjson; do
    name=$(basename "$record" .ndjson)
    case $name in *.explained) continue ;; esac
    for trace in "$source/tests/golden/$name".* "$source/examples/$name".*; do
        case $trace in *.spzt | *.zt | *.lng2) break ;; esac
    done
    options=
    [ ! -f "$source/tests/golden/$name.options" ] || options=$(cat "$source/tests/golden/$name.options")
    cd "$(dirname "$trace")"
    trace=$(basename "$trace")
    rm -f "$dir/database"
    # Options are words.
    # shellcheck disable=SC2086
    "$command" $options --database "$dir/database" "$trace"
    ask() {
        "$command" --database "$dir/database" --format ndjson --sql "$1"
    }

    ask "select file, line, columns, time, direction, link, message, code, status, length, hex as bytes, text, fields,
        unknown, missing, coalesce(padded, 0) as padded, depth, parent from messages order by id" |
        jq -c '.fields |= fromjson' >"$dir/asked"
    jq -c 'def all($depth; $parent): . + {depth: $depth, parent: $parent},
            (.message as $name | .parts[] | all($depth + 1; $name));
        select(.kind == "message") | all(0; null) |
        {file, line, columns, time, direction, link, message, code, status, length, bytes, text, fields, unknown, missing,
            padded: (.padded // 0), depth, parent}' "$record" >"$dir/recorded"
    same "$name, messages"

    "$command" $options --format ndjson --explain "$trace" >"$dir/explained"
    ask "select m.line, f.name, f.kind, f.value, f.code, f.unit, f.sensitivity, f.known, f.missing,
        f.first_byte, f.last_byte from fields f join messages m on m.id = f.message_id order by f.place" |
        jq -c '.' >"$dir/asked"
    jq -c 'def number: if . == true then 1 elif . == false then 0 else . end;
        select(.kind == "message") | recurse(.parts[]) | .line as $line | .fields_detail[] |
        {line: $line, name, kind, value: (.value | number), code, unit, sensitivity, known: (.known | number),
            missing: (.missing | number), first_byte: .bytes[0][0], last_byte: (.bytes[-1] // [])[1]}' \
        "$dir/explained" >"$dir/recorded"
    same "$name, fields"

    ask "select line, content from lines order by line" >"$dir/asked"
    jq -c 'select(.kind != "message") | {line, content}' "$record" >"$dir/recorded"
    same "$name, lines"
    traces=$((traces + 1))
done
[ "$traces" -ge 15 ] || {
    echo "only $traces traces found"
    status=1
}
exit $status
