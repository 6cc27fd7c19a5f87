import { describe, expect, test } from "vitest";
import { RowLayout } from "../src/row-layout.js";

function layoutOf(count: number): RowLayout {
    const layout = new RowLayout(50);
    layout.setRows(Array.from({ length: count }, (_, index) => `c${index}`));
    return layout;
}

describe("The layout of rows", () => {
    test("takes a row that was never shown for an ordinary one", () => {
        const layout = layoutOf(5_000);
        expect(layout.height).toBe(250_000);
        expect(layout.topOf(4_999)).toBe(249_950);
        expect(layout.rangeWithin(1_000, 300)).toEqual([20, 27]);
    });

    test("finds no row where there is none", () => {
        const layout = layoutOf(0);
        expect(layout.height).toBe(0);
        expect(layout.rangeWithin(0, 500)).toEqual([0, 0]);
        expect(layout.indexAt(10)).toBe(0);
    });

    test("keeps within the rows", () => {
        const layout = layoutOf(3);
        expect(layout.rangeWithin(-400, 5_000)).toEqual([0, 3]);
        expect(layout.indexAt(10_000)).toBe(2);
    });

    test("moves what is below a row that turns out higher, and says how far to scroll when it is above", () => {
        const layout = layoutOf(100);
        expect(layout.measure(new Map([["c1", 80]]), 1_000)).toBe(30);
        expect(layout.topOf(2)).toBe(130);
        expect(layout.height).toBe(5_030);
        expect(layout.measure(new Map([["c50", 70]]), 1_000)).toBe(0);
        expect(layout.measure(new Map([["c50", 70]]), 1_000)).toBeUndefined();
    });

    test("leaves the row in place that is partly above the view when it grows", () => {
        const layout = layoutOf(100);
        expect(layout.measure(new Map([["c20", 90]]), 1_010)).toBe(0);
    });

    test("remembers heights when rows come and go", () => {
        const layout = layoutOf(3);
        layout.measure(new Map([["c1", 100]]), 0);
        layout.setRows(["c0", "c1"]);
        expect(layout.height).toBe(150);
        layout.setRows(["c1"]);
        expect(layout.height).toBe(100);
    });

    test("scrolls no further than a row needs", () => {
        const layout = layoutOf(100);
        expect(layout.scrollTopToReveal(50, 0, 300)).toBe(2_250);
        expect(layout.scrollTopToReveal(3, 1_000, 300)).toBe(150);
        expect(layout.scrollTopToReveal(22, 1_000, 300)).toBe(1_000);
    });
});
