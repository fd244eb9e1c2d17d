// The player: what the page shows at each move, and the keys, buttons and rows that lead there.

import assert from "node:assert/strict";
import { after, before, describe, it } from "node:test";
import { assertAt, launch, OpenPage } from "./browser.mjs";
import { endsOfMoves, Pages } from "./pages.mjs";

const moveArguments = ["--from", "0,0", "--to", "45,90"];

/** The page of one plan, in a browser of its own. */
async function show(fileName) {
    const pages = new Pages();
    const geometry = pages.geometry("plain");
    const [ends] = pages.plans(["--geometry", geometry, ...moveArguments]).map(endsOfMoves);
    const browser = await launch();
    const opened = await OpenPage.open(browser, pages.view(fileName, ["--geometry", geometry, ...moveArguments]));
    const close = async () => {
        await browser.close();
        pages.remove();
    };
    return { opened, ends, close };
}

describe("The player", () => {
    let shown, opened, ends;

    before(async () => {
        shown = await show("plain.html");
        ({ opened, ends } = shown);
    });
    after(() => shown?.close());

    /** A test that begins at the start of the plan. */
    const fromTheStart = (sentence, test) => it(sentence, async () => {
        await opened.press("Home");
        await test(opened);
        opened.assertQuiet();
    });

    fromTheStart("is at the start when the page opens, locked and off the peg", async (opened) => {
        assert.equal(await opened.moveName(), "ApproachUnLockLever");
        assert.equal(await opened.isPlaying(), false);
        const { a, b, lever, peg } = await opened.machine();
        assert.deepEqual([a, b, lever, peg], ["0.000", "0.000", "Levers locked", "Free of the peg"]);
    });

    fromTheStart("shows every move's planned end", async (opened) => {
        for (const [i, [name, end]] of ends.entries()) {
            await opened.press("ArrowRight");
            assert.equal(await opened.moveName(), name);
            assert.equal(await opened.row(i + 1).getAttribute("aria-current"), "step");
            assertAt(await opened.position(), end, name);
        }
        await opened.press("ArrowRight");
        assert.equal(await opened.moveName(), "DisengageFromLockLever", "there is nothing after the end");
    });

    fromTheStart("ends at the target's angles, locked and off the peg", async (opened) => {
        await opened.press("End");
        const { a, b, lever, peg } = await opened.machine();
        assert.deepEqual([a, b, lever, peg], ["45.000", "90.000", "Levers locked", "Free of the peg"]);
    });

    fromTheStart("shows the head open and on the peg while it is turned", async (opened) => {
        await opened.row(10).click();
        await opened.press(".", ".");
        const { lever, peg, clearance } = await opened.machine();
        assert.deepEqual([lever, peg, clearance], ["Levers unlocked", "On the peg", "\u2014"]);
    });

    fromTheStart("says that the levers are pushed part of the way during a push", async (opened) => {
        const states = [];
        await opened.row(3).click();
        for (const key of [",", ".", ".", "ArrowRight"]) {
            states.push((await opened.machine()).lever);
            await opened.press(key);
        }
        states.push((await opened.machine()).lever);
        assert.deepEqual(states, ["Levers locked", "Levers locked", "Levers locked", "Levers pushed part of the way", "Levers unlocked"]);
    });

    fromTheStart("goes to both ends with Home and End and their buttons", async (opened) => {
        const placesAfter = async (go) => { await go(); return opened.position(); };
        for (const [start, end] of [["Home", "End"], ["#to-start", "#to-end"]]) {
            const go = (where) => () => where.startsWith("#") ? opened.click(where) : opened.press(where);
            assertAt(await placesAfter(go(end)), ends.at(-1)[1], end);
            assertAt(await placesAfter(go(start)), ends[0][1], start);
        }
    });

    fromTheStart("goes back to the start of the move, then to the start of the one before", async (opened) => {
        await opened.row(5).click();
        await opened.press(".", ".");
        await opened.press("ArrowLeft");
        assert.equal(await opened.moveName(), "RotateToPeg");
        assertAt(await opened.position(), ends[3][1], "the start of the fifth move");
        await opened.click("#back");
        assert.equal(await opened.moveName(), "DisengageFromUnLockLever");
        assertAt(await opened.position(), ends[2][1], "the start of the fourth move");
    });

    fromTheStart("shows the numbers of the document sample by sample", async (opened) => {
        const { samples } = (await opened.document()).plans[0].moves[4];
        await opened.row(5).click();
        for (const sample of samples.slice(0, 20)) {
            const { x, y, z, a, b, clearance } = await opened.machine();
            assert.deepEqual([x, y, z, a, b, clearance].map(Number), [...sample.at, sample.A, sample.B, sample.clearance].map((value) =>
                Number(value.toFixed(3))));
            await opened.press(".");
        }
    });

    fromTheStart("goes where the time line is clicked", async (opened) => {
        for (const move of [4, 5, 16]) {
            const mark = await opened.page.locator(`.mark:nth-child(${move})`).boundingBox();
            const line = await opened.page.locator("#time").boundingBox();
            await opened.page.mouse.click(mark.x + mark.width / 2, line.y + line.height / 2);
            assert.equal(await opened.moveName(), ends[move - 1][0]);
        }
    });

    fromTheStart("goes to the start of a move when its row is clicked anywhere", async (opened) => {
        for (const move of [16, 3, 11]) {
            await opened.row(move).locator("td").first().click();
            assert.equal(await opened.moveName(), ends[move - 1][0]);
            assertAt(await opened.position(), ends[move - 2][1], ends[move - 1][0]);
        }
    });

    fromTheStart("goes from row to row with the arrow keys; the list is one tab stop", async (opened) => {
        await opened.page.locator("#rows button").first().focus();
        await opened.press("ArrowDown", "ArrowDown");
        assert.equal(await opened.moveName(), "UnLock");
        assert.equal(await opened.page.evaluate(() => document.activeElement.textContent), "UnLock");
        assert.equal(await opened.page.locator('#rows button[tabindex="0"]').count(), 1);
        await opened.press("ArrowUp");
        assert.equal(await opened.moveName(), "EngageWithUnLockLever");
    });

    fromTheStart("shows the planned numbers of the move", async (opened) => {
        await opened.row(5).click();
        const planned = await opened.text("#move-planned");
        for (const number of ["110.9429 deg", "412.5000, -178.2500, -687.2500 mm", "0.0000, 0.0000, 1.0000"]) {
            assert.ok(planned.includes(number), `${number} in ${planned}`);
        }
        await opened.row(8).click();
        assert.match(await opened.text("#move-planned"), /419\.4500, -202\.2500, -643\.5000 mm/);
    });
});

