// What the workbench asks of its page when a run is recorded or played back: it says so in the page's head. Elsewhere
// there is nothing to do.

import type { BridgePage } from "bridge-client";
import { recordedPage, replay } from "bridge-client/recording";

const root = "/fcp-panel/session";

export type Task = { mode: "record"; began: number } | { mode: "replay" };

export type Fetch = (path: string, options?: RequestInit) => Promise<Response>;

export function taskOf(page: Pick<Document, "getElementById">): Task | undefined {
    const text = page.getElementById("session")?.textContent;
    return text ? (JSON.parse(text) as Task) : undefined;
}

/** The page as the bridge is to see it, with everything that goes over it sent to the workbench. */
export function recorded(page: BridgePage, began: number, fetch: Fetch): BridgePage {
    const sender = new Sender(fetch);
    const clock = () => performance.timeOrigin + performance.now();
    return recordedPage(page, (line) => sender.send(JSON.stringify(line)), clock, began);
}

/** Plays the workbench's recording back to the panel of this page, and reports how that went. */
export async function playBack(page: BridgePage, fetch: Fetch): Promise<void> {
    const post = (path: string, body: string) => fetch(`${root}/${path}`, { method: "POST", body });
    // What cannot be asked for is missed as a difference later on.
    const ask = (path: string, body: string) => void post(path, body).catch(() => {});
    try {
        const outcome = await replay(recording(fetch), page, {
            movePlayhead: (seconds) => ask("playhead", String(seconds)),
            activate: (sequence) => ask("sequence", JSON.stringify(sequence)),
        });
        await post("report", JSON.stringify(outcome));
    } catch (error) {
        await post("report", JSON.stringify({ problem: String(error) }));
    }
}

async function recording(fetch: Fetch): Promise<string> {
    return (await fetch(`${root}/recording`)).text();
}

/** One request at a time, so that lines arrive in their order; what comes meanwhile goes with the next. */
class Sender {
    #waiting: string[] = [];
    #isSending = false;

    constructor(private readonly fetch: Fetch) {}

    send(line: string): void {
        this.#waiting.push(line);
        if (!this.#isSending)
            void this.#run();
    }

    async #run(): Promise<void> {
        this.#isSending = true;
        while (this.#waiting.length > 0) {
            const body = this.#waiting.splice(0).join("\n");
            // Without the server there is nobody who records.
            await this.fetch(`${root}/lines`, { method: "POST", body }).catch(() => {});
        }
        this.#isSending = false;
    }
}
