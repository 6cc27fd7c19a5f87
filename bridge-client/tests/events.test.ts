import { describe, expect, test, vi } from "vitest";
import { damaged, openPage } from "./page.js";

const sequence = { name: "Café", duration: 10.5, frameRate: 25, width: 0, height: 0, startTimecode: "00:00:00:00" };

describe("A listener", () => {
    test("hears its event's detail, and of no other event", () => {
        const { bridge, tell } = openPage();
        const listener = vi.fn();
        bridge.on("fcp:playhead-changed", listener);
        tell("fcp:connected", {});
        tell("fcp:playhead-changed", { seconds: 1.04 });
        expect(listener.mock.calls).toEqual([[{ seconds: 1.04 }]]);
    });

    test("hears nothing more from the moment when it is unsubscribed", () => {
        const { bridge, tell } = openPage();
        const listener = vi.fn();
        const unsubscribe = bridge.on("fcp:connected", listener);
        unsubscribe();
        unsubscribe();
        tell("fcp:connected", {});
        expect(listener).not.toHaveBeenCalled();
    });

    test("may unsubscribe itself while it hears an event", () => {
        const { bridge, tell } = openPage();
        const listener = vi.fn(() => unsubscribe());
        const unsubscribe = bridge.on("fcp:connected", listener);
        tell("fcp:connected", {});
        tell("fcp:connected", {});
        expect(listener).toHaveBeenCalledOnce();
    });

    test("is one subscription each time that it is added", () => {
        const { bridge, tell } = openPage();
        const listener = vi.fn();
        const unsubscribe = bridge.on("fcp:connected", listener);
        bridge.on("fcp:connected", listener);
        unsubscribe();
        tell("fcp:connected", {});
        expect(listener).toHaveBeenCalledOnce();
    });

    test("gets every text repaired, keys included", () => {
        const { bridge, tell } = openPage();
        const listener = vi.fn();
        bridge.on("fcp:marker-clicked", listener);
        const marker = { schlüssel: [{ text: "日本", resolved: true, none: null }], seconds: 2 };
        tell("fcp:marker-clicked", JSON.parse(damaged(JSON.stringify(marker))));
        expect(listener).toHaveBeenCalledWith(marker);
    });

    test("gets text repaired once, however many others listen", () => {
        const { bridge, tell } = openPage();
        const listeners = [vi.fn(), vi.fn(), vi.fn()];
        for (const listener of listeners)
            bridge.on("fcp:sequence-changed", listener);
        const detail = { ...sequence, name: damaged("CafÃ©") };
        tell("fcp:sequence-changed", detail);
        for (const listener of listeners)
            expect(listener).toHaveBeenCalledWith({ ...sequence, name: "CafÃ©" });
        expect(detail.name).toBe(damaged("CafÃ©"));
    });

    test("of answers hears each one, with its JSON text repaired", () => {
        const { bridge, answer } = openPage();
        const listener = vi.fn();
        bridge.on("fcp:resolve", listener);
        answer("another-1", damaged('"Café"'));
        expect(listener).toHaveBeenCalledWith({ resolveId: "another-1", value: '"Café"' });
    });
});
