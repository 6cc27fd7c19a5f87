import { createBridge } from "bridge-client";
import { type Container, MemoryPanel } from "bridge-client/testing";
import { afterEach, beforeEach, describe, expect, test, vi } from "vitest";
import { Review } from "../src/review.js";
import { FakeStorage } from "./fake-storage.js";

const rate = 30_000 / 1001;

let frames: (() => void)[];
let storage: FakeStorage;

function paint(): void {
    for (const frame of frames.splice(0))
        frame();
}

/** One load of the page. */
async function load(container: Container | null = () => true) {
    const panel = new MemoryPanel({ container });
    panel.host.openSequence({ name: "Cut", duration: 60, frameRate: rate });
    panel.host.movePlayhead(2);
    const review = new Review({
        bridge: createBridge(panel.window),
        storage,
        nextFrame: (frame) => frames.push(frame),
        isAttached: true,
    });
    review.start();
    await vi.advanceTimersByTimeAsync(0);
    paint();
    return { review, panel };
}

beforeEach(() => {
    vi.useFakeTimers();
    storage = new FakeStorage();
    frames = [];
});

afterEach(() => vi.useRealTimers());

describe("The timecode", () => {
    test("changes once for each painted frame, however fast positions come", async () => {
        const { review, panel } = await load();
        expect(review.timecode.value).toBe("00:00:01;29");
        const seen: string[] = [];
        const stop = review.timecode.subscribe((text) => seen.push(text));
        for (let number = 0; number < 100; number += 1)
            panel.host.movePlayhead(10 + number / 60);
        expect(seen).toEqual(["00:00:01;29"]);
        expect(frames).toHaveLength(2); // its own, and that of the event log
        paint();
        expect(seen).toEqual(["00:00:01;29", "00:00:11;19"]);
        stop();
    });
});

describe("A draft", () => {
    test("holds on to the place where its first letter was typed", async () => {
        const { review, panel } = await load();
        review.typeComment("H");
        panel.host.movePlayhead(9);
        review.typeComment("Here");
        review.addComment();
        expect(review.comments.comments.value).toMatchObject([{ text: "Here", seconds: 2 }]);
        expect(review.drafts.current.value.comment).toBeUndefined();
    });

    test("begins anew where everything was deleted", async () => {
        const { review, panel } = await load();
        review.typeComment("H");
        review.typeComment("");
        panel.host.movePlayhead(9);
        review.typeComment("There");
        review.addComment();
        expect(review.comments.comments.value).toMatchObject([{ text: "There", seconds: 9 }]);
    });

    test("of a comment, an edit and a reply is there after a reload", async () => {
        const { review } = await load();
        review.typeComment("first");
        review.addComment();
        const { id } = review.comments.comments.value[0]!;
        review.typeComment("half a comm");
        review.drafts.setEdit(id, { text: "half an ed", seconds: 2, end: 3 });
        review.drafts.setReply(id, "half a rep");
        const { review: again } = await load();
        expect(again.drafts.current.value).toEqual({
            comment: { text: "half a comm", seconds: 2 },
            edits: { [id]: { text: "half an ed", seconds: 2, end: 3 } },
            replies: { [id]: "half a rep" },
        });
    });

    test("belongs to its sequence", async () => {
        const { review, panel } = await load();
        review.typeComment("about the cut");
        panel.host.openSequence({ name: "Other", duration: 1, frameRate: 25 });
        expect(review.drafts.current.value.comment).toBeUndefined();
        panel.host.openSequence({ name: "Cut", duration: 61, frameRate: rate });
        expect(review.drafts.current.value.comment).toMatchObject({ text: "about the cut" });
    });

    test("leaves nothing behind in the storage when it is sent or given up", async () => {
        const { review } = await load();
        review.typeComment("one");
        expect(storage.getItem('zelvix.drafts:["Cut",29.97]')).not.toBeNull();
        review.addComment();
        expect(storage.getItem('zelvix.drafts:["Cut",29.97]')).toBeNull();
    });

    test("that somebody else wrote into the storage is left out where it is none", async () => {
        storage.setItem(
            'zelvix.drafts:["Cut",29.97]',
            JSON.stringify({ comment: { text: 5 }, edits: { a: null, b: { text: "x", seconds: 1 } }, replies: 7 }),
        );
        const { review } = await load();
        expect(review.drafts.current.value).toEqual({ edits: { b: { text: "x", seconds: 1 } }, replies: {} });
    });

    test("becomes a range by an end behind its beginning", async () => {
        const { review, panel } = await load();
        review.typeComment("range");
        panel.host.movePlayhead(5);
        review.drafts.setComment(review.withEndAtPlayhead(review.drafts.current.value.comment!));
        expect(review.drafts.current.value.comment).toEqual({ text: "range", seconds: 2, end: 5 });
        panel.host.movePlayhead(1);
        expect(review.withEndAtPlayhead(review.drafts.current.value.comment!)).toEqual({ text: "range", seconds: 2 });
        review.addComment();
        expect(review.comments.comments.value).toMatchObject([{ seconds: 2, duration: 3 }]);
    });
});

