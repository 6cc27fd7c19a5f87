import { afterEach, beforeEach, describe, expect, test, vi } from "vitest";
import { BridgeAborted, BridgeError, BridgeTimeout, BridgeUnavailable, createBridge } from "../src/index.js";
import { damaged, openPage, outcomeOf } from "./page.js";

beforeEach(() => vi.useFakeTimers());
afterEach(() => vi.useRealTimers());

describe("A call", () => {
    test("posts the command, its arguments and an identifier at once", () => {
        const { bridge, posted } = openPage();
        void bridge.call("getMarkerAtTime", { seconds: 30, threshold: 2 });
        expect(posted).toEqual([
            { command: "getMarkerAtTime", seconds: 30, threshold: 2, resolveId: expect.any(String) },
        ]);
    });

    test("overwrites members that the envelope needs", () => {
        const { bridge, posted } = openPage();
        const kept = JSON.parse('{ "id": "c1", "seconds": 1, "command": "openURL", "resolveId": "old" }');
        void bridge.call("syncComment", kept);
        expect(posted[0]!.command).toBe("syncComment");
        expect(posted[0]!.resolveId).not.toBe("old");
    });

    test.each([
        ["null", null],
        ["false", false],
        ["12.5", 12.5],
        ['"/home/me"', "/home/me"],
        ['{"id":"c1"}', { id: "c1" }],
    ])("resolves with the answer %s, parsed", async (text, value) => {
        const { bridge, posted, answer } = openPage();
        const call = bridge.call("getMarkerAtTime", { seconds: 1 });
        answer(posted[0]!.resolveId, text);
        expect(await call).toEqual(value);
    });

    test("repairs the whole answer before it is parsed, keys included, and once", async () => {
        const { bridge, posted, answer } = openPage();
        const call = bridge.call("getMarkerAtTime", { seconds: 1 });
        const marker = { schlüssel: "Café 日本 🎬", text: 'CafÃ© "meant so"' };
        answer(posted[0]!.resolveId, damaged(JSON.stringify(marker)));
        expect(await call).toEqual(marker);
    });

    test("takes text that was escaped for what it says", async () => {
        const { bridge, posted, answer } = openPage();
        const call = bridge.call("selectOutputFolder");
        answer(posted[0]!.resolveId, String.raw`"\u00c3\u00a9"`);
        expect(await call).toBe("Ã©");
    });

    test("gets the answer that bears its identifier, in whatever order", async () => {
        const { bridge, posted, answer } = openPage();
        const calls = [bridge.call("clearAllMarkers"), bridge.call("cancelExport")];
        answer(posted[1]!.resolveId, "true");
        answer(posted[0]!.resolveId, "false");
        expect(await Promise.all(calls)).toEqual([false, true]);
    });

    test("takes the first answer only", async () => {
        const { bridge, posted, answer } = openPage();
        const call = bridge.call("getPlayhead");
        answer(posted[0]!.resolveId, "1");
        answer(posted[0]!.resolveId, "2");
        expect(await call).toBe(1);
    });

    test("ignores what is no answer to it", async () => {
        const { bridge, posted, answer, tell } = openPage();
        const call = bridge.call("getPlayhead");
        const { resolveId } = posted[0]!;
        answer("another", "1");
        answer(undefined, "2");
        for (const detail of [undefined, null, "text", {}, { resolveId }, { resolveId, value: "no JSON" }])
            tell("fcp:resolve", detail);
        answer(resolveId, "5");
        expect(await call).toBe(5);
    });

    test("has an identifier that no other call has, of this load or another", () => {
        const identifiers = new Set<string>();
        for (let load = 0; load < 20; load += 1) {
            const { bridge, posted } = openPage();
            for (let call = 0; call < 20; call += 1)
                void bridge.call("isFCPRunning");
            posted.forEach(({ resolveId }) => identifiers.add(resolveId));
        }
        expect(identifiers.size).toBe(400);
    });
});

