// Pole sphere with its stem, table and obstacles, in the sizes that were checked.

import { BufferAttribute, BufferGeometry, DoubleSide, Group, LineBasicMaterial, Mesh, MeshLambertMaterial, Vector3 } from "three";
import { ball, block, cylinder, outlined, vector } from "./solids.js";

// Length of the drawn stem, which has a foot, when no table is given.
const stemLength = 66;
const footRadius = 11;
const footHeight = 4;
const nameBelow = 10; // mm, from the sphere to where it is named: beside the stem, out of the way of cup and lever
const tableReach = 260;
const tableThickness = 3;
// On a surface with more triangles no edges are drawn, because they would cover it.
const mostOutlined = 2000;

/** Nine 32-bit numbers for each triangle, in base64. */
function geometryOf(surface) {
    const bytes = Uint8Array.from(atob(surface), (letter) => letter.charCodeAt(0));
    const geometry = new BufferGeometry();
    geometry.setAttribute("position", new BufferAttribute(new Float32Array(bytes.buffer), 3));
    geometry.computeVertexNormals();
    return geometry;
}

export class Surroundings {
    constructor(theDocument, colours) {
        this.document = theDocument;
        this.group = new Group();
        this.colours = colours;
        this.names = [];
        this.addSphere();
        this.addTable();
        theDocument.obstacles.forEach((obstacle) => this.addObstacle(obstacle));
    }

    /** The lowest point that must be visible. */
    get foot() { return this.bottom.clone().setZ(this.bottom.z - footHeight); }

    lit(name, options = {}) { return this.colours.paint(new MeshLambertMaterial(options), name); }

    addSphere() {
        const { sphere, stemDiameter, table } = this.document;
        const centre = vector(sphere.centre);
        const steel = this.lit("metal");
        this.bottom = centre.clone().setZ(centre.z - stemLength);
        const end = table === null ? this.bottom : centre.clone().setZ(Math.min(table, this.bottom.z));
        this.group.add(ball(centre, sphere.radius, this.lit("sphere")), cylinder(end, centre, stemDiameter / 2, steel));
        if (table === null) this.group.add(cylinder(this.foot, this.bottom, footRadius, steel));
        this.names.push({ text: "Pole sphere", at: centre.clone().setZ(centre.z - sphere.radius - nameBelow) });
    }

    addTable() {
        const { sphere, table } = this.document;
        if (table === null) return;
        const [x, y] = sphere.centre;
        const look = { transparent: true, opacity: 0.35, depthWrite: false };
        this.group.add(block(new Vector3(x - tableReach, y - tableReach, table - tableThickness),
                             new Vector3(x + tableReach, y + tableReach, table), this.lit("obstacle", look)));
        this.names.push({ text: "Table", at: new Vector3(x + tableReach / 2, y - tableReach / 2, table) });
    }

    addObstacle({ name, surface, triangles }) {
        const mesh = new Mesh(geometryOf(surface), this.lit("obstacle", { side: DoubleSide }));
        this.group.add(triangles > mostOutlined ? mesh : outlined(mesh, this.colours.paint(new LineBasicMaterial({ transparent: true, opacity: 0.6 }), "edge")));
        mesh.geometry.computeBoundingBox();
        const { max, min } = mesh.geometry.boundingBox;
        this.names.push({ text: name, at: new Vector3((max.x + min.x) / 2, (max.y + min.y) / 2, max.z) });
    }
}
