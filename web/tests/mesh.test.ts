import assert from "node:assert/strict";
import { test } from "node:test";
import { findFaces, type Solid } from "../src/stack/faces.ts";
import { findWallCorners, meshCut, meshLayer, type Mesh } from "../src/stack/mesh.ts";
import type { Grid } from "../src/stack/stack.ts";
import { makeBeam, makeTransistors } from "./support/samples.ts";
import { quanta, quantum, type MadeProcess } from "./support/process.ts";
import { randomNumbers } from "./support/random.ts";

function gridOf(columns: number, rows: number): Grid {
    const x = Float64Array.from({ length: columns }, (_, i) => 0.5 * i);
    const y = Float64Array.from({ length: rows }, (_, i) => 0.25 * i);
    return { x, y, columns, rows, quantum };
}

/** A layer whose surfaces have steps, slopes and places where they touch. */
function randomSolid(grid: Grid, seed: number): Solid {
    const next = randomNumbers(seed);
    const bottom = new Int32Array(grid.columns * grid.rows);
    const top = bottom.map((_, k) => {
        const column = k % grid.columns;
        bottom[k] = column < 4 ? 100 : 100 + Math.floor(3 * next());
        return bottom[k] + (next() < 0.3 ? 0 : 10 * Math.floor(4 * next()));
    });
    return { top, bottom, opaque: true };
}

/** Edges by their ends: how often they are gone one way less how often the other way. */
function openEdges(mesh: Mesh): number {
    const balance = new Map<string, number>();
    const corner = (i: number) => mesh.positions.slice(3 * i, 3 * i + 3).join(" ");
    for (let i = 0; i < mesh.indices.length; i += 3) {
        for (let side = 0; side < 3; side++) {
            const from = corner(mesh.indices[i + side]);
            const to = corner(mesh.indices[i + ((side + 1) % 3)]);
            const [name, way] = from < to ? [`${from}|${to}`, 1] : [`${to}|${from}`, -1];
            balance.set(name, (balance.get(name) ?? 0) + way);
        }
    }
    return [...balance.values()].filter((count) => count !== 0).length;
}

function volume({ positions: p, indices }: Mesh): number {
    let sum = 0;
    for (let i = 0; i < indices.length; i += 3) {
        const [a, b, c] = [3 * indices[i], 3 * indices[i + 1], 3 * indices[i + 2]];
        sum +=
            p[a] * (p[b + 1] * p[c + 2] - p[b + 2] * p[c + 1]) -
            p[a + 1] * (p[b] * p[c + 2] - p[b + 2] * p[c]) +
            p[a + 2] * (p[b] * p[c + 1] - p[b + 1] * p[c]);
    }
    return sum / 6;
}

/** The volume between two surfaces, by the two triangles of each square. */
function volumeBetween(grid: Grid, { top, bottom }: Solid): number {
    let sum = 0;
    for (let row = 0; row + 1 < grid.rows; row++) {
        for (let column = 0; column + 1 < grid.columns; column++) {
            const point = row * grid.columns + column;
            const area = (grid.x[column + 1] - grid.x[column]) * (grid.y[row + 1] - grid.y[row]);
            const thickness = (k: number) => (top[k] - bottom[k]) * grid.quantum;
            const diagonal = thickness(point + 1) + thickness(point + grid.columns);
            const ends = thickness(point) + thickness(point + grid.columns + 1);
            sum += (area / 6) * (2 * diagonal + ends);
        }
    }
    return sum;
}

function solidsOf(made: MadeProcess, step: number): Solid[] {
    return made.steps[step].layers.map(({ top, bottom, color }) => ({
        top,
        bottom,
        opaque: color[3] === 255,
    }));
}

test("a layer by itself is a closed solid of the right volume", () => {
    for (let seed = 1; seed <= 20; seed++) {
        const grid = gridOf(13, 9);
        const solid = randomSolid(grid, seed);
        const [faces] = findFaces(grid, [solid], false);
        const mesh = meshLayer(grid, solid, faces, findWallCorners(grid, [solid]));
        assert.equal(openEdges(mesh), 0, `seed ${seed}`);
        const expected = volumeBetween(grid, solid);
        assert.ok(Math.abs(volume(mesh) - expected) < 1e-5 * expected, `seed ${seed}`);
    }
});

test("layers that are pulled apart are all closed solids", () => {
    const grid = gridOf(61, 41);
    const solids = solidsOf(makeTransistors(61, 41, 1), 10);
    const faces = findFaces(grid, solids, true);
    const corners = findWallCorners(grid, solids);
    solids.forEach((solid, i) => {
        const mesh = meshLayer(grid, solid, faces[i], corners);
        assert.equal(openEdges(mesh), 0, `layer ${i}`);
        const expected = volumeBetween(grid, solid);
        assert.ok(Math.abs(volume(mesh) - expected) < 1e-4 * expected, `layer ${i}`);
    });
});

