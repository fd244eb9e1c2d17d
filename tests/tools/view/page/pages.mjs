// Lets the tool write the pages under test, and the same plans by its other commands for comparison.

import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { pathToFileURL } from "node:url";

const tool = process.env.QMV40_TOOL;
const scenarios = process.env.QMV40_SCENARIOS;

/** Runs the tool and returns its output; `status` is the expected exit code. */
function run(args, status = 0) {
    try {
        const output = execFileSync(tool, args, { encoding: "utf8", stdio: ["ignore", "pipe", "pipe"] });
        if (status !== 0) throw new Error(`qmv40 ${args.join(" ")} ended with 0 instead of ${status}`);
        return output;
    } catch (failure) {
        if (failure.status === undefined || failure.status !== status) throw failure;
        return failure.stdout;
    }
}

export class Pages {
    constructor() { this.folder = mkdtempSync(join(tmpdir(), "qmv40-view-")); }

    remove() { rmSync(this.folder, { recursive: true }); }

    path(name) { return join(this.folder, name); }

    /** One set of a shipped capture. */
    captured(scenario, axis) { return join(scenarios, scenario, `${axis}-axis.csv`); }

    /** The geometry file of a shipped capture. */
    geometry(scenario, name = `${scenario}.ini`) {
        const captured = ["a", "b"].flatMap((axis) => [`--${axis}-axis`, this.captured(scenario, axis)]);
        run(["geometry", ...captured, "--output", this.path(name)]);
        return this.path(name);
    }

    /** Lets `qmv40 view` write a page with these arguments and returns its address. */
    view(name, args, status = 0) {
        run(["view", ...args, "--output", this.path(name)], status);
        return pathToFileURL(this.path(name)).href;
    }

    /** The plans that `qmv40 move` prints. */
    plans(args) { return JSON.parse(run(["move", ...args, "--json"])).plans; }

    /** The address of the page of a plan that `spoil` has changed. */
    spoiled(name, geometry, moves, spoil) {
        const plan = { plans: this.plans(["--geometry", geometry, ...moves]) };
        spoil(Object.fromEntries(plan.plans[0].moves.map((move) => [move.name, move.record])));
        writeFileSync(this.path(`${name}.json`), JSON.stringify(plan));
        return this.view(`${name}.html`, ["--geometry", geometry, "--plan", this.path(`${name}.json`)], 4);
    }

    text(name) { return readFileSync(this.path(name), "utf8"); }
}

/** The name and the end of each move of a plan of `qmv40 move`: `[[name, [x, y, z]], …]`. */
export function endsOfMoves(plan) { return plan.moves.map((move) => [move.name, [move.end.X, move.end.Y, move.end.Z]]); }
