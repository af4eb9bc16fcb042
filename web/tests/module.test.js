import assert from "node:assert/strict";
import { existsSync } from "node:fs";
import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { changedLines, goldenTraces, root, unnamedRows, written } from "./support.js";

// The module says what the command says: texts, values and ranges.

const folder = process.env.ZTDECODE_MODULE ?? join(root, "build", "web", "package");
const { Session, decode, version } = await import(join(folder, "ztdecode.mjs"));

function asRecord(message) {
    return {
        direction: message.direction,
        link: message.link,
        message: message.message,
        code: message.code,
        status: message.status,
        length: message.length,
        bytes: Buffer.from(message.bytes).toString("hex"),
        text: message.text,
        unknown: message.unknown,
        missing: message.missing,
        segments: message.segments,
        words: message.words.map(({ text, begin, end, bytes, field, missing }) => ({ text, begin, end, bytes, field, missing })),
        fields: message.fields.map((field) => ({
            name: field.name, kind: field.kind, unit: field.unit, code: field.code, known: field.known, missing: field.missing,
            value: field.kind === "number" ? String(Number(field.value)) : field.value,
            sensitivity: field.sensitivity, begin: field.begin, end: field.end, bytes: field.bytes,
        })),
        parts: message.parts.map(asRecord),
    };
}

function asked(row) {
    return {
        direction: row.direction,
        link: row.link ?? "",
        message: row.message,
        code: row.code,
        status: row.status,
        length: row.length,
        bytes: row.bytes,
        text: row.text,
        unknown: row.unknown,
        missing: row.missing,
        segments: row.segments ?? [],
        words: row.words.map((word) => ({
            text: word.text, begin: word.begin, end: word.end, bytes: word.bytes, field: word.field ?? null, missing: word.missing ?? false,
        })),
        fields: row.fields_detail.map((field) => ({
            name: field.name, kind: field.kind, unit: field.unit, code: field.code, known: field.known, missing: field.missing,
            value: String(field.value), sensitivity: field.sensitivity, begin: field.begin, end: field.end, bytes: field.bytes,
        })),
        parts: row.parts.map(asked),
    };
}

// Lines end as the command has them; the last one is no line when it is empty.
function linesOf(file) {
    const lines = readFileSync(file, "latin1").split("\n");
    if (lines.at(-1) === "") lines.pop();
    return lines.map((line) => Buffer.from(line, "latin1"));
}

function check(file) {
    const rows = unnamedRows(file);
    const session = new Session();
    let next = 0;
    let messages = 0;
    for (const line of linesOf(file)) {
        const fed = session.feed(line);
        for (const message of fed.messages) {
            const row = rows[next++];
            const place = `${file}:${row.line}`;
            assert.equal(fed.place, row.line, place);
            assert.deepEqual(asRecord(message), asked(row), place);
            ++messages;
        }
        if (fed.messages.length > 0 && !fed.refusal) continue;
        const row = rows[next++];
        assert.equal(row.kind, fed.refusal ? "refused" : "other", `${file}:${row.line}`);
        if (fed.refusal) assert.equal(fed.refusal.reason, row.reason);
    }
    assert.equal(next, rows.length);
    session.close();
    return messages;
}

for (const file of goldenTraces()) test(`messages of ${file.split("/").pop()}`, () => assert.ok(check(file) > 0));

test("ten thousand changed messages", () => {
    assert.ok(check(written("changed.spzt", changedLines(10000).join("\n") + "\n")) > 9000);
});

test("a message by itself, and what is wrong with arguments", () => {
    const message = decode([0x21, 0x04, 0x03]);
    assert.equal(message.text, "\t- green led 3 ON");
    assert.deepEqual(message.fields.map(({ name, value, bytes }) => [name, value, bytes]), [["led", "3", [[2, 2]]]]);
    assert.equal(decode([0x03, 0x0a], "to").text, "\t- digit dialed '*'");
    assert.throws(() => decode([1], "up"), RangeError);
    assert.throws(() => new Session({ layout: "lime" }), RangeError);
    const session = new Session({ layout: "zt" });
    assert.equal(session.feed("zt 03 21 04").refusal.reason, "too_short");
    session.close();
    session.close();
    assert.throws(() => session.feed(""), /closed/);
    assert.match(version, /^\d+\.\d+\.\d+$/);
});

test("a hundred thousand lines take no more memory than a few", () => {
    const session = new Session({ words: false });
    for (let k = 0; k < 100_000; ++k) session.feed("081211S 03 21 04 03");
    session.close();
    for (let k = 0; k < 2000; ++k) new Session().close();
});

test("the package has what it needs, and its types fit", () => {
    const said = JSON.parse(execFileSync("npm", ["pack", "--dry-run", "--json"], { cwd: folder, stdio: ["ignore", "pipe", "ignore"] }));
    assert.deepEqual(said[0].files.map((file) => file.path).sort(), [
        "LICENSE", "README.md", "decoder.mjs", "package.json", "ztdecode.d.mts", "ztdecode.mjs",
    ]);
    const use = written("use.mts", `import { decode, Session, type Message } from ${JSON.stringify(join(folder, "ztdecode.mjs"))};
const message: Message = decode([1, 2]);
const names: string[] = new Session({ pad: true }).feed("x").messages.flatMap((one) => one.fields.map((field) => field.name));
console.log(message.text, names);
// @ts-expect-error there is no such direction
decode([1], "up");
`);
    const tsc = join(root, "web", "node_modules", ".bin", "tsc");
    execFileSync(tsc, ["--noEmit", "--strict", "--skipLibCheck", "--module", "nodenext", "--target", "es2022", use], { stdio: "inherit" });
    assert.ok(existsSync(join(folder, "decoder.mjs")));
});
