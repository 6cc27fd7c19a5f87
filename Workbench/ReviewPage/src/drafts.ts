// What was typed and not yet sent, written down at each key, so that a reload finds it again.

import { type ReadonlySignal, signal } from "@preact/signals";
import { JsonStorage } from "./storage.js";

export interface CommentDraft {
    text: string;
    /** Seconds: where the playhead was when the text was begun. */
    seconds: number;
    /** Seconds: the end of a range. */
    end?: number;
}

export interface DraftSet {
    comment?: CommentDraft;
    /** By the comment's identifier. */
    edits: Readonly<Record<string, CommentDraft>>;
    replies: Readonly<Record<string, string>>;
}

const none: DraftSet = { edits: {}, replies: {} };

export class Drafts {
    #storage: JsonStorage;
    #current = signal<DraftSet>(none);
    #key: string | null = null;

    constructor(storage: Storage) {
        this.#storage = new JsonStorage(storage, "zelvix.drafts:");
    }

    /** Those of the open sequence. */
    get current(): ReadonlySignal<DraftSet> {
        return this.#current;
    }

    open(key: string): void {
        this.#key = key;
        this.#current.value = understood(this.#storage.read(key));
    }

    setComment(draft: CommentDraft | undefined): void {
        const { comment: _before, ...others } = this.#current.value;
        this.#set(draft ? { ...others, comment: draft } : others);
    }

    setEdit(id: string, draft: CommentDraft | undefined): void {
        this.#set({ ...this.#current.value, edits: withEntry(this.#current.value.edits, id, draft) });
    }

    setReply(id: string, text: string | undefined): void {
        this.#set({ ...this.#current.value, replies: withEntry(this.#current.value.replies, id, text) });
    }

    #set(drafts: DraftSet): void {
        this.#current.value = drafts;
        if (this.#key === null)
            return;
        if (drafts.comment || Object.keys(drafts.edits).length > 0 || Object.keys(drafts.replies).length > 0)
            this.#storage.write(this.#key, drafts);
        else
            this.#storage.remove(this.#key);
    }
}

function withEntry<T>(entries: Readonly<Record<string, T>>, id: string, value: T | undefined): Record<string, T> {
    const kept = Object.fromEntries(Object.entries(entries).filter(([key]) => key !== id));
    return value === undefined ? kept : { ...kept, [id]: value };
}

function understood(stored: unknown): DraftSet {
    const { comment, edits, replies } = Object(stored);
    return {
        ...(isDraft(comment) ? { comment } : {}),
        edits: entriesThat(isDraft, edits),
        replies: entriesThat((value) => typeof value === "string", replies),
    };
}

function entriesThat<T>(test: (value: unknown) => value is T, stored: unknown): Record<string, T> {
    return Object.fromEntries(
        Object.entries(Object(stored) as object).filter((entry): entry is [string, T] => test(entry[1])),
    );
}

function isDraft(value: unknown): value is CommentDraft {
    const { text, seconds, end } = Object(value);
    return typeof text === "string" && Number.isFinite(seconds) && (end === undefined || Number.isFinite(end));
}
