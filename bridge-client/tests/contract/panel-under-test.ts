import type { HostSequence } from "../../src/testing/index.js";

export type Members = Record<string, unknown>;

/** A panel with its page and its partners, as the contract sees them. Values cross as JSON. */
export interface PanelUnderTest {
    /**
     * Runs the body of an asynchronous function in the page, which has `window`, `bridge` (the client) and `heard`: all
     * events so far, each as `{ name, detail }` and as it arrived.
     */
    inPage(body: string): Promise<unknown>;

    /** Replaces the document by a new load of it; resolves once that has loaded. */
    reload(): Promise<void>;

    /** Lets the panel's delays pass. */
    elapse(milliseconds: number): Promise<void>;

    openSequence(sequence: HostSequence): Promise<void>;
    movePlayhead(seconds: number): Promise<void>;
    /** What the host was asked to show, in seconds. */
    seeks(): Promise<number[]>;

    /** What the container has received, which answers only what it is told to. */
    commands(): Promise<Members[]>;
    answer(requestId: string, result: unknown): Promise<void>;

    close(): Promise<void>;
}

/** Opens one whose page has loaded, after so many milliseconds, with no delay passed since. Nothing is open in it. */
export type OpenPanel = (loadingMilliseconds: number) => Promise<PanelUnderTest>;
