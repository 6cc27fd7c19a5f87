// Keeps the comments of each sequence in the browser's storage, so that a reload finds them again.

const PREFIX = "zelvix.comments:";
const STATES = ["pending", "synced", "failed"];

// The panel tells no identifier of a sequence. Its length changes while somebody edits; name and rate stay.
export function sequenceKey(sequence) {
    return JSON.stringify([sequence.name, sequence.frameRate]);
}

export class CommentStore {
    #storage;
    // What this load of the page knows, which is also all there is when the browser keeps nothing.
    #lists = new Map();

    constructor(storage = window.localStorage) {
        this.#storage = storage;
    }

    read(key) {
        if (!this.#lists.has(key))
            this.#lists.set(key, this.#load(key));
        return this.#lists.get(key);
    }

    // False when the comments will not outlive this load: a full storage, or one that is switched off.
    write(key, comments) {
        this.#lists.set(key, comments);
        try {
            this.#storage.setItem(PREFIX + key, JSON.stringify(comments));
            return true;
        } catch {
            return false;
        }
    }

    #load(key) {
        try {
            return JSON.parse(this.#storage.getItem(PREFIX + key)).filter(isComment);
        } catch {
            return []; // nothing stored, or no list of ours
        }
    }
}

// Storage is shared with every page of this origin: what does not look like ours is left out.
function isComment(entry) {
    return (
        typeof entry?.id === "string" &&
        typeof entry.text === "string" &&
        Number.isFinite(entry.seconds) &&
        STATES.includes(entry.state)
    );
}
