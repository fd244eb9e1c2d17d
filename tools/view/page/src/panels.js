// Everything beside the picture: verdict, machine, move, findings and the list of moves. It works without the picture.

import { anglesText, angleDecimals, contactText, leverText, levelMeaning, numberText, plannedDecimals, clearanceText } from "./document.js";

// A clearance to an obstacle is computed to 0.01 mm.
const nearestDecimals = 2;

const byId = (id) => document.getElementById(id);

/** An element with text. The text is never markup, because the document's texts may contain any character. */
function element(tag, className = "", text = "") {
    const made = document.createElement(tag);
    made.className = className;
    made.textContent = text;
    return made;
}

/** A level as a shape and a word, so that it can be recognised without its colour. */
function levelMark(level) {
    const mark = element("span", `level ${level}`);
    mark.append(element("i", "shape"), element("span", "word", level));
    return mark;
}

function showBadge(badge, verdict) {
    badge.hidden = false;
    badge.className = `badge ${verdict.clear ? "clear" : "finding"}`;
    badge.replaceChildren(element("i", "shape"), verdict.text);
}

export function showHeading(theDocument) {
    document.title = theDocument.title;
    byId("title").textContent = theDocument.title;
    showBadge(byId("verdict"), theDocument.verdict);
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

function cell(className, ...content) {
    const made = element("td", className);
    made.append(...content);
    return made;
}

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
    const row = element("tr", move.level);
    const name = element("button", "name");
    name.type = "button";
    name.append(...breakableName(move.name));
    row.append(
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

let goFromRow = () => {};

export function listMoves(plan, heading, go) {
    byId("moves-title").textContent = heading;
    byId("rows").replaceChildren(...plan.moves.map((move, i) => rowOf(move, i, go)));
    goFromRow = go;
}

byId("rows").addEventListener("keydown", (event) => moveFocus(event, goFromRow));

// Findings

function findingItem(finding, go) {
    const item = element("li");
    const jump = element("button", "finding-jump");
    const where = finding.move === null ? "The plan as a whole" : `Move ${finding.move}, ${finding.moveName}`;
    const meeting = finding.part ? `${finding.part} to ${finding.obstacle}, ` : "";
    const amount = finding.amount === null ? "" : ` (${meeting}${numberText(finding.amount)} ${finding.unit})`;
    jump.type = "button";
    jump.disabled = finding.move === null;
    jump.append(element("strong", "", where), element("code", "", finding.name), element("span", "", finding.sentence + amount),
                element("span", "remedy", finding.remedy));
    jump.addEventListener("click", () => go(finding.move - 1));
    item.append(jump);
    return item;
}

export function listFindings(plan, go) {
    byId("findings").classList.toggle("some", plan.findings.length > 0);
    byId("findings-none").textContent = plan.findings.length === 0
        ? `None: ${plan.verdict.text}.` : "The first one is the one to mend; those after it may follow from it.";
    byId("findings-list").replaceChildren(...plan.findings.map((finding) => findingItem(finding, go)));
}

// Updated while the machine moves

function showPosition(sample) {
    ["x", "y", "z"].forEach((axis, i) => { byId(`live-${axis}`).textContent = numberText(sample?.at[i]); });
    byId("live-a").textContent = numberText(sample?.A, angleDecimals);
    byId("live-b").textContent = numberText(sample?.B, angleDecimals);
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

function namedNumbers(pairs) {
    return pairs.map(([name, text]) => {
        const pair = element("div");
        pair.append(element("dt", "", name), element("dd", "", text));
        return pair;
    });
}

/** A clearance to something, or a dash when the move was not run. */
function measured(number, to) {
    return `${number === null ? clearanceText(number) : `${numberText(number)} mm`} to ${to}`;
}

function clearanceNumbers(move) {
    return [
        ["Clearance", `${measured(move.clearanceToPoleSphere, "the sphere")}, ${measured(move.clearanceToLevers, "the levers")}`],
        ["Must touch", contactText(move.mustTouch)],
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
    byId("move-planned").replaceChildren(...namedNumbers([...plannedNumbers(move), ...clearanceNumbers(move)]));
    markRow(index);
    keepRowInSight(byId("rows").children[index]);
}

/** Lists the assumptions of the check with the options that change them. */
export function listAssumptions(assumptions) {
    byId("assumed").replaceChildren(...assumptions.map(({ what, value, option }) => {
        const row = element("tr");
        row.append(element("th", "", what), element("td", "", value), element("td", "option", option));
        row.firstChild.scope = "row";
        return row;
    }));
}

/** The meaning of the colours of the paths. */
export function showLegend(levels) {
    byId("legend").replaceChildren(...levels.map(({ name: level }) => {
        const item = element("li", `level ${level}`);
        item.append(element("i", "shape"), levelMeaning(level, levels));
        return item;
    }));
}
