import { describe, expect, test } from "vitest";
import { type Bridge, BridgeInvalidArgument } from "../src/index.js";
import { openPage } from "./page.js";

// Calls as a page in plain JavaScript can make them.
type Untyped = (command: string, args?: unknown) => Promise<unknown>;

function refusalOf(command: string, args?: unknown) {
    const { bridge, posted } = openPage();
    const call = (bridge as Bridge & { call: Untyped }).call(command, args);
    return {
        posted,
        error: call.then(
            () => undefined,
            (error: unknown) => error,
        ),
    };
}

describe("What the panel would leave unanswered or without effect is not posted", () => {
    test.each<[string, unknown, string]>([
        ["deleteComment", undefined, 'needs text as "commentId"'],
        ["deleteComment", { commentId: 7 }, 'needs text as "commentId"'],
        ["syncAllComments", {}, 'needs an array of objects as "comments"'],
        ["syncAllComments", { comments: {} }, 'needs an array of objects as "comments"'],
        ["syncAllComments", { comments: [{ id: "c1" }, "c2"] }, 'needs an array of objects as "comments"'],
        ["syncAllComments", { comments: [null] }, 'needs an array of objects as "comments"'],
        ["startExport", {}, 'needs an object as "config"'],
        ["startExport", { config: ["csv"] }, 'needs an object as "config"'],
        ["startExport", { config: null }, 'needs an object as "config"'],
        ["seekTo", {}, 'needs a finite number as "seconds"'],
        ["seekTo", { seconds: "12.5" }, 'needs a finite number as "seconds"'],
        ["seekTo", { seconds: NaN }, 'needs a finite number as "seconds"'],
        ["seekTo", { seconds: Infinity }, 'needs a finite number as "seconds"'],
        ["getMarkerAtTime", { threshold: 1 }, 'needs a finite number as "seconds"'],
        ["getMarkerAtTime", { seconds: 1, threshold: NaN }, 'needs a finite number or nothing as "threshold"'],
        ["getMarkerAtTime", { seconds: 1, threshold: "1" }, 'needs a finite number or nothing as "threshold"'],
        ["openURL", { url: new URL("https://a.test/").searchParams }, 'needs text as "url"'],
        ["syncComment", [{ id: "c1" }], "needs an object that JSON can hold"],
        ["syncComment", "c1", "needs an object that JSON can hold"],
        ["syncComment", null, "needs an object that JSON can hold"],
        ["syncComment", () => {}, "needs an object that JSON can hold"],
        ["syncComment", { big: 1n }, "needs an object that JSON can hold"],
        ["GetTimeline", {}, "is no command"],
        ["constructor", {}, "is no command"],
    ])("%s %o", async (command, args, reason) => {
        const { posted, error } = refusalOf(command, args);
        expect(await error).toBeInstanceOf(BridgeInvalidArgument);
        expect(await error).toMatchObject({
            name: "BridgeInvalidArgument",
            command,
            message: `"${command}" ${reason}`,
        });
        expect(posted).toEqual([]);
    });

    test("an object that contains itself, with the engine's own reason as the cause", async () => {
        const cycle: Record<string, unknown> = {};
        cycle["cycle"] = cycle;
        expect(await refusalOf("syncComment", cycle).error).toMatchObject({ cause: expect.any(TypeError) });
    });
});

describe("What is posted is plain", () => {
    const postedOf = (comment: Record<string, unknown>) => {
        const { bridge, posted } = openPage();
        void bridge.call("syncComment", { id: "c1", seconds: 1, ...comment });
        return posted[0];
    };

    test("because a proxy or a function would keep the message from leaving the page", () => {
        const posted = postedOf({ reply: new Proxy({ text: "a" }, {}), render: () => {}, at: new Date(0) });
        expect(posted).toMatchObject({ reply: { text: "a" }, at: "1970-01-01T00:00:00.000Z" });
        expect(posted).not.toHaveProperty("render");
        expect(() => structuredClone(posted)).not.toThrow();
    });

    test("and a copy, which later changes do not reach", () => {
        const author = { name: "Ana" };
        const posted = postedOf({ author });
        author.name = "Ben";
        expect(posted).toMatchObject({ author: { name: "Ana" } });
    });

    test("and text that is sent needs no repair", () => {
        expect(postedOf({ text: "Café 日本 🎬" })).toMatchObject({ text: "Café 日本 🎬" });
    });
});
