import { vi } from "vitest";
import { createBridge } from "../../src/index.js";
import { type ContainerCommand, MemoryPanel } from "../../src/testing/index.js";
import { panelContract } from "./panel-contract.js";
import type { PanelUnderTest } from "./panel-under-test.js";

type PageFunction = (window: unknown, bridge: unknown, heard: unknown) => Promise<unknown>;

const AsyncFunction = (async () => {}).constructor as new (...text: string[]) => PageFunction;
const events = ["fcp:connected", "fcp:sequence-changed", "fcp:playhead-changed", "fcp:marker-clicked", "fcp:resolve"];

// The document's part: a client, and a witness of what arrives.
function load({ window }: MemoryPanel) {
    const heard: { name: string; detail: unknown }[] = [];
    for (const name of events)
        window.addEventListener(name, (event) => heard.push({ name, detail: (event as CustomEvent).detail }));
    return { window, heard, bridge: createBridge(window) };
}

async function openMemoryPanel(loadingMilliseconds: number): Promise<PanelUnderTest> {
    // A poll that has to ask again lets a few milliseconds of this time pass.
    vi.useFakeTimers();
    const requests = new Map<string, { command: ContainerCommand; answer: (result: unknown) => void }>();
    const panel = new MemoryPanel({
        container: (command) => new Promise((answer) => requests.set(command.requestId, { command, answer })),
    });
    let page = load(panel);
    panel.finishLoading(loadingMilliseconds);
    await vi.advanceTimersByTimeAsync(loadingMilliseconds);
    return {
        async inPage(body) {
            const result = await new AsyncFunction("window", "bridge", "heard", body)(
                page.window,
                page.bridge,
                page.heard,
            );
            return result === undefined ? null : JSON.parse(JSON.stringify(result));
        },
        async reload() {
            panel.reload();
            page = load(panel);
        },
        async elapse(milliseconds) {
            await vi.advanceTimersByTimeAsync(milliseconds);
        },
        openSequence: async (sequence) => panel.host.openSequence(sequence),
        movePlayhead: async (seconds) => panel.host.movePlayhead(seconds),
        seeks: async () => [...panel.host.seeks],
        commands: async () => [...requests.values()].map(({ command }) => command),
        answer: async (requestId, result) => requests.get(requestId)!.answer(result),
        async close() {
            vi.useRealTimers();
        },
    };
}

panelContract("The panel in memory", openMemoryPanel);