describe("The player, with a clock that the test moves", () => {
    let shown, opened, ends;

    before(async () => {
        shown = await show("clock.html");
        ({ opened, ends } = shown);
        await opened.stopClock();
    });
    after(() => shown?.close());

    const runClock = (milliseconds) => opened.runClock(milliseconds);
    const timeShown = async () => Number(await opened.page.locator("#time").inputValue());

    it("does not move while it pauses", async () => {
        await opened.press("Home", "Space");
        await runClock(100);
        await opened.press("Space");
        const held = await timeShown();
        assert.ok(held > 0, "it had moved before");
        await runClock(300);
        assert.equal(await timeShown(), held);
    });

    it("plays to the end and stops there", async () => {
        await opened.row(16).click();
        await opened.page.selectOption("#speed", { label: "very fast" });
        await opened.click("#play");
        assert.equal(await opened.isPlaying(), true);
        await opened.runClockUntilStopped();
        assert.equal(await opened.moveName(), "DisengageFromLockLever");
        assertAt(await opened.position(), ends.at(-1)[1], "the end");
    });

    it("starts again from the start when it is played at the end", async () => {
        await opened.page.selectOption("#speed", { label: "normal" });
        await opened.click("#to-end");
        await opened.click("#play");
        await runClock(100);
        await opened.click("#play");
        await runClock(16); // the last frame is drawn
        assert.equal(await opened.moveName(), "EngageWithUnLockLever");
    });

    it("goes fifteen times as far in the same time when it is very fast", async () => {
        // Whole frames of 16 ms: a part of a frame would count in one of the two runs and not in the other.
        const frames = 20;
        const timeReachedAt = async (speed) => {
            await opened.press("Home");
            await opened.page.selectOption("#speed", { label: speed });
            await opened.click("#play");
            await runClock(frames * 16);
            await opened.click("#play");
            await runClock(16); // the last frame is drawn
            return timeShown();
        };
        const slow = await timeReachedAt("slow");
        assert.ok(slow > 0);
        const ratio = await timeReachedAt("very fast") / slow;
        assert.ok(Math.abs(ratio - 15) < 0.01 * 15, `${ratio} times as far`);
    });
});

describe("A tour of three plans", () => {
    let browser, pages, opened, plans;

    before(async () => {
        pages = new Pages();
        const tour = ["--geometry", pages.geometry("turned-30"), "--from", "0,0", "--to", "45,90", "--to", "15,-30", "--to", "90,180"];
        plans = pages.plans(tour);
        browser = await launch();
        opened = await OpenPage.open(browser, pages.view("tour.html", tour));
    });
    after(async () => {
        await browser?.close();
        pages.remove();
    });

    it("offers each plan with its start and target", async () => {
        const offered = await opened.page.locator("#plan option").allInnerTexts();
        assert.deepEqual(offered, ["1: A 0\u00b0, B 0\u00b0 to A 45\u00b0, B 90\u00b0", "2: A 45\u00b0, B 90\u00b0 to A 15\u00b0, B -30\u00b0",
                                   "3: A 15\u00b0, B -30\u00b0 to A 90\u00b0, B 180\u00b0"]);
    });

    it("shows only the chosen plan, which begins where the one before ended", async () => {
        let before;
        for (const [i, plan] of plans.entries()) {
            await opened.page.selectOption("#plan", String(i));
            if (before) assertAt(await opened.position(), before, `the start of plan ${i + 1}`);
            await opened.page.locator("#scene").focus();
            await opened.press("End");
            before = endsOfMoves(plan).at(-1)[1];
            assertAt(await opened.position(), before, `the end of plan ${i + 1}`);
            const { a, b } = await opened.machine();
            assert.deepEqual([Number(a), Number(b)], [plan.to.A, plan.to.B]);
            const shown = await opened.page.locator("#drawings figure").evaluateAll((figures) => figures.map((figure) => !figure.hidden));
            assert.deepEqual(shown, plans.map((_, other) => other === i));
        }
    });

    it("caused no error", () => opened.close());
});
