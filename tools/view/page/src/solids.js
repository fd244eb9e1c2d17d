// The shapes that the picture consists of. Millimetres, Z up.

import { BoxGeometry, CylinderGeometry, EdgesGeometry, LineSegments, Mesh, SphereGeometry, Vector3 } from "three";

const roundness = 40;
// Degrees. Edges between the facets of a round surface are flatter.
const sharpEdge = 35;
const alongY = new Vector3(0, 1, 0);

export const vector = (numbers) => new Vector3(...numbers);

/** Moves and turns an object that was made along Y, so that it points from `from` to `to`. */
export function aim(object, from, to) {
    object.position.copy(from);
    object.quaternion.setFromUnitVectors(alongY, to.clone().sub(from).normalize());
}

export function cylinder(from, to, radius, material, radiusAtEnd = radius) {
    const length = from.distanceTo(to);
    const mesh = new Mesh(new CylinderGeometry(radiusAtEnd, radius, length, roundness), material);
    mesh.geometry.translate(0, length / 2, 0);
    aim(mesh, from, to);
    return mesh;
}

export function ball(at, radius, material) {
    const mesh = new Mesh(new SphereGeometry(radius, roundness, roundness / 2), material);
    mesh.position.copy(at);
    return mesh;
}

/** A box between two opposite corners. */
export function block(corner, opposite, material) {
    const size = opposite.clone().sub(corner);
    const mesh = new Mesh(new BoxGeometry(size.x, size.y, size.z), material);
    mesh.position.copy(corner).addScaledVector(size, 0.5);
    return mesh;
}

/** The same solid with its edges drawn. */
export function outlined(mesh, edgeMaterial) {
    mesh.add(new LineSegments(new EdgesGeometry(mesh.geometry, sharpEdge), edgeMaterial));
    return mesh;
}
