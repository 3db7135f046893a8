// How long a page takes to open, to change the step and to draw a frame while the stack is turned.
// Run by run.mjs beside this file.
import { pathToFileURL } from "node:url";
import { statSync } from "node:fs";
import type { Page } from "puppeteer-core";
import { startBrowser } from "../tests/support/browser.ts";

const [file] = process.argv.slice(2);
// On a display, Chromium can draw with Mesa's llvmpipe; without one it has a renderer of its own.
const hasDisplay = (process.env.DISPLAY ?? "") !== "";
const options = hasDisplay ? ["--use-gl=angle", "--use-angle=gl", "--ignore-gpu-blocklist"] : [];

function median(times: number[]): number {
    return [...times].sort((a, b) => a - b)[Math.floor(times.length / 2)];
}

function tell(what: string, times: number[]): void {
    const all = times.map((time) => time.toFixed(0)).join(" ");
    console.log(
        `${what}: median ${median(times).toFixed(1)} ms, most ${Math.max(...times).toFixed(1)} ms (${all})`,
    );
}

/** Milliseconds from the start of the navigation until the first picture after loading is there. */
async function open(page: Page): Promise<number> {
    await page.goto(pathToFileURL(file).href, { waitUntil: "load" });
    return page.evaluate(
        () =>
            new Promise<number>((resolve) => {
                requestAnimationFrame(() => {
                    requestAnimationFrame(() => {
                        resolve(performance.now());
                    });
                });
            }),
    );
}

/** Times between the frames while the pointer drags over the view. */
async function turn(page: Page): Promise<number[]> {
    const box = await (await page.$("canvas"))?.boundingBox();
    if (!box) {
        throw new Error("The page shows no 3D.");
    }
    await page.mouse.move(box.x + 0.3 * box.width, box.y + 0.5 * box.height);
    await page.mouse.down();
    const frames = page.evaluate(
        () =>
            new Promise<number[]>((resolve) => {
                const times: number[] = [];
                let last = performance.now();
                const next = (): void => {
                    const now = performance.now();
                    times.push(now - last);
                    last = now;
                    if (times.length < 60) {
                        requestAnimationFrame(next);
                    } else {
                        resolve(times.slice(10));
                    }
                };
                requestAnimationFrame(next);
            }),
    );
    const state = { done: false };
    const times = frames.then((result) => {
        state.done = true;
        return result;
    });
    for (let i = 0; !state.done; i++) {
        await page.mouse.move(
            box.x + (0.3 + 0.002 * (i % 200)) * box.width,
            box.y + 0.5 * box.height,
        );
    }
    await page.mouse.up();
    return times;
}

/** Times from a key to the end of the work that it makes, from the last step to the first. */
function changeSteps(page: Page): Promise<number[]> {
    return page.evaluate(async () => {
        const times: number[] = [];
        const frame = (): Promise<number> =>
            new Promise((resolve) => requestAnimationFrame(resolve));
        const count = document.querySelectorAll(".strip li").length;
        for (let i = 1; i < count; i++) {
            await frame();
            const start = performance.now();
            document.dispatchEvent(new KeyboardEvent("keydown", { key: "ArrowLeft" }));
            times.push(performance.now() - start);
        }
        return times;
    });
}

const browser = await startBrowser(options, hasDisplay);
const page = await browser.newPage();
page.setDefaultTimeout(240_000);
await page.setViewport({ width: 1280, height: 800 });
console.log(`${file}: ${(statSync(file).size / 1e6).toFixed(2)} MB`);
const opened: number[] = [];
for (let i = 0; i < 5; i++) {
    opened.push(await open(page));
}
tell("open", opened);
tell("frame", await turn(page));
tell("step", await changeSteps(page));
const context = "document.createElement('canvas').getContext('webgl2')";
console.log(
    await page.evaluate(`(() => { const gl = ${context}; const info = gl.getExtension("WEBGL_debug_renderer_info");
        return gl.getParameter(info.UNMASKED_RENDERER_WEBGL); })()`),
);
await browser.close();
