import type { Heights } from "../data/fields.ts";
import { backTriangle, bothTriangles, frontTriangle, type Faces, type Solid } from "./faces.ts";
import { cutLayer, cutPoints, type Axis, type Polygon } from "./section.ts";
import type { Grid } from "./stack.ts";

/** Triangles, counterclockwise as seen from outside. Positions are micrometres. */
export interface Mesh {
    positions: Float32Array;
    indices: Uint32Array;
}

/** Grows a mesh. Its memory is used again by the next mesh. */
class MeshBuilder {
    private positions = new Float32Array(1 << 16);
    private indices = new Uint32Array(1 << 16);
    private positionCount = 0;
    private indexCount = 0;

    vertex(x: number, y: number, z: number): number {
        if (this.positionCount + 3 > this.positions.length) {
            const grown = new Float32Array(2 * this.positions.length);
            grown.set(this.positions);
            this.positions = grown;
        }
        this.positions[this.positionCount++] = x;
        this.positions[this.positionCount++] = y;
        this.positions[this.positionCount++] = z;
        return this.positionCount / 3 - 1;
    }

    triangle(a: number, b: number, c: number): void {
        if (this.indexCount + 3 > this.indices.length) {
            const grown = new Uint32Array(2 * this.indices.length);
            grown.set(this.indices);
            this.indices = grown;
        }
        this.indices[this.indexCount++] = a;
        this.indices[this.indexCount++] = b;
        this.indices[this.indexCount++] = c;
    }

    take(): Mesh {
        const mesh = {
            positions: this.positions.slice(0, this.positionCount),
            indices: this.indices.slice(0, this.indexCount),
        };
        this.positionCount = 0;
        this.indexCount = 0;
        return mesh;
    }
}

const builder = new MeshBuilder();

/**
 * Writes the triangles of a sheet. Squares of a row that are level along it become one long piece; its
 * corners are all those that the pieces in front and behind have, so that no edge shows a gap.
 */
class SheetWriter {
    private readonly grid: Grid;
    private readonly heights: Heights;
    private readonly drawn: Uint8Array;
    private readonly upwards: boolean;
    /** By square, whether it is whole and level along its row: so is any number of them in a row. */
    private readonly level: Uint8Array;
    private readonly numbers: Int32Array;
    /** By column, whether the walls need a corner there. */
    private readonly corners: WallCorners;

    constructor(
        grid: Grid,
        heights: Heights,
        drawn: Uint8Array,
        upwards: boolean,
        corners: WallCorners,
    ) {
        this.grid = grid;
        this.heights = heights;
        this.drawn = drawn;
        this.upwards = upwards;
        this.corners = corners;
        this.level = levelSquares(grid, heights, drawn);
        this.numbers = new Int32Array(heights.length).fill(-1);
    }

    write(): void {
        const squares = this.grid.columns - 1;
        for (let row = 0; row + 1 < this.grid.rows; row++) {
            const first = row * squares;
            for (let column = 0; column < squares; column++) {
                if (this.level[first + column]) {
                    const start = column;
                    while (column + 1 < squares && this.level[first + column + 1]) {
                        column++;
                    }
                    this.writePiece(row, start, column + 1);
                } else if (this.drawn[first + column]) {
                    this.writeSquare(row, column, this.drawn[first + column]);
                }
            }
        }
    }

    private writeSquare(row: number, column: number, triangles: number): void {
        const { columns } = this.grid;
        const point = row * columns + column;
        if (triangles & frontTriangle) {
            this.triangle(point, point + 1, point + columns);
        }
        if (triangles & backTriangle) {
            this.triangle(point + 1, point + columns + 1, point + columns);
        }
    }

    /** The piece between two columns: a strip between the corners of its front and its back edge. */
    private writePiece(row: number, start: number, end: number): void {
        const { columns } = this.grid;
        let front = start;
        let back = start;
        let nextFront = this.nextCorner(row, front, end);
        let nextBack = this.nextCorner(row + 1, back, end);
        while (front < end || back < end) {
            if (back === end || (front < end && nextFront <= nextBack)) {
                this.triangle(
                    row * columns + front,
                    row * columns + nextFront,
                    (row + 1) * columns + back,
                );
                front = nextFront;
                nextFront = this.nextCorner(row, front, end);
            } else {
                this.triangle(
                    row * columns + front,
                    (row + 1) * columns + nextBack,
                    (row + 1) * columns + back,
                );
                back = nextBack;
                nextBack = this.nextCorner(row + 1, back, end);
            }
        }
    }

    private nextCorner(row: number, column: number, end: number): number {
        let next = column + 1;
        while (next < end && !this.isCorner(row, next)) {
            next++;
        }
        return Math.min(next, end);
    }

    /** Whether one of the pieces that meet at a point inside a row's edge has a corner there. */
    private isCorner(row: number, column: number): boolean {
        const squares = this.grid.columns - 1;
        if (row === 0) {
            if (this.corners.front[column]) {
                return true;
            }
        } else {
            const square = (row - 1) * squares + column;
            if (!this.level[square - 1] || !this.level[square]) {
                return true;
            }
        }
        if (row === this.grid.rows - 1) {
            return this.corners.back[column] !== 0;
        }
        const square = row * squares + column;
        return !this.level[square - 1] || !this.level[square];
    }

    private triangle(a: number, b: number, c: number): void {
        const first = this.number(a);
        const second = this.number(b);
        const third = this.number(c);
        if (this.upwards) {
            builder.triangle(first, second, third);
        } else {
            builder.triangle(first, third, second);
        }
    }