describe("A comment", () => {
    test("is changed, answered and resolved in what the container gets", async () => {
        const heard: Record<string, unknown>[] = [];
        const { review } = await load(({ command, comment }) => {
            if (command === "syncComment")
                heard.push(comment as Record<string, unknown>);
            return true;
        });
        review.setAuthor("Mara");
        review.typeComment("one");
        review.addComment();
        const { id } = review.comments.comments.value[0]!;
        review.drafts.setEdit(id, { text: " two ", seconds: 3 });
        review.saveEdit(id);
        review.drafts.setReply(id, "yes");
        review.addReply(review.comments.comments.value[0]!);
        review.comments.change(id, { resolved: true });
        await vi.advanceTimersByTimeAsync(0);
        expect(heard).toHaveLength(4);
        expect(heard[0]).toMatchObject({ id, text: "one", seconds: 2, author: "Mara", replies: [] });
        expect(heard[3]).toMatchObject({
            id,
            text: "two",
            seconds: 3,
            duration: 0,
            resolved: true,
            replies: [{ text: "yes", author: "Mara", seconds: 3 }],
        });
        expect(review.drafts.current.value).toEqual({ edits: {}, replies: {} });
        const [comment] = review.comments.comments.value;
        review.removeReply(comment!, comment!.replies![0]!);
        expect(review.comments.comments.value).toMatchObject([{ replies: [] }]);
    });

    test("is found again by the marker that was clicked, also when a filter hides it", async () => {
        const { review, panel } = await load(({ command }) =>
            command === "getMarkerAtTime" ? { id: "m1", text: "elsewhere", start: 29.75, replies: [{ id: "r", text: "a" }] } : true,
        );
        review.filter.value = "resolved";
        panel.host.movePlayhead(30);
        await vi.advanceTimersByTimeAsync(0);
        expect(review.highlighted.value).toEqual({ id: "m1" });
        expect(review.shown.value).toMatchObject([{ id: "m1", seconds: 29.75, state: "synced", replies: [{ text: "a" }] }]);
        expect(review.notice.value).toBe("Marker: elsewhere");
    });

    test("is shown by what is asked for", async () => {
        const { review } = await load();
        for (const [id, resolved] of [["a", true], ["b", false]] as const)
            review.comments.adopt({ id, text: id, seconds: 1, resolved, state: "synced" });
        const shownBy = (filter: "all" | "open" | "resolved") => {
            review.filter.value = filter;
            return review.shown.value.map(({ id }) => id).join("");
        };
        expect([shownBy("all"), shownBy("open"), shownBy("resolved")]).toEqual(["ab", "b", "a"]);
    });
});

describe("The connection", () => {
    test("is silent when the panel does not answer, and there again with the next sign", async () => {
        const { review, panel } = await load();
        expect(review.connection.value).toBe("connected");
        const bridge = { available: true, on: createBridge(panel.window).on, call: () => new Promise<never>(() => {}) };
        const silent = new Review({ bridge, storage, nextFrame: () => {}, isAttached: true });
        silent.start();
        expect(silent.connection.value).toBe("waiting");
        panel.host.movePlayhead(3);
        expect(silent.connection.value).toBe("connected");
    });
});

describe("An export", () => {
    test("sends what was chosen, and leaves out what was not", async () => {
        const heard: Record<string, unknown>[] = [];
        const { review } = await load((message) => {
            heard.push(message);
            return message.command === "selectOutputFolder" ? "/home/me/Größe" : true;
        });
        await review.exports.start();
        expect(heard.at(-1)).toEqual({
            command: "startExport",
            requestId: expect.any(String),
            format: "csv",
            include: "all",
            replies: true,
            onExists: "rename",
            frameRate: 29.97,
        });
        await review.exports.chooseFolder();
        review.exports.change({ format: "edl", fileName: "notes", timecodeStart: "01:00:00;00", include: "open" });
        const { review: again } = await load((message) => heard.push(message) > 0);
        await again.exports.start();
        expect(heard.at(-1)).toMatchObject({
            format: "edl",
            fileName: "notes",
            folder: "/home/me/Größe",
            timecodeStart: "01:00:00;00",
            include: "open",
        });
    });

    test("is started, refused or cancelled, and says so", async () => {
        let answer = true;
        const { review } = await load(() => answer);
        const { exports } = review;
        const becomes = async (work: Promise<void>) => {
            await work;
            return [review.notice.value, exports.state.value];
        };
        expect(await becomes(exports.start())).toEqual(["Export started.", "started"]);
        expect(await becomes(exports.cancel())).toEqual(["The export was cancelled.", "idle"]);
        answer = false;
        expect(await becomes(exports.start())).toEqual(["The export was refused.", "idle"]);
        expect(await becomes(exports.cancel())).toEqual(["No export was running.", "idle"]);
        expect(await becomes(exports.chooseFolder())).toEqual(["No folder was chosen.", "idle"]);
    });

    test("of settings that nobody knows is an ordinary one", async () => {
        storage.setItem("zelvix.settings:export", JSON.stringify({ format: "tape", replies: "yes", include: "open" }));
        const { review } = await load();
        expect(review.exports.settings.value).toMatchObject({ format: "csv", replies: true, include: "open" });
    });
});
