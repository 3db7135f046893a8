import type { StackLayer } from "../stack/stack.ts";
import { nearest } from "../stack/stack.ts";
import { stackAt, type StackRow } from "../stack/probe.ts";
import { button, element, foreign, icon } from "./dom.ts";
import { micrometres, nanometres } from "./format.ts";
import type { Session } from "./session.ts";
import type { LayerMode } from "./state.ts";

const eye = "M2 12s3.6-6.5 10-6.5S22 12 22 12s-3.6 6.5-10 6.5S2 12 2 12zM12 9a3 3 0 1 1 0 6 3 3 0 0 1 0-6z";
const glass = "M5 9l7-5 7 5v7l-7 5-7-5zM5 9l7 5 7-5M12 14v7";

/** The layers from above to below, with their heights at the pin or under the pointer. */
export function makeLayersPanel(session: Session): HTMLElement {
    const { store } = session;
    const body = element("tbody", {});
    const root = element(
        "div",
        { class: "layers-panel" },
        makeHeader(session),
        element(
            "table",
            { class: "layers" },
            element(
                "thead",
                {},
                element(
                    "tr",
                    {},
                    element("th", { scope: "col" }, "Layer"),
                    element("th", { scope: "col", class: "number" }, "Top, nm"),
                    element("th", { scope: "col", class: "number" }, "Thick, nm"),
                    element("th", { scope: "col" }, element("span", { class: "hidden" }, "Drawn as")),
                ),
            ),
            body,
        ),
    );
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
            row.showHeights(here?.find(({ key }) => key === row.key), here !== null);
        }
    });
    return root;
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
    key: string;
    root: HTMLElement;
    showMode: (mode: LayerMode) => void;
    showHeights: (row: StackRow | undefined, hasPlace: boolean) => void;
}

function makeRow({ store }: Session, layer: StackLayer): LayerRow {
    const { key, name, material, color } = layer;
    const swatch = element("span", { class: "swatch" });
    swatch.style.backgroundColor = `rgba(${color[0]}, ${color[1]}, ${color[2]}, ${color[3] / 255})`;
    const seen = button(`Show ${name}`, { class: "toggle" }, icon(eye));
    const clear = button(`${name} as glass`, { class: "toggle" }, icon(glass));
    const setMode = (mode: LayerMode) => {
        const modes = new Map(store.state.modes);
        if (mode === "shown") {
            modes.delete(key);
        } else {
            modes.set(key, mode);
        }
        store.set({ modes });
    };
    const mode = () => store.state.modes.get(key) ?? "shown";
    seen.addEventListener("click", () => {
        setMode(mode() === "hidden" ? "shown" : "hidden");
    });
    clear.addEventListener("click", () => {
        setMode(mode() === "glass" ? "shown" : "glass");
    });
    const top = element("td", { class: "number" });
    const thickness = element("td", { class: "number" });
    const label = element("span", { class: "layer-name" }, foreign(name));
    if (material !== name) {
        label.append(" ", element("span", { class: "quiet" }, foreign(material)));
    }
    const root = element(
        "tr",
        {},
        element("th", { scope: "row" }, swatch, label),
        top,
        thickness,
        element("td", { class: "toggles" }, seen, clear),
    );
    return {
        key,
        root,
        showMode: (shown) => {
            root.dataset.mode = shown;
            seen.setAttribute("aria-pressed", String(shown !== "hidden"));
            clear.setAttribute("aria-pressed", String(shown === "glass"));
        },
        showHeights: (row, hasPlace) => {
            root.classList.toggle("elsewhere", hasPlace && !row);
            top.textContent = row ? nanometres(row.top) : hasPlace ? "–" : "";
            thickness.textContent = row ? nanometres(row.top - row.bottom) : hasPlace ? "–" : "";
        },
    };
}
