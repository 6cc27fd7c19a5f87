import { describe, expect, test } from "vitest";
import { createBridge } from "../src/index.js";
import { type HostLine, type RecordedLine, readRecording, recordedPage, replay } from "../src/recording/index.js";
import { MemoryPanel } from "../src/testing/index.js";

const film = { name: "Café 日本", duration: 10.5, frameRate: 25 };
const marker = { id: "c1", text: "schön" };

/** A panel with a film, and a container that finds one marker from second 4 on. */
function openPanel(): MemoryPanel {
    const panel = new MemoryPanel({
        container: ({ command, seconds }) =>
            command === "getMarkerAtTime" ? (Number(seconds) >= 4 ? marker : null) : true,
    });
    panel.host.openSequence(film);
    return panel;
}

/** What a user does in it for a while, recorded. */
async function record(panel = openPanel()): Promise<RecordedLine[]> {
    const lines: RecordedLine[] = [];
    let time = 0;
    const page = recordedPage(panel.window, (line) => lines.push(structuredClone(line)), () => (time += 2));
    const bridge = createBridge(page);
    const move = (frame: number) => {
        lines.push({ at: 0, by: "host", frame });
        panel.host.movePlayhead(frame / film.frameRate);
    };
    await bridge.call("getTimeline");
    await bridge.call("getPlayhead");
    move(10);
    move(10);
    move(150);
    await expect.poll(() => lines.some((line) => line.by === "panel" && line.event === "fcp:marker-clicked")).toBe(true);
    await bridge.call("seekTo", { seconds: 2 });
    await bridge.call("syncComment", { id: "c2", seconds: 2, text: "日本" });
    return lines;
}

const written = (lines: readonly unknown[]) => lines.map((line) => JSON.stringify(line)).join("\n");

/** Plays it back to a panel. */
function play(lines: readonly unknown[], panel: MemoryPanel, patience = 5_000) {
    const moveTo = async (frame: number) => panel.host.movePlayhead(frame / film.frameRate);
    return replay(written(lines), panel.window, { moveTo, patience });
}

describe("A recording", () => {
    test("holds every message and every event, in turn, with times", async () => {
        const lines = await record();
        expect(lines.map((line) => (line.by === "page" ? line.message["command"] : line.by === "panel" ? line.event : line.frame))).toEqual([
            "getTimeline",
            "fcp:resolve",
            "getPlayhead",
            "fcp:resolve",
            10,
            "fcp:playhead-changed",
            10,
            "fcp:playhead-changed",
            150,
            "fcp:playhead-changed",
            "fcp:marker-clicked",
            "seekTo",
            "fcp:resolve",
            "fcp:playhead-changed",
            "syncComment",
            "fcp:resolve",
        ]);
        const times = lines.filter((line) => line.by !== "host").map((line) => line.at);
        expect(times).toEqual(times.map((_time, index) => 2 * (index + 1)));
    });

    test("keeps what arrives as it arrives, and leaves what the page sees alone", async () => {
        const panel = openPanel();
        const lines: RecordedLine[] = [];
        const bridge = createBridge(recordedPage(panel.window, (line) => lines.push(line)));
        expect(await bridge.call("getTimeline")).toMatchObject({ name: film.name });
        expect(JSON.stringify(lines)).toContain("CafÃ©");
    });

    test("does not make a bridge where there is none", () => {
        const page = recordedPage(new EventTarget(), () => {});
        expect(createBridge(page).available).toBe(false);
    });

    test("ends a subscription that ends", () => {
        const panel = openPanel();
        const bridge = createBridge(recordedPage(panel.window, () => {}));
        const heard: number[] = [];
        const stop = bridge.on("fcp:playhead-changed", ({ seconds }) => heard.push(seconds));
        panel.host.movePlayhead(1);
        stop();
        panel.host.movePlayhead(2);
        expect(heard).toEqual([1]);
    });

    test("may hold lines of others, and empty ones", () => {
        const move: HostLine = { at: 1, by: "host", frame: 3 };
        const other = { at: 1, by: "bus", notification: "x" };
        expect(readRecording(`${written([other, move])}\n\n`)).toEqual([{ number: 2, line: move }]);
    });

    test("that is none is refused, with the number of the line", () => {
        expect(() => readRecording('{"by":"host","frame":1}\nnonsense')).toThrow("line 2 of the recording is no JSON");
        expect(() => readRecording("[]")).toThrow("line 1 of the recording is no JSON object");
    });
});

describe("A replay", () => {
    test("finds nothing where the panel does what is recorded", async () => {
        expect(await play(await record(), openPanel())).toBeUndefined();
    });

    test("finds an answer that is another one", async () => {
        const lines = await record();
        const panel = openPanel();
        panel.host.openSequence({ ...film, duration: 12 });
        const difference = await play(lines, panel);
        expect(difference).toMatchObject({ line: 2, about: "answer to getTimeline" });
        expect(difference?.recorded).toMatchObject({ name: film.name, duration: 10.5 });
        expect(difference?.found).toMatchObject({ name: film.name, duration: 12 });
    });

    test("finds an event that is another one", async () => {
        const panel = openPanel();
        const lines = await record();
        panel.container = ({ command }) => (command === "getMarkerAtTime" ? { id: "c9" } : true);
        expect(await play(lines, panel)).toMatchObject({
            about: "event fcp:marker-clicked",
            recorded: { event: "fcp:marker-clicked", detail: { ...marker, seconds: 6 } },
            found: { event: "fcp:marker-clicked", detail: { id: "c9", seconds: 6 } },
        });
    });

    test("finds an answer that does not come", async () => {
        const lines = await record();
        const panel = openPanel();
        panel.container = ({ command }) => (command === "syncComment" ? new Promise(() => {}) : marker);
        expect(await play(lines, panel, 100)).toEqual({
            line: lines.length,
            about: "answer to syncComment",
            recorded: true,
            found: undefined,
        });
    });

    test("finds an event that nobody recorded, where another one is expected", async () => {
        const lines = await record();
        const panel = openPanel();
        const first = lines.findIndex((line) => line.by === "host");
        const moved: HostLine = { at: 0, by: "host", frame: 5 };
        const difference = await play([...lines.slice(0, first), moved, ...lines.slice(first)], panel);
        expect(difference).toMatchObject({ about: "event fcp:playhead-changed", found: { detail: { seconds: 0.2 } } });
    });

    test("takes no notice of how often a load or a position is told", async () => {
        const lines = await record();
        const connected = { at: 0, by: "panel", event: "fcp:connected", detail: {} };
        const twice = lines.flatMap((line) => (line.by === "panel" && line.event !== "fcp:resolve" ? [line, line] : [line]));
        expect(await play([connected, ...twice, connected], openPanel())).toBeUndefined();
    });

    test("takes no notice of the order of members", async () => {
        const lines = await record();
        const isClick = (line: RecordedLine) => line.by === "panel" && line.event === "fcp:marker-clicked";
        const detail = { seconds: 6, text: "sch\u00c3\u00b6n", id: "c1" };
        expect(lines.filter(isClick)).toHaveLength(1);
        const turned = lines.map((line) => (isClick(line) ? { ...line, detail } : line));
        expect(await play(turned, openPanel())).toBeUndefined();
    });

    test("leaves no listener behind", async () => {
        const panel = openPanel();
        const added: string[] = [];
        const page = {
            webkit: panel.window.webkit!,
            addEventListener: (event: string) => added.push(event),
            removeEventListener: (event: string) => added.splice(added.indexOf(event), 1),
        };
        await replay(written([{ at: 0, by: "host", frame: 1 }]), page);
        expect(added).toEqual([]);
    });
});
