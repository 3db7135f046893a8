import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import type { Browser, Page } from "puppeteer-core";
import { startBrowser } from "./support/browser.ts";
import {
    colorAt,
    makeFolder,
    nextFrame,
    openPage,
    setField,
    settle,
    shownLayers,
    textOf,
    writePage,
    type OpenedPage,
} from "./support/opened_page.ts";
import { quantum, type MadeLayer } from "./support/process.ts";
import { facts, makeTransistors } from "./support/samples.ts";

const columns = 97;
const rows = 65;
const made = makeTransistors(columns, rows, 2);
const last = made.steps.length - 1;
const folder = makeFolder();
let browser: Browser;
let opened: OpenedPage;
let page: Page;
let url = "";

before(async () => {
    browser = await startBrowser();
    url = writePage(folder.path, "sample.html", made, facts);
    opened = await openPage(browser, url);
    ({ page } = opened);
});

after(async () => {
    await browser.close();
    folder.remove();
});

/** Opens the page anew in the same tab. */
async function reload(): Promise<void> {
    await page.goto("about:blank");
    await page.goto(url);
    await settle(page);
}

/** What the layers panel is to show at a point of the grid. */
function expectedLayers(layers: MadeLayer[], column: number, row: number) {
    const text = (value: number) => String(Math.round(value * 10) / 10);
    const point = row * columns + column;
    return [...layers].reverse().map(({ name, top, bottom }) => ({
        name,
        top: top[point] > bottom[point] ? text(1000 * (top[point] * quantum - facts.zero)) : "–",
        thickness:
            top[point] > bottom[point] ? text(1000 * (top[point] - bottom[point]) * quantum) : "–",
    }));
}

/** The middle of the view on the screen. */
async function middleOfView(): Promise<{ x: number; y: number }> {
    const box = await (await page.$("canvas"))?.boundingBox();
    assert.ok(box);
    return { x: box.x + box.width / 2, y: box.y + box.height / 2 };
}

/** How wide the cut is on the screen, in pixels. */
function cutWidth(): Promise<number> {
    return page.$eval(".cut-frame", (frame) => frame.getBoundingClientRect().width);
}

/** Where the names of the axes are: they move when the view does. */
function pose(): Promise<string> {
    return page.$$eval(".overlay .axis", (names) =>
        names.map((name) => name.getAttribute("transform")).join(),
    );
}

test("a page opens with its last step, its texts and a strip of all steps", async () => {
    assert.equal(await textOf(page, "h1"), "sample.txt");
    assert.equal(await page.title(), "sample.txt – SAMPLE");
    assert.equal(await textOf(page, ".count"), `Step ${last + 1} of ${last + 1}`);
    assert.equal((await page.$$(".strip img")).length, last + 1);
    assert.equal((await shownLayers(page)).length, made.steps[last].layers.length);
});

test("the arrow keys, Home and End change the step", async () => {
    await page.keyboard.press("ArrowLeft");
    assert.equal(await textOf(page, ".count"), `Step ${last} of ${last + 1}`);
    await page.keyboard.press("ArrowRight");
    await page.keyboard.press("ArrowRight");
    assert.equal(await textOf(page, ".count"), `Step ${last + 1} of ${last + 1}`);
    await page.keyboard.press("Home");
    assert.equal(await textOf(page, ".count"), `Step 1 of ${last + 1}`);
    assert.equal(
        await textOf(page, ".panel-step"),
        "What the process begins with; no line of the file.",
    );
    await page.keyboard.press("End");
    assert.equal(await textOf(page, ".step-name h2"), `Line2 etch`);
});

test("a step has its line, the meaning of its arguments, its notes and the console's text", async () => {
    await page.click(".strip li:nth-child(5) button");
    assert.equal(await textOf(page, ".line code"), made.steps[4].text);
    const cells = await page.$$eval(".panel-step tbody tr", (all) =>
        all.map((row) => [...row.children].map((cell) => cell.textContent)),
    );
    assert.deepEqual(
        cells,
        made.steps[4].arguments.map(({ name, value, meaning }) => [name, value, meaning]),
    );
    assert.equal(await textOf(page, ".console"), "deposition Poly\nthickness 280 nm");
    await page.keyboard.press("ArrowRight");
    assert.match(
        await textOf(page, ".notes"),
        /stops 12 nm above the field; etch deeper. line 6, etch-stops/,
    );
});

