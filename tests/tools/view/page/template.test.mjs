// The page template that `qmv40 view` fills is made from its sources only.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { cpSync, mkdtempSync, readFileSync, rmSync, symlinkSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { it } from "node:test";

const workplace = process.env.QMV40_VIEW_WORKPLACE;

it("is the same to the byte when it is built in another folder", () => {
    const folder = mkdtempSync(join(tmpdir(), "qmv40-view-"));
    try {
        for (const part of ["src", "build.mjs", "package.json"]) cpSync(join(workplace, part), join(folder, part), { recursive: true });
        symlinkSync(join(workplace, "node_modules"), join(folder, "node_modules"));
        execFileSync(process.execPath, ["build.mjs", "again.html"], { cwd: folder });
        assert.deepEqual(readFileSync(join(folder, "again.html")), readFileSync(process.env.QMV40_VIEW_TEMPLATE));
    } finally {
        rmSync(folder, { recursive: true });
    }
});

it("contains each of the three placeholders once", () => {
    const page = readFileSync(process.env.QMV40_VIEW_TEMPLATE, "utf8");
    for (const place of ["@TITLE@", "@DOCUMENT@", "@DRAWINGS@"]) assert.equal(page.split(place).length, 2, place);
});
