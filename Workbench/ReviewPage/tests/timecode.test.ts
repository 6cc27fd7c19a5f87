import { describe, expect, test } from "vitest";
import { formatTimecode, frameAt } from "../src/timecode.js";

const rates: [reported: number, numerator: number, denominator: number][] = [
    [23.98, 24_000, 1001],
    [29.97, 30_000, 1001],
    [47.95, 48_000, 1001],
    [59.94, 60_000, 1001],
    [119.88, 120_000, 1001],
    [24, 24, 1],
    [25, 25, 1],
    [60, 60, 1],
];

test.each(rates)("At %s every frame of a day is found by its own time", (reported, numerator, denominator) => {
    const wrong = [];
    for (let frame = 0; frame < (24 * 3600 * numerator) / denominator; frame += 97) {
        if (frameAt((frame * denominator) / numerator, reported) !== frame)
            wrong.push(frame);
    }
    expect(wrong).toEqual([]);
});

test.each([
    [29.97, 30, 2],
    [59.94, 60, 4],
])("At %s the labels are those of a count that leaves some out", (reported, count, dropped) => {
    let label = 0;
    const wrong = [];
    for (let frame = 0; frame < count * 60 * 25; frame += 1) {
        const [second, rest] = [Math.floor(label / count), label % count];
        const text = [Math.floor(second / 3600), Math.floor(second / 60) % 60, second % 60].map(two).join(":");
        if (formatTimecode((frame * 1001) / (count * 1000), reported) !== `${text};${two(rest)}`)
            wrong.push(frame);
        label += 1;
        const minute = label / count / 60;
        if (Number.isInteger(minute) && minute % 10 !== 0)
            label += dropped;
    }
    expect(wrong).toEqual([]);
});

describe("A timecode", () => {
    test("keeps to the clock over an hour where labels are left out", () => {
        expect(formatTimecode(3600, 29.97)).toBe("01:00:00;00");
        expect(formatTimecode(3600, 59.94)).toBe("01:00:00;00");
        expect(formatTimecode(3600, 23.98)).toBe("00:59:56:09");
    });

    test("counts every frame at whole rates", () => {
        expect(formatTimecode(3600, 25)).toBe("01:00:00:00");
        expect(formatTimecode(3599.99, 25)).toBe("00:59:59:24");
        expect(formatTimecode(-1, 25)).toBe("00:00:00:00");
    });

    test("is a clock without a rate, and nothing without a position", () => {
        expect(formatTimecode(86_399.5, 0)).toBe("23:59:59.500");
        expect(formatTimecode(NaN, 25)).toBe("--:--:--:--");
        expect(frameAt(NaN, 25)).toBe(0);
        expect(frameAt(1, 0)).toBe(0);
    });
});

function two(number: number): string {
    return String(number).padStart(2, "0");
}
