import { Reader, textOf } from "./bytes.js";

// Some thousand rows as tool/report/page_rows.cpp writes them: what messages have in common is a shape, and a row
// has its shape, its bytes, and those of its values that do not follow from them.

/**
 * @typedef {object} Word a piece of a text, and the bytes that it comes from
 * @property {string} text
 * @property {[number, number][]} ranges first and last offsets
 * @property {number} source the part in whose bytes the offsets count
 * @property {boolean} missing a byte was asked for that the message does not have
 * @property {boolean} value it shows a value
 * @property {boolean} known
 *
 * @typedef {object} Field
 * @property {number} part
 * @property {number} name among the trace's fields
 * @property {string} kind
 * @property {string} value
 * @property {number | null} code of a word
 * @property {boolean} known
 * @property {boolean} missing
 * @property {number} word that shows it, -1 where none does
 *
 * @typedef {object} Part the captured message, or one that it carries
 * @property {number} carrier
 * @property {string} link
 * @property {string} name
 * @property {number | null} code
 * @property {number} direction
 * @property {string} status
 * @property {number} unknown
 * @property {number} missing
 * @property {number} firstWord
 * @property {number} words
 * @property {number} source the part that its bytes are in; itself, where they are its own
 * @property {number} begin of its bytes in those
 * @property {Uint8Array} bytes
 * @property {number[]} segments the lines that it was put together from
 *
 * @typedef {object} Message
 * @property {Word[]} words
 * @property {Field[]} fields
 * @property {Part[]} parts
 * @property {number} leftOver
 * @property {number} cutShort
 * @property {number} padded
 *
 * @typedef {{value: boolean, missing: boolean, known: boolean, source: number, ranges: [number, number][],
 *            text: string, rule: number}} WordShape
 * @typedef {{part: number, name: number, kind: number, known: boolean, missing: boolean, word: number,
 *            form: number}} FieldShape
 * @typedef {{code: number | null, unknown: number, missing: number, carrier: number, link: string, name: string,
 *            direction: number, status: number, firstWord: number, words: number, own: boolean, source: number,
 *            begin: number, length: number}} PartShape
 * @typedef {{kind: number, type: number, words: WordShape[], fields: FieldShape[], leftOver: number,
 *            cutShort: number, padded: number, parts: PartShape[], steps: number[]}} Shape
 */

export const rowTypes = { message: 0, refused: 1, other: 2 };
const rules = { stored: 0, word: 1, sameBytes: 2, decimal: 3, hex: 4, upperHex: 5, big: 6, little: 7, dotted: 8 };
const forms = { asShown: 0, hexadecimal: 1, stored: 2, flag: 3, digits: 4, hiddenWord: 5 };
const fieldKinds = ["number", "word", "address", "text", "version", "flag", "bytes"];
const statuses = ["decoded", "unknown", "refused"];

// What a row has among the values, one behind the other.
const steps = { words: 0, number: 1, ownBytes: 2 };

/** @param {Reader} reader @returns {[number, number][]} */
function readRanges(reader) {
    /** @type {[number, number][]} */
    const ranges = [];
    for (let left = reader.number(); left > 0; --left) ranges.push([reader.number(), reader.number()]);
    return ranges;
}

/** @param {Reader} reader @returns {WordShape} */
function readWord(reader) {
    const flags = reader.number();
    const source = flags & 4 ? reader.number() : 0;
    const ranges = readRanges(reader);
    const value = (flags & 1) !== 0;
    const rule = value ? reader.number() : 0;
    const text = value ? "" : reader.words();
    return { value, missing: (flags & 2) !== 0, known: !value || (flags & 8) !== 0, source, ranges, text, rule };
}

/** @param {Reader} reader @returns {FieldShape} */
function readField(reader) {
    const part = reader.number();
    const name = reader.number();
    const kind = reader.number();
    const flags = reader.number();
    const word = reader.number() - 1;
    return { part, name, kind, known: (flags & 1) !== 0, missing: (flags & 2) !== 0, word, form: reader.number() };
}

/** @param {Reader} reader @param {number} index @param {number} words @returns {PartShape} */
function readPart(reader, index, words) {
    const code = reader.number();
    const unknown = reader.number();
    const missing = reader.number();
    const part = {
        code: code === 0 ? null : code - 1, unknown, missing, carrier: 0, link: "", name: "", direction: 0, status: 0,
        firstWord: 0, words, own: false, source: 0, begin: 0, length: 0,
    };
    if (index === 0) return part;
    part.carrier = reader.number();
    part.link = reader.words();
    part.name = reader.words();
    part.direction = reader.number();
    part.status = reader.number();
    part.firstWord = reader.number();
    part.words = reader.number();
    part.own = reader.number() !== 0;
    if (part.own) return { ...part, source: index };
    part.source = reader.number();
    part.begin = reader.number();
    part.length = reader.number();
    return part;
}