describe("A call without an answer", () => {
    test.each([
        ["getTimeline", 5_000],
        ["getPlayhead", 5_000],
        ["isFCPRunning", 5_000],
        ["clearAllMarkers", 65_000],
        ["cancelExport", 65_000],
        ["selectOutputFolder", 65_000],
    ] as const)("%s rejects after %i ms, and not before", async (command, timeout) => {
        const { bridge } = openPage();
        const outcome = outcomeOf(bridge.call(command));
        await vi.advanceTimersByTimeAsync(timeout - 1);
        expect(outcome).toEqual({});
        await vi.advanceTimersByTimeAsync(1);
        expect(outcome.error).toBeInstanceOf(BridgeTimeout);
        expect(outcome.error).toBeInstanceOf(BridgeError);
        expect(outcome.error).toMatchObject({
            name: "BridgeTimeout",
            command,
            message: `"${command}" was not answered within ${timeout} ms`,
        });
    });

    test("with arguments takes its time from the command as well", async () => {
        const { bridge } = openPage();
        const host = [bridge.call("seekTo", { seconds: 1 }), bridge.call("openURL", { url: "https://a.test/" })].map(
            outcomeOf,
        );
        const container = [
            bridge.call("syncComment", { id: "c1", seconds: 1 }),
            bridge.call("deleteComment", { commentId: "c1" }),
            bridge.call("syncAllComments", { comments: [] }),
            bridge.call("startExport", { config: {} }),
            bridge.call("getMarkerAtTime", { seconds: 1 }),
        ].map(outcomeOf);
        await vi.advanceTimersByTimeAsync(5_000);
        for (const { error } of host)
            expect(error).toBeInstanceOf(BridgeTimeout);
        expect(container.every(({ error }) => error === undefined)).toBe(true);
        await vi.advanceTimersByTimeAsync(60_000);
        for (const { error } of container)
            expect(error).toBeInstanceOf(BridgeTimeout);
    });

    test("rejects after its own time-out where it has one", async () => {
        const { bridge } = openPage();
        const outcome = outcomeOf(bridge.call("clearAllMarkers", {}, { timeout: 50 }));
        await vi.advanceTimersByTimeAsync(50);
        expect(outcome.error).toBeInstanceOf(BridgeTimeout);
    });

    test("waits on where its time-out is too long for a timer", async () => {
        const { bridge } = openPage();
        const outcome = outcomeOf(bridge.call("clearAllMarkers", {}, { timeout: Infinity }));
        await vi.advanceTimersByTimeAsync(3_600_000);
        expect(outcome).toEqual({});
    });

    test("drops an answer that comes later", async () => {
        const { bridge, posted, answer } = openPage();
        const outcome = outcomeOf(bridge.call("getPlayhead"));
        await vi.advanceTimersByTimeAsync(5_000);
        const parse = vi.spyOn(JSON, "parse");
        answer(posted[0]!.resolveId, "1");
        await vi.advanceTimersByTimeAsync(0);
        expect(outcome.value).toBeUndefined();
        // It is forgotten, and not merely too late to settle anything.
        expect(parse).not.toHaveBeenCalled();
        parse.mockRestore();
    });

    test("leaves no timer behind once it is answered", async () => {
        const { bridge, posted, answer } = openPage();
        const call = bridge.call("getPlayhead");
        expect(vi.getTimerCount()).toBe(1);
        answer(posted[0]!.resolveId, "1");
        await call;
        await vi.advanceTimersByTimeAsync(0);
        expect(vi.getTimerCount()).toBe(0);
    });
});

describe("A call with a signal", () => {
    test("rejects when the signal is aborted, names the command and keeps the reason", async () => {
        const { bridge } = openPage();
        const controller = new AbortController();
        const outcome = outcomeOf(bridge.call("selectOutputFolder", {}, { signal: controller.signal }));
        await vi.advanceTimersByTimeAsync(10);
        expect(outcome).toEqual({});
        controller.abort("closed");
        await vi.advanceTimersByTimeAsync(0);
        expect(outcome.error).toBeInstanceOf(BridgeAborted);
        expect(outcome.error).toMatchObject({ name: "BridgeAborted", command: "selectOutputFolder", cause: "closed" });
        expect(vi.getTimerCount()).toBe(0);
    });

    test("posts nothing when it is aborted already", async () => {
        const { bridge, posted } = openPage();
        await expect(bridge.call("getPlayhead", {}, { signal: AbortSignal.abort() })).rejects.toBeInstanceOf(
            BridgeAborted,
        );
        expect(posted).toEqual([]);
    });

    test("lets go of the signal once it is answered", async () => {
        const { bridge, posted, answer } = openPage();
        const { signal } = new AbortController();
        const remove = vi.spyOn(signal, "removeEventListener");
        const call = bridge.call("getPlayhead", {}, { signal });
        answer(posted[0]!.resolveId, "1");
        await call;
        await vi.advanceTimersByTimeAsync(0);
        expect(remove).toHaveBeenCalledOnce();
    });
});

describe("Outside the panel", () => {
    test("the bridge says at once that it is not available", () => {
        expect(createBridge(new EventTarget()).available).toBe(false);
        expect(createBridge(Object.assign(new EventTarget(), { webkit: {} })).available).toBe(false);
        expect(openPage().bridge.available).toBe(true);
    });

    test("a call rejects and names the command", async () => {
        const bridge = createBridge(new EventTarget());
        const error: unknown = await bridge.call("getTimeline").catch((reason: unknown) => reason);
        expect(error).toBeInstanceOf(BridgeUnavailable);
        expect(error).toMatchObject({ name: "BridgeUnavailable", command: "getTimeline" });
    });

    test("listeners may be added all the same", () => {
        createBridge(new EventTarget()).on("fcp:connected", () => {})();
    });
});
