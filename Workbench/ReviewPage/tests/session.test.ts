import type { BridgePage } from "bridge-client";
import { createBridge } from "bridge-client";
import { MemoryPanel } from "bridge-client/testing";
import { describe, expect, test } from "vitest";
import { type Fetch, playBack, recorded, taskOf } from "../src/session.js";

const film = { name: "Café", duration: 10, frameRate: 25 };

/** The workbench's side: what it was told, and when it answers. */
class Desk {
    posts: { path: string; body: string }[] = [];
    recording = "";
    answers: (() => void)[] = [];
    isSlow = false;
    isGone = false;

    fetch: Fetch = async (path, { method = "GET", body } = {}) => {
        if (this.isGone)
            throw new TypeError("Load failed");
        if (method === "GET")
            return new Response(path.endsWith("/recording") ? this.recording : "", { status: 200 });
        this.posts.push({ path, body: String(body) });
        if (this.isSlow)
            await new Promise<void>((answer) => this.answers.push(answer));
        return new Response(null, { status: 204 });
    };

    lines(): unknown[] {
        return this.posts.flatMap(({ body }) => body.split("\n").map((line) => JSON.parse(line) as unknown));
    }

    report(): unknown {
        const { path, body } = this.posts.at(-1)!;
        return path === "/fcp-panel/session/report" ? JSON.parse(body) : undefined;
    }
}

function openPanel(): MemoryPanel {
    const panel = new MemoryPanel();
    panel.host.openSequence(film);
    return panel;
}

const pageWith = (text: string | undefined) => ({
    getElementById: (id: string) => (id === "session" && text !== undefined ? { textContent: text } : null) as HTMLElement | null,
});

describe("A page", () => {
    test("finds its task in its head, or none", () => {
        expect(taskOf(pageWith('{"mode":"record","began":5}'))).toEqual({ mode: "record", began: 5 });
        expect(taskOf(pageWith('{"mode":"replay"}'))).toEqual({ mode: "replay" });
        expect(taskOf(pageWith(undefined))).toBeUndefined();
    });
});

describe("A recorded page", () => {
    test("sends what it says and hears, counted from the recording's begin", async () => {
        const desk = new Desk();
        const panel = openPanel();
        const began = performance.timeOrigin + performance.now() - 60_000;
        await createBridge(recorded(panel.window as BridgePage, began, desk.fetch)).call("getPlayhead");
        await expect.poll(() => desk.lines()).toHaveLength(2);
        expect(desk.lines()).toMatchObject([{ by: "page", message: { command: "getPlayhead" } }, { by: "panel", event: "fcp:resolve" }]);
        expect(desk.posts[0]!.path).toBe("/fcp-panel/session/lines");
        for (const { at } of desk.lines() as { at: number }[]) {
            expect(at).toBeGreaterThanOrEqual(60_000);
            expect(at).toBeLessThan(70_000);
        }
    });

    test("sends one request at a time, and loses nothing meanwhile", async () => {
        const desk = new Desk();
        const panel = openPanel();
        desk.isSlow = true;
        recorded(panel.window as BridgePage, 0, desk.fetch);
        for (const seconds of [1, 2, 3])
            panel.host.movePlayhead(seconds);
        expect(desk.posts).toHaveLength(1);
        desk.isSlow = false;
        desk.answers.forEach((answer) => answer());
        await expect.poll(() => desk.posts.length).toBe(2);
        expect(desk.lines()).toMatchObject([1, 2, 3].map((seconds) => ({ detail: { seconds } })));
    });

    test("works on without a server, and sends again when it is back", async () => {
        const desk = new Desk();
        const panel = openPanel();
        desk.isGone = true;
        const bridge = createBridge(recorded(panel.window as BridgePage, 0, desk.fetch));
        expect(await bridge.call("getPlayhead")).toBe(0);
        desk.isGone = false;
        panel.host.movePlayhead(4);
        await expect.poll(() => desk.lines()).toMatchObject([{ event: "fcp:playhead-changed" }]);
    });
});

describe("A page that plays back", () => {
    const moved = { at: 0, by: "panel", event: "fcp:playhead-changed", detail: { seconds: 2 } };

    test("has the workbench do what the user did, and reports that all went well", async () => {
        const desk = new Desk();
        const panel = openPanel();
        const changed = { at: 0, by: "panel", event: "fcp:sequence-changed", detail: { ...panel.host.sequence, name: "B" } };
        desk.recording = [moved, changed].map((line) => JSON.stringify(line)).join("\n");
        const fetch: Fetch = async (path, options) => {
            const answer = await desk.fetch(path, options);
            if (path.endsWith("/playhead"))
                panel.host.movePlayhead(Number(options!.body));
            if (path.endsWith("/sequence"))
                panel.host.openSequence({ ...film, name: (JSON.parse(String(options!.body)) as { name: string }).name });
            return answer;
        };
        await playBack(panel.window as BridgePage, fetch);
        expect(desk.report()).toEqual({ compared: 2 });
    });

    test("reports the first difference", async () => {
        const desk = new Desk();
        const panel = openPanel();
        desk.recording = [
            { at: 0, by: "page", message: { command: "getPlayhead", resolveId: "p" } },
            { at: 1, by: "panel", event: "fcp:resolve", detail: { resolveId: "p", value: "7" } },
        ]
            .map((line) => JSON.stringify(line))
            .join("\n");
        await playBack(panel.window as BridgePage, desk.fetch);
        expect(desk.report()).toEqual({
            compared: 1,
            difference: { line: 2, about: "answer to getPlayhead", recorded: 7, found: 0 },
        });
    });

    test("reports a recording that is none", async () => {
        const desk = new Desk();
        desk.recording = "nonsense";
        await playBack(openPanel().window as BridgePage, desk.fetch);
        expect(desk.report()).toEqual({ problem: 'SyntaxError: line 1 of the recording is no JSON object with "by"' });
    });
});