test("the process file is there as a whole, its present line marked, its lines lead to steps", async () => {
    await page.click("[data-value=file]");
    const lines = await page.$$eval(".app .file code", (all) =>
        all.map((line) => line.textContent),
    );
    assert.deepEqual(lines, [
        "settings -version 4",
        ...made.steps.slice(1).map(({ text }) => text),
    ]);
    const present = () =>
        page.$$eval(".file [aria-current] code", (all) => all.map((line) => line.textContent));
    assert.deepEqual(await present(), [made.steps[5].text]);
    await page.click(".app .file li:nth-child(3) button");
    assert.equal(await textOf(page, ".count"), `Step 3 of ${last + 1}`);
    assert.deepEqual(await present(), [made.steps[2].text]);
    await page.click("[data-value=layers]");
});

test("the picture of a step is shown in place of the stack", async () => {
    await page.click("[data-value=picture]");
    const picture = await page.$eval(".picture img", async (image) => {
        await image.decode();
        return { width: image.naturalWidth, alt: image.alt };
    });
    assert.deepEqual(picture, { width: 640, alt: "The stack after step 3, STI" });
    await page.click("[data-value=stack]");
    await settle(page);
});

test("heights at the pin are the data's own, in all steps", async () => {
    const places = [
        [24, 32],
        [0, 0],
        [60, 50],
        [columns - 1, rows - 1],
    ];
    for (const [column, row] of places) {
        await setField(
            page,
            "[aria-label='x of the pin in µm']",
            facts.window.x + (column * 12) / (columns - 1),
        );
        await setField(
            page,
            "[aria-label='y of the pin in µm']",
            facts.window.y + (row * 8) / (rows - 1),
        );
        for (const step of [last, 7, 3, 0]) {
            await page.click(`.strip li:nth-child(${step + 1}) button`);
            assert.deepEqual(
                await shownLayers(page),
                expectedLayers(made.steps[step].layers, column, row),
            );
        }
    }
    await page.keyboard.press("Escape");
});

test("heights under the pointer are the data's own", async () => {
    await reload();
    await page.click("xpath///button[text()='Top']");
    await settle(page);
    const middle = await middleOfView();
    for (const [dx, dy] of [
        [0, 0],
        [-120, 40],
        [90, -70],
    ]) {
        await page.mouse.move(middle.x + dx, middle.y + dy);
        await page.waitForFunction(() =>
            (document.querySelector(".place")?.textContent ?? "").startsWith("At x"),
        );
        await settle(page);
        const numbers = /^At x (-?[\d.]+), y (-?[\d.]+)/.exec(await textOf(page, ".place"));
        assert.ok(numbers);
        const column = Math.round(((Number(numbers[1]) - facts.window.x) * (columns - 1)) / 12);
        const row = Math.round(((Number(numbers[2]) - facts.window.y) * (rows - 1)) / 8);
        assert.deepEqual(
            await shownLayers(page),
            expectedLayers(made.steps[last].layers, column, row),
        );
        assert.ok(dx === 0 || Math.sign(column - (columns - 1) / 2) === Math.sign(dx));
        assert.ok(dy === 0 || Math.sign(row - (rows - 1) / 2) === -Math.sign(dy));
    }
});

test("mouse, wheel and keys move the view; steps leave it where it is", async () => {
    await reload();
    const middle = await middleOfView();
    const poses = [await pose()];
    const moves = [
        () => page.mouse.wheel({ deltaY: -240 }),
        async () => {
            await page.mouse.down();
            await page.mouse.move(middle.x + 80, middle.y - 30, { steps: 4 });
            await page.mouse.up();
        },
        async () => {
            await page.mouse.down({ button: "right" });
            await page.mouse.move(middle.x + 20, middle.y + 30, { steps: 4 });
            await page.mouse.up({ button: "right" });
        },
        () => page.focus("canvas").then(() => page.keyboard.press("ArrowUp")),
        () => page.keyboard.press("+"),
        () => page.keyboard.press("a"),
        () => page.keyboard.press("2"),
        () => page.click("[aria-label='Turn left']"),
    ];
    await page.mouse.move(middle.x, middle.y);
    for (const move of moves) {
        await move();
        await settle(page);
        const next = await pose();
        assert.ok(!poses.includes(next), `move ${poses.length}`);
        poses.push(next);
    }
    await page.keyboard.press("ArrowLeft");
    await page.keyboard.press("Home");
    await settle(page);
    assert.equal(await pose(), poses[poses.length - 1]);
    await page.keyboard.press("End");
    await page.focus("canvas");
    await page.keyboard.press("2");
    await settle(page);
    const front = await pose();
    await page.keyboard.press("+");
    await page.keyboard.press("0");
    await settle(page);
    assert.equal(await pose(), front);
    await page.keyboard.press("Home");
});