test("a level film takes a few triangles a row", () => {
    const grid = gridOf(101, 51);
    const points = grid.columns * grid.rows;
    const solid = {
        bottom: new Int32Array(points),
        top: new Int32Array(points).fill(100),
        opaque: true,
    };
    const [faces] = findFaces(grid, [solid], false);
    const { indices } = meshLayer(grid, solid, faces, findWallCorners(grid, [solid]));
    // Two for each row of both sheets, the same at the sides, and two walls of two.
    assert.equal(indices.length / 3, 4 * 50 + 4 * 50 + 4);
});

test("surfaces between opaque layers are left out, those next to glass or air are not", () => {
    const grid = gridOf(21, 21);
    const count = (drawn: Uint8Array) =>
        drawn.reduce((sum, bits) => sum + (bits & 1) + (bits >> 1), 0);
    const film = (from: number, to: number, opaque: boolean): Solid => ({
        bottom: new Int32Array(441).fill(from),
        top: new Int32Array(441).fill(to),
        opaque,
    });
    const seen = (...solids: Solid[]) =>
        findFaces(grid, solids, false).map(({ top, bottom }) => [count(bottom), count(top)]);
    assert.deepEqual(seen(film(0, 5, true), film(5, 9, true)), [
        [800, 0],
        [0, 800],
    ]);
    assert.deepEqual(seen(film(0, 5, true), film(5, 9, false)), [
        [800, 800],
        [0, 800],
    ]);
    assert.deepEqual(seen(film(0, 5, false), film(5, 9, true)), [
        [800, 0],
        [800, 800],
    ]);
    assert.deepEqual(seen(film(0, 5, false), film(5, 9, false)), [
        [800, 800],
        [0, 800],
    ]);
    assert.deepEqual(seen(film(0, 5, true), film(6, 9, true)), [
        [800, 800],
        [800, 800],
    ]);
    // A film of no thickness between two others separates nothing.
    assert.deepEqual(seen(film(0, 5, true), film(5, 5, true), film(5, 9, true)), [
        [800, 0],
        [0, 0],
        [0, 800],
    ]);
});

test("a beam keeps its underside over the gap", () => {
    const made = makeBeam(41, 31);
    const [, beam] = findFaces(gridOf(41, 31), solidsOf(made, 3), false);
    const released = beam.bottom.reduce((sum, bits) => sum + (bits ? 1 : 0), 0);
    const [, , before] = findFaces(gridOf(41, 31), solidsOf(made, 2), false);
    const held = before.bottom.reduce((sum, bits) => sum + (bits ? 1 : 0), 0);
    assert.equal(held, 0);
    assert.ok(released > 300);
    assert.equal(made.steps[3].layers[1].bottom[15 * 41 + 30], quanta(1500));
});

test("a cut face has the area of the layer in the cut and faces the side that is taken away", () => {
    const grid = gridOf(13, 9);
    for (const axis of ["x", "y"] as const) {
        for (const keepsLower of [true, false]) {
            const solid = randomSolid(grid, 7);
            const { mesh } = meshCut(grid, solid, { axis, index: 4, keepsLower });
            const normal = axis === "x" ? 0 : 1;
            let sum = 0;
            for (let i = 0; i < mesh.indices.length; i += 3) {
                const [a, b, c] = [0, 1, 2].map((k) => {
                    const first = 3 * mesh.indices[i + k];
                    return [...mesh.positions.slice(first, first + 3)];
                });
                const [u, v] = [
                    b.map((value, k) => value - a[k]),
                    c.map((value, k) => value - a[k]),
                ];
                const [m, n] = normal === 0 ? [1, 2] : [2, 0];
                sum += 0.5 * (u[m] * v[n] - u[n] * v[m]);
            }
            const points = axis === "x" ? grid.rows : grid.columns;
            const pitch = axis === "x" ? 0.25 : 0.5;
            let expected = 0;
            for (let k = 0; k + 1 < points; k++) {
                for (const end of [k, k + 1]) {
                    const point = axis === "x" ? end * grid.columns + 4 : 4 * grid.columns + end;
                    expected += 0.5 * pitch * (solid.top[point] - solid.bottom[point]) * quantum;
                }
            }
            assert.ok(
                Math.abs(sum - (keepsLower ? 1 : -1) * expected) < 1e-5,
                `${axis} ${keepsLower}`,
            );
        }
    }
});
