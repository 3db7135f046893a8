import type { Fields } from "../data/fields.ts";
import type { PageBytes } from "../data/page_bytes.ts";
import type { Run } from "../data/run.ts";
import { nearest, readStack, type Grid, type Stack } from "../stack/stack.ts";
import { stackAt, type StackRow } from "../stack/probe.ts";
import type { Place, Store } from "./state.ts";

/** What all parts of the page share. */
export interface Session {
    run: Run;
    bytes: PageBytes;
    grid: Grid;
    fields: Fields;
    store: Store;
    /** The stack after the present step; null where the page's data cannot be read. */
    stack: Stack | null;
    /** Why it cannot be read. */
    failure: string;
}

/** Reads the stack of the present step. */
export function updateStack(session: Session): void {
    const { run, grid, fields, store } = session;
    try {
        session.stack = readStack(run, grid, fields, store.state.step);
        session.failure = "";
    } catch (error) {
        session.stack = null;
        session.failure = error instanceof Error ? error.message : String(error);
    }
}

/** Goes to a step, as far as there is one. The pin stays where it is and lies on the new surface. */
export function goToStep(session: Session, step: number): void {
    const { store, run } = session;
    const wanted = Math.min(Math.max(step, 0), run.steps.length - 1);
    if (wanted === store.state.step) {
        return;
    }
    store.set({ step: wanted, hover: null });
    const { pin } = store.state;
    if (pin) {
        store.set({ pin: surfacePlace(session, pin.x, pin.y) });
    }
}

/** The place on the surface of what is shown at the point of the grid that is nearest. */
export function surfacePlace(session: Session, x: number, y: number): Place {
    const { grid, stack, store } = session;
    const column = nearest(grid.x, x);
    const row = nearest(grid.y, y);
    const layers = (stack?.layers ?? []).filter(
        ({ key }) => store.state.modes.get(key) !== "hidden",
    );
    const top = stackAt(grid, layers, column, row)[0] as StackRow | undefined;
    return { x: grid.x[column], y: grid.y[row], z: top?.top ?? 0, key: top?.key ?? null };
}
