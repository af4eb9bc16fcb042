import { readAddress, writeAddress } from "./address.js";
import { traceIn } from "./records/trace.js";
import { Selection } from "./selection/selection.js";
import { byId, counted, countOf, element, harmless } from "./views/dom.js";
import { Filters } from "./views/filters.js";
import { Ladder } from "./views/ladder.js";
import { List } from "./views/list.js";
import { MessageView } from "./views/message.js";
import { fillPrint } from "./views/print.js";
import { fillRow, makeRow } from "./views/rows.js";
import { drawSummary, itemList } from "./views/summary.js";

/**
 * @typedef {import("./records/trace.js").Trace} Trace
 * @typedef {import("./records/trace.js").Item} Item
 * @typedef {import("./selection/selection.js").Facet} Facet
 */

const tabs = ["messages", "summary", "findings", "ladder"];
const pauseInTyping = 150; // milliseconds

class Page {
    /** @param {Trace} trace */
    constructor(trace) {
        this.trace = trace;
        this.selection = new Selection(trace);
        this.row = -1;
        this.tab = "messages";
        this.message = new MessageView(byId("message"), trace, (name, value) => this.#onlyValue(name, value));
        /** @type {number[]} rows with findings */
        this.suspicious = [];
        /** @type {List} */
        this.list = new List(byId("list"), "Messages", {
            size: () => this.selection.size,
            make: makeRow,
            fill: (place, shown) => this.#fill(this.list, this.selection.row(place), shown),
            open: (place) => this.#open(this.selection.row(place), true),
        });
        this.findings = this.#makeFindings();
        this.ladder = this.#makeLadder();
        this.filters = new Filters(byId("filters"), this.selection);
        this.#listen();
        this.#title();
        this.message.clear();
    }

    async begin() {
        this.list.measure();
        const place = readAddress(location.hash);
        this.showTab(place.tab);
        if (place.line > 0) await this.#goToLine(place.file - 1, place.line, place.message);
        await this.selection.begin();
        await this.#askAsAddressed(place);
    }

    /** @param {import("./address.js").Place} place */
    async #askAsAddressed(place) {
        byId("search").setAttribute("value", "");
        /** @type {HTMLInputElement} */ (byId("search")).value = place.query;
        this.#setOnlyMatches(!place.all);
        this.selection.chooseOnly(place.chosen);
        await this.#ask(place.query);
    }

