import type { Sequence } from "../contract.js";
import { ask, type Container } from "./container-link.js";
import { MemoryHost } from "./memory-host.js";
import { isDictionary, type Members, posted, received } from "./message.js";
import { MemoryPage, type PanelPage } from "./memory-page.js";
import { arrived, written } from "./wire.js";

export interface MemoryPanelOptions {
    /** The window that gets the bridge; without it the panel has one of its own, which needs no browser. */
    page?: PanelPage;
    container?: Container | null;
}

type Work = (body: Members, resolveId: string | undefined) => void;

/** Seconds: a larger step of the playhead is a jump, and a marker this near to it was clicked. */
const jumpThreshold = 0.6;
const markerTolerance = 0.5;

/** Milliseconds. */
const revealDelay = 4_000;
const connectedNoticeDelay = 500;

const number = (value: unknown) => (typeof value === "number" ? value : undefined);
const text = (value: unknown) => (typeof value === "string" ? value : undefined);

/** The panel without an editor, an engine or a bus: what it answers and tells is what the panel does. */
export class MemoryPanel {
    /** The editor. */
    readonly host = new MemoryHost({
        playheadChanged: (seconds) => this.#playheadChanged(seconds),
        sequenceChanged: (sequence) => this.#tell("fcp:sequence-changed", sequence),
    });
    /** The container application; null before the panel has a link to one. */
    container: Container | null;

    #page: PanelPage;
    #ownsPage: boolean;
    #previousPlayheadTime = -1; // none
    #work: ReadonlyMap<string, Work>;

    constructor({ page, container = null }: MemoryPanelOptions = {}) {
        this.container = container;
        this.#ownsPage = page === undefined;
        this.#work = this.#commands();
        this.#page = page ? this.#addBridge(page) : this.#openPage();
    }

    /** The page's window. A reload makes a new one. */
    get window(): PanelPage {
        return this.#page;
    }

