// What the page holds, as the command packed it.

const decoder = new TextDecoder("utf-8", { ignoreBOM: true });
const strict = new TextDecoder("utf-8", { ignoreBOM: true, fatal: true });
const mostPlain = 64;

/** @param {Uint8Array} bytes */
function decoded(bytes) {
    const text = decoder.decode(bytes);
    return text.includes("\ufffd") ? decodedByteByByte(bytes) : text;
}

// Decoders make one U+FFFD of the beginning of a character, however many bytes it has.
/** @param {Uint8Array} bytes */
function decodedByteByByte(bytes) {
    let text = "";
    for (let at = 0; at < bytes.length; ) {
        const first = bytes[at];
        const length = first < 0x80 ? 1 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
        try {
            text += strict.decode(bytes.subarray(at, at + length));
            at += length;
        } catch {
            text += "\ufffd";
            ++at;
        }
    }
    return text;
}

/**
 * Characters of UTF-8; each byte that is none becomes U+FFFD.
 * @param {Uint8Array} bytes
 * @param {number} begin
 * @param {number} end
 */
export function textOf(bytes, begin, end) {
    if (end - begin > mostPlain) return decoded(bytes.subarray(begin, end));
    let text = "";
    for (let k = begin; k < end; ++k) {
        if (bytes[k] >= 0x80) return decoded(bytes.subarray(begin, end));
        text += String.fromCharCode(bytes[k]);
    }
    return text;
}

// Reads numbers (groups of seven bits, the low ones first) and words (behind their number of bytes).
export class Reader {
    /** @param {Uint8Array} bytes */
    constructor(bytes) {
        this.bytes = bytes;
        this.at = 0;
    }

    number() {
        const { bytes } = this;
        let byte = bytes[this.at++];
        if (byte < 0x80) return byte;
        let number = byte & 0x7f;
        let unit = 128;
        do {
            byte = bytes[this.at++];
            number += (byte & 0x7f) * unit;
            unit *= 128;
        } while (byte >= 0x80);
        return number;
    }

    signedNumber() {
        const number = this.number();
        return number % 2 === 0 ? number / 2 : -(number + 1) / 2;
    }

    words() {
        const length = this.number();
        this.at += length;
        return textOf(this.bytes, this.at - length, this.at);
    }

    raw() {
        const length = this.number();
        this.at += length;
        return this.bytes.subarray(this.at - length, this.at);
    }

    skip() {
        const length = this.number();
        this.at += length;
    }

    ended() {
        return this.at >= this.bytes.length;
    }
}

/** @param {string} base64 */
function bytesOfBase64(base64) {
    const array = /** @type {any} */ (Uint8Array);
    if (array.fromBase64) return /** @type {Uint8Array<ArrayBuffer>} */ (array.fromBase64(base64));
    const characters = atob(base64);
    const bytes = new Uint8Array(characters.length);
    for (let k = 0; k < characters.length; ++k) bytes[k] = characters.charCodeAt(k);
    return bytes;
}

/** @param {string} base64 */
export async function unpack(base64) {
    const packed = new Blob([bytesOfBase64(base64)]).stream();
    return new Uint8Array(await new Response(packed.pipeThrough(new DecompressionStream("deflate"))).arrayBuffer());
}
