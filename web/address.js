import { facets } from "./selection/selection.js";

// The page's address says what is chosen, so that a place can be mailed: #line=120, #file=2&line=7&q=reset&link=ip.

/**
 * @typedef {import("./selection/selection.js").Facet} Facet
 *
 * @typedef {object} Place
 * @property {number} file from 1 on
 * @property {number} line 0: none
 * @property {number} message of its line, from 0 on
 * @property {string} tab
 * @property {string} query
 * @property {boolean} all the search marks its matches and leaves the others
 * @property {Partial<Record<Facet, string[]>>} chosen
 */

/** @param {string} hash @returns {Place} */
export function readAddress(hash) {
    const said = new URLSearchParams(hash.replace(/^#/, ""));
    /** @param {string} name @param {number} least */
    const number = (name, least) => Math.max(least, Math.floor(Number(said.get(name))) || 0);
    /** @type {Partial<Record<Facet, string[]>>} */
    const chosen = {};
    for (const facet of facets) chosen[facet] = said.getAll(facet);
    return {
        file: number("file", 1), line: number("line", 0), message: number("message", 0), tab: said.get("tab") ?? "",
        query: said.get("q") ?? "", all: said.has("all"), chosen,
    };
}

/** @param {Place} place */
export function writeAddress(place) {
    const said = new URLSearchParams();
    if (place.tab && place.tab !== "messages") said.set("tab", place.tab);
    if (place.query) said.set("q", place.query);
    if (place.all) said.set("all", "1");
    for (const facet of facets) {
        for (const word of place.chosen[facet] ?? []) said.append(facet, word);
    }
    if (place.file > 1) said.set("file", String(place.file));
    if (place.line > 0) said.set("line", String(place.line));
    if (place.message > 0) said.set("message", String(place.message));
    return `#${said}`;
}
