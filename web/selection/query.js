import { rowTypes } from "../records/block.js";

/**
 * @typedef {import("../records/block.js").Block} Block
 * @typedef {import("../records/trace.js").Trace} Trace
 *
 * @typedef {object} Term
 * @property {boolean} not
 * @property {"words" | "pattern" | "value"} kind
 * @property {string} words in lower case
 * @property {RegExp | null} pattern
 * @property {string} name of the value
 */

// What can be asked like a value.
const columns = ["message", "link", "line", "time"];

// Words, "words with blanks", /patterns/, name=value; each may have a minus in front.
const pieces = /(-?)(?:([a-z_][a-z0-9_]*)=(?:"([^"]*)"|(\S*))|\/((?:[^/\\]|\\.)+)\/(?=\s|$)|"([^"]*)"?|(\S+))/gi;

/** What the search box asks for. A pattern that is none is an error, which is thrown.
 * @param {string} text */
export function termsOf(text) {
    /** @type {Term[]} */
    const terms = [];
    for (const [, minus, name, quoted, plain, pattern, phrase, word] of text.matchAll(pieces)) {
        const not = minus === "-";
        if (name !== undefined) {
            const words = (quoted ?? plain ?? "").toLowerCase();
            terms.push({ not, kind: "value", words, pattern: null, name: name.toLowerCase() });
        } else if (pattern !== undefined) {
            terms.push({ not, kind: "pattern", words: "", pattern: new RegExp(pattern, "i"), name: "" });
        } else {
            terms.push({ not, kind: "words", words: (phrase ?? word).toLowerCase(), pattern: null, name: "" });
        }
    }
    return terms.filter((term) => term.kind !== "words" || term.words !== "");
}

// Whether rows have what is asked for.
export class Query {
    /** @param {Trace} trace @param {string} text */
    constructor(trace, text) {
        this.trace = trace;
        this.text = text;
        this.terms = termsOf(text);
        const { fields } = trace.about;
        this.fieldNames = new Map(Object.entries(fields).map(([k, [name]]) => [Number(k), name.toLowerCase()]));
    }

    get empty() {
        return this.terms.length === 0;
    }

    /** @param {Block} block @param {number} k */
    holds(block, k) {
        let text = "";
        for (const term of this.terms) {
            if (text === "" && term.kind !== "value") text = this.#searched(block, k);
            if (this.#has(term, block, k, text) === term.not) return false;
        }
        return true;
    }

    /** @param {Block} block @param {number} k */
    #searched(block, k) {
        const { name, link } = this.trace.kinds[block.kind(k)];
        return `${block.prefixes[k]} ${block.time(k)} ${link} ${name}\n${block.text(k)}`.toLowerCase();
    }

    /** @param {Term} term @param {Block} block @param {number} k @param {string} text */
    #has(term, block, k, text) {
        if (term.kind === "words") return text.includes(term.words);
        if (term.pattern) return term.pattern.test(text);
        if (columns.includes(term.name)) return this.#column(term, block, k);
        return this.#value(term, block, k);
    }

    /** @param {Term} term @param {Block} block @param {number} k */
    #column(term, block, k) {
        if (term.name === "line") return String(block.lines[k]) === term.words;
        if (term.name === "time") return block.time(k).toLowerCase().startsWith(term.words);
        const kind = this.trace.kinds[block.kind(k)];
        const of = term.name === "link" ? "link" : "name";
        if (kind[of].toLowerCase() === term.words) return true;
        return block.shape(k).parts.some((part, index) => index > 0 && part[of].toLowerCase() === term.words);
    }

    /** @param {Term} term @param {Block} block @param {number} k */
    #value(term, block, k) {
        const shape = block.shape(k);
        if (shape.type !== rowTypes.message) return false;
        const asked = shape.fields.some((field) => this.fieldNames.get(field.name) === term.name);
        if (!asked) return false;
        const { fields } = block.message(k, this.trace.kinds[shape.kind]);
        return fields.some(
            (field) => this.fieldNames.get(field.name) === term.name && field.value.toLowerCase() === term.words,
        );
    }
}
