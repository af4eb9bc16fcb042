import { Reader, unpack } from "./bytes.js";
import { Block } from "./block.js";

// The trace that the page holds: what has to be known of all rows, and the rows in blocks that are unpacked when they
// are asked for.

/**
 * @typedef {object} Kind what a row is counted and filtered by
 * @property {string} link
 * @property {string} name
 * @property {number} direction 0: from the system, 1: to it, 2: none
 * @property {string} status
 * @property {number} findings one bit each
 *
 * @typedef {object} Item a place in the trace and what there is to say of it
 * @property {string} text
 * @property {"note" | "warning" | "error"} severity
 * @property {number} line 0 where it is of the trace as a whole
 * @property {number} message of its line, from 0 on
 * @property {string} file
 *
 * @typedef {object} About
 * @property {string} version
 * @property {number} rows
 * @property {string[]} files
 * @property {[number, number, number][]} blocks rows, the first one's line and file of each
 * @property {[string, string, number, string, number][]} kinds
 * @property {Record<string, [string, string, string]>} fields name, meaning and unit
 * @property {Item[]} [summary]
 * @property {Item[]} [findings]
 * @property {Item[]} [ladder]
 */

const keptBlocks = 24;

export class Trace {
    /** @param {About} about @param {(k: number) => string} packedRows @param {string[]} packedKinds */
    constructor(about, packedRows, packedKinds) {
        this.about = about;
        this.size = about.rows;
        /** @type {Kind[]} */
        this.kinds = about.kinds.map(([link, name, direction, status, findings]) => ({
            link, name, direction, status, findings,
        }));
        this.firstRows = [0];
        for (const [rows] of about.blocks) this.firstRows.push(this.firstRows[this.firstRows.length - 1] + rows);
        this.kindsOfRows = new Uint32Array(this.size);
        this.packedRows = packedRows;
        this.packedKinds = packedKinds;
        /** @type {Map<number, Block>} */
        this.blocks = new Map();
        /** @type {Map<number, Promise<Block>>} */
        this.coming = new Map();
    }

    /** The block that a row is in.
     * @param {number} row */
    blockOf(row) {
        let low = 0;
        let high = this.firstRows.length - 1;
        while (high - low > 1) {
            const middle = (low + high) >> 1;
            if (this.firstRows[middle] <= row) low = middle;
            else high = middle;
        }
        return low;
    }

    /** @param {number} row */
    fileOf(row) {
        return this.about.blocks.length === 0 ? 0 : this.about.blocks[this.blockOf(row)][2];
    }

    /** A block that is unpacked already.
     * @param {number} k */
    here(k) {
        const block = this.blocks.get(k);
        if (block) {
            this.blocks.delete(k);
            this.blocks.set(k, block);
        }
        return block;
    }

    /** @param {number} k @returns {Promise<Block>} */
    block(k) {
        const here = this.here(k);
        if (here) return Promise.resolve(here);
        const coming = this.coming.get(k);
        if (coming) return coming;
        const promise = this.passing(k).then((block) => {
            this.coming.delete(k);
            this.blocks.set(k, block);
            if (this.blocks.size > keptBlocks) {
                const oldest = this.blocks.keys().next().value;
                if (oldest !== undefined) this.blocks.delete(oldest);
            }
            return block;
        });
        this.coming.set(k, promise);
        return promise;
    }

    /** A block that is not kept: for those who look at all of them.
     * @param {number} k */
    async passing(k) {
        return this.blocks.get(k) ?? new Block(await unpack(this.packedRows(k)));
    }

    /** What each row is counted by. */
    async readKinds() {
        let row = 0;
        for (const packed of this.packedKinds) {
            const reader = new Reader(await unpack(packed));
            while (!reader.ended()) this.kindsOfRows[row++] = reader.number();
        }
    }

    /** The row of a message of a line; of a line without a row the next one that has one. -1: there is none.
     * @param {number} file @param {number} line @param {number} message */
    async rowOf(file, line, message = 0) {
        const { blocks } = this.about;
        let found = -1;
        for (let k = 0; k < blocks.length; ++k) {
            if (blocks[k][2] === file && blocks[k][1] <= line) found = k;
        }
        if (found < 0) {
            const first = blocks.findIndex(([, , of]) => of === file);
            return first < 0 ? -1 : this.firstRows[first];
        }
        // The messages of a line may begin in the block before.
        while (found > 0 && blocks[found][2] === blocks[found - 1][2] && blocks[found][1] === line) --found;
        for (let k = found; k < blocks.length && blocks[k][2] === file; ++k) {
            const { lines } = await this.block(k);
            for (let i = 0; i < lines.length; ++i) {
                if (lines[i] < line) continue;
                const last = this.firstRows[this.firstRows.length - 1] - 1;
                return Math.min(this.firstRows[k] + i + (lines[i] === line ? message : 0), last);
            }
        }
        return -1;
    }
}

/** The trace in a document.
 * @param {Document} page */
export function traceIn(page) {
    const about = /** @type {About} */ (JSON.parse(page.getElementById("trace")?.textContent ?? "{}"));
    /** @param {string} name */
    const packed = (name) => [...page.querySelectorAll(`script[type="application/x-ztdecode-${name}"]`)];
    const rows = packed("rows");
    return new Trace(about, (k) => rows[k].textContent ?? "", packed("kinds").map((e) => e.textContent ?? ""));
}
