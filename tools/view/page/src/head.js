// The head on its machine: body and levers, which move with the machine; the swivel, which turns with B; the tilting
// part with drive cup and stylus, which turns with A. Parts of the document have their true size; the others only show
// what they are.

import { DoubleSide, Group, LatheGeometry, LineBasicMaterial, Matrix4, Mesh, MeshLambertMaterial, Vector2, Vector3 } from "three";
import { Levers } from "./levers.js";
import { ball, block, cylinder, outlined, vector } from "./solids.js";

// In millimetres. Places are counted from the head's centre, those with "Pivots" in their name from the lever centres,
// which the document gives.
const bodyInsidePivots = 8;
const bodyBottom = 16;
const bodyAbovePivots = 20;
const ramHalfWidth = 17;
const ramHeight = 34;
const swivelBottom = 9;
const cheekInner = 13;
const cheekOuter = 18;
const tiltHalfDepth = 9;
const tiltTop = 7;
const tiltBottom = -16;
const axleRadius = 4.5;
const probeRadius = 6;
const probeBottom = -30;
// When the length of the stylus is not known.
const shortStylus = { length: 46, diameter: 2.2, tipDiameter: 4 };
const armRadius = 3;
// Of the drive cup, relative to the radius of the sphere.
const cupInside = 1.06;
const cupOutside = 1.4;
const cupFacets = 14;
const nearTheSphere = 25; // mm from cup to sphere
/** How far the drawn head reaches from its centre, to the sides, up and down. */
export const headReach = { aside: 36, up: 70, down: shortStylus.length };

const up = new Vector3(0, 0, 1);

/** Turns an object so that its own X and Z axes point along `x` and `z`. */
function turn(object, x, z) {
    const y = new Vector3().crossVectors(z, x).normalize();
    object.quaternion.setFromRotationMatrix(new Matrix4().makeBasis(new Vector3().crossVectors(y, z).normalize(), y, z));
}

/** The drive cup, open along +Y. Its origin is the centre of the pole sphere that sits in it. */
function cupGeometry(radius) {
    const profile = [];
    const inner = radius * cupInside;
    const outer = radius * cupOutside;
    for (let i = 0; i <= cupFacets; ++i) {
        const angle = (i / cupFacets) * (Math.PI / 2);
        profile.push(new Vector2(inner * Math.sin(angle), -inner * Math.cos(angle)));
    }
    profile.push(new Vector2(outer, 0), new Vector2(outer, -outer), new Vector2(0, -outer));
    return new LatheGeometry(profile, 3 * cupFacets);
}

export class Head {
    constructor(theDocument, colours, firstSample) {
        this.right = vector(theDocument.mounting.right);
        this.group = new Group();
        this.levers = new Levers(theDocument, colours);
        this.makeMaterials(colours);
        this.swivel = this.makeSwivel();
        this.stylus = theDocument.stylus ?? shortStylus;
        this.tilt = this.makeTilt(theDocument.sphere.radius, firstSample);
        this.group.add(this.makeBody(theDocument.levers), this.levers.group, this.swivel, this.tilt);
    }

    makeMaterials(colours) {
        const lit = (name, options) => colours.paint(new MeshLambertMaterial(options), name);
        const seeThrough = (opacity) => ({ transparent: true, opacity, depthWrite: false });
        this.materials = {
            ram: lit("body", seeThrough(0.2)), body: lit("body", seeThrough(0.42)),
            swivel: lit("swivel", seeThrough(0.7)), tilt: lit("tilt", seeThrough(0.8)), metal: lit("metal"),
            cup: lit("cup", { side: DoubleSide }), stylus: lit("stylus"),
            faintEdge: colours.paint(new LineBasicMaterial({ transparent: true, opacity: 0.22 }), "edge"),
            edge: colours.paint(new LineBasicMaterial({ transparent: true, opacity: 0.5 }), "edge"),
        };
    }

