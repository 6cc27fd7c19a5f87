// How the commands differ when they are posted: who answers, and what each insists on.

import type { Command } from "./contract.js";
import { BridgeInvalidArgument } from "./errors.js";

type Members = Record<string, unknown>;
type Need = keyof typeof checks;

interface Rule {
    /** Milliseconds. */
    timeout: number;
    needs: Record<string, Need>;
}

const isObject = (value: unknown): boolean => typeof value === "object" && value !== null && !Array.isArray(value);

const checks = {
    text: (value: unknown) => typeof value === "string",
    "a finite number": Number.isFinite,
    "a finite number or nothing": (value: unknown) => value === undefined || Number.isFinite(value),
    "an object": isObject,
    "an array of objects": (value: unknown) => Array.isArray(value) && value.every(isObject),
};

const host = (needs: Rule["needs"] = {}): Rule => ({ timeout: 5_000, needs });

// The panel gives a container command up after 60 s; its own answer should come first.
const container = (needs: Rule["needs"] = {}): Rule => ({ timeout: 65_000, needs });

const rules: Record<Command, Rule> = {
    getTimeline: host(),
    getPlayhead: host(),
    seekTo: host({ seconds: "a finite number" }),
    openURL: host({ url: "text" }),
    isFCPRunning: host(),
    syncComment: container(),
    deleteComment: container({ commentId: "text" }),
    syncAllComments: container({ comments: "an array of objects" }),
    clearAllMarkers: container(),
    startExport: container({ config: "an object" }),
    cancelExport: container(),
    selectOutputFolder: container(),
    getMarkerAtTime: container({ seconds: "a finite number", threshold: "a finite number or nothing" }),
};

/**
 * The message for these arguments, and how long its answer may take. Throws for what the panel would leave without an
 * answer, or without effect.
 */
export function prepare(command: Command, args: unknown): { message: Members; timeout: number } {
    // A page in plain JavaScript can ask for anything.
    if (!Object.hasOwn(rules, command))
        throw new BridgeInvalidArgument(command, "is no command");
    const { timeout, needs } = rules[command];
    const message = plainCopy(command, args);
    for (const [key, need] of Object.entries(needs)) {
        if (!checks[need](message[key]))
            throw new BridgeInvalidArgument(command, `needs ${need} as "${key}"`);
    }
    return { message, timeout };
}

// A message that holds a function or a proxy (an observable store's object, say) never leaves the page, and nothing
// tells. A copy by way of JSON holds neither, and is what the panel would read of it.
function plainCopy(command: Command, args: unknown): Members {
    let copy: unknown;
    let cause: unknown;
    try {
        copy = JSON.parse(JSON.stringify(args));
    } catch (error) {
        cause = error;
    }
    if (!isObject(copy))
        throw new BridgeInvalidArgument(command, "needs an object that JSON can hold", { cause });
    return copy as Members;
}
