import { views, type ViewName } from "../view/camera.ts";
import type { StackView } from "../view/stack_view.ts";
import { button, element, icon, releaseAfterDrag } from "./dom.ts";
import type { Session } from "./session.ts";

const plus = "M12 5v14M5 12h14";
const minus = "M5 12h14";
const frame = "M4 9V4h5M15 4h5v5M20 15v5h-5M9 20H4v-5";
const ruler = "M3 17L17 3l4 4L7 21zM7 13l2 2M10 10l2 2M13 7l2 2";
const left = "M9 14l-5-5 5-5M4 9h9a6 6 0 0 1 0 12h-2";
const right = "M15 14l5-5-5-5M20 9h-9a6 6 0 0 0 0 12h2";

/** From where one looks: sides, nearer and further away, turned. */
export function makeViewControls(view: StackView): HTMLElement {
    const sides = (Object.keys(views) as ViewName[]).map((name) => {
        const made = element("button", { type: "button", class: "plain" }, views[name].label);
        made.addEventListener("click", () => {
            view.look(name);
        });
        return made;
    });
    const tool = (label: string, path: string, act: () => void) => {
        const made = button(label, { class: "tool" }, icon(path));
        made.addEventListener("click", act);
        return made;
    };
    return element(
        "div",
        { class: "control views", role: "group", "aria-label": "Look from" },
        ...sides,
        tool("Turn left", left, () => {
            view.camera.turn(-15, 0);
        }),
        tool("Turn right", right, () => {
            view.camera.turn(15, 0);
        }),
        tool("Nearer", plus, () => {
            view.camera.zoom(1.25);
        }),
        tool("Further away", minus, () => {
            view.camera.zoom(0.8);
        }),
        tool("Show all", frame, () => {
            view.fit();
        }),
    );
}

/** Starts to measure a distance, or ends that. */
export function makeMeasureButton(session: Session): HTMLElement {
    const { store } = session;
    const made = element(
        "button",
        { type: "button", class: "plain with-icon" },
        icon(ruler),
        "Distance",
    );
    made.title = "Measure from the pin, or from the next point that is clicked";
    made.addEventListener("click", () => {
        toggleMeasuring(session);
    });
    store.on(["measureFrom", "measuring"], () => {
        const { measureFrom, measuring } = store.state;
        made.setAttribute("aria-pressed", String(measuring || measureFrom !== null));
    });
    return made;
}

/** A distance begins at the pin, where there is one, or else at the next point that is clicked. */
export function toggleMeasuring({ store }: Session): void {
    const { measureFrom, measuring, pin } = store.state;
    if (measuring || measureFrom) {
        store.set({ measureFrom: null, measuring: false });
    } else if (pin) {
        store.set({ measureFrom: pin, pin: null });
    } else {
        store.set({ measuring: true });
    }
}

/** The stretch of heights that a slider stands for: a power of two in steps of a quarter. */
function stretchOf(value: number): number {
    return Math.round(100 * 2 ** (value / 4)) / 100;
}

/** Layers pulled apart, and heights stretched. */
export function makeShapeControls({ store }: Session): HTMLElement[] {
    const apart = makeSlider("Apart", 0, 100, "The layers pulled apart");
    apart.slider.addEventListener("input", () => {
        store.set({ apart: apart.slider.valueAsNumber / 100 });
    });
    const stretch = makeSlider("Heights", -4, 20, "How much heights are stretched");
    stretch.slider.addEventListener("input", () => {
        store.set({ stretch: stretchOf(stretch.slider.valueAsNumber) });
    });
    store.on(["apart"], () => {
        apart.show(100 * store.state.apart, `${Math.round(100 * store.state.apart)} %`);
    });
    store.on(["stretch"], () => {
        const { stretch: factor } = store.state;
        stretch.show(
            4 * Math.log2(factor),
            `× ${factor < 10 ? factor.toFixed(1) : factor.toFixed(0)}`,
        );
    });
    return [apart.root, stretch.root];
}

function makeSlider(label: string, min: number, max: number, meaning: string) {
    const slider = element("input", { type: "range", min, max, step: 1, "aria-label": meaning });
    releaseAfterDrag(slider);
    const value = element("output", { class: "value short" });
    return {
        slider,
        root: element(
            "label",
            { class: "control", title: meaning },
            element("span", { class: "label" }, label),
            slider,
            value,
        ),
        show: (position: number, text: string) => {
            slider.value = String(Math.round(position));
            slider.setAttribute("aria-valuetext", text);
            value.textContent = text;
        },
    };
}
