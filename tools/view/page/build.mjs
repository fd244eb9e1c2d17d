// Makes the one file of the page: src/page.html with the style sheet and the scripts. qmv40 view fills in the rest.
//   node build.mjs OUTPUT

import { build } from "esbuild";
import { mkdir, readFile, writeFile } from "node:fs/promises";
import { dirname } from "node:path";

const placeholders = ["@TITLE@", "@DOCUMENT@", "@DRAWINGS@"];
// The oldest versions, of 2022, that have every function that the scripts call. They also have WebGL 2, which the
// picture needs.
const browsers = ["chrome97", "firefox104", "safari15.4"];

/** The licence requires that every copy contains its full text. */
async function licenceOfThree() {
    const text = await readFile("node_modules/three/LICENSE", "utf8");
    return `/*! This page contains three.js, https://threejs.org\n\n${text.trim()}\n*/`;
}

async function bundled(entry, options = {}) {
    const result = await build({
        entryPoints: [entry], bundle: true, minify: true, write: false, charset: "utf8",
        target: browsers, legalComments: "inline", ...options,
    });
    return result.outputFiles[0].text.trim();
}

/** Replaces the placeholder. The replacement is a function, so that `$` in a script has no special meaning. */
function put(page, place, text) {
    if (page.split(place).length !== 2) throw new Error(`${place} must stand in the page exactly once`);
    return page.replace(place, () => text);
}

/** Throws when the script contains text that would end its element early or hide the end. */
function refuseWhatEndsAScript(script) {
    if (/<\/script|<!--/i.test(script)) throw new Error("the scripts hold text that would end their element");
}

const output = process.argv[2];
const script = await bundled("src/main.js", { format: "iife", banner: { js: await licenceOfThree() } });
refuseWhatEndsAScript(script);
let page = await readFile("src/page.html", "utf8");
page = put(page, "@STYLE@", await bundled("src/style.css"));
page = put(page, "@SCRIPT@", script);
for (const place of placeholders) put(page, place, "");
await mkdir(dirname(output), { recursive: true });
await writeFile(output, page);
