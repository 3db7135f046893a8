// What a page knows of a run: the text of its element `run`.

export interface Argument {
    name: string;
    value: string;
    meaning: string;
}

export interface Note {
    kind: string;
    /** What was seen, and a way out. */
    text: string;
    /** Of the process file, from 1; 0 where a note belongs to no line. */
    line: number;
}

/** A picture file among the page's bytes. */
export interface Picture {
    type: string;
    width: number;
    height: number;
    offset: number;
    length: number;
}

export interface Layer {
    /** The same for a layer in all steps, and no other's. */
    number: number;
    name: string;
    material: string;
    /** Red, green, blue and opacity, 0 to 255. */
    color: [number, number, number, number];
    /** The fields of its two surfaces. */
    top: number;
    bottom: number;
}

export interface Step {
    number: number;
    name: string;
    kind: string;
    /** Of the process file, from 1; 0 for the substrate, which has none. */
    line: number;
    seconds: number;
    arguments: Argument[];
    notes: Note[];
    console: string[];
    picture: Picture | null;
    thumbnail: Picture | null;
    /** From below to above. */
    layers: Layer[];
}

export interface Field {
    /** The field that this one is the difference to, or -1. */
    base: number;
}

/** Fields that are compressed together. */
export interface Chunk {
    offset: number;
    length: number;
    fields: Field[];
}

export interface Run {
    format: number;
    program: string;
    title: string;
    layout: string;
    cell: string;
    /** Micrometres, in the layout's coordinates. */
    window: { x: number; y: number; dx: number; dy: number };
    /**
     * Micrometres from the window's lower left corner. The outer ones may lie a little beside its edges.
     * Both are empty where the window is narrower than the model's cells.
     */
    grid: { x: number[]; y: number[] };
    processFile: string[];
    /** Those that belong to no step. */
    notes: (Note & { file: string })[];
    /** How many steps the process has; the page may hold some of them. */
    stepCount: number;
    steps: Step[];
    chunks: Chunk[];
    /** Micrometres: heights are whole multiples of it. */
    quantum: number;
    /** The height from which those that people see are counted, in micrometres. */
    zero: number;
}

/** The format that this page reads. */
export const knownFormat = 1;

/** Reads a run's text. Throws an Error whose message tells what is wrong with it. */
export function readRun(text: string): Run {
    const run = JSON.parse(text) as Partial<Run>;
    if (run.format !== knownFormat) {
        throw new Error(
            `The data of this page have format ${String(run.format)}, not ${knownFormat}.`,
        );
    }
    if (!run.steps || run.steps.length === 0 || !run.grid || !run.chunks || !run.window) {
        throw new Error("The data of this page are not complete.");
    }
    return run as Run;
}

/** What a person calls a step: its name, or its kind where it has none. */
export function stepName(step: Step): string {
    return step.name === "" ? step.kind : step.name;
}

/** What a person calls a layer: its name, or its material where it has none. */
export function layerName(layer: Layer): string {
    return layer.name === "" ? layer.material : layer.name;
}
