import type { Heights } from "../data/fields.ts";
import type { Grid } from "./stack.ts";

// Between four neighbouring points lies a square of two triangles: the front one at its lower left,
// the back one at its upper right. A layer has a triangle where it is thick at one of its corners.

export const frontTriangle = 1;
export const backTriangle = 2;
export const bothTriangles = frontTriangle | backTriangle;

/** A layer as it is drawn. */
export interface Solid {
    top: Heights;
    bottom: Heights;
    /** Whether it hides what touches it. */
    opaque: boolean;
}

/** Which triangles of a layer's two sheets are drawn, as bits by square. */
export interface Faces {
    top: Uint8Array;
    bottom: Uint8Array;
}

/** The triangles that a layer has, as bits: what its corners tell of a square. */
function trianglesAt(solid: Solid, point: number, columns: number): number {
    const { top, bottom } = solid;
    const diagonal =
        top[point + 1] !== bottom[point + 1] || top[point + columns] !== bottom[point + columns];
    if (diagonal) {
        return bothTriangles;
    }
    const far = point + columns + 1;
    return (
        (top[point] !== bottom[point] ? frontTriangle : 0) |
        (top[far] !== bottom[far] ? backTriangle : 0)
    );
}

/** Whether one sheet lies on another at a triangle of a square. */
function touches(
    a: Heights,
    b: Heights,
    triangle: number,
    point: number,
    columns: number,
): boolean {
    const corner = triangle === frontTriangle ? point : point + columns + 1;
    return (
        a[corner] === b[corner] &&
        a[point + 1] === b[point + 1] &&
        a[point + columns] === b[point + columns]
    );
}

/**
 * What of the layers can be seen, from below to above: where two of them touch, the sheet of either
 * is left out if the other is opaque; of two translucent ones the upper sheet of the lower layer stands
 * for both. Layers that are pulled `apart` touch nowhere.
 */
export function findFaces(grid: Grid, solids: Solid[], apart: boolean): Faces[] {
    const { columns, rows } = grid;
    const squares = (columns - 1) * (rows - 1);
    // By triangle, the layer below whose upper sheet is the last so far, from 1; 0 for none.
    const below = [new Uint16Array(squares), new Uint16Array(squares)];
    const faces: Faces[] = [];
    solids.forEach((solid, index) => {
        const own = { top: new Uint8Array(squares), bottom: new Uint8Array(squares) };
        faces.push(own);
        for (let square = 0, point = 0; square < squares; square++, point++) {
            if (point % columns === columns - 1) {
                point++;
            }
            const triangles = trianglesAt(solid, point, columns);
            if (triangles === 0) {
                continue;
            }
            own.top[square] = triangles;
            own.bottom[square] = triangles;
            for (let triangle = frontTriangle; triangle <= backTriangle; triangle++) {
                if ((triangles & triangle) === 0) {
                    continue;
                }
                const lower = below[triangle - 1][square] - 1;
                below[triangle - 1][square] = index + 1;
                if (
                    lower >= 0 &&
                    !apart &&
                    touches(solids[lower].top, solid.bottom, triangle, point, columns)
                ) {
                    if (solids[lower].opaque || !solid.opaque) {
                        own.bottom[square] &= ~triangle;
                    }
                    if (solid.opaque) {
                        faces[lower].top[square] &= ~triangle;
                    }
                }
            }
        }
    });
    return faces;
}
