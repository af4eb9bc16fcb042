import { mkdtempSync } from "node:fs";
import { join } from "node:path";
import { after } from "node:test";
import { pathToFileURL } from "node:url";
import puppeteer from "puppeteer-core";
import { folder } from "./support.js";

// A browser without a network, for all tests of a file.

let browser;
after(() => browser?.close());

async function launched() {
    browser ??= await puppeteer.launch({
        executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
        headless: true,
        userDataDir: mkdtempSync(join(folder, "profile-")),
        args: [
            "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
            "--disable-component-update", "--disable-sync", "--enable-precise-memory-info",
        ],
    });
    return browser;
}

export const laptop = { width: 1280, height: 800 };
export const phone = { width: 390, height: 800, isMobile: true, hasTouch: true };

// A page that is ready; whatever it complains of is an error.
export async function opened(file, { hash = "", viewport = laptop, dark = false, before = null } = {}) {
    const page = await (await launched()).newPage();
    page.problems = [];
    page.on("pageerror", (error) => page.problems.push(error.message));
    page.on("console", (message) => message.type() === "error" && page.problems.push(message.text()));
    page.on("request", (request) => /^(file|data):/.test(request.url()) || page.problems.push(request.url()));
    page.on("dialog", (dialog) => {
        page.problems.push(dialog.message());
        dialog.dismiss();
    });
    await page.setViewport(viewport);
    await page.emulateMediaFeatures([{ name: "prefers-color-scheme", value: dark ? "dark" : "light" }]);
    if (before) await page.evaluateOnNewDocument(before);
    await page.goto(pathToFileURL(file) + hash);
    await page.waitForSelector("html[data-ready]", { timeout: 60000 });
    return page;
}

export const count = (page) => page.$eval("#count", (element) => element.textContent);
export const title = (page) => page.$eval("#message-title", (element) => element.textContent);
export const place = (page) => page.$eval("#message .place", (element) => element.textContent);

export function comesTo(page, selector, text) {
    return page.waitForFunction(
        (of, wanted) => document.querySelector(of)?.textContent === wanted, { timeout: 10000 }, selector, text);
}

// What is lit: words, bytes and values.
export function lit(page) {
    return page.evaluate(() => {
        const texts = (of) => [...document.querySelectorAll(of)].map((element) => element.textContent);
        return { words: texts(".word.lit"), bytes: texts(".byte.lit"), values: texts("tr.lit th") };
    });
}

export function wordHandle(page, text) {
    return page.evaluateHandle(
        (wanted) => [...document.querySelectorAll(".word")].find((element) => element.textContent === wanted), text);
}
