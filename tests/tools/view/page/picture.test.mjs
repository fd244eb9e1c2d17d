// The 3-D picture: what it shows and how it is turned.

import assert from "node:assert/strict";
import { after, before, describe, it } from "node:test";
import { launch, OpenPage } from "./browser.mjs";
import { Pages } from "./pages.mjs";

const moves = 19;
const widthOfALever = 10; // pixels
const pixelsOfALever = 50; // more than the pale pixels at the edge of a solid lever

/** Waits until the picture is drawn: one frame after a change. */
function drawn(opened) {
    return opened.page.evaluate(() => new Promise((isDrawn) => { requestAnimationFrame(() => requestAnimationFrame(isDrawn)); }));
}

/** Takes pictures of the page and examines their pixels in a second page. */
class Camera {
    constructor(examiner) { this.examiner = examiner; }

    /** A picture of the canvas, without the labels over it. */
    async take(opened) {
        await drawn(opened);
        const image = await opened.page.locator("#scene").screenshot({ style: "#scene > :not(canvas) { visibility: hidden !important; }" });
        return image.toString("base64");
    }

    /** The share of the pixels that differ between two pictures, 0 to 1. */
    difference(one, other) {
        return this.examiner.evaluate(async (images) => {
            const [first, second] = await Promise.all(images.map(globalThis.pixelsOf));
            let different = 0;
            for (let i = 0; i < first.length; i += 4) {
                different += [0, 1, 2].some((c) => Math.abs(first[i + c] - second[i + c]) > 8) ? 1 : 0;
            }
            return different / (first.length / 4);
        }, [one, other]);
    }

    /** The number of pixels with about this colour. */
    count(image, colour) {
        return this.examiner.evaluate(async ([encoded, wanted]) => {
            const pixels = await globalThis.pixelsOf(encoded);
            let found = 0;
            for (let i = 0; i < pixels.length; i += 4) found += [0, 1, 2].every((c) => Math.abs(pixels[i + c] - wanted[c]) <= 10) ? 1 : 0;
            return found;
        }, [image, colour]);
    }

    /** The standard deviations of the pixels of the solid levers. Nothing else in the picture is violet. */
    async spreadOfLevers(image) {
        const { solid } = await this.violet(image);
        const mean = (values) => values.reduce((sum, value) => sum + value, 0) / values.length;
        const spread = (values) => Math.sqrt(mean(values.map((value) => (value - mean(values)) ** 2)));
        return { wide: spread(solid.map(([x]) => x)), high: spread(solid.map(([, y]) => y)) };
    }

    /** How many pixels the right lever is above its pale double. Expects that both are there. */
    async solidAbovePale(image) {
        const { solid, pale } = await this.violet(image);
        const rim = Math.max(...solid.map(([x]) => x));
        const middle = (pixels) => {
            const heights = pixels.filter(([x]) => x <= rim && x > rim - widthOfALever).map(([, y]) => y);
            assert.ok(heights.length > pixelsOfALever, `${heights.length} pixels of a lever`);
            return heights.reduce((sum, y) => sum + y, 0) / heights.length;
        };
        return middle(pale) - middle(solid);
    }

    /** The violet pixels, `[x, y]`. */
    violet(image) {
        return this.examiner.evaluate(async (encoded) => {
            const { data, width } = await globalThis.imageOf(encoded);
            const found = { solid: [], pale: [] };
            for (let i = 0; i < data.length; i += 4) {
                const [red, green, blue] = data.subarray(i, i + 3);
                const pixel = [(i / 4) % width, Math.floor(i / 4 / width)];
                if (red > green + 15 && blue > red + 30) found.solid.push(pixel);
                else if (red > green + 4 && blue > red + 12) found.pale.push(pixel);
            }
            return found;
        }, image);
    }

    static async open(browser) {
        const examiner = await browser.newPage();
        await examiner.evaluate(() => {
            globalThis.imageOf = async (encoded) => {
                const image = new Image();
                image.src = `data:image/png;base64,${encoded}`;
                await image.decode();
                const canvas = new OffscreenCanvas(image.width, image.height);
                const context = canvas.getContext("2d");
                context.drawImage(image, 0, 0);
                return context.getImageData(0, 0, image.width, image.height);
            };
            globalThis.pixelsOf = async (encoded) => (await globalThis.imageOf(encoded)).data;
        });
        return new Camera(examiner);
    }
}

