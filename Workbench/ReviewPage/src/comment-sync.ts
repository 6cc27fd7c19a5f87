import type { Bridge } from "bridge-client";
import { computed, type ReadonlySignal, signal } from "@preact/signals";
import { byTime, type CommentFields, type ReviewComment, type SyncState, wireForm } from "./comment.js";
import type { CommentStore } from "./comment-store.js";

/** Milliseconds: the pause before what was not synced is sent again, the longest one, and when a wait is a long one. */
const firstPause = 5_000;
const longestPause = 40_000;
const longWait = 5_000;

/** How many are sent again side by side. */
const sideBySide = 16;

interface Attempt {
    /** Of the comment's contents: an answer to an earlier one says nothing about the later one. */
    revision: number;
    startedAt: number;
    isOver: boolean;
}

export interface SyncReport {
    done: boolean;
    count: number;
    milliseconds: number;
}

/**
 * The comments of the open sequence and their way to the container application. What it refused, or did not answer, is
 * sent again: one comment after a pause that grows, and all others as soon as the container is heard of.
 */
export class CommentSync {
    #bridge: Pick<Bridge, "call">;
    #store: CommentStore;
    #key: string | null = null;
    #comments = signal<readonly ReviewComment[]>([]);
    #kept = signal(true);
    // By identifier, for every sequence of this load.
    #revisions = new Map<string, number>();
    #attempts = new Map<string, Attempt>();
    #timer: ReturnType<typeof setTimeout> | undefined;
    #pause = firstPause;

    constructor(bridge: Pick<Bridge, "call">, store: CommentStore) {
        this.#bridge = bridge;
        this.#store = store;
    }

    /** Ordered by time. */
    get comments(): ReadonlySignal<readonly ReviewComment[]> {
        return this.#comments;
    }

    /** False when the browser does not keep the comments over a reload. */
    get kept(): ReadonlySignal<boolean> {
        return this.#kept;
    }

    readonly notSynced = computed(() => this.#comments.value.filter(({ state }) => state === "failed").length);

    /**
     * Shows another sequence's comments. What was not synced when an earlier load of the page ended is sent again: the
     * container takes a repetition for the same comment.
     */
    open(key: string): void {
        this.#key = key;
        this.#comments.value = this.#store.read(key);
        this.#pause = firstPause;
        this.#sendWaiting((attempt) => !attempt);
        this.#schedule();
    }

    add(fields: CommentFields): ReviewComment {
        const id = crypto.randomUUID();
        const comment: ReviewComment = { ...fields, id, createdAt: new Date().toISOString(), state: "pending" };
        this.#save(this.#key!, [...this.#comments.value, comment].sort(byTime));
        void this.#send(this.#key!, id);
        return comment;
    }

    change(id: string, fields: Partial<CommentFields>): void {
        this.#edit(id, { ...fields, updatedAt: new Date().toISOString() });
    }

    remove(id: string): void {
        this.#edit(id, { removing: true });
    }

    retry(id: string): void {
        this.#edit(id, {});
    }

    retryAll(): void {
        for (const { id, state } of this.#comments.value) {
            if (state === "failed")
                this.#attempts.delete(id);
        }
        this.#setStates(this.#key!, ({ state }) => (state === "failed" ? "pending" : state));
        this.#sendWaiting((attempt) => !attempt);
    }

    /** Hands the whole list over; the container drops what is not in it. */
    async syncAll(): Promise<SyncReport> {
        const key = this.#key!;
        const startedAt = performance.now();
        const listed = this.#comments.value.filter(({ removing }) => !removing);
        const attempts = new Map(listed.map(({ id }) => [id, this.#begin(id, this.#nextRevision(id))]));
        const settle = (state: SyncState) =>
            this.#setStates(key, (comment) =>
                attempts.get(comment.id)?.revision === this.#revision(comment.id) ? state : comment.state,
            );
        settle("pending");
        const done = await isDone(this.#bridge.call("syncAllComments", { comments: listed.map(wireForm) }));
        for (const attempt of attempts.values())
            attempt.isOver = true;
        settle(done ? "synced" : "failed");
        this.#learn(done);
        return { done, count: listed.length, milliseconds: performance.now() - startedAt };
    }

    /** A marker of the timeline that this page does not know, as after its storage was cleared. */
    adopt(comment: ReviewComment): void {
        this.#save(this.#key!, [...this.#comments.value, comment].sort(byTime));
    }

    /** The container was heard of by another way. */
    containerIsThere(): void {
        this.#learn(true);
    }

    #edit(id: string, fields: Partial<ReviewComment>): void {
        const key = this.#key!;
        const before = this.#find(key, id);
        if (!before)
            return;
        this.#nextRevision(id);
        const comment: ReviewComment = { ...before, ...fields, state: "pending" };
        this.#save(key, this.#replaced(key, id, comment).sort(byTime));
        void this.#send(key, id);
    }

    /** Leaves the state as it is until there is an answer: what is sent again by itself does not flicker. */
    async #send(key: string, id: string): Promise<void> {
        const comment = this.#find(key, id);
        if (!comment)
            return;
        const attempt = this.#begin(id);
        const done = await isDone(
            comment.removing
                ? this.#bridge.call("deleteComment", { commentId: id })
                : this.#bridge.call("syncComment", wireForm(comment)),
        );
        attempt.isOver = true;
        this.#settle(key, id, attempt, done);
        this.#learn(done);
    }

    #settle(key: string, id: string, attempt: Attempt, done: boolean): void {
        const comment = this.#find(key, id);
        if (!comment || attempt.revision !== this.#revision(id))
            return;
        if (done && comment.removing)
            this.#save(key, this.#store.read(key).filter((entry) => entry.id !== id));
        else if (done && comment.state !== "synced")
            this.#saveSoon(key, this.#replaced(key, id, { ...comment, state: "synced" }));
        else if (!done && comment.state === "pending")
            this.#saveSoon(key, this.#replaced(key, id, { ...comment, state: "failed" }));
    }

    #begin(id: string, revision = this.#revision(id)): Attempt {
        const attempt = { revision, startedAt: performance.now(), isOver: false };
        this.#attempts.set(id, attempt);
        return attempt;
    }

    #revision(id: string): number {
        return this.#revisions.get(id) ?? 0;
    }

