import { prepare } from "./commands.js";
import type { Arguments, Command, EventName, Events, Result } from "./contract.js";
import { BridgeAborted, BridgeTimeout, BridgeUnavailable } from "./errors.js";
import { repair, repairText } from "./text-repair.js";

/** What the client uses of `window`. */
export interface BridgePage {
    addEventListener(event: string, listener: (event: Event) => void): void;
    removeEventListener(event: string, listener: (event: Event) => void): void;
    readonly webkit?: { messageHandlers?: { fcpBridge?: { postMessage(message: unknown): unknown } } };
}

export interface CallOptions {
    /** Milliseconds; without it 5,000 for a command that the host answers and 65,000 for one of the container. */
    timeout?: number | undefined;
    /** Ends the wait. What was posted before is carried out all the same. */
    signal?: AbortSignal | undefined;
}

/** What follows the command's name: a command without arguments may leave them out. */
export type CallParameters<C extends Command> =
    Record<never, never> extends Arguments<C>
        ? [args?: Arguments<C>, options?: CallOptions]
        : [args: Arguments<C>, options?: CallOptions];

export interface Bridge {
    /** Whether this page is inside the panel. */
    readonly available: boolean;
    /** Posts within the call. Resolves with the answer, whatever it is; rejects with a BridgeError. */
    call<C extends Command>(command: C, ...parameters: CallParameters<C>): Promise<Result<C>>;
    /** Calls `listener` at each event, until the function that it returns is called. */
    on<E extends EventName>(event: E, listener: (detail: Events[E]) => void): () => void;
}

// Above it a timer fires at once.
const longestDelay = 0x7fff_ffff;

/** One for each page, made when its script starts: it listens for answers for as long as the page lives. */
export function createBridge(page: BridgePage = globalThis as unknown as BridgePage): Bridge {
    const pending = new Map<unknown, (value: unknown) => void>();
    // Answers to an earlier load of the page reach this one too, and must match nothing.
    const prefix = crypto.getRandomValues(new Uint32Array(4)).join("");
    let counter = 0;

    const handler = () => page.webkit?.messageHandlers?.fcpBridge;

    page.addEventListener("fcp:resolve", (event) => {
        const { resolveId, value } = Object((event as CustomEvent).detail);
        try {
            // The text is repaired whole: what is inside must not be repaired again.
            pending.get(resolveId)?.(JSON.parse(repairText(value)));
        } catch {
            // The panel's answers always hold JSON, so this was not one.
        }
    });

    function answerTo(command: Command, resolveId: string, timeout: number, signal?: AbortSignal): Promise<unknown> {
        let timer: ReturnType<typeof setTimeout>;
        let abort: () => void;
        return new Promise((resolve, reject) => {
            pending.set(resolveId, resolve);
            timer = setTimeout(
                () => reject(new BridgeTimeout(command, `was not answered within ${timeout} ms`)),
                Math.min(timeout, longestDelay),
            );
            abort = () => reject(new BridgeAborted(command, "was aborted", { cause: signal?.reason }));
            signal?.addEventListener("abort", abort);
        }).finally(() => {
            pending.delete(resolveId);
            clearTimeout(timer);
            signal?.removeEventListener("abort", abort);
        });
    }

    async function call(command: Command, args: unknown = {}, options: CallOptions = {}): Promise<unknown> {
        const { message, timeout } = prepare(command, args);
        const { signal } = options;
        const fcpBridge = handler();
        if (!fcpBridge)
            throw new BridgeUnavailable(command, "cannot be sent: this page is not inside the panel");
        if (signal?.aborted)
            throw new BridgeAborted(command, "was aborted", { cause: signal.reason });
        const resolveId = `${prefix}-${(counter += 1)}`;
        fcpBridge.postMessage({ ...message, command, resolveId });
        return answerTo(command, resolveId, options.timeout ?? timeout, signal);
    }

    function on(name: string, listener: (detail: never) => void): () => void {
        // Each listener repairs a copy of its own: the event's detail is shared.
        const hear = (event: Event) => listener(repair((event as CustomEvent).detail) as never);
        page.addEventListener(name, hear);
        return () => page.removeEventListener(name, hear);
    }

    return {
        get available() {
            return handler() !== undefined;
        },
        call: call as Bridge["call"],
        on: on as Bridge["on"],
    };
}
