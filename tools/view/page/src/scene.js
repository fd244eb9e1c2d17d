// The picture: pole sphere, safe height, path and head. It is drawn only when something in it has changed.

import {
    Box3, BufferGeometry, DirectionalLight, DoubleSide, Group, HemisphereLight, Line, LineBasicMaterial, LineDashedMaterial,
    LineLoop, Mesh, MeshBasicMaterial, MeshLambertMaterial, PlaneGeometry, Scene, Vector3, WebGLRenderer,
} from "three";
import { Views } from "./camera.js";
import { Colours } from "./colours.js";
import { byId, leverText } from "./document.js";
import { Head, headReach } from "./head.js";
import { drawTriad, Labels } from "./labels.js";
import { Paths } from "./paths.js";
import { vector } from "./solids.js";
import { Surroundings } from "./surroundings.js";

// Lengths are in millimetres.
// How far the plane of the safe height extends beyond the path.
const planeMargin = 25;
// Half the length of the drawn A axis.
const axisReach = 34;
// Points of a mistyped plan that are farther from the pole sphere have no influence on what the views show.
const farthest = 1000;
// The axes are drawn after the paths (1) and before the current move (10): see paths.js.
const axisOrder = 5;
// Labels avoid every fifth point of the paths.
const pointsBetweenLooks = 5;

/** Points about the head's centre that enclose the drawn head. */
const outlineOfHead = [-headReach.aside, headReach.aside].flatMap((aside) => [-headReach.down, headReach.up].flatMap((z) =>
    [new Vector3(aside, 0, z), new Vector3(0, aside, z)]));

const noWebGl = "No 3-D picture: this browser has no WebGL 2, or it is switched off. Numbers, findings and drawings are all here.";
const lostWebGl = "No 3-D picture any more: the browser gave up its graphics. Loading the page again may bring it back.";

function dashedLine(from, to, material) {
    const line = new Line(new BufferGeometry().setFromPoints([from, to]), material);
    line.computeLineDistances();
    line.renderOrder = axisOrder;
    return line;
}

/** Throws an error with a sentence for the reader when there is no WebGL. */
function rendererFor(canvas) {
    const context = canvas.getContext("webgl2", { antialias: true, alpha: true });
    if (!context) throw new Error(noWebGl);
    return new WebGLRenderer({ canvas, context, antialias: true, alpha: true });
}

export class Picture {
    /**
     * Throws an error with a sentence for the reader when there can be no picture. `onLost` is called with such a
     * sentence when the browser gives up the picture later.
     */
    constructor(theDocument, onLost) {
        this.document = theDocument;
        this.element = byId("scene");
        this.canvas = document.createElement("canvas");
        this.renderer = rendererFor(this.canvas);
        this.element.prepend(this.canvas);
        this.colours = new Colours(document.documentElement);
        this.labels = new Labels(byId("labels"));
        this.origin = vector(theDocument.sphere.centre);
        this.views = new Views(this.canvas, this.origin, vector(theDocument.mounting.right), () => this.requestDrawing());
        this.views.onTurned = () => this.markView();
        this.scene = new Scene();
        this.addLight();
        this.addSurroundings();
        this.connect(onLost);
    }

