import type { BridgePage } from "../bridge.js";
import type { Command, EventName, Sequence } from "../contract.js";
import { repair } from "../text-repair.js";
import { Heard, contentOf, same } from "./heard.js";
import { type PageLine, type PanelLine, readRecording } from "./line.js";

/** The first thing that the panel did otherwise than it is recorded. */
export interface Difference {
    /** Of the recording, from 1. */
    line: number;
    /** What is compared: "answer to getTimeline", "event fcp:playhead-changed". */
    about: string;
    recorded: unknown;
    /** Undefined when nothing came in time. */
    found: unknown;
}

export interface Outcome {
    /** Answers and events that were held against the recorded ones. */
    compared: number;
    difference: Difference | undefined;
}

export interface ReplayOptions {
    /** Begins to move the editor's playhead, as the user or playing did. Without it the replay waits for it to move. */
    movePlayhead?(seconds: number): void;
    /** Makes this sequence the active one, as the user did. */
    activate?(sequence: Sequence): void;
    /** Milliseconds to wait for what is recorded; the panel itself takes up to 60 s to give a container up. */
    patience?: number;
}

/**
 * Posts the messages of a recording to the panel of this page, in turn, and holds answers and events against the
 * recorded ones until one differs. Listens from the call on, whenever the recording is there.
 */
export async function replay(
    recording: string | Promise<string>,
    page: BridgePage,
    options: ReplayOptions = {},
): Promise<Outcome> {
    const heard = new Heard(page, options.patience ?? 65_000);
    try {
        return await new Replay(await recording, page, heard, options).run();
    } finally {
        heard.stop();
    }
}

// What a person is asked for, or what leaves the workbench, is not done again.
const leftOut: ReadonlySet<unknown> = new Set<Command>(["openURL", "selectOutputFolder"]);

// A seek arrives at the frame that holds its moment.
const closeBy = 0.1; // seconds: more than a frame

class Replay {
    readonly #lines: ReturnType<typeof readRecording>;
    readonly #asked = new Map<unknown, { command: unknown; index: number }>();
    readonly #lastEvents = new Map<string, unknown>();
    #sought: number | undefined; // where the page's own seek goes
    #compared = 0;

    constructor(
        recording: string,
        private readonly page: BridgePage,
        private readonly heard: Heard,
        private readonly options: ReplayOptions,
    ) {
        this.#lines = readRecording(recording);
    }

    async run(): Promise<Outcome> {
        for (const [index, { number, line }] of this.#lines.entries()) {
            if (line.by === "page") {
                this.#post(line, index);
                continue;
            }
            const found = await this.#differenceAt(line, index);
            if (found)
                return { compared: this.#compared, difference: { line: number, ...found } };
        }
        return { compared: this.#compared, difference: undefined };
    }

    #post({ message }: PageLine, index: number): void {
        const { command, resolveId, seconds } = message;
        if (leftOut.has(command))
            return;
        this.#asked.set(resolveId, { command, index });
        if (command === "seekTo" && typeof seconds === "number")
            this.#sought = seconds;
        this.page.webkit?.messageHandlers?.fcpBridge?.postMessage(message);
    }

    #differenceAt({ event, detail }: PanelLine, index: number) {
        switch (event as EventName) {
            case "fcp:resolve":
                return this.#differenceOfAnswer(Object(detail), index);
            case "fcp:connected":
                return undefined; // told once or twice, by how long the load took
            default:
                return this.#differenceOfEvent(event as EventName, repair(detail));
        }
    }

    async #differenceOfAnswer({ resolveId, value }: { resolveId?: unknown; value?: unknown }, index: number) {
        const asked = this.#asked.get(resolveId);
        // It answers a message that was not posted now.
        if (!asked)
            return undefined;
        this.#compared += 1;
        const recorded = contentOf(value);
        const found = await this.heard.answer(resolveId);
        if (found && (same(found.content, recorded) || this.#isOnTheWay(asked, index, recorded, found.content)))
            return undefined;
        return { about: `answer to ${String(asked.command)}`, recorded, found: found?.content };
    }

    // A playhead that moves may be met a position earlier or later than it was.
    #isOnTheWay(asked: { command: unknown; index: number }, answered: number, recorded: unknown, found: unknown): boolean {
        if (asked.command !== "getPlayhead")
            return false;
        const before = this.#positions(0, asked.index).at(-1);
        const since = this.#positions(asked.index, answered);
        const next = this.#positions(answered, this.#lines.length)[0];
        // Where it was before its first move, the page has not been told.
        const isFirstMove = before === undefined && [...since, next].includes(recorded);
        return isFirstMove || [before, ...since, next].includes(found);
    }

    /** What the panel told of the playhead within these lines, in seconds. */
    #positions(from: number, to: number): unknown[] {
        return this.#lines
            .slice(from, to)
            .map(({ line }) => line)
            .filter((line) => line.by === "panel" && line.event === "fcp:playhead-changed")
            .map((line) => (Object((line as PanelLine).detail) as { seconds: unknown }).seconds);
    }

    async #differenceOfEvent(event: EventName, recorded: unknown) {
        // A position or a sequence may be told again, by how often the editor drew it.
        if (same(this.#lastEvents.get(event), recorded))
            return undefined;
        this.#lastEvents.set(event, recorded);
        this.#compared += 1;
        const isMove = event === "fcp:playhead-changed";
        if (isMove)
            this.#help(recorded as { seconds: number });
        else if (event === "fcp:sequence-changed" && !this.heard.has(event, recorded))
            this.options.activate?.(recorded as Sequence);
        const found = isMove ? await this.heard.eventLike(event, recorded) : await this.heard.nextEvent(event);
        return same(found, recorded) ? undefined : { about: `event ${event}`, recorded, found };
    }

    // The user's moves are made again, the page's own seek has to arrive by itself.
    #help(recorded: { seconds: number }): void {
        const isOwn = this.#sought !== undefined && Math.abs(this.#sought - recorded.seconds) < closeBy;
        this.#sought = undefined;
        if (!isOwn && !this.heard.has("fcp:playhead-changed", recorded))
            this.options.movePlayhead?.(recorded.seconds);
    }
}
