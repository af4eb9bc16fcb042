import { execFileSync, spawnSync } from "node:child_process";
import { mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { Trace } from "../records/trace.js";

// What the tests of the page share. ZTDECODE is the command, MAKE_TRACE what makes long traces.

export const root = join(dirname(fileURLToPath(import.meta.url)), "..", "..");
const build = join(root, "build", "release");
export const command = process.env.ZTDECODE ?? join(build, "ztdecode");
const makeTrace = process.env.MAKE_TRACE ?? join(build, "make-trace");
const most = 2 ** 30;

export const folder = mkdtempSync(join(tmpdir(), "page-"));
process.on("exit", () => rmSync(folder, { recursive: true, force: true }));

export function ztdecode(...args) {
    const done = spawnSync(command, args, { maxBuffer: most, cwd: root });
    if (done.status === null || done.status > 1) throw new Error(`${args.join(" ")}: ${done.stderr}`);
    return done.stdout;
}

export function written(name, content) {
    const path = join(folder, name);
    writeFileSync(path, content);
    return path;
}

export function longTrace(messages) {
    return written(`${messages}.spzt`, execFileSync(makeTrace, [String(messages)], { maxBuffer: most }));
}

// The page of these traces, as a file.
export function pageOf(...files) {
    return written(`page${pageOf.made++}.html`, ztdecode("report", ...files));
}
pageOf.made = 0;

// The trace in a page, without a browser.
export function traceOf(page) {
    const html = readFileSync(page, "utf8");
    const packed = (name) =>
        [...html.matchAll(new RegExp(`<script type="application/x-ztdecode-${name}">([^<]*)<`, "g"))].map(([, data]) => data);
    const rows = packed("rows");
    return new Trace(JSON.parse(html.match(/id="trace">([^<]*)</)[1]), (k) => rows[k], packed("kinds"));
}

export function goldenTraces() {
    const golden = join(root, "tests", "golden");
    const traces = readdirSync(golden).filter((name) => name.endsWith(".spzt")).map((name) => join(golden, name));
    return [...traces, join(root, "examples", "office.spzt")];
}

// Lines of the golden traces with bytes of other values in them, the same ones each time.
export function changedLines(count) {
    const lines = goldenTraces().flatMap((file) => readFileSync(file, "latin1").split("\n"));
    const traceLines = lines.filter((line) => /^\w{6}[SR] /.test(line));
    let seed = 20261122;
    const random = (n) => {
        seed = (Math.imul(seed, 1664525) + 1013904223) >>> 0;
        return Math.floor((seed / 2 ** 32) * n);
    };
    return Array.from({ length: count }, () => {
        const [head, ...bytes] = traceLines[random(traceLines.length)].trim().split(" ");
        for (let left = 1 + random(3); left > 0; --left)
            bytes[1 + random(bytes.length - 1)] = random(256).toString(16).padStart(2, "0");
        return [head, ...bytes].join(" ");
    });
}

// What the command says of each line where no library knows names of characters: the loader finds an empty file.
export function unnamedRows(trace) {
    written("libuninameslist.so", "");
    const done = spawnSync(command, ["--format", "ndjson", "--explain", trace], {
        maxBuffer: most, cwd: root, env: { ...process.env, LD_LIBRARY_PATH: folder },
    });
    return done.stdout.toString().trim().split("\n").map((line) => JSON.parse(line));
}
