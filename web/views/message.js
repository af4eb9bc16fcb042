import { countOf, counted, element, harmless } from "./dom.js";
import { arrows } from "./rows.js";
import { rowTypes } from "../records/block.js";

// One message: its text, its values and its bytes. What is pointed at lights what it belongs to: a word its bytes, a
// byte its words.

/**
 * @typedef {import("../records/trace.js").Trace} Trace
 * @typedef {import("../records/block.js").Block} Block
 * @typedef {import("../records/block.js").Message} Message
 * @typedef {import("../records/block.js").Part} Part
 */

const mostWords = 4000;
const mostCharacters = 65536;
const bytesInLine = 8;

/** @param {number} n */
function hex(n, digits = 2) {
    return n.toString(16).padStart(digits, "0");
}

/** @param {number} source @param {number} offset */
function byteKey(source, offset) {
    return `${source}:${offset}`;
}

// A long text in pieces, of which the browser lays out those that are seen.
/** @param {string} text */
export function longText(text) {
    const box = element("pre", { class: "content" });
    /** @param {number} begin @param {number} end */
    const add = (begin, end) => {
        for (let at = begin; at < end; at += 8192)
            box.append(element("span", { class: "piece" }, harmless(text.slice(at, Math.min(at + 8192, end)))));
    };
    add(0, Math.min(text.length, mostCharacters));
    if (text.length <= mostCharacters) return box;
    const more = element("button", { type: "button" }, `Show all ${counted(text.length)} characters`);
    more.addEventListener("click", () => {
        more.remove();
        add(mostCharacters, text.length);
    });
    return element("div", {}, box, more);
}

