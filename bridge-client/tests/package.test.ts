import { execFileSync } from "node:child_process";
import { mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { gzipSync } from "node:zlib";
import { afterAll, beforeAll, expect, test } from "vitest";

const root = join(import.meta.dirname, "..");
const compiler = join(root, "node_modules/typescript/bin/tsc");

let project: string;
const inPackage = (path: string) => join(project, "node_modules/bridge-client", path);

function run(program: string, ...options: string[]): string {
    return execFileSync(program, options, { cwd: project, encoding: "utf8", stdio: ["ignore", "pipe", "pipe"] });
}

// A project of somebody else, who has installed what would be published.
beforeAll(() => {
    project = mkdtempSync(join(tmpdir(), "bridge-client-"));
    execFileSync("npm", ["pack", "--pack-destination", project], { cwd: root, stdio: "pipe" });
    mkdirSync(inPackage(""), { recursive: true });
    run("tar", "-xzf", "bridge-client-1.0.0.tgz", "--strip-components=1", "-C", inPackage(""));
    writeFileSync(join(project, "package.json"), '{ "type": "module" }');
}, 60_000);

afterAll(() => rmSync(project, { recursive: true, force: true }));

test("The package holds three modules, their types, and what npm wants", () => {
    const files = run("tar", "-tzf", "bridge-client-1.0.0.tgz").trim().split("\n");
    expect(files.map((file) => file.replace("package/", "")).sort()).toEqual([
        "README.md",
        "dist/bridge.d.ts",
        "dist/commands.d.ts",
        "dist/contract.d.ts",
        "dist/errors.d.ts",
        "dist/index.d.ts",
        "dist/index.js",
        "dist/recording/heard.d.ts",
        "dist/recording/index.d.ts",
        "dist/recording/index.js",
        "dist/recording/line.d.ts",
        "dist/recording/record.d.ts",
        "dist/recording/replay.d.ts",
        "dist/testing/container-link.d.ts",
        "dist/testing/index.d.ts",
        "dist/testing/index.js",
        "dist/testing/memory-host.d.ts",
        "dist/testing/memory-page.d.ts",
        "dist/testing/memory-panel.d.ts",
        "dist/testing/message.d.ts",
        "dist/testing/wire.d.ts",
        "dist/text-repair.d.ts",
        "package.json",
    ]);
});

test("The package needs no other at run time, and its modules import nothing", () => {
    const { dependencies, peerDependencies } = JSON.parse(readFileSync(inPackage("package.json"), "utf8"));
    expect({ dependencies, peerDependencies }).toEqual({});
    for (const module of ["dist/index.js", "dist/testing/index.js", "dist/recording/index.js"])
        expect(readFileSync(inPackage(module), "utf8")).not.toMatch(/\b(?:import|require)\b/);
});

test("The client is below 2 kB compressed", () => {
    const size = gzipSync(readFileSync(inPackage("dist/index.js")), { level: 9 }).length;
    console.log(`bridge-client: ${size} bytes compressed`);
    expect(size).toBeLessThan(2_000);
});

test("The modules work where they are installed", () => {
    writeFileSync(
        join(project, "use.js"),
        `
        import { createBridge } from "bridge-client";
        import { MemoryPanel } from "bridge-client/testing";
        const panel = new MemoryPanel();
        const bridge = createBridge(panel.window);
        panel.host.openSequence({ name: "Café 日本", duration: 10.5, frameRate: 25 });
        console.log((await bridge.call("getTimeline")).name);
        await bridge.call("deleteComment", {}).catch(({ name, command }) => console.log(name, command));
    `,
    );
    expect(run(process.execPath, "use.js")).toBe("Café 日本\nBridgeInvalidArgument deleteComment\n");
});

test("What the README shows compiles, under either way of finding modules", () => {
    const shown = [...readFileSync(inPackage("README.md"), "utf8").matchAll(/```ts\n(.*?)```/gs)].map(
        ([, code]) => code!,
    );
    expect(shown).toHaveLength(4);
    const files = shown.map((code, index) => {
        writeFileSync(join(project, `shown-${index}.ts`), code);
        return `shown-${index}.ts`;
    });
    const strict = ["--strict", "--noEmit", "--target", "es2022", "--lib", "es2022,dom", "--types", ""];
    for (const way of [
        ["--module", "nodenext"],
        ["--module", "esnext", "--moduleResolution", "bundler"],
    ])
        expect(() => run(process.execPath, compiler, ...strict, ...way, ...files)).not.toThrow();
});