    #nextRevision(id: string): number {
        const revision = this.#revision(id) + 1;
        this.#revisions.set(id, revision);
        return revision;
    }

    #learn(isThere: boolean): void {
        if (isThere) {
            this.#pause = firstPause;
            this.#sendWaiting(isDue);
        }
        this.#schedule();
    }

    #sendWaiting(isWanted: (attempt: Attempt | undefined) => boolean): void {
        const waiting = this.#waiting();
        const due = waiting.filter(({ id }) => isWanted(this.#attempts.get(id)));
        const underWay = waiting.filter(({ id }) => !isDue(this.#attempts.get(id)) && !this.#attempts.get(id)!.isOver).length;
        for (const { id } of due.slice(0, Math.max(0, sideBySide - underWay)))
            void this.#send(this.#key!, id);
    }

    #waiting(): readonly ReviewComment[] {
        return this.#comments.value.filter(({ state }) => state !== "synced");
    }

    // The one whose last attempt is the longest ago: one that is refused for good does not hold up the others.
    #probe(): void {
        const startedAt = ({ id }: ReviewComment) => this.#attempts.get(id)?.startedAt ?? -1;
        const due = this.#waiting().filter(({ id }) => isDue(this.#attempts.get(id)));
        const [first] = [...due].sort((one, other) => startedAt(one) - startedAt(other));
        if (first)
            void this.#send(this.#key!, first.id);
    }

    #schedule(): void {
        if (this.#timer !== undefined || this.#waiting().length === 0)
            return;
        this.#timer = setTimeout(() => {
            this.#timer = undefined;
            this.#pause = Math.min(this.#pause * 2, longestPause);
            this.#probe();
            this.#schedule();
        }, this.#pause);
    }

    #find(key: string, id: string): ReviewComment | undefined {
        return this.#store.read(key).find((comment) => comment.id === id);
    }

    #replaced(key: string, id: string, comment: ReviewComment): ReviewComment[] {
        return this.#store.read(key).map((entry) => (entry.id === id ? comment : entry));
    }

    #setStates(key: string, stateOf: (comment: ReviewComment) => SyncState): void {
        const changed = (comment: ReviewComment) => {
            const state = stateOf(comment);
            return state === comment.state ? comment : { ...comment, state };
        };
        this.#save(key, this.#store.read(key).map(changed));
    }

    #save(key: string, comments: readonly ReviewComment[]): void {
        this.#kept.value = this.#store.write(key, comments);
        this.#show(key, comments);
    }

    #saveSoon(key: string, comments: readonly ReviewComment[]): void {
        this.#store.writeSoon(key, comments);
        this.#show(key, comments);
    }

    #show(key: string, comments: readonly ReviewComment[]): void {
        if (key === this.#key)
            this.#comments.value = comments;
    }
}

async function isDone(answer: Promise<boolean>): Promise<boolean> {
    try {
        return (await answer) === true;
    } catch {
        return false;
    }
}

// What was sent a moment ago is still being answered, or was refused and would be again.
function isDue(attempt: Attempt | undefined): boolean {
    return !attempt || performance.now() - attempt.startedAt > longWait;
}