/** @param {Reader} reader @returns {Shape} */
function readShape(reader) {
    /** @type {Shape} */
    const shape = {
        kind: reader.number(), type: reader.number(), words: [], fields: [], leftOver: 0, cutShort: 0, padded: 0,
        parts: [], steps: [],
    };
    if (shape.type === rowTypes.refused) shape.steps.push(steps.words, steps.number, steps.words);
    if (shape.type === rowTypes.other) shape.steps.push(steps.words);
    if (shape.type !== rowTypes.message) return shape;
    for (let left = reader.number(); left > 0; --left) shape.words.push(readWord(reader));
    for (let left = reader.number(); left > 0; --left) shape.fields.push(readField(reader));
    shape.leftOver = reader.number();
    shape.cutShort = reader.number();
    shape.padded = reader.number();
    const parts = reader.number();
    for (let k = 0; k < parts; ++k) shape.parts.push(readPart(reader, k, shape.words.length));
    for (const word of shape.words) {
        if (word.value && word.rule === rules.stored) shape.steps.push(steps.words);
        if (word.value && word.rule === rules.word) shape.steps.push(steps.number);
    }
    for (const field of shape.fields) {
        if (field.form === forms.stored) shape.steps.push(steps.words);
        if (field.form === forms.hiddenWord) shape.steps.push(steps.number);
    }
    for (const part of shape.parts) {
        if (part.own) shape.steps.push(steps.ownBytes);
    }
    return shape;
}

/** @param {Uint8Array} bytes */
function readShapes(bytes) {
    const reader = new Reader(bytes);
    /** @type {Shape[]} */
    const shapes = [];
    while (!reader.ended()) {
        const end = reader.number() + reader.at;
        shapes.push(readShape(reader));
        reader.at = end;
    }
    return shapes;
}

/** @param {Uint8Array} bytes */
function readDictionary(bytes) {
    const reader = new Reader(bytes);
    /** @type {{text: string, code: number, known: boolean}[]} */
    const words = [];
    while (!reader.ended())
        words.push({ text: reader.words(), code: reader.signedNumber(), known: reader.number() !== 0 });
    return words;
}

/** @param {Reader} reader @param {number[]} wanted */
function skipValues(reader, wanted) {
    for (const step of wanted) {
        if (step === steps.number) {
            reader.number();
        } else {
            reader.skip();
            if (step === steps.ownBytes) {
                for (let left = reader.number(); left > 0; --left) reader.number();
            }
        }
    }
}

/** @param {string} word */
function withoutPunctuation(word) {
    return word.replace(/^[ \t\n,:=]+|[ \t\n,:=]+$/g, "");
}

/** @param {number} byte */
function twoDigits(byte) {
    return byte.toString(16).padStart(2, "0");
}

/** @param {Uint8Array} bytes @param {[number, number][]} ranges */
function bytesIn(bytes, ranges) {
    /** @type {number[]} */
    const found = [];
    for (const [first, last] of ranges) {
        for (let k = first; k <= last; ++k) found.push(bytes[k]);
    }
    return found;
}

/** @param {number} rule @param {number[]} bytes */
function wordsFromBytes(rule, bytes) {
    switch (rule) {
        case rules.sameBytes: return textOf(Uint8Array.from(bytes), 0, bytes.length);
        case rules.decimal: return String(bytes[0]);
        case rules.hex: return twoDigits(bytes[0]);
        case rules.upperHex: return twoDigits(bytes[0]).toUpperCase();
        case rules.big: return String(bytes[0] * 256 + bytes[1]);
        case rules.little: return String(bytes[1] * 256 + bytes[0]);
        default: return bytes.join(".");
    }
}

/** Ranges that reach to the end of their bytes say so instead of how long they are.
 * @param {[number, number][]} ranges @param {number} length @returns {[number, number][]} */
function upTo(ranges, length) {
    return ranges.map(([first, rest]) => [first, rest === 0 ? length - 1 : first + rest - 2]);
}

