import { defineConfig } from "vitest/config";

export default defineConfig({
    build: {
        target: "es2022",
        minify: true,
        lib: {
            entry: { index: "src/index.ts", "testing/index": "src/testing/index.ts" },
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
});
