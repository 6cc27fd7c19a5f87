// Text from the native side arrives with one character for each byte of its UTF-8 form. Repairing it twice
// would damage text that looks like such bytes, so only the bridge calls this, once for each event.

const utf8 = new TextDecoder("utf-8", { fatal: true, ignoreBOM: true });

// Text that holds a character above U+00FF, or bytes that are not UTF-8, was never taken apart: it stays.
export function repairText(text) {
    const bytes = new Uint8Array(text.length);
    let plain = true;
    for (let index = 0; index < text.length; index += 1) {
        const code = text.charCodeAt(index);
        if (code > 0xff)
            return text;
        plain &&= code < 0x80;
        bytes[index] = code;
    }
    if (plain)
        return text;
    try {
        return utf8.decode(bytes);
    } catch {
        return text;
    }
}

// Every text in a JSON value, keys included.
export function repair(value) {
    if (typeof value === "string")
        return repairText(value);
    if (Array.isArray(value))
        return value.map(repair);
    if (value !== null && typeof value === "object")
        return Object.fromEntries(Object.entries(value).map(([key, entry]) => [repairText(key), repair(entry)]));
    return value;
}
