// The way of a payload from the panel into the page: strict JSON, its UTF-8 bytes, and each byte as one character.

/** Undefined for what has no JSON form: a number that is not finite, text that is not Unicode, nothing at all. */
export function written(value: unknown): string | undefined {
    try {
        return JSON.stringify(value, (_key, entry: unknown) => {
            if (
                (typeof entry === "number" && !Number.isFinite(entry)) ||
                (typeof entry === "string" && !entry.isWellFormed())
            )
                throw new TypeError("no JSON form");
            return entry;
        });
    } catch {
        return undefined;
    }
}

/** What the page gets to see of JSON text. */
export function arrived(json: string): unknown {
    const bytes = Array.from(new TextEncoder().encode(json), (byte) => String.fromCharCode(byte));
    return JSON.parse(bytes.join(""));
}
