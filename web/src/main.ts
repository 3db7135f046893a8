import "./page.css";
import { Fields } from "./data/fields.ts";
import { PageBytes } from "./data/page_bytes.ts";
import { readRun } from "./data/run.ts";
import { extent, heightRange, readGrid } from "./stack/stack.ts";
import { element } from "./ui/dom.ts";
import { showPage } from "./ui/page.ts";
import { updateStack, type Session } from "./ui/session.ts";
import { Store } from "./ui/state.ts";

/** The text of one of the page's elements. */
function textOf(id: string): string {
    const text = document.getElementById(id)?.textContent;
    if (text == null) {
        throw new Error(`The element ${id} of this page is missing.`);
    }
    return text;
}

/** Flat stacks are stretched so that one sees something of them at first sight. */
function firstStretch({ stack, grid }: Session): number {
    const width = Math.max(extent(grid.x).length, extent(grid.y).length);
    const { lowest, highest } = stack ? heightRange(stack) : { lowest: 0, highest: 0 };
    if (highest <= lowest || highest - lowest > 0.2 * width) {
        return 1;
    }
    return 2 ** Math.min(5, Math.round(Math.log2((0.3 * width) / (highest - lowest))));
}

function openPage(): void {
    const run = readRun(textOf("run"));
    const bytes = new PageBytes(textOf("data"));
    const wanted = /^#step=(\d+)$/.exec(window.location.hash);
    const asked = wanted ? run.steps.findIndex(({ number }) => number === Number(wanted[1])) : -1;
    const store = new Store({
        step: asked >= 0 ? asked : run.steps.length - 1,
        view: "stack",
        modes: new Map(),
        cut: null,
        apart: 0,
        stretch: 1,
        hover: null,
        pin: null,
        measureFrom: null,
        measuring: false,
    });
    const session: Session = {
        run,
        bytes,
        grid: readGrid(run),
        fields: new Fields(run, bytes),
        store,
        stack: null,
        failure: "",
    };
    // First of all listeners: the others find the step's stack.
    store.on(["step"], () => {
        updateStack(session);
    });
    store.set({ stretch: firstStretch(session) });
    showPage(session);
}

try {
    openPage();
} catch (error) {
    const reason = error instanceof Error ? error.message : String(error);
    document.body.append(
        element("p", { class: "failure", role: "alert" }, `This page cannot be shown. ${reason}`),
    );
}
