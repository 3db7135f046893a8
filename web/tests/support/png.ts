import { deflateSync } from "node:zlib";

/** A picture file with a gradient and one bar the more the higher the number. */
export function makePng(width: number, height: number, number: number): Uint8Array {
    const rows = Buffer.alloc(height * (1 + 3 * width));
    for (let y = 0; y < height; y++) {
        for (let x = 0; x < width; x++) {
            const bar = Math.floor((x * 40) / width) < number && y > 0.8 * height;
            const at = y * (1 + 3 * width) + 1 + 3 * x;
            rows[at] = bar ? 200 : 235 - Math.floor((60 * y) / height);
            rows[at + 1] = bar ? 90 : 238 - Math.floor((30 * y) / height);
            rows[at + 2] = bar ? 70 : 245;
        }
    }
    const header = Buffer.alloc(13);
    header.writeUInt32BE(width, 0);
    header.writeUInt32BE(height, 4);
    header.set([8, 2, 0, 0, 0], 8);
    const signature = Buffer.from([137, 80, 78, 71, 13, 10, 26, 10]);
    return Buffer.concat([
        signature,
        chunk("IHDR", header),
        chunk("IDAT", deflateSync(rows)),
        chunk("IEND", Buffer.alloc(0)),
    ]);
}

function chunk(type: string, data: Buffer): Buffer {
    const body = Buffer.concat([Buffer.from(type, "latin1"), data]);
    const result = Buffer.alloc(body.length + 8);
    result.writeUInt32BE(data.length, 0);
    body.copy(result, 4);
    result.writeUInt32BE(checksum(body), body.length + 4);
    return result;
}

function checksum(bytes: Buffer): number {
    let sum = 0xffffffff;
    for (const byte of bytes) {
        sum ^= byte;
        for (let bit = 0; bit < 8; bit++) {
            sum = (sum >>> 1) ^ (sum & 1 ? 0xedb88320 : 0);
        }
    }
    return (sum ^ 0xffffffff) >>> 0;
}
