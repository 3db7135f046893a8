import type { Grid, StackLayer } from "./stack.ts";

export type Axis = "x" | "y";

/** A piece of a layer in a cut: its outline, closed by the way from its last corner to the first. */
export interface Polygon {
    /** The points of the grid along it, from its left to its right end. */
    points: number[];
    /** Place along the cut in micrometres, and the heights there in multiples of the quantum. */
    places: number[];
    bottoms: number[];
    tops: number[];
}

/** The points of the grid in a cut across x through a column, or across y through a row. */
export function cutPoints(grid: Grid, axis: Axis, index: number): number[] {
    const { columns, rows } = grid;
    return axis === "x"
        ? Array.from({ length: rows }, (_, row) => row * columns + index)
        : Array.from({ length: columns }, (_, column) => index * columns + column);
}

/**
 * What a cut shows of a layer: a polygon for each stretch in which it is thick. The heights are those
 * of the layer itself, as cuts go through columns and rows of the grid.
 */
export function cutLayer(
    grid: Grid,
    layer: Pick<StackLayer, "top" | "bottom">,
    axis: Axis,
    index: number,
): Polygon[] {
    const points = cutPoints(grid, axis, index);
    const places = axis === "x" ? grid.y : grid.x;
    const polygons: Polygon[] = [];
    const thick = (k: number) => layer.top[points[k]] > layer.bottom[points[k]];
    let open: Polygon | null = null;
    for (let k = 0; k < points.length; k++) {
        const before = k > 0 && (thick(k - 1) || thick(k));
        const after = k + 1 < points.length && (thick(k) || thick(k + 1));
        if (after && !before) {
            open = { points: [], places: [], bottoms: [], tops: [] };
            polygons.push(open);
        }
        if (open && (before || after)) {
            open.points.push(points[k]);
            open.places.push(places[k]);
            open.bottoms.push(layer.bottom[points[k]]);
            open.tops.push(layer.top[points[k]]);
            // A layer that ends at a point and begins again there makes two polygons.
            if (before && after && !thick(k)) {
                open = {
                    points: [points[k]],
                    places: [places[k]],
                    bottoms: [layer.bottom[points[k]]],
                    tops: [layer.top[points[k]]],
                };
                polygons.push(open);
            }
        }
        if (!after) {
            open = null;
        }
    }
    return polygons;
}
