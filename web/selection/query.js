import { rowTypes } from "../records/block.js";

/**
 * @typedef {import("../records/block.js").Block} Block
 * @typedef {import("../records/trace.js").Trace} Trace
 *
 * @typedef {object} Term
 * @property {boolean} not
 * @property {RegExp | null} pattern that a row is to have; null: a value
 * @property {string} name of the value
 * @property {string} words of the value, in lower case
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
            terms.push({ not, words, pattern: null, name: name.toLowerCase() });
        } else if (pattern !== undefined) {
            terms.push({ not, words: "", pattern: new RegExp(pattern, "i"), name: "" });
        } else if (phrase ?? word) {
            const literal = (phrase ?? word).replace(/[\\^$.*+?()[\]{}|]/g, "\\$&");
            terms.push({ not, words: "", pattern: new RegExp(literal, "i"), name: "" });
        }
    }
    return terms;
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
        /** @type {string | null} */
        let text = null;
        for (const term of this.terms) {
            if (term.pattern) text ??= block.text(k);
            const has = term.pattern ? this.#finds(term.pattern, block, k, text ?? "") : this.#has(term, block, k);
            if (has === term.not) return false;
        }
        return true;
    }

    /** @param {RegExp} pattern @param {Block} block @param {number} k @param {string} text */
    #finds(pattern, block, k, text) {
        if (pattern.test(text)) return true;
        const { name, link } = this.trace.kinds[block.kind(k)];
        return pattern.test(name) || pattern.test(link) || pattern.test(block.time(k)) || pattern.test(block.prefixes[k]);
    }

    /** @param {Term} term @param {Block} block @param {number} k */
    #has(term, block, k) {
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
