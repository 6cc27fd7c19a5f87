import type { BridgePage } from "../bridge.js";
import type { EventName } from "../contract.js";
import type { PageLine, PanelLine } from "./line.js";

const events: readonly EventName[] = [
    "fcp:connected",
    "fcp:sequence-changed",
    "fcp:playhead-changed",
    "fcp:marker-clicked",
    "fcp:resolve",
];

/**
 * A page like the given one, of which `keep` gets every message that is posted through it and every event of the panel:
 * `createBridge(recordedPage(window, keep))`. For as long as the page lives. `clock` tells milliseconds, `start` what it
 * told when the recording began.
 */
export function recordedPage(
    page: BridgePage,
    keep: (line: PageLine | PanelLine) => void,
    clock: () => number = () => performance.now(),
    start: number = clock(),
): BridgePage {
    const at = () => Math.round((clock() - start) * 10) / 10;
    for (const event of events)
        page.addEventListener(event, (heard) => keep({ at: at(), by: "panel", event, detail: (heard as CustomEvent).detail }));
    const fcpBridge = {
        postMessage(message: unknown): unknown {
            keep({ at: at(), by: "page", message: message as PageLine["message"] });
            return page.webkit?.messageHandlers?.fcpBridge?.postMessage(message);
        },
    };
    return {
        addEventListener: (event, listener) => page.addEventListener(event, listener),
        removeEventListener: (event, listener) => page.removeEventListener(event, listener),
        // Outside the panel there is nothing to post to, before and after.
        get webkit() {
            return page.webkit?.messageHandlers?.fcpBridge ? { messageHandlers: { fcpBridge } } : {};
        },
    };
}
