import type { CommentDraft } from "../drafts.js";
import type { Review } from "../review.js";
import { formatTimecode } from "../timecode.js";

interface Properties {
    review: Review;
    draft: CommentDraft | undefined;
    onChange: (draft: CommentDraft) => void;
}

/** Where a draft's comment begins and ends, and how it gets there: both follow the playhead on request only. */
export function DraftTime({ review, draft, onChange }: Properties) {
    const rate = review.sequence.value?.frameRate ?? 0;
    const begin = () => {
        const { end: _end, ...moment } = draft!;
        onChange({ ...moment, seconds: review.playhead });
    };
    return (
        <span class="draft-time" data-empty={draft === undefined}>
            <button type="button" data-part="in" disabled={!draft} title="Begin at the playhead" onClick={begin}>
                <span class="visually-hidden">Begin at the playhead, now </span>
                <span class="at">{draft ? formatTimecode(draft.seconds, rate) : "at playhead"}</span>
            </button>
            <button
                type="button"
                data-part="out"
                disabled={!draft}
                title="End at the playhead"
                onClick={() => onChange(review.withEndAtPlayhead(draft!))}
            >
                <span class="visually-hidden">End at the playhead{draft?.end === undefined ? "" : ", now "}</span>
                <span class={draft?.end === undefined ? "" : "at"} aria-hidden={draft?.end === undefined}>
                    {draft?.end === undefined ? "+ out" : formatTimecode(draft.end, rate)}
                </span>
            </button>
        </span>
    );
}
