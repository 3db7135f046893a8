// Bundles the page's script and style sheet: node build.mjs [FOLDER]. The folder is the build's own.
import { readFileSync } from "node:fs";
import { fileURLToPath } from "node:url";
import { build } from "esbuild";

const folder = process.argv[2] ?? fileURLToPath(new URL("../build/page", import.meta.url));

// The libraries' licences ask to go with them.
const notices = ["three", "fflate"].map((name) => {
    const file = fileURLToPath(new URL(`node_modules/${name}/LICENSE`, import.meta.url));
    return `${name}\n\n${readFileSync(file, "utf8").trim()}`;
});

await build({
    entryPoints: {
        page: fileURLToPath(new URL("src/main.ts", import.meta.url)),
    },
    outdir: folder,
    bundle: true,
    minify: true,
    format: "iife",
    // Browsers of the last five years
    target: ["chrome96", "edge96", "firefox94", "safari15.1"],
    // The bundle stands inside a script element.
    charset: "ascii",
    legalComments: "none",
    banner: { js: `/*\n${notices.join("\n\n")}\n*/` },
    logLevel: "warning",
});
