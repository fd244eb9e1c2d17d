// The two levers on the head's body in their state, and transparent in the other state.

import { Group, MeshLambertMaterial, Vector3 } from "three";
import { aim, ball, cylinder, vector } from "./solids.js";

const armRadius = 1.7;
const hubRadius = 4.2;
const hubHalfWidth = 2.6;

/** An arm from the pivot to the ball, made along Y. */
function arm(length, ballRadius, material) {
    const group = new Group();
    group.add(cylinder(new Vector3(), new Vector3(0, length, 0), armRadius, material),
              ball(new Vector3(0, length, 0), ballRadius, material));
    return group;
}

class Lever {
    constructor(description, ballRadius, right, materials) {
        this.side = description.side;
        this.pivot = vector(description.pivot);
        this.ends = { locked: vector(description.locked), open: vector(description.unlocked) };
        const length = this.pivot.distanceTo(this.ends.locked);
        this.solid = arm(length, ballRadius, materials.solid);
        this.shadow = arm(length, ballRadius, materials.shadow);
        const half = right.clone().multiplyScalar(hubHalfWidth);
        this.group = new Group();
        this.group.add(this.solid, this.shadow,
                       cylinder(this.pivot.clone().sub(half), this.pivot.clone().add(half), hubRadius, materials.hub));
    }

    /** `end`: where the ball is, from the head centre. */
    show(state, end = this.ends[state]) {
        this.end = end;
        aim(this.solid, this.pivot, end);
        aim(this.shadow, this.pivot, this.ends[state === "open" ? "locked" : "open"]);
    }
}

export class Levers {
    constructor(theDocument, colours) {
        const right = vector(theDocument.mounting.right);
        const materials = {
            solid: colours.paint(new MeshLambertMaterial(), "lever"),
            shadow: colours.paint(new MeshLambertMaterial({ transparent: true, opacity: 0.28, depthWrite: false }), "lever"),
            hub: colours.paint(new MeshLambertMaterial(), "metal"),
        };
        this.right = right;
        this.sphere = vector(theDocument.sphere.centre);
        this.levers = theDocument.levers.map((each) => new Lever(each, theDocument.leverBallRadius, right, materials));
        this.group = new Group();
        this.group.add(...this.levers.map((lever) => lever.group));
        this.addShaft(materials.hub);
    }

    /** Both levers work the one lock: pushing either turns both, so they are drawn on one shaft. */
    addShaft(material) {
        if (this.levers.length !== 2) return;
        this.group.add(cylinder(this.levers[0].pivot, this.levers[1].pivot, hubRadius / 2, material));
    }

    /** Where the balls are while the head is at `at`. */
    balls(at) { return this.levers.flatMap((lever) => lever.end ? [lever.end.clone().add(at)] : []); }

    /**
     * `pushedAt`: where the head is while the sphere pushes the nearer lever; null when it pushes none. The ball of a
     * pushed lever stays at the sphere.
     */
    show(state, pushedAt) {
        if (!pushedAt) return this.levers.forEach((lever) => lever.show(state));
        const sphere = this.sphere.clone().sub(pushedAt);
        const [touched] = this.levers.map((lever) => sphere.clone().sub(lever.pivot)).sort((one, other) => one.length() - other.length());
        const pushed = touched.projectOnPlane(this.right);
        this.levers.forEach((lever) => lever.show(state, lever.pivot.clone().add(pushed)));
    }
}
