import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import type { Browser } from "puppeteer-core";
import { startBrowser } from "./support/browser.ts";
import {
    colorAt,
    colorsAlong,
    makeFolder,
    openPage,
    settle,
    shownLayers,
    textOf,
    writePage,
    writeText,
} from "./support/opened_page.ts";
import { makeRun, pageText } from "./support/page_file.ts";
import { MadeProcess } from "./support/process.ts";
import { facts, makeBeam, makeTransistors } from "./support/samples.ts";

const folder = makeFolder();
let browser: Browser;

before(async () => {
    browser = await startBrowser();
});

after(async () => {
    await browser.close();
    folder.remove();
});

const hostile = [
    "<img src=x onerror=alert(1)>",
    "</script><script>alert(2)</script>",
    "\"quoted\" 'names' & `more`",
    "<!-- <script>",
    "\u202egnorw\u2066\u2028",
    "javascript:alert(3)",
    "__proto__",
    "${alert(4)} {{alert(5)}}",
];

/** A process all of whose texts are hostile. */
function makeHostile(): MadeProcess {
    const made = new MadeProcess(9, 7);
    hostile.forEach((text, i) => {
        made.film(text, text, [200, 30 * i, 100, 255], 100);
        made.record({
            name: text,
            kind: i === 0 ? "substrate" : text,
            text,
            arguments: [{ name: text, value: text, meaning: text }],
            notes: [{ kind: text, text, line: 1 }],
            console: [text],
        });
    });
    return made;
}

test("texts of layouts and process files are shown as they are and never run", async () => {
    const [title, layout] = [hostile[1], hostile[0]];
    const url = writePage(folder.path, "hostile.html", makeHostile(), {
        ...facts,
        title,
        layout,
        cell: hostile[4],
    });
    const { page, faults, requests } = await openPage(browser, url);
    assert.equal(await textOf(page, "h1"), title);
    await page.click("[data-value=file]");
    for (let i = hostile.length - 1; i > 0; i--) {
        const text = hostile[i];
        assert.equal(await textOf(page, ".step-name h2 bdi"), text);
        assert.equal(await textOf(page, ".line code"), text);
        assert.equal(await textOf(page, ".console"), text);
        assert.equal((await shownLayers(page))[0].name, text);
        assert.ok((await textOf(page, ".notes li bdi")) === text);
        const label = await page.$eval(".layers .toggle", (made) =>
            made.getAttribute("aria-label"),
        );
        assert.equal(label, `Show ${text}`);
        assert.equal(await textOf(page, ".file [aria-current] bdi"), text);
        await page.keyboard.press("ArrowLeft");
    }
    await page.evaluate(() => window.dispatchEvent(new Event("beforeprint")));
    assert.equal(await textOf(page, ".print-document h1"), title);
    const foreign = await page.$$eval("script, img:not([src^='blob:']), iframe, a, object", (all) =>
        all.map((made) => made.id || made.tagName),
    );
    assert.deepEqual(foreign, ["run", "data", "SCRIPT"]);
    assert.deepEqual(faults, []);
    assert.deepEqual(requests, []);
    await page.close();
});

test("marks for another direction of writing end with the text that has them", async () => {
    const url = writePage(folder.path, "marks.html", makeHostile(), facts);
    const { page } = await openPage(browser, url, { hash: "#step=5" });
    const bare = await page.evaluate((mark) => {
        const walker = document.createTreeWalker(
            document.querySelector(".app") ?? document,
            NodeFilter.SHOW_TEXT,
        );
        const found: string[] = [];
        while (walker.nextNode()) {
            const node = walker.currentNode;
            const isIsolated = node.parentElement?.closest("bdi") !== null;
            const isHeard = node.parentElement?.closest("[aria-live]") !== null;
            if ((node.textContent ?? "").includes(mark) && !isIsolated && !isHeard) {
                found.push(node.parentElement.className);
            }
        }
        return found;
    }, "\u202e");
    assert.deepEqual(bare, []);
    await page.close();
});

