import { counted, element } from "./dom.js";
import { facets, wordsOf } from "../selection/selection.js";

// A menu of each facet, with how many messages each of its words would leave.

/**
 * @typedef {import("../selection/selection.js").Selection} Selection
 * @typedef {import("../selection/selection.js").Facet} Facet
 */

/** @type {Record<Facet, string>} */
const titles = { link: "Link", direction: "Direction", name: "Message", status: "Status", finding: "Finding" };

export class Filters {
    /** @param {HTMLElement} box @param {Selection} selection */
    constructor(box, selection) {
        this.selection = selection;
        this.menus = facets.map((facet) => this.#menu(facet));
        this.clear = element("button", { type: "button", class: "clear" }, "Clear");
        this.clear.addEventListener("click", () => selection.chooseOnly({}));
        box.append(...this.menus.map((menu) => menu.details), this.clear);
        document.addEventListener("pointerdown", (event) => this.#close(/** @type {Node} */ (event.target)));
        box.addEventListener("keydown", (event) => {
            const open = this.menus.find((menu) => menu.details.open);
            if (event.key !== "Escape" || !open) return;
            event.stopPropagation();
            open.details.open = false;
            open.summary.focus();
        });
        selection.addEventListener("change", () => this.draw());
        this.draw();
    }

    /** @param {Node} besides */
    #close(besides) {
        for (const { details } of this.menus) {
            if (details.open && !details.contains(besides)) details.open = false;
        }
    }

    /** @param {Facet} facet */
    #menu(facet) {
        const summary = element("summary", {}, titles[facet]);
        const list = element("div", { class: "choices", role: "group", "aria-label": titles[facet] });
        const details = element("details", { class: "filter" }, summary, list);
        const words = [...new Set(this.selection.trace.kinds.flatMap((kind) => wordsOf(kind, facet)))].sort();
        const choices = words.map((word) => {
            const box = element("input", { type: "checkbox" });
            box.addEventListener("change", () => this.selection.choose(facet, word, box.checked));
            const count = element("span", { class: "count" });
            const label = element("label", {}, box, element("span", {}, word), count);
            list.append(label);
            return { word, box, count, label };
        });
        details.hidden = words.length === 0;
        details.addEventListener("toggle", () => {
            if (!details.open) return;
            this.#close(details);
            this.draw();
        });
        return { facet, details, summary, list, choices };
    }

    draw() {
        for (const { facet, details, summary, list, choices } of this.menus) {
            const chosen = this.selection.chosen[facet];
            summary.textContent = chosen.size === 0 ? titles[facet]
                : chosen.size === 1 ? `${titles[facet]}: ${[...chosen][0]}` : `${titles[facet]}: ${chosen.size}`;
            details.classList.toggle("active", chosen.size > 0);
            if (!details.open) continue;
            const counts = this.selection.counts(facet);
            for (const { word, box, count, label } of choices) {
                const n = counts.get(word) ?? 0;
                box.checked = chosen.has(word);
                count.textContent = this.selection.kindsKnown ? counted(n) : "";
                label.classList.toggle("none", n === 0);
            }
            if (facet === "name" && !list.contains(document.activeElement)) {
                choices.sort((a, b) => (counts.get(b.word) ?? 0) - (counts.get(a.word) ?? 0));
                list.append(...choices.map((choice) => choice.label));
            }
        }
        this.clear.hidden = !this.selection.filtered;
    }
}
