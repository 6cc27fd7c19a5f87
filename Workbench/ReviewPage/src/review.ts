import { type Bridge, BridgeTimeout, type Events, type Marker, type Sequence } from "bridge-client";
import { computed, effect, type ReadonlySignal, signal } from "@preact/signals";
import { commentOf, type CommentFields, type Reply, type ReviewComment } from "./comment.js";
import { CommentStore } from "./comment-store.js";
import { CommentSync } from "./comment-sync.js";
import { type CommentDraft, Drafts } from "./drafts.js";
import { EventLog, logged } from "./event-log.js";
import { ExportDesk } from "./export-desk.js";
import { JsonStorage, sequenceKey } from "./storage.js";
import { formatTimecode, frameAt, noTimecode } from "./timecode.js";

export type ConnectionState = "waiting" | "connected" | "silent" | "outside";

export const connectionTexts: Record<ConnectionState, string> = {
    waiting: "Waiting for the panel",
    connected: "Connected",
    silent: "No answer",
    outside: "No editor",
};

export type Filter = "all" | "open" | "resolved";

export interface Surroundings {
    bridge: Bridge;
    storage: Storage;
    /** Calls once, when the next frame is painted. */
    nextFrame: (paint: () => void) => void;
    /** Whether there is an editor behind the bridge. */
    isAttached: boolean;
}

/** What the page knows and does: what the panel says goes in, what the user does goes out. */
export class Review {
    readonly log: EventLog;
    readonly comments: CommentSync;
    readonly drafts: Drafts;
    readonly exports: ExportDesk;
    readonly connection = signal<ConnectionState>("waiting");
    readonly sequence = signal<Sequence | null>(null);
    readonly timecode = signal(noTimecode);
    readonly frame = signal("–");
    readonly notice = signal("");
    readonly author = signal("");
    readonly filter = signal<Filter>("all");
    /** The comment that is looked at. A new object each time that it is to be shown. */
    readonly highlighted = signal<{ id: string } | null>(null);
    readonly shown: ReadonlySignal<readonly ReviewComment[]>;

    #bridge: Bridge;
    #store: CommentStore;
    #settings: JsonStorage;
    #nextFrame: Surroundings["nextFrame"];
    #isAttached: boolean;
    #playhead: number | null = null; // seconds
    #isPainting = false;

