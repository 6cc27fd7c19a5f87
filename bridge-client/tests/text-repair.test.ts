import { expect, test } from "vitest";
import { repair, repairText } from "../src/text-repair.js";
import { damaged } from "./page.js";

test.each(["Café", "日本", "🎬", "CafÃ©", "plain", "", "\ufeffafter a mark", "a\0b", "\u0080\u07ff\uffff"])(
    "%j comes out of the damage as it was",
    (text) => expect(repairText(damaged(text))).toBe(text),
);

test.each(["café", "日本", "🎬", "CafÃ© 日", "\u00ff", "\u00c3", "\u00ed\u00a0\u0080"])(
    "%j was never damaged and stays",
    (text) => expect(repairText(text)).toBe(text),
);

test("Every character of one to four bytes comes back", () => {
    for (let code = 1; code < 0x110000; code += 97) {
        if (code < 0xd800 || code > 0xdfff)
            expect(repairText(damaged(String.fromCodePoint(code)))).toBe(String.fromCodePoint(code));
    }
});

test("A long text is repaired like a short one", () => {
    const text = "é日🎬".repeat(100_000);
    expect(repairText(damaged(text))).toBe(text);
});

test("What is no text stays, and a member named like the prototype remains one", () => {
    const value = JSON.parse('{ "a": [1, true, null], "__proto__": { "polluted": true } }');
    expect(repair(value)).toEqual(value);
    expect(Object.keys(repair(value) as object)).toEqual(["a", "__proto__"]);
    expect(({} as Record<string, unknown>)["polluted"]).toBeUndefined();
});
