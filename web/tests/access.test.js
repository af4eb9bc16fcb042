import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { test } from "node:test";
import { laptop, opened, phone } from "./browser.js";
import { pageOf, root } from "./support.js";

// What axe finds wrong, in every view, light and dark, on a laptop and a phone.

const axe = readFileSync(join(root, "web", "node_modules", "axe-core", "axe.min.js"), "utf8");
const page = pageOf(join(root, "examples", "office.spzt"));

async function violations(opened) {
    const { passes, found } = await opened.evaluate(async () => {
        const said = await window.axe.run(document);
        return { passes: said.passes.length, found: said.violations };
    });
    assert.ok(passes > 5, "it looked");
    return found.map(({ id, nodes }) => `${id}: ${nodes.map((node) => `${node.html} ${node.failureSummary}`).join("; ")}`);
}

for (const viewport of [laptop, phone]) {
    for (const dark of [false, true]) {
        for (const tab of ["messages", "summary", "findings", "ladder"]) {
            test(`${tab}, ${viewport.width} pixels wide, ${dark ? "dark" : "light"}`, async () => {
                const shown = await opened(page, { hash: `#tab=${tab}&line=79`, viewport, dark, before: axe });
                if (tab !== "messages") await shown.evaluate(() => document.body.classList.remove("message-open"));
                assert.deepEqual(await violations(shown), []);
                if (tab === "messages") {
                    await shown.evaluate(() => {
                        document.body.classList.remove("message-open");
                        document.querySelector(".part").open = true;
                        document.querySelectorAll(".filter")[2].open = true;
                    });
                    assert.deepEqual(await violations(shown), []);
                    await shown.evaluate(() => {
                        document.querySelectorAll(".filter")[2].open = false;
                        document.getElementById("help").showModal();
                    });
                    assert.deepEqual(await violations(shown), []);
                }
                await shown.close();
            });
        }
    }
}
