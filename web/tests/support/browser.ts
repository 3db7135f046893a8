import puppeteer, { type Browser } from "puppeteer-core";

/** Starts the system's Chromium, without a window unless that is asked for, its WebGL in software. */
export function startBrowser(options: string[] = [], hasWindow = false): Promise<Browser> {
    return puppeteer.launch({
        headless: !hasWindow,
        executablePath: process.env.ZELMO_CHROMIUM ?? "/usr/bin/chromium",
        // A machine that does much else may take its time.
        timeout: 120_000,
        protocolTimeout: 300_000,
        args: ["--no-sandbox", "--enable-unsafe-swiftshader", "--hide-scrollbars", ...options],
    });
}
