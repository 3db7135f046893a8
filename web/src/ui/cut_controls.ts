import type { Axis } from "../stack/section.ts";
import type { Cut } from "../stack/mesh.ts";
import { button, choice, element, icon, releaseAfterDrag } from "./dom.ts";
import { micrometres } from "./format.ts";
import type { Session } from "./session.ts";

const flipIcon = "M12 3v18M8 8l-4 4 4 4M16 8l4 4-4 4";

/** Where the eye is, as far as a cut asks for it: on the upper side of x, of y. */
export type EyeSide = () => { x: boolean; y: boolean };

/** A cut through the middle that takes the side of the eye away. */
export function middleCut({ grid }: Session, axis: Axis, eye: EyeSide): Cut {
    const places = axis === "x" ? grid.x : grid.y;
    return { axis, index: Math.floor(places.length / 2), keepsLower: eye()[axis] };
}

/** Moves the cut to a column or row, as far as there is one. */
export function moveCut({ grid, store }: Session, index: number): void {
    const { cut } = store.state;
    if (cut) {
        const last = (cut.axis === "x" ? grid.columns : grid.rows) - 1;
        store.set({ cut: { ...cut, index: Math.min(Math.max(Math.round(index), 0), last) } });
    }
}

/** Cuts across an axis, or no more where that is done already. */
export function toggleCut(session: Session, axis: Axis, eye: EyeSide): void {
    const { cut } = session.store.state;
    session.store.set({ cut: cut?.axis === axis ? null : middleCut(session, axis, eye) });
}

/** The place of a cut in the layout's coordinates, in micrometres. */
export function cutPlace({ grid, run }: Session, cut: Cut): number {
    return cut.axis === "x" ? run.window.x + grid.x[cut.index] : run.window.y + grid.y[cut.index];
}

/** Off, across x or across y; where; and which side is taken away. */
export function makeCutControls(session: Session, eye: EyeSide): HTMLElement {
    const { store } = session;
    const axes = choice(
        "Cut",
        [
            { value: "off", label: "Off", hint: "No cut" },
            { value: "x", label: "x", hint: "Cut across x" },
            { value: "y", label: "y", hint: "Cut across y" },
        ],
        (value: "off" | Axis) => {
            store.set({ cut: value === "off" ? null : middleCut(session, value, eye) });
        },
    );
    const flip = button("Take the other side away", { class: "tool" }, icon(flipIcon));
    flip.addEventListener("click", () => {
        const { cut } = store.state;
        store.set({ cut: cut && { ...cut, keepsLower: !cut.keepsLower } });
    });
    const details = element("span", { class: "cut-details" }, ...makeSlider(session), flip);
    store.on(["cut"], () => {
        const { cut } = store.state;
        axes.show(cut ? cut.axis : "off");
        details.hidden = cut === null;
    });
    const label = element("span", { class: "label" }, "Cut");
    return element("div", { class: "control" }, label, axes.root, details);
}

/** A slider over the columns or rows, and where it stands. */
function makeSlider(session: Session): HTMLElement[] {
    const { grid, store } = session;
    const slider = element("input", {
        type: "range",
        class: "cut-place",
        min: 0,
        step: 1,
        "aria-label": "Place of the cut",
    });
    releaseAfterDrag(slider);
    slider.addEventListener("input", () => {
        moveCut(session, slider.valueAsNumber);
    });
    const place = element("output", { class: "value" });
    store.on(["cut"], () => {
        const { cut } = store.state;
        if (cut) {
            slider.max = String((cut.axis === "x" ? grid.columns : grid.rows) - 1);
            slider.value = String(cut.index);
            place.textContent = `${micrometres(cutPlace(session, cut))} µm`;
            slider.setAttribute("aria-valuetext", `${cut.axis} = ${place.textContent}`);
        }
    });
    return [slider, place];
}
