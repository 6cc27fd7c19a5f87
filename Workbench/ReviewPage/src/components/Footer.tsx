import { useSignal } from "@preact/signals";
import { useLayoutEffect, useRef } from "preact/hooks";
import type { Review } from "../review.js";
import { copyText } from "../clipboard.js";
import { ExportForm } from "./ExportForm.js";

export function Footer({ review }: { review: Review }) {
    const notSynced = review.comments.notSynced.value;
    return (
        <footer>
            <div class="notices">
                <p id="notice" class="notice" role="status">
                    {review.notice}
                </p>
                <button
                    id="retry-all"
                    type="button"
                    class="retry"
                    hidden={notSynced === 0}
                    onClick={() => review.comments.retryAll()}
                >
                    {notSynced.toLocaleString("en")} not synced: retry
                </button>
            </div>
            <details id="export-drawer" name="drawer">
                <summary>Export</summary>
                <ExportForm review={review} />
            </details>
            <EventLogDrawer review={review} />
            <a class="help" href="https://example.org/help">
                Help
            </a>
        </footer>
    );
}

function EventLogDrawer({ review }: { review: Review }) {
    const isOpen = useSignal(false);
    return (
        <details
            id="log-drawer"
            name="drawer"
            onToggle={({ currentTarget }) => {
                isOpen.value = currentTarget.open;
            }}
        >
            <summary>Event log</summary>
            <LogLines review={review} isOpen={isOpen.value} />
            <button id="copy-log" type="button" onClick={() => void copyLog(review)}>
                Copy event log
            </button>
        </details>
    );
}

// A closed log stays as it is: it would be written anew for each painted frame.
function LogLines({ review, isOpen }: { review: Review; isOpen: boolean }) {
    const list = useRef<HTMLOListElement>(null);
    const followsEnd = useRef(true);
    useLayoutEffect(() => {
        if (followsEnd.current)
            list.current!.scrollTop = list.current!.scrollHeight;
    });
    function scrolled(): void {
        const { scrollHeight, scrollTop, clientHeight } = list.current!;
        followsEnd.current = scrollHeight - scrollTop - clientHeight < 4;
    }
    const lines = isOpen ? review.log.lines.value : review.log.lines.peek();
    return (
        <ol ref={list} id="log" class="log" tabIndex={0} aria-label="Event log" onScroll={scrolled}>
            {lines.map(({ number, text }) => (
                <li key={number}>{text}</li>
            ))}
        </ol>
    );
}

async function copyLog(review: Review): Promise<void> {
    const done = await copyText(review.log.text);
    review.say(done ? "The event log is copied." : "The event log could not be copied.");
}
