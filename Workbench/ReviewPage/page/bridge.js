// The page's end of the bridge: requests that answer with promises, events without their transport.

import { repair, repairText } from "./text-repair.js";

// The panel itself gives a container command up after 60 s; its own answer should come first.
export const HOST_TIMEOUT = 5_000;
export const CONTAINER_TIMEOUT = 65_000;

const HOST_COMMANDS = new Set(["getTimeline", "getPlayhead", "seekTo", "openURL", "isFCPRunning"]);

export class BridgeTimeout extends Error {
    constructor(command, milliseconds) {
        super(`"${command}" was not answered within ${milliseconds} ms`);
        this.name = "BridgeTimeout";
        this.command = command;
    }
}

export class BridgeUnavailable extends Error {
    constructor(command) {
        super(`"${command}" cannot be sent: this page is not inside the panel`);
        this.name = "BridgeUnavailable";
        this.command = command;
    }
}

export class Bridge {
    #target;
    #timeouts;
    #observer;
    #pending = new Map();
    // Answers to requests of an earlier load of this page must match nothing.
    #prefix = crypto.randomUUID();
    #counter = 0;

    // `observer(kind, name, detail)` hears of everything that crosses, for the event log.
    constructor({ target = window, timeouts = {}, observer = () => {} } = {}) {
        this.#target = target;
        this.#timeouts = { host: HOST_TIMEOUT, container: CONTAINER_TIMEOUT, ...timeouts };
        this.#observer = observer;
        target.addEventListener("fcp:resolve", (event) => this.#settle(event.detail));
    }

    get available() {
        return this.#handler() !== undefined;
    }

    // Resolves with the answer, whatever it is; rejects with BridgeTimeout or BridgeUnavailable.
    call(command, args = {}) {
        const handler = this.#handler();
        if (handler === undefined)
            return Promise.reject(new BridgeUnavailable(command));
        this.#counter += 1;
        const resolveId = `${this.#prefix}-${this.#counter}`;
        const limit = HOST_COMMANDS.has(command) ? this.#timeouts.host : this.#timeouts.container;
        this.#observer("sent", command, args);
        return new Promise((resolve, reject) => {
            const timer = setTimeout(() => {
                this.#pending.delete(resolveId);
                reject(new BridgeTimeout(command, limit));
            }, limit);
            this.#pending.set(resolveId, { resolve, timer, command });
            handler.postMessage({ ...args, command, resolveId });
        });
    }

    // Returns the function that ends it.
    on(name, listener) {
        const hear = (event) => {
            const detail = repair(event.detail);
            this.#observer("event", name, detail);
            listener(detail);
        };
        this.#target.addEventListener(name, hear);
        return () => this.#target.removeEventListener(name, hear);
    }

    #handler() {
        return window.webkit?.messageHandlers?.fcpBridge;
    }

    #settle(detail) {
        const request = this.#pending.get(detail?.resolveId);
        if (request === undefined)
            return;
        this.#pending.delete(detail.resolveId);
        clearTimeout(request.timer);
        const value = readValue(detail.value);
        this.#observer("answer", request.command, value);
        request.resolve(value);
    }
}

// The text is repaired whole before it is parsed: what is inside must not be repaired again.
function readValue(text) {
    try {
        return JSON.parse(repairText(text));
    } catch {
        return null;
    }
}