    constructor({ bridge, storage, nextFrame, isAttached }: Surroundings) {
        this.#nextFrame = nextFrame;
        this.#isAttached = isAttached;
        this.log = new EventLog(nextFrame);
        this.#bridge = logged(bridge, this.log, () => this.#setConnection("connected"));
        this.#store = new CommentStore(storage);
        this.#settings = new JsonStorage(storage, "zelvix.settings:");
        this.comments = new CommentSync(this.#bridge, this.#store);
        this.drafts = new Drafts(storage);
        this.exports = new ExportDesk(
            this.#settings,
            (command, args) => this.#ask(command, args),
            (text) => this.say(text),
        );
        const author = this.#settings.read("author");
        this.author.value = typeof author === "string" ? author : "";
        this.shown = computed(() => {
            const filter = this.filter.value;
            const all = this.comments.comments.value;
            return filter === "all" ? all : all.filter(({ resolved }) => Boolean(resolved) === (filter === "resolved"));
        });
        effect(() => {
            if (!this.comments.kept.value)
                this.say("This browser keeps no comments: a reload loses those that are not synced.");
        });
    }

    start(): void {
        if (!this.#isAttached)
            this.connection.value = "outside";
        this.#bridge.on("fcp:connected", () => void this.#catchUp());
        this.#bridge.on("fcp:sequence-changed", (sequence) => this.#showSequence(sequence));
        this.#bridge.on("fcp:playhead-changed", ({ seconds }) => this.#movePlayhead(seconds));
        this.#bridge.on("fcp:marker-clicked", (marker) => this.#showMarker(marker));
        void this.#catchUp();
    }

    /** The page goes away. */
    stop(): void {
        this.#store.flush();
    }

    /** Seconds; 0 before a position is known. */
    get playhead(): number {
        return this.#playhead ?? 0;
    }

    get rate(): number {
        return this.sequence.value?.frameRate ?? 0;
    }

    say(text: string): void {
        this.notice.value = text;
    }

    setAuthor(name: string): void {
        this.author.value = name;
        this.#settings.write("author", name);
    }

    /** The comment's place is where the playhead was when its first letter was typed. */
    typeComment(text: string): void {
        const draft = this.drafts.current.value.comment;
        this.drafts.setComment(text === "" ? undefined : { ...(draft ?? { seconds: this.playhead }), text });
    }

    addComment(): void {
        const draft = this.drafts.current.value.comment;
        const text = draft?.text.trim();
        if (!draft || !text || this.sequence.value === null)
            return;
        this.drafts.setComment(undefined);
        const author = this.author.value.trim();
        const added = this.comments.add({ ...fieldsOf({ ...draft, text }), ...(author && { author }) });
        if (this.filter.value === "resolved")
            this.filter.value = "all";
        this.highlight(added.id);
    }

    saveEdit(id: string): void {
        const draft = this.drafts.current.value.edits[id];
        const text = draft?.text.trim();
        if (!draft || !text)
            return;
        this.comments.change(id, { duration: 0, ...fieldsOf({ ...draft, text }) });
        this.drafts.setEdit(id, undefined);
    }

    addReply(comment: ReviewComment): void {
        const text = this.drafts.current.value.replies[comment.id]?.trim();
        if (!text)
            return;
        const author = this.author.value.trim();
        const reply: Reply = {
            id: crypto.randomUUID(),
            text,
            ...(author && { author }),
            createdAt: new Date().toISOString(),
        };
        this.comments.change(comment.id, { replies: [...(comment.replies ?? []), reply] });
        this.drafts.setReply(comment.id, undefined);
    }

    removeReply({ id, replies = [] }: ReviewComment, reply: Reply): void {
        this.comments.change(id, { replies: replies.filter((other) => other !== reply) });
    }

    /** The range of a draft that ends at the playhead; the moment again when that is not behind its start. */
    withEndAtPlayhead({ end: _end, ...draft }: CommentDraft): CommentDraft {
        return this.playhead > draft.seconds ? { ...draft, end: this.playhead } : draft;
    }

    highlight(id: string): void {
        this.highlighted.value = { id };
    }

    async seek(comment: ReviewComment): Promise<void> {
        this.highlight(comment.id);
        await this.#ask("seekTo", { seconds: comment.seconds });
    }

    async findAtPlayhead(): Promise<void> {
        const marker = await this.#ask("getMarkerAtTime", { seconds: this.playhead });
        if (marker)
            this.#showMarker({ seconds: this.playhead, ...(marker as Marker) });
        else
            this.say(marker === null ? "No comment at the playhead." : "The container application is not connected.");
    }

    async syncAll(): Promise<void> {
        this.say("Syncing all comments…");
        const { done, count, milliseconds } = await this.comments.syncAll();
        const time = `${(milliseconds / 1000).toFixed(2)} s`;
        this.say(
            done
                ? `${count === 1 ? "1 comment" : `${count.toLocaleString("en")} comments`} synced in ${time}.`
                : "The comments could not be synced.",
        );
    }

    // Asks something and gives null when nobody answers; the connection shows why.
    async #ask(command: string, args: object = {}): Promise<unknown> {
        try {
            return await (this.#bridge.call as (command: string, args: object) => Promise<unknown>)(command, args);
        } catch (problem) {
            if (problem instanceof BridgeTimeout)
                this.#setConnection("silent");
            else
                this.say((problem as Error).message);
            return null;
        }
    }

    // The event "fcp:connected" comes twice for each load, and an answer may come before it.
    async #catchUp(): Promise<void> {
        const sequence = (await this.#ask("getTimeline")) as Sequence | null;
        if (sequence !== null && this.sequence.value === null)
            this.#showSequence(sequence);
        const seconds = await this.#ask("getPlayhead");
        if (typeof seconds === "number" && this.#playhead === null)
            this.#movePlayhead(seconds);
    }

    #setConnection(state: ConnectionState): void {
        if (this.#isAttached)
            this.connection.value = state;
    }

    #showSequence(sequence: Sequence): void {
        const before = this.sequence.value && sequenceKey(this.sequence.value);
        const key = sequenceKey(sequence);
        if (before !== key) {
            this.highlighted.value = null;
            this.drafts.open(key);
            this.comments.open(key);
        }
        this.sequence.value = sequence;
        this.exports.frameRate = sequence.frameRate;
        this.#schedulePaint();
    }

    #movePlayhead(seconds: number): void {
        this.#playhead = seconds;
        this.#schedulePaint();
    }

    // At most one change of the texts for each frame on the screen, however fast positions come in.
    #schedulePaint(): void {
        if (this.#isPainting)
            return;
        this.#isPainting = true;
        this.#nextFrame(() => {
            this.#isPainting = false;
            this.timecode.value = formatTimecode(this.#playhead ?? NaN, this.rate);
            this.frame.value = this.#playhead === null || !(this.rate > 0) ? "–" : String(frameAt(this.#playhead, this.rate));
        });
    }

    #showMarker(marker: Events["fcp:marker-clicked"]): void {
        this.comments.containerIsThere();
        const comment = commentOf(marker);
        const isKnown = this.comments.comments.value.some(({ id }) => id === marker.id);
        if (!isKnown && comment && this.sequence.value !== null)
            this.comments.adopt(comment);
        if (!isKnown && !comment) {
            this.highlighted.value = null;
            return;
        }
        if (!this.shown.value.some(({ id }) => id === marker.id))
            this.filter.value = "all";
        this.highlight(marker.id!);
        this.say(`Marker: ${marker.text ?? marker.id}`);
    }
}

/** What a draft says about a comment. */
function fieldsOf({ text, seconds, end }: CommentDraft): CommentFields {
    return { text, seconds, ...(end !== undefined && end > seconds ? { duration: end - seconds } : {}) };
}

/** A draft of what the comment says. */
export function draftOf({ text, seconds, duration = 0 }: ReviewComment): CommentDraft {
    return { text, seconds, ...(duration > 0 ? { end: seconds + duration } : {}) };
}
