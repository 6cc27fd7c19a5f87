import type { BridgePage } from "../bridge.js";
import type { EventName } from "../contract.js";
import { repair, repairText } from "../text-repair.js";

const answer: EventName = "fcp:resolve";
const followed: readonly EventName[] = ["fcp:sequence-changed", "fcp:playhead-changed", "fcp:marker-clicked"];

/** What the panel has told since a replay began, and what of it nobody has asked for yet. */
export class Heard {
    readonly #answers = new Map<unknown, { content: unknown }>();
    readonly #events = new Map<EventName, unknown[]>();
    readonly #last = new Map<EventName, unknown>();
    readonly #stops: (() => void)[];
    #wake = () => {};

    constructor(
        page: BridgePage,
        private readonly patience: number,
    ) {
        this.#stops = [answer, ...followed].map((event) => {
            const hear = (told: Event) => this.#take(event, (told as CustomEvent).detail);
            page.addEventListener(event, hear);
            return () => page.removeEventListener(event, hear);
        });
    }

    stop(): void {
        for (const stop of this.#stops)
            stop();
    }

    has(event: EventName, detail: unknown): boolean {
        return this.#waiting(event).some((told) => same(told, detail));
    }

    /** Undefined when none comes in time. */
    async answer(resolveId: unknown): Promise<{ content: unknown } | undefined> {
        await this.#until(() => this.#answers.has(resolveId));
        return this.#answers.get(resolveId);
    }

    /** The next one of that name; undefined when none comes in time. */
    async nextEvent(event: EventName): Promise<unknown> {
        await this.#until(() => this.#waiting(event).length > 0);
        return this.#waiting(event).shift();
    }

    /** This very one, and what came before it is passed over. When it does not come in time: the last of that name. */
    async eventLike(event: EventName, detail: unknown): Promise<unknown> {
        await this.#until(() => this.has(event, detail));
        const waiting = this.#waiting(event);
        const index = waiting.findIndex((told) => same(told, detail));
        return waiting.splice(0, index < 0 ? waiting.length : index + 1).at(-1);
    }

    #waiting(event: EventName): unknown[] {
        const waiting = this.#events.get(event) ?? [];
        this.#events.set(event, waiting);
        return waiting;
    }

    #take(event: EventName, detail: unknown): void {
        if (event === answer) {
            const { resolveId, value } = Object(detail);
            this.#answers.set(resolveId, { content: contentOf(value) });
        } else {
            const told = repair(detail);
            if (!same(this.#last.get(event), told))
                this.#waiting(event).push(told);
            this.#last.set(event, told);
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

/** What an answer holds; the text itself where it is no JSON. */
export function contentOf(value: unknown): unknown {
    try {
        return JSON.parse(repairText(String(value)));
    } catch {
        return value;
    }
}

/** The order of members is nobody's promise. */
export function same(one: unknown, other: unknown): boolean {
    return canonical(one) === canonical(other);
}

function canonical(value: unknown): string {
    return JSON.stringify(value, (_key, entry: unknown) =>
        typeof entry === "object" && entry !== null && !Array.isArray(entry)
            ? Object.fromEntries(Object.entries(entry).sort(([one], [other]) => (one < other ? -1 : 1)))
            : entry,
    );
}
