import type { Cut } from "./mesh.ts";
import { type Grid, type StackLayer, stretch } from "./stack.ts";

/** Micrometres from the window's lower left corner, the height as the layers have it. */
export interface Place {
    x: number;
    y: number;
    z: number;
    /** The layer that it lies on, or null for a place of the window itself. */
    key: number | null;
}

/** A layer as one can point at it. */
export interface Target {
    layer: StackLayer;
    /** How far it was lifted, in micrometres. */
    lift: number;
}

/** Micrometres from the window's lower left corner; the height as the layer has it, not lifted. */
export interface Hit {
    x: number;
    y: number;
    z: number;
    target: Target;
}

export interface Ray {
    origin: [number, number, number];
    direction: [number, number, number];
}

/** One layer at a point of the grid, in micrometres. */
export interface StackRow {
    key: number;
    name: string;
    top: number;
    bottom: number;
}

/** The layers that are there at a point of the grid, from above to below. */
export function stackAt(grid: Grid, layers: StackLayer[], column: number, row: number): StackRow[] {
    const point = row * grid.columns + column;
    return layers
        .filter(({ top, bottom }) => top[point] > bottom[point])
        .map(({ key, name, top, bottom }) => ({
            key,
            name,
            top: top[point] * grid.quantum,
            bottom: bottom[point] * grid.quantum,
        }))
        .reverse();
}

/** The part of the window that a cut leaves, in micrometres: from and to, for x and y. */
export function keptPart(grid: Grid, cut: Cut | null): [[number, number], [number, number]] {
    const part: [[number, number], [number, number]] = [
        [grid.x[0], grid.x[grid.columns - 1]],
        [grid.y[0], grid.y[grid.rows - 1]],
    ];
    if (cut) {
        const axis = cut.axis === "x" ? 0 : 1;
        const plane = (cut.axis === "x" ? grid.x : grid.y)[cut.index];
        part[axis][cut.keepsLower ? 1 : 0] = plane;
    }
    return part;
}

/** Finds what a ray meets first of some layers. */
export function pick(grid: Grid, targets: Target[], cut: Cut | null, ray: Ray): Hit | null {
    const span = clip(ray, keptPart(grid, cut));
    if (!span) {
        return null;
    }
    const inside = hitOnWall(grid, targets, ray, span[0]);
    return inside ?? walk(grid, targets, ray, span);
}

/** The stretch of a ray over a part of the window, or null. */
function clip(ray: Ray, part: [[number, number], [number, number]]): [number, number] | null {
    let from = 0;
    let to = Infinity;
    for (const axis of [0, 1] as const) {
        const [low, high] = part[axis];
        const origin = ray.origin[axis];
        const direction = ray.direction[axis];
        if (Math.abs(direction) < 1e-12) {
            if (origin < low || origin > high) {
                return null;
            }
            continue;
        }
        const a = (low - origin) / direction;
        const b = (high - origin) / direction;
        from = Math.max(from, Math.min(a, b));
        to = Math.min(to, Math.max(a, b));
    }
    return from < to ? [from, to] : null;
}

function at(ray: Ray, t: number, axis: 0 | 1 | 2): number {
    return ray.origin[axis] + t * ray.direction[axis];
}

/** The height of a sheet in micrometres within a square, by its two triangles. */
function heightIn(
    grid: Grid,
    heights: Int32Array,
    square: [number, number],
    x: number,
    y: number,
): number {
    const [column, row] = square;
    const point = row * grid.columns + column;
    const u = (x - grid.x[column]) / (grid.x[column + 1] - grid.x[column]);
    const v = (y - grid.y[row]) / (grid.y[row + 1] - grid.y[row]);
    const right = heights[point + 1];
    const back = heights[point + grid.columns];
    const height =
        u + v <= 1
            ? heights[point] * (1 - u - v) + right * u + back * v
            : heights[point + grid.columns + 1] * (u + v - 1) + right * (1 - v) + back * (1 - u);
    return height * grid.quantum;
}

/** What the ray meets where it comes in through a side of the window or through the cut. */
function hitOnWall(grid: Grid, targets: Target[], ray: Ray, t: number): Hit | null {
    if (t <= 0) {
        return null;
    }
    const [x, y, z] = [at(ray, t, 0), at(ray, t, 1), at(ray, t, 2)];
    const square: [number, number] = [stretch(grid.x, x), stretch(grid.y, y)];
    for (const target of targets) {
        const height = z - target.lift;
        if (
            height > heightIn(grid, target.layer.bottom, square, x, y) &&
            height < heightIn(grid, target.layer.top, square, x, y)
        ) {
            return { x, y, z: height, target };
        }
    }
    return null;
}

