// Builds the page: the document, the player, the panels and, if the browser supports it, the picture.

import { anglesText, byId, framesOf, readDocument } from "./document.js";
import { fillSamples } from "./motion.js";
import { listAssumptions, listFindings, listMoves, offerPlans, showDrawing, showHeading, showLegend, showMachine, showMove } from "./panels.js";
import { Player } from "./player.js";
import { Picture } from "./scene.js";
import { connectPlayer, markMoves, showTime } from "./timeline.js";

const orbitStep = Math.PI / 24; // radians
const zoomStep = 1.15;
// Seconds. A browser sends no frames to a hidden page: playing continues where it was, not where it would be by now.
const longestTick = 0.25;

/** A page with at least one plan. */
class Viewer {
    constructor(theDocument) {
        this.document = theDocument;
        this.scene = null;
        this.player = new Player(() => this.show(), (step) => this.goToNeighbour(step));
    }

    get plan() { return this.document.plans[this.planIndex]; }

    start() {
        byId("work").hidden = false;
        showHeading(this.document);
        showLegend(this.document.levels);
        listAssumptions(this.document.assumptions);
        offerPlans(this.document, (index) => this.choosePlan(index));
        connectPlayer(this.player);
        this.scene = this.createSceneOrExplain();
        this.choosePlan(0);
        document.addEventListener("keydown", (event) => this.onKey(event));
    }

    /** The picture, or nothing and a sentence that says why. */
    createSceneOrExplain() {
        try {
            return new Picture(this.document, (reason) => this.explainMissingScene(reason));
        } catch (problem) {
            this.explainMissingScene(problem.message);
            return null;
        }
    }

    /** The drawings take the picture's place. */
    explainMissingScene(reason) {
        this.scene = null;
        byId("stage").append(byId("drawn"));
        document.documentElement.classList.add("flat");
        byId("no-scene").hidden = false;
        byId("no-scene").textContent = reason;
    }

    choosePlan(index) {
        const { plans } = this.document;
        this.planIndex = index;
        listMoves(this.plan, `Moves from ${anglesText(this.plan.from)} to ${anglesText(this.plan.to)}`, (move) => this.player.goToStart(move));
        // The subject of most findings is visible at the end of their move.
        listFindings(this.plan, (move) => this.player.goToEnd(move));
        showDrawing(index, plans.length);
        fillSamples(this.document, this.plan);
        const frames = framesOf(this.plan);
        this.scene?.showPlan(this.plan, frames);
        this.player.load(frames);
        markMoves(this.player, this.plan);
        showTime(this.player, this.plan);
    }

    /** Goes to the next plan (1) or to the end of the previous one (-1). Returns false when there is none. */
    goToNeighbour(step) {
        const index = this.planIndex + step;
        if (index < 0 || index >= this.document.plans.length) return false;
        this.choosePlan(index);
        byId("plan").value = String(index);
        if (step < 0) this.player.toEnd();
        return true;
    }

    show() {
        const { frame, ahead } = this.player;
        showMachine(frame.sample);
        showMove(this.plan, frame.move, this.document.levels);
        showTime(this.player, this.plan);
        this.scene?.showFrame(frame, ahead);
        if (this.player.isPlaying && !this.clock) this.clock = requestAnimationFrame((now) => this.onAnimationFrame(now, now));
    }

    /** Runs only while the plan is played, so that a page at rest uses no processor time. */
    onAnimationFrame(now, before) {
        this.clock = this.player.isPlaying ? requestAnimationFrame((next) => this.onAnimationFrame(next, now)) : 0;
        this.player.tick(Math.min((now - before) / 1000, longestTick));
    }

    onKey(event) {
        const isTyping = event.target.matches("select, summary");
        if (event.ctrlKey || event.altKey || event.metaKey || isTyping || event.defaultPrevented) return;
        const action = event.shiftKey ? this.turnAction(event.key) : this.playAction(event) ?? this.viewAction(event.key.toLowerCase());
        if (!action) return;
        event.preventDefault();
        action();
    }

    playAction(event) {
        // The space key presses the button that has the focus.
        if (event.key === " " && event.target.matches("button")) return undefined;
        return {
            " ": () => this.player.toggle(),
            ArrowRight: () => this.player.forward(), ArrowLeft: () => this.player.back(),
            ".": () => this.player.step(1), ",": () => this.player.step(-1),
            Home: () => this.player.toStart(), End: () => this.player.toEnd(),
        }[event.key];
    }

    turnAction(key) {
        return {
            ArrowLeft: () => this.scene?.orbit(orbitStep, 0), ArrowRight: () => this.scene?.orbit(-orbitStep, 0),
            ArrowUp: () => this.scene?.orbit(0, orbitStep), ArrowDown: () => this.scene?.orbit(0, -orbitStep),
            "+": () => this.scene?.views.zoom(zoomStep),
        }[key];
    }

    viewAction(key) {
        return {
            1: () => this.scene?.setView("free"), 2: () => this.scene?.setView("top"), 3: () => this.scene?.setView("front"),
            4: () => this.scene?.setView("side"), 5: () => this.scene?.setView("contact"), h: () => this.scene?.turnWithHead(), f: () => this.scene?.views.fit(),
            "+": () => this.scene?.views.zoom(zoomStep), "=": () => this.scene?.views.zoom(zoomStep), "-": () => this.scene?.views.zoom(1 / zoomStep),
        }[key];
    }
}

try {
    new Viewer(readDocument()).start();
} catch (problem) {
    byId("failure").hidden = false;
    byId("failure").textContent = problem.message;
}