test("nothing is drawn while nothing changes", async () => {
    const draws = () => page.evaluate(() => (window as unknown as { draws: number }).draws);
    await settle(page);
    const first = await draws();
    await new Promise((resolve) => setTimeout(resolve, 600));
    assert.equal(await draws(), first);
    await page.keyboard.press("ArrowRight");
    await settle(page);
    assert.ok((await draws()) > first);
});

test("layers are switched off, to glass and on again", async () => {
    await reload();
    await page.click("xpath///button[text()='Top']");
    const middle = await middleOfView();
    await page.click(".strip li:nth-child(5) button");
    const poly = await colorAt(page, middle.x, middle.y);
    assert.ok(poly[0] > 2 * poly[1], `poly is red: ${poly.join()}`);
    await page.click("[aria-label='Poly as glass']");
    const glass = await colorAt(page, middle.x, middle.y);
    await page.click("[aria-label='Show Poly']");
    const none = await colorAt(page, middle.x, middle.y);
    assert.ok(none[2] > none[0], `what is below is blue: ${none.join()}`);
    assert.ok(glass[0] > none[0] && glass[0] < poly[0], `glass: ${glass.join()}`);
    assert.equal(await page.$eval("tr[data-mode=hidden] bdi", (name) => name.textContent), "Poly");
    await page.keyboard.press("ArrowRight");
    await page.keyboard.press("ArrowLeft");
    assert.deepEqual(
        await colorAt(page, middle.x, middle.y),
        none,
        "a layer stays off in other steps",
    );
    await page.click("xpath///button[text()='Show all']");
    assert.deepEqual(await colorAt(page, middle.x, middle.y), poly);
});

test("a cut shows closed faces in the layers' colours, where the data have them", async () => {
    await reload();
    await page.click("[data-value=y]");
    const row = 28;
    await setField(page, ".cut-place", row);
    assert.equal(
        await textOf(page, ".cut-details output"),
        `${(2 + (row * 8) / (rows - 1)).toFixed(3)} µm`,
    );
    await page.click("xpath///button[text()='Front']");
    await settle(page);
    const width = await cutWidth();
    await page.click("[aria-label=Nearer]");
    await page.click("[aria-label=Nearer]");
    await settle(page);
    assert.ok((await cutWidth()) > 1.4 * width);
    const box = await (await page.$("canvas"))?.boundingBox();
    assert.ok(box);
    const seen = new Set<string>();
    for (let k = 0; k < 90 && seen.size < 4; k++) {
        const x = Math.floor(box.x + (0.02 + 0.0106 * k) * box.width);
        const across = ((7 * k) % 24) / 12 - 1;
        const y = Math.floor(box.y + 0.5 * box.height + 0.28 * box.width * across);
        await page.mouse.move(x, y);
        await nextFrame(page);
        const words = /^x (-?[\d.]+) {2}y (-?[\d.]+) µm {2}(\S+) at (-?[\d.]+) nm$/.exec(
            await textOf(page, ".where"),
        );
        if (!words || Math.abs(Number(words[2]) - (2 + (row * 8) / (rows - 1))) > 0.001) {
            continue;
        }
        const column = Math.round(((Number(words[1]) + 1) * (columns - 1)) / 12);
        const point = row * columns + column;
        const height = (Number(words[4]) / 1000 + facts.zero) / quantum;
        const layer = made.steps[last].layers.find(({ name }) => name === words[3]);
        assert.ok(layer);
        // Between two points of the grid, the taller of them tells.
        const tops = [point - 1, point, point + 1].map((other) => layer.top[other]);
        const bottoms = [point - 1, point, point + 1].map((other) => layer.bottom[other]);
        assert.ok(height <= Math.max(...tops) + 1 && height >= Math.min(...bottoms) - 1, words[0]);
        const isInside =
            layer.color[3] === 255 &&
            height < Math.min(...tops) - 60 &&
            height > Math.max(...bottoms) + 60;
        if (isInside && !seen.has(layer.name)) {
            // The light on a side that faces the front, as in the pictures.
            const shade = 0.355 + 0.43 * 0.5 + 0.27 / Math.hypot(1, 0.9);
            const dark = (1 - Math.max(...layer.color.slice(0, 3)) / 255) ** 3 * 0.27 * 255;
            const expected = layer.color.slice(0, 3).map((value) => (value + dark * shade) * shade);
            const color = await colorAt(page, x, y);
            if ((await textOf(page, ".where")) !== words.input) {
                // A busy machine tells late what is under the pointer.
                continue;
            }
            assert.ok(
                color.every((value, i) => Math.abs(value - expected[i]) < 4),
                `${words[0]}: ${color.join()} for ${expected.join()}`,
            );
            seen.add(layer.name);
        }
    }
    assert.ok(seen.size >= 3, [...seen].join());
});

