// Reads the document that qmv40 view put into the page, writes its numbers as text, and lists its samples in the order
// of the machine's path. Every number that is shown is a number of the document.

export const byId = (id) => document.getElementById(id);

/** An element that contains texts and elements. A text is never markup: the document's texts may contain any character. */
export function element(tag, className = "", ...content) {
    const made = document.createElement(tag);
    made.className = className;
    made.append(...content);
    return made;
}

const decimalsOfLengthsAndAngles = 3;
// The decimals that the tool prints for planned numbers.
export const plannedDecimals = 4;

/** The document. Throws with a sentence for people when there is none that can be read. */
export function readDocument() {
    try {
        return JSON.parse(document.getElementById("document").textContent);
    } catch {
        throw new Error("This page holds no plan that can be read. Make it again with qmv40 view.");
    }
}

/** A number with a fixed number of decimals and a decimal point. null becomes the text "not a number". */
export function numberText(number, decimals = decimalsOfLengthsAndAngles) {
    if (typeof number !== "number") return "not a number";
    const text = number.toFixed(decimals);
    return /^-[0.]*$/.test(text) ? text.slice(1) : text;
}

/** Without zeros at the end, for angles that are mostly whole numbers. */
function shortText(number) {
    const text = numberText(number);
    return text.includes(".") ? text.replace(/\.?0*$/, "") : text;
}

/** A clearance, or a dash when there is none because the move must touch. */
export function clearanceText(number) {
    return number === null || number === undefined ? "\u2014" : numberText(number);
}

export function anglesText(angles) {
    return `A ${shortText(angles.A)}\u00b0, B ${shortText(angles.B)}\u00b0`;
}

/** One sentence for what a level means, with the limits that the document gives. */
export function levelMeaning(level, levels) {
    const clear = levels.find((each) => each.name === "clear");
    const limit = clear ? `${shortText(clear.atLeast)} mm` : "the limit";
    return {
        clear: `clear: ${limit} of clearance or more`,
        tight: `tight: less than ${limit} of clearance`,
        contact: "contact: has to touch",
        finding: "finding: something is wrong",
    }[level];
}

/** The state of both levers, which turn together. */
export function leverText(sample) {
    if (sample.leverPushed) return "pushed part of the way";
    return sample.lever === "open" ? "unlocked" : sample.lever;
}

function stepLength(before, after) {
    if (!before || !after) return 0;
    const length = Math.hypot(...after.at.map((value, i) => value - before.at[i]));
    return Number.isFinite(length) ? length : 0;
}

/**
 * The plan's samples one after the other: `{move, sample, time, isFirst, isLast}`. `time` is the length of the path up
 * to the sample, in millimetres. A move that was not run has one frame without a sample, so that it can be chosen too.
 */
export function framesOf(plan) {
    const frames = [];
    let time = 0;
    plan.moves.forEach((move, index) => {
        const samples = move.samples.length > 0 ? move.samples : [null];
        samples.forEach((sample, i) => {
            time += i > 0 ? stepLength(samples[i - 1], sample) : 0;
            frames.push({ move: index, sample, time, isFirst: i === 0, isLast: i === samples.length - 1 });
        });
    });
    return frames;
}
