import { byTime, isReviewComment, type ReviewComment } from "./comment.js";
import { JsonStorage } from "./storage.js";

/** Milliseconds: how long a change that can be made again may wait for others. */
const writeDelay = 250;

/** Keeps the comments of each sequence, by time, in the browser's storage, so that a reload finds them again. */
export class CommentStore {
    #storage: JsonStorage;
    // What this load of the page knows, which is also all there is when the browser keeps nothing.
    #lists = new Map<string, readonly ReviewComment[]>();
    #waiting = new Map<string, ReturnType<typeof setTimeout>>();

    constructor(storage: Storage) {
        this.#storage = new JsonStorage(storage, "zelvix.comments:");
    }

    read(key: string): readonly ReviewComment[] {
        let list = this.#lists.get(key);
        if (!list) {
            const stored = this.#storage.read(key);
            list = Array.isArray(stored) ? stored.filter(isReviewComment).sort(byTime) : [];
            this.#lists.set(key, list);
        }
        return list;
    }

    /** False when the comments will not outlive this load. */
    write(key: string, comments: readonly ReviewComment[]): boolean {
        clearTimeout(this.#waiting.get(key));
        this.#waiting.delete(key);
        this.#lists.set(key, comments);
        return this.#storage.write(key, comments);
    }

    /** For what a reload finds out anew: thousands of answers must not write thousands of comments each. */
    writeSoon(key: string, comments: readonly ReviewComment[]): void {
        this.#lists.set(key, comments);
        if (!this.#waiting.has(key))
            this.#waiting.set(key, setTimeout(() => this.write(key, this.read(key)), writeDelay));
    }

    /** Writes what waits, as when the page goes away. */
    flush(): void {
        for (const key of [...this.#waiting.keys()])
            this.write(key, this.read(key));
    }
}
