// Where the rows of a long list lie when only those on the screen are made. A row's height is known once it was shown;
// until then it is taken for an ordinary one.

export class RowLayout {
    #ordinary: number;
    #heights = new Map<string, number>();
    #ids: readonly string[] = [];
    // Of each row, and of the end.
    #tops = new Float64Array(1);

    constructor(ordinaryHeight: number) {
        this.#ordinary = ordinaryHeight;
    }

    get height(): number {
        return this.#tops[this.#ids.length]!;
    }

    topOf(index: number): number {
        return this.#tops[index]!;
    }

    heightOf(index: number): number {
        return this.#tops[index + 1]! - this.#tops[index]!;
    }

    setRows(ids: readonly string[]): void {
        this.#ids = ids;
        if (this.#tops.length < ids.length + 1)
            this.#tops = new Float64Array(ids.length * 2 + 1);
        let top = 0;
        for (let index = 0; index < ids.length; index += 1) {
            this.#tops[index] = top;
            top += this.#heights.get(ids[index]!) ?? this.#ordinary;
        }
        this.#tops[ids.length] = top;
    }

    /**
     * Takes in what was measured. Answers how much was added above `scrollTop`, by which the list has to be scrolled to
     * stand still; undefined when nothing changed.
     */
    measure(heights: ReadonlyMap<string, number>, scrollTop: number): number | undefined {
        let changed = false;
        let above = 0;
        for (let index = this.indexAt(scrollTop) - 1; index >= 0; index -= 1) {
            const height = heights.get(this.#ids[index]!);
            if (height !== undefined)
                above += height - this.heightOf(index);
        }
        for (const [id, height] of heights) {
            changed ||= this.#heights.get(id) !== height;
            this.#heights.set(id, height);
        }
        if (!changed)
            return undefined;
        this.setRows(this.#ids);
        return above;
    }

    /** The row at that height, the last one below the end, 0 without any. */
    indexAt(y: number): number {
        let first = 0;
        let last = this.#ids.length - 1;
        while (first < last) {
            const middle = (first + last + 1) >> 1;
            if (this.#tops[middle]! <= y)
                first = middle;
            else
                last = middle - 1;
        }
        return first;
    }

    /** The rows from `top` on over that height, as a half-open range. */
    rangeWithin(top: number, height: number): [first: number, end: number] {
        if (this.#ids.length === 0)
            return [0, 0];
        return [this.indexAt(top), this.indexAt(top + height) + 1];
    }

    /** The least scrolling from `scrollTop` that brings the whole row into a view of that height. */
    scrollTopToReveal(index: number, scrollTop: number, viewHeight: number): number {
        const top = this.topOf(index);
        const highest = top + this.heightOf(index) - viewHeight;
        return Math.min(top, Math.max(scrollTop, highest));
    }
}
