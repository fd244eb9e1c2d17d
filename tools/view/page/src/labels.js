// Words in the picture: numbers of the moves, names of the parts, and the directions of the axes. They are text of the
// page, so that they stay sharp, and they move apart, so that they can be read.

import { Vector3 } from "three";
import { element } from "./document.js";

const gap = 3; // pixels between two labels
// Possible places of a label: right and down of its point, in halves of its size, and a distance in pixels.
const near = 9;
const far = 24;
const places = [near, far].flatMap((off) =>
    [[0, -1], [1, 0], [-1, 0], [0, 1], [1, -1], [-1, -1], [1, 1], [-1, 1]].map(([right, down]) => [right, down, off]));
const arm = 34; // of the triad, in its own units

class Label {
    constructor(parent, className) {
        this.element = element("span", `label ${className}`);
        parent.append(this.element);
    }

    say(text) {
        if (this.element.textContent === text) return;
        this.element.textContent = text;
        this.size = null;
    }

    emphasise(isCurrent) {
        if (this.element.classList.contains("current") === isCurrent) return;
        this.element.classList.toggle("current", isCurrent);
        this.size = null;
    }

    measure() {
        this.size ??= { width: this.element.offsetWidth, height: this.element.offsetHeight };
        return this.size;
    }
}

function pixelOf(at, camera, width, height) {
    const seen = at.clone().project(camera);
    return { x: (seen.x + 1) * width / 2, y: (1 - seen.y) * height / 2, z: seen.z };
}

function overlaps(one, other) {
    return one.left < other.right + gap && other.left < one.right + gap && one.top < other.bottom + gap && other.top < one.bottom + gap;
}

export class Labels {
    constructor(element) {
        this.element = element;
        this.labels = [];
    }

    /** `where()` gives the point that the label names, or null. The lower the rank, the sooner it is shown. */
    add(className, rank, where) {
        const label = new Label(this.element, className);
        Object.assign(label, { rank, where });
        this.labels.push(label);
        return label;
    }

    remove(labels) {
        labels.forEach((label) => label.element.remove());
        this.labels = this.labels.filter((label) => !labels.includes(label));
    }

    /** To be called when the size of the letters may have changed. */
    measureAgain() { this.labels.forEach((label) => { label.size = null; }); }

    /** The places round the point where the label may stand, the best first. */
    boxesOf(label, camera, width, height) {
        const at = label.where();
        if (!at) return [];
        const seen = pixelOf(at, camera, width, height);
        const { width: w, height: h } = label.measure();
        const boxes = places.map(([right, down, off]) => {
            const x = seen.x + right * (w / 2 + off);
            const y = seen.y + down * (h / 2 + off);
            return { left: x - w / 2, right: x + w / 2, top: y - h / 2, bottom: y + h / 2 };
        });
        const isInside = (box) => box.left > 0 && box.right < width && box.top > 0 && box.bottom < height;
        return Math.abs(seen.z) < 1 ? boxes.filter(isInside) : [];
    }

    /**
     * `taken`: boxes that no label may touch. `free`: solids that no label may cover, and points of lines; labels cover
     * as few of these points as possible. A label without a place is not shown.
     */
    place(camera, width, height, taken, free) {
        const about = (at, size) => {
            const { x, y } = pixelOf(at, camera, width, height);
            return { left: x - size, right: x + size, top: y - size, bottom: y + size };
        };
        const boxes = [...taken, ...free.solids.map(({ at, pixels }) => about(at, pixels))];
        const lines = free.lines.map((point) => about(point, 1));
        for (const label of [...this.labels].sort((one, other) => one.rank - other.rank)) {
            const possible = this.boxesOf(label, camera, width, height).filter((box) => !boxes.some((other) => overlaps(box, other)));
            const covered = (box) => lines.filter((line) => overlaps(box, line)).length;
            let best = null;
            for (const box of possible) {
                const cost = covered(box);
                if (best === null || cost < best.cost) best = { box, cost };
                if (cost === 0) break;
            }
            label.element.style.visibility = best ? "visible" : "hidden";
            if (!best) continue;
            label.element.style.transform = `translate(${Math.round(best.box.left)}px, ${Math.round(best.box.top)}px)`;
            boxes.push(best.box);
        }
    }
}

const axes = [["x", new Vector3(1, 0, 0)], ["y", new Vector3(0, 1, 0)], ["z", new Vector3(0, 0, 1)]];

function drawing(tag, attributes, text = "") {
    const made = document.createElementNS("http://www.w3.org/2000/svg", tag);
    for (const [name, value] of Object.entries(attributes)) made.setAttribute(name, value);
    made.textContent = text;
    return made;
}

/** The letter is beside the tip of its axis. For an axis towards the eye it is beside the middle. */
function placeOfLetter(to) {
    const length = Math.hypot(to.x, to.y);
    return length < 0.3 ? { x: -0.4 * arm, y: 0.4 * arm } : { x: to.x * arm + 9 * to.x / length, y: -to.y * arm - 9 * to.y / length };
}

/** Draws the machine's axes as they are in the picture. Axes that point away from the eye are drawn first. */
export function drawTriad(element, camera) {
    const turnBack = camera.quaternion.clone().invert();
    const seen = axes.map(([name, direction]) => ({ name, to: direction.clone().applyQuaternion(turnBack) }));
    seen.sort((one, other) => one.to.z - other.to.z);
    element.replaceChildren(...seen.flatMap(({ name, to }) => [
        drawing("line", { x1: 0, y1: 0, x2: arm * to.x, y2: -arm * to.y, class: name }),
        drawing("text", { ...placeOfLetter(to), class: name }, name.toUpperCase()),
    ]));
}
