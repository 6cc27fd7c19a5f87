import { expect } from "vitest";
import type { Members, PanelUnderTest } from "./panel-under-test.js";

export interface Heard {
    name: string;
    detail: Members;
}

/** What a test asks of the panel that it has open: the page posts, and says what it heard. */
export function witnessOf(panel: () => PanelUnderTest) {
    let messages = 0;

    const heard = () => panel().inPage("return heard") as Promise<Heard[]>;
    const details = async (event: string) =>
        (await heard()).filter(({ name }) => name === event).map(({ detail }) => detail);
    const answers = () => details("fcp:resolve");

    // Text, for a message may hold what does not cross as JSON.
    const postText = (message: string) =>
        panel().inPage(`void window.webkit.messageHandlers.fcpBridge.postMessage(${message})`);
    const post = (message: unknown) => postText(JSON.stringify(message));

    // Messages arrive in turn: when this one is answered, every earlier one has been read.
    async function settled(): Promise<void> {
        const resolveId = `settled-${(messages += 1)}`;
        await post({ command: "isFCPRunning", resolveId });
        await valueOf(resolveId);
    }

    async function valueOf(resolveId: string): Promise<unknown> {
        const answer = async () => (await answers()).find((detail) => detail["resolveId"] === resolveId);
        await expect.poll(answer).toBeDefined();
        return JSON.parse((await answer())!["value"] as string);
    }

    async function ask(message: Members): Promise<unknown> {
        const resolveId = `asked-${(messages += 1)}`;
        await post({ ...message, resolveId });
        return valueOf(resolveId);
    }

    /** The container's newest command, once it has received so many. */
    async function command(count: number): Promise<Members & { requestId: string }> {
        await expect.poll(async () => (await panel().commands()).length).toBe(count);
        return (await panel().commands())[count - 1] as Members & { requestId: string };
    }

    async function askContainer(message: Members, result: unknown): Promise<unknown> {
        const before = (await panel().commands()).length;
        const resolveId = `asked-${(messages += 1)}`;
        await post({ ...message, resolveId });
        await panel().answer((await command(before + 1)).requestId, result);
        return valueOf(resolveId);
    }

    async function payload(message: Members): Promise<Members> {
        const before = (await panel().commands()).length;
        await post(message);
        const { requestId: _, ...rest } = await command(before + 1);
        return rest;
    }

    return { heard, details, answers, postText, post, settled, valueOf, ask, command, askContainer, payload };
}
