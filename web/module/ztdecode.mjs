import instantiate from "./decoder.mjs";

// The sessions of ztdecode_session.h. What they give lies in the module's memory, where addresses and sizes are four
// bytes each, and is copied out of it here.

const library = await instantiate();

const statuses = { ok: 0, done: 1, refused: 2 };
const lineKinds = ["blank", "comment", "other", "messages", "refused"];
const layouts = ["auto", "line", "lng2", "zt", "spzt", "spzt-lng2"];
const directions = ["from", "to"];
const padFlag = 8;
const sizes = { options: 20, range: 8 };

const decoder = new TextDecoder("utf-8", { ignoreBOM: true });
const strict = new TextDecoder("utf-8", { ignoreBOM: true, fatal: true });
const encoder = new TextEncoder();

// Each byte that is no UTF-8 becomes U+FFFD.
function textOf(bytes) {
    const text = decoder.decode(bytes);
    if (!text.includes("\ufffd")) return text;
    let exact = "";
    for (let at = 0; at < bytes.length; ) {
        const length = bytes[at] < 0x80 ? 1 : bytes[at] < 0xe0 ? 2 : bytes[at] < 0xf0 ? 3 : 4;
        try {
            exact += strict.decode(bytes.subarray(at, at + length));
            at += length;
        } catch {
            exact += "\ufffd";
            ++at;
        }
    }
    return exact;
}

// The module's memory, which moves when it grows.
class View {
    constructor() {
        this.bytes = library.HEAPU8;
        this.data = new DataView(this.bytes.buffer);
    }
    number(at) {
        return this.data.getUint32(at, true);
    }
    signed(at) {
        return this.data.getInt32(at, true);
    }
    long(at) {
        return Number(this.data.getBigInt64(at, true));
    }
    flag(at) {
        return this.bytes[at] !== 0;
    }
    content(at) {
        const begin = this.number(at);
        return this.bytes.subarray(begin, begin + this.number(at + 4));
    }
    string(at) {
        return textOf(this.content(at));
    }
    ranges(at) {
        const begin = this.number(at);
        return Array.from({ length: this.number(at + 4) }, (_, k) => {
            const range = begin + k * sizes.range;
            return [this.number(range), this.number(range + 4)];
        });
    }
    constant(at) {
        return at === 0 ? null : textOf(this.bytes.subarray(at, this.bytes.indexOf(0, at)));
    }
}

function items(count, item, read) {
    return Array.from({ length: count }, (_, k) => read(item(k)));
}

function fieldAt(view, at) {
    const kind = view.constant(library._zt_kind_name(view.signed(at + 32)));
    return {
        name: view.string(at),
        kind,
        value: view.string(at + 16),
        shown: view.string(at + 24),
        unit: view.string(at + 8) || null,
        code: kind === "word" ? view.long(at + 40) : null,
        known: view.flag(at + 52),
        missing: view.flag(at + 53),
        sensitivity: view.constant(library._zt_sensitivity_name(view.signed(at + 36))),
        begin: view.number(at + 56),
        end: view.number(at + 60),
        bytes: view.ranges(at + 64),
    };
}

function wordAt(view, at) {
    return {
        text: view.string(at),
        begin: view.number(at + 24),
        end: view.number(at + 28),
        bytes: view.ranges(at + 16),
        field: view.string(at + 8) || null,
        missing: view.flag(at + 32),
    };
}

function messageAt(view, at) {
    const code = view.long(at + 32);
    const segments = Array.from({ length: view.number(at + 52) }, (_, k) => Number(library._zt_segment_at(at, k)));
    return {
        text: view.string(at),
        direction: directions[view.signed(at + 24)],
        link: view.string(at + 8),
        message: view.string(at + 16) || null,
        code: code < 0 ? null : code,
        status: view.constant(library._zt_outcome_name(view.signed(at + 28))),
        length: view.number(at + 40),
        bytes: view.content(at + 56).slice(),
        fields: items(view.number(at + 80), (k) => library._zt_field_at(at, k), (field) => fieldAt(view, field)),
        words: items(view.number(at + 84), (k) => library._zt_word_at(at, k), (word) => wordAt(view, word)),
        parts: items(view.number(at + 88), (k) => library._zt_part_at(at, k), (part) => messageAt(view, part)),
        unknown: view.number(at + 44),
        missing: view.number(at + 48),
        segments,
        padded: view.long(at + 64),
        leftOver: view.long(at + 112),
        place: view.long(at + 72),
    };
}

function checked(status) {
    if (status > statuses.refused) throw new Error(new View().constant(library._zt_status_text(status)));
    return status;
}

// Room in the module's memory for the time of a call.
function withBytes(bytes, action) {
    const at = library._malloc(bytes.length + 8);
    if (at === 0) throw new Error("there is no memory for this");
    try {
        library.HEAPU8.set(bytes, at);
        return action(at, (at + bytes.length + 3) & ~3);
    } finally {
        library._free(at);
    }
}

function indexOf(names, name) {
    const index = names.indexOf(name);
    if (index < 0) throw new RangeError(`${name} is none of ${names.join(", ")}`);
    return index;
}

const forgotten = new FinalizationRegistry((handle) => library._zt_session_destroy(handle));

export class Session {
    #handle;

    constructor({ layout = "auto", direction = "from", pad = false, words = true } = {}) {
        const options = new Int32Array([
            sizes.options, pad ? padFlag : 0, words ? 1 : 0, indexOf(layouts, layout), indexOf(directions, direction),
        ]);
        this.#handle = withBytes(new Uint8Array(options.buffer), (at, result) => {
            checked(library._zt_session_create(at, result));
            return new View().number(result);
        });
        forgotten.register(this, this.#handle, this);
    }

    #open() {
        if (this.#handle === 0) throw new Error("the session is closed");
        return this.#handle;
    }

    feed(line) {
        const handle = this.#open();
        const bytes = typeof line === "string" ? encoder.encode(line) : line;
        return withBytes(bytes, (at, result) => {
            checked(library._zt_feed_line(handle, at, bytes.length, result));
            const fed = new View().number(result);
            const messages = [];
            while (checked(library._zt_next_message(handle, result)) === statuses.ok) {
                const view = new View();
                messages.push(messageAt(view, view.number(result)));
            }
            return this.#line(fed, messages);
        });
    }

    #line(at, messages) {
        const view = new View();
        const reason = view.signed(at + 32);
        const refusal = reason === 0 ? null : {
            reason: view.constant(library._zt_refusal_name(reason)),
            text: view.string(at + 64),
            column: view.long(at + 40),
            expected: view.long(at + 48),
            found: view.long(at + 56),
        };
        return {
            kind: lineKinds[view.signed(at)],
            content: view.string(at + 8),
            columns: view.string(at + 16),
            place: view.long(at + 24),
            prefix: view.string(at + 72),
            time: view.string(at + 80),
            messages,
            refusal,
        };
    }

    decode(bytes, direction = "from") {
        const handle = this.#open();
        return withBytes(Uint8Array.from(bytes), (at, result) => {
            checked(library._zt_decode(handle, at, bytes.length, indexOf(directions, direction), result));
            const view = new View();
            return messageAt(view, view.number(result));
        });
    }

    close() {
        if (this.#handle === 0) return;
        forgotten.unregister(this);
        library._zt_session_destroy(this.#handle);
        this.#handle = 0;
    }
}

export function decode(bytes, direction = "from") {
    const session = new Session();
    try {
        return session.decode(bytes, direction);
    } finally {
        session.close();
    }
}

export const version = new View().constant(library._zt_version());
