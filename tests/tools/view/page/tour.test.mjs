// Tours, obstacles and the view of the contact, and the points that the page of a long tour computes itself.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { statSync } from "node:fs";
import { join } from "node:path";
import { after, before, describe, it } from "node:test";
import { pathToFileURL } from "node:url";
import { launch, OpenPage } from "./browser.mjs";
import { Pages } from "./pages.mjs";

const moves = 19;
const largestPage = 4e6; // bytes, for a tour of 100 plans
// mm and degrees. The page adds a few products of lengths of some hundred millimetres.
const rounding = 1e-9;

function documentOf(args) {
    return JSON.parse(execFileSync(process.env.QMV40_TOOL, ["view", ...args, "--json"], { encoding: "utf8", maxBuffer: 1e9 }));
}

/** The names of the numbers in which two samples differ. */
function differences(ours, theirs) {
    return Object.keys(theirs).filter((name) => {
        const [one, other] = [ours[name], theirs[name]];
        if (typeof other !== "object" && typeof other !== "number") return one !== other;
        if (one === null || other === null) return one !== other;
        return [one].flat().some((value, i) => !(Math.abs(value - [other].flat()[i]) <= rounding));
    });
}

describe("The page of a tour", () => {
    let browser, pages, geometry;
    const stops = ["45,90", "15,-30", "90,180", "0,-180"];
    const tour = ["--from", "30,-45", ...stops.flatMap((stop) => ["--to", stop])];
    const hundred = ["--from", "0,0", ...Array.from({ length: 100 }, (_, i) => ["--to", `${15 * (i * 5 % 7)},${15 * (i * 7 % 25) - 180}`]).flat()];

    before(async () => {
        pages = new Pages();
        geometry = pages.geometry("turned-30");
        browser = await launch();
    });
    after(async () => {
        await browser?.close();
        pages.remove();
    });

    it("computes the points of a move as the tool does", async () => {
        const { samplesOf } = await import(pathToFileURL(join(process.env.QMV40_VIEW_WORKPLACE, "src", "motion.js")));
        const theDocument = documentOf(["--geometry", geometry, ...tour]);
        for (const plan of theDocument.plans) {
            for (const move of plan.moves) {
                const ours = samplesOf(theDocument, move);
                assert.equal(ours.length, move.samples.length, move.name);
                ours.forEach((sample, i) => assert.deepEqual(differences(sample, move.samples[i]), [], `${move.name}, sample ${i}`));
            }
        }
    });

    it("stays small with 100 plans and has a short title", async () => {
        const url = pages.view("hundred.html", ["--geometry", geometry, ...hundred]);
        assert.ok(statSync(pages.path("hundred.html")).size < largestPage);
        const opened = await OpenPage.open(browser, url);
        assert.match(await opened.text("h1"), /^turned-30\.ini: a tour of 100 plans, from \(0, 0\) to \(\d+, -?\d+\)$/);
        assert.equal(await opened.page.locator("#plan option").count(), 100);
        const { plans } = await opened.document();
        await opened.page.selectOption("#plan", "57");
        await opened.page.locator("#scene").focus();
        await opened.press("End");
        const shown = await opened.position();
        plans[57].moves.at(-1).motion.end.forEach((value, i) => assert.ok(Math.abs(value - shown[i]) < 0.00051));
        assert.match(await opened.text("#drawn"), /no drawings/);
        await opened.close();
    });

    it("goes from the end of a plan to the next one, and back", async () => {
        const opened = await OpenPage.open(browser, pages.view("tour.html", ["--geometry", geometry, ...tour]));
        const plan = () => opened.page.locator("#plan").inputValue();
        await opened.press("End", "ArrowRight");
        assert.equal(await plan(), "1");
        assert.equal(await opened.moveName(), "ApproachUnLockLever");
        await opened.press("ArrowLeft");
        assert.equal(await plan(), "0");
        assert.equal(await opened.moveName(), "DisengageFromLockLever");
        await opened.close();
    });

    it("plays on through all plans and stops at the end of the last", async () => {
        const opened = await OpenPage.open(browser, pages.view("short.html", ["--geometry", geometry, "--from", "0,0", "--to", "0,15", "--to", "0,0"]));
        await opened.stopClock();
        await opened.page.selectOption("#speed", { label: "very fast" });
        await opened.click("#to-end");
        await opened.click("#back");
        await opened.click("#play");
        await opened.runClock(1000);
        assert.equal(await opened.page.locator("#plan").inputValue(), "1");
        assert.equal(await opened.isPlaying(), true);
        await opened.click("#to-end");
        await opened.click("#back");
        await opened.click("#play");
        await opened.runClockUntilStopped();
        assert.equal(await opened.page.locator("#plan").inputValue(), "1");
        assert.equal(await opened.moveName(), "DisengageFromLockLever");
        await opened.close();
    });
});

