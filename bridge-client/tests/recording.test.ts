import { describe, expect, test } from "vitest";
import { createBridge, type Sequence } from "../src/index.js";
import { type PanelLine, type RecordedLine, readRecording, recordedPage, replay } from "../src/recording/index.js";
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
    await bridge.call("getTimeline");
    await bridge.call("getPlayhead");
    for (const seconds of [0.4, 0.4, 6])
        panel.host.movePlayhead(seconds);
    await expect.poll(() => lines.some((line) => line.by === "panel" && line.event === "fcp:marker-clicked")).toBe(true);
    await bridge.call("seekTo", { seconds: 2 });
    await bridge.call("syncComment", { id: "c2", seconds: 2, text: "日本" });
    return lines;
}

const written = (lines: readonly unknown[]) => lines.map((line) => JSON.stringify(line)).join("\n");

/** Plays it back to a panel. */
function play(lines: readonly unknown[], panel: MemoryPanel, patience = 5_000) {
    const movePlayhead = (seconds: number) => panel.host.movePlayhead(seconds);
    const activate = (sequence: Sequence) => panel.host.openSequence(sequence);
    return replay(written(lines), panel.window, { movePlayhead, activate, patience });
}

describe("A recording", () => {
    test("holds every message and every event, in turn, with times", async () => {
        const lines = await record();
        expect(lines.map((line) => (line.by === "page" ? line.message["command"] : line.event))).toEqual([
            "getTimeline",
            "fcp:resolve",
            "getPlayhead",
            "fcp:resolve",
            "fcp:playhead-changed",
            "fcp:playhead-changed",
            "fcp:playhead-changed",
            "fcp:marker-clicked",
            "seekTo",
            "fcp:resolve",
            "fcp:playhead-changed",
            "syncComment",
            "fcp:resolve",
        ]);
        const times = lines.map((line) => line.at);
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
        const event: PanelLine = { at: 1, by: "panel", event: "fcp:connected", detail: {} };
        const others = [{ at: 1, by: "bus", notification: "x" }, { at: 1, by: "host", frame: 3 }, { at: 1, by: "page" }];
        expect(readRecording(`${written([...others, event])}\n\n`)).toEqual([{ number: 4, line: event }]);
    });

    test("that is none is refused, with the number of the line", () => {
        expect(() => readRecording('{"by":"page","message":{}}\nnonsense')).toThrow("line 2 of the recording is no JSON");
        expect(() => readRecording("[]")).toThrow("line 1 of the recording is no JSON object");
    });
});

