// A recording is JSON Lines. A replay reads the page's own lines, which are in the order in which the page met them;
// whatever else a recorder adds is for people.

/** What the page posted, as it posted it. */
export interface PageLine {
    /** Milliseconds since the recording began. */
    at: number;
    by: "page";
    message: Record<string, unknown>;
}

/** What the panel told the page, as it arrived: with one character for each byte of UTF-8. */
export interface PanelLine {
    at: number;
    by: "panel";
    event: string;
    detail: unknown;
}

export type RecordedLine = PageLine | PanelLine;

const kinds: Record<string, string> = { page: "message", panel: "event" };

/** The lines of a recording that a replay knows, each with its number in the text. Throws for text that is none. */
export function readRecording(text: string): { number: number; line: RecordedLine }[] {
    return text.split("\n").flatMap((json, index) => {
        if (json.trim() === "")
            return [];
        const number = index + 1;
        const line = parse(json, number);
        const key = kinds[line.by];
        return key !== undefined && Object.hasOwn(line, key) ? [{ number, line }] : [];
    });
}

function parse(json: string, number: number): RecordedLine {
    let line: unknown;
    let cause: unknown;
    try {
        line = JSON.parse(json);
    } catch (error) {
        cause = error;
    }
    if (typeof line !== "object" || line === null || typeof (line as RecordedLine).by !== "string")
        throw new SyntaxError(`line ${number} of the recording is no JSON object with "by"`, { cause });
    return line as RecordedLine;
}