describe("The picture of the contact", () => {
    let browser, pages, opened;

    before(async () => {
        pages = new Pages();
        browser = await launch();
        opened = await OpenPage.open(browser, pages.view("plain.html",
            ["--geometry", pages.geometry("plain"), "--from", "30,-45", "--to", "90,90", "--stylus", "90", "--table", "-900"]));
    });
    after(async () => {
        await browser?.close();
        pages.remove();
    });

    /** The number of red pixels in the middle of the picture, where the pole sphere is. */
    const redInTheMiddle = async () => {
        await opened.page.evaluate(() => new Promise((drawn) => { requestAnimationFrame(() => requestAnimationFrame(drawn)); }));
        const box = await opened.page.locator("#scene").boundingBox();
        const clip = { x: box.x + box.width / 2 - 8, y: box.y + box.height / 2 - 8, width: 16, height: 16 };
        const image = (await opened.page.screenshot({ clip })).toString("base64");
        return opened.page.evaluate(async (encoded) => {
            const picture = new Image();
            picture.src = `data:image/png;base64,${encoded}`;
            await picture.decode();
            const canvas = new OffscreenCanvas(picture.width, picture.height);
            const context = canvas.getContext("2d");
            context.drawImage(picture, 0, 0);
            const { data } = context.getImageData(0, 0, picture.width, picture.height);
            let found = 0;
            for (let i = 0; i < data.length; i += 4) found += data[i] > 1.5 * data[i + 1] && data[i] > 1.2 * data[i + 2] ? 1 : 0;
            return found;
        }, image);
    };

    it("shows the sphere in every move; neither head nor labels hide it", async () => {
        const enough = 60; // of 256: the path of the move covers a part of the sphere
        await opened.press("Home", "5");
        for (let move = 1; move <= moves; ++move) {
            await opened.press("ArrowRight");
            assert.ok(await redInTheMiddle() > enough, `move ${move}`);
        }
        opened.assertQuiet();
    });

    it("changes to the free view when the picture is turned", async () => {
        await opened.press("5");
        assert.equal(await opened.page.locator('#views [data-view][aria-pressed="true"]').innerText(), "Contact");
        await opened.press("Shift+ArrowLeft");
        assert.equal(await opened.page.locator('#views [data-view][aria-pressed="true"]').innerText(), "Free");
    });

    it("turns the top, front and side view to the head's axes on demand", async () => {
        const turned = await OpenPage.open(browser, pages.view("turned.html", ["--geometry", pages.geometry("turned-30"), "--from", "0,0", "--to", "45,90"]));
        const { right } = (await turned.document()).mounting;
        const directionOfX = async () => {
            await turned.page.evaluate(() => new Promise((drawn) => { requestAnimationFrame(() => requestAnimationFrame(drawn)); }));
            return turned.page.locator("#triad line.x").evaluate((line) => [Number(line.getAttribute("x2")), -Number(line.getAttribute("y2"))]);
        };
        await turned.press("2");
        assert.ok(Math.abs((await directionOfX())[1]) < 0.1, "the machine's X is to the right");
        await turned.press("h");
        const [x, y] = await directionOfX();
        // In the head's axes, the machine's X is turned by the mounting angle in the opposite sense.
        assert.ok(Math.abs(Math.atan2(y, x) + Math.atan2(right[1], right[0])) < 0.01);
        await turned.close();
    });

    it("lists the assumptions of the check", async () => {
        const text = await opened.text("#assumptions");
        for (const words of ["90 mm long", "at Z -900 mm", "--sphere-radius", "--obstacles"]) assert.ok(text.includes(words), words);
    });

    it("has drawings with black text in light and dark", async () => {
        for (const colorScheme of ["light", "dark"]) {
            await opened.page.emulateMedia({ colorScheme });
            const fills = await opened.page.locator("#drawings svg text").evaluateAll((texts) =>
                [...new Set(texts.filter((text) => !text.hasAttribute("fill")).map((text) => getComputedStyle(text).fill))]);
            assert.deepEqual(fills, ["rgb(0, 0, 0)"], `${colorScheme}: on white paper`);
        }
        await opened.page.emulateMedia({ colorScheme: "light" });
    });

    it("is not wider than the screen of desk, tablet and telephone", async () => {
        for (const colorScheme of ["light", "dark"]) {
            for (const viewport of [{ width: 1600, height: 900 }, { width: 820, height: 1180 }, { width: 390, height: 844 }]) {
                await opened.page.emulateMedia({ colorScheme });
                await opened.page.setViewportSize(viewport);
                assert.equal(await opened.page.evaluate(() => document.documentElement.scrollWidth > innerWidth), false, `${viewport.width} pixels`);
                assert.ok(await opened.page.locator("#scene canvas").isVisible());
            }
        }
    });
});
