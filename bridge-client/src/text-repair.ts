// Text from the panel arrives with one character for each byte of its UTF-8 form. Repairing it twice would damage
// text that looks like such bytes, so only the bridge calls this, once for each text.

const utf8 = new TextDecoder("utf-8", { fatal: true, ignoreBOM: true });

/** Text with a character above U+00FF, or whose characters are no UTF-8 when taken for bytes, was never damaged. */
export function repairText(text: string): string {
    // Most texts are plain ASCII, and the playhead's events come 60 times a second.
    if (!/[^\0-\x7f]/.test(text) || /[^\0-\xff]/.test(text))
        return text;
    // A tenth of the time that Uint8Array.from takes with a function: this may be megabytes.
    const bytes = new Uint8Array(text.length);
    for (let index = 0; index < text.length; index += 1)
        bytes[index] = text.charCodeAt(index);
    try {
        return utf8.decode(bytes);
    } catch {
        return text;
    }
}

/** A copy in which every text is repaired, keys included. The original is shared with other listeners. */
export function repair(value: unknown): unknown {
    if (typeof value === "string")
        return repairText(value);
    if (Array.isArray(value))
        return value.map(repair);
    if (value === null || typeof value !== "object")
        return value;
    return Object.fromEntries(Object.entries(value).map(([key, entry]) => [repairText(key), repair(entry)]));
}
