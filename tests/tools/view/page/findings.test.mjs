// The findings of a plan: name, place and remedy, and the move that they lead to.

import assert from "node:assert/strict";
import { after, before, describe, it } from "node:test";
import { launch, OpenPage } from "./browser.mjs";
import { Pages } from "./pages.mjs";

const fromTo = ["--from", "0,0", "--to", "45,90"];

describe("Findings", () => {
    let browser, pages, geometry, reversed, missed;

    const open = (name, spoil) => OpenPage.open(browser, pages.spoiled(name, geometry, fromTo, spoil));

    before(async () => {
        pages = new Pages();
        geometry = pages.geometry("plain");
        browser = await launch();
        reversed = await open("reversed", (moves) => { moves.MoveToBPosition.RotationAngle *= -1; });
        missed = await open("missed", (moves) => { moves.EngageWithUnLockLever.YPosition -= 1.5; });
    });
    after(async () => {
        await browser?.close();
        pages.remove();
    });

    const names = (opened) => opened.page.locator("#findings code").allInnerTexts();

    it("are absent from a clear plan, and the page says so", async () => {
        const opened = await OpenPage.open(browser, pages.view("clear.html", ["--geometry", geometry, ...fromTo]));
        assert.equal(await opened.text("#verdict"), "clear, no findings");
        assert.equal(await opened.page.locator("#findings-list li").count(), 0);
        assert.match(await opened.text("#findings"), /None: clear, no findings/);
        await opened.close();
    });

    it("of the capture stand beside the picture of its residuals, and the plan's drawing stays", async () => {
        const captured = ["a", "b"].flatMap((axis) => [`--${axis}-axis`, pages.captured("plain", axis)]);
        const opened = await OpenPage.open(browser, pages.view("capture.html", ["--geometry", geometry, ...fromTo, ...captured]));
        assert.equal(await opened.text("#capture h3"), "Capture: good");
        const [drawn, paper] = await Promise.all(["#drawings figure svg", "#capture svg"].map((each) => opened.page.locator(each).first().boundingBox()));
        assert.ok(drawn.width > 300 && paper.width > 300, "both are drawn");
        assert.ok(paper.y >= drawn.y + drawn.height, "one below the other");
        await opened.close();
    });

    it("of a reversed arc show name, move, amount and remedy", async () => {
        const [first] = await reversed.page.locator("#findings-list li").allInnerTexts();
        assert.equal((await names(reversed))[0], "arc-turns-the-wrong-way");
        assert.match(first, /Move 10, MoveToBPosition/);
        assert.match(first, /180\.000 deg/);
        assert.match(first, /Change the sign of RotationAngle/);
        assert.match(await reversed.text("#verdict"), /\d+ findings/);
    });

    it("lead to the end of their move when they are clicked", async () => {
        assert.equal((await names(missed))[0], "lever-not-touched");
        await missed.press("End");
        await missed.page.locator(".finding-jump").first().click();
        assert.equal(await missed.moveName(), "EngageWithUnLockLever");
        // The plan was changed by 1.5 mm in Y.
        assert.deepEqual(await missed.position(), [442.8, -199.05, -691.55]);
    });

    it("mark their moves in the list with a word beside the colour", async () => {
        assert.equal(await missed.row(2).locator(".level").innerText(), "finding");
        assert.equal(await missed.row(1).locator(".level").innerText(), "tight");
    });

    it("about the plan as a whole cannot be clicked", async () => {
        const whole = reversed.page.locator(".finding-jump", { hasText: "The plan as a whole" });
        assert.equal(await whole.locator("code").innerText(), "target-not-reached");
        assert.equal(await whole.isDisabled(), true);
    });

    it("of a number that is NaN leave the moves before it playable", async () => {
        const opened = await open("none", (moves) => { moves.ApproachPeg.ZPosition = null; });
        assert.ok((await names(opened)).includes("not-a-number"));
        await opened.row(6).click();
        assert.match((await opened.machine()).x, /^4\d\d\.\d{3}$/, "the sixth move was run");
        await opened.row(7).click();
        assert.match(await opened.text("#move-planned"), /419\.4500, -212\.2500, not a number mm/);
        assert.match(await opened.text("#move-planned"), /\u2014 to the sphere, \u2014 to the levers/);
        const { x, lever } = await opened.machine();
        assert.deepEqual([x, lever], ["not a number", "Not run"]);
        await opened.press("End", "Home", "Space");
        assert.equal(await opened.isPlaying(), true);
        await opened.close();
    });

    it("cause no error in the browser", () => {
        reversed.assertQuiet();
        missed.assertQuiet();
    });
});