/** Follows the ray from square to square. */
function walk(grid: Grid, targets: Target[], ray: Ray, [from, to]: [number, number]): Hit | null {
    const middle = (a: number, b: number) => 0.5 * (a + Math.min(b, a + 1e-9 * (1 + Math.abs(a))));
    let t = from;
    const start = middle(from, to);
    let column = stretch(grid.x, at(ray, start, 0));
    let row = stretch(grid.y, at(ray, start, 1));
    while (t < to && column >= 0 && row >= 0 && column + 1 < grid.columns && row + 1 < grid.rows) {
        const outX = leave(ray, 0, grid.x, column);
        const outY = leave(ray, 1, grid.y, row);
        const end = Math.min(outX, outY, to);
        // A ray that looks straight down leaves no square.
        const last = Number.isFinite(end) ? end : t + 1e6;
        const hit = hitInSquare(grid, targets, ray, [column, row], t, last);
        if (hit) {
            return hit;
        }
        t = last;
        if (outX <= outY) {
            column += ray.direction[0] > 0 ? 1 : -1;
        } else {
            row += ray.direction[1] > 0 ? 1 : -1;
        }
    }
    return null;
}

/** Where a ray leaves the stretch between two neighbouring places. */
function leave(ray: Ray, axis: 0 | 1, places: Float64Array, index: number): number {
    const direction = ray.direction[axis];
    if (Math.abs(direction) < 1e-12) {
        return Infinity;
    }
    return (places[direction > 0 ? index + 1 : index] - ray.origin[axis]) / direction;
}

function hitInSquare(
    grid: Grid,
    targets: Target[],
    ray: Ray,
    square: [number, number],
    from: number,
    to: number,
): Hit | null {
    const diagonal = crossDiagonal(grid, ray, square);
    const parts = diagonal > from && diagonal < to ? [from, diagonal, to] : [from, to];
    for (let i = 0; i + 1 < parts.length; i++) {
        let nearest = Infinity;
        let found: Target | null = null;
        for (const target of targets) {
            const t = crossSheets(grid, target, ray, square, parts[i], parts[i + 1]);
            if (t < nearest) {
                nearest = t;
                found = target;
            }
        }
        if (found) {
            const z = at(ray, nearest, 2) - found.lift;
            return { x: at(ray, nearest, 0), y: at(ray, nearest, 1), z, target: found };
        }
    }
    return null;
}

/** Where a ray passes from one triangle of a square to the other; NaN where it does not. */
function crossDiagonal(grid: Grid, ray: Ray, [column, row]: [number, number]): number {
    const width = grid.x[column + 1] - grid.x[column];
    const depth = grid.y[row + 1] - grid.y[row];
    const speed = ray.direction[0] / width + ray.direction[1] / depth;
    const start = (ray.origin[0] - grid.x[column]) / width + (ray.origin[1] - grid.y[row]) / depth;
    return (1 - start) / speed;
}

/** Sheets that are nearer to each other, in micrometres, are one: no quantum is so small. */
const leastThickness = 1e-7;

/** Where a ray goes into a layer through one of its sheets within a triangle, or Infinity. */
function crossSheets(
    grid: Grid,
    { layer, lift }: Target,
    ray: Ray,
    square: [number, number],
    from: number,
    to: number,
): number {
    const gaps = [from, to].map((t) => {
        const [x, y] = [at(ray, t, 0), at(ray, t, 1)];
        const z = at(ray, t, 2) - lift;
        return {
            above: z - heightIn(grid, layer.top, square, x, y),
            below: heightIn(grid, layer.bottom, square, x, y) - z,
        };
    });
    let nearest = Infinity;
    for (const sheet of ["above", "below"] as const) {
        const [start, end] = [gaps[0][sheet], gaps[1][sheet]];
        if (start >= 0 && end < 0) {
            const part = start / (start - end);
            const other = sheet === "above" ? "below" : "above";
            // Inside the layer on the far side of the crossing, or it is not there.
            if (gaps[0][other] + part * (gaps[1][other] - gaps[0][other]) < -leastThickness) {
                nearest = Math.min(nearest, from + part * (to - from));
            }
        }
    }
    return nearest;
}

/** The heights of all surfaces at a point of the grid, in micrometres with their layers' lift. */
export function surfacesAt(
    grid: Grid,
    targets: Target[],
    column: number,
    row: number,
): { z: number; target: Target }[] {
    const point = row * grid.columns + column;
    return targets
        .filter(({ layer }) => layer.top[point] > layer.bottom[point])
        .flatMap((target) => [
            { z: target.layer.top[point] * grid.quantum, target },
            { z: target.layer.bottom[point] * grid.quantum, target },
        ]);
}
