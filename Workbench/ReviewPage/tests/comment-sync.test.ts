import type { Bridge } from "bridge-client";
import { createBridge } from "bridge-client";
import { MemoryPanel } from "bridge-client/testing";
import { afterEach, beforeEach, describe, expect, test, vi } from "vitest";
import { CommentStore } from "../src/comment-store.js";
import { CommentSync } from "../src/comment-sync.js";
import { FakeStorage } from "./fake-storage.js";

const key = "a sequence";

/** A container application that comes and goes, and what it keeps. */
class TestContainer {
    isThere = true;
    refused = new Set<string>();
    heard: { command: string; id: unknown }[] = [];
    kept = new Map<string, Record<string, unknown>>();

    answer = (message: { command: string; [key: string]: unknown }): unknown => {
        if (!this.isThere)
            return new Promise(() => {});
        const comment = (message["comment"] ?? {}) as Record<string, unknown>;
        const id = comment["id"] ?? message["commentId"];
        this.heard.push({ command: message.command, id });
        if (message.command === "syncAllComments") {
            const list = message["comments"] as Record<string, unknown>[];
            this.kept = new Map(list.map((entry) => [String(entry["id"]), entry]));
            return true;
        }
        if (this.refused.has(String(comment["text"])))
            return false;
        if (message.command === "deleteComment")
            this.kept.delete(String(id));
        else
            this.kept.set(String(id), comment);
        return true;
    };

    texts(): unknown[] {
        return [...this.kept.values()].map(({ text }) => text);
    }
}

let container: TestContainer;
let storage: FakeStorage;

function load(): CommentSync {
    const panel = new MemoryPanel({ container: container.answer });
    return new CommentSync(createBridge(panel.window), new CommentStore(storage));
}

/** A load of the page with the sequence open. */
function open(): CommentSync {
    const comments = load();
    comments.open(key);
    return comments;
}

const states = (comments: CommentSync) => comments.comments.value.map(({ text, state }) => `${text}: ${state}`);
const pass = (milliseconds: number) => vi.advanceTimersByTimeAsync(milliseconds);

beforeEach(() => {
    vi.useFakeTimers();
    storage = new FakeStorage();
    container = new TestContainer();
});

afterEach(() => vi.useRealTimers());

describe("A comment", () => {
    test("is pending until the container has answered", async () => {
        const comments = open();
        comments.add({ text: "one", seconds: 1 });
        expect(states(comments)).toEqual(["one: pending"]);
        await pass(0);
        expect(states(comments)).toEqual(["one: synced"]);
        expect(container.texts()).toEqual(["one"]);
    });

    test("lies where its time says", async () => {
        const comments = open();
        for (const seconds of [3, 1, 2])
            comments.add({ text: `at ${seconds}`, seconds });
        await pass(0);
        expect(states(comments)).toEqual(["at 1: synced", "at 2: synced", "at 3: synced"]);
    });

    test("is there after a reload although the container is away, and reaches it when it is back", async () => {
        container.isThere = false;
        const before = open();
        before.add({ text: "typed for nothing?", seconds: 1 });
        await pass(61_000);
        expect(states(before)).toEqual(["typed for nothing?: failed"]);
        vi.clearAllTimers();

        const after = open();
        expect(states(after)).toEqual(["typed for nothing?: failed"]);
        await pass(30_000);
        container.isThere = true;
        await pass(10_000);
        expect(states(after)).toEqual(["typed for nothing?: synced"]);
        expect(container.texts()).toEqual(["typed for nothing?"]);
    });

    test("that changes on its way is synced as it is, not as it was", async () => {
        const answers: ((value: boolean) => void)[] = [];
        const call = () => new Promise<boolean>((resolve) => answers.push(resolve));
        const comments = new CommentSync({ call } as unknown as Bridge, new CommentStore(storage));
        comments.open(key);
        const { id } = comments.add({ text: "first", seconds: 1 });
        comments.change(id, { text: "second" });
        answers[0]!(true);
        await pass(0);
        expect(states(comments)).toEqual(["second: pending"]);
        answers[1]!(true);
        await pass(0);
        expect(states(comments)).toEqual(["second: synced"]);
    });

    test("is gone when the container has agreed to that, and not before", async () => {
        const comments = open();
        const { id } = comments.add({ text: "one", seconds: 1 });
        await pass(0);
        container.isThere = false;
        comments.remove(id);
        await pass(61_000);
        expect(comments.comments.value).toMatchObject([{ removing: true, state: "failed" }]);
        container.isThere = true;
        await pass(45_000);
        expect(comments.comments.value).toEqual([]);
        expect(container.texts()).toEqual([]);
        expect(open().comments.value).toEqual([]);
    });

    test("takes its replies along, each at its own time", async () => {
        const comments = open();
        const { id } = comments.add({ text: "one", seconds: 4 });
        comments.change(id, { replies: [{ id: "r1", text: "answer", author: "Mara" }] });
        await pass(0);
        expect(container.kept.get(id)).toMatchObject({
            replies: [{ id: "r1", text: "answer", author: "Mara", seconds: 4 }],
        });
        expect(container.kept.get(id)).not.toHaveProperty("state");
    });
});

