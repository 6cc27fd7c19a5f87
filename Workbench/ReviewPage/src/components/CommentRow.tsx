import { useLayoutEffect, useRef } from "preact/hooks";
import type { ReviewComment } from "../comment.js";
import { draftOf, type Review } from "../review.js";
import { formatTimecode } from "../timecode.js";
import { DraftTime } from "./DraftTime.js";
import { Icon } from "./Icon.js";
import { TextField } from "./TextField.js";

interface Properties {
    review: Review;
    comment: ReviewComment;
    index: number;
    count: number;
    /** Pixels from the top of the list. */
    top: number;
    isCurrent: boolean;
    /** Whether its controls are in the keyboard's order. */
    isActive: boolean;
    sizes: ResizeObserver;
}

const stateTexts = { pending: "Syncing", synced: "Synced", failed: "Not synced" };
const removingTexts = { pending: "Deleting", synced: "Deleting", failed: "Not deleted" };

export function CommentRow({ review, comment, index, count, top, isCurrent, isActive, sizes }: Properties) {
    const element = useRef<HTMLLIElement>(null);
    useLayoutEffect(() => {
        const item = element.current!;
        sizes.observe(item);
        return () => sizes.unobserve(item);
    }, [sizes]);
    const { edits, replies } = review.drafts.current.value;
    return (
        <li
            ref={element}
            data-id={comment.id}
            data-resolved={comment.resolved === true}
            aria-setsize={count}
            aria-posinset={index + 1}
            aria-current={isCurrent ? "true" : undefined}
            style={{ transform: `translateY(${top}px)` }}
        >
            <Said review={review} comment={comment} isActive={isActive} />
            <Side review={review} comment={comment} isActive={isActive} />
            {edits[comment.id] && <Edit review={review} comment={comment} />}
            <Replies review={review} comment={comment} isActive={isActive} />
            {replies[comment.id] !== undefined && <NewReply review={review} comment={comment} />}
        </li>
    );
}

type Part = Pick<Properties, "review" | "comment">;
type ActivePart = Pick<Properties, "review" | "comment" | "isActive">;

function Said({ review, comment, isActive }: ActivePart) {
    const rate = review.sequence.value?.frameRate ?? 0;
    const end = comment.duration ? formatTimecode(comment.seconds + comment.duration, rate) : null;
    return (
        <button type="button" class="seek" data-part="seek" tabIndex={isActive ? 0 : -1} onClick={() => void review.seek(comment)}>
            <span class="heading">
                <span class="at" data-part="timecode">
                    {formatTimecode(comment.seconds, rate)}
                </span>
                {end && (
                    <span class="until" data-part="end">
                        – {end}
                    </span>
                )}
                {comment.author && (
                    <span class="by" data-part="author">
                        {comment.author}
                    </span>
                )}
                {comment.resolved && (
                    <span class="resolved" data-part="resolved">
                        Resolved
                    </span>
                )}
            </span>
            <span class="text" data-part="text">
                {comment.text}
            </span>
        </button>
    );
}

function Side({ review, comment, isActive }: ActivePart) {
    const { id, text, state, removing, resolved } = comment;
    const tabIndex = isActive ? 0 : -1;
    return (
        <div class="side">
            <span class="state" data-part="state" data-state={state}>
                {(removing ? removingTexts : stateTexts)[state]}
            </span>
            <button type="button" class="retry" data-part="retry" hidden={state !== "failed"} tabIndex={tabIndex}
                aria-label={`Retry: ${text}`} onClick={() => review.comments.retry(id)}>
                Retry
            </button>
            <span class="tools">
                <button type="button" data-part="resolve" tabIndex={tabIndex} title={resolved ? "Reopen" : "Resolve"}
                    aria-label={`${resolved ? "Reopen" : "Resolve"}: ${text}`}
                    onClick={() => review.comments.change(id, { resolved: !resolved })}>
                    <Icon shape={resolved ? "reopen" : "resolve"} />
                </button>
                <button type="button" data-part="reply" tabIndex={tabIndex} title="Reply" aria-label={`Reply: ${text}`}
                    onClick={() => review.drafts.setReply(id, "")}>
                    <Icon shape="reply" />
                </button>
                <button type="button" data-part="edit" tabIndex={tabIndex} title="Edit" aria-label={`Edit: ${text}`}
                    onClick={() => review.drafts.setEdit(id, draftOf(comment))}>
                    <Icon shape="edit" />
                </button>
                <button type="button" data-part="remove" tabIndex={tabIndex} title="Delete" aria-label={`Delete: ${text}`}
                    onClick={() => review.comments.remove(id)}>
                    <Icon shape="remove" />
                </button>
            </span>
        </div>
    );
}

function Edit({ review, comment }: Part) {
    const draft = review.drafts.current.value.edits[comment.id]!;
    const change = (changed: typeof draft) => review.drafts.setEdit(comment.id, changed);
    const save = () => review.saveEdit(comment.id);
    const cancel = () => review.drafts.setEdit(comment.id, undefined);
    return (
        <div class="editor" data-part="editor">
            <TextField label={`Edit: ${comment.text}`} text={draft.text} takesFocus
                onType={(text) => change({ ...draft, text })} onDone={save} onCancel={cancel} />
            <div class="row">
                <DraftTime review={review} draft={draft} onChange={change} />
                <span class="space" />
                <button type="button" data-part="cancel" onClick={cancel}>Cancel</button>
                <button type="button" data-part="save" class="primary" disabled={!draft.text.trim()} onClick={save}>Save</button>
            </div>
        </div>
    );
}

function Replies({ review, comment, isActive }: ActivePart) {
    if (!comment.replies?.length)
        return null;
    return (
        <ul class="replies" aria-label="Replies">
            {comment.replies.map((reply) => (
                <li key={reply.id}>
                    {reply.author && <span class="by">{reply.author}</span>}
                    <span class="text" data-part="reply-text">{reply.text}</span>
                    <button type="button" data-part="remove-reply" tabIndex={isActive ? 0 : -1} title="Delete"
                        aria-label={`Delete reply: ${reply.text}`} onClick={() => review.removeReply(comment, reply)}>
                        <Icon shape="remove" />
                    </button>
                </li>
            ))}
        </ul>
    );
}

function NewReply({ review, comment }: Part) {
    const text = review.drafts.current.value.replies[comment.id]!;
    const add = () => review.addReply(comment);
    const cancel = () => review.drafts.setReply(comment.id, undefined);
    return (
        <div class="editor" data-part="new-reply">
            <TextField label={`Reply: ${comment.text}`} placeholder="Reply" text={text} takesFocus
                onType={(typed) => review.drafts.setReply(comment.id, typed)} onDone={add} onCancel={cancel} />
            <div class="row">
                <span class="space" />
                <button type="button" data-part="cancel" onClick={cancel}>Cancel</button>
                <button type="button" data-part="send-reply" class="primary" disabled={!text.trim()} onClick={add}>Reply</button>
            </div>
        </div>
    );
}
