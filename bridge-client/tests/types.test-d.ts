import { describe, expectTypeOf, test } from "vitest";
import {
    type Bridge,
    BridgeError,
    type Command,
    createBridge,
    type EventName,
    type Marker,
    type Sequence,
} from "../src/index.js";
import { MemoryPanel } from "../src/testing/index.js";

declare const bridge: Bridge;

describe("The commands", () => {
    test("are these thirteen", () => {
        expectTypeOf<Command>().toEqualTypeOf<
            | "getTimeline"
            | "getPlayhead"
            | "seekTo"
            | "openURL"
            | "isFCPRunning"
            | "syncComment"
            | "deleteComment"
            | "syncAllComments"
            | "clearAllMarkers"
            | "startExport"
            | "cancelExport"
            | "selectOutputFolder"
            | "getMarkerAtTime"
        >();
        // @ts-expect-error letter case counts
        void bridge.call("GetTimeline");
    });

    test("resolve with what their answer can be", () => {
        expectTypeOf(bridge.call("getTimeline")).resolves.toEqualTypeOf<Sequence | null>();
        expectTypeOf(bridge.call("getPlayhead")).resolves.toEqualTypeOf<number | null>();
        expectTypeOf(bridge.call("seekTo", { seconds: 1 })).resolves.toEqualTypeOf<true>();
        expectTypeOf(bridge.call("openURL", { url: "https://a.test/" })).resolves.toEqualTypeOf<true>();
        expectTypeOf(bridge.call("isFCPRunning")).resolves.toEqualTypeOf<true>();
        expectTypeOf(bridge.call("syncComment", { id: "c1", seconds: 1 })).resolves.toEqualTypeOf<boolean>();
        expectTypeOf(bridge.call("deleteComment", { commentId: "c1" })).resolves.toEqualTypeOf<boolean>();
        expectTypeOf(bridge.call("syncAllComments", { comments: [] })).resolves.toEqualTypeOf<boolean>();
        expectTypeOf(bridge.call("clearAllMarkers")).resolves.toEqualTypeOf<boolean>();
        expectTypeOf(bridge.call("startExport", { config: {} })).resolves.toEqualTypeOf<boolean>();
        expectTypeOf(bridge.call("cancelExport")).resolves.toEqualTypeOf<boolean>();
        expectTypeOf(bridge.call("selectOutputFolder")).resolves.toEqualTypeOf<string | null | false>();
        expectTypeOf(bridge.call("getMarkerAtTime", { seconds: 1 })).resolves.toEqualTypeOf<Marker | null | false>();
    });

    test("want the arguments that they need", () => {
        // @ts-expect-error nothing to seek to
        void bridge.call("seekTo");
        // @ts-expect-error text is no number
        void bridge.call("seekTo", { seconds: "1" });
        // @ts-expect-error a comment's identifier
        void bridge.call("deleteComment", {});
        // @ts-expect-error entries are comments
        void bridge.call("syncAllComments", { comments: ["c1"] });
        // @ts-expect-error settings
        void bridge.call("startExport", {});
        // @ts-expect-error a link
        void bridge.call("openURL", { link: "https://a.test/" });
        // @ts-expect-error a comment has a time
        void bridge.call("syncComment", { id: "c1" });
        void bridge.call("syncComment", { id: "c1", seconds: 1, ownKey: [1] });
        void bridge.call("startExport", { config: { format: "csv", ownKey: 1 } });
    });

    test("leave the envelope's own names alone", () => {
        // @ts-expect-error the message's
        void bridge.call("syncComment", { id: "c1", seconds: 1, resolveId: "a" });
        // @ts-expect-error the command's
        void bridge.call("startExport", { config: { requestId: "a" } });
    });

    test("take options after the arguments, never in their place", () => {
        void bridge.call("getTimeline", {}, { timeout: 50, signal: AbortSignal.abort() });
        void bridge.call("seekTo", { seconds: 1 }, { timeout: 50, signal: undefined });
        // @ts-expect-error these are the arguments
        void bridge.call("getTimeline", { timeout: 50 });
    });
});

describe("The events", () => {
    test("are these five", () => {
        expectTypeOf<EventName>().toEqualTypeOf<
            "fcp:connected" | "fcp:sequence-changed" | "fcp:playhead-changed" | "fcp:marker-clicked" | "fcp:resolve"
        >();
        // @ts-expect-error there is no such event
        bridge.on("fcp:disconnected", () => {});
    });

    test("hand their detail to the listener", () => {
        bridge.on("fcp:connected", (detail) => expectTypeOf(detail).toEqualTypeOf<Record<string, never>>());
        bridge.on("fcp:sequence-changed", (detail) => expectTypeOf(detail).toEqualTypeOf<Sequence>());
        bridge.on("fcp:playhead-changed", (detail) => expectTypeOf(detail).toEqualTypeOf<{ seconds: number }>());
        bridge.on("fcp:marker-clicked", (detail) => expectTypeOf(detail.seconds).toEqualTypeOf<number>());
        bridge.on("fcp:resolve", (detail) =>
            expectTypeOf(detail).toEqualTypeOf<{ resolveId: string; value: string }>(),
        );
    });

    test("are unsubscribed from at once", () => {
        expectTypeOf(bridge.on("fcp:connected", () => {})).toEqualTypeOf<() => void>();
    });
});

describe("The rest", () => {
    test("takes a browser's window for a page", () => {
        expectTypeOf(createBridge).toBeCallableWith(window);
        expectTypeOf(MemoryPanel).toBeConstructibleWith({ page: window });
    });

    test("is synchronous, and names the command", () => {
        expectTypeOf(bridge.available).toEqualTypeOf<boolean>();
        expectTypeOf<BridgeError["command"]>().toEqualTypeOf<Command>();
    });
});
