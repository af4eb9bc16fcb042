/** First and last offset, in the bytes of the message. */
export type Range = [first: number, last: number];

export type Kind = "number" | "word" | "address" | "text" | "version" | "flag" | "bytes";
export type Sensitivity = "none" | "call_number" | "person" | "network_address" | "hardware_address" | "secret";
export type Direction = "from" | "to";

/** A value that the text shows. */
export interface Field {
    name: string;
    kind: Kind;
    value: string;
    /** As it stands in the text. */
    shown: string;
    unit: string | null;
    /** Of a word. */
    code: number | null;
    known: boolean;
    missing: boolean;
    sensitivity: Sensitivity;
    /** Offsets in bytes of the text. */
    begin: number;
    end: number;
    bytes: Range[];
}

/** A piece of the text, and the bytes that it comes from. */
export interface Word {
    text: string;
    begin: number;
    end: number;
    bytes: Range[];
    /** The name of the value that it is. */
    field: string | null;
    missing: boolean;
}

/** A message, or one that it carries. */
export interface Message {
    text: string;
    direction: Direction;
    link: string;
    message: string | null;
    code: number | null;
    status: "decoded" | "unknown" | "refused" | "left_out";
    length: number;
    bytes: Uint8Array;
    fields: Field[];
    words: Word[];
    parts: Message[];
    unknown: number;
    missing: number;
    /** Where the segments stood that it was put together from. */
    segments: number[];
    padded: number;
    leftOver: number;
    /** The number of its line. */
    place: number;
}

/** What a line of a trace says. */
export interface Line {
    kind: "blank" | "comment" | "other" | "messages" | "refused";
    content: string;
    columns: string;
    place: number;
    prefix: string;
    time: string;
    messages: Message[];
    /** Why it cannot be read, or not to its end. */
    refusal: null | {
        reason: "no_length" | "too_long" | "too_short" | "no_hexadecimal" | "no_tag" | "no_direction";
        text: string;
        column: number;
        expected: number;
        found: number;
    };
}

export interface Options {
    /** Default: each line's is recognised. */
    layout?: "auto" | "line" | "lng2" | "zt" | "spzt" | "spzt-lng2";
    /** Of lines whose layout does not say it. */
    direction?: Direction;
    /** Bytes that a line lacks are taken as ff. */
    pad?: boolean;
    /** The bytes of every piece of the text too; default: true. */
    words?: boolean;
}

/** What is remembered from one message to the next: one for each trace. */
export class Session {
    constructor(options?: Options);
    /** The next line of the trace. */
    feed(line: string | Uint8Array): Line;
    decode(bytes: Uint8Array | number[], direction?: Direction): Message;
    /** Gives its memory back. */
    close(): void;
}

/** One message by itself. */
export function decode(bytes: Uint8Array | number[], direction?: Direction): Message;

export const version: string;