    /** Tells the page what the panel tells during its first load: one that takes longer than 4 s hears it twice. */
    finishLoading(milliseconds = 0): void {
        const hidings = milliseconds > revealDelay ? [revealDelay, milliseconds] : [milliseconds];
        for (const hiding of hidings)
            setTimeout(() => this.#notifyConnected(), hiding + connectedNoticeDelay);
    }

    /** A new document, which hears what the earlier one asked for, and which is told once that it is connected. */
    reload(): void {
        if (!this.#ownsPage)
            throw new Error("a real window reloads by itself, and takes its panel with it");
        this.#page = this.#openPage();
        this.finishLoading();
    }

    /** Takes the bridge away from a window that was given; what is on its way is lost. */
    remove(): void {
        if (!this.#ownsPage)
            Reflect.deleteProperty(this.#page, "webkit");
        this.#page = new EventTarget();
    }

    #webkit(): NonNullable<PanelPage["webkit"]> {
        const fcpBridge = Object.freeze({ postMessage: (...message: unknown[]) => this.#postMessage(message) });
        return Object.freeze({ messageHandlers: Object.freeze({ fcpBridge }) });
    }

    #openPage(): PanelPage {
        return new MemoryPage(this.#webkit());
    }

    #addBridge(page: PanelPage): PanelPage {
        if (page.webkit?.messageHandlers?.fcpBridge)
            throw new Error("this window has a bridge already");
        return Object.defineProperty(page, "webkit", { value: this.#webkit(), configurable: true });
    }

    // The message arrives after the call that posts it, and in turn.
    #postMessage(message: unknown[]): Promise<undefined> {
        if (message.length === 0)
            return Promise.reject(new TypeError("Not enough arguments"));
        const sent = posted(message[0]);
        return new Promise((resolve) => {
            // Of what never left the page the promise stays pending for ever.
            if (sent)
                queueMicrotask(() => resolve(this.#receive(received(sent.clone))));
        });
    }

    #receive(body: Members | undefined): undefined {
        const command = text(body?.["command"]);
        if (body === undefined || command === undefined)
            return;
        const resolveId = text(body["resolveId"]);
        const work = this.#work.get(command);
        if (work)
            work(body, resolveId);
        else
            this.#resolve(resolveId, null);
    }

    #commands(): ReadonlyMap<string, Work> {
        return new Map<string, Work>([
            ["getTimeline", (_body, id) => this.#resolve(id, this.host.sequence)],
            ["getPlayhead", (_body, id) => this.#getPlayhead(id)],
            ["seekTo", (body, id) => this.#seekTo(number(body["seconds"]), id)],
            ["syncComment", (body, id) => this.#ask(id, "syncComment", { comment: body })],
            [
                "deleteComment",
                ({ commentId }, id) => {
                    if (text(commentId) !== undefined)
                        this.#ask(id, "deleteComment", { commentId });
                },
            ],
            [
                "syncAllComments",
                ({ comments }, id) => {
                    if (Array.isArray(comments) && comments.every(isDictionary))
                        this.#ask(id, "syncAllComments", { comments });
                },
            ],
            ["clearAllMarkers", (_body, id) => this.#ask(id, "clearAllMarkers")],
            [
                "startExport",
                ({ config }, id) => {
                    if (isDictionary(config))
                        this.#ask(id, "startExport", config);
                },
            ],
            ["cancelExport", (_body, id) => this.#ask(id, "cancelExport")],
            ["selectOutputFolder", (_body, id) => this.#ask(id, "selectOutputFolder")],
            ["getMarkerAtTime", (body, id) => this.#getMarkerAtTime(body, id)],
            ["openURL", (body, id) => this.#openURL(text(body["url"]), id)],
            ["isFCPRunning", (_body, id) => this.#resolve(id, true)],
        ]);
    }

    #getPlayhead(resolveId: string | undefined): void {
        this.#previousPlayheadTime = this.host.playhead;
        this.#resolve(resolveId, this.host.playhead);
    }

    #seekTo(seconds: number | undefined, resolveId: string | undefined): void {
        if (seconds !== undefined) {
            this.#previousPlayheadTime = seconds; // the page's own seek is no jump by the user
            this.host.seek(seconds);
        }
        this.#resolve(resolveId, true); // also when nothing moved
    }

    #openURL(url: string | undefined, resolveId: string | undefined): void {
        if (url !== undefined && this.container)
            void ask(this.container, "openURL", { url });
        this.#resolve(resolveId, true);
    }

    #getMarkerAtTime({ seconds, threshold }: Members, resolveId: string | undefined): void {
        if (number(seconds) === undefined)
            this.#resolve(resolveId, null);
        else
            this.#ask(resolveId, "getMarkerAtTime", { seconds, threshold: number(threshold) ?? markerTolerance });
    }

    #ask(resolveId: string | undefined, command: string, payload?: Members): void {
        if (this.container)
            void ask(this.container, command, payload).then((result) => this.#resolve(resolveId, result));
        else
            this.#resolve(resolveId, false);
    }

    #playheadChanged(seconds: number): void {
        this.#tell("fcp:playhead-changed", { seconds });
        const previous = this.#previousPlayheadTime;
        if (previous >= 0 && Math.abs(seconds - previous) > jumpThreshold)
            void this.#tellOfMarker(seconds);
        this.#previousPlayheadTime = seconds;
    }

    async #tellOfMarker(seconds: number): Promise<void> {
        if (!this.container)
            return;
        const marker = await ask(this.container, "getMarkerAtTime", { seconds, threshold: markerTolerance });
        if (isDictionary(marker))
            this.#tell("fcp:marker-clicked", { ...marker, seconds }); // the playhead's, not the marker's own
    }

    #notifyConnected(): void {
        this.#tell("fcp:connected", {});
        const sequence: Sequence | null = this.host.sequence;
        if (sequence)
            this.#tell("fcp:sequence-changed", sequence);
    }

    #resolve(resolveId: string | undefined, result: unknown): void {
        if (resolveId !== undefined)
            this.#tell("fcp:resolve", { resolveId, value: written(result) ?? "null" });
    }

    // What has no JSON form is dropped.
    #tell(event: string, payload: object): void {
        const json = written(payload);
        if (json === undefined)
            return;
        // A window's own kind of event, where it has one: it takes no other.
        const { CustomEvent: OwnEvent = CustomEvent } = this.#page;
        this.#page.dispatchEvent(new OwnEvent(event, { detail: arrived(json) }));
    }
}
