import { element, oneLine } from "./dom.js";
import { found, rowText } from "./rows.js";

// Messages between the system and its terminals: a lane for the system, one for each link.

/**
 * @typedef {import("../selection/selection.js").Selection} Selection
 */

const mostLanes = 6;

export class Ladder {
    /** @param {Selection} selection */
    constructor(selection) {
        this.selection = selection;
        const links = new Set(selection.trace.kinds.filter((kind) => kind.direction !== 2).map((kind) => kind.link));
        const most = matchMedia("(max-width: 760px)").matches ? 1 : mostLanes;
        this.lanes = links.size > most ? [...links].slice(0, most - 1) : [...links];
        this.others = links.size > most;
    }

    get count() {
        return this.lanes.length + (this.others ? 1 : 0);
    }

    head() {
        const names = ["system", ...this.lanes, ...(this.others ? [this.lanes.length > 0 ? "others" : "terminals"] : [])];
        return names.map((name, lane) => {
            const label = element("span", { class: "lane-name" }, name);
            label.style.left = this.#at(lane);
            return label;
        });
    }

    /** @param {number} lane */
    #at(lane) {
        return `${(100 * (lane + 0.5)) / (this.count + 1)}%`;
    }

    make() {
        const lanes = element("span", { class: "lanes", "aria-hidden": "true" });
        for (let lane = 0; lane <= this.count; ++lane) {
            const line = element("span", { class: "lane" });
            line.style.left = this.#at(lane);
            lanes.append(line);
        }
        const arrow = element("span", { class: "arrow" });
        arrow.append(element("span", { class: "said" }));
        lanes.append(arrow);
        return element("div", { class: "row rung" }, element("span", { class: "cell line" }), element("span", { class: "cell time" }), lanes, element("span", { class: "unseen" }));
    }

    /** @param {number} row @param {HTMLElement} shown @param {() => void} later */
    fill(row, shown, later) {
        const { trace } = this.selection;
        const there = found(trace, row, later);
        const [line, time, lanes, spoken] = /** @type {HTMLElement[]} */ ([...shown.children]);
        const arrow = /** @type {HTMLElement} */ (lanes.lastElementChild);
        const said = /** @type {HTMLElement} */ (arrow.firstElementChild);
        line.textContent = there ? String(there.block.lines[there.index]) : "";
        time.textContent = there ? oneLine(there.block.time(there.index)) : "";
        if (!there) {
            said.textContent = "…";
            return false;
        }
        const kind = trace.kinds[there.block.kind(there.index)];
        const text = rowText(there.block, there.index);
        const known = this.lanes.indexOf(kind.link);
        const lane = known >= 0 ? known + 1 : this.count;
        arrow.className = `arrow ${["from-system", "to-system", "no-direction"][kind.direction]}`;
        arrow.style.left = this.#at(0);
        arrow.style.width = kind.direction === 2 ? "auto" : `${(100 * lane) / (this.count + 1)}%`;
        const link = known < 0 ? `${kind.link} ` : "";
        said.textContent = kind.direction === 2 ? text : `${link}${kind.name || "unknown"}`;
        const way = kind.direction === 2 ? "" : kind.direction === 0 ? `system to ${kind.link}` : `${kind.link} to system`;
        spoken.textContent = `${way} ${kind.name} ${text}`;
        shown.title = text;
        return true;
    }
}
