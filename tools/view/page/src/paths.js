// The path of the machine, move by move: a line in the colour of the move's level, with arrows on it.

import { ConeGeometry, Group, Mesh, MeshBasicMaterial } from "three";
import { Line2 } from "three/addons/lines/Line2.js";
import { LineGeometry } from "three/addons/lines/LineGeometry.js";
import { LineMaterial } from "three/addons/lines/LineMaterial.js";
import { aim, vector } from "./solids.js";

// Levels can be told apart without colour: each has its own dashes (millimetres of line and gap) and line width, as in
// the drawings.
const dashes = { clear: null, tight: [2.6, 0.9], contact: null, finding: [0.9, 0.7] };
const weights = { clear: 1, tight: 1.2, contact: 1.7, finding: 2 };
const widths = { done: 1.6, current: 4, coming: 2 }; // pixels
const opacities = { done: 0.4, current: 1, coming: 0.9 };
// Not the middle, so that the arrows of a move and of its return on the same line are apart.
const arrowPlace = 0.68;
const millimetresAnArrow = 40;
const mostArrows = 20;
const arrowPixels = 16;
const arrowSlenderness = 2.2;
const shortest = 1e-6;

/** The point at a share of the way, 0 to 1, and the direction there. */
function along(points, lengths, share) {
    const wanted = share * lengths.at(-1);
    const i = Math.max(1, lengths.findIndex((length) => length >= wanted));
    const step = lengths[i] - lengths[i - 1];
    const at = points[i - 1].clone().lerp(points[i], step > 0 ? (wanted - lengths[i - 1]) / step : 0);
    return { at, direction: points[i].clone().sub(points[i - 1]).normalize() };
}

function lengthsOf(points) {
    const lengths = [0];
    for (let i = 1; i < points.length; ++i) lengths.push(lengths[i - 1] + points[i].distanceTo(points[i - 1]));
    return lengths;
}

class MovePath {
    constructor(move, colours) {
        this.level = move.level;
        this.group = new Group();
        this.points = move.samples.filter((sample) => sample.at.every(Number.isFinite)).map((sample) => vector(sample.at));
        this.lengths = lengthsOf(this.points);
        this.length = this.lengths.at(-1);
        this.arrows = [];
        if (this.length > shortest) this.draw(colours);
    }

    get middle() { return this.length > shortest ? along(this.points, this.lengths, 0.5).at : this.points[0]; }

    draw(colours) {
        const geometry = new LineGeometry();
        geometry.setPositions(this.points.flatMap((point) => point.toArray()));
        const [dashSize, gapSize] = dashes[this.level] ?? [1, 0];
        const look = { dashed: Boolean(dashes[this.level]), dashSize, gapSize, transparent: true };
        this.material = colours.paint(new LineMaterial(look), this.level);
        this.line = new Line2(geometry, this.material);
        this.line.computeLineDistances();
        this.arrowMaterial = colours.paint(new MeshBasicMaterial({ transparent: true }), this.level);
        this.group.add(this.line);
        this.addArrows();
    }

    addArrows() {
        const count = Math.min(Math.max(1, Math.round(this.length / millimetresAnArrow)), mostArrows);
        for (let i = 0; i < count; ++i) {
            const { at, direction } = along(this.points, this.lengths, (i + arrowPlace) / count);
            const arrow = new Mesh(new ConeGeometry(1 / arrowSlenderness, 1, 20), this.arrowMaterial);
            aim(arrow, at, at.clone().add(direction));
            this.arrows.push(arrow);
            this.group.add(arrow);
        }
    }

    /** `when`: done, current or coming. The current move is drawn over everything else. */
    emphasise(when) {
        if (!this.line) return;
        const isCurrent = when === "current";
        this.material.linewidth = widths[when] * weights[this.level];
        this.arrowScale = isCurrent ? 1.4 : 1;
        for (const material of [this.material, this.arrowMaterial]) {
            material.opacity = opacities[when];
            material.depthTest = !isCurrent;
        }
        [this.line, ...this.arrows].forEach((object) => { object.renderOrder = isCurrent ? 10 : 1; });
    }

    /** Gives arrows the same size on the screen, but at most half the length of their move. */
    scaleArrows(millimetresAPixel) {
        for (const arrow of this.arrows) {
            const size = Math.min(arrowPixels * this.arrowScale * millimetresAPixel(arrow.position), this.length / 2);
            arrow.scale.setScalar(size);
        }
    }

    dispose() {
        this.group.traverse((object) => object.geometry?.dispose());
        this.material?.dispose();
        this.arrowMaterial?.dispose();
    }
}

export class Paths {
    constructor(plan, colours) {
        this.moves = plan.moves.map((move) => new MovePath(move, colours));
        this.group = new Group();
        this.group.add(...this.moves.map((move) => move.group));
    }

    get points() { return this.moves.flatMap((move) => move.points); }

    /** The place for the number of a move; null for a move that was not run. */
    middleOf(index) { return this.moves[index].middle ?? null; }

    show(current) {
        this.moves.forEach((move, i) => move.emphasise(i < current ? "done" : i === current ? "current" : "coming"));
    }

    scaleArrows(millimetresAPixel) { this.moves.forEach((move) => move.scaleArrows(millimetresAPixel)); }

    dispose() { this.moves.forEach((move) => move.dispose()); }
}