    #title() {
        const { files } = this.trace.about;
        const name = files.length === 1 ? harmless(files[0]) : countOf(files.length, "file");
        document.title = `${name} – ztdecode`;
        byId("files").textContent = name;
        byId("files").title = files.map(harmless).join("\n");
        byId("version").textContent = this.trace.about.version;
    }

    /** @param {List} list @param {number} row @param {HTMLElement} shown */
    #fill(list, row, shown) {
        const there = fillRow(this.trace, row, shown, () => list.draw(), list === this.findings);
        shown.classList.toggle("hit", !this.selection.onlyMatches && this.selection.hit(row));
        return there;
    }

    /** @returns {List} */
    #makeFindings() {
        const { findings } = this.trace.about;
        if (findings) byId("finding-items").replaceChildren(itemList(findings, (item) => this.#openItem(item)));
        return new List(byId("finding-list"), "Messages with findings", {
            size: () => this.suspicious.length,
            make: makeRow,
            fill: (place, shown) => this.#fill(this.findings, this.suspicious[place], shown),
            open: (place) => this.#leadTo(this.suspicious[place]),
        });
    }

    /** @returns {List} */
    #makeLadder() {
        const ladder = new Ladder(this.selection);
        byId("lane-names").append(...ladder.head());
        const items = this.trace.about.ladder;
        if (items) byId("ladder-items").replaceChildren(itemList(items, (item) => this.#openItem(item)));
        return new List(byId("ladder-list"), "Messages between the system and its terminals", {
            size: () => this.selection.size,
            make: () => ladder.make(),
            fill: (place, shown) => ladder.fill(this.selection.row(place), shown, () => this.ladder.draw()),
            open: (place) => this.#leadTo(this.selection.row(place)),
        });
    }

    #listen() {
        const search = /** @type {HTMLInputElement} */ (byId("search"));
        let typing = 0;
        search.addEventListener("input", () => {
            clearTimeout(typing);
            typing = window.setTimeout(() => this.#ask(search.value), pauseInTyping);
        });
        search.addEventListener("keydown", (event) => {
            if (event.key === "Enter" || event.key === "ArrowDown") {
                event.preventDefault();
                byId("list").focus();
                if (this.list.current < 0) this.list.go(0);
            }
        });
        byId("only-matches").addEventListener("click", () => {
            this.#setOnlyMatches(!this.selection.onlyMatches);
            this.#remember();
        });
        for (const tab of tabs) byId(`tab-${tab}`).addEventListener("click", () => this.showTab(tab, true));
        byId("tabs").addEventListener("keydown", (event) => this.#tabKey(event));
        byId("theme").addEventListener("click", () => this.#otherTheme());
        byId("help-button").addEventListener("click", () => /** @type {HTMLDialogElement} */ (byId("help")).showModal());
        byId("back").addEventListener("click", () => this.#closeMessage());
        byId("previous").addEventListener("click", () => this.#step(-1));
        byId("next").addEventListener("click", () => this.#step(1));
        this.selection.addEventListener("change", () => this.#changed());
        document.addEventListener("keydown", (event) => this.#key(event));
        window.addEventListener("hashchange", () => this.#addressChanged());
        window.addEventListener("beforeprint", () => fillPrint(byId("print"), this.selection, this.list.current));
        window.addEventListener("afterprint", () => byId("print").replaceChildren());
    }

    #changed() {
        const { selection, list } = this;
        if (this.row >= 0 && selection.size > 0) {
            const place = selection.place(this.row);
            list.current = selection.row(place) === this.row ? place : -1;
        } else {
            list.current = -1;
        }
        list.changed();
        if (list.current >= 0) list.show(list.current);
        this.ladder.current = list.current;
        this.ladder.changed();
        this.#say();
        if (this.tab !== "messages") this.#drawTab();
    }

    #say() {
        const { selection, trace } = this;
        const all = countOf(trace.size, "line");
        let words = selection.size === trace.size ? all : `${counted(selection.size)} of ${all}`;
        if (!selection.query.empty && !selection.onlyMatches) words += ", matches marked";
        if (selection.searching) words += ` … ${Math.floor((100 * selection.searched) / trace.size)} %`;
        byId("count").textContent = words;
        byId("empty").hidden = selection.size > 0 || selection.searching;
    }

    /** @param {string} text */
    async #ask(text) {
        const search = byId("search");
        const problem = byId("problem");
        try {
            problem.textContent = "";
            search.removeAttribute("aria-invalid");
            const asked = this.selection.ask(text);
            this.#remember();
            await asked;
        } catch (error) {
            search.setAttribute("aria-invalid", "true");
            problem.textContent = error instanceof Error ? error.message : String(error);
        }
    }

    /** @param {boolean} on */
    #setOnlyMatches(on) {
        byId("only-matches").setAttribute("aria-pressed", String(on));
        this.selection.showOnlyMatches(on);
    }

    /** @param {string} name @param {string} value */
    #onlyValue(name, value) {
        const search = /** @type {HTMLInputElement} */ (byId("search"));
        search.value = `${name}="${value}"`;
        this.#ask(search.value);
        this.#closeMessage();
    }

    /** @param {number} row @param {boolean} byHand */
    #open(row, byHand) {
        this.row = row;
        this.message.show(row);
        if (byHand) document.body.classList.add("message-open");
        this.#remember();
    }

    #closeMessage() {
        document.body.classList.remove("message-open");
        byId("list").focus({ preventScroll: true });
    }

    /** A message that another tab names.
     * @param {number} row */
    #leadTo(row) {
        this.showTab("messages", true);
        const place = this.selection.size > 0 ? this.selection.place(row) : -1;
        if (place < 0 || this.selection.row(place) !== row) {
            this.selection.chooseOnly({});
            const search = /** @type {HTMLInputElement} */ (byId("search"));
            if (search.value) {
                search.value = "";
                this.#ask("");
            }
        }
        this.list.go(this.selection.place(row));
        byId("list").focus({ preventScroll: true });
    }

    /** @param {Item} item */
    async #openItem(item) {
        const file = Math.max(0, this.trace.about.files.indexOf(item.file));
        const row = await this.trace.rowOf(file, item.line, item.message);
        if (row >= 0) this.#leadTo(row);
    }

    /** @param {number} file @param {number} line @param {number} message */
    async #goToLine(file, line, message) {
        const row = await this.trace.rowOf(file, line, message);
        if (row < 0) return;
        this.row = row;
        this.list.go(this.selection.place(row), false);
        this.#open(row, true);
    }

    async #addressChanged() {
        const place = readAddress(location.hash);
        this.showTab(place.tab);
        if (place.line > 0) await this.#goToLine(place.file - 1, place.line, place.message);
        await this.#askAsAddressed(place);
    }

    // The address says where we are.
    #remember() {
        const { selection, trace, row } = this;
        const k = row >= 0 ? trace.blockOf(row) : 0;
        const lines = row >= 0 ? trace.here(k)?.lines : undefined;
        const index = row >= 0 ? row - trace.firstRows[k] : 0;
        const line = lines ? lines[index] : 0;
        let message = 0;
        while (lines && message < index && lines[index - message - 1] === line) ++message;
        const address = writeAddress({
            file: row >= 0 ? trace.fileOf(row) + 1 : 1, line, message, tab: this.tab, query: selection.query.text,
            all: !selection.onlyMatches && !selection.query.empty,
            chosen: Object.fromEntries(Object.entries(selection.chosen).map(([facet, words]) => [facet, [...words]])),
        });
        if (address !== location.hash) history.replaceState(null, "", address);
    }

    /** @param {string} name */
    showTab(name, byHand = false) {
        this.tab = tabs.includes(name) ? name : "messages";
        for (const tab of tabs) {
            const button = byId(`tab-${tab}`);
            const chosen = tab === this.tab;
            button.setAttribute("aria-selected", String(chosen));
            button.tabIndex = chosen ? 0 : -1;
            byId(`panel-${tab}`).hidden = !chosen;
        }
        byId("toolbar").hidden = this.tab === "summary" || this.tab === "findings";
        this.#drawTab();
        if (byHand) this.#remember();
    }

    #drawTab() {
        if (this.tab === "summary" && this.selection.kindsKnown)
            drawSummary(byId("panel-summary"), this.selection, (facet, word) => this.#only(facet, word), (item) => this.#openItem(item));
        if (this.tab === "findings") this.#drawFindings();
        if (this.tab === "ladder") {
            this.ladder.current = this.list.current;
            this.ladder.measure();
            if (this.ladder.current >= 0) this.ladder.show(this.ladder.current);
        }
        if (this.tab === "messages") this.list.measure();
    }

    #drawFindings() {
        const { kinds, kindsOfRows, size } = this.trace;
        if (this.selection.kindsKnown && this.suspicious.length === 0) {
            const suspect = kinds.map((kind) => kind.findings !== 0 || ["unknown", "refused", "refused line"].includes(kind.status));
            for (let row = 0; row < size; ++row) {
                if (suspect[kindsOfRows[row]]) this.suspicious.push(row);
            }
        }
        const n = this.suspicious.length;
        byId("finding-count").textContent = n === 0
            ? "All of the trace was understood: nothing is unknown, missing or refused."
            : `${countOf(n, "line")} with something that is unknown, missing or refused.`;
        byId("finding-list").hidden = n === 0;
        this.findings.measure();
    }

    /** @param {Facet} facet @param {string} word */
    #only(facet, word) {
        this.selection.chooseOnly({ [facet]: [word] });
        this.showTab("messages", true);
    }

    /** @param {number} step */
    #step(step) {
        const { list } = this.tab === "ladder" ? { list: this.ladder } : this;
        const from = list.current >= 0 ? list.current + step : this.row >= 0 ? this.selection.place(this.row) : 0;
        if (this.tab === "ladder") {
            list.go(from, false);
            this.row = this.selection.row(list.current);
        } else {
            list.go(from);
        }
    }

    // The next match of the search; without one, the next message with a finding.
    /** @param {number} step */
    #nextMatch(step) {
        const { selection, trace, list } = this;
        for (let place = list.current + step; place >= 0 && place < selection.size; place += step) {
            const row = selection.row(place);
            const kind = trace.kinds[trace.kindsOfRows[row]];
            const wanted = selection.query.empty ? kind.findings !== 0 || kind.status === "unknown" : selection.hit(row);
            if (wanted) return list.go(place);
        }
    }

    #otherTheme() {
        const root = document.documentElement;
        const dark = getComputedStyle(root).colorScheme === "dark"
            || (root.dataset.theme === undefined && matchMedia("(prefers-color-scheme: dark)").matches);
        root.dataset.theme = dark ? "light" : "dark";
    }

    /** @param {KeyboardEvent} event */
    #tabKey(event) {
        const step = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
        if (step === undefined) return;
        const next = tabs[(tabs.indexOf(this.tab) + step + tabs.length) % tabs.length];
        this.showTab(next, true);
        byId(`tab-${next}`).focus();
    }

    /** @param {KeyboardEvent} event */
    #key(event) {
        if (event.ctrlKey || event.altKey || event.metaKey) return;
        const target = /** @type {HTMLElement} */ (event.target);
        const search = /** @type {HTMLInputElement} */ (byId("search"));
        if (event.key === "Escape") {
            if (target === search && search.value) {
                search.value = "";
                this.#ask("");
            } else if (document.body.classList.contains("message-open")) {
                this.#closeMessage();
            }
            return;
        }
        if (target.matches("input, textarea, select") || target.closest("dialog")) return;
        /** @type {Record<string, () => void>} */
        const keys = {
            "/": () => {
                if (this.tab === "summary" || this.tab === "findings") this.showTab("messages", true);
                search.focus();
                search.select();
            },
            j: () => this.#step(1),
            k: () => this.#step(-1),
            n: () => this.#nextMatch(1),
            N: () => this.#nextMatch(-1),
            g: () => this.list.go(0),
            G: () => this.list.go(Infinity),
            m: () => byId("only-matches").click(),
            "?": () => /** @type {HTMLDialogElement} */ (byId("help")).showModal(),
            1: () => this.showTab("messages", true),
            2: () => this.showTab("summary", true),
            3: () => this.showTab("findings", true),
            4: () => this.showTab("ladder", true),
        };
        const action = keys[event.key];
        if (!action) return;
        event.preventDefault();
        action();
    }
}

// A page without a trace has none of this.
if (typeof document !== "undefined" && document.getElementById("trace")) {
    const page = new Page(traceIn(document));
    page.begin().then(() => document.documentElement.setAttribute("data-ready", ""), (error) => {
        byId("problem").textContent = `The trace cannot be shown: ${error.message}`;
        byId("list").replaceChildren(element("p", {}, String(error.message)));
    });
}
