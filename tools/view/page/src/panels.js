// Everything beside the picture: verdict, machine, move, findings and the list of moves. It works without the picture.

import { anglesText, byId, clearanceText, element, levelMeaning, leverText, numberText, plannedDecimals } from "./document.js";

// A clearance to an obstacle is computed to 0.01 mm.
const nearestDecimals = 2;

/** A level as a shape and a word, so that it can be recognised without its colour. */
function levelMark(level) {
    return element("span", `level ${level}`, element("i", "shape"), element("span", "word", level));
}

export function showHeading({ title, verdict }) {
    document.title = title;
    byId("title").textContent = title;
    byId("verdict").hidden = false;
    byId("verdict").className = `badge ${verdict.clear ? "clear" : "finding"}`;
    byId("verdict").replaceChildren(element("i", "shape"), verdict.text);
}

/** Fills the list of plans. It is hidden when there is only one plan. */
export function offerPlans(theDocument, choose) {
    const options = theDocument.plans.map(({ from, to, verdict }, i) =>
        new Option(`${i + 1}: ${anglesText(from)} to ${anglesText(to)}${verdict.clear ? "" : `, ${verdict.text}`}`, i));
    byId("plan").replaceChildren(...options);
    byId("plan").addEventListener("change", (event) => choose(Number(event.target.value)));
    byId("plan-choice").hidden = options.length < 2;
}

/** Shows only the drawing of the current plan. Shows all drawings when there is not one for each plan. */
export function showDrawing(planIndex, planCount) {
    const figures = [...byId("drawings").querySelectorAll("figure")];
    figures.forEach((figure, i) => { figure.hidden = figures.length === planCount && i !== planIndex; });
}

// The list of moves

function coordinatesText(vector) {
    return vector.map((value) => numberText(value, plannedDecimals)).join(", ");
}

/** The planned numbers with their names and units: `[[name, text], …]`. */
function plannedNumbers(move) {
    const planned = move.planned;
    if (planned.position) return [["Go to X, Y, Z", `${coordinatesText(planned.position)} mm`]];
    return [
        ["Turn by", `${numberText(planned.angle, plannedDecimals)} deg`],
        ["that is", move.turn],
        ["about the origin", `${coordinatesText(planned.origin)} mm`],
        ["along the vector", coordinatesText(planned.rotationVector)],
    ];
}

/** The name of a move, which is one long word, with places at which a line can break. */
function breakableName(name) {
    return name.split(/(?<=[a-z])(?=[A-Z])/).flatMap((part, i) => i === 0 ? [part] : [element("wbr"), part]);
}

function rowOf(move, index, go) {
    const cell = (className, ...content) => element("td", className, ...content);
    const name = element("button", "name", ...breakableName(move.name));
    name.type = "button";
    const row = element("tr", move.level,
        cell("number", String(index + 1)), cell("", name), cell("kind", move.kind), cell("number", clearanceText(move.clearanceToPoleSphere)),
        cell("number", clearanceText(move.clearanceToLevers)), cell("touch", move.mustTouch || clearanceText(null)), cell("", levelMark(move.level)),
        cell("planned", plannedNumbers(move).map((pair) => pair.join(" ")).join("; ")));
    row.addEventListener("click", () => go(index));
    return row;
}

/** The arrow keys go from row to row. Only the current row is a tab stop. */
function moveFocus(event, go) {
    const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
    const row = event.target.closest("tr");
    const target = step === 1 ? row.nextElementSibling : row.previousElementSibling;
    if (step === undefined || event.shiftKey) return;
    event.preventDefault();
    if (!target) return;
    go(target.sectionRowIndex);
    target.querySelector("button").focus();
}

export function listMoves(plan, heading, go) {
    byId("moves-title").textContent = heading;
    byId("rows").replaceChildren(...plan.moves.map((move, i) => rowOf(move, i, go)));
    byId("rows").onkeydown = (event) => moveFocus(event, go);
}

// Findings

