import type { Filter, Review } from "../review.js";
import { CommentList } from "./CommentList.js";

export function Comments({ review }: { review: Review }) {
    const isOpen = review.sequence.value !== null;
    const count = review.shown.value.length;
    return (
        <section class="comments" aria-labelledby="comments-title">
            <div class="toolbar">
                <h2 id="comments-title">Comments</h2>
                <select
                    id="filter"
                    aria-label="Which comments"
                    value={review.filter}
                    onChange={({ currentTarget }) => {
                        review.filter.value = currentTarget.value as Filter;
                    }}
                >
                    <option value="all">All</option>
                    <option value="open">Open</option>
                    <option value="resolved">Resolved</option>
                </select>
                <span id="count" class="count">{count.toLocaleString("en")}</span>
                <span class="space" />
                <button id="find" type="button" disabled={!isOpen} onClick={() => void review.findAtPlayhead()}>
                    Find at playhead
                </button>
                <button id="sync-all" type="button" disabled={!isOpen} onClick={() => void review.syncAll()}>
                    Sync all
                </button>
            </div>
            <CommentList review={review} />
        </section>
    );
}
