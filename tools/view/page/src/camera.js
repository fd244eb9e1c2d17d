// The views of the picture: two in perspective, one of the whole that the user turns and one of the contact, and three
// along the machine's axes, to scale.

import { Box3, MOUSE, OrthographicCamera, PerspectiveCamera, TOUCH, Vector3 } from "three";
import { OrbitControls } from "three/addons/controls/OrbitControls.js";

const fieldOfView = 32; // degrees
const halfField = (fieldOfView / 2) * (Math.PI / 180);
const distances = { near: 1, far: 20000 }; // mm
// A margin for the buttons and the triad: the points fill 1 / rim of the picture.
const rim = 1.1;
// Almost vertical from above: exactly vertical, the direction of +Y on the screen would be undefined.
const almostAbove = 1e-4;
const vertical = new Vector3(0, 0, 1);

// The contact is seen from the side without head and lever, a little from above, and far enough from the line through
// head and sphere that the gap between them is visible.
const besideContact = 0.6; // radians
// The eye's height above the contact, as a multiple of its horizontal distance; and how much lower the eye is when the
// cup is open downwards.
const aboveContact = 0.4;
const belowOpening = 0.8;
const contactReach = 62; // mm about the sphere that are seen

/** From the middle of the picture towards the eye. */
const directions = {
    free: new Vector3(0.75, -1, 0.62).normalize(),
    top: new Vector3(0, -almostAbove, 1).normalize(),
    front: new Vector3(0, -1, 0),
    side: new Vector3(1, 0, 0),
};

export class Views {
    /** `sphere`: where contacts are made; `right`: the head's +X as it is mounted. */
    constructor(element, sphere, right, onChange) {
        this.element = element;
        this.sphere = sphere;
        this.mountedTurn = Math.atan2(right.y, right.x);
        this.isWithHead = false;
        this.elevation = aboveContact;
        this.perspective = new PerspectiveCamera(fieldOfView, 1, distances.near, distances.far);
        this.parallel = new OrthographicCamera(-1, 1, 1, -1, distances.near, distances.far);
        for (const camera of [this.perspective, this.parallel]) camera.up.set(0, 0, 1);
        this.controls = new OrbitControls(this.perspective, element);
        this.controls.addEventListener("change", onChange);
        // When the user turns the picture, it stops following the contact.
        this.controls.addEventListener("start", () => this.leaveContact());
        this.onChange = onChange;
        this.name = "free";
        this.points = [];
    }

    get camera() { return this.controls.object; }
    get isParallel() { return this.name !== "free" && this.name !== "contact"; }

    setView(name) {
        this.name = name;
        this.controls.object = this.isParallel ? this.parallel : this.perspective;
        // Dragging turns the free view and moves the others.
        this.controls.enableRotate = !this.isParallel;
        this.controls.mouseButtons.LEFT = this.isParallel ? MOUSE.PAN : MOUSE.ROTATE;
        this.controls.touches.ONE = this.isParallel ? TOUCH.PAN : TOUCH.ROTATE;
        if (name === "contact") this.lookAtContact();
        else this.look(this.directionOf(name));
    }

    /** Along the machine's axes, or along the head's own, as it is mounted. */
    directionOf(name) {
        const direction = directions[name].clone();
        return this.isParallel && this.isWithHead ? direction.applyAxisAngle(vertical, this.mountedTurn) : direction;
    }

    /** The head's new place. The view of the contact looks into a cup from below when the cup is open downwards. */
    follow(at, openDownwards) {
        this.headAt = at;
        this.elevation = aboveContact - openDownwards * belowOpening;
        if (this.name === "contact") this.lookAtContact();
    }

    /** Looks at the contact from the side on which the head is not. */
    lookAtContact() {
        const away = this.headAt ? this.sphere.clone().sub(this.headAt).setZ(0) : directions.free.clone();
        if (away.length() < 1) return; // the head is straight above the sphere: keep the direction
        const direction = away.normalize().applyAxisAngle(vertical, besideContact).setZ(this.elevation).normalize();
        const reach = contactReach / Math.min(1, this.perspective.aspect);
        this.controls.target.copy(this.sphere);
        this.camera.position.copy(this.sphere).addScaledVector(direction, reach / Math.tan(halfField));
        this.controls.update();
        this.onChange();
    }