    /** Between the levers, and thin enough for the pole sphere to pass between it and them. The ram is above. */
    makeBody(levers) {
        const { ram, body, edge, faintEdge } = this.materials;
        const radius = Math.max(...levers.map((lever) => Math.hypot(lever.pivot[0], lever.pivot[1]))) - bodyInsidePivots;
        const top = Math.max(...levers.map((lever) => lever.pivot[2])) + bodyAbovePivots;
        const group = new Group();
        group.add(
            outlined(cylinder(new Vector3(0, 0, bodyBottom), new Vector3(0, 0, top), radius, body), edge),
            outlined(block(new Vector3(-ramHalfWidth, -ramHalfWidth, top),
                           new Vector3(ramHalfWidth, ramHalfWidth, top + ramHeight), ram), faintEdge));
        turn(group, this.right, up);
        return group;
    }

    /** A disc below the body with two cheeks that hold the tilting part. */
    makeSwivel() {
        const { swivel, edge } = this.materials;
        const group = new Group();
        const cheek = (left, right) => outlined(block(new Vector3(left, -tiltHalfDepth, -tiltHalfDepth),
                                                      new Vector3(right, tiltHalfDepth, swivelBottom), swivel), edge);
        const disc = cylinder(new Vector3(0, 0, swivelBottom), new Vector3(0, 0, bodyBottom), cheekOuter + 2, swivel);
        group.add(outlined(disc, edge), cheek(cheekInner, cheekOuter), cheek(-cheekOuter, -cheekInner));
        return group;
    }

    makeTilt(sphereRadius, firstSample) {
        const { tilt, metal, stylus, edge } = this.materials;
        const group = new Group();
        const side = cheekInner - 1;
        const down = (z) => new Vector3(0, 0, z);
        const aside = (x) => new Vector3(x, 0, 0);
        group.add(
            outlined(block(new Vector3(-side, -tiltHalfDepth, tiltBottom), new Vector3(side, tiltHalfDepth, tiltTop), tilt), edge),
            cylinder(aside(-cheekOuter - 2), aside(cheekOuter + 2), axleRadius, metal),
            outlined(cylinder(down(tiltBottom), down(probeBottom), probeRadius, metal), edge),
            cylinder(down(0), down(-this.stylus.length), this.stylus.diameter / 2, stylus),
            ball(down(-this.stylus.length), this.stylus.tipDiameter / 2, stylus));
        if (firstSample) this.addCup(group, sphereRadius, firstSample);
        return group;
    }

    /** The cup is rigid with the tilting part: where it is in one sample says where it is in all. */
    addCup(group, sphereRadius, sample) {
        const { cup, metal } = this.materials;
        turn(group, vector(sample.tiltAxis).negate(), vector(sample.stylus).negate());
        const at = vector(sample.cup).sub(vector(sample.at)).applyQuaternion(group.quaternion.clone().invert());
        const mesh = new Mesh(cupGeometry(sphereRadius), cup);
        mesh.position.copy(at);
        const behind = at.clone().setY(at.y - sphereRadius * cupInside);
        group.add(mesh, cylinder(at.clone().setY(0), behind, armRadius, metal));
    }

    /** Between two samples that are a millimetre or a degree apart a straight line is as good as the arc. */
    show(sample, ahead, fraction) {
        const between = (name) => vector(sample[name]).lerp(vector(ahead[name]), fraction);
        this.at = between("at");
        this.cup = between("cup");
        this.tiltAxis = between("tiltAxis").normalize();
        const stylus = between("stylus").normalize();
        this.opening = stylus.clone().cross(this.tiltAxis);
        this.group.position.copy(this.at);
        turn(this.swivel, this.tiltAxis.clone().negate().setZ(0).normalize(), up);
        turn(this.tilt, this.tiltAxis.clone().negate(), stylus.negate());
    }

    /** 1 when the cup is open straight down; 0 when it is open to the side, or is far from the sphere. */
    openDownwards(sphere) {
        const isNear = this.cup.distanceTo(sphere) < nearTheSphere;
        return isNear ? Math.max(0, -this.opening.z) : 0;
    }

    /** The places at which the head touches: the cup and the levers' balls. */
    contacts() { return [this.cup, ...this.levers.balls(this.at)]; }
}
