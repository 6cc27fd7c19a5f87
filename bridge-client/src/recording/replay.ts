import type { BridgePage } from "../bridge.js";
import { repair, repairText } from "../text-repair.js";
import { type PanelLine, readRecording } from "./line.js";

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

export interface ReplayOptions {
    /** Moves the editor's playhead as the user did, and resolves when it is there. Without it host lines are skipped. */
    moveTo?(frame: number): Promise<void>;
    /** Milliseconds to wait for what is recorded; the panel itself takes up to 60 s to give a container up. */
    patience?: number;
}

interface Told {
    event: string;
    detail: unknown;
}

// A load is told of once or twice, by how long it took; a position again, by how often the editor drew it.
const unsteady = new Set(["fcp:connected"]);
const answer = "fcp:resolve";

/**
 * Posts the messages of a recording to the panel of this page, in turn, and holds answers and events against the
 * recorded ones. An answer is compared by what it holds; an event like the one before it counts once.
 */
export async function replay(
    recording: string,
    page: BridgePage,
    { moveTo, patience = 65_000 }: ReplayOptions = {},
): Promise<Difference | undefined> {
    const lines = readRecording(recording);
    const heard = new Heard(page, patience);
    try {
        for (const { number, line } of lines) {
            if (line.by === "page") {
                heard.expectAnswer(line.message);
                page.webkit?.messageHandlers?.fcpBridge?.postMessage(line.message);
            } else if (line.by === "host") {
                await moveTo?.(line.frame);
            } else {
                const found = await heard.difference(line);
                if (found)
                    return { line: number, ...found };
            }
        }
        return undefined;
    } finally {
        heard.stop();
    }
}

/** What the panel has told since the replay began, and what of it has been compared. */
class Heard {
    #answers = new Map<unknown, unknown>();
    #commands = new Map<unknown, unknown>();
    #events: Told[] = [];
    #lastRecorded = "";
    #lastTold = "";
    #wake = () => {};
    #stops: (() => void)[];

    constructor(
        page: BridgePage,
        private readonly patience: number,
    ) {
        this.#stops = [answer, "fcp:sequence-changed", "fcp:playhead-changed", "fcp:marker-clicked"].map((event) => {
            const hear = (told: Event) => this.#take(event, (told as CustomEvent).detail);
            page.addEventListener(event, hear);
            return () => page.removeEventListener(event, hear);
        });
    }

    stop(): void {
        for (const stop of this.#stops)
            stop();
    }

    expectAnswer({ resolveId, command }: Record<string, unknown>): void {
        this.#commands.set(resolveId, command);
    }

    async difference({ event, detail }: PanelLine): Promise<Omit<Difference, "line"> | undefined> {
        if (event === answer)
            return this.#differenceOfAnswer(Object(detail));
        if (unsteady.has(event) || !this.#isNews({ event, detail: repair(detail) }))
            return undefined;
        await this.#until(() => this.#events.length > 0);
        const found = this.#events.shift();
        const recorded = { event, detail: repair(detail) };
        return same(found, recorded) ? undefined : { about: `event ${event}`, recorded, found };
    }

    #isNews(told: Told): boolean {
        const text = canonical(told);
        if (text === this.#lastRecorded)
            return false;
        this.#lastRecorded = text;
        return true;
    }

    async #differenceOfAnswer({ resolveId, value }: { resolveId?: unknown; value?: unknown }) {
        // An answer to a message from before the recording.
        if (!this.#commands.has(resolveId))
            return undefined;
        await this.#until(() => this.#answers.has(resolveId));
        const recorded = content(value);
        const found = this.#answers.get(resolveId);
        const about = `answer to ${String(this.#commands.get(resolveId))}`;
        return this.#answers.has(resolveId) && same(found, recorded) ? undefined : { about, recorded, found };
    }

    #take(event: string, detail: unknown): void {
        if (event === answer) {
            const { resolveId, value } = Object(detail);
            this.#answers.set(resolveId, content(value));
        } else {
            const told = { event, detail: repair(detail) };
            const text = canonical(told);
            if (text !== this.#lastTold)
                this.#events.push(told);
            this.#lastTold = text;
        }
        this.#wake();
    }

    async #until(isThere: () => boolean): Promise<void> {
        const deadline = performance.now() + this.patience;
        while (!isThere() && performance.now() < deadline) {
            await new Promise<void>((resolve) => {
                const timer = setTimeout(resolve, deadline - performance.now());
                this.#wake = () => {
                    clearTimeout(timer);
                    resolve();
                };
            });
        }
    }
}

function content(value: unknown): unknown {
    try {
        return JSON.parse(repairText(String(value)));
    } catch {
        return value;
    }
}

// The order of members is nobody's promise.
function canonical(value: unknown): string {
    return JSON.stringify(value, (_key, entry: unknown) =>
        typeof entry === "object" && entry !== null && !Array.isArray(entry)
            ? Object.fromEntries(Object.entries(entry).sort(([one], [other]) => (one < other ? -1 : 1)))
            : entry,
    );
}

function same(one: unknown, other: unknown): boolean {
    return canonical(one) === canonical(other);
}