    /** The points that must be visible. */
    enclose(points) { this.points = points; }

    /** Shows everything, from the present direction. */
    fit() {
        if (this.name === "contact") this.lookAtContact();
        else this.look(this.camera.position.clone().sub(this.controls.target).normalize());
    }

    look(direction) {
        const { camera } = this;
        camera.position.copy(direction);
        camera.lookAt(0, 0, 0);
        const { middle, around } = this.seenFrom(camera.quaternion);
        const distance = this.isParallel ? this.fitParallel(around) : this.fitPerspective(around);
        this.controls.target.copy(middle);
        camera.position.copy(middle).addScaledVector(direction, distance);
        camera.updateProjectionMatrix();
        this.controls.update();
        this.onChange();
    }

    /** The middle of the points that must be visible, and the points relative to it: to the right, up, towards the eye. */
    seenFrom(turn) {
        const turnBack = turn.clone().invert();
        const seen = this.points.map((point) => point.clone().applyQuaternion(turnBack));
        const middle = new Box3().setFromPoints(seen).getCenter(new Vector3());
        seen.forEach((point) => point.sub(middle));
        return { middle: middle.applyQuaternion(turn), around: seen };
    }

    fitPerspective(around) {
        const tangent = Math.tan(halfField) / rim;
        const { aspect } = this.perspective;
        return Math.max(...around.map((point) => point.z + Math.max(Math.abs(point.y), Math.abs(point.x) / aspect) / tangent));
    }

    fitParallel(around) {
        const { right, top } = this.parallel;
        const zooms = around.map((point) => Math.min(right / Math.abs(point.x), top / Math.abs(point.y)));
        this.parallel.zoom = Math.min(...zooms) / rim;
        return 2 * Math.max(...around.map((point) => point.length()));
    }

    resize(width, height) {
        this.height = height;
        this.perspective.aspect = width / height;
        Object.assign(this.parallel, { left: -width / 2, right: width / 2, top: height / 2, bottom: -height / 2 });
        for (const camera of [this.perspective, this.parallel]) camera.updateProjectionMatrix();
    }

    /** Turns the view by angles in radians, about the vertical and upwards. A view along an axis becomes the free view. */
    orbit(around, upwards) {
        const offset = this.camera.position.clone().sub(this.controls.target);
        if (this.isParallel) this.setView("free");
        this.name = "free";
        const azimuth = Math.atan2(offset.y, offset.x) - around;
        const height = Math.asin(offset.z / offset.length()) + upwards;
        const elevation = Math.min(Math.max(height, -Math.PI / 2 + almostAbove), Math.PI / 2 - almostAbove);
        const distance = this.camera.position.distanceTo(this.controls.target);
        const flat = distance * Math.cos(elevation);
        this.camera.position.copy(this.controls.target)
            .add(new Vector3(flat * Math.cos(azimuth), flat * Math.sin(azimuth), distance * Math.sin(elevation)));
        this.controls.update();
        this.onChange();
    }

    leaveContact() {
        if (this.name === "contact") this.name = "free";
        this.onTurned?.();
    }

    zoom(factor) {
        this.leaveContact();
        const { camera } = this;
        if (this.isParallel) camera.zoom *= factor;
        else camera.position.sub(this.controls.target).divideScalar(factor).add(this.controls.target);
        camera.updateProjectionMatrix();
        this.controls.update();
        this.onChange();
    }

    /** The size of a pixel at a point, in millimetres. */
    millimetresAPixel(point) {
        if (this.isParallel) return 1 / this.parallel.zoom;
        const distance = point.distanceTo(this.perspective.position);
        return (2 * distance * Math.tan(halfField)) / this.height;
    }
}
