// Opens the page in a browser and reads what it shows.

import assert from "node:assert/strict";
import { chromium } from "playwright-core";

const always = ["--no-sandbox", "--disable-quic", "--no-first-run", "--disable-background-networking"];
const withWebGl = ["--use-angle=swiftshader", "--enable-unsafe-swiftshader"];
export const withoutWebGl = ["--disable-gpu", "--disable-3d-apis"];

export function launch(flags = withWebGl) {
    return chromium.launch({ executablePath: process.env.CHROMIUM, args: [...always, ...flags] });
}

// Small, because without a graphics card the processor computes every pixel. Wide enough for the layout of a large screen.
const window = { width: 1120, height: 600 };

/** An open page. `problems` lists its errors and warnings, and every request to the network. */
export class OpenPage {
    static async open(browser, url, options = {}) {
        const context = await browser.newContext({ viewport: window, ...options });
        const opened = new OpenPage(await context.newPage(), url);
        await opened.page.goto(url);
        return opened;
    }

    constructor(page, url) {
        this.page = page;
        this.problems = [];
        page.on("pageerror", (error) => this.problems.push(`thrown: ${error.message}`));
        page.on("console", (message) => {
            if (["error", "warning"].includes(message.type())) this.problems.push(`${message.type()}: ${message.text()}`);
        });
        page.on("request", (request) => {
            if (request.url() !== url && !request.url().startsWith("data:")) this.problems.push(`asked for ${request.url()}`);
        });
    }

    /** Expects no error, no warning and no request to the network. */
    assertQuiet() { assert.deepEqual(this.problems, []); }

    async close() {
        await this.page.context().close();
        this.assertQuiet();
    }

    text(selector) { return this.page.locator(selector).innerText(); }
    press(...keys) { return keys.reduce((before, key) => before.then(() => this.page.keyboard.press(key)), Promise.resolve()); }
    click(selector) { return this.page.click(selector); }

    row(number) { return this.page.locator(`#rows tr:nth-child(${number})`); }
    moveName() { return this.text("#move-name"); }

    /** What the page shows of the machine, as texts. */
    machine() {
        return this.page.evaluate(() => Object.fromEntries(["x", "y", "z", "a", "b", "clearance", "lever", "peg"].map((name) =>
            [name, document.getElementById(`live-${name}`).textContent])));
    }

    async position() {
        const { x, y, z } = await this.machine();
        return [x, y, z].map(Number);
    }

    /** The document inside the page. */
    document() { return this.page.evaluate(() => JSON.parse(document.getElementById("document").textContent)); }

    async isPlaying() { return (await this.page.locator("#play").getAttribute("aria-label")) === "Pause"; }

    /** From now on the page's clock moves only when `runClock` moves it, so that a slow machine changes no result. */
    async stopClock() {
        await this.page.clock.install({ time: 0 });
        await this.page.clock.pauseAt(1000);
    }

    runClock(milliseconds) { return this.page.clock.runFor(milliseconds); }

    async runClockUntilStopped() {
        const longest = 30; // seconds of the page's clock; a plan played very fast takes far less
        for (let i = 0; i < 10 * longest && await this.isPlaying(); ++i) await this.runClock(100);
        assert.equal(await this.isPlaying(), false);
    }
}

/** mm. Coordinates are shown with three decimals; the end of an arc has a rounding error of its own. */
const shownWithin = 0.00051;

export function assertAt(shown, expected, what) {
    const isThere = shown.every((value, i) => Math.abs(value - expected[i]) <= shownWithin);
    assert.ok(isThere, `${what}: ${shown} instead of ${expected}`);
}
