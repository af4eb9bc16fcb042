// What comes from the trace gets into the document as text, and in no other way.

/**
 * @template {keyof HTMLElementTagNameMap} Tag
 * @param {Tag} tag
 * @param {Record<string, string | number | boolean | null>} attributes
 * @param {(Node | string)[]} children
 * @returns {HTMLElementTagNameMap[Tag]}
 */
export function element(tag, attributes = {}, ...children) {
    const made = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) {
        if (value === false || value === null) continue;
        made.setAttribute(name, value === true ? "" : String(value));
    }
    made.append(...children);
    return made;
}

/**
 * @template {HTMLElement} [Of=HTMLElement]
 * @param {string} id
 * @returns {Of}
 */
export function byId(id) {
    return /** @type {Of} */ (document.getElementById(id));
}

/** @param {number} n */
export function counted(n) {
    return n.toLocaleString("en");
}

/** @param {number} n @param {string} one */
export function countOf(n, one) {
    return `${counted(n)} ${one}${n === 1 ? "" : "s"}`;
}

// Control characters, and those that turn the direction of the words around them.
const acting = /[\u0000-\u0008\u000b-\u001f\u007f-\u009f\u061c\u200b-\u200f\u2028-\u202e\u2060-\u206f\ufeff]/;

/** @param {string} character */
function escaped(character) {
    const code = character.charCodeAt(0);
    return code < 0x80 ? `\\x${code.toString(16).padStart(2, "0")}` : `\\u${code.toString(16).padStart(4, "0")}`;
}

/** Text in which nothing acts on what stands around it: such characters are shown by their codes.
 * @param {string} text */
export function harmless(text) {
    if (!acting.test(text)) return text;
    return text.replace(new RegExp(acting, "g"), escaped);
}

/** The same on one line.
 * @param {string} text */
export function oneLine(text) {
    return harmless(text.replace(/[\t\n\r]+/g, " "));
}
