import { Query } from "./query.js";

// Which rows are shown: those of the kinds that the filters leave, in which the search finds something.

/**
 * @typedef {import("../records/trace.js").Trace} Trace
 * @typedef {import("../records/trace.js").Kind} Kind
 * @typedef {"link" | "direction" | "name" | "status" | "finding"} Facet
 */

/** @type {Facet[]} */
export const facets = ["link", "direction", "name", "status", "finding"];
const directions = ["from", "to", ""];
export const findingNames = [
    "unknown value", "missing bytes", "bytes left over", "cut short by the file's end", "padded",
];

/** What a kind is called in a facet: one word, or several.
 * @param {Kind} kind @param {Facet} facet @returns {string[]} */
export function wordsOf(kind, facet) {
    if (facet === "finding") return findingNames.filter((_, bit) => kind.findings & (1 << bit));
    if (facet === "direction") return directions[kind.direction] ? [directions[kind.direction]] : [];
    if (facet === "status") return [kind.status];
    if (kind.direction === 2) return [];
    return [kind[facet] || "(none)"];
}

const slice = 12; // milliseconds that the page may stand still

function breath() {
    return new Promise((resolve) => {
        const channel = new MessageChannel();
        channel.port1.onmessage = () => {
            channel.port1.close();
            resolve(undefined);
        };
        channel.port2.postMessage(null);
    });
}

export class Selection extends EventTarget {
    /** @param {Trace} trace */
    constructor(trace) {
        super();
        this.trace = trace;
        /** @type {Record<Facet, Set<string>>} */
        this.chosen = { link: new Set(), direction: new Set(), name: new Set(), status: new Set(), finding: new Set() };
        this.query = new Query(trace, "");
        this.onlyMatches = true;
        this.kindsKnown = false;
        this.searched = trace.size; // so many rows
        this.hits = new Uint8Array(0);
        /** @type {Uint32Array | null} */
        this.rows = null; // null: all of them
        this.search = 0;
    }

    get size() {
        return this.rows ? this.rows.length : this.trace.size;
    }

    get searching() {
        return this.searched < this.trace.size;
    }

    get filtered() {
        return facets.some((facet) => this.chosen[facet].size > 0);
    }

    /** The row that stands at a place of the list.
     * @param {number} place */
    row(place) {
        return this.rows ? this.rows[place] : place;
    }

    /** Where a row stands, or the next one that does; at the end: the last.
     * @param {number} row */
    place(row) {
        const { rows } = this;
        if (!rows) return row;
        let low = 0;
        let high = rows.length;
        while (low < high) {
            const middle = (low + high) >> 1;
            if (rows[middle] < row) low = middle + 1;
            else high = middle;
        }
        return Math.min(low, rows.length - 1);
    }

    /** Whether the search found the row.
     * @param {number} row */
    hit(row) {
        return !this.query.empty && this.hits[row] === 1;
    }

    /** The kinds that the filters leave, but for one of them.
     * @param {Facet | null} besides */
    #kinds(besides = null) {
        return this.trace.kinds.map((kind) =>
            facets.every((facet) => {
                const chosen = this.chosen[facet];
                return facet === besides || chosen.size === 0 || wordsOf(kind, facet).some((word) => chosen.has(word));
            }),
        );
    }

    /** How many rows each word of a facet would leave.
     * @param {Facet} facet */
    counts(facet) {
        const passing = this.#kinds(facet);
        /** @type {Map<string, number>} */
        const counts = new Map();
        this.trace.kinds.forEach((kind, k) => {
            for (const word of wordsOf(kind, facet)) {
                counts.set(word, (counts.get(word) ?? 0) + (passing[k] ? this.#found[k] : 0));
            }
        });
        return counts;
    }

    /** Rows of each kind that the search leaves. @type {number[]} */
    #found = [];

    async begin() {
        await this.trace.readKinds();
        this.kindsKnown = true;
        this.#look();
    }

    // Makes the list anew.
    #look() {
        const { kindsOfRows, kinds, size } = this.trace;
        const found = new Array(kinds.length).fill(0);
        const searches = !this.query.empty;
        if (this.kindsKnown) {
            for (let row = 0; row < size; ++row) {
                if (!searches || this.hits[row]) ++found[kindsOfRows[row]];
            }
        }
        this.#found = found;
        const passing = this.#kinds();
        const narrowed = searches && this.onlyMatches;
        if (!narrowed && passing.every(Boolean)) {
            this.rows = null;
        } else if (this.kindsKnown) {
            const rows = new Uint32Array(size);
            let n = 0;
            for (let row = 0; row < size; ++row) {
                if (passing[kindsOfRows[row]] && (!narrowed || this.hits[row])) rows[n++] = row;
            }
            this.rows = rows.slice(0, n);
        }
        this.dispatchEvent(new Event("change"));
    }

    /** @param {Facet} facet @param {string} word @param {boolean} on */
    choose(facet, word, on) {
        if (on) this.chosen[facet].add(word);
        else this.chosen[facet].delete(word);
        this.#look();
    }

    /** @param {Partial<Record<Facet, string[]>>} chosen */
    chooseOnly(chosen) {
        for (const facet of facets) this.chosen[facet] = new Set(chosen[facet] ?? []);
        this.#look();
    }

    /** @param {boolean} on */
    showOnlyMatches(on) {
        this.onlyMatches = on;
        this.#look();
    }

    /** Throws where a pattern is none.
     * @param {string} text */
    async ask(text) {
        const query = new Query(this.trace, text);
        const search = ++this.search;
        this.query = query;
        this.hits = new Uint8Array(query.empty ? 0 : this.trace.size);
        this.searched = query.empty ? this.trace.size : 0;
        this.#look();
        if (query.empty) return;
        const { firstRows } = this.trace;
        let since = performance.now();
        let shown = since;
        for (let k = 0; k + 1 < firstRows.length; ++k) {
            const block = await this.trace.passing(k);
            if (search !== this.search) return;
            for (let i = 0; i < block.size; ++i) {
                if (query.holds(block, i)) this.hits[firstRows[k] + i] = 1;
                if ((i & 255) === 0 && performance.now() - since > slice) {
                    await breath();
                    if (search !== this.search) return;
                    since = performance.now();
                }
            }
            this.searched = firstRows[k + 1];
            // More often while there is little: the first matches are waited for.
            if (performance.now() - shown > 150 + this.searched / 2000) {
                this.#look();
                shown = performance.now();
            }
        }
        this.#look();
    }
}