test("the cut is dragged, moved by keys, turned to the other axis and side, and taken away", async () => {
    await reload();
    await page.focus("canvas");
    await page.keyboard.press("x");
    const place = () =>
        page.$eval(".cut-place", (slider) => Number((slider as HTMLInputElement).value));
    const first = await place();
    await page.keyboard.press(".");
    assert.equal(await place(), first + 1);
    await settle(page);
    const handle = await (await page.$(".cut-handle"))?.boundingBox();
    assert.ok(handle);
    await page.mouse.move(handle.x + handle.width / 2, handle.y + handle.height / 2);
    await page.mouse.down();
    await page.mouse.move(handle.x + 90, handle.y + 10, { steps: 5 });
    await page.mouse.up();
    assert.ok(Math.abs((await place()) - first) > 4);
    await settle(page);
    const before = await page.screenshot({ encoding: "base64" });
    await page.click("[aria-label='Take the other side away']");
    await page.mouse.move(5, 5);
    await settle(page);
    assert.notEqual(await page.screenshot({ encoding: "base64" }), before);
    await page.focus("canvas");
    await page.keyboard.press("y");
    assert.equal(
        await page.$eval(".cut-place", (slider) => (slider as HTMLInputElement).max),
        String(rows - 1),
    );
    await page.keyboard.press("y");
    assert.equal(
        await page.$eval(".cut-details", (details) => (details as HTMLElement).hidden),
        true,
    );
});

test("layers are pulled apart and heights stretched", async () => {
    await reload();
    const middle = await middleOfView();
    const whole = await page.screenshot({ encoding: "base64" });
    await setField(page, "[aria-label='The layers pulled apart']", 70);
    await settle(page);
    const apart = await page.screenshot({ encoding: "base64" });
    assert.notEqual(apart, whole);
    await page.mouse.move(middle.x, middle.y);
    await page.waitForFunction(() => document.querySelector(".where")?.textContent.includes("nm"));
    await setField(page, "[aria-label='The layers pulled apart']", 0);
    await setField(page, "[aria-label='How much heights are stretched']", 4);
    assert.match(await textOf(page, ".lower"), /× 2\.0/);
    await page.mouse.move(5, 5);
    await settle(page);
    assert.notEqual(await page.screenshot({ encoding: "base64" }), whole);
});

test("a distance is measured with the keyboard alone, and with the mouse", async () => {
    await reload();
    const put = async (x: number, y: number) => {
        for (const [axis, value] of Object.entries({ x, y })) {
            await page.focus(`[aria-label='${axis} of the pin in µm']`);
            await page.keyboard.down("Control");
            await page.keyboard.press("a");
            await page.keyboard.up("Control");
            await page.keyboard.type(`${value}\n`);
        }
    };
    await page.keyboard.press("Home");
    await put(0, 3);
    await page.focus("xpath///button[text()='Distance']");
    await page.keyboard.press("Enter");
    await put(3, 7);
    assert.match(
        await textOf(page, ".distance-parts"),
        /^Distance 5000 nm: Δx 3000 {2}Δy 4000 {2}Δz 0 nm$/,
    );
    await page.keyboard.press("Escape");
    assert.equal(await textOf(page, ".distance-parts"), "");
    const middle = await middleOfView();
    await page.click("xpath///button[text()='Distance']");
    await page.mouse.click(middle.x - 60, middle.y);
    await page.mouse.click(middle.x + 60, middle.y);
    assert.match(await textOf(page, ".distance-parts"), /^Distance [\d.]+ nm: Δx [\d.]+/);
    assert.match(await textOf(page, ".distance-text"), /^[\d.]+ nm$/);
});

