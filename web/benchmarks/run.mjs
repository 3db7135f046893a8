// Measures a page in Chromium: node run.mjs PAGE.html. On a display (xvfb-run will do), Mesa's llvmpipe
// draws; without one the renderer that Chromium brings along.
import { spawnSync } from "node:child_process";
import { fileURLToPath } from "node:url";
import { build } from "esbuild";

const here = fileURLToPath(new URL("page_benchmark.ts", import.meta.url));
// Below the packages, so that the benchmark finds those.
const outfile = fileURLToPath(new URL("../node_modules/.cache/benchmark.mjs", import.meta.url));
await build({
    entryPoints: [here],
    outfile,
    bundle: true,
    packages: "external",
    platform: "node",
    format: "esm",
});
const { status } = spawnSync(process.execPath, [outfile, ...process.argv.slice(2)], {
    stdio: "inherit",
});
process.exit(status ?? 1);
