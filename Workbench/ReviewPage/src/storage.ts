// The browser's storage, which outlives a reload, as a place for JSON.

export class JsonStorage {
    #storage: Storage;
    #prefix: string;

    constructor(storage: Storage, prefix: string) {
        this.#storage = storage;
        this.#prefix = prefix;
    }

    /** Undefined when nothing is there, or no JSON. */
    read(key: string): unknown {
        try {
            return JSON.parse(this.#storage.getItem(this.#prefix + key) ?? "") as unknown;
        } catch {
            return undefined;
        }
    }

    /** False when it will not outlive this load: a full storage, or one that is switched off. */
    write(key: string, value: unknown): boolean {
        try {
            this.#storage.setItem(this.#prefix + key, JSON.stringify(value));
            return true;
        } catch {
            return false;
        }
    }

    remove(key: string): void {
        try {
            this.#storage.removeItem(this.#prefix + key);
        } catch {
            // A storage that is switched off holds nothing to remove.
        }
    }
}

/** The panel tells no identifier of a sequence. Its length changes while somebody edits; name and rate stay. */
export function sequenceKey({ name, frameRate }: { name: string; frameRate: number }): string {
    return JSON.stringify([name, frameRate]);
}
