// Plays a plan's frames at a constant speed along the path.

/** Calls `onChange` when the place changes, and when playing starts or stops. */
export class Player {
    /** `goBeyond(step)` goes to the next plan (1) or the one before (-1). It returns false when there is none. */
    constructor(onChange, goBeyond) {
        this.onChange = onChange;
        this.goBeyond = goBeyond;
        this.frames = [];
        this.index = 0; // of the last frame reached
        this.time = 0; // mm of path, between that frame and the next one
        this.isPlaying = false;
        this.speed = 25; // mm of path a second
    }

    load(frames) {
        this.frames = frames;
        this.goTo(0);
    }

    get frame() { return this.frames[this.index]; }
    get lastIndex() { return this.frames.length - 1; }
    get duration() { return this.frames[this.lastIndex].time; }
    get isAtEnd() { return this.index === this.lastIndex; }

    /** The next frame, and the part of the way to it that is done, 0 to 1. */
    get ahead() {
        const next = this.frames[this.index + 1];
        if (!next || next.time === this.frame.time) return { frame: this.frame, fraction: 0 };
        return { frame: next, fraction: (this.time - this.frame.time) / (next.time - this.frame.time) };
    }

    /** Goes to a frame and stops there. */
    goTo(index) {
        this.isPlaying = false;
        this.index = Math.min(Math.max(index, 0), this.lastIndex);
        this.time = this.frame.time;
        this.onChange();
    }

    goToTime(time) {
        this.time = Math.min(Math.max(time, 0), this.duration);
        this.index = this.indexAt(this.time);
        this.onChange();
    }

    /** The frame at a time. Between two moves it is the end of the earlier one, so that its numbers can be read. */
    indexAt(time) {
        if (time >= this.duration) return this.lastIndex;
        const reached = this.frames.findIndex((frame) => frame.time > time) - 1;
        const reachedTime = this.frames[reached].time;
        return reachedTime < time ? reached : this.frames.findIndex((frame) => frame.time === reachedTime);
    }

    startOf(move) { return this.frames.findIndex((frame) => frame.move === move); }
    endOf(move) { return this.frames.findLastIndex((frame) => frame.move === move); }

    /** To the end of this move, or from there to the end of the next one. */
    forward() {
        if (this.isAtEnd && this.goBeyond(1)) return;
        const { move, isLast } = this.frame;
        this.goToEnd(isLast && !this.isAtEnd ? move + 1 : move);
    }

    /** To the start of this move, or from there to the start of the one before. */
    back() {
        const isAtStart = this.frame.isFirst && this.time === this.frame.time;
        if (this.index === 0 && isAtStart && this.goBeyond(-1)) return;
        this.goToStart(isAtStart ? Math.max(this.frame.move - 1, 0) : this.frame.move);
    }

    goToStart(move) { this.goTo(this.startOf(move)); }
    goToEnd(move) { this.goTo(this.endOf(move)); }
    step(samples) { this.goTo(this.index + samples); }
    toStart() { this.goTo(0); }
    toEnd() { this.goTo(this.lastIndex); }

    toggle() { return this.isPlaying ? this.pause() : this.play(); }

    play() {
        if (this.isAtEnd) this.goTo(0);
        this.isPlaying = true;
        this.onChange();
    }

    pause() {
        if (!this.isPlaying) return;
        this.isPlaying = false;
        this.onChange();
    }

    /** Lets time pass while it plays. */
    tick(seconds) {
        if (!this.isPlaying) return;
        const time = this.time + seconds * this.speed;
        if (time >= this.duration && this.goBeyond(1)) return this.play();
        if (time >= this.duration) this.isPlaying = false;
        this.goToTime(time);
    }
}
