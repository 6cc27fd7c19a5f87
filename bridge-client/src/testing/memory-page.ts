import type { BridgePage } from "../bridge.js";

/** What the panel uses of `window`. */
export type PanelPage = BridgePage & Pick<EventTarget, "dispatchEvent"> & { CustomEvent?: typeof CustomEvent };

type WebKit = BridgePage["webkit"];

/** A window without a browser. As in the engine, a script can hide the bridge behind a value of its own. */
export class MemoryPage extends EventTarget implements PanelPage {
    #webkit: WebKit;

    constructor(webkit: NonNullable<WebKit>) {
        super();
        this.#webkit = webkit;
    }

    get webkit(): NonNullable<WebKit> {
        return this.#webkit!;
    }

    set webkit(other: unknown) {
        Object.defineProperty(this, "webkit", { value: other, configurable: true });
    }
}