describe("A replay", () => {
    test("finds nothing where the panel does what is recorded", async () => {
        // Two answers about the host, three positions (one is told twice), a click, and two more answers.
        expect(await play(await record(), openPanel())).toEqual({ compared: 8, difference: undefined });
    });

    test("finds an answer that is another one", async () => {
        const lines = await record();
        const panel = openPanel();
        panel.host.openSequence({ ...film, duration: 12 });
        const { compared, difference } = await play(lines, panel);
        expect(compared).toBe(1);
        expect(difference).toMatchObject({ line: 2, about: "answer to getTimeline" });
        expect(difference?.recorded).toMatchObject({ name: film.name, duration: 10.5 });
        expect(difference?.found).toMatchObject({ name: film.name, duration: 12 });
    });

    test("finds an event that is another one", async () => {
        const panel = openPanel();
        const lines = await record();
        panel.container = ({ command }) => (command === "getMarkerAtTime" ? { id: "c9" } : true);
        expect((await play(lines, panel)).difference).toMatchObject({
            about: "event fcp:marker-clicked",
            recorded: { ...marker, seconds: 6 },
            found: { id: "c9", seconds: 6 },
        });
    });

    test("finds an answer that does not come", async () => {
        const lines = await record();
        const panel = openPanel();
        panel.container = ({ command }) => (command === "syncComment" ? new Promise(() => {}) : marker);
        expect((await play(lines, panel, 100)).difference).toEqual({
            line: lines.length,
            about: "answer to syncComment",
            recorded: true,
            found: undefined,
        });
    });

    test("finds a position that is not reached", async () => {
        const lines = await record();
        const panel = openPanel();
        const outcome = await replay(written(lines), panel.window, { movePlayhead: () => panel.host.movePlayhead(3), patience: 50 });
        expect(outcome.difference).toMatchObject({
            about: "event fcp:playhead-changed",
            recorded: { seconds: 0.4 },
            found: { seconds: 3 },
        });
    });

    test("does not make the page's own seek itself", async () => {
        const lines = await record();
        const moved: number[] = [];
        const panel = openPanel();
        const options = {
            movePlayhead: (seconds: number) => {
                moved.push(seconds);
                panel.host.movePlayhead(seconds);
            },
        };
        expect((await replay(written(lines), panel.window, options)).difference).toBeUndefined();
        expect(moved).toEqual([0.4, 6]);
        const lame = openPanel();
        lame.host.seek = () => {};
        expect((await play(lines, lame, 50)).difference).toMatchObject({ recorded: { seconds: 2 }, found: undefined });
    });

    test("passes over positions on the way", async () => {
        const panel = openPanel();
        const lines = [0.4, 0.8].map((seconds) => ({ at: 0, by: "panel", event: "fcp:playhead-changed", detail: { seconds } }));
        const movePlayhead = (seconds: number) => {
            panel.host.movePlayhead(seconds - 0.04);
            panel.host.movePlayhead(seconds);
        };
        const outcome = await replay(written(lines), panel.window, { movePlayhead });
        expect(outcome).toEqual({ compared: 2, difference: undefined });
    });

    test("makes the sequence active that the user had chosen", async () => {
        const other = { name: "Zweite", duration: 3, frameRate: 30 };
        const recorded = openPanel();
        const lines: RecordedLine[] = [];
        recordedPage(recorded.window, (line) => lines.push(structuredClone(line)));
        recorded.host.openSequence(other);
        recorded.host.movePlayhead(1);
        recorded.host.openSequence(film);
        const panel = openPanel();
        expect(await play(lines, panel)).toEqual({ compared: 3, difference: undefined });
        expect(panel.host.sequence?.name).toBe(film.name);
        const twice = openPanel();
        const activate = (sequence: Sequence) => [1, 2].forEach(() => twice.host.openSequence(sequence));
        const movePlayhead = (seconds: number) => twice.host.movePlayhead(seconds);
        expect((await replay(written(lines), twice.window, { movePlayhead, activate })).difference).toBeUndefined();
    });

    test("takes a playhead that was asked for while it moved from either side", async () => {
        const position = (seconds: number) => ({ at: 0, by: "panel", event: "fcp:playhead-changed", detail: { seconds } });
        const ask = { at: 0, by: "page", message: { command: "getPlayhead", resolveId: "p" } };
        const tell = (seconds: number) => ({ at: 0, by: "panel", event: "fcp:resolve", detail: { resolveId: "p", value: String(seconds) } });
        expect((await play([position(1), ask, tell(2), position(2)], openPanel())).difference).toBeUndefined();
        expect((await play([position(1), ask, position(2), tell(2)], openPanel())).difference).toBeUndefined();
        expect((await play([ask, position(2), tell(2)], openPanel())).difference).toBeUndefined();
        expect((await play([ask, tell(2), position(2)], openPanel())).difference).toBeUndefined();
        expect((await play([ask, tell(2), position(3)], openPanel())).difference).toMatchObject({
            about: "answer to getPlayhead",
            recorded: 2,
            found: 0,
        });
    });

    test("neither asks a person again nor opens links", async () => {
        const asked: string[] = [];
        const container = ({ command }: { command: string }) => {
            asked.push(command);
            return true;
        };
        const recorded = new MemoryPanel({ container });
        const lines: RecordedLine[] = [];
        const bridge = createBridge(recordedPage(recorded.window, (line) => lines.push(line)));
        await bridge.call("openURL", { url: "https://example.org/" });
        await bridge.call("selectOutputFolder");
        await bridge.call("clearAllMarkers");
        asked.length = 0;
        expect(await play(lines, new MemoryPanel({ container }))).toEqual({ compared: 1, difference: undefined });
        expect(asked).toEqual(["clearAllMarkers"]);
    });

    test("hears what is told before the recording is there", async () => {
        const panel = openPanel();
        const lines = [{ at: 0, by: "panel", event: "fcp:sequence-changed", detail: { ...panel.host.sequence, name: Buffer.from(film.name).toString("latin1") } }];
        let hand: (text: string) => void = () => {};
        const outcome = replay(new Promise((resolve) => (hand = resolve)), panel.window, { patience: 50 });
        panel.host.openSequence(film);
        hand(written(lines));
        expect(await outcome).toEqual({ compared: 1, difference: undefined });
    });

    test("takes no notice of how often a load or a position is told", async () => {
        const lines = await record();
        const connected = { at: 0, by: "panel", event: "fcp:connected", detail: {} };
        const twice = lines.flatMap((line) => (line.by === "panel" && line.event !== "fcp:resolve" ? [line, line] : [line]));
        expect((await play([connected, ...twice, connected], openPanel())).difference).toBeUndefined();
    });

    test("takes no notice of the order of members", async () => {
        const lines = await record();
        const isClick = (line: RecordedLine) => line.by === "panel" && line.event === "fcp:marker-clicked";
        const detail = { seconds: 6, text: "sch\u00c3\u00b6n", id: "c1" };
        expect(lines.filter(isClick)).toHaveLength(1);
        const turned = lines.map((line) => (isClick(line) ? { ...line, detail } : line));
        expect((await play(turned, openPanel())).difference).toBeUndefined();
    });

    test("leaves no listener behind", async () => {
        const panel = openPanel();
        const added: string[] = [];
        const page = {
            webkit: panel.window.webkit!,
            addEventListener: (event: string) => added.push(event),
            removeEventListener: (event: string) => added.splice(added.indexOf(event), 1),
        };
        await replay("", page);
        expect(added).toEqual([]);
    });
});
