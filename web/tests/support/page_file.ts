import { createHash } from "node:crypto";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { deflateSync } from "node:zlib";
import type { Chunk, Picture, Run, Step } from "../../src/data/run.ts";
import { quantum, type MadeProcess } from "./process.ts";
import { makePng } from "./png.ts";

/** What a page is made of beside its process. */
export interface PageFacts {
    title: string;
    layout: string;
    cell: string;
    window: Run["window"];
    /** Micrometres. */
    zero: number;
    /** Whether steps have pictures. */
    pictures: boolean;
}

/** Bytes one after the other, as the page has them. */
class Blob {
    private readonly parts: Uint8Array[] = [];
    private length = 0;

    add(bytes: Uint8Array): { offset: number; length: number } {
        const place = { offset: this.length, length: bytes.length };
        this.parts.push(bytes);
        this.length += bytes.length;
        return place;
    }

    toBase64(): string {
        return Buffer.concat(this.parts).toString("base64");
    }
}

/** Numbers the height fields of all steps, each array once. */
class FieldWriter {
    readonly chunks: Chunk[] = [];
    private readonly known = new Map<Int32Array, number>();
    private readonly blob: Blob;
    private readonly columns: number;

    constructor(blob: Blob, columns: number) {
        this.blob = blob;
        this.columns = columns;
    }

    /** Writes what of these fields is new; each of them is the difference to the one before it. */
    write(fields: Int32Array[]): number {
        const fresh = [...new Set(fields)].filter((field) => !this.known.has(field));
        if (fresh.length === 0) {
            return -1;
        }
        const parts = fresh.map((field, i) => {
            this.known.set(field, this.known.size);
            return planes(
                i > 0
                    ? field.map((height, k) => height - fresh[i - 1][k])
                    : differences(field, this.columns),
            );
        });
        const first = this.known.size - fresh.length;
        this.chunks.push({
            ...this.blob.add(deflateSync(Buffer.concat(parts))),
            fields: fresh.map((_, i) => ({ base: i > 0 ? first + i - 1 : -1 })),
        });
        return this.chunks.length - 1;
    }

    index(field: Int32Array): number {
        return this.known.get(field) ?? -1;
    }
}

function differences(heights: Int32Array, columns: number): Int32Array {
    return heights.map((height, k) =>
        k === 0 ? height : height - heights[k % columns === 0 ? k - columns : k - 1],
    );
}

/** Zigzag coded numbers, all lowest bytes first, then the next. */
function planes(numbers: Int32Array): Uint8Array {
    const bytes = new Uint8Array(4 * numbers.length);
    numbers.forEach((number, k) => {
        const code = (number << 1) ^ (number >> 31);
        for (let plane = 0; plane < 4; plane++) {
            bytes[plane * numbers.length + k] = (code >>> (8 * plane)) & 255;
        }
    });
    return bytes;
}

function places(count: number, length: number): number[] {
    return Array.from({ length: count }, (_, i) => Number(((i * length) / (count - 1)).toFixed(6)));
}

/** The run of a made-up process as a page holds it. */
export function makeRun(process: MadeProcess, facts: PageFacts): { run: Run; data: string } {
    const blob = new Blob();
    const fields = new FieldWriter(blob, process.columns);
    const picture = (step: number, width: number, height: number): Picture | null =>
        facts.pictures
            ? { type: "image/png", width, height, ...blob.add(makePng(width, height, step)) }
            : null;
    const steps = process.steps.map((made, index): Step => {
        const chunk = fields.write(made.layers.flatMap(({ bottom, top }) => [bottom, top]));
        return {
            ...made,
            number: index + 1,
            line: index === 0 ? 0 : index + 1,
            seconds: 0.1,
            picture: picture(index, 640, 400),
            thumbnail: picture(index, 160, 100),
            layers: made.layers.map(({ top, bottom, ...layer }) => ({
                ...layer,
                top: fields.index(top),
                bottom: fields.index(bottom),
            })),
            chunk,
        } as Step;
    });
    const run: Run = {
        format: 1,
        program: "zelmo-batch 0.0.0",
        title: facts.title,
        layout: facts.layout,
        cell: facts.cell,
        window: facts.window,
        grid: {
            x: places(process.columns, facts.window.dx),
            y: places(process.rows, facts.window.dy),
        },
        processFile: ["settings -version 4", ...process.steps.slice(1).map(({ text }) => text)],
        notes: [],
        stepCount: steps.length,
        steps,
        chunks: fields.chunks,
        quantum,
        zero: facts.zero,
    };
    return { run, data: blob.toBase64() };
}

/** JSON that nothing ends before its end. */
function scriptText(value: unknown): string {
    return JSON.stringify(value).replace(
        /[<>&\u2028\u2029]/g,
        (sign) => `\\u${sign.charCodeAt(0).toString(16).padStart(4, "0")}`,
    );
}

function hash(text: string): string {
    return `'sha256-${createHash("sha256").update(text).digest("base64")}'`;
}

/** The page as a file, with the bundle from a folder. */
export function pageText(run: Run, data: string, bundle: string): string {
    const script = readFileSync(join(bundle, "page.js"), "utf8");
    const style = readFileSync(join(bundle, "page.css"), "utf8");
    const policy = `default-src 'none'; script-src ${hash(script)}; style-src ${hash(style)}; img-src data: blob:`;
    return `<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="${policy}">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>page</title>
<style>${style}</style>
</head>
<body>
<noscript>This page needs JavaScript.</noscript>
<script type="application/json" id="run">${scriptText(run)}</script>
<script type="text/plain" id="data">${data}</script>
<script>${script}</script>
</body>
</html>
`;
}
