import { element, oneLine } from "./dom.js";
import { rowTypes } from "../records/block.js";
import { wordsOf } from "../selection/selection.js";

// Rows of the trace as lists show them.

/**
 * @typedef {import("../records/trace.js").Trace} Trace
 * @typedef {import("../records/block.js").Block} Block
 */

export const arrows = ["↓ from", "↑ to", ""];
const directionClasses = ["from-system", "to-system", "no-direction"];

/** What stands beside a row in the block that it is in; asks for that block where it is not there.
 * @param {Trace} trace @param {number} row @param {() => void} later */
export function found(trace, row, later) {
    const k = trace.blockOf(row);
    const block = trace.here(k);
    if (!block) {
        trace.block(k).then(later);
        return null;
    }
    return { block, index: row - trace.firstRows[k] };
}

/** @param {Block} block @param {number} k */
export function rowText(block, k) {
    if (block.type(k) !== rowTypes.refused) return oneLine(block.firstLine(k));
    const { content, why } = block.content(k);
    return oneLine(`${why}: ${content.slice(0, 240)}`);
}

const cells = ["line", "time", "direction", "link", "name", "text"];

export function makeRow() {
    return element("div", { class: "row" }, ...cells.map((name) => element("span", { class: `cell ${name}` })));
}

/** What is wrong with rows of a kind, in words.
 * @param {import("../records/trace.js").Kind} kind */
function problems(kind) {
    const words = wordsOf(kind, "finding");
    if (kind.status === "unknown") words.unshift("unknown message");
    if (kind.status === "refused") words.unshift("unknown class");
    if (kind.status === "refused line") words.unshift("refused");
    return words;
}

/** @param {Trace} trace @param {number} row @param {HTMLElement} shown @param {() => void} later
 * @param {boolean} [withProblems] in front of the text */
export function fillRow(trace, row, shown, later, withProblems = false) {
    const there = found(trace, row, later);
    const spans = /** @type {HTMLCollectionOf<HTMLElement>} */ (shown.children);
    if (!there) {
        for (const span of spans) span.textContent = "";
        spans[5].textContent = "…";
        return false;
    }
    const { block, index } = there;
    const kind = trace.kinds[block.kind(index)];
    const words = [
        String(block.lines[index]), oneLine(block.time(index)), arrows[kind.direction], kind.link,
        kind.direction === 2 ? "" : kind.name || "unknown", rowText(block, index),
    ];
    if (withProblems) words[5] = `${problems(kind).join(", ")} · ${words[5]}`;
    for (let k = 0; k < words.length; ++k) {
        if (spans[k].textContent !== words[k]) spans[k].textContent = words[k];
    }
    const warns = kind.findings !== 0 || (kind.status !== "decoded" && kind.status !== "no message");
    shown.className = `row ${directionClasses[kind.direction]}${warns ? " warns" : ""}`;
    return true;
}
