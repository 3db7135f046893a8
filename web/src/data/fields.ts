import { unzlibSync } from "fflate";
import type { PageBytes } from "./page_bytes.ts";
import type { Chunk, Run } from "./run.ts";

/** Heights in multiples of the run's quantum, row by row from the window's lower edge. */
export type Heights = Int32Array;

/** Memory for decoded fields, in bytes. Beyond it, those that were not used for longest go. */
const cacheLimit = 256 * 1024 * 1024;

/** The height fields of a run, decoded when they are first asked for. */
export class Fields {
    private readonly firstOf: number[] = [];
    private readonly chunkOf: number[] = [];
    private readonly cache = new Map<number, Heights>();
    private readonly bytes: PageBytes;
    private readonly run: Run;
    private readonly columns: number;
    private readonly points: number;
    private readonly kept: number;

    constructor(run: Run, bytes: PageBytes) {
        this.run = run;
        this.bytes = bytes;
        this.columns = run.grid.x.length;
        this.points = this.columns * run.grid.y.length;
        this.kept = Math.max(64, Math.floor(cacheLimit / (4 * this.points)));
        run.chunks.forEach((chunk, index) => {
            this.firstOf.push(this.chunkOf.length);
            this.chunkOf.push(...chunk.fields.map(() => index));
        });
    }

    /** The heights of a field. Throws an Error where the page's data do not hold them. */
    heights(field: number): Heights {
        let found = this.cache.get(field);
        if (found) {
            this.cache.delete(field);
        } else {
            found = this.decode(field);
        }
        this.cache.set(field, found);
        return found;
    }

    private decode(field: number): Heights {
        const index = this.chunkOf[field];
        const chunk = this.run.chunks[index] as Chunk | undefined;
        if (!chunk) {
            throw new Error(`The page has no height field ${field}.`);
        }
        const planes = unzlibSync(this.bytes.bytes(chunk.offset, chunk.length));
        if (planes.length !== 4 * this.points * chunk.fields.length) {
            throw new Error("A part of the page's heights has the wrong length.");
        }
        // The others of the chunk are likely to be asked for next.
        const first = this.firstOf[index];
        const decoded = chunk.fields.map((_, i) => {
            const heights = this.decodePlanes(planes, chunk, i, first);
            this.keep(first + i, heights);
            return heights;
        });
        return decoded[field - first];
    }

    private decodePlanes(planes: Uint8Array, chunk: Chunk, i: number, first: number): Heights {
        const { base } = chunk.fields[i];
        const start = 4 * this.points * i;
        const result = joinPlanes(planes.subarray(start, start + 4 * this.points), this.points);
        if (base < 0) {
            sumUp(result, this.columns);
        } else if (base < first + i) {
            const other = this.heights(base);
            for (let k = 0; k < this.points; k++) {
                result[k] += other[k];
            }
        } else {
            throw new Error("A height field of the page is the difference to a later one.");
        }
        return result;
    }

    private keep(field: number, heights: Heights): void {
        this.cache.set(field, heights);
        for (const oldest of this.cache.keys()) {
            if (this.cache.size <= this.kept) {
                break;
            }
            this.cache.delete(oldest);
        }
    }
}

/** The numbers of which all lowest bytes come first, then the next, and so on; without zigzag. */
function joinPlanes(planes: Uint8Array, count: number): Int32Array {
    const result = new Int32Array(count);
    for (let k = 0; k < count; k++) {
        const code =
            planes[k] |
            (planes[count + k] << 8) |
            (planes[2 * count + k] << 16) |
            (planes[3 * count + k] << 24);
        result[k] = (code >>> 1) ^ -(code & 1);
    }
    return result;
}

/** From the differences to the left neighbour, in the first column to the one below, to heights. */
function sumUp(numbers: Int32Array, columns: number): void {
    for (let k = 1; k < numbers.length; k++) {
        numbers[k] += numbers[k % columns === 0 ? k - columns : k - 1];
    }
}