    connect(onLost) {
        this.canvas.addEventListener("webglcontextlost", () => onLost(lostWebGl));
        matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => this.refreshColours());
        new ResizeObserver(() => this.resize()).observe(this.element);
        byId("fit").addEventListener("click", () => this.views.fit());
        for (const button of byId("views").querySelectorAll("[data-view]")) {
            button.addEventListener("click", () => this.setView(button.dataset.view));
        }
        byId("with-head").addEventListener("click", () => this.turnWithHead());
    }

    addLight() {
        const lamp = new DirectionalLight(0xffffff, 1.7);
        lamp.position.set(-0.5, -1, 1.6);
        const fill = new DirectionalLight(0xffffff, 0.6);
        fill.position.set(1, 0.6, 0.3);
        const sky = new HemisphereLight(0xffffff, 0xb0b4ba, 1.5);
        sky.position.set(0, 0, 1);
        this.scene.add(lamp, fill, sky);
    }

    addSurroundings() {
        this.surroundings = new Surroundings(this.document, this.colours);
        this.scene.add(this.surroundings.group);
        for (const { text, at } of this.surroundings.names) this.labels.add("part", 3, () => at).say(text);
    }

    showPlan(plan, frames) {
        this.paths?.dispose();
        this.labels.remove(this.planLabels ?? []);
        this.planLabels = [];
        this.plan = plan;
        this.content?.removeFromParent();
        this.content = new Group();
        this.scene.add(this.content);
        this.pathColours = new Colours(document.documentElement);
        this.paths = new Paths(plan, this.pathColours);
        const first = frames.find((frame) => frame.sample)?.sample;
        this.head = new Head(this.document, this.pathColours, first);
        this.samples = frames.flatMap((frame) => frame.sample ?? []);
        this.content.add(this.paths.group, this.head.group);
        this.frame();
        this.addSafeHeight();
        this.addAxes();
        this.labelMoves();
        this.resize();
        this.setView(this.views.name);
    }

    /** Makes everything visible at every place of the machine. */
    frame() {
        const points = this.paths.points.filter((point) => point.distanceTo(this.origin) < farthest);
        this.pathBox = new Box3().setFromPoints([...points, this.origin]);
        const heads = points.flatMap((point) => outlineOfHead.map((offset) => point.clone().add(offset)));
        this.views.enclose([this.origin, this.surroundings.foot, ...heads, ...this.tips()]);
    }

    /** The places of the stylus tip. */
    tips() {
        const length = this.document.stylus?.length ?? 0;
        const tips = this.samples.map((sample) => vector(sample.at).addScaledVector(vector(sample.stylus), length));
        return tips.filter((tip) => tip.distanceTo(this.origin) < farthest);
    }

    addSafeHeight() {
        const { safeHeight } = this.document;
        if (!Number.isFinite(safeHeight)) return;
        const { min, max } = this.pathBox.clone().expandByScalar(planeMargin);
        const corners = [[min.x, min.y], [max.x, min.y], [max.x, max.y], [min.x, max.y]]
            .map(([x, y]) => new Vector3(x, y, safeHeight));
        const look = { transparent: true, depthWrite: false };
        const tint = this.pathColours.paint(new MeshBasicMaterial({ ...look, opacity: 0.1, side: DoubleSide }), "safe");
        const plane = new Mesh(new PlaneGeometry(max.x - min.x, max.y - min.y), tint);
        plane.position.set((min.x + max.x) / 2, (min.y + max.y) / 2, safeHeight);
        const rim = new LineLoop(new BufferGeometry().setFromPoints(corners),
                                 this.pathColours.paint(new LineBasicMaterial({ ...look, opacity: 0.6 }), "safe"));
        this.content.add(plane, rim);
        this.addLabel("part safe", 4, "Safe height", () => corners[3]);
    }

    /** The A axis, which turns with B, and the vertical B axis. Both are visible through the head. */
    addAxes() {
        const look = { dashSize: 3, gapSize: 1.5, depthTest: false, transparent: true };
        const dashed = this.pathColours.paint(new LineDashedMaterial(look), "axis");
        const high = new Vector3(0, 0, headReach.up - 4);
        this.axisA = dashedLine(new Vector3(0, -axisReach, 0), new Vector3(0, axisReach, 0), dashed);
        this.head.group.add(this.axisA, dashedLine(new Vector3(0, 0, -axisReach / 2), high, dashed));
        this.addHeadLabel("part axis", 1, "A", () => this.head.tiltAxis.clone().multiplyScalar(axisReach));
        this.addHeadLabel("part axis", 1, "B", () => high);
        this.leverLabels = this.head.levers.levers.map((lever) =>
            this.addHeadLabel("part", 2, "", () => lever.pivot.clone().setZ(lever.pivot.z + 5)));
    }

    /** A label that moves with the head, at `offset()` from its centre. */
    addHeadLabel(className, rank, text, offset) {
        return this.addLabel(className, rank, text, () => this.head.at ? offset().clone().add(this.head.at) : null);
    }

    addLabel(className, rank, text, where) {
        const label = this.labels.add(className, rank, where);
        label.say(text);
        this.planLabels.push(label);
        return label;
    }

    labelMoves() {
        this.moveLabels = this.plan.moves.map((move, i) =>
            this.addLabel(`move ${move.level}`, 10 + i, String(i + 1), () => this.paths.middleOf(i)));
    }

    showFrame(frame, { frame: ahead, fraction }) {
        this.paths.show(frame.move);
        this.moveLabels.forEach((label, i) => {
            const isCurrent = i === frame.move;
            label.rank = isCurrent ? 0 : 10 + Math.abs(i - frame.move);
            label.emphasise(isCurrent);
        });
        byId("caption").textContent = `${frame.move + 1} ${this.plan.moves[frame.move].name}`;
        if (frame.sample) this.showHead(frame, ahead.sample ?? frame.sample, fraction);
        this.requestDrawing();
    }

    showHead(frame, ahead, fraction) {
        const { sample } = frame;
        if (![...sample.at, ...sample.tiltAxis, ...sample.stylus].every(Number.isFinite)) return;
        this.head.show(sample, ahead, fraction);
        this.views.follow(this.head.at, this.head.openDownwards(this.origin));
        this.head.group.updateMatrixWorld();
        this.axisA.quaternion.setFromUnitVectors(new Vector3(0, 1, 0), this.head.tiltAxis);
        this.head.levers.show(sample.lever, sample.leverPushed || ahead.leverPushed ? this.head.at : null);
        this.leverLabels.forEach((label, i) => label.say(`${this.document.levers[i].side} lever, ${leverText(sample)}`));
    }

    setView(name) {
        this.views.setView(name);
        this.markView();
    }

    markView() {
        for (const button of byId("views").querySelectorAll("[data-view]")) {
            button.setAttribute("aria-pressed", String(button.dataset.view === this.views.name));
        }
    }

    /** The views along the axes follow the head's own axes, or the machine's again. */
    turnWithHead() {
        this.views.isWithHead = !this.views.isWithHead;
        byId("with-head").setAttribute("aria-pressed", String(this.views.isWithHead));
        this.setView(this.views.name);
    }

    orbit(around, upwards) {
        this.views.orbit(around, upwards);
        this.markView();
    }

    refreshColours() {
        this.colours.refresh();
        this.pathColours.refresh();
        this.requestDrawing();
    }

    resize() {
        const { clientWidth: width, clientHeight: height } = this.element;
        if (width === 0 || height === 0) return;
        this.renderer.setPixelRatio(window.devicePixelRatio);
        this.renderer.setSize(width, height);
        this.views.resize(width, height);
        this.labels.measureAgain();
        if (this.plan) this.views.fit();
    }

    requestDrawing() {
        this.pending ??= requestAnimationFrame(() => {
            this.pending = undefined;
            this.draw();
        });
    }

    draw() {
        if (!this.paths) return;
        const { camera } = this.views;
        this.paths.scaleArrows((point) => this.views.millimetresAPixel(point));
        this.renderer.render(this.scene, camera);
        this.labels.place(camera, this.element.clientWidth, this.element.clientHeight, this.takenBoxes(), this.keptFree());
        drawTriad(byId("triad"), camera);
    }

    /** Balls that no label may cover, and points of the paths that labels should not cover. */
    keptFree() {
        const { radius } = this.document.sphere;
        const solids = [{ at: this.origin, radius }];
        if (this.head?.at) {
            for (const at of this.head.contacts()) solids.push({ at, radius });
        }
        const pixel = (point) => 1 / this.views.millimetresAPixel(point);
        return {
            solids: solids.map(({ at, radius: size }) => ({ at, pixels: size * pixel(at) })),
            lines: this.paths.points.filter((_, i) => i % pointsBetweenLooks === 0),
        };
    }

    /** The boxes of buttons and legend, which no label may touch. */
    takenBoxes() {
        const { left, top } = this.element.getBoundingClientRect();
        return ["views", "legend", "triad", "caption"].map(byId).map((element) => {
            const box = element.getBoundingClientRect();
            return { left: box.left - left, right: box.right - left, top: box.top - top, bottom: box.bottom - top };
        });
    }
}
