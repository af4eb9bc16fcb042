import { element } from "./dom.js";

// Rows of one height, any number of them: those that are seen are in the document. Browsers end elements at some
// millions of pixels, so a long list is scrolled in two ways: small steps move it as they are, long ones (the bar is
// pulled) go to that part of it.

const tallest = 6_000_000;

/**
 * @typedef {object} Rows what a list shows
 * @property {() => number} size
 * @property {() => HTMLElement} make an empty row
 * @property {(place: number, row: HTMLElement) => boolean} fill false: it is not there yet, and is shown later
 * @property {(place: number) => void} [open]
 */

export class List {
    /** @param {HTMLElement} box @param {string} label @param {Rows} rows */
    constructor(box, label, rows) {
        this.box = box;
        this.rows = rows;
        this.current = -1;
        this.top = 0; // in pixels of the whole list
        this.scrolled = 0;
        this.ours = false; // the next scroll is one that we made
        this.rowHeight = 0;
        this.viewHeight = 0; // 0: it is not to be seen
        this.whole = 0;
        this.scale = 1; // pixels of the whole list for one of the bar
        /** @type {HTMLElement[]} */
        this.shown = [];
        this.window = element("div", { class: "list-window", role: "presentation" });
        this.height = element("div", { class: "list-height", role: "presentation" }, this.window);
        box.append(this.height);
        box.setAttribute("role", "listbox");
        box.setAttribute("aria-label", label);
        box.tabIndex = 0;
        box.addEventListener("scroll", () => this.#scroll(), { passive: true });
        box.addEventListener("scrollend", () => this.#settle());
        box.addEventListener("keydown", (event) => this.#key(event));
        this.window.addEventListener("click", (event) => this.#click(event));
        new ResizeObserver(() => this.measure()).observe(box);
    }

    measure() {
        this.rowHeight = parseFloat(getComputedStyle(this.box).getPropertyValue("--row-height")) || 28;
        this.viewHeight = this.box.clientHeight;
        this.changed();
    }

    /** What the list shows is another one. */
    changed() {
        if (!this.viewHeight || !this.rowHeight) return;
        this.whole = this.rows.size() * this.rowHeight;
        this.scale = Math.max(1, (this.whole - this.viewHeight) / (tallest - this.viewHeight));
        this.height.style.height = `${Math.min(this.whole, tallest)}px`;
        this.window.style.height = `${this.viewHeight}px`;
        this.top = Math.max(0, Math.min(this.top, this.whole - this.viewHeight));
        this.#settle();
        this.draw();
    }

    #scroll() {
        const { scrollTop } = this.box;
        if (this.ours) {
            this.ours = false;
            this.scrolled = scrollTop;
            return;
        }
        const step = scrollTop - this.scrolled;
        this.scrolled = scrollTop;
        const end = this.box.scrollHeight - this.viewHeight;
        const small = Math.abs(step) < 2 * this.viewHeight && scrollTop > 0 && scrollTop < end - 1;
        this.top = this.scale === 1 || !small ? scrollTop * this.scale : this.top + step;
        this.top = Math.max(0, Math.min(this.top, this.whole - this.viewHeight));
        this.draw();
    }

    // Puts the bar where the list is.
    #settle() {
        const at = Math.round(this.top / this.scale);
        const wanted = this.top > 0 && at === 0 ? 1 : at;
        if (Math.abs(this.box.scrollTop - wanted) < 1) {
            this.scrolled = this.box.scrollTop;
            return;
        }
        this.ours = true;
        this.box.scrollTop = wanted;
        this.scrolled = this.box.scrollTop;
    }

    draw() {
        if (!this.viewHeight) return;
        const size = this.rows.size();
        const first = Math.floor(this.top / this.rowHeight);
        const count = Math.max(0, Math.min(Math.ceil(this.viewHeight / this.rowHeight) + 1, size - first));
        while (this.shown.length > count) this.shown.pop()?.remove();
        while (this.shown.length < count) {
            const row = this.rows.make();
            row.setAttribute("role", "option");
            this.shown.push(row);
            this.window.append(row);
        }
        let active = "";
        for (let k = 0; k < count; ++k) {
            const place = first + k;
            const row = this.shown[k];
            row.style.transform = `translateY(${place * this.rowHeight - this.top}px)`;
            row.dataset.place = String(place);
            row.id = `${this.box.id}-${place}`;
            row.ariaSetSize = String(size);
            row.ariaPosInSet = String(place + 1);
            const chosen = place === this.current;
            row.ariaSelected = chosen ? "true" : "false";
            if (chosen) active = row.id;
            row.classList.toggle("waits", !this.rows.fill(place, row));
        }
        if (active) this.box.setAttribute("aria-activedescendant", active);
        else this.box.removeAttribute("aria-activedescendant");
    }

    /** Makes a place the current one, and shows it.
     * @param {number} place */
    go(place, open = true) {
        const size = this.rows.size();
        if (size === 0) return;
        this.current = Math.max(0, Math.min(place, size - 1));
        this.show(this.current);
        if (open) this.rows.open?.(this.current);
    }

    /** @param {number} place */
    show(place) {
        if (!this.viewHeight) return;
        const begin = place * this.rowHeight;
        const end = begin + this.rowHeight;
        const far = begin < this.top - this.viewHeight || end > this.top + 2 * this.viewHeight;
        if (far) this.top = begin - (this.viewHeight - this.rowHeight) / 2;
        else if (begin < this.top) this.top = begin;
        else if (end > this.top + this.viewHeight) this.top = end - this.viewHeight;
        this.top = Math.max(0, Math.min(this.top, this.whole - this.viewHeight));
        this.#settle();
        this.draw();
    }

    /** @param {KeyboardEvent} event */
    #key(event) {
        if (event.ctrlKey || event.altKey || event.metaKey) return;
        const page = Math.max(1, Math.floor(this.viewHeight / this.rowHeight) - 1);
        /** @type {Record<string, number>} */
        const steps = {
            ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -Infinity, End: Infinity, Enter: 0,
        };
        const step = steps[event.key];
        if (step === undefined) return;
        event.preventDefault();
        this.go(Math.max(this.current, 0) + (this.current < 0 && step === 1 ? 0 : step));
    }

    /** @param {MouseEvent} event */
    #click(event) {
        const row = /** @type {HTMLElement} */ (event.target).closest("[data-place]");
        if (row instanceof HTMLElement) this.go(Number(row.dataset.place));
    }
}
