// The page without WebGL, without scripts, on a small screen and on paper.

import assert from "node:assert/strict";
import { after, before, describe, it } from "node:test";
import { launch, OpenPage, withoutWebGl } from "./browser.mjs";
import { Pages } from "./pages.mjs";

describe("The page", () => {
    let browser, pages, url, geometry;
    const fromTo = ["--from", "0,0", "--to", "45,90"];

    before(async () => {
        pages = new Pages();
        geometry = pages.geometry("plain");
        url = pages.view("plain.html", ["--geometry", geometry, ...fromTo]);
        browser = await launch(withoutWebGl);
    });
    after(async () => {
        await browser?.close();
        pages.remove();
    });

    const isVisible = (opened, selector) => opened.page.locator(selector).first().isVisible();
    const isWiderThanScreen = (opened) => opened.page.evaluate(() => document.documentElement.scrollWidth > innerWidth);

    it("shows moves, findings and drawings without WebGL, and says why there is no picture", async () => {
        const opened = await OpenPage.open(browser, url);
        assert.match(await opened.text("#no-scene"), /no WebGL/);
        for (const part of ["#verdict", "#rows tr", "#findings", "#drawings svg"]) assert.ok(await isVisible(opened, part), part);
        assert.equal(await isVisible(opened, "#scene"), false);
        assert.equal(await opened.page.locator("#rows tr").count(), 19);
        await opened.press("ArrowRight", "ArrowRight");
        assert.deepEqual(await opened.position(), [442.8, -197.55, -691.55]);
        await opened.close();
    });

    it("shows the findings of a spoiled plan without WebGL", async () => {
        const spoiled = pages.spoiled("spoiled", geometry, fromTo, (moves) => { moves.MoveToBPosition.RotationAngle *= -1; });
        const opened = await OpenPage.open(browser, spoiled);
        await opened.page.locator(".finding-jump").first().click();
        assert.equal(await opened.moveName(), "MoveToBPosition");
        await opened.close();
    });

    it("shows the drawings and a sentence when scripts are off", async () => {
        const opened = await OpenPage.open(browser, url, { javaScriptEnabled: false });
        assert.ok(await isVisible(opened, "#drawings svg"));
        assert.match(await opened.text("body"), /Scripts are off/);
        assert.equal(await isVisible(opened, "#player"), false);
        assert.equal(await opened.page.title(), "plain.ini: (0, 0) to (45, 90)");
        await opened.close();
    });

    it("is not wider than a telephone or a small screen", async () => {
        for (const viewport of [{ width: 390, height: 844 }, { width: 1280, height: 720 }]) {
            const opened = await OpenPage.open(browser, url, { viewport, hasTouch: true });
            assert.equal(await isWiderThanScreen(opened), false, `${viewport.width} pixels`);
            await opened.row(12).click();
            assert.equal(await opened.moveName(), "DisengageFromPeg");
            await opened.close();
        }
    });

    it("prints the verdict, the moves with their planned numbers, and the drawings", async () => {
        const opened = await OpenPage.open(browser, url);
        await opened.page.emulateMedia({ media: "print" });
        assert.equal(await isVisible(opened, "#player"), false);
        for (const part of ["#verdict", "#drawings svg"]) assert.ok(await isVisible(opened, part), part);
        assert.match(await opened.row(7).innerText(), /419\.4500, -212\.2500, -643\.5000 mm/);
        await opened.close();
    });

    it("shows a file name with markup as text", async () => {
        const name = "<img src=x onerror=alert(1)> & $&.ini";
        const opened = await OpenPage.open(browser, pages.view("odd.html", ["--geometry", pages.geometry("plain", name), ...fromTo]));
        assert.equal(await opened.text("h1"), `${name}: (0, 0) to (45, 90)`);
        assert.equal(await opened.page.title(), `${name}: (0, 0) to (45, 90)`);
        assert.equal(await opened.page.locator("img").count(), 0);
        await opened.close();
    });

    it("says that it has no plan when the template itself is opened", async () => {
        const opened = await OpenPage.open(browser, `file://${process.env.QMV40_VIEW_TEMPLATE}`);
        assert.match(await opened.text("#failure"), /holds no plan that can be read/);
        await opened.close();
    });

    it("contains the full licence of three.js", () => {
        const page = pages.text("plain.html");
        for (const words of ["three.js authors", "Permission is hereby granted, free of charge", "THE SOFTWARE IS PROVIDED \"AS IS\""]) {
            assert.ok(page.includes(words), words);
        }
    });
});
