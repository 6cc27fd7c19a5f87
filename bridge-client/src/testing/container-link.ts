import { isDictionary, type Members } from "./message.js";

/** A command as a container application receives it: its payload's entries lie beside these two. */
export interface ContainerCommand extends Members {
    command: string;
    requestId: string;
}

/**
 * A container application: returns the result, or a promise of it. One that never settles, or that fails, is a
 * container that does not answer.
 */
export type Container = (command: ContainerCommand) => unknown;

/** The panel's patience, in milliseconds. */
const answerTimeout = 60_000;

const truth = (result: unknown) => result === true;
const text = (result: unknown) => (typeof result === "string" ? result : null);
const dictionary = (result: unknown) => (isDictionary(result) ? result : null);

/** What the panel makes of a result; for every other command only a real `true` counts. */
const conversions: Record<string, (result: unknown) => unknown> = {
    selectOutputFolder: text,
    getMarkerAtTime: dictionary,
};

let requests = 0;

/** The panel's reading of the container's answer: never an error, and within 60 s. */
export async function ask(container: Container, command: string, payload: Members = {}): Promise<unknown> {
    // The envelope's own entries win.
    const request = { ...payload, command, requestId: `req-${(requests += 1)}` };
    const result = await answerWithin(answerTimeout, () => container(request));
    return (conversions[command] ?? truth)(result);
}

function answerWithin(milliseconds: number, work: () => unknown): Promise<unknown> {
    return new Promise((resolve) => {
        const timer = setTimeout(resolve, milliseconds, false);
        const answer = (result: unknown) => {
            clearTimeout(timer);
            resolve(result);
        };
        new Promise((settle) => settle(work())).then(answer, () => {});
    });
}
