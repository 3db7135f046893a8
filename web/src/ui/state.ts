import type { Cut } from "../stack/mesh.ts";
import type { Place } from "../stack/probe.ts";
import type { LayerMode } from "../view/layer_objects.ts";

export type { LayerMode, Place };

/** What a person has chosen. Steps change, the rest of it stays. */
export interface State {
    /** Index of the step. */
    step: number;
    view: "stack" | "picture";
    modes: ReadonlyMap<number, LayerMode>;
    cut: Cut | null;
    /** From 0, layers in their places, to 1. */
    apart: number;
    /** By how much heights are stretched. */
    stretch: number;
    /** Where the pointer is on the stack. */
    hover: Place | null;
    /** Where a person has put the pin. */
    pin: Place | null;
    /** The first point of a distance; the second one is the pin or the pointer. */
    measureFrom: Place | null;
    /** Whether the next click takes the first point of a distance. */
    measuring: boolean;
}

type Key = keyof State;

/** Holds the state and tells those who asked for it what has changed. */
export class Store {
    private readonly listeners: { keys: Key[]; tell: () => void }[] = [];
    private current: State;

    constructor(initial: State) {
        this.current = initial;
    }

    get state(): Readonly<State> {
        return this.current;
    }

    /** Calls `tell` now and whenever one of the keys changes. */
    on(keys: Key[], tell: () => void): void {
        this.listeners.push({ keys, tell });
        tell();
    }

    set(changes: Partial<State>): void {
        const before = this.current;
        this.current = { ...before, ...changes };
        const changed = (Object.keys(changes) as Key[]).filter(
            (key) => this.current[key] !== before[key],
        );
        for (const { keys, tell } of this.listeners) {
            if (keys.some((key) => changed.includes(key))) {
                tell();
            }
        }
    }
}