export class MessageView {
    /** @param {HTMLElement} box @param {Trace} trace @param {(name: string, value: string) => void} onlyValue */
    constructor(box, trace, onlyValue) {
        this.box = box;
        this.trace = trace;
        this.onlyValue = onlyValue;
        this.row = -1;
        this.announcement = element("p", { class: "unseen", "aria-live": "polite" });
        this.pinned = false;
        /** @type {Message | null} */
        this.message = null;
        /** @type {HTMLElement[]} */
        this.words = [];
        /** @type {Map<string, HTMLElement>} by source and offset */
        this.bytes = new Map();
        /** @type {HTMLElement[]} */
        this.fields = [];
        /** @type {HTMLElement[]} what the last light fell on */
        this.lit = [];
        box.addEventListener("pointerover", (event) => this.#point(event));
        box.addEventListener("pointerleave", () => this.#unpin(false));
        box.addEventListener("click", (event) => this.#pin(event));
        box.addEventListener("keydown", (event) => this.#key(event));
    }

    #forget() {
        this.message = null;
        this.words = [];
        this.bytes = new Map();
        this.fields = [];
        this.lit = [];
        this.pinned = false;
    }

    /** @param {number} row */
    async show(row) {
        this.row = row;
        const k = this.trace.blockOf(row);
        const block = await this.trace.block(k);
        if (row !== this.row) return;
        this.#forget();
        const index = row - this.trace.firstRows[k];
        const kind = this.trace.kinds[block.kind(index)];
        const file = this.trace.about.files[this.trace.fileOf(row)];
        const title = block.type(index) === rowTypes.message ? kind.name || "unknown message"
            : block.type(index) === rowTypes.refused ? "refused line" : "no message";
        const place = `line ${counted(block.lines[index])} of ${harmless(file)}`;
        const head = element("header", {}, element("h2", { id: "message-title", tabindex: -1 }, title), this.#labels(block, index));
        head.append(element("p", { class: "place" }, place));
        const parts = block.type(index) === rowTypes.message ? this.#whole(block, index, kind) : this.#line(block, index);
        this.box.replaceChildren(head, ...parts, this.announcement);
        this.box.scrollTop = 0;
    }

    clear() {
        this.row = -1;
        this.#forget();
        this.box.replaceChildren(element("p", { class: "nothing" }, "Choose a message to see its text, its values and its bytes."));
    }

    /** @param {Block} block @param {number} k */
    #labels(block, k) {
        const { link, direction, status } = this.trace.kinds[block.kind(k)];
        const labels = element("p", { class: "labels" });
        /** @param {string} words @param {string} [name] */
        const add = (words, name = "") => words && labels.append(element("span", { class: `label ${name}` }, words));
        if (direction !== 2) {
            add(link);
            add(`${arrows[direction]} the system`, direction === 0 ? "from-system" : "to-system");
        }
        add(harmless(block.time(k)));
        if (block.prefixes[k] && block.prefixes[k] !== block.time(k)) add(harmless(block.prefixes[k]), "prefix");
        if (status !== "decoded" && status !== "no message") add(status, "bad");
        return labels;
    }

    /** @param {Block} block @param {number} k */
    #line(block, k) {
        const { content, column, why } = block.content(k);
        /** @type {HTMLElement[]} */
        const parts = [];
        if (why) parts.push(element("p", { class: "why" }, `Column ${counted(column)}: ${harmless(why)}`));
        parts.push(section("Line", longText(content)));
        return parts;
    }

    /** @param {Block} block @param {number} k
     * @param {{link: string, name: string, direction: number, status: string}} kind */
    #whole(block, k, kind) {
        const message = block.message(k, kind);
        this.message = message;
        const text = this.#text(message.words);
        const parts = [...this.#warnings(message), section("Text", text)];
        parts.push(section(countOf(message.parts[0].bytes.length, "byte"), this.#hexView(message.parts[0].bytes, 0)));
        const fields = this.#fieldTable(0);
        if (fields) parts.push(section("Values", fields));
        const carried = this.#carried(0);
        if (carried.length > 0) parts.push(section(`Carries ${countOf(carried.length, "message")}`, ...carried));
        return parts;
    }

    /** @param {Message} message */
    #warnings(message) {
        const [whole] = message.parts;
        /** @type {string[]} */
        const said = [];
        const unknown = message.parts.reduce((sum, part) => sum + part.unknown, 0);
        const missing = message.parts.reduce((sum, part) => sum + part.missing, 0);
        if (whole.status === "unknown") said.push("No table knows this message's code.");
        if (whole.status === "refused") said.push("It names a class that does not exist: it is decoded as far as that.");
        if (unknown > 0) said.push(`${countOf(unknown, "value")} that no table knows.`);
        if (missing > 0) said.push(`${countOf(missing, "byte")} that its text asks for ${missing === 1 ? "is" : "are"} missing.`);
        if (message.leftOver > 0) said.push(`${countOf(message.leftOver, "word")} behind it that its length does not count.`);
        if (message.cutShort > 0) said.push(`The file's end cuts ${countOf(message.cutShort, "byte")} off.`);
        if (message.padded > 0) said.push(`${countOf(message.padded, "byte")} that the line lacks ${message.padded === 1 ? "was" : "were"} taken as ff.`);
        return said.map((words) => element("p", { class: "why" }, words));
    }

    /** @param {import("../records/block.js").Word[]} words */
    #text(words) {
        const box = element("pre", {
            class: "text", tabindex: 0, role: "group", "aria-label": "Text; arrow keys go from word to word",
        });
        words.slice(0, mostWords).forEach((word, k) => {
            const shown = element("span", { class: "word", "data-word": k }, harmless(word.text));
            if (word.value) shown.classList.add("value");
            if (!word.known) shown.classList.add("unknown");
            if (word.missing) shown.classList.add("missing");
            this.words.push(shown);
            box.append(shown);
        });
        if (words.length > mostWords) box.append(longText(words.slice(mostWords).map((word) => word.text).join("")));
        return box;
    }

    /** @param {Uint8Array} bytes @param {number} source */
    #hexView(bytes, source) {
        const box = element("div", {
            class: "hex", tabindex: 0, role: "group", "aria-label": "Bytes; arrow keys go from byte to byte",
        });
        for (let at = 0; at < bytes.length; at += bytesInLine) {
            const line = element("span", { class: "hex-line" }, element("span", { class: "offset" }, hex(at, 4)));
            const characters = element("span", { class: "characters", "aria-hidden": "true" });
            for (let k = at; k < Math.min(at + bytesInLine, bytes.length); ++k) {
                const byte = element("span", { class: "byte", "data-byte": byteKey(source, k) }, hex(bytes[k]));
                this.bytes.set(byteKey(source, k), byte);
                line.append(byte);
                characters.append(bytes[k] >= 0x20 && bytes[k] < 0x7f ? String.fromCharCode(bytes[k]) : "·");
            }
            for (let k = bytes.length; k < at + bytesInLine && bytes.length > bytesInLine; ++k)
                line.append(element("span", { class: "filler" }, "  "));
            line.append(characters);
            box.append(line);
        }
        return box;
    }

    /** @param {number} part */
    #fieldTable(part) {
        const message = /** @type {Message} */ (this.message);
        const body = element("tbody");
        message.fields.forEach((field, k) => {
            if (field.part !== part) return;
            const [name, meaning, unit] = this.trace.about.fields[field.name];
            const value = element("td", { class: "said" }, harmless(field.value));
            if (unit) value.append(" ", element("span", { class: "unit" }, unit));
            if (field.code !== null) value.append(" ", element("span", { class: "code", title: "its code" }, String(field.code)));
            if (!field.known) value.append(" ", element("span", { class: "label bad" }, "unknown"));
            if (field.missing) value.append(" ", element("span", { class: "label bad" }, "bytes missing"));
            const only = element("button", {
                type: "button", class: "only", "aria-label": `Only messages with this ${name}`, title: "Only messages with this value",
            }, "only");
            only.addEventListener("click", () => this.onlyValue(name, field.value));
            const row = element("tr", { "data-field": k },
                element("th", { scope: "row", title: meaning }, name), value, element("td", {}, only));
            this.fields[k] = row;
            body.append(row);
        });
        return body.children.length > 0 ? element("table", { class: "fields" }, body) : null;
    }