describe("What was not synced", () => {
    async function openWithUnsynced(count: number): Promise<CommentSync> {
        container.isThere = false;
        const comments = open();
        for (let number = 0; number < count; number += 1)
            comments.add({ text: `${number}`, seconds: number });
        await pass(61_000);
        container.isThere = true;
        return comments;
    }

    test("follows as soon as the container answers one of it", async () => {
        const comments = await openWithUnsynced(50);
        expect(comments.notSynced.value).toBe(50);
        await pass(45_000);
        expect(comments.notSynced.value).toBe(0);
        expect(container.kept.size).toBe(50);
        expect(container.heard).toHaveLength(50);
    });

    test("follows when the container is heard of in another way", async () => {
        const comments = await openWithUnsynced(3);
        comments.containerIsThere();
        await pass(0);
        expect(comments.notSynced.value).toBe(0);
    });

    test("can be asked for all at once", async () => {
        const comments = await openWithUnsynced(40);
        comments.retryAll();
        expect(comments.notSynced.value).toBe(0);
        await pass(0);
        expect(states(comments).filter((state) => state.endsWith("synced"))).toHaveLength(40);
    });

    test("is not asked for again and again where it is refused, and holds up no other", async () => {
        container.refused.add("refused");
        const comments = open();
        comments.add({ text: "refused", seconds: 0 });
        await pass(0);
        for (let number = 0; number < 20; number += 1)
            comments.add({ text: `${number}`, seconds: number });
        await pass(1_000);
        expect(comments.notSynced.value).toBe(1);
        expect(container.heard).toHaveLength(21);
        await pass(3_600_000);
        expect(container.heard.length).toBeLessThan(21 + 3_600 / 40 + 5);
    });

    test("does not wait behind what is refused for good", async () => {
        container.refused.add("refused");
        container.isThere = false;
        const comments = open();
        comments.add({ text: "refused", seconds: 1 });
        comments.add({ text: "welcome", seconds: 2 });
        await pass(61_000);
        container.isThere = true;
        await pass(120_000);
        expect(states(comments)).toEqual(["refused: failed", "welcome: synced"]);
    });

    test("stays with its sequence when another one is opened", async () => {
        const comments = await openWithUnsynced(1);
        comments.open("another");
        expect(comments.comments.value).toEqual([]);
        await pass(120_000);
        comments.open(key);
        comments.containerIsThere();
        await pass(60_000);
        expect(states(comments)).toEqual(["0: synced"]);
    });
});

describe("All comments", () => {
    test("are handed over in one message, without those that are being deleted", async () => {
        const stored = Array.from({ length: 5_000 }, (_, number) => ({
            id: `c${number}`,
            text: `${number}`,
            seconds: number,
            state: "synced",
        }));
        storage.setItem(`zelvix.comments:${key}`, JSON.stringify(stored));
        const comments = open();
        container.refused.add("undefined"); // the text that a deletion has
        comments.remove("c7");
        await pass(0);
        const report = await comments.syncAll();
        expect(report).toMatchObject({ done: true, count: 4_999 });
        expect(container.heard.filter(({ command }) => command === "syncAllComments")).toHaveLength(1);
        expect(container.kept.size).toBe(4_999);
        expect(comments.notSynced.value).toBe(1);
    });

    test("are not synced when the container refuses", async () => {
        const comments = open();
        comments.add({ text: "one", seconds: 1 });
        await pass(0);
        container.isThere = false;
        const report = comments.syncAll();
        expect(states(comments)).toEqual(["one: pending"]);
        await pass(61_000);
        expect(await report).toMatchObject({ done: false });
        expect(states(comments)).toEqual(["one: failed"]);
    });

    test("keep a change that is made on the way", async () => {
        const answers: ((value: boolean) => void)[] = [];
        const call = () => new Promise<boolean>((resolve) => answers.push(resolve));
        const comments = new CommentSync({ call } as unknown as Bridge, new CommentStore(storage));
        comments.open(key);
        const { id } = comments.add({ text: "one", seconds: 1 });
        const report = comments.syncAll();
        comments.change(id, { text: "two" });
        answers[1]!(true);
        expect(await report).toMatchObject({ done: true, count: 1 });
        expect(states(comments)).toEqual(["two: pending"]);
    });
});

describe("The browser's storage", () => {
    test("says when it keeps nothing", () => {
        const comments = open();
        expect(comments.kept.value).toBe(true);
        storage.isFull = true;
        comments.add({ text: "one", seconds: 1 });
        expect(comments.kept.value).toBe(false);
    });

    test("is not written for each of many answers", async () => {
        const comments = open();
        for (let number = 0; number < 100; number += 1)
            comments.add({ text: `${number}`, seconds: number });
        const before = storage.writes;
        await pass(1_000);
        expect(states(comments).filter((state) => state.endsWith(": synced"))).toHaveLength(100);
        expect(storage.writes - before).toBe(1);
        vi.clearAllTimers();
        expect(states(open()).filter((state) => state.endsWith("synced"))).toHaveLength(100);
    });
});
