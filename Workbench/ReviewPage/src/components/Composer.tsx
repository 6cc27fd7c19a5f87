import type { Review } from "../review.js";
import { DraftTime } from "./DraftTime.js";
import { TextField } from "./TextField.js";

/** The new comment. What is typed is a draft from its first letter on, and outlives the page. */
export function Composer({ review }: { review: Review }) {
    const draft = review.drafts.current.value.comment;
    const isOpen = review.sequence.value !== null;
    const add = () => review.addComment();

    return (
        <form
            id="add"
            class="composer"
            autocomplete="off"
            onSubmit={(event) => {
                event.preventDefault(); // the form is for the return key; there is nowhere to submit it to
                add();
            }}
        >
            <TextField
                id="new-comment"
                label="New comment at the playhead"
                placeholder="Comment at the playhead"
                text={draft?.text ?? ""}
                disabled={!isOpen}
                onType={(text) => review.typeComment(text)}
                onDone={add}
            />
            <div class="row">
                <DraftTime review={review} draft={draft} onChange={(changed) => review.drafts.setComment(changed)} />
                <span class="space" />
                <input
                    id="author"
                    class="author"
                    type="text"
                    aria-label="Your name"
                    placeholder="Your name"
                    maxLength={100}
                    value={review.author}
                    onInput={({ currentTarget }) => review.setAuthor(currentTarget.value)}
                />
                <button type="submit" class="primary" disabled={!isOpen || !draft?.text.trim()}>
                    Add
                </button>
            </div>
        </form>
    );
}