test("the content policy keeps foreign scripts from running", async () => {
    const { run, data } = makeRun(makeBeam(9, 7), facts);
    const text = pageText(run, data, process.env.ZELMO_PAGE_BUNDLE ?? ".");
    const spoilt = text.replace("<noscript>", "<script>document.title = 'run'</script><noscript>");
    const { page, faults } = await openPage(browser, writeText(folder.path, "policy.html", spoilt));
    assert.equal(await page.title(), "sample.txt – SAMPLE");
    assert.ok(
        faults.some((fault) => /content security policy/i.test(fault)),
        faults.join(),
    );
    await page.close();
});

test("a beam shows its gap from the front", async () => {
    const url = writePage(folder.path, "beam.html", makeBeam(41, 31), facts);
    const { page, faults } = await openPage(browser, url);
    await page.click("xpath///button[text()='Front']");
    const box = await (await page.$("canvas"))?.boundingBox();
    assert.ok(box);
    // Downwards through beam, gap and wafer, right of the middle.
    const seen: string[] = [];
    const x = box.x + 0.6 * box.width;
    for (const [red, green, blue] of await colorsAlong(page, x, box.y, box.height)) {
        const isWafer = red - green < 45 && red - blue > 30;
        seen.push(red > 1.6 * green ? "beam" : isWafer ? "wafer" : "air");
    }
    assert.deepEqual(
        seen.filter((what, i) => what !== seen[i - 1]),
        ["air", "beam", "air", "wafer", "air"],
    );
    assert.deepEqual(faults, []);
    await page.close();
});

test("light and dark follow the system and can be changed", async () => {
    const url = writePage(folder.path, "dark.html", makeBeam(21, 15), facts);
    for (const dark of [false, true]) {
        const { page, faults } = await openPage(browser, url, { dark });
        const brightness = async () => {
            const box = await (await page.$("canvas"))?.boundingBox();
            const [red] = await colorAt(page, (box?.x ?? 0) + 6, (box?.y ?? 0) + 6);
            return red;
        };
        assert.equal((await brightness()) < 128, dark);
        await page.click("[aria-label='Light or dark']");
        assert.equal((await brightness()) < 128, !dark);
        assert.deepEqual(faults, []);
        await page.close();
    }
});

test("a phone shows everything without scrolling sideways, and fingers turn the view", async () => {
    const url = writePage(folder.path, "phone.html", makeTransistors(41, 31, 1), facts);
    const { page, faults } = await openPage(browser, url, {
        width: 390,
        height: 844,
        isMobile: true,
    });
    const widths = await page.evaluate(() => [
        document.documentElement.scrollWidth,
        window.innerWidth,
    ]);
    assert.ok(widths[0] <= widths[1], widths.join());
    const ends = await page.evaluate(() => {
        window.scrollTo(0, document.documentElement.scrollHeight);
        const rows = document.querySelectorAll(".layers tr");
        return [rows[rows.length - 1], document.querySelector(".strip")].map(
            (made) => made?.getBoundingClientRect().bottom ?? 0,
        );
    });
    assert.ok(ends[0] < ends[1], `the strip ends the page, below all layers: ${ends.join()}`);
    await page.evaluate(() => {
        window.scrollTo(0, 0);
    });
    const pose = () => page.$eval(".overlay .axis", (name) => name.getAttribute("transform"));
    const first = await pose();
    const box = await (await page.$("canvas"))?.boundingBox();
    assert.ok(box);
    const [x, y] = [box.x + box.width / 2, box.y + box.height / 2];
    await page.touchscreen.touchStart(x, y);
    await page.touchscreen.touchMove(x + 40, y + 10);
    await page.touchscreen.touchMove(x + 80, y + 20);
    await page.touchscreen.touchEnd();
    await settle(page);
    const turned = await pose();
    assert.notEqual(turned, first);
    const one = await page.touchscreen.touchStart(x - 20, y);
    const two = await page.touchscreen.touchStart(x + 20, y);
    await one.move(x - 60, y);
    await two.move(x + 60, y);
    await one.end();
    await two.end();
    await settle(page);
    assert.notEqual(await pose(), turned);
    await page.touchscreen.tap(x, y);
    await page.waitForFunction(() =>
        (document.querySelector(".where")?.textContent ?? "").endsWith("nm"),
    );
    assert.deepEqual(faults, []);
    await page.close();
});

