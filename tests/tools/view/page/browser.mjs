// A browser with the page in it, and what a person would read there.

import assert from "node:assert/strict";
import { chromium } from "playwright-core";

const always = ["--no-sandbox", "--disable-quic", "--no-first-run", "--disable-background-networking"];
const withWebGl = ["--use-angle=swiftshader", "--enable-unsafe-swiftshader"];
export const withoutWebGl = ["--disable-gpu", "--disable-3d-apis"];

export function launch(flags = withWebGl) {
    return chromium.launch({ executablePath: process.env.CHROMIUM, args: [...always, ...flags] });
}

// Small, because without a graphics card every pixel is worked out by the processor; wide enough for the layout of a desk.
const window = { width: 1120, height: 600 };

/** A page that is open, and all that it complained about or asked the network for. */
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

    /** Whatever a promise is about: nothing was complained about, and nothing fetched. */
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

    /** All that is shown of the machine: words, not numbers, because words are what is read. */
    machine() {
        return this.page.evaluate(() => Object.fromEntries(["x", "y", "z", "a", "b", "clearance", "lever", "peg"].map((name) =>
            [name, document.getElementById(`live-${name}`).textContent])));
    }

    async position() {
        const { x, y, z } = await this.machine();
        return [x, y, z].map(Number);
    }

    /** The document as it stands in the page. */
    document() { return this.page.evaluate(() => JSON.parse(document.getElementById("document").textContent)); }

    async isPlaying() { return (await this.page.locator("#play").getAttribute("aria-label")) === "Pause"; }

    /** From now on the page lives through as much time as it is given, and no more, however busy the machine is. */
    async stopClock() {
        await this.page.clock.install({ time: 0 });
        await this.page.clock.pauseAt(1000);
    }

    live(milliseconds) { return this.page.clock.runFor(milliseconds); }

    async liveUntilStopped() {
        const longest = 30; // seconds of the page's time, far more than any plan takes when it is played very fast
        for (let i = 0; i < 10 * longest && await this.isPlaying(); ++i) await this.live(100);
        assert.equal(await this.isPlaying(), false);
    }
}

/** Coordinates are shown with three decimals: half of the last one, and the rounding of the sum that an arc's end is. */
const shownWithin = 0.00051;

export function assertAt(shown, expected, what) {
    const isThere = shown.every((value, i) => Math.abs(value - expected[i]) <= shownWithin);
    assert.ok(isThere, `${what}: ${shown} instead of ${expected}`);
}