function findingItem(finding, go) {
    const where = finding.move === null ? "The plan as a whole" : `Move ${finding.move}, ${finding.moveName}`;
    const meeting = finding.part ? `${finding.part} to ${finding.obstacle}, ` : "";
    const amount = finding.amount === null ? "" : ` (${meeting}${numberText(finding.amount)} ${finding.unit})`;
    const jump = element("button", "finding-jump", element("strong", "", where), element("code", "", finding.name),
        element("span", "", finding.sentence + amount), element("span", "remedy", finding.remedy));
    jump.type = "button";
    jump.disabled = finding.move === null;
    jump.addEventListener("click", () => go(finding.move - 1));
    return element("li", "", jump);
}

export function listFindings(plan, go) {
    byId("findings").classList.toggle("some", plan.findings.length > 0);
    byId("findings-none").textContent = plan.findings.length === 0
        ? `None: ${plan.verdict.text}.` : "The first one is the one to mend; those after it may follow from it.";
    byId("findings-list").replaceChildren(...plan.findings.map((finding) => findingItem(finding, go)));
}

// Updated while the machine moves

function showPosition(sample) {
    const [x, y, z] = sample?.at ?? [];
    for (const [name, number] of Object.entries({ x, y, z, a: sample?.A, b: sample?.B })) byId(`live-${name}`).textContent = numberText(number);
    byId("live-clearance").textContent = clearanceText(sample?.clearance);
}

function showState(id, isSet, text) {
    byId(id).className = `state ${isSet ? "set" : ""}`;
    byId(id).textContent = text;
}

export function showMachine(sample) {
    showPosition(sample);
    showState("live-lever", sample?.lever === "open", sample ? `Levers ${leverText(sample)}` : "Not run");
    showState("live-peg", sample?.onPeg, sample?.onPeg ? "On the peg" : "Free of the peg");
}

function markRow(index) {
    [...byId("rows").children].forEach((row, i) => {
        if (i === index) row.setAttribute("aria-current", "step");
        else row.removeAttribute("aria-current");
        row.querySelector("button").tabIndex = i === index ? 0 : -1;
    });
}

/** Scrolls the list, not the page. */
function keepRowInSight(row) {
    const list = byId("moves");
    const seen = list.getBoundingClientRect();
    const heading = list.querySelector("thead").getBoundingClientRect().height;
    const { top, bottom } = row.getBoundingClientRect();
    if (top < seen.top + heading) list.scrollTop -= seen.top + heading - top;
    else if (bottom > seen.bottom) list.scrollTop += bottom - seen.bottom;
}

/** A clearance to something, or a dash when the move was not run. */
function measured(number, to) {
    return `${number === null ? clearanceText(number) : `${numberText(number)} mm`} to ${to}`;
}

function clearanceNumbers(move) {
    return [
        ["Clearance", `${measured(move.clearanceToPoleSphere, "the sphere")}, ${measured(move.clearanceToLevers, "the levers")}`],
        ["Must touch", move.mustTouch || "nothing"],
        ...(move.nearest ? [["Nearest", `${move.nearest.part} to ${move.nearest.obstacle}, ${numberText(move.nearest.clearance, nearestDecimals)} mm at least`]] : []),
    ];
}

let shownMove = null;

export function showMove(plan, index, levels) {
    const move = plan.moves[index];
    if (shownMove === move) return;
    shownMove = move;
    byId("move-number").textContent = `${index + 1}/${plan.moves.length}`;
    byId("move-name").textContent = move.name;
    byId("move-level").replaceChildren(levelMark(move.level));
    byId("move-level").title = levelMeaning(move.level, levels);
    byId("move-purpose").textContent = move.purpose;
    byId("move-planned").replaceChildren(...[...plannedNumbers(move), ...clearanceNumbers(move)].map(([name, text]) =>
        element("div", "", element("dt", "", name), element("dd", "", text))));
    markRow(index);
    keepRowInSight(byId("rows").children[index]);
}

/** Lists the assumptions of the check with the options that change them. */
export function listAssumptions(assumptions) {
    byId("assumed").replaceChildren(...assumptions.map(({ what, value, option }) => {
        const heading = element("th", "", what);
        heading.scope = "row";
        return element("tr", "", heading, element("td", "", value), element("td", "option", option));
    }));
}

/** The meaning of the colours of the paths. */
export function showLegend(levels) {
    byId("legend").replaceChildren(...levels.map(({ name: level }) =>
        element("li", `level ${level}`, element("i", "shape"), levelMeaning(level, levels))));
}
