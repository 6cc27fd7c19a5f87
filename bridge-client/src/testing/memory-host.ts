import type { Sequence } from "../contract.js";

/** Who is told what happens on the timeline. */
export interface HostObserver {
    playheadChanged(seconds: number): void;
    sequenceChanged(sequence: Sequence): void;
}

/** A sequence as an editor knows it. */
export interface HostSequence {
    name: string;
    /** Seconds. */
    duration: number;
    /** Frames per second, exact: 24000 / 1001. */
    frameRate: number;
}

/** An editor's timeline without an editor: nothing is open until `openSequence`. */
export class MemoryHost {
    #observer: HostObserver;
    #sequence: Sequence | null = null;
    #playhead = 0;

    /** The positions that the page asked for, in seconds. */
    readonly seeks: number[] = [];

    constructor(observer: HostObserver) {
        this.#observer = observer;
    }

    get sequence(): Sequence | null {
        return this.#sequence && { ...this.#sequence };
    }

    get playhead(): number {
        return this.#playhead;
    }

    /** Makes it the active sequence; the page is told. */
    openSequence({ name, duration, frameRate }: HostSequence): void {
        this.#sequence = {
            name,
            duration,
            frameRate: Math.round(frameRate * 100) / 100,
            width: 0,
            height: 0,
            startTimecode: "00:00:00:00",
        };
        this.#observer.sequenceChanged({ ...this.#sequence });
    }

    /** Nobody is told. */
    closeTimeline(): void {
        this.#sequence = null;
        this.#playhead = 0;
    }

    /** The user, or playing, moves the playhead; the page is told. */
    movePlayhead(seconds: number): void {
        this.#playhead = seconds;
        this.#observer.playheadChanged(seconds);
    }

    /** The panel asks, in units of 1/600 s. An editor shows the frame some time later. */
    seek(seconds: number): void {
        const time = Math.round(seconds * 600) / 600;
        this.seeks.push(time);
        if (this.#sequence && Number.isFinite(time))
            queueMicrotask(() => this.movePlayhead(time));
    }
}
