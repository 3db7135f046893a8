/** A layer of a made-up stack; heights are multiples of the quantum. */
export interface MadeLayer {
    number: number;
    name: string;
    material: string;
    color: [number, number, number, number];
    top: Int32Array;
    bottom: Int32Array;
}

export interface MadeStep {
    name: string;
    kind: string;
    /** The step's line of the process file. */
    text: string;
    arguments: { name: string; value: string; meaning: string }[];
    notes: { kind: string; text: string; line: number }[];
    console: string[];
    layers: MadeLayer[];
}

/** Micrometres. */
export const quantum = 0.0005;

/** How many quanta a length in nanometres is. */
export function quanta(nanometres: number): number {
    return Math.round(nanometres / (1000 * quantum));
}

/** Tells, for a place of 0 to 1 in both directions, whether a pattern is there. */
export type Pattern = (u: number, v: number) => boolean;

export function rectangle(u0: number, v0: number, u1: number, v1: number): Pattern {
    return (u, v) => u >= u0 && u <= u1 && v >= v0 && v <= v1;
}

export function anyOf(...patterns: Pattern[]): Pattern {
    return (u, v) => patterns.some((pattern) => pattern(u, v));
}

/** Emulates what tests need of a process: films, patterned films, planarised films, releases. */
export class MadeProcess {
    readonly columns: number;
    readonly rows: number;
    readonly steps: MadeStep[] = [];
    private layers: MadeLayer[] = [];
    private count = 0;

    constructor(columns: number, rows: number) {
        this.columns = columns;
        this.rows = rows;
    }

    /** The heights of what is exposed. */
    surface(): Int32Array {
        const surface = new Int32Array(this.columns * this.rows);
        for (const { top, bottom } of this.layers) {
            for (let k = 0; k < top.length; k++) {
                if (top[k] > bottom[k]) {
                    surface[k] = Math.max(surface[k], top[k]);
                }
            }
        }
        return surface;
    }

    /** A film of one thickness over everything, or where a pattern is. */
    film(
        name: string,
        material: string,
        color: MadeLayer["color"],
        thickness: number,
        where: Pattern = () => true,
    ): void {
        const bottom = this.surface();
        const top = bottom.map(
            (height, k) => height + (this.has(where, k) ? quanta(thickness) : 0),
        );
        this.layers = [
            ...this.layers,
            { number: ++this.count, name, material, color, top, bottom },
        ];
    }

    /** A film that fills up to a level. */
    fill(name: string, material: string, color: MadeLayer["color"], level: number): void {
        const bottom = this.surface();
        const top = bottom.map((height) => Math.max(height, quanta(level)));
        this.layers = [
            ...this.layers,
            { number: ++this.count, name, material, color, top, bottom },
        ];
    }

    /** Lowers the upper surface of a layer to a level, where a pattern is. */
    etch(name: string, level: number, where: Pattern = () => true): void {
        this.layers = this.layers.map((layer) => {
            if (layer.name !== name) {
                return layer;
            }
            const top = layer.top.map((height, k) =>
                this.has(where, k)
                    ? Math.max(layer.bottom[k], Math.min(height, quanta(level)))
                    : height,
            );
            return { ...layer, top };
        });
    }

    /** Takes a layer out and leaves what stands above it in the air. */
    release(name: string): void {
        this.layers = this.layers.filter((layer) => layer.name !== name);
    }

    /** Ends a step. */
    record(step: Partial<MadeStep> & { name: string; kind: string }): void {
        this.steps.push({
            text: `${step.kind} -name ${step.name}`,
            arguments:
                step.kind === "substrate"
                    ? []
                    : [{ name: "-name", value: step.name, meaning: "name of the step" }],
            notes: [],
            console: [],
            ...step,
            layers: this.layers,
        });
    }

    private has(where: Pattern, k: number): boolean {
        const column = k % this.columns;
        return where(column / (this.columns - 1), (k - column) / this.columns / (this.rows - 1));
    }
}