export class Block {
    /** @param {Uint8Array} content */
    constructor(content) {
        const reader = new Reader(content);
        this.size = reader.number();
        const firstLine = reader.number();
        this.shapes = readShapes(reader.raw());
        this.dictionary = readDictionary(reader.raw());
        this.shapeOf = this.#numbers(reader.raw());
        this.lines = new Float64Array(this.size);
        const lines = new Reader(reader.raw());
        for (let k = 0, line = firstLine; k < this.size; ++k) this.lines[k] = line += lines.signedNumber();
        /** @type {(string | null)[]} */
        this.columns = [];
        /** @type {string[]} */
        this.prefixes = [];
        /** @type {string[]} */
        this.times = [];
        this.#readPlaces(new Reader(reader.raw()));
        this.bytesAt = new Uint32Array(this.size + 1);
        this.#readLengths(new Reader(reader.raw()));
        this.bytes = reader.raw();
        this.values = reader.raw();
        this.valuesAt = new Uint32Array(this.size);
        const values = new Reader(this.values);
        for (let k = 0; k < this.size; ++k) {
            this.valuesAt[k] = values.at;
            skipValues(values, this.shapes[this.shapeOf[k]].steps);
        }
    }

    /** @param {Uint8Array} bytes */
    #numbers(bytes) {
        const reader = new Reader(bytes);
        const numbers = new Uint32Array(this.size);
        for (let k = 0; k < this.size; ++k) numbers[k] = reader.number();
        return numbers;
    }

    /** @param {Reader} reader */
    #readPlaces(reader) {
        let number = 0;
        let prefix = "";
        let time = "";
        // A character may begin before the place where two texts part: they are read as bytes.
        const behind = new Behind();
        const behindTime = new Behind();
        for (let k = 0; k < this.size; ++k) {
            const isMessage = this.shapes[this.shapeOf[k]].type === rowTypes.message;
            if (isMessage) {
                const form = reader.number();
                if (form === 2) number += reader.signedNumber();
                this.columns.push(form === 0 ? null : form === 1 ? reader.words() : String(number).padStart(6, "0"));
                prefix = behind.read(reader);
                time = behindTime.read(reader);
            } else {
                this.columns.push(null);
            }
            this.prefixes.push(isMessage ? prefix : "");
            this.times.push(isMessage ? time : "");
        }
    }

    /** @param {Reader} reader */
    #readLengths(reader) {
        for (let k = 0; k < this.size; ++k) {
            const isMessage = this.shapes[this.shapeOf[k]].type === rowTypes.message;
            this.bytesAt[k + 1] = this.bytesAt[k] + (isMessage ? reader.number() : 0);
        }
    }

    /** @param {number} k */
    shape(k) {
        return this.shapes[this.shapeOf[k]];
    }

    /** @param {number} k */
    type(k) {
        return this.shape(k).type;
    }

    /** @param {number} k */
    kind(k) {
        return this.shape(k).kind;
    }

    /** @param {number} k */
    bytesOf(k) {
        return this.bytes.subarray(this.bytesAt[k], this.bytesAt[k + 1]);
    }

    /** @param {number} k */
    time(k) {
        return this.times[k] || this.columns[k] || "";
    }

    /** The line of a row without a message, and why it was refused.
     * @param {number} k */
    content(k) {
        const reader = new Reader(this.values);
        reader.at = this.valuesAt[k];
        const content = reader.words();
        if (this.type(k) !== rowTypes.refused) return { content, column: 0, why: "" };
        return { content, column: reader.number(), why: reader.words() };
    }

    /** The text of a message, or the line of any other row; it ends a little behind the line in which `most`
     * characters are reached.
     * @param {number} k */
    text(k, most = Infinity) {
        const shape = this.shape(k);
        if (shape.type !== rowTypes.message) return this.content(k).content;
        const reader = new Reader(this.values);
        reader.at = this.valuesAt[k];
        const bytes = this.bytesOf(k);
        let text = "";
        for (const word of shape.words) {
            text += word.value ? this.#valueText(word, reader, bytes, shape, k) : word.text;
            if (text.length > most) break;
        }
        return text;
    }

    /** @param {number} k */
    firstLine(k) {
        const most = 240;
        const text = this.text(k, most).trimStart();
        const end = text.indexOf("\n");
        return text.slice(0, end < 0 ? most : Math.min(end, most));
    }

    /** @param {WordShape} word @param {Reader} reader @param {Uint8Array} bytes @param {Shape} shape
     * @param {number} k */
    #valueText(word, reader, bytes, shape, k) {
        if (word.rule === rules.stored) return reader.words();
        if (word.rule === rules.word) return this.dictionary[reader.number()].text;
        const from = word.source === 0 ? bytes : this.#ownBytes(shape, k)[word.source];
        return wordsFromBytes(word.rule, bytesIn(from, upTo(word.ranges, from.length)));
    }

    /** Of the parts that have any: they stand behind all other values.
     * @param {Shape} shape @param {number} k */
    #ownBytes(shape, k) {
        const reader = new Reader(this.values);
        reader.at = this.valuesAt[k];
        skipValues(reader, shape.steps.filter((step) => step !== steps.ownBytes));
        return shape.parts.map((part, index) => {
            if (index === 0) return this.bytesOf(k);
            if (!part.own) return new Uint8Array();
            const bytes = reader.raw();
            for (let left = reader.number(); left > 0; --left) reader.number();
            return bytes;
        });
    }

    /** @param {number} k @param {{link: string, name: string, direction: number, status: string}} kind its own
     * @returns {Message} */
    message(k, kind) {
        const shape = this.shape(k);
        const reader = new Reader(this.values);
        reader.at = this.valuesAt[k];
        const own = this.#ownBytes(shape, k);
        /** @type {(number | null)[]} */
        const codes = [];
        const words = shape.words.map((word) => {
            const from = own[word.source];
            const ranges = upTo(word.ranges, from.length);
            let { text, known } = word;
            let code = null;
            if (word.value && word.rule === rules.word) ({ text, known, code } = this.dictionary[reader.number()]);
            else if (word.value && word.rule === rules.stored) text = reader.words();
            else if (word.value) text = wordsFromBytes(word.rule, bytesIn(from, ranges));
            codes.push(code);
            return { text, ranges, source: word.source, missing: word.missing, value: word.value, known };
        });
        const fields = shape.fields.map((field) => {
            const hidden = field.form === forms.hiddenWord ? this.dictionary[reader.number()] : null;
            const shown = hidden?.text ?? words[field.word]?.text ?? "";
            const code = hidden?.code ?? codes[field.word] ?? null;
            const kindName = fieldKinds[field.kind];
            const value = this.#fieldValue(field, shown, code, reader);
            return {
                part: field.part, name: field.name, kind: kindName, value, code: kindName === "word" ? code : null,
                known: field.known, missing: field.missing, word: field.word,
            };
        });
        const parts = shape.parts.map((part, index) => this.#part(part, index, kind, own, reader));
        return { words, fields, parts, leftOver: shape.leftOver, cutShort: shape.cutShort, padded: shape.padded };
    }

    /** @param {FieldShape} field @param {string} shown @param {number | null} code @param {Reader} reader */
    #fieldValue(field, shown, code, reader) {
        switch (field.form) {
            case forms.hexadecimal: return String(parseInt(withoutPunctuation(shown), 16));
            case forms.stored: return reader.words();
            case forms.flag: return code === 0 ? "false" : "true";
            case forms.digits: return shown.replace(/0x/g, "").replace(/[^0-9a-fA-F]/g, "").toLowerCase();
            default: return withoutPunctuation(shown);
        }
    }

    /** @param {PartShape} part @param {number} index
     * @param {{link: string, name: string, direction: number, status: string}} kind
     * @param {Uint8Array[]} own @param {Reader} reader @returns {Part} */
    #part(part, index, kind, own, reader) {
        const { code, unknown, missing, carrier, firstWord, words, source, begin } = part;
        const same = { code, unknown, missing, carrier, firstWord, words, source, begin, segments: [] };
        if (index === 0) return { ...same, ...kind, bytes: own[0] };
        const { link, name, direction } = part;
        const named = { ...same, link, name, direction, status: statuses[part.status] };
        if (part.own) {
            const bytes = reader.raw();
            /** @type {number[]} */
            const segments = [];
            for (let left = reader.number(); left > 0; --left) segments.push(reader.number());
            return { ...named, bytes, segments };
        }
        const end = part.length === 0 ? own[source].length : begin + part.length - 1;
        return { ...named, bytes: own[source].subarray(begin, end) };
    }
}

// Words that mostly begin like the last ones.
class Behind {
    constructor() {
        this.bytes = new Uint8Array();
        this.text = "";
    }

    /** @param {Reader} reader */
    read(reader) {
        const common = reader.number();
        const rest = reader.raw();
        if (common === this.bytes.length && rest.length === 0) return this.text;
        const bytes = new Uint8Array(common + rest.length);
        bytes.set(this.bytes.subarray(0, common));
        bytes.set(rest, common);
        this.bytes = bytes;
        this.text = textOf(bytes, 0, bytes.length);
        return this.text;
    }
}
