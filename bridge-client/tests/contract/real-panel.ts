import { spawn } from "node:child_process";
import { join } from "node:path";
import { createInterface } from "node:readline";
import { build } from "vite";
import { afterAll, beforeAll } from "vitest";
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
let client: string;

/** The client as it would be published, as the text of an address that a page can import. */
async function clientAddress(): Promise<string> {
    const root = join(import.meta.dirname, "../..");
    const lib = { entry: join(root, "src/index.ts"), formats: ["es" as const] };
    const result = await build({
        root,
        configFile: false,
        logLevel: "warn",
        build: { write: false, minify: true, lib },
    });
    const [{ output }] = result as unknown as [{ output: [{ code: string }] }];
    return `data:text/javascript;base64,${Buffer.from(output[0].code).toString("base64")}`;
}

beforeAll(async () => {
    client = await clientAddress();
    driver = new Driver();
});

afterAll(() => driver.end());

async function openRealPanel(loadingMilliseconds: number): Promise<PanelUnderTest> {
    const run = async (verb: string, args?: Members): Promise<void> => void (await driver.run(verb, args));
    await run("open", { seconds: loadingMilliseconds / 1_000 });
    return {
        inPage: (body) =>
            driver.run("inPage", {
                body: `const bridge = (window.bridge ??= (await import("${client}")).createBridge()); ${body}`,
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
