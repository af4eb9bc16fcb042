import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { comesTo, count, lit, opened, phone, place, title, wordHandle } from "./browser.js";
import { pageOf, root, written } from "./support.js";

const office = join(root, "examples", "office.spzt");
const officePage = pageOf(office);

const visible = (page) => page.$$eval("#list .row", (rows) => rows.map((row) => row.textContent));

test("opens with the first lines", async () => {
    const page = await opened(officePage);
    assert.equal(await count(page), "85 lines");
    const rows = await visible(page);
    assert.match(rows[0], /^1# A morning in a small office/);
    assert.equal(rows[3], "5074502↑ todigitalreset- reset hard, set-49 beta, soft=2.21, self OK, vta type=1, info1=2, info2=1, hard cfg=08 (wideband ), rac , data=1.05 , load=1.08");
    assert.match(await page.title(), /office\.spzt/);
    assert.deepEqual(page.problems, []);
    await page.close();
});

test("a click shows a message with its text, bytes and values", async () => {
    const page = await opened(officePage);
    const row = await page.evaluateHandle(() => [...document.querySelectorAll("#list .row")].find((r) => r.firstChild.textContent === "13"));
    await row.click();
    await page.waitForSelector("#message-title");
    assert.equal(await title(page), "write_display_line");
    assert.equal(await place(page), `line 13 of ${office}`);
    assert.equal(await page.$eval("#message pre.text", (e) => e.textContent), '\t- write line 2 "Reception 4711"\n');
    const bytes = await page.$$eval(".byte", (all) => all.map((b) => b.textContent).join(" "));
    assert.equal(bytes, "28 00 00 52 65 63 65 70 74 69 6f 6e 20 34 37 31 31");
    const values = await page.$$eval(".fields tr", (rows) => rows.map((r) => [r.cells[0].textContent, r.cells[1].textContent]));
    assert.deepEqual(values, [["line", "2"], ["display_text", "Reception 4711"]]);
    assert.match(page.url(), /#line=13$/);
    await page.close();
});

test("a word lights its bytes, a byte its words, by mouse", async () => {
    const page = await opened(officePage, { hash: "#line=66" });
    await page.waitForSelector(".word");
    const text = await page.$eval("#message pre.text", (e) => e.textContent);
    const shown = text.match(/"(.*)"/)[1];
    await (await wordHandle(page, shown)).hover();
    const ofWord = await lit(page);
    assert.deepEqual(ofWord.words, [shown]);
    assert.equal(Buffer.from(ofWord.bytes.map((byte) => parseInt(byte, 16))).toString(), shown);
    assert.deepEqual(ofWord.values, ["display_text"]);
    const byte = await page.$('[data-byte="0:4"]');
    await byte.hover();
    assert.deepEqual((await lit(page)).words, [shown]);
    await page.mouse.move(5, 5);
    assert.deepEqual(await lit(page), { words: [], bytes: [], values: [] });
    await byte.click();
    await page.mouse.move(5, 5);
    assert.deepEqual((await lit(page)).words, [shown], "a click keeps the light");
    assert.deepEqual(page.problems, []);
    await page.close();
});

test("the same by keys, with what a screen reader says", async () => {
    const page = await opened(officePage, { hash: "#line=61" });
    await page.waitForSelector(".hex");
    await page.focus("#message .hex");
    await page.keyboard.press("ArrowRight");
    await page.keyboard.press("ArrowRight");
    assert.deepEqual(await page.$$eval(".byte.chosen", (all) => all.map((b) => b.textContent)), ["04"]);
    const said = await page.$eval("#message [aria-live]", (e) => e.textContent);
    assert.match(said, /^byte 04: /);
    await page.focus("#message pre.text");
    await page.keyboard.press("ArrowRight");
    assert.equal((await page.$$(".word.chosen")).length, 1);
    await page.close();
});

test("searches words, patterns and values, and counts follow", async () => {
    const page = await opened(officePage);
    await page.keyboard.press("/");
    await page.keyboard.type("ring off");
    await comesTo(page, "#count", "2 of 85 lines");
    const rows = await visible(page);
    assert.equal(rows.length, 2);
    assert.ok(rows.every((row) => row.includes("ring off")));
    assert.match(page.url(), /#q=ring\+off/);
    await page.evaluate(() => (document.querySelectorAll(".filter")[2].open = true));
    const counts = await page.$$eval(".filter[open] label:not(.none)", (all) => all.map((l) => l.textContent));
    assert.deepEqual(counts, ["ring2"]);
    const ask = async (text, wanted) => {
        await page.$eval("#search", (e) => { e.value = ""; });
        await page.focus("#search");
        await page.keyboard.type(text);
        await comesTo(page, "#count", wanted);
    };
    await ask('codec="G.711 A law"', "1 of 85 lines");
    await ask("/^\\s*- (green|red) led/", "3 of 85 lines");
    await ask("message=led", "6 of 85 lines");
    await ask("message=led -green", "3 of 85 lines");
    await page.$eval("#search", (e) => { e.value = ""; });
    await page.focus("#search");
    await page.keyboard.type("/(/");
    await page.waitForSelector("#search[aria-invalid]");
    assert.match(await page.$eval("#problem", (e) => e.textContent), /Invalid regular expression/);
    await page.keyboard.press("Escape");
    await comesTo(page, "#count", "85 lines");
    assert.equal(await page.$eval("#problem", (e) => e.textContent), "");
    await page.close();
});

test("marks matches and goes from one to the next", async () => {
    const page = await opened(officePage, { hash: "#q=ring+off&all=1" });
    await comesTo(page, "#count", "85 lines, matches marked");
    await page.focus("#list");
    await page.keyboard.press("n");
    await comesTo(page, "#message .place", `line 60 of ${office}`);
    assert.equal(await page.$$eval(".row.hit", (rows) => rows.length), await page.$$eval(".row", (rows) => rows.filter((r) => r.textContent.includes("ring off")).length));
    await page.keyboard.press("n");
    await comesTo(page, "#message .place", `line 74 of ${office}`);
    await page.keyboard.press("N");
    await comesTo(page, "#message .place", `line 60 of ${office}`);
    await page.close();
});

test("filters by link, direction and finding", async () => {
    const page = await opened(officePage);
    const choose = (facet, word) => page.evaluate((f, w) => {
        const menu = document.querySelectorAll(".filter")[f];
        menu.open = true;
        [...menu.querySelectorAll("label")].find((label) => label.children[1].textContent === w).querySelector("input").click();
        menu.open = false;
    }, facet, word);
    await choose(0, "hub");
    assert.equal(await count(page), "5 of 85 lines");
    await choose(0, "ip");
    assert.equal(await count(page), "17 of 85 lines");
    assert.match(page.url(), /$/);
    await page.click(".clear");
    assert.equal(await count(page), "85 lines");
    await choose(1, "to");
    assert.equal(await count(page), "26 of 85 lines");
    await page.click(".clear");
    await choose(4, "missing bytes");
    assert.equal(await count(page), "1 of 85 lines");
    await page.close();
});

test("keys go through the list; help is a dialog", async () => {
    const page = await opened(officePage);
    for (const key of ["j", "j", "j", "k"]) await page.keyboard.press(key);
    const first = await page.$eval('#list .row[aria-selected="true"]', (row) => row.firstChild.textContent);
    assert.equal(first, "2");
    assert.equal(await page.$eval("#list", (list) => document.getElementById(list.getAttribute("aria-activedescendant")).ariaSelected), "true");
    await page.keyboard.press("G");
    await comesTo(page, "#message .place", `line 91 of ${office}`);
    await page.keyboard.press("?");
    assert.equal(await page.$eval("#help", (dialog) => dialog.open), true);
    await page.keyboard.press("Escape");
    assert.equal(await page.$eval("#help", (dialog) => dialog.open), false);
    await page.close();
});

test("tabs lead to messages", async () => {
    const page = await opened(officePage);
    await page.click("#tab-summary");
    assert.deepEqual(await page.$$eval(".figures dd", (all) => all.slice(0, 3).map((d) => d.textContent)), ["69", "16", "2"]);
    await page.evaluate(() => [...document.querySelectorAll(".counts button")].find((b) => b.textContent === "call_server").click());
    assert.equal(await count(page), "2 of 85 lines");
    await page.keyboard.press("3");
    await page.waitForSelector("#finding-list .row:not(.waits)");
    assert.equal(await page.$eval("#finding-count", (e) => e.textContent), "2 lines with something that is unknown, missing or refused.");
    await page.click("#finding-list .row");
    await comesTo(page, "#message .place", `line 44 of ${office}`);
    await page.keyboard.press("4");
    await page.waitForSelector("#ladder-list .rung:not(.waits)");
    const arrows = await page.$$eval("#ladder-list .arrow.to-system", (all) => all.length);
    assert.ok(arrows > 0);
    await page.evaluate(() => [...document.querySelectorAll("#ladder-list .rung")].find((r) => r.firstChild.textContent === "47").click());
    await comesTo(page, "#message .place", `line 47 of ${office}`);
    assert.deepEqual(page.problems, []);
    await page.close();
});

test("what other analyses found stands in its tab and leads to its message", async () => {
    const item = (text, severity, line, message = 0) => ({ text, severity, line, message, file: office });
    const items = {
        summary: [item("69 messages in an hour", "note", 0)],
        findings: [item("<b>reset</b> without a reason", "error", 5), item("slow answer", "warning", 58)],
        ladder: [item("a call", "note", 76)],
    };
    const html = readFileSync(officePage, "utf8");
    const withItems = html.replace(/(id="trace">)(.*?)(<\/script>)/, (_, begin, about, end) =>
        begin + JSON.stringify({ ...JSON.parse(about), ...items }).replaceAll("<", "\\u003c") + end);
    const page = await opened(written("items.html", withItems));
    await page.click("#tab-findings");
    assert.deepEqual(await page.$$eval("#finding-items button", (all) => all.map((b) => [...b.children].map((c) => c.textContent))), [
        ["error", "<b>reset</b> without a reason", "line 5"], ["warning", "slow answer", "line 58"],
    ]);
    await page.click("#finding-items li:nth-child(2) button");
    await comesTo(page, "#message .place", `line 58 of ${office}`);
    await page.click("#tab-summary");
    assert.match(await page.$eval("#panel-summary .items", (e) => e.textContent), /69 messages in an hour/);
    await page.click("#tab-ladder");
    await page.click("#ladder-items button");
    await comesTo(page, "#message .place", `line 76 of ${office}`);
    assert.deepEqual(page.problems, []);
    await page.close();
});

test("an address leads to its place, also where it changes, and of several files", async () => {
    const other = written("other.spzt", "000001S 02 21 07\n000002R 02 03 0a\n");
    const both = pageOf(office, other);
    const page = await opened(both, { hash: "#file=2&line=2" });
    await comesTo(page, "#message .place", `line 2 of ${other}`);
    await page.evaluate(() => { location.hash = "#line=58"; });
    await comesTo(page, "#message .place", `line 58 of ${office}`);
    assert.equal(await count(page), "87 lines");
    await page.close();
});

test("carried messages fold open", async () => {
    const page = await opened(officePage, { hash: "#line=27" });
    await page.waitForSelector(".part");
    assert.equal(await page.$eval(".part", (part) => part.open), false);
    await page.click(".part summary");
    assert.equal(await page.$eval(".part", (part) => part.open), true);
    assert.match(await page.$eval(".part", (part) => part.textContent), /led/);
    await page.close();
});

test("a trace is text, whatever it holds", async () => {
    const markup = "<script>alert(1)</script><img src=x onerror=alert(2)>&lt;&amp; \u202eevil\u202c \u0007";
    const bytes = Buffer.from(markup).toString("hex").match(/../g).slice(0, 26);
    const display = ["28", "00", "00", ...bytes];
    const lines = [
        markup,
        `000001S ${display.length.toString(16).padStart(2, "0")} ${display.join(" ")}`,
        "</script><script>alert(3)</script><!--",
        "000002S 09 01",
        "x".repeat(10_000_000),
        "the end",
    ];
    const file = written("<b onmouseover=alert(4)>.spzt", lines.join("\n") + "\n");
    const page = await opened(pageOf(file), { hash: "#line=1" });
    await page.waitForSelector("#message .content");
    assert.equal(await page.$eval("#message .content", (e) => e.textContent), markup.replace("\u202e", "\\u202e").replace("\u202c", "\\u202c").replace("\u0007", "\\x07"));
    await page.evaluate(() => { location.hash = "#line=2"; });
    await comesTo(page, "#message h2", "write_display_line");
    assert.equal(await page.$eval("#message pre.text", (e) => e.textContent), `\t- write line 2 "${markup.slice(0, 26)}"\n`);
    await page.evaluate(() => { location.hash = "#line=4"; });
    await comesTo(page, "#message h2", "refused line");
    assert.match(await page.$eval("#message .why", (e) => e.textContent), /the length says 9 bytes, the line has 1/);
    await page.evaluate(() => { location.hash = "#line=5"; });
    await page.waitForFunction(() => /Show all 10,000,000/.test(document.querySelector("#message")?.textContent ?? ""));
    await page.evaluate(() => [...document.querySelectorAll("#message button")].find((b) => /Show all/.test(b.textContent)).click());
    assert.equal(await page.$eval("#message .content", (e) => e.textContent.length), 10_000_000);
    assert.equal(await page.$$eval("main script, main img, main b", (all) => all.length), 0);
    assert.deepEqual(page.problems, []);
    await page.close();
});

test("a phone shows a message in front of the list, and nothing scrolls sideways", async () => {
    const page = await opened(officePage, { viewport: phone });
    const sideways = () => page.evaluate(() => document.scrollingElement.scrollWidth - innerWidth);
    for (const tab of ["summary", "findings", "ladder", "messages"]) {
        await page.evaluate((name) => document.getElementById(`tab-${name}`).click(), tab);
        assert.ok((await sideways()) <= 0, tab);
    }
    await page.tap("#list .row:nth-child(5)");
    await page.waitForSelector("#message .byte");
    assert.equal(await page.$eval(".message-side", (e) => getComputedStyle(e).display), "flex");
    assert.ok((await sideways()) <= 0);
    await page.tap('[data-byte="0:0"]');
    assert.ok((await lit(page)).words.length > 0, "a tap lights");
    await page.tap("#back");
    assert.equal(await page.$eval(".message-side", (e) => getComputedStyle(e).display), "none");
    await page.close();
});

test("paper gets the messages with their texts", async () => {
    const page = await opened(officePage, { hash: "#link=hub" });
    await page.emulateMediaType("print");
    await page.evaluate(() => window.dispatchEvent(new Event("beforeprint")));
    assert.equal(await page.$$eval("#print article", (all) => all.length), 5);
    assert.match(await page.$eval("#print", (e) => e.innerText), /5 lines · hub/);
    assert.equal(await page.$eval("main", (e) => getComputedStyle(e).display), "none");
    const pdf = await page.pdf({ format: "A4" });
    assert.ok(pdf.length > 1000);
    await page.close();
});

test("an empty trace is a page, too", async () => {
    const page = await opened(pageOf(written("empty", "")));
    assert.equal(await count(page), "0 lines");
    for (const key of ["j", "n", "G", "2", "3", "4", "1"]) await page.keyboard.press(key);
    assert.deepEqual(page.problems, []);
    await page.close();
});