test("the keyboard reaches everything", async () => {
    await reload();
    await page.evaluate(() => {
        document.body.focus();
        document.querySelectorAll("[data-mark]").forEach((made) => {
            made.removeAttribute("data-mark");
        });
    });
    let reached = 0;
    for (let i = 0; i < 200; i++) {
        await page.keyboard.press("Tab");
        const isNew = await page.evaluate(() => {
            const present = document.activeElement as HTMLElement;
            const known = present === document.body || present.dataset.mark === "yes";
            present.dataset.mark = "yes";
            return !known;
        });
        if (!isNew) {
            break;
        }
        reached++;
    }
    assert.ok(reached > 30, `${reached}`);
    const missed = await page.$$eval(".app button, .app input, .app canvas, .app a", (all) =>
        all
            .filter((made) => made.getClientRects().length > 0 && !made.closest(".strip"))
            .filter((made) => !(made as HTMLButtonElement).disabled)
            .filter((made) => (made as HTMLElement).dataset.mark !== "yes")
            .map((made) => made.getAttribute("aria-label") ?? made.textContent),
    );
    assert.deepEqual(missed, []);
    const present = await page.$$eval(".strip button[data-mark]", (all) => all.length);
    assert.equal(present, 1, "the strip is one stop; arrow keys go on from there");
});

test("all that one can use has a name, and a change of the step is announced", async () => {
    const nameless = await page.$$eval("button, input, canvas, nav, section, aside, img", (all) =>
        all
            .filter((made) => made.getClientRects().length > 0)
            .filter((made) => {
                const label = made.getAttribute("aria-label") ?? made.getAttribute("alt");
                return label === null && made.textContent.trim() === "";
            })
            .map((made) => `${made.tagName}.${made.className}`),
    );
    assert.deepEqual(nameless, []);
    await page.keyboard.press("Home");
    assert.equal(
        await textOf(page, ".app > [aria-live=polite]"),
        `Step 1 of ${last + 1}: substrate Silicon`,
    );
    assert.equal(await page.$eval("html", (root) => root.lang), "en");
});

test("help opens, lists the keys and closes with Escape", async () => {
    await page.click("[aria-label=Help]");
    assert.match(await textOf(page, ".help"), /step before, step after/);
    assert.equal(await page.$eval(".help", (help) => help === document.activeElement), true);
    await page.keyboard.press("Escape");
    assert.equal(await page.$eval(".help", (help) => (help as HTMLElement).hidden), true);
});

test("paper gets all steps with their pictures, and nothing of the screen", async () => {
    await page.emulateMediaType("print");
    await page.evaluate(() => window.dispatchEvent(new Event("beforeprint")));
    const printed = await page.$eval(".print-document", async (document) => {
        const images = [...document.querySelectorAll("img")];
        await Promise.all(images.map((image) => image.decode()));
        return {
            display: getComputedStyle(document).display,
            images: images.length,
            headings: [...document.querySelectorAll("h2")].map((heading) => heading.textContent),
        };
    });
    assert.equal(printed.display, "block");
    assert.equal(printed.images, last + 1);
    assert.equal(printed.headings.length, last + 2);
    assert.equal(printed.headings[5], "Step 6: Gate etch");
    assert.equal(await page.$eval(".app", (app) => getComputedStyle(app).display), "none");
    const pdf = Buffer.from(await page.pdf({ format: "A4" })).toString("latin1");
    const pages = pdf.match(/\/Type \/Page\b/g)?.length ?? 0;
    assert.ok(pages >= 3 && pages <= last, `${pages} pages`);
    await page.emulateMediaType("screen");
});

test("all of that asked for nothing and reported no error", () => {
    assert.deepEqual(opened.requests, []);
    assert.deepEqual(opened.faults, []);
});
