import type { Fields, Heights } from "../data/fields.ts";
import { layerName, type Run } from "../data/run.ts";

/** The columns and rows of a window. All heights are multiples of `quantum`. */
export interface Grid {
    /** Micrometres from the window's lower left corner. */
    x: Float64Array;
    y: Float64Array;
    columns: number;
    rows: number;
    /** Micrometres. */
    quantum: number;
}

export interface StackLayer {
    /** The same for a layer in all steps. */
    key: number;
    name: string;
    material: string;
    color: [number, number, number, number];
    top: Heights;
    bottom: Heights;
}

/** The layers after a step, from below to above. */
export interface Stack {
    grid: Grid;
    layers: StackLayer[];
}

/** The middle of places, and how far they reach, in micrometres. */
export function extent(places: Float64Array): { middle: number; length: number } {
    const [first, last] = [places[0], places[places.length - 1]];
    return { middle: 0.5 * (first + last), length: last - first };
}

export function readGrid(run: Run): Grid {
    const x = Float64Array.from(run.grid.x);
    const y = Float64Array.from(run.grid.y);
    return { x, y, columns: x.length, rows: y.length, quantum: run.quantum };
}

/** The stack after a step. */
export function readStack(run: Run, grid: Grid, fields: Fields, step: number): Stack {
    const layers = run.steps[step].layers.map((layer) => ({
        key: layer.number,
        name: layerName(layer),
        material: layer.material,
        color: layer.color,
        top: fields.heights(layer.top),
        bottom: fields.heights(layer.bottom),
    }));
    return { grid, layers };
}

/** The lowest and the highest place of a stack in micrometres; zeros for a stack without layers. */
export function heightRange(stack: Stack): { lowest: number; highest: number } {
    let lowest = Infinity;
    let highest = -Infinity;
    for (const { top, bottom } of stack.layers) {
        for (let k = 0; k < top.length; k++) {
            if (top[k] > bottom[k]) {
                lowest = Math.min(lowest, bottom[k]);
                highest = Math.max(highest, top[k]);
            }
        }
    }
    const { quantum } = stack.grid;
    return lowest > highest
        ? { lowest: 0, highest: 0 }
        : { lowest: lowest * quantum, highest: highest * quantum };
}

/** Which stretch between two places holds a place; those at the ends hold all beyond. */
export function stretch(places: Float64Array, place: number): number {
    let low = 0;
    let high = places.length - 1;
    while (high - low > 1) {
        const middle = (low + high) >> 1;
        if (places[middle] <= place) {
            low = middle;
        } else {
            high = middle;
        }
    }
    return low;
}

/** The column or row that lies nearest to a place. */
export function nearest(places: Float64Array, place: number): number {
    const low = stretch(places, place);
    const high = Math.min(low + 1, places.length - 1);
    return place - places[low] <= places[high] - place ? low : high;
}
