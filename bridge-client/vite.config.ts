import { defineConfig } from "vitest/config";

// Two builds: what the entries have in common would become a third module, which each would have to import.
const entries = { index: "src/index.ts", "testing/index": "src/testing/index.ts" };
const recording = { "recording/index": "src/recording/index.ts" };

export default defineConfig(({ mode }) => ({
    build: {
        emptyOutDir: mode !== "recording",
        target: "es2022",
        minify: true,
        lib: {
            entry: mode === "recording" ? recording : entries,
            formats: ["es"],
        },
    },
    test: {
        // The package is built and compiled against, on machines that do other things as well.
        testTimeout: 60_000,
        expect: { poll: { interval: 5, timeout: 10_000 } },
        include: ["tests/**/*.test.ts"],
        typecheck: { enabled: true, include: ["tests/**/*.test-d.ts"], tsconfig: "tsconfig.json" },
    },
}));
