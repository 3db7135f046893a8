// Runs the tests of the page: node run.mjs FOLDER, where page.js and page.css were built.
import { spawnSync } from "node:child_process";
import { readdirSync } from "node:fs";
import { join, resolve } from "node:path";
import { fileURLToPath } from "node:url";
import { build } from "esbuild";

const tests = fileURLToPath(new URL(".", import.meta.url));
// Below the packages, so that the tests find those.
const folder = fileURLToPath(new URL("../node_modules/.cache/tests", import.meta.url));
const names = readdirSync(tests).filter((name) => name.endsWith(".test.ts"));

await build({
    entryPoints: names.map((name) => join(tests, name)),
    outdir: folder,
    outExtension: { ".js": ".mjs" },
    bundle: true,
    packages: "external",
    platform: "node",
    format: "esm",
    target: "node18",
    sourcemap: "inline",
    logLevel: "warning",
});
const files = names.map((name) => join(folder, name.replace(/\.ts$/, ".mjs")));
const { status } = spawnSync(process.execPath, ["--enable-source-maps", "--test", ...files], {
    stdio: "inherit",
    env: { ...process.env, ZELMO_PAGE_BUNDLE: resolve(process.argv[2] ?? ".") },
});
process.exit(status ?? 1);
