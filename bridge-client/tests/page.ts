import { createBridge } from "../src/index.js";

type Message = Record<string, unknown> & { command: string; resolveId: string };

/** A page in the panel where a test answers: what it posted, and events that arrive as they are given. */
export function openPage() {
    const posted: Message[] = [];
    const target = new EventTarget();
    const webkit = {
        messageHandlers: { fcpBridge: { postMessage: (message: unknown) => posted.push(message as Message) } },
    };
    const tell = (name: string, detail?: unknown) => target.dispatchEvent(new CustomEvent(name, { detail }));
    return {
        bridge: createBridge(Object.assign(target, { webkit })),
        posted,
        tell,
        /** `value` is JSON text, as it arrives. */
        answer: (resolveId: unknown, value: unknown) => tell("fcp:resolve", { resolveId, value }),
    };
}

/** How a promise ended, if it did. */
export function outcomeOf(promise: Promise<unknown>): { value?: unknown; error?: unknown } {
    const outcome: { value?: unknown; error?: unknown } = {};
    promise.then(
        (value) => (outcome.value = value),
        (error: unknown) => (outcome.error = error),
    );
    return outcome;
}

/** One character for each byte of its UTF-8 form. */
export function damaged(text: string): string {
    return Buffer.from(text).toString("latin1");
}
