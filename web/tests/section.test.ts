import assert from "node:assert/strict";
import { test } from "node:test";
import { cutLayer, cutPoints } from "../src/stack/section.ts";
import type { Grid } from "../src/stack/stack.ts";
import { quantum } from "./support/process.ts";
import { makeTransistors } from "./support/samples.ts";

const made = makeTransistors(61, 41, 2);
const grid: Grid = {
    x: Float64Array.from({ length: 61 }, (_, i) => 0.2 * i),
    y: Float64Array.from({ length: 41 }, (_, i) => 0.2 * i),
    columns: 61,
    rows: 41,
    quantum,
};

test("the polygons of a cut have the heights of the layers, and hold all of what is thick", () => {
    for (const axis of ["x", "y"] as const) {
        const places = axis === "x" ? grid.y : grid.x;
        for (let index = 0; index < (axis === "x" ? 61 : 41); index += 3) {
            for (const layer of made.steps[made.steps.length - 1].layers) {
                const polygons = cutLayer(grid, layer, axis, index);
                const points = cutPoints(grid, axis, index);
                const covered = new Set<number>();
                for (const polygon of polygons) {
                    assert.ok(polygon.places.length >= 2);
                    polygon.points.forEach((point, k) => {
                        assert.equal(polygon.places[k], places[points.indexOf(point)]);
                        assert.equal(polygon.tops[k], layer.top[point]);
                        assert.equal(polygon.bottoms[k], layer.bottom[point]);
                        covered.add(point);
                    });
                }
                for (const point of points) {
                    assert.ok(layer.top[point] === layer.bottom[point] || covered.has(point));
                }
            }
        }
    }
});

test("a polygon closes at its ends, unless it reaches the window's sides", () => {
    const layer = made.steps[made.steps.length - 1].layers.find(({ name }) => name === "Poly");
    assert.ok(layer);
    const polygons = cutLayer(grid, layer, "y", 20);
    assert.equal(polygons.length, 2);
    for (const { tops, bottoms } of polygons) {
        assert.equal(tops[0], bottoms[0]);
        assert.equal(tops[tops.length - 1], bottoms[bottoms.length - 1]);
        assert.ok(tops.some((top, k) => top > bottoms[k]));
    }
});

test("a layer that ends in a point and begins again there makes two polygons", () => {
    const small = { x: grid.x.slice(0, 5), y: grid.y.slice(0, 2), columns: 5, rows: 2, quantum };
    const bottom = new Int32Array(10);
    const top = Int32Array.from([3, 2, 0, 2, 3, 3, 2, 0, 2, 3]);
    const polygons = cutLayer(small, { top, bottom }, "y", 0);
    assert.deepEqual(
        polygons.map(({ tops }) => tops),
        [
            [3, 2, 0],
            [0, 2, 3],
        ],
    );
});