// A share of the pixels. Two pictures of one view are equal; a head that has moved changes thousands of pixels.
const changed = 0.01;
const severalPixels = 10;

describe("The picture", () => {
    let browser, pages, opened, camera, url;

    before(async () => {
        pages = new Pages();
        url = pages.view("plain.html", ["--geometry", pages.geometry("plain"), "--from", "0,0", "--to", "45,90"]);
        browser = await launch();
        opened = await OpenPage.open(browser, url);
        camera = await Camera.open(browser);
    });
    after(async () => {
        await browser?.close();
        pages.remove();
    });

    /** A test that begins with the picture at the start of the plan, in the free view. */
    const fromTheStart = (sentence, test) => it(sentence, async () => {
        await opened.press("Home", "1", "f");
        await test();
        opened.assertQuiet();
    });

    const colourOf = (name) => opened.page.evaluate((variable) => {
        const hex = getComputedStyle(document.documentElement).getPropertyValue(`--${variable}`).trim();
        return [1, 3, 5].map((at) => parseInt(hex.slice(at, at + 2), 16));
    }, name);

    const letter = async (axis) => opened.page.locator(`#triad text.${axis}`).evaluate((text) =>
        [Number(text.getAttribute("x")), Number(text.getAttribute("y"))]);

    fromTheStart("shows more than its background", async () => {
        const shown = await camera.take(opened);
        await opened.page.addStyleTag({ content: "canvas { opacity: 0; }" });
        const background = await camera.take(opened);
        await opened.page.evaluate(() => document.head.lastElementChild.remove());
        assert.ok(await camera.difference(shown, background) > 3 * changed);
    });

    fromTheStart("changes from move to move, and is equal again at the same position", async () => {
        const start = await camera.take(opened);
        for (const move of [5, 11, 16]) {
            await opened.row(move).click();
            assert.ok(await camera.difference(start, await camera.take(opened)) > changed, `move ${move}`);
        }
        await opened.press("Home");
        assert.equal(await camera.difference(start, await camera.take(opened)), 0);
    });

    fromTheStart("draws the current move in the colour of its level", async () => {
        const pixelsOfALine = 40;
        await opened.press("3");
        for (const [move, level] of [[5, "clear"], [16, "tight"], [11, "contact"]]) {
            await opened.row(move).click();
            assert.ok(await camera.count(await camera.take(opened), await colourOf(level)) > pixelsOfALine, level);
        }
    });

    fromTheStart("shows the levers solid in their present state and pale in the other one", async () => {
        const words = () => opened.page.locator(".label", { hasText: "lever" }).allTextContents();
        await opened.press("2");
        assert.deepEqual(await words(), ["plus lever, locked", "minus lever, locked"]);
        // A locked lever points along +Y. In the top view +Y is up.
        assert.ok(await camera.solidAbovePale(await camera.take(opened)) > severalPixels);
        await opened.row(4).click();
        assert.deepEqual(await words(), ["plus lever, unlocked", "minus lever, unlocked"]);
        assert.ok(await camera.solidAbovePale(await camera.take(opened)) < -severalPixels);
    });

    fromTheStart("shows the levers follow the sphere while they are pushed", async () => {
        const halfOfTheArc = Array(68).fill(".");
        await opened.press("4");
        for (const move of [3, 18]) {
            await opened.row(move).click();
            const touched = await camera.spreadOfLevers(await camera.take(opened));
            assert.ok(touched.wide > 1.5 * touched.high, "seen from the side, a touched lever is wider than high");
            await opened.press(...halfOfTheArc);
            const pushed = await camera.spreadOfLevers(await camera.take(opened));
            assert.ok(pushed.high > pushed.wide, "half-way through the push it is higher than wide");
        }
    });

    fromTheStart("looks from above, from the front and from the side along the machine's axes", async () => {
        const seen = {};
        for (const view of ["Top", "Front", "Side"]) {
            await opened.page.getByRole("button", { name: view, exact: true }).click();
            await drawn(opened);
            assert.equal(await opened.page.locator('#views [aria-pressed="true"]').innerText(), view);
            seen[view] = { x: await letter("x"), y: await letter("y"), z: await letter("z") };
        }
        const isRight = ([x, y]) => x > 30 && Math.abs(y) < 5;
        const isUp = ([x, y]) => y < -30 && Math.abs(x) < 5;
        assert.ok(isRight(seen.Top.x) && isUp(seen.Top.y), "from above X is to the right and Y up");
        assert.ok(isRight(seen.Front.x) && isUp(seen.Front.z), "from the front X is to the right and Z up");
        assert.ok(isRight(seen.Side.y) && isUp(seen.Side.z), "from the side Y is to the right and Z up");
    });

    const drag = async (from, by) => {
        const box = await opened.page.locator("#scene").boundingBox();
        await opened.page.mouse.move(box.x + from[0], box.y + from[1]);
        await opened.page.mouse.down();
        await opened.page.mouse.move(box.x + from[0] + by[0], box.y + from[1] + by[1], { steps: 3 });
        await opened.page.mouse.up();
        await drawn(opened);
    };

    fromTheStart("is turned by dragging in the free view, and shifted in the others", async () => {
        await drawn(opened);
        const before = await letter("x");
        await drag([250, 200], [80, 0]);
        assert.notDeepEqual(await letter("x"), before);
        await opened.press("2");
        const above = await camera.take(opened);
        const axis = await letter("x");
        await drag([250, 200], [80, 0]);
        assert.deepEqual(await letter("x"), axis);
        assert.ok(await camera.difference(above, await camera.take(opened)) > changed);
    });

    fromTheStart("is turned, enlarged and fitted again with the keyboard", async () => {
        await opened.press("3");
        const fitting = await camera.take(opened);
        await opened.press("+", "+");
        assert.ok(await camera.difference(fitting, await camera.take(opened)) > changed);
        await opened.press("f");
        assert.equal(await camera.difference(fitting, await camera.take(opened)), 0);
        await opened.press("Shift+ArrowLeft", "Shift+ArrowUp");
        assert.ok(await camera.difference(fitting, await camera.take(opened)) > changed);
        assert.equal(await opened.page.locator('#views [aria-pressed="true"]').innerText(), "Free");
    });

    fromTheStart("has labels that never overlap", async () => {
        for (let move = 0; move <= moves; ++move) {
            await drawn(opened);
            const boxes = await opened.page.locator(".label").evaluateAll((labels) => labels
                .filter((label) => label.style.visibility === "visible")
                .map((label) => ({ text: label.textContent, ...label.getBoundingClientRect().toJSON() })));
            assert.ok(boxes.length > 3, "too few labels for this test");
            for (const [i, one] of boxes.entries()) {
                for (const other of boxes.slice(i + 1)) {
                    const apart = one.right <= other.left || other.right <= one.left || one.bottom <= other.top || other.bottom <= one.top;
                    assert.ok(apart, `${one.text} and ${other.text} after move ${move}`);
                }
            }
            await opened.press("ArrowRight");
        }
    });

    fromTheStart("follows the browser from light to dark and back", async () => {
        const light = await camera.take(opened);
        await opened.page.emulateMedia({ colorScheme: "dark" });
        const dark = await camera.take(opened);
        await opened.page.emulateMedia({ colorScheme: "light" });
        assert.ok(await camera.difference(light, dark) > 0.5);
        assert.equal(await camera.difference(light, await camera.take(opened)), 0);
    });

    it("is turned with a finger", async () => {
        const onTouch = await OpenPage.open(browser, url, { hasTouch: true });
        const before = await onTouch.page.locator("#triad text.x").getAttribute("x");
        const session = await onTouch.page.context().newCDPSession(onTouch.page);
        const { x, y } = await onTouch.page.locator("#scene").boundingBox();
        const touch = (type, at) => session.send("Input.dispatchTouchEvent", { type, touchPoints: at === undefined ? [] : [{ x: x + at, y: y + 200 }] });
        for (const [type, at] of [["touchStart", 150], ["touchMove", 180], ["touchMove", 230], ["touchEnd"]]) await touch(type, at);
        await drawn(onTouch);
        assert.notEqual(await onTouch.page.locator("#triad text.x").getAttribute("x"), before);
        await onTouch.close();
    });

    it("is replaced by a sentence when the browser loses its graphics context", async () => {
        const losing = await OpenPage.open(browser, url);
        await losing.page.evaluate(() => document.querySelector("canvas").getContext("webgl2").getExtension("WEBGL_lose_context").loseContext());
        await losing.page.locator("#no-scene").waitFor();
        assert.match(await losing.text("#no-scene"), /No 3-D picture any more/);
        await losing.press("ArrowRight", "ArrowRight");
        assert.equal(await losing.moveName(), "EngageWithUnLockLever");
        await losing.close();
    });
});
