/** The browser's storage, which can be full and counts what is written. */
export class FakeStorage implements Storage {
    writes = 0;
    isFull = false;
    #items = new Map<string, string>();

    get length(): number {
        return this.#items.size;
    }

    clear(): void {
        this.#items.clear();
    }

    getItem(key: string): string | null {
        return this.#items.get(key) ?? null;
    }

    key(index: number): string | null {
        return [...this.#items.keys()][index] ?? null;
    }

    removeItem(key: string): void {
        this.#items.delete(key);
    }

    setItem(key: string, value: string): void {
        if (this.isFull)
            throw new DOMException("full", "QuotaExceededError");
        this.writes += 1;
        this.#items.set(key, value);
    }
}
