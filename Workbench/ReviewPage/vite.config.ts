import { join } from "node:path";
import { defineConfig } from "vitest/config";

const client = join(import.meta.dirname, "../../bridge-client/src");

export default defineConfig({
    // Where the panel looks for its page.
    base: "/fcp-panel/",
    resolve: {
        alias: [
            { find: /^bridge-client\/recording$/, replacement: join(client, "recording/index.ts") },
            { find: /^bridge-client\/testing$/, replacement: join(client, "testing/index.ts") },
            { find: /^bridge-client$/, replacement: join(client, "index.ts") },
        ],
    },
    server: { fs: { allow: [import.meta.dirname, client] } },
    build: {
        target: "es2022",
        // The page's policy lets in no file that is written into another one.
        assetsInlineLimit: 0,
        modulePreload: false,
        rolldownOptions: {
            input: "login.html",
            // Nothing is cached, so the names can stay: the page server knows them.
            output: { entryFileNames: "panel.js", assetFileNames: "panel[extname]" },
        },
    },
    test: {
        testTimeout: 60_000,
        include: ["tests/**/*.test.{ts,tsx}"],
        environment: "happy-dom",
    },
});
