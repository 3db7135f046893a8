import type { Picture } from "./run.ts";

/** The bytes that stand in the page as base64. Only what is asked for is decoded. */
export class PageBytes {
    private readonly text: string;
    private readonly urls = new Map<number, string>();

    constructor(text: string) {
        this.text = text.trim();
    }

    /** `length` bytes from `offset` on. Throws an Error where the page has fewer. */
    bytes(offset: number, length: number): Uint8Array<ArrayBuffer> {
        const first = Math.floor(offset / 3);
        const end = Math.ceil((offset + length) / 3);
        const decoded = atob(this.text.slice(4 * first, 4 * end));
        const skipped = offset - 3 * first;
        if (decoded.length < skipped + length) {
            throw new Error("The page was cut short: a part of its data is missing.");
        }
        const result = new Uint8Array(length);
        for (let i = 0; i < length; i++) {
            result[i] = decoded.charCodeAt(skipped + i);
        }
        return result;
    }

    /** An address for an image element, the same each time; null where the page lacks the picture. */
    imageUrl({ type, offset, length }: Picture): string | null {
        let url = this.urls.get(offset) ?? null;
        if (url === null) {
            try {
                url = URL.createObjectURL(new Blob([this.bytes(offset, length)], { type }));
                this.urls.set(offset, url);
            } catch {
                return null;
            }
        }
        return url;
    }
}
