import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import { changedLines, goldenTraces, pageOf, traceOf, written, ztdecode } from "./support.js";

// What the page holds is what the command says as NDJSON.

function shownRows(trace) {
    const lines = ztdecode("--format", "ndjson", "--explain", trace).toString().trim().split("\n");
    return lines.map((line) => JSON.parse(line)).filter((row) => row.kind === "message" || row.content !== "");
}

function checkPart(trace, message, index, wanted, place) {
    const part = message.parts[index];
    assert.equal(part.link, wanted.link ?? "", place);
    assert.equal(part.name, wanted.message ?? "", place);
    assert.equal(part.code, wanted.code, place);
    assert.equal(["from", "to"][part.direction], wanted.direction, place);
    assert.equal(part.status, wanted.status, place);
    assert.equal(part.unknown, wanted.unknown, place);
    assert.equal(part.missing, wanted.missing, place);
    assert.equal(Buffer.from(part.bytes).toString("hex"), wanted.bytes, place);
    assert.deepEqual(part.segments, wanted.segments ?? [], place);
    checkFields(trace, message, index, wanted, place);
    checkWords(message, part, index, wanted, place);
    const carried = message.parts.map((_, k) => k).filter((k) => k > 0 && message.parts[k].carrier === index);
    assert.equal(carried.length, wanted.parts.length, place);
    carried.forEach((k, nth) => checkPart(trace, message, k, wanted.parts[nth], place));
}

function checkFields(trace, message, index, wanted, place) {
    const said = message.fields.filter((field) => field.part === index).map((field) => {
        const [name, , unit] = trace.about.fields[field.name];
        const value = field.kind === "number" ? String(Number(field.value)) : field.value;
        return [name, field.kind, value, unit || null, field.code, field.known, field.missing];
    });
    const asked = wanted.fields_detail.map((field) => [
        field.name, field.kind, String(field.value), field.unit, field.code, field.known, field.missing,
    ]);
    assert.deepEqual(said, asked, place);
}

// Ranges of the page count in the bytes of a part's source, those of the record in the part.
function checkWords(message, part, index, wanted, place) {
    const words = message.words.slice(part.firstWord, part.firstWord + part.words);
    assert.equal(words.length, wanted.words.length, place);
    words.forEach((word, k) => {
        const asked = wanted.words[k];
        // A part may end within a word of its carrier.
        assert.ok(word.text === asked.text || (k === words.length - 1 && word.text.startsWith(asked.text)), place);
        assert.equal(word.missing, asked.missing ?? false, place);
        const inPart = word.source !== part.source ? [] : word.ranges
            .map(([first, last]) => [first - part.begin, last - part.begin])
            .filter(([first, last]) => first >= 0 && last < part.bytes.length);
        assert.deepEqual(inPart, asked.bytes, `${place}, part ${index}, word ${k}`);
    });
}

async function check(file) {
    const trace = traceOf(pageOf(file));
    await trace.readKinds();
    const wanted = shownRows(file);
    assert.equal(trace.size, wanted.length);
    for (let k = 0, row = 0; k + 1 < trace.firstRows.length; ++k) {
        const block = await trace.block(k);
        for (let i = 0; i < block.size; ++i, ++row) {
            const said = wanted[row];
            const place = `${file}:${said.line}`;
            assert.equal(block.lines[i], said.line, place);
            assert.equal(block.kind(i), trace.kindsOfRows[row], place);
            assert.equal(block.text(i), said.kind === "message" ? said.text : said.content, place);
            if (said.kind !== "message") continue;
            assert.equal(block.columns[i], said.columns, place);
            assert.equal(block.times[i] || null, said.time, place);
            assert.equal(block.prefixes[i], said.prefix ?? "", place);
            const message = block.message(i, trace.kinds[block.kind(i)]);
            assert.equal(message.leftOver, said.left_over ?? 0, place);
            checkPart(trace, message, 0, said, place);
        }
    }
    return trace.size;
}

for (const file of goldenTraces()) test(`rows of ${file.split("/").pop()}`, () => check(file));

test("rows behind prefixes, with times", async () => {
    const lines = readFileSync(goldenTraces().pop(), "utf8").split("\n").filter((line) => /^\d{6}[SR]/.test(line));
    const prefixed = lines.map((line, k) => `[coupler ${k % 3}] 2026-11-21T07:${String(k % 60).padStart(2, "0")}:02.${k}Z ${line}`);
    assert.equal(await check(written("prefixed", prefixed.join("\n") + "\n")), lines.length);
});

test("rows of ten thousand changed messages", () =>
    check(written("changed.spzt", changedLines(10000).join("\n") + "\n")));
