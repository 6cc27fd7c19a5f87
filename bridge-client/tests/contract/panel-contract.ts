import { afterEach, beforeEach, describe, expect, test } from "vitest";
import type { Members, OpenPanel, PanelUnderTest } from "./panel-under-test.js";
import { witnessOf } from "./witness.js";

const sequence = { name: "Interview", duration: 10.5, frameRate: 30000 / 1001 };
const sequenceInfo = {
    name: "Interview",
    duration: 10.5,
    frameRate: 29.97,
    width: 0,
    height: 0,
    startTimecode: "00:00:00:00",
};

/** What a page can rely on, whichever panel it is in. */
export function panelContract(name: string, open: OpenPanel): void {
    let panel: PanelUnderTest;
    const { heard, details, answers, postText, post, settled, valueOf, ask, command, askContainer, payload } =
        witnessOf(() => panel);

    describe(name, () => {
        beforeEach(async () => {
            panel = await open(0);
        });

        afterEach(() => panel.close());

        test("answers the commands of the host", async () => {
            expect(await ask({ command: "getTimeline" })).toBeNull();
            await panel.openSequence(sequence);
            await panel.movePlayhead(2.5);
            expect(await ask({ command: "getTimeline" })).toEqual(sequenceInfo);
            expect(await ask({ command: "getPlayhead" })).toBe(2.5);
            expect(await ask({ command: "seekTo", seconds: 12.5 })).toBe(true);
            expect(await panel.seeks()).toEqual([12.5]);
            expect(await ask({ command: "openURL", url: "https://a.test/" })).toBe(true);
            expect(await ask({ command: "isFCPRunning" })).toBe(true);
        });

        test("answers nothing to a command that there is not, letter case included", async () => {
            expect(await ask({ command: "GetTimeline" })).toBeNull();
            expect(await ask({ command: "" })).toBeNull();
        });

        test("takes an argument of the wrong type for none", async () => {
            for (const seconds of ["12.5", true, null, undefined])
                expect(await ask({ command: "seekTo", seconds })).toBe(true);
            expect(await panel.seeks()).toEqual([]);
            expect(await ask({ command: "getMarkerAtTime", seconds: "30" })).toBeNull();
            expect(await ask({ command: "openURL", url: 7 })).toBe(true);
            expect(await panel.commands()).toEqual([]);
        });

        test("never answers three malformed requests", async () => {
            await post({ command: "deleteComment", commentId: 7, resolveId: "a" });
            await post({ command: "syncAllComments", comments: [{ id: "c1" }, "c2"], resolveId: "b" });
            await post({ command: "syncAllComments", comments: { id: "c1" }, resolveId: "c" });
            await post({ command: "startExport", config: ["csv"], resolveId: "d" });
            await settled();
            await panel.elapse(120_000);
            await settled();
            expect(await answers()).toHaveLength(2);
            expect(await panel.commands()).toEqual([]);
        });

        test("carries out what has no identifier, and answers nothing", async () => {
            await post({ command: "seekTo", seconds: 1.5 });
            await post({ command: "seekTo", seconds: 2.5, resolveId: 7 });
            await settled();
            expect(await panel.seeks()).toEqual([1.5, 2.5]);
            expect(await answers()).toHaveLength(1);
        });

        test("ignores a message that is no command", async () => {
            for (const message of [
                "getTimeline",
                1,
                true,
                null,
                [{ command: "seekTo", seconds: 1 }],
                {},
                { command: 7, resolveId: "a" },
            ])
                await post(message);
            await postText("undefined");
            await settled();
            expect(await answers()).toHaveLength(1);
        });

        test("lets a script hide the bridge, and not take it away", async () => {
            expect(await panel.inPage("delete window.webkit; return bridge.available")).toBe(true);
            expect(await panel.inPage("window.webkit = {}; return bridge.available")).toBe(false);
            expect(await panel.inPage("delete window.webkit; return bridge.available")).toBe(true);
            await panel.inPage(
                "const handlers = window.webkit.messageHandlers; try { handlers.fcpBridge = 1; } catch {}",
            );
            await panel.inPage("try { delete window.webkit.messageHandlers.fcpBridge; } catch {}");
            await settled();
        });

        test("rejects only a message without an argument", async () => {
            const handler = "window.webkit.messageHandlers.fcpBridge";
            expect(await panel.inPage(`return ${handler}.postMessage().then(() => "resolved", () => "rejected")`)).toBe(
                "rejected",
            );
            expect(await panel.inPage(`return ${handler}.postMessage("any").then((value) => String(value))`)).toBe(
                "undefined",
            );
        });

        test("reads plain JSON from a message, whatever it holds", async () => {
            await postText(`{
                command: "syncComment", undefined: undefined, big: 1n, array: [undefined, NaN, [1]], nan: NaN,
                seconds: -0, date: new Date(0), never: new Date(NaN), map: new Map([[1, 2]]), set: new Set([1]),
                pattern: /a/, error: new Error("a"), buffer: new ArrayBuffer(2), boxed: new Number(7),
                bytes: new Uint8Array([5]), text: new String("ab"), lone: "a\\ud800",
                instance: new (class { own = 1; get other() { return 2; } })(),
                deep: { ["__proto__"]: { a: 1 }, kept: 1 }
            }`);
            expect((await command(1))["comment"]).toEqual({
                command: "syncComment",
                array: [null, null, [1]],
                nan: null,
                seconds: 0,
                date: "1970-01-01T00:00:00.000Z",
                never: null,
                map: {},
                set: {},
                pattern: {},
                error: {},
                buffer: {},
                boxed: {},
                bytes: { 0: 5 },
                text: { 0: "a", 1: "b" },
                instance: { own: 1 },
                lone: "a\ufffd",
                deep: { kept: 1 },
            });
        });

        test("never hears of a message that cannot leave the page", async () => {
            const odd = [
                "() => {}",
                "Symbol()",
                "new Proxy({}, {})",
                "Promise.resolve()",
                "new WeakMap()",
                "{ toJSON() {} }",
                "{ get broken() { throw new Error(); } }",
            ];
            for (const value of odd)
                await postText(`{ command: "seekTo", seconds: 1, odd: ${value} }`);
            await panel.inPage(
                "const cycle = { command: 'seekTo', seconds: 1 }; cycle.cycle = cycle;" +
                    "void window.webkit.messageHandlers.fcpBridge.postMessage(cycle)",
            );
            await settled();
            expect(await panel.seeks()).toEqual([]);
        });

        test("reads messages 512 levels deep and no deeper", async () => {
            const nested = (levels: number) =>
                `{ command: "seekTo", seconds: ${levels}, nested: ${"[".repeat(levels - 1)}${"]".repeat(levels - 1)} }`;
            await postText(nested(512));
            await postText(nested(513));
            await settled();
            expect(await panel.seeks()).toEqual([512]);
        });

        test("hands the container what a command is about", async () => {
            expect(await payload({ command: "syncComment", id: "c1", resolveId: "a" })).toEqual({
                command: "syncComment",
                comment: { command: "syncComment", id: "c1", resolveId: "a" },
            });
            expect(await payload({ command: "deleteComment", commentId: "c1", other: 1 })).toEqual({
                command: "deleteComment",
                commentId: "c1",
            });
            expect(await payload({ command: "syncAllComments", comments: [] })).toEqual({
                command: "syncAllComments",
                comments: [],
            });
            expect(await payload({ command: "clearAllMarkers", other: 1 })).toEqual({ command: "clearAllMarkers" });
            expect(
                await payload({
                    command: "startExport",
                    config: { format: "csv", command: "other", requestId: "own" },
                }),
            ).toEqual({
                command: "startExport",
                format: "csv",
            });
            expect(await payload({ command: "cancelExport" })).toEqual({ command: "cancelExport" });
            expect(await payload({ command: "selectOutputFolder" })).toEqual({ command: "selectOutputFolder" });
            expect(await payload({ command: "getMarkerAtTime", seconds: 30 })).toEqual({
                command: "getMarkerAtTime",
                seconds: 30,
                threshold: 0.5,
            });
            expect(await payload({ command: "getMarkerAtTime", seconds: 30, threshold: 2 })).toMatchObject({
                threshold: 2,
            });
            expect(await payload({ command: "openURL", url: "https://a.test/" })).toEqual({
                command: "openURL",
                url: "https://a.test/",
            });
        });

        test("takes nothing but a real true for a yes", async () => {
            const commands: Members[] = [
                { command: "syncComment" },
                { command: "deleteComment", commentId: "c1" },
                { command: "syncAllComments", comments: [] },
                { command: "clearAllMarkers" },
                { command: "startExport", config: {} },
                { command: "cancelExport" },
            ];
            for (const message of commands) {
                expect(await askContainer(message, true)).toBe(true);
                for (const result of [false, "true", null, { done: true }])
                    expect(await askContainer(message, result)).toBe(false);
            }
        });

        test("passes on a folder that is text and a marker that is an object", async () => {
            const folder = { command: "selectOutputFolder" };
            expect(await askContainer(folder, "/home/ana")).toBe("/home/ana");
            expect(await askContainer(folder, null)).toBeNull();
            expect(await askContainer(folder, 7)).toBeNull();
            const marker = { command: "getMarkerAtTime", seconds: 2 };
            expect(await askContainer(marker, { id: "c1", start: 2.5 })).toEqual({ id: "c1", start: 2.5 });
            expect(await askContainer(marker, null)).toBeNull();
            expect(await askContainer(marker, "c1")).toBeNull();
            expect(await askContainer(marker, ["c1"])).toBeNull();
        });

        test("answers in the container's place after 60 seconds, and only once", async () => {
            await post({ command: "clearAllMarkers", resolveId: "yes or no" });
            await post({ command: "selectOutputFolder", resolveId: "folder" });
            await post({ command: "getMarkerAtTime", seconds: 1, resolveId: "marker" });
            const { requestId } = await command(3);
            await panel.elapse(59_900);
            await settled();
            expect(await answers()).toHaveLength(1);
            await panel.elapse(200);
            await settled();
            expect(await answers()).toHaveLength(5);
            expect(await valueOf("yes or no")).toBe(false);
            expect(await valueOf("folder")).toBeNull();
            expect(await valueOf("marker")).toBeNull();
            await panel.answer(requestId, { id: "late" });
            await settled();
            expect(await answers()).toHaveLength(6);
        });

        test("answers in the container's order", async () => {
            await post({ command: "clearAllMarkers", resolveId: "first" });
            const first = await command(1);
            await post({ command: "cancelExport", resolveId: "second" });
            const second = await command(2);
            await panel.answer(second.requestId, true);
            await valueOf("second");
            await panel.answer(first.requestId, true);
            await valueOf("first");
            expect((await answers()).map(({ resolveId }) => resolveId)).toEqual(["second", "first"]);
        });

        test("says half a second after the load that it is connected, then which sequence is open", async () => {
            await panel.elapse(499);
            await settled();
            expect(await details("fcp:connected")).toEqual([]);
            await panel.elapse(1);
            await expect.poll(() => details("fcp:connected")).toEqual([{}]);
            await settled();
            expect(await details("fcp:sequence-changed")).toEqual([]);
            await panel.openSequence(sequence);
            await panel.reload();
            await panel.elapse(500);
            await expect.poll(async () => (await heard()).length).toBeGreaterThanOrEqual(2);
            expect((await heard()).slice(-2)).toEqual([
                { name: "fcp:connected", detail: {} },
                { name: "fcp:sequence-changed", detail: sequenceInfo },
            ]);
            await panel.elapse(10_000);
            await settled();
            expect(await details("fcp:connected")).toHaveLength(1);
        });

        test("tells of each movement and each sequence", async () => {
            await panel.openSequence(sequence);
            for (const seconds of [1, 1.04, 1.08])
                await panel.movePlayhead(seconds);
            await expect
                .poll(() => details("fcp:playhead-changed"))
                .toEqual([{ seconds: 1 }, { seconds: 1.04 }, { seconds: 1.08 }]);
            await panel.openSequence({ name: "Reel 2", duration: 2, frameRate: 24000 / 1001 });
            await expect
                .poll(() => details("fcp:sequence-changed"))
                .toEqual([sequenceInfo, { ...sequenceInfo, name: "Reel 2", duration: 2, frameRate: 23.98 }]);
        });

        test("tells nothing of a position that is no number, and answers nothing for it", async () => {
            await panel.openSequence(sequence);
            await panel.movePlayhead(1);
            await panel.movePlayhead(NaN);
            await panel.movePlayhead(9); // after such a position, no step is a jump
            expect(await ask({ command: "getPlayhead" })).toBe(9);
            await panel.movePlayhead(NaN);
            expect(await ask({ command: "getPlayhead" })).toBeNull();
            expect(await details("fcp:playhead-changed")).toEqual([{ seconds: 1 }, { seconds: 9 }]);
            expect(await panel.commands()).toEqual([]);
        });

        test("takes a jump onto a marker for a click", async () => {
            await panel.openSequence(sequence);
            await panel.movePlayhead(30); // the first position is no jump
            await panel.movePlayhead(30.5);
            await panel.movePlayhead(12);
            const { requestId, ...lookup } = await command(1);
            expect(lookup).toEqual({ command: "getMarkerAtTime", seconds: 12, threshold: 0.5 });
            await panel.answer(requestId, { id: "c1", seconds: 11.8 });
            await expect.poll(() => details("fcp:marker-clicked")).toEqual([{ id: "c1", seconds: 12 }]);
            await panel.movePlayhead(20);
            await panel.answer((await command(2)).requestId, null);
            await settled();
            expect(await details("fcp:marker-clicked")).toHaveLength(1);
        });

        test("takes no step of 0.6 seconds, and no position that the page knows, for a click", async () => {
            await panel.openSequence(sequence);
            await panel.movePlayhead(0);
            await panel.movePlayhead(0.6);
            await ask({ command: "seekTo", seconds: 9 });
            await panel.movePlayhead(9);
            await settled();
            expect(await panel.commands()).toEqual([]);
        });

        test("sends text as one character for each byte, keys included, which the client repairs once", async () => {
            const name = "Café 日本 🎬 CafÃ© plain";
            const damaged = Buffer.from(name).toString("latin1");
            await panel.openSequence({ ...sequence, name });
            expect(await ask({ command: "getTimeline" })).toMatchObject({ name: damaged });
            await expect.poll(() => details("fcp:sequence-changed")).toMatchObject([{ name: damaged }]);
            expect(await panel.inPage("return (await bridge.call('getTimeline')).name")).toBe(name);
            await post({ command: "isFCPRunning", resolveId: "é" });
            expect(await valueOf("Ã©")).toBe(true);

            await panel.inPage(
                "window.markers = []; bridge.on('fcp:marker-clicked', (marker) => window.markers.push(marker))",
            );
            await panel.movePlayhead(1);
            await panel.movePlayhead(5);
            await panel.answer((await command(1)).requestId, { schlüssel: [name] });
            await expect.poll(() => panel.inPage("return window.markers")).toEqual([{ schlüssel: [name], seconds: 5 }]);
            expect(Object.keys((await details("fcp:marker-clicked"))[0]!)).toContain("schlÃ¼ssel");
        });

        test("gets from the client what it can answer", async () => {
            await panel.openSequence(sequence);
            expect(await panel.inPage("return bridge.available")).toBe(true);
            expect(await panel.inPage("return bridge.call('seekTo', { seconds: 2 })")).toBe(true);
            const refused = "return bridge.call('deleteComment', {}).catch((error) => [error.name, error.command])";
            expect(await panel.inPage(refused)).toEqual(["BridgeInvalidArgument", "deleteComment"]);
            // An observable store's objects are proxies, which do not leave the page as they are.
            await panel.inPage(
                "const comment = new Proxy({ id: 'c1', seconds: 1, text: 'é日' }, {});" +
                    "window.synced = bridge.call('syncComment', comment); return null",
            );
            const { requestId, comment } = await command(1);
            expect(comment).toMatchObject({ id: "c1", seconds: 1, text: "é日" });
            await panel.answer(requestId, true);
            expect(await panel.inPage("return window.synced")).toBe(true);
        });

        test("answers an earlier load's requests into the next one, whose client drops them", async () => {
            await panel.inPage("void bridge.call('clearAllMarkers').catch(() => {}); return null");
            const { requestId } = await command(1);
            await panel.reload();
            await panel.inPage("window.answered = bridge.call('cancelExport'); return null");
            const second = await command(2);
            await panel.answer(requestId, false);
            await expect.poll(async () => (await answers()).length).toBe(1);
            await panel.answer(second.requestId, true);
            expect(await panel.inPage("return window.answered")).toBe(true);
        });
    });

    describe(`${name}, with a page that loads for more than 4 seconds`, () => {
        afterEach(() => panel.close());

        test("says twice that it is connected", async () => {
            panel = await open(6_000);
            await panel.elapse(10_000);
            await expect.poll(() => details("fcp:connected")).toEqual([{}, {}]);
        });
    });
}
