import { spawn } from "node:child_process";
import { join } from "node:path";
import { createInterface } from "node:readline";
import { build } from "vite";
import { afterAll, beforeAll, expect, test } from "vitest";
import { panelContract } from "./panel-contract.js";
import type { Members, PanelUnderTest } from "./panel-under-test.js";

const program = process.env["FCP_PANEL_DRIVER"];
if (!program)
    throw new Error("FCP_PANEL_DRIVER names no program: ctest -R BridgeClientTest sets it");

/** The panel's driver: one line of JSON for each verb, one for each reply, in turn. */
class Driver {
    #process = spawn(program!, { stdio: ["pipe", "pipe", "inherit"] });
    #waiting: { resolve: (value: unknown) => void; reject: (error: Error) => void }[] = [];

    constructor() {
        createInterface(this.#process.stdout).on("line", (line) => {
            if (line.startsWith('{"'))
                this.#hear(JSON.parse(line) as { value?: unknown; error?: string });
        });
        this.#process.on("exit", (code, signal) => {
            for (const { reject } of this.#waiting)
                reject(new Error(`the panel's driver ended (${signal ?? code})`));
        });
    }

    run(verb: string, args: Members = {}): Promise<unknown> {
        return new Promise((resolve, reject) => {
            this.#waiting.push({ resolve, reject });
            this.#process.stdin.write(`${JSON.stringify({ verb, ...args })}\n`);
        });
    }

    async end(): Promise<void> {
        const ended = new Promise((resolve) => this.#process.once("exit", resolve));
        this.#process.stdin.end();
        await ended;
    }

    #hear({ value, error }: { value?: unknown; error?: string }): void {
        const { resolve, reject } = this.#waiting.shift()!;
        if (error === undefined)
            resolve(value);
        else
            reject(new Error(error));
    }
}

let driver: Driver;
/** What would be published: the text of each module as an address that a page can import. */
let modules: Record<string, string>;

async function buildModules(): Promise<Record<string, string>> {
    const root = join(import.meta.dirname, "../..");
    const result = await build({ root, logLevel: "warn", build: { write: false } });
    const [{ output }] = result as unknown as [{ output: { fileName: string; code: string }[] }];
    return Object.fromEntries(output.map(({ fileName, code }) => [fileName, addressOf(code)]));
}

function addressOf(code: string): string {
    return `data:text/javascript;base64,${Buffer.from(code).toString("base64")}`;
}

beforeAll(async () => {
    modules = await buildModules();
    driver = new Driver();
});

afterAll(() => driver.end());

async function openRealPanel(loadingMilliseconds: number): Promise<PanelUnderTest> {
    const run = async (verb: string, args?: Members): Promise<void> => void (await driver.run(verb, args));
    await run("open", { seconds: loadingMilliseconds / 1_000 });
    return {
        inPage: (body) =>
            driver.run("inPage", {
                body: `const bridge = (window.bridge ??= (await import("${modules["index.js"]}")).createBridge()); ${body}`,
            }),
        reload: () => run("reload"),
        elapse: (milliseconds) => run("elapse", { seconds: milliseconds / 1_000 }),
        openSequence: (sequence) => run("openSequence", { ...sequence }),
        movePlayhead: (seconds) => run("movePlayhead", { seconds }),
        seeks: () => driver.run("seeks") as Promise<number[]>,
        commands: () => driver.run("commands") as Promise<Members[]>,
        answer: (requestId, result) => run("answer", { requestId, result }),
        close: () => run("close"),
    };
}

panelContract("The panel in its engine", openRealPanel);

test("The panel in memory works in a browser's engine, with a window of its own and with one that is given", async () => {
    const panel = await openRealPanel(0);
    const answers = panel.inPage(`
        const { createBridge } = await import("${modules["index.js"]}");
        const { MemoryPanel } = await import("${modules["testing/index.js"]}");
        const container = ({ command }) => command === "syncComment";
        const answers = [];
        // An element hears events as a window does, and has no bridge.
        for (const memory of [new MemoryPanel({ container }), new MemoryPanel({ container, page: document.body })]) {
            const bridge = createBridge(memory.window);
            const heard = [];
            bridge.on("fcp:sequence-changed", ({ name }) => heard.push(name));
            memory.host.openSequence({ name: "Café 日本", duration: 1, frameRate: 25 });
            const synced = await bridge.call("syncComment", { id: "c1", seconds: 1 });
            answers.push([(await bridge.call("getTimeline")).name, synced, await bridge.call("cancelExport"), heard]);
        }
        return answers;
    `);
    const expected = ["Café 日本", true, false, ["Café 日本"]];
    expect(await answers).toEqual([expected, expected]);
    await panel.close();
});
