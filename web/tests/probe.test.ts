import assert from "node:assert/strict";
import { test } from "node:test";
import { pick, stackAt, type Ray } from "../src/stack/probe.ts";
import { nearest, type Grid, type StackLayer } from "../src/stack/stack.ts";
import { quantum } from "./support/process.ts";
import { randomNumbers } from "./support/random.ts";
import { makeBeam, makeTransistors } from "./support/samples.ts";

const columns = 61;
const rows = 41;
const grid: Grid = {
    x: Float64Array.from({ length: columns }, (_, i) => 0.2 * i),
    y: Float64Array.from({ length: rows }, (_, i) => 0.2 * i),
    columns,
    rows,
    quantum,
};

function layersOf(made: {
    steps: { layers: Omit<StackLayer & { number: number }, "key">[] }[];
}): StackLayer[] {
    const { layers } = made.steps[made.steps.length - 1];
    return layers.map((layer) => ({ ...layer, key: layer.number }));
}

const layers = layersOf(makeTransistors(columns, rows, 2));

test("a ray from straight above meets the highest layer at its height", () => {
    for (let row = 0; row < rows; row++) {
        for (let column = 0; column < columns; column++) {
            // A little beside the point, as all four triangles around it meet there.
            const x = Math.min(Math.max(grid.x[column], 1e-7), grid.x[columns - 1] - 1e-7);
            const y = Math.min(Math.max(grid.y[row], 1e-7), grid.y[rows - 1] - 1e-7);
            const targets = layers.map((layer) => ({ layer, lift: 0 }));
            const hit = pick(grid, targets, null, { origin: [x, y, 100], direction: [0, 0, -1] });
            const [top] = stackAt(grid, layers, column, row);
            assert.ok(hit);
            assert.ok(Math.abs(hit.z - top.top) < 1e-2, `${column} ${row}: ${hit.z} ${top.top}`);
        }
    }
});

/** Whether a ray is in one of the layers at a place along it. */
function isInside(ray: Ray, targets: { layer: StackLayer; lift: number }[], t: number): boolean {
    const [x, y, z] = [0, 1, 2].map((axis) => ray.origin[axis] + t * ray.direction[axis]);
    const column = Math.floor(x / 0.2);
    const row = Math.floor(y / 0.2);
    if (column < 0 || row < 0 || column >= columns - 1 || row >= rows - 1) {
        return false;
    }
    const [u, v] = [x / 0.2 - column, y / 0.2 - row];
    const point = row * columns + column;
    const at = (heights: Int32Array) =>
        quantum *
        (u + v <= 1
            ? heights[point] * (1 - u - v) + heights[point + 1] * u + heights[point + columns] * v
            : heights[point + columns + 1] * (u + v - 1) +
              heights[point + 1] * (1 - v) +
              heights[point + columns] * (1 - u));
    return targets.some(
        ({ layer, lift }) => z - lift < at(layer.top) && z - lift > at(layer.bottom),
    );
}

/** Where a ray first comes into a layer, by small steps: thin ones may be passed. */
function march(ray: Ray, targets: { layer: StackLayer; lift: number }[]): number {
    for (let t = 0; t < 40; t += 0.002) {
        if (isInside(ray, targets, t)) {
            return t;
        }
    }
    return Infinity;
}

test("rays from all sides meet what a slow search meets", () => {
    const next = randomNumbers(5);
    for (const lift of [0, 0.7]) {
        const targets = layers.map((layer, i) => ({ layer, lift: i * lift }));
        for (let i = 0; i < 80; i++) {
            const to = [12 * next(), 8 * next(), 4 * next()];
            const around = 2 * Math.PI * next();
            const from = [
                6 + 15 * Math.cos(around),
                4 + 15 * Math.sin(around),
                20 * (next() - 0.2),
            ];
            const way = to.map((value, axis) => value - from[axis]);
            const length = Math.hypot(...way);
            const [dx, dy, dz] = way.map((value) => value / length);
            const ray: Ray = { origin: [from[0], from[1], from[2]], direction: [dx, dy, dz] };
            const hit = pick(grid, targets, null, ray);
            const expected = march(ray, targets);
            if (hit) {
                const z = hit.z + hit.target.lift;
                const t = Math.hypot(hit.x - from[0], hit.y - from[1], z - from[2]);
                assert.ok(t < expected + 0.003, `${i}: ${t} ${expected}`);
                const behind = [1e-7, 1e-6, 1e-5, 1e-4, 1e-3].map((step) => t + step);
                assert.ok(
                    behind.some((place) => isInside(ray, targets, place)),
                    `${i}: ${t}`,
                );
            } else {
                assert.equal(expected, Infinity);
            }
        }
    }
});

test("a ray through a cut meets the layer that the cut shows", () => {
    const targets = layers.map((layer) => ({ layer, lift: 0 }));
    const cut = { axis: "y", index: 20, keepsLower: false } as const;
    for (let column = 1; column + 1 < columns; column++) {
        for (const { key, top, bottom } of stackAt(grid, layers, column, 20)) {
            const z = 0.5 * (top + bottom);
            const ray: Ray = { origin: [grid.x[column], -5, z], direction: [0, 1, 0] };
            const hit = pick(grid, targets, cut, ray);
            assert.equal(hit?.target.layer.key, key);
            assert.ok(Math.abs(hit.y - grid.y[20]) < 1e-9);
        }
    }
});

test("a ray passes through the gap below a beam", () => {
    const targets = layersOf(makeBeam(columns, rows)).map((layer) => ({ layer, lift: 0 }));
    const ray: Ray = { origin: [9, -5, 1.25], direction: [0, 1, 0] };
    assert.equal(pick(grid, targets, null, ray), null);
    const up: Ray = { origin: [9, 4, 1.2], direction: [0, 0, 1] };
    const hit = pick(grid, targets, null, up);
    assert.equal(hit?.target.layer.name, "Beam");
    assert.ok(Math.abs(hit.z - 1.5) < 1e-9);
});

test("the nearest place is found", () => {
    const places = Float64Array.from([0, 1, 2, 2.5]);
    assert.deepEqual(
        [-3, 0.4, 0.6, 1.9, 2.2, 2.3, 9].map((place) => nearest(places, place)),
        [0, 0, 1, 2, 2, 3, 3],
    );
});
