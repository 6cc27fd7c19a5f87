import { useSignal, useSignalEffect } from "@preact/signals";
import { useLayoutEffect, useMemo, useRef } from "preact/hooks";
import type { Filter, Review } from "../review.js";
import { RowLayout } from "../row-layout.js";
import { CommentRow } from "./CommentRow.js";

/** Pixels: a row with one line of text, and how far beyond the visible part rows are made. */
const ordinaryHeight = 55;
const margin = 400;

const emptyTexts: Record<Filter, string> = {
    all: "No comments yet.",
    open: "No open comments.",
    resolved: "No resolved comments.",
};

// The rows that a key leads to, from the one that has the keyboard.
const steps: Record<string, (index: number, page: number, last: number) => number> = {
    ArrowDown: (index) => index + 1,
    ArrowUp: (index) => index - 1,
    PageDown: (index, page) => index + page,
    PageUp: (index, page) => index - page,
    Home: () => 0,
    End: (_index, _page, last) => last,
};

/** Of thousands of comments only those on the screen are made, and the one that has the keyboard. */
export function CommentList({ review }: { review: Review }) {
    const scroller = useRef<HTMLDivElement>(null);
    const list = useRef<HTMLOListElement>(null);
    const layout = useMemo(() => new RowLayout(ordinaryHeight), []);
    const scrollTop = useSignal(0);
    const viewHeight = useSignal(0);
    const measurements = useSignal(0);
    const active = useSignal<string | null>(null);
    const wanted = useRef<{ id: string; focus: boolean } | null>(null);
    const activeIndex = useRef(0);

    const comments = review.shown.value;
    const ids = useMemo(() => comments.map(({ id }) => id), [comments]);
    useMemo(() => layout.setRows(ids), [ids]);

    /** Rows that turn out to be of another height are rendered again. */
    function remeasure(): void {
        const rows = list.current!.children as HTMLCollectionOf<HTMLLIElement>;
        const heights = new Map(Array.from(rows, (row) => [row.dataset["id"]!, row.offsetHeight]));
        const added = layout.measure(heights, scroller.current!.scrollTop);
        if (added === undefined)
            return;
        list.current!.style.height = `${layout.height}px`;
        if (added !== 0)
            scrollTo(scroller.current!.scrollTop + added);
        measurements.value = measurements.peek() + 1;
    }

    function scrollTo(top: number): void {
        scroller.current!.scrollTop = top;
        scrollTop.value = scroller.current!.scrollTop;
    }

    /** Scrolls to what is asked for, again after each rendering until it is there: rows on the way turn out higher. */
    function reveal(): void {
        const request = wanted.current;
        const index = request ? ids.indexOf(request.id) : -1;
        if (!request || index < 0)
            return;
        const { scrollTop: before, clientHeight } = scroller.current!;
        scrollTo(layout.scrollTopToReveal(index, before, clientHeight));
        const row = rowOf(request.id);
        if (row && request.focus)
            row.querySelector<HTMLElement>(".seek")!.focus({ preventScroll: true });
        if (row && scroller.current!.scrollTop === before)
            wanted.current = null;
    }

    function rowOf(id: string): HTMLElement | undefined {
        return Array.from(list.current!.children as HTMLCollectionOf<HTMLElement>).find((row) => row.dataset["id"] === id);
    }

    function ask(id: string, focus: boolean): void {
        wanted.current = { id, focus };
        active.value = id;
        measurements.value = measurements.peek() + 1;
    }

    // The keyboard would fall back to the top of the page when its comment is deleted.
    function keepKeyboard(): void {
        const index = active.peek() === null ? -1 : ids.indexOf(active.peek()!);
        if (index >= 0) {
            activeIndex.current = index;
        } else if (active.peek() !== null) {
            const next = ids[Math.min(activeIndex.current, ids.length - 1)] ?? null;
            if (next !== null && document.activeElement === document.body)
                ask(next, true);
            else
                active.value = next;
        }
    }

    const sizes = useMemo(() => new ResizeObserver(remeasure), []);
    useLayoutEffect(() => {
        const views = new ResizeObserver(() => {
            viewHeight.value = scroller.current!.clientHeight;
        });
        viewHeight.value = scroller.current!.clientHeight;
        views.observe(scroller.current!);
        return () => views.disconnect();
    }, []);
    useLayoutEffect(() => {
        remeasure();
        keepKeyboard();
        reveal();
    });
    useSignalEffect(() => {
        const request = review.highlighted.value;
        if (request)
            ask(request.id, false);
    });

    function press(event: KeyboardEvent): void {
        const step = steps[event.key];
        const row = (event.target as HTMLElement).closest<HTMLElement>("#comments > li");
        if (!step || !row || event.target instanceof HTMLTextAreaElement || event.altKey || event.ctrlKey || event.metaKey)
            return;
        event.preventDefault();
        const last = ids.length - 1;
        const page = Math.max(1, Math.floor(scroller.current!.clientHeight / ordinaryHeight) - 1);
        const index = step(ids.indexOf(row.dataset["id"]!), page, last);
        ask(ids[Math.max(0, Math.min(last, index))]!, true);
    }

    function takeKeyboard(event: FocusEvent): void {
        active.value = (event.target as HTMLElement).closest<HTMLElement>("#comments > li")?.dataset["id"] ?? null;
    }

    void measurements.value;
    const rows = rowsToMake(layout, scrollTop.value, viewHeight.value, ids.indexOf(active.value ?? ""));
    const current = review.highlighted.value?.id;
    const tabStop = active.value ?? ids[0];
    return (
        <div
            ref={scroller}
            class="scroll"
            onScroll={() => {
                scrollTop.value = scroller.current!.scrollTop;
            }}
        >
            <p id="no-comments" class="empty" hidden={ids.length > 0}>
                {emptyTexts[review.filter.value]}
            </p>
            <ol
                ref={list}
                id="comments"
                role="list"
                aria-labelledby="comments-title"
                style={{ height: `${layout.height}px` }}
                onKeyDown={press}
                onFocusIn={takeKeyboard}
            >
                {rows.map((index) => (
                    <CommentRow
                        key={ids[index]}
                        review={review}
                        comment={comments[index]!}
                        index={index}
                        count={ids.length}
                        top={layout.topOf(index)}
                        isCurrent={ids[index] === current}
                        isActive={ids[index] === tabStop}
                        sizes={sizes}
                    />
                ))}
            </ol>
        </div>
    );
}

function rowsToMake(layout: RowLayout, top: number, height: number, kept: number): number[] {
    const [first, end] = layout.rangeWithin(Math.max(0, top - margin), height + 2 * margin);
    const rows = Array.from({ length: end - first }, (_, offset) => first + offset);
    if (kept >= end)
        rows.push(kept);
    else if (kept >= 0 && kept < first)
        rows.unshift(kept);
    return rows;
}
