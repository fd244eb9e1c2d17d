// The time line: a slider that shows the place in the plan, over one section for each move.

import { byId, element } from "./document.js";

// A section that covers a smaller share of the time line is too narrow for the number of its move.
const leastShareForNumber = 0.028;

/** The section of a move. Times are lengths of path, in millimetres: see framesOf. */
function markOf(player, move, index) {
    const [from, to] = [player.startOf(index), player.endOf(index)].map((frame) => player.duration > 0 ? player.frames[frame].time / player.duration : 0);
    const mark = element("span", `mark ${move.level}`, to - from > leastShareForNumber ? String(index + 1) : "");
    mark.style.left = `${100 * from}%`;
    mark.style.width = `${100 * (to - from)}%`;
    return mark;
}

/** Draws the sections of the plan that the player has loaded. */
export function markMoves(player, plan) {
    byId("marks").replaceChildren(...plan.moves.map((move, i) => markOf(player, move, i)));
    byId("time").max = player.duration;
}

export function showTime(player, plan) {
    const move = player.frame.move;
    byId("time").value = player.time;
    byId("time").setAttribute("aria-valuetext", `Move ${move + 1} of ${plan.moves.length}, ${plan.moves[move].name}`);
    [...byId("marks").children].forEach((mark, i) => {
        mark.classList.toggle("current", i === move);
        mark.classList.toggle("done", i < move);
    });
    byId("play-word").textContent = player.isPlaying ? "Pause" : "Play";
    byId("play").setAttribute("aria-label", player.isPlaying ? "Pause" : "Play");
    byId("play-icon").setAttribute("d", player.isPlaying ? "M6 4h4v16H6zM14 4h4v16h-4z" : "M7 4v16l13-8z");
}

export function connectPlayer(player) {
    const actions = {
        "to-start": () => player.toStart(), back: () => player.back(), play: () => player.toggle(),
        forward: () => player.forward(), "to-end": () => player.toEnd(),
    };
    for (const [id, action] of Object.entries(actions)) byId(id).addEventListener("click", action);
    byId("time").addEventListener("input", (event) => {
        player.pause();
        player.goToTime(Number(event.target.value));
    });
    byId("speed").addEventListener("change", (event) => { player.speed = Number(event.target.value); });
}
