import { mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { pathToFileURL } from "node:url";
import type { Browser, Page } from "puppeteer-core";
import { makeRun, pageText, type PageFacts } from "./page_file.ts";
import type { MadeProcess } from "./process.ts";

/** A page in a browser, and what it did that it should not have done. */
export interface OpenedPage {
    page: Page;
    /** Errors of scripts and of the console, what the content policy refused, dialogs. */
    faults: string[];
    /** Addresses that were asked for, but for the page itself and its own pictures. */
    requests: string[];
}

/** A folder for pages that is gone when the tests end. */
export function makeFolder(): { path: string; remove: () => void } {
    const path = mkdtempSync(join(tmpdir(), "zelmo-page-"));
    return {
        path,
        remove: () => {
            rmSync(path, { recursive: true, force: true });
        },
    };
}

/** Writes the page of a made-up process and returns its address. */
export function writePage(
    folder: string,
    name: string,
    made: MadeProcess,
    facts: PageFacts,
): string {
    const { run, data } = makeRun(made, facts);
    return writeText(folder, name, pageText(run, data, process.env.ZELMO_PAGE_BUNDLE ?? "."));
}

export function writeText(folder: string, name: string, text: string): string {
    const file = join(folder, name);
    writeFileSync(file, text);
    return pathToFileURL(file).href;
}

/** What a page is opened with. */
export interface Opening {
    width?: number;
    height?: number;
    isMobile?: boolean;
    dark?: boolean;
    hash?: string;
}

export async function openPage(
    browser: Browser,
    url: string,
    opening: Opening = {},
): Promise<OpenedPage> {
    const page = await browser.newPage();
    // A machine that does much else may take its time.
    page.setDefaultTimeout(240_000);
    const faults: string[] = [];
    const requests: string[] = [];
    page.on("pageerror", (error) => faults.push(String(error)));
    page.on("console", (message) => {
        if (message.type() === "error") {
            faults.push(message.text());
        }
    });
    page.on("dialog", (dialog) => {
        faults.push(`dialog: ${dialog.message()}`);
        void dialog.dismiss();
    });
    page.on("request", (request) => {
        if (!request.url().startsWith(url) && !request.url().startsWith("blob:")) {
            requests.push(request.url());
        }
    });
    const { width = 1280, height = 800, isMobile = false, dark = false, hash = "" } = opening;
    await page.setViewport({ width, height, isMobile, hasTouch: isMobile });
    await page.emulateMediaFeatures([
        { name: "prefers-color-scheme", value: dark ? "dark" : "light" },
    ]);
    await page.evaluateOnNewDocument(countFrames);
    await page.goto(url + hash);
    await settle(page);
    return { page, faults, requests };
}

/** Counts what is drawn in 3D, in the page: `window.draws`. */
function countFrames(): void {
    const counted = window as unknown as { draws: number };
    counted.draws = 0;
    // It is called with the context that it belongs to, as before.
    // eslint-disable-next-line @typescript-eslint/unbound-method
    const clear = WebGL2RenderingContext.prototype.clear;
    WebGL2RenderingContext.prototype.clear = function (mask: number): void {
        counted.draws++;
        clear.call(this, mask);
    };
}

/** Waits until nothing more is drawn. */
export async function settle(page: Page): Promise<void> {
    await page.evaluate(
        () =>
            new Promise<void>((resolve) => {
                const counted = window as unknown as { draws: number };
                let last = -1;
                const look = (): void => {
                    if (counted.draws === last) {
                        resolve();
                    } else {
                        last = counted.draws;
                        // A view at rest is drawn once more, and better, after a while.
                        setTimeout(look, 220);
                    }
                };
                requestAnimationFrame(look);
            }),
    );
}

/** Waits until what was asked for with the next frame has been done. */
export async function nextFrame(page: Page): Promise<void> {
    await page.evaluate(
        () =>
            new Promise<void>((resolve) => {
                requestAnimationFrame(() => {
                    requestAnimationFrame(() => {
                        resolve();
                    });
                });
            }),
    );
}

/** The text of an element. */
export function textOf(page: Page, selector: string): Promise<string> {
    return page.$eval(selector, (element) => element.textContent);
}

/** The names of the layers in the panel with their heights, as the page shows them. */
export function shownLayers(
    page: Page,
): Promise<{ name: string; top: string; thickness: string }[]> {
    return page.$$eval(".layers tbody tr", (rows) =>
        rows.map((row) => ({
            name: row.querySelector("bdi")?.textContent ?? "",
            top: row.children[1].textContent,
            thickness: row.children[2].textContent,
        })),
    );
}

/** Sets a slider or a field as a person does. */
export async function setField(page: Page, selector: string, value: number): Promise<void> {
    await page.$eval(
        selector,
        (element, wanted) => {
            const field = element as HTMLInputElement;
            field.value = wanted;
            field.dispatchEvent(new Event("input", { bubbles: true }));
            field.dispatchEvent(new Event("change", { bubbles: true }));
        },
        String(value),
    );
}

/** The colour of a place of the screen at rest, 0 to 255. */
export async function colorAt(page: Page, x: number, y: number): Promise<number[]> {
    return (await colorsAlong(page, x, y, 1))[0];
}

/** The colours of the screen at rest from a place downwards, pixel by pixel. */
export async function colorsAlong(
    page: Page,
    x: number,
    y: number,
    height: number,
): Promise<number[][]> {
    await settle(page);
    const clip = { x: Math.floor(x), y: Math.floor(y), width: 1, height: Math.floor(height) };
    // Without this, the browser changes the size of its window for the picture.
    const shot = await page.screenshot({ encoding: "base64", clip, captureBeyondViewport: false });
    return page.evaluate(async (data) => {
        const bytes = Uint8Array.from(atob(data), (sign) => sign.charCodeAt(0));
        const bitmap = await createImageBitmap(new Blob([bytes], { type: "image/png" }));
        const canvas = document.createElement("canvas");
        canvas.height = bitmap.height;
        const context = canvas.getContext("2d");
        context?.drawImage(bitmap, 0, 0);
        const pixels = context?.getImageData(0, 0, 1, bitmap.height).data ?? [];
        return Array.from({ length: bitmap.height }, (_, k) => [
            pixels[4 * k],
            pixels[4 * k + 1],
            pixels[4 * k + 2],
        ]);
    }, shot);
}
