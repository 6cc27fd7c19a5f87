// What the panel sees of a posted message.

export type Members = Record<string, unknown>;

const deepest = 512;

class TooDeep extends Error {}

/** What left the page; undefined for what the engine refuses: functions, symbols, proxies, promises, nodes. */
export function posted(message: unknown): { clone: unknown } | undefined {
    try {
        return { clone: structuredClone(message) };
    } catch {
        return undefined;
    }
}

/** Undefined for a message that the panel ignores. */
export function received(clone: unknown): Members | undefined {
    try {
        return isDictionary(clone) ? members(clone, 1, keepsNumber) : undefined;
    } catch {
        return undefined;
    }
}

export function isDictionary(value: unknown): value is Members {
    return isObject(value) && !Array.isArray(value);
}

function isObject(value: unknown): value is object {
    return typeof value === "object" && value !== null;
}

// Only there do numbers that are not finite reach the panel.
function keepsNumber(key: string): boolean {
    return key === "seconds" || key === "threshold";
}

function members(object: object, depth: number, keeps: (key: string) => boolean = () => false): Members {
    const kept = Object.entries(object).filter(
        ([key, value]) => key !== "__proto__" && value !== undefined && typeof value !== "bigint",
    );
    return Object.fromEntries(
        kept.map(([key, value]) => [
            key.toWellFormed(),
            typeof value === "number" && keeps(key) ? value + 0 : json(value, depth),
        ]),
    );
}

// A cycle is too deep as well.
function json(value: unknown, depth: number): unknown {
    if (typeof value === "string")
        return value.toWellFormed();
    if (typeof value === "number")
        return Number.isFinite(value) ? value + 0 : null; // -0 becomes 0
    if (!isObject(value))
        return typeof value === "boolean" ? value : null;
    if (value instanceof Date)
        return Number.isNaN(value.getTime()) ? null : value.toISOString();
    if (depth === deepest)
        throw new TooDeep();
    return Array.isArray(value) ? value.map((entry) => json(entry, depth + 1)) : members(value, depth + 1);
}
