// A comment as this page keeps it, and as the container gets it.

import type { Comment, Marker } from "bridge-client";

/** "pending" while a command is on its way, "failed" when the container refused or nobody answered. */
export type SyncState = "pending" | "synced" | "failed";

export interface Reply {
    id: string;
    text: string;
    author?: string;
    createdAt?: string;
}

export interface ReviewComment {
    id: string;
    text: string;
    /** Seconds from the sequence's start. */
    seconds: number;
    /** Seconds; without it the comment is about a moment. */
    duration?: number;
    author?: string;
    resolved?: boolean;
    replies?: readonly Reply[];
    createdAt?: string;
    updatedAt?: string;
    state: SyncState;
    /** It disappears when the container has agreed. */
    removing?: boolean;
}

export type CommentFields = Pick<ReviewComment, "text" | "seconds" | "duration" | "author" | "resolved" | "replies">;

const states: readonly unknown[] = ["pending", "synced", "failed"];

const isText = (value: unknown) => typeof value === "string";
const isAbsentOr = (test: (value: unknown) => boolean) => (value: unknown) => value === undefined || test(value);
const isTextOrAbsent = isAbsentOr(isText);
const isFlagOrAbsent = isAbsentOr((value) => typeof value === "boolean");

/** Storage is shared with every page of this origin: what does not look like ours is left out. */
export function isReviewComment(entry: unknown): entry is ReviewComment {
    const { id, text, seconds, duration, author, resolved, replies, createdAt, updatedAt, state, removing } = Object(entry);
    return (
        [id, text].every(isText) &&
        Number.isFinite(seconds) &&
        isAbsentOr(Number.isFinite)(duration) &&
        [author, createdAt, updatedAt].every(isTextOrAbsent) &&
        [resolved, removing].every(isFlagOrAbsent) &&
        isAbsentOr((value) => Array.isArray(value) && value.every(isReply))(replies) &&
        states.includes(state)
    );
}

function isReply(entry: unknown): entry is Reply {
    const { id, text, author, createdAt } = Object(entry);
    return [id, text].every(isText) && [author, createdAt].every(isTextOrAbsent);
}

/** What the container is sent: all but what is this page's own. */
export function wireForm({ state: _state, removing: _removing, replies = [], ...fields }: ReviewComment): Comment {
    return { ...fields, replies: replies.map((reply) => ({ ...reply, seconds: fields.seconds })) };
}

/** The comment that a marker of the timeline stands for; undefined when the marker says too little. */
export function commentOf(marker: Marker & { seconds?: unknown }): ReviewComment | undefined {
    const { id, text, author, duration, resolved, replies } = marker;
    const seconds = Number.isFinite(marker.start) ? marker.start : marker.seconds;
    const fields = { id, text, seconds, author: author || undefined, duration: duration || undefined, resolved };
    const known = Object.entries(fields).filter(([, value]) => value !== undefined);
    const comment = { ...Object.fromEntries(known), replies: (replies ?? []).filter(isReply), state: "synced" };
    return isReviewComment(comment) ? comment : undefined;
}

export function byTime(one: ReviewComment, other: ReviewComment): number {
    return one.seconds - other.seconds;
}
