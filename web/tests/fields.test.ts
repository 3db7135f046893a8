import assert from "node:assert/strict";
import { test } from "node:test";
import { Fields } from "../src/data/fields.ts";
import { PageBytes } from "../src/data/page_bytes.ts";
import { readRun } from "../src/data/run.ts";
import { makeRun } from "./support/page_file.ts";
import { facts, makeTransistors } from "./support/samples.ts";

const made = makeTransistors(31, 23, 1);

test("all heights come out of a page as they went in, whatever is asked for first", () => {
    const { run, data } = makeRun(made, facts);
    for (const order of [made.steps.map((_, i) => i), made.steps.map((_, i) => i).reverse()]) {
        const fields = new Fields(run, new PageBytes(data));
        for (const step of order) {
            made.steps[step].layers.forEach((layer, i) => {
                const sent = run.steps[step].layers[i];
                assert.deepEqual(fields.heights(sent.top), layer.top);
                assert.deepEqual(fields.heights(sent.bottom), layer.bottom);
            });
        }
    }
});

test("surfaces that layers and steps share are sent once", () => {
    const { run } = makeRun(made, facts);
    const sent = run.chunks.reduce((sum, { fields }) => sum + fields.length, 0);
    const different = new Set(
        made.steps.flatMap(({ layers }) => layers.flatMap(({ top, bottom }) => [top, bottom])),
    );
    assert.equal(sent, different.size);
});

test("bytes are decoded from any place on", () => {
    const all = Uint8Array.from({ length: 50 }, (_, i) => (i * 37) & 255);
    const bytes = new PageBytes(` ${Buffer.from(all).toString("base64")}\n`);
    for (let offset = 0; offset < 12; offset++) {
        for (let length = 0; offset + length <= 50; length += 7) {
            assert.deepEqual(bytes.bytes(offset, length), all.slice(offset, offset + length));
        }
    }
});

test("a page that was cut short is refused with a reason", () => {
    const { run, data } = makeRun(made, { ...facts, pictures: false });
    const fields = new Fields(run, new PageBytes(data.slice(0, data.length / 2)));
    const last = run.steps[run.steps.length - 1].layers;
    assert.throws(() => fields.heights(last[last.length - 1].top), /cut short/);
    assert.throws(() => fields.heights(100_000), /no height field/);
});

test("data of another format are refused", () => {
    assert.throws(() => readRun('{"format": 2}'), /format 2, not 1/);
    assert.throws(() => readRun('{"format": 1}'), /not complete/);
});