    private number(point: number): number {
        if (this.numbers[point] < 0) {
            const { x, y, columns, quantum } = this.grid;
            this.numbers[point] = builder.vertex(
                x[point % columns],
                y[Math.floor(point / columns)],
                this.heights[point] * quantum,
            );
        }
        return this.numbers[point];
    }
}

function levelSquares(grid: Grid, heights: Heights, drawn: Uint8Array): Uint8Array {
    const { columns } = grid;
    const level = new Uint8Array(drawn.length);
    for (let square = 0, point = 0; square < drawn.length; square++, point++) {
        if (point % columns === columns - 1) {
            point++;
        }
        level[square] =
            drawn[square] === bothTriangles &&
            heights[point] === heights[point + 1] &&
            heights[point + columns] === heights[point + columns + 1]
                ? 1
                : 0;
    }
    return level;
}

/** Where the walls at the window's front and back have corners, by column. */
export interface WallCorners {
    front: Uint8Array;
    back: Uint8Array;
}

/**
 * The corners of all layers' walls, so that one wall meets the next without a gap, and each wall its
 * layer's sheets: where the row of squares behind it is not level.
 */
export function findWallCorners(grid: Grid, solids: Solid[]): WallCorners {
    const { columns, rows } = grid;
    const find = (row: number, inner: number) => {
        const corners = new Uint8Array(columns);
        const mark = (heights: Heights) => {
            for (let column = 0; column + 1 < columns; column++) {
                const edge = row * columns + column;
                const behind = inner * columns + column;
                if (
                    heights[edge] !== heights[edge + 1] ||
                    heights[behind] !== heights[behind + 1]
                ) {
                    corners[column] = 1;
                    corners[column + 1] = 1;
                }
            }
        };
        for (const { top, bottom } of solids) {
            mark(top);
            mark(bottom);
        }
        return corners;
    };
    return { front: find(0, 1), back: find(rows - 1, rows - 2) };
}

/** Writes the upright face of a layer through points that go from left to right as seen. */
function writeWall(
    grid: Grid,
    solid: Solid,
    points: number[],
    isCorner: (k: number) => boolean,
): void {
    const { x, y, columns, quantum } = grid;
    const { top, bottom } = solid;
    const thick = (k: number) => top[points[k]] > bottom[points[k]];
    const vertex = (k: number, heights: Heights) =>
        builder.vertex(
            x[points[k] % columns],
            y[Math.floor(points[k] / columns)],
            heights[points[k]] * quantum,
        );
    for (let k = 0; k + 1 < points.length;) {
        let next = k + 1;
        if (thick(k) || thick(next)) {
            while (next + 1 < points.length && !isCorner(next)) {
                next++;
            }
            const [a, b, c, d] = [
                vertex(k, bottom),
                vertex(next, bottom),
                vertex(next, top),
                vertex(k, top),
            ];
            if (thick(next)) {
                builder.triangle(a, b, c);
            }
            if (thick(k)) {
                builder.triangle(a, c, d);
            }
        }
        k = next;
    }
}

/** A layer as a closed solid within the window, less what other layers hide of its two sheets. */
export function meshLayer(grid: Grid, solid: Solid, faces: Faces, corners: WallCorners): Mesh {
    new SheetWriter(grid, solid.top, faces.top, true, corners).write();
    new SheetWriter(grid, solid.bottom, faces.bottom, false, corners).write();
    const { columns, rows } = grid;
    const always = () => true;
    writeWall(grid, solid, cutPoints(grid, "y", 0), (k) => corners.front[k] !== 0);
    writeWall(grid, solid, cutPoints(grid, "x", columns - 1), always);
    writeWall(
        grid,
        solid,
        cutPoints(grid, "y", rows - 1).reverse(),
        (k) => corners.back[columns - 1 - k] !== 0,
    );
    writeWall(grid, solid, cutPoints(grid, "x", 0).reverse(), always);
    return builder.take();
}

/** The place of a cut, and whether what lies below it (in x or y) is kept. */
export interface Cut {
    axis: Axis;
    /** The column or the row. */
    index: number;
    keepsLower: boolean;
}

/** A cut face of a layer and the outlines of its pieces, as pairs of positions. */
export interface CutFace {
    mesh: Mesh;
    outlines: Float32Array;
}

export function meshCut(grid: Grid, solid: Solid, cut: Cut): CutFace {
    const polygons = cutLayer(grid, solid, cut.axis, cut.index);
    // Seen from the side that is taken away, a cut across y with the lower side kept runs backwards.
    const reversed = cut.axis === "x" ? !cut.keepsLower : cut.keepsLower;
    for (const polygon of polygons) {
        const points = reversed ? [...polygon.points].reverse() : polygon.points;
        writeWall(grid, solid, points, () => true);
    }
    return { mesh: builder.take(), outlines: outlines(grid, polygons, cut) };
}

function outlines(grid: Grid, polygons: Polygon[], cut: Cut): Float32Array {
    const result: number[] = [];
    const plane = cut.axis === "x" ? grid.x[cut.index] : grid.y[cut.index];
    const add = (place: number, height: number) => {
        const [x, y] = cut.axis === "x" ? [plane, place] : [place, plane];
        result.push(x, y, height * grid.quantum);
    };
    for (const { places, bottoms, tops } of polygons) {
        for (const heights of [bottoms, tops]) {
            for (let k = 0; k + 1 < places.length; k++) {
                let next = k + 1;
                while (
                    next + 1 < places.length &&
                    heights[next + 1] === heights[k] &&
                    heights[next] === heights[k]
                ) {
                    next++;
                }
                add(places[k], heights[k]);
                add(places[next], heights[next]);
                k = next - 1;
            }
        }
        for (const end of [0, places.length - 1]) {
            add(places[end], bottoms[end]);
            add(places[end], tops[end]);
        }
    }
    return Float32Array.from(result);
}
