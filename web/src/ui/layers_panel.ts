import type { StackLayer } from "../stack/stack.ts";
import { nearest } from "../stack/stack.ts";
import { stackAt, type StackRow } from "../stack/probe.ts";
import { button, element, foreign, icon } from "./dom.ts";
import { micrometres, nanometres } from "./format.ts";
import type { Session } from "./session.ts";
import type { LayerMode, Store } from "./state.ts";

const eyeIcon =
    "M2 12s3.6-6.5 10-6.5S22 12 22 12s-3.6 6.5-10 6.5S2 12 2 12zM12 9a3 3 0 1 1 0 6 3 3 0 0 1 0-6z";
const glassIcon = "M5 9l7-5 7 5v7l-7 5-7-5zM5 9l7 5 7-5M12 14v7";

/** The layers from above to below, with their heights at the pin or under the pointer. */
export function makeLayersPanel(session: Session): HTMLElement {
    const { store } = session;
    const body = element("tbody", {});
    let rows: LayerRow[] = [];
    store.on(["step"], () => {
        rows = [...(session.stack?.layers ?? [])].reverse().map((layer) => makeRow(session, layer));
        body.replaceChildren(...rows.map(({ root: row }) => row));
    });
    store.on(["step", "modes"], () => {
        for (const row of rows) {
            row.showMode(store.state.modes.get(row.key) ?? "shown");
        }
    });
    store.on(["step", "hover", "pin"], () => {
        const here = layersHere(session);
        for (const row of rows) {
            row.showHeights(
                here?.find(({ key }) => key === row.key),
                here !== null,
            );
        }
    });
    const table = element("table", { class: "layers" }, makeColumnNames(), body);
    return element("div", { class: "layers-panel" }, makeHeader(session), table);
}

function makeColumnNames(): HTMLElement {
    const name = (label: string | Node, isNumber: boolean) =>
        element("th", { scope: "col", class: isNumber ? "number" : null }, label);
    return element(
        "thead",
        {},
        element(
            "tr",
            {},
            name("Layer", false),
            name("Top, nm", true),
            name("Thick, nm", true),
            name(element("span", { class: "hidden" }, "Drawn as"), false),
        ),
    );
}

/** What stands at the pin, or else under the pointer; null where there is neither. */
function layersHere({ store, grid, stack }: Session): StackRow[] | null {
    const place = store.state.pin ?? store.state.hover;
    return place && stack
        ? stackAt(grid, stack.layers, nearest(grid.x, place.x), nearest(grid.y, place.y))
        : null;
}

function makeHeader({ store, run }: Session): HTMLElement {
    const place = element("p", { class: "place" });
    store.on(["hover", "pin"], () => {
        const shown = store.state.pin ?? store.state.hover;
        place.textContent = shown
            ? `At x ${micrometres(run.window.x + shown.x)}, y ${micrometres(run.window.y + shown.y)} µm`
            : "Point at the stack for its heights.";
    });
    const reset = element("button", { type: "button", class: "plain" }, "Show all");
    reset.addEventListener("click", () => {
        store.set({ modes: new Map() });
    });
    store.on(["modes"], () => {
        reset.disabled = store.state.modes.size === 0;
    });
    return element("div", { class: "panel-head" }, place, reset);
}

interface LayerRow {
    key: number;
    root: HTMLElement;
    showMode: (mode: LayerMode) => void;
    showHeights: (row: StackRow | undefined, hasPlace: boolean) => void;
}

function makeRow({ store, run: { zero } }: Session, layer: StackLayer): LayerRow {
    const { key } = layer;
    const toggles = makeToggles(store, layer);
    const top = element("td", { class: "number" });
    const thickness = element("td", { class: "number" });
    const root = element(
        "tr",
        {},
        makeLabel(layer),
        top,
        thickness,
        element("td", { class: "toggles" }, toggles.seen, toggles.glass),
    );
    return {
        key,
        root,
        showMode: (mode) => {
            root.dataset.mode = mode;
            toggles.seen.setAttribute("aria-pressed", String(mode !== "hidden"));
            toggles.glass.setAttribute("aria-pressed", String(mode === "glass"));
        },
        showHeights: (row, hasPlace) => {
            const absent = hasPlace ? "–" : "";
            root.classList.toggle("elsewhere", hasPlace && !row);
            top.textContent = row ? nanometres(row.top - zero) : absent;
            thickness.textContent = row ? nanometres(row.top - row.bottom) : absent;
        },
    };
}

/** Colour, name and material of a layer. */
function makeLabel({ name, material, color }: StackLayer): HTMLElement {
    const swatch = element("span", { class: "swatch" });
    swatch.style.backgroundColor = `rgba(${color[0]}, ${color[1]}, ${color[2]}, ${color[3] / 255})`;
    const label = element("span", { class: "layer-name" }, foreign(name));
    if (material !== name) {
        label.append(" ", element("span", { class: "quiet" }, foreign(material)));
    }
    return element("th", { scope: "row" }, swatch, label);
}

/** Two buttons: whether the layer is shown, and whether it is glass. */
function makeToggles(store: Store, { key, name }: StackLayer) {
    const seen = button(`Show ${name}`, { class: "toggle" }, icon(eyeIcon));
    const glass = button(`${name} as glass`, { class: "toggle" }, icon(glassIcon));
    const toggle = (mode: LayerMode) => () => {
        const modes = new Map(store.state.modes);
        if (modes.get(key) === mode) {
            modes.delete(key);
        } else {
            modes.set(key, mode);
        }
        store.set({ modes });
    };
    seen.addEventListener("click", toggle("hidden"));
    glass.addEventListener("click", toggle("glass"));
    return { seen, glass };
}