    /** The messages that a part carries, folded.
     * @param {number} carrier @returns {HTMLElement[]} */
    #carried(carrier) {
        const message = /** @type {Message} */ (this.message);
        /** @type {HTMLElement[]} */
        const folded = [];
        message.parts.forEach((part, k) => {
            if (k === 0 || part.carrier !== carrier) return;
            const text = message.words.slice(part.firstWord, part.firstWord + part.words).map((w) => w.text).join("").trim();
            const summary = element("summary", {},
                element("strong", {}, part.name || "unknown message"), ` ${part.link} `,
                element("span", { class: "excerpt" }, harmless(text.split("\n")[0].slice(0, 80))));
            const details = element("details", { class: "part", "data-part": k }, summary);
            this.#fill(details, part, k, text);
            folded.push(details);
        });
        return folded;
    }

    /** @param {HTMLElement} details @param {Part} part @param {number} k @param {string} text */
    #fill(details, part, k, text) {
        details.append(element("pre", { class: "text" }, harmless(text)));
        if (part.source === k) {
            if (part.segments.length > 0) details.append(element("p", { class: "place" }, `Put together from lines ${part.segments.join(", ")}`));
            details.append(this.#hexView(part.bytes, k));
        } else {
            const where = part.bytes.length === 0 ? "no bytes"
                : `bytes ${hex(part.begin, 4)} to ${hex(part.begin + part.bytes.length - 1, 4)} of its carrier`;
            details.append(element("p", { class: "place" }, where));
        }
        const fields = this.#fieldTable(k);
        if (fields) details.append(fields);
        details.append(...this.#carried(k));
    }

    /** @param {Event} event */
    #pointed(event) {
        const target = /** @type {Element} */ (event.target);
        return /** @type {HTMLElement | null} */ (target.closest?.("[data-word], [data-byte], [data-field]") ?? null);
    }

    /** @param {PointerEvent} event */
    #point(event) {
        if (this.pinned || event.pointerType === "touch") return;
        this.#light(this.#pointed(event));
    }

    /** @param {MouseEvent} event */
    #pin(event) {
        const target = /** @type {Element} */ (event.target);
        if (target.closest("button, summary")) return;
        const pointed = this.#pointed(event);
        const same = pointed !== null && this.pinned && pointed.classList.contains("chosen");
        this.#unpin(true);
        if (pointed && !same) {
            this.#light(pointed);
            this.pinned = true;
        }
    }

    /** @param {boolean} always */
    #unpin(always) {
        if (this.pinned && !always) return;
        this.pinned = false;
        this.#light(null);
    }

    /** @param {HTMLElement | null} pointed */
    #light(pointed) {
        for (const one of this.lit) one.classList.remove("lit", "chosen");
        this.lit = [];
        if (!pointed || !this.message) return;
        const { word, byte, field } = pointed.dataset;
        if (word !== undefined) this.#lightWord(Number(word));
        else if (byte !== undefined) this.#lightByte(byte);
        else if (field !== undefined) this.#lightField(Number(field));
        pointed.classList.add("lit", "chosen");
        this.lit.push(pointed);
    }

    /** @param {HTMLElement | undefined} one */
    #add(one) {
        if (!one) return;
        one.classList.add("lit");
        this.lit.push(one);
    }

    /** @param {number} k */
    #lightWord(k) {
        const message = /** @type {Message} */ (this.message);
        const word = message.words[k];
        this.#add(this.words[k]);
        for (const [first, last] of word.ranges) {
            for (let at = first; at <= last; ++at) this.#add(this.bytes.get(byteKey(word.source, at)));
        }
        message.fields.forEach((field, index) => field.word === k && this.#add(this.fields[index]));
    }

    /** @param {string} key */
    #lightByte(key) {
        const [source, offset] = key.split(":").map(Number);
        const { words, fields } = /** @type {Message} */ (this.message);
        words.forEach((word, k) => {
            if (word.source === source && word.ranges.some(([first, last]) => first <= offset && offset <= last)) {
                this.#add(this.words[k]);
                fields.forEach((field, index) => field.word === k && this.#add(this.fields[index]));
            }
        });
    }

    /** @param {number} k */
    #lightField(k) {
        const { fields } = /** @type {Message} */ (this.message);
        if (fields[k].word >= 0) this.#lightWord(fields[k].word);
    }

    /** Arrow keys in the text and in the bytes go from one to the next.
     * @param {KeyboardEvent} event */
    #key(event) {
        const box = /** @type {HTMLElement} */ (event.target);
        if (!box.matches(".text, .hex") || !this.message) return;
        if (event.key === "Escape" && this.pinned) {
            event.stopPropagation();
            this.#unpin(true);
            return;
        }
        const step = { ArrowRight: 1, ArrowDown: bytesInLine, ArrowLeft: -1, ArrowUp: -bytesInLine }[event.key];
        if (step === undefined || event.ctrlKey || event.altKey || event.metaKey) return;
        event.preventDefault();
        const all = /** @type {HTMLElement[]} */ ([...box.querySelectorAll("[data-word], [data-byte]")]);
        const one = box.matches(".text") ? Math.sign(step) : step;
        const now = all.findIndex((each) => each.classList.contains("chosen"));
        const next = all[now < 0 ? 0 : Math.max(0, Math.min(now + one, all.length - 1))];
        if (!next) return;
        this.#light(next);
        this.pinned = true;
        next.scrollIntoView({ block: "nearest" });
        this.#announce(next);
    }

    /** @param {HTMLElement} chosen */
    #announce(chosen) {
        const words = this.lit.filter((one) => one.dataset.word !== undefined).map((one) => one.textContent?.trim());
        const bytes = this.lit.filter((one) => one.dataset.byte !== undefined).map((one) => one.textContent);
        const of = bytes.length > 0 ? `bytes ${[...new Set(bytes)].join(" ")}` : "no bytes";
        this.announcement.textContent = chosen.dataset.word !== undefined
            ? `${chosen.textContent?.trim()}: ${of}`
            : `byte ${chosen.textContent}: ${words.length > 0 ? words.join(", ") : "no words"}`;
    }
}

/** @param {string} title @param {HTMLElement[]} content */
function section(title, ...content) {
    return element("section", {}, element("h3", {}, title), ...content);
}
