import { nearest } from "../stack/stack.ts";
import { element, foreign } from "./dom.ts";
import { micrometres, nanometres } from "./format.ts";
import { surfacePlace, type Session } from "./session.ts";
import type { Place } from "./state.ts";

/** A distance in words: as a whole, and along the axes. */
export function distanceText(from: Place, to: Place): { total: string; parts: string } {
    const [dx, dy, dz] = [to.x - from.x, to.y - from.y, to.z - from.z];
    return {
        total: `${nanometres(Math.hypot(dx, dy, dz))} nm`,
        parts: `Δx ${nanometres(dx)}  Δy ${nanometres(dy)}  Δz ${nanometres(dz)} nm`,
    };
}

/** The line below the view: place, layer and height under the pointer or at the pin; the distance. */
export function makeReadout(session: Session): HTMLElement {
    const { store } = session;
    const where = element("span", { class: "where" });
    const distance = element("span", { class: "distance-parts" });
    store.on(["hover", "pin", "step", "measureFrom", "measuring"], () => {
        const { hover, pin, measureFrom, measuring } = store.state;
        const place = pin ?? hover;
        where.replaceChildren(
            ...(place ? describe(session, place) : [hint(measuring, measureFrom)]),
        );
        const text = measureFrom && place ? distanceText(measureFrom, place) : null;
        distance.textContent = text ? `Distance ${text.total}: ${text.parts}` : "";
    });
    return element("p", { class: "readout", role: "status", "aria-live": "off" }, where, distance);
}

function hint(measuring: boolean, from: Place | null): string {
    if (measuring || from) {
        return measuring ? "Click where the distance begins." : "Click where the distance ends.";
    }
    return "Drag to turn, wheel to zoom, right button to move, click to set a pin.";
}

function describe({ run, stack }: Session, { x, y, z, key }: Place): (Node | string)[] {
    const layer = stack?.layers.find((other) => other.key === key);
    const place = `x ${micrometres(run.window.x + x)}  y ${micrometres(run.window.y + y)} µm  `;
    return layer ? [place, foreign(layer.name), ` at ${nanometres(z - run.zero)} nm`] : [place];
}

/** Two fields that put the pin by numbers, for who has no pointer. */
export function makePinFields(session: Session): HTMLElement {
    const { run, grid, store } = session;
    const make = (axis: "x" | "y") => {
        const origin = run.window[axis];
        const places = grid[axis];
        const field = element("input", {
            type: "number",
            step: "any",
            "aria-label": `${axis} of the pin in µm`,
            placeholder: axis,
        });
        field.addEventListener("change", () => {
            const middle = (all: Float64Array) => all[all.length - 1] / 2;
            const pin = store.state.pin ?? { x: middle(grid.x), y: middle(grid.y) };
            const wanted = places[nearest(places, field.valueAsNumber - origin)];
            store.set({
                pin: Number.isFinite(field.valueAsNumber)
                    ? surfacePlace(
                          session,
                          axis === "x" ? wanted : pin.x,
                          axis === "y" ? wanted : pin.y,
                      )
                    : null,
            });
        });
        store.on(["pin"], () => {
            const { pin } = store.state;
            field.value = pin ? (origin + pin[axis]).toFixed(3) : "";
        });
        return element("label", {}, axis, field);
    };
    return element(
        "div",
        { class: "control pin-fields", role: "group", "aria-label": "Pin" },
        element("span", { class: "label" }, "Pin"),
        make("x"),
        make("y"),
        element("span", { class: "quiet" }, "µm"),
    );
}
