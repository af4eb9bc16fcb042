import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readFileSync, statSync } from "node:fs";
import { test } from "node:test";
import { gzipSync } from "node:zlib";
import { comesTo, opened } from "./browser.js";
import { command, longTrace, pageOf, ztdecode } from "./support.js";

// A million messages: what is waited for, and what it takes.

const million = 1_000_000;

function memoryOf(pid) {
    return Number(readFileSync(`/proc/${pid}/status`, "utf8").match(/VmHWM:\s*(\d+)/)[1]) / 1024;
}

// The renderer of a page is the one that has grown most.
function largestRenderer() {
    const lines = execFileSync("ps", ["-eo", "pid,args"]).toString().split("\n");
    const pids = lines.filter((line) => line.includes("--type=renderer")).map((line) => line.trim().split(" ")[0]);
    return Math.max(...pids.map(memoryOf));
}

test("the page of half a million messages is small, and quickly made", () => {
    const trace = longTrace(500_000);
    const taken = (work) => {
        const begin = process.hrtime.bigint();
        const result = work();
        return [result, Number(process.hrtime.bigint() - begin) / 1e6];
    };
    const [page, making] = taken(() => pageOf(trace));
    const text = ztdecode(trace);
    const [, packing] = taken(() => gzipSync(text, { level: 6 }));
    const size = statSync(page).size / statSync(trace).size;
    console.log(`page/trace ${size.toFixed(2)}, making/gzip ${(making / packing).toFixed(2)}`);
    assert.ok(size <= 0.6);
    assert.ok(making <= 2 * packing);
    // In no more memory than this, of addresses too.
    execFileSync("sh", ["-c", 'ulimit -v 262144 && "$1" report "$2" >"$3"', "sh", command, trace, page]);
});

test("a million messages are there in two seconds and scroll within a frame", async () => {
    const page = await opened(pageOf(longTrace(million)), {
        before: `(() => {
            const look = () => {
                const text = document.querySelector("#list .row:not(.waits) .text")?.textContent;
                if (text) requestAnimationFrame(() => { window.painted = performance.now(); });
                else requestAnimationFrame(look);
            };
            requestAnimationFrame(look);
        })()`,
    });
    const painted = await page.evaluate(() => window.painted);
    const steps = await page.evaluate(async () => {
        const list = document.getElementById("list");
        const times = [];
        for (let k = 0; k < 300; ++k) {
            await new Promise(requestAnimationFrame);
            const begin = performance.now();
            list.scrollTop += k % 50 === 49 ? 500_000 : 84;
            list.dispatchEvent(new Event("scroll"));
            list.getBoundingClientRect();
            document.elementFromPoint(200, 400);
            times.push(performance.now() - begin);
        }
        return times.sort((a, b) => a - b);
    });
    const memory = largestRenderer();
    console.log(`painted ${painted.toFixed(0)} ms, scroll step median ${steps[150].toFixed(1)} ms, 95 % ${steps[285].toFixed(1)} ms, memory ${memory.toFixed(0)} MB`);
    assert.ok(painted < 2000);
    assert.ok(steps[150] <= 16);
    assert.ok(memory < 1000);

    await page.focus("#list");
    await page.keyboard.press("End");
    await page.waitForFunction(() => /line 1,000,000 of/.test(document.querySelector("#message .place")?.textContent ?? ""));
    assert.equal(await page.$eval('#list .row[aria-selected="true"]', (row) => row.firstChild.textContent), "1000000");
    await page.evaluate(() => { location.hash = "#line=567890"; });
    await page.waitForFunction(() => /line 567,890 of/.test(document.querySelector("#message .place")?.textContent ?? ""));
    await page.focus("#list");
    for (let k = 0; k < 30; ++k) await page.keyboard.press("ArrowDown");
    await page.waitForFunction(() => /line 567,920 of/.test(document.querySelector("#message .place")?.textContent ?? ""));
    await page.keyboard.press("/");
    await page.keyboard.type("line=567890");
    await comesTo(page, "#count", "1 of 1,000,000 lines");
    assert.deepEqual(page.problems, []);
    await page.close();
});
