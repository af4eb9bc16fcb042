import { counted, element, harmless } from "./dom.js";
import { facets, findingNames, wordsOf } from "../selection/selection.js";

/**
 * @typedef {import("../selection/selection.js").Selection} Selection
 * @typedef {import("../selection/selection.js").Facet} Facet
 * @typedef {import("../records/trace.js").Item} Item
 */

const mostCounted = 20;

/** @type {Record<Facet, string>} */
const tableTitles = { link: "Links", direction: "Directions", name: "Messages", status: "Lines and messages", finding: "Findings" };

/** Items that lead to a place in the trace, as a list.
 * @param {Item[]} items @param {(item: Item) => void} open */
export function itemList(items, open) {
    const shownAtOnce = 200;
    const list = element("ul", { class: "items" });
    /** @param {number} from */
    const add = (from) => {
        for (const item of items.slice(from, from + shownAtOnce)) {
            const text = element("span", { class: "said" }, harmless(item.text));
            const mark = element("span", { class: `label ${item.severity}` }, item.severity);
            if (item.line === 0) {
                list.append(element("li", {}, mark, text));
                continue;
            }
            const button = element("button", { type: "button" }, mark, text, element("span", { class: "place" }, `line ${counted(item.line)}`));
            button.addEventListener("click", () => open(item));
            list.append(element("li", {}, button));
        }
        if (items.length <= from + shownAtOnce) return;
        const more = element("button", { type: "button", class: "more" }, `Show more of ${counted(items.length)}`);
        more.addEventListener("click", () => {
            more.parentElement?.remove();
            add(from + shownAtOnce);
        });
        list.append(element("li", {}, more));
    };
    add(0);
    return list;
}

/** What is in the trace, each figure a way to its messages.
 * @param {HTMLElement} box @param {Selection} selection @param {(facet: Facet, word: string) => void} only
 * @param {(item: Item) => void} open */
export function drawSummary(box, selection, only, open) {
    const { trace } = selection;
    const { about } = trace;
    const head = element("dl", { class: "figures" });
    /** @param {string} name @param {string} value */
    const figure = (name, value) => head.append(element("div", {}, element("dt", {}, name), element("dd", {}, value)));
    const rows = new Array(trace.kinds.length).fill(0);
    for (const kind of trace.kindsOfRows) ++rows[kind];
    const messages = trace.kinds.reduce((sum, kind, k) => sum + (kind.direction === 2 ? 0 : rows[k]), 0);
    const suspicious = trace.kinds.reduce(
        (sum, kind, k) => sum + (kind.findings !== 0 || ["unknown", "refused", "refused line"].includes(kind.status) ? rows[k] : 0), 0);
    figure("messages", counted(messages));
    figure("other lines", counted(trace.size - messages));
    figure("with findings", counted(suspicious));
    figure(about.files.length === 1 ? "file" : "files", about.files.length === 1 ? harmless(about.files[0]) : counted(about.files.length));
    const tables = element("div", { class: "tables" });
    for (const facet of facets) {
        /** @type {Map<string, number>} */
        const counts = new Map();
        trace.kinds.forEach((kind, k) => {
            for (const word of wordsOf(kind, facet)) counts.set(word, (counts.get(word) ?? 0) + rows[k]);
        });
        const sorted = [...counts].sort((a, b) => b[1] - a[1]);
        if (facet === "finding") sorted.sort((a, b) => findingNames.indexOf(a[0]) - findingNames.indexOf(b[0]));
        if (sorted.length > 0) tables.append(countTable(facet, sorted, only));
    }
    const said = about.summary ? [itemList(about.summary, open)] : [];
    box.replaceChildren(element("h2", {}, "Summary"), head, ...said, tables);
}

/** @param {Facet} facet @param {[string, number][]} counts @param {(facet: Facet, word: string) => void} only */
function countTable(facet, counts, only) {
    const largest = Math.max(1, ...counts.map(([, n]) => n));
    const body = element("tbody");
    for (const [word, n] of counts.slice(0, mostCounted)) {
        const button = element("button", { type: "button" }, word);
        button.addEventListener("click", () => only(facet, word));
        const bar = element("span", { class: "bar" });
        bar.style.width = `${(100 * n) / largest}%`;
        body.append(element("tr", {},
            element("th", { scope: "row" }, button), element("td", {}, counted(n)), element("td", { class: "bars" }, bar)));
    }
    const more = counts.length > mostCounted ? ` (the first ${mostCounted} of ${counts.length})` : "";
    return element("table", { class: "counts" }, element("caption", {}, `${tableTitles[facet]}${more}`), body);
}