test("a page without pictures, notes, console and layers in a step says so", async () => {
    const made = makeBeam(9, 7);
    made.release("Beam");
    made.release("Wafer");
    made.record({ name: "", kind: "release" });
    const { page, faults } = await openPage(
        browser,
        writePage(folder.path, "bare.html", made, { ...facts, pictures: false, cell: "" }),
    );
    assert.deepEqual(await shownLayers(page), []);
    assert.equal(await textOf(page, ".step-name h2"), "release");
    await page.click("[data-value=picture]");
    assert.equal(await textOf(page, ".picture"), "This step has no picture.");
    assert.deepEqual(faults, []);
    await page.close();
});

test("a page whose heights are damaged shows why, and all the rest", async () => {
    const { run, data } = makeRun(makeTransistors(21, 15, 1), facts);
    const cut = data.slice(0, 4 * Math.floor(run.chunks[3].offset / 3));
    const text = pageText(run, cut, process.env.ZELMO_PAGE_BUNDLE ?? ".");
    const { page, faults } = await openPage(browser, writeText(folder.path, "damaged.html", text), {
        hash: "#step=2",
    });
    assert.equal(await page.$eval(".failure", (failure) => (failure as HTMLElement).hidden), true);
    await page.keyboard.press("End");
    assert.match(await textOf(page, ".stage .failure"), /cut short/);
    assert.equal(await textOf(page, ".step-name h2"), "Line1 etch");
    assert.deepEqual(faults, []);
    await page.close();
});

test("a window without cells and data of another format are told in words", async () => {
    const made = new MadeProcess(0, 0);
    made.record({ name: "Wafer", kind: "substrate" });
    const { run, data } = makeRun(made, facts);
    run.grid = { x: [], y: [] };
    const bundle = process.env.ZELMO_PAGE_BUNDLE ?? ".";
    const narrow = await openPage(
        browser,
        writeText(folder.path, "narrow.html", pageText(run, data, bundle)),
    );
    assert.match(await textOf(narrow.page, ".notice"), /narrower than the model's cells/);
    assert.equal(await textOf(narrow.page, ".step-name h2"), "Wafer substrate");
    assert.deepEqual(narrow.faults, []);
    const other = await openPage(
        browser,
        writeText(folder.path, "other.html", pageText({ ...run, format: 9 }, data, bundle)),
    );
    assert.match(await textOf(other.page, ".failure"), /format 9, not 1/);
    await narrow.page.close();
    await other.page.close();
});

test("without scripts the page says what it needs", async () => {
    const url = writePage(folder.path, "noscript.html", makeBeam(9, 7), facts);
    const page = await browser.newPage();
    page.setDefaultTimeout(240_000);
    await page.setJavaScriptEnabled(false);
    await page.goto(url);
    assert.match(await textOf(page, "body"), /needs JavaScript/);
    await page.close();
});

test("without WebGL the pictures and all the rest are there", async () => {
    const plain = await startBrowser(["--disable-3d-apis"]);
    const url = writePage(folder.path, "plain.html", makeBeam(9, 7), facts);
    const { page, requests } = await openPage(plain, url);
    assert.match(await textOf(page, ".notice"), /shows no 3D/);
    const width = await page.$eval(".picture img", async (image) => {
        await image.decode();
        return image.naturalWidth;
    });
    assert.equal(width, 640);
    await page.keyboard.press("ArrowLeft");
    assert.equal(await textOf(page, ".count"), "Step 3 of 4");
    assert.deepEqual(requests, []);
    await plain.close();
});
