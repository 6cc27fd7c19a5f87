import { afterEach, beforeEach, describe, expect, test, vi } from "vitest";
import { createBridge } from "../src/index.js";
import { MemoryPanel, type PanelPage } from "../src/testing/index.js";
import { outcomeOf } from "./page.js";

beforeEach(() => vi.useFakeTimers());
afterEach(() => vi.useRealTimers());

describe("The panel in memory", () => {
    test("answers false to every command of the container before it has one", async () => {
        const bridge = createBridge(new MemoryPanel().window);
        expect(await bridge.call("syncComment", { id: "c1", seconds: 1 })).toBe(false);
        expect(await bridge.call("deleteComment", { commentId: "c1" })).toBe(false);
        expect(await bridge.call("syncAllComments", { comments: [] })).toBe(false);
        expect(await bridge.call("clearAllMarkers")).toBe(false);
        expect(await bridge.call("startExport", { config: {} })).toBe(false);
        expect(await bridge.call("cancelExport")).toBe(false);
        expect(await bridge.call("selectOutputFolder")).toBe(false);
        expect(await bridge.call("getMarkerAtTime", { seconds: 1 })).toBe(false);
        expect(await bridge.call("openURL", { url: "https://a.test/" })).toBe(true);
    });

    test("looks for no marker before it has a container", async () => {
        const panel = new MemoryPanel();
        const clicked = vi.fn();
        createBridge(panel.window).on("fcp:marker-clicked", clicked);
        panel.host.movePlayhead(1);
        panel.host.movePlayhead(9);
        await vi.runAllTimersAsync();
        expect(clicked).not.toHaveBeenCalled();
    });

    test("takes a container that fails for one that does not answer", async () => {
        const panel = new MemoryPanel({
            container: () => {
                throw new Error("lost");
            },
        });
        const outcome = outcomeOf(createBridge(panel.window).call("clearAllMarkers"));
        await vi.advanceTimersByTimeAsync(59_999);
        expect(outcome).toEqual({});
        await vi.advanceTimersByTimeAsync(1);
        expect(outcome.value).toBe(false);
    });

    test("knows no timeline, and seeks none, once it is closed", async () => {
        const panel = new MemoryPanel();
        const bridge = createBridge(panel.window);
        panel.host.openSequence({ name: "Cut", duration: 2, frameRate: 25 });
        panel.host.movePlayhead(1);
        panel.host.closeTimeline();
        expect(await bridge.call("getTimeline")).toBeNull();
        expect(await bridge.call("getPlayhead")).toBe(0);
        expect(await bridge.call("seekTo", { seconds: 1 })).toBe(true);
        expect(await bridge.call("getPlayhead")).toBe(0);
    });

    test("tells after a seek where the playhead went, in steps of 1/600 s", async () => {
        const panel = new MemoryPanel();
        const bridge = createBridge(panel.window);
        panel.host.openSequence({ name: "Cut", duration: 2, frameRate: 25 });
        const moved = vi.fn();
        bridge.on("fcp:playhead-changed", moved);
        await bridge.call("seekTo", { seconds: 1.0001 });
        await vi.advanceTimersByTimeAsync(0);
        expect(moved.mock.calls).toEqual([[{ seconds: 1 }]]);
        expect(panel.host.playhead).toBe(1);
    });

    test("drops an event, and answers nothing, for what has no JSON form", async () => {
        const panel = new MemoryPanel();
        const bridge = createBridge(panel.window);
        const heard = vi.fn();
        bridge.on("fcp:playhead-changed", heard);
        bridge.on("fcp:sequence-changed", heard);
        panel.host.movePlayhead(NaN);
        panel.host.openSequence({ name: "Cut", duration: Infinity, frameRate: 25 });
        panel.host.openSequence({ name: "\ud800", duration: 1, frameRate: 25 });
        expect(heard).not.toHaveBeenCalled();
        expect(await bridge.call("getPlayhead")).toBeNull();
        expect(await bridge.call("getTimeline")).toBeNull();
    });
});

describe("The panel in memory, on a window that is there", () => {
    const openWindow = () => new EventTarget() as PanelPage;

    test("gives it the bridge and takes it away again", async () => {
        const page = openWindow();
        const bridge = createBridge(page);
        expect(bridge.available).toBe(false);
        const panel = new MemoryPanel({ page });
        expect(bridge.available).toBe(true);
        expect(await bridge.call("isFCPRunning")).toBe(true);
        panel.finishLoading();
        panel.remove();
        expect(bridge.available).toBe(false);
        const connected = vi.fn();
        bridge.on("fcp:connected", connected);
        await vi.runAllTimersAsync();
        expect(connected).not.toHaveBeenCalled();
        new MemoryPanel({ page });
    });

    test("leaves a window alone that has a bridge", () => {
        const page = openWindow();
        new MemoryPanel({ page });
        expect(() => new MemoryPanel({ page })).toThrow("this window has a bridge already");
    });

    test("dispatches events of the window's own kind", async () => {
        class OwnEvent extends CustomEvent<unknown> {}
        const page = Object.assign(openWindow(), { CustomEvent: OwnEvent as typeof CustomEvent });
        const heard: Event[] = [];
        page.addEventListener("fcp:connected", (event) => heard.push(event));
        new MemoryPanel({ page }).finishLoading();
        await vi.runAllTimersAsync();
        expect(heard).toEqual([expect.any(OwnEvent)]);
    });

    test("cannot reload it", () => {
        expect(() => new MemoryPanel({ page: openWindow() }).reload()).toThrow("reloads by itself");
    });
});
