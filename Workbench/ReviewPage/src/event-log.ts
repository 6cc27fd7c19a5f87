// What crossed the bridge, newest last, for people who develop the page or the panel.

import type { Arguments, Bridge, CallOptions, Command, EventName } from "bridge-client";
import { type ReadonlySignal, signal } from "@preact/signals";

const kept = 500;
const shown = 200;
const lineLength = 240;
const arrows = { sent: "→", answer: "←", event: "•", failed: "×" };

export type EntryKind = keyof typeof arrows;

interface Entry {
    number: number;
    kind: EntryKind;
    name: string;
    detail: unknown;
    time: Date;
    count: number;
}

export interface LogLine {
    number: number;
    text: string;
}

export class EventLog {
    #entries: Entry[] = [];
    #count = 0;
    #lines = signal<readonly LogLine[]>([]);
    #nextFrame: (paint: () => void) => void;
    #isScheduled = false;

    constructor(nextFrame: (paint: () => void) => void) {
        this.#nextFrame = nextFrame;
    }

    /** The newest lines, renewed once for each painted frame. */
    get lines(): ReadonlySignal<readonly LogLine[]> {
        return this.#lines;
    }

    /** Every line, at full length. */
    get text(): string {
        return this.#entries.map(line).join("\n");
    }

    // A run of playhead events is one entry with a count: at 60 a second they would push everything else out.
    add(kind: EntryKind, name: string, detail: unknown): void {
        const last = this.#entries.at(-1);
        if (last && name === "fcp:playhead-changed" && last.name === name)
            Object.assign(last, { detail, time: new Date(), count: last.count + 1 });
        else
            this.#entries.push({ number: (this.#count += 1), kind, name, detail, time: new Date(), count: 1 });
        if (this.#entries.length > kept)
            this.#entries.shift();
        this.#schedule();
    }

    #schedule(): void {
        if (this.#isScheduled)
            return;
        this.#isScheduled = true;
        this.#nextFrame(() => {
            this.#isScheduled = false;
            this.#lines.value = this.#entries
                .slice(-shown)
                .map((entry) => ({ number: entry.number, text: shortened(line(entry)) }));
        });
    }
}

/** The same bridge, with everything that crosses it in the log. Events are there even if nobody listens to them. */
export function logged(bridge: Bridge, log: Pick<EventLog, "add">, onSign: () => void): Bridge {
    const events: EventName[] = ["fcp:connected", "fcp:sequence-changed", "fcp:playhead-changed", "fcp:marker-clicked"];
    for (const name of events) {
        bridge.on(name, (detail) => {
            log.add("event", name, detail);
            onSign();
        });
    }

    async function call(command: Command, args?: Arguments<Command>, options?: CallOptions): Promise<unknown> {
        log.add("sent", command, summary(args ?? {}));
        try {
            const answer: unknown = await (bridge.call as typeof call)(command, args, options);
            log.add("answer", command, answer);
            onSign();
            return answer;
        } catch (error) {
            log.add("failed", command, (error as Error).message);
            throw error;
        }
    }

    return {
        get available() {
            return bridge.available;
        },
        call: call as Bridge["call"],
        on: bridge.on,
    };
}

// A list of thousands of comments would be kept, and written out, for each time that it is sent.
function summary(args: object): unknown {
    const { comments } = args as { comments?: unknown };
    return Array.isArray(comments) && comments.length > 10 ? { comments: `${comments.length} comments` } : args;
}

function line({ kind, name, detail, time, count }: Entry): string {
    const clock = time.toISOString().slice(11, 23);
    return `${clock} ${arrows[kind]} ${name}${count > 1 ? ` ×${count}` : ""} ${JSON.stringify(detail)}`;
}

function shortened(text: string): string {
    return text.length > lineLength ? `${text.slice(0, lineLength)}…` : text;
}
