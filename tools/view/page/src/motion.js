// The points of a move, computed from its closed form. A page of many plans has no samples, because they would make it
// too large. A test compares these points with the tool's own samples.

const degree = Math.PI / 180;
// The spacing of the tool's samples: millimetres along a line, degrees along an arc.
const spacing = { line: 1, arc: 1 };
const mostSteps = 10000; // as in the tool

const plus = (one, other, factor = 1) => one.map((value, i) => value + factor * other[i]);
const dot = (one, other) => one.reduce((sum, value, i) => sum + value * other[i], 0);
const cross = ([a, b, c], [x, y, z]) => [b * z - c * y, c * x - a * z, a * y - b * x];
const distance = (one, other) => Math.hypot(...plus(other, one, -1));

/** `vector` after a right-handed turn about a unit axis. */
function turned(vector, axis, degrees) {
    const [c, s] = [Math.cos(degrees * degree), Math.sin(degrees * degree)];
    const along = dot(axis, vector) * (1 - c);
    const across = cross(axis, vector);
    return vector.map((value, i) => c * value + s * across[i] + along * axis[i]);
}

function positionAt({ start, end, arc }, fraction) {
    if (!arc) return plus(start, plus(end, start, -1), fraction);
    return plus(arc.centre, turned(plus(start, arc.centre, -1), arc.axis, arc.degrees * fraction));
}

/** The axes of the tilting part: the mounted axes turned by B about the vertical, then by A about -x. */
function frameOf({ right, forward }, A, B) {
    const up = [0, 0, 1];
    const x = turned(right, up, B);
    const y = turned(forward, up, B);
    const tilted = (vector) => turned(vector, x, -A);
    return { x, y: tilted(y), z: tilted(up) };
}

/** The smaller one of the clearances to sphere and levers; null when the move must touch. */
function clearanceAt(theDocument, move, { at, cup }, lever) {
    if (move.mustTouch !== "") return null;
    const { sphere, levers, leverBallRadius } = theDocument;
    const place = plus(sphere.centre, at, -1);
    const toLevers = levers.flatMap((each) => [each.pivot, lever === "locked" ? each.locked : each.unlocked])
        .map((end) => distance(end, place) - leverBallRadius);
    return Math.min(distance(at, sphere.centre) - sphere.radius, distance(cup, sphere.centre) - sphere.radius, ...toLevers);
}

function isOnPegAt({ arc, before, after }, fraction) {
    if (fraction === 1) return after.onPeg;
    return fraction === 0 || arc ? before.onPeg : before.onPeg && after.onPeg;
}

function sampleAt(theDocument, move, fraction) {
    const { motion } = move;
    const { before, after } = motion;
    const at = positionAt(motion, fraction);
    const A = before.A + (after.A - before.A) * fraction;
    const B = before.B + (after.B - before.B) * fraction;
    const { x, y, z } = frameOf(theDocument.mounting, A, B);
    const { right, forward } = theDocument.mounting;
    const mounted = theDocument.driveCup;
    const offset = [dot(mounted, right), dot(mounted, forward), mounted[2]];
    const cup = [x, y, z].reduce((sum, axis, i) => plus(sum, axis, offset[i]), at);
    return {
        at, A, B, cup, tiltAxis: x.map((value) => -value), stylus: z.map((value) => -value),
        clearance: clearanceAt(theDocument, move, { at, cup }, before.lever),
        lever: (fraction === 1 ? after : before).lever, onPeg: isOnPegAt(motion, fraction),
        leverPushed: fraction < 1 && motion.pushesLever && (fraction > 0 || before.leverPushed),
    };
}

function stepsOf({ start, end, arc }) {
    const steps = arc ? Math.abs(arc.degrees) / spacing.arc : distance(start, end) / spacing.line;
    return Math.max(1, Math.min(Math.ceil(steps), mostSteps));
}

/** The samples of one straight way or arc. */
function samplesAlong(theDocument, move) {
    const steps = stepsOf(move.motion);
    return Array.from({ length: steps + 1 }, (_, i) => sampleAt(theDocument, move, i / steps));
}

/** The samples of a move, the way to it before them; none when it was not run. */
export function samplesOf(theDocument, move) {
    if (!move.motion) return [];
    const { motion } = move;
    const legs = motion.way.slice(1).map((end, i) => 
        ({ start: motion.way[i], end, arc: null, pushesLever: false, before: motion.before, after: motion.before }));
    return [...legs, motion].flatMap((part) => samplesAlong(theDocument, { ...move, motion: part }));
}

/** Gives every move of a plan its samples, where the document does not hold them. */
export function fillSamples(theDocument, plan) {
    for (const move of plan.moves) {
        if (move.samples.length === 0) move.samples = samplesOf(theDocument, move);
    }
}
