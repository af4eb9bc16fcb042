#!/bin/sh
# usage: pictures.sh COMMAND SOURCE_DIR
# Draws the ladder of each golden trace, has Chromium lay them out, and fails where words stand on other words or outside
# their picture, or where a picture has less words than rows.
set -eu

command=$1
source=$2
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
cd "$dir"

for trace in "$source"/examples/*.spzt "$source"/tests/golden/*.spzt "$source"/tests/findings/*.fires; do
    name=$(basename "$trace")
    "$command" ladder -q --format svg --fields all -o "$name.svg" "$trace"
    "$command" ladder -q --format svg -o "$name.usual.svg" "$trace"
done
# One with times, with several traces and with words of many scripts.
{
    echo '07:45:02 000001S 0d 18 d0 bf d1 80 d0 b8 e4 bd a0 e5 a5 bd'
    echo '07:45:02.000125 000001S 0b 18 6d 6d 6d 6d 6d 6d 6d 6d 6d 6d'
} >odd
"$command" ladder --format svg --fields all -o odd.svg odd "$source/examples/office.spzt"

{
    echo '<!DOCTYPE html><meta charset="utf-8"><body>'
    for picture in *.svg; do
        echo "<h1>$picture</h1>"
        cat "$picture"
    done
    cat <<'END'
<script>
const wrong = [];
let texts = 0;
for (const svg of document.querySelectorAll("svg")) {
    const name = svg.previousElementSibling.textContent;
    const frame = svg.getBoundingClientRect();
    const all = [...svg.querySelectorAll("text")].map((t) => ({ words: t.textContent, box: t.getBoundingClientRect() }));
    texts += all.length;
    if (all.length < svg.querySelectorAll("g").length) wrong.push(name + ": rows without words");
    for (const { words, box } of all) {
        if (box.left < frame.left || box.right > frame.right || box.top < frame.top || box.bottom > frame.bottom)
            wrong.push(name + ": outside the picture: " + words);
        if (box.width < 1 || box.height < 1) wrong.push(name + ": not shown: " + words);
    }
    all.sort((a, b) => a.box.top - b.box.top);
    for (let i = 0; i < all.length; ++i) {
        for (let k = i + 1; k < all.length && all[k].box.top < all[i].box.bottom - 1; ++k) {
            const a = all[i].box, b = all[k].box;
            if (a.left < b.right - 1 && b.left < a.right - 1)
                wrong.push(name + ": on each other: " + all[i].words + " | " + all[k].words);
        }
    }
    for (const shape of svg.querySelectorAll("line, path")) {
        const box = shape.getBoundingClientRect();
        if (box.left < frame.left || box.right > frame.right || box.top < frame.top || box.bottom > frame.bottom)
            wrong.push(name + ": a line leaves the picture");
    }
}
document.body.innerHTML = "";
document.body.append("looked at " + document.title + texts + " words;" + wrong.map((w) => "\nwrong: " + w).join(""));
</script>
END
} >all.html

timeout 300 chromium --headless --no-sandbox --disable-gpu --user-data-dir="$dir/profile" --dump-dom "file://$dir/all.html" \
    >result 2>errors || {
    cat errors
    exit 1
}
texts=$(sed -n 's/.*looked at \([0-9]*\) words;.*/\1/p' result)
[ "${texts:-0}" -gt 5000 ] || {
    echo "only ${texts:-no} words were looked at"
    exit 1
}
! grep '^wrong:' result
