// The contract against the real panel, which tests/EndToEnd of the repository builds and starts this with.

import { defineConfig } from "vitest/config";

export default defineConfig({
    test: {
        include: ["tests/contract/real-panel.ts"],
        expect: { poll: { interval: 5, timeout: 20_000 } },
        testTimeout: 60_000,
        hookTimeout: 60_000,
    },
});
