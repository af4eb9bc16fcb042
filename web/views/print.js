import { countOf, element, harmless } from "./dom.js";
import { arrows } from "./rows.js";

// What goes to paper: the messages that are shown, each with its text, as far as they are unpacked.

const mostPrinted = 1000;

/** @param {HTMLElement} box @param {import("../selection/selection.js").Selection} selection @param {number} from */
export function fillPrint(box, selection, from) {
    const { trace } = selection;
    const begin = selection.size > mostPrinted ? Math.max(0, from) : 0;
    const entries = element("div");
    let place = begin;
    for (; place < Math.min(selection.size, begin + mostPrinted); ++place) {
        const row = selection.row(place);
        const k = trace.blockOf(row);
        const block = trace.here(k);
        if (!block) break;
        const index = row - trace.firstRows[k];
        const kind = trace.kinds[block.kind(index)];
        const head = [String(block.lines[index]), harmless(block.time(index)), arrows[kind.direction], kind.link, kind.name];
        entries.append(element("article", {},
            element("p", { class: "head" }, head.filter(Boolean).join("  ")),
            element("pre", {}, harmless(block.text(index, 4000)).replace(/^\t(- )?/, ""))));
    }
    const whole = begin === 0 && place === selection.size;
    const what = whole ? countOf(selection.size, "line") : `${countOf(place - begin, "line")} of ${countOf(selection.size, "line")}`;
    const asked = [selection.query.text && `search: ${selection.query.text}`, ...Object.values(selection.chosen).flatMap((set) => [...set])];
    const files = trace.about.files.map(harmless).join(", ");
    box.replaceChildren(
        element("h1", {}, files), element("p", {}, [what, ...asked.filter(Boolean)].join(" · ")), entries);
}
