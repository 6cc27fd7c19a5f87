// The comments on the screen. Entries are kept from one change to the next, so that focus and scrolling stay.

import { formatTimecode } from "./timecode.js";

const STATE_TEXTS = {
    pending: "Syncing",
    synced: "Synced",
    failed: "Not synced",
    removingPending: "Deleting",
    removingFailed: "Not deleted",
};

export class CommentList {
    #list;
    #empty;
    #actions;
    #entries = new Map();
    #highlighted = null;

    // `actions` has seek(comment), remove(comment) and retry(comment).
    constructor({ list, empty, actions }) {
        this.#list = list;
        this.#empty = empty;
        this.#actions = actions;
    }

    show(comments, rate) {
        const sorted = [...comments].sort((a, b) => a.seconds - b.seconds);
        const focus = this.#neighbourOfLostFocus(sorted);
        this.#dropAllBut(new Set(sorted.map(({ id }) => id)));
        sorted.forEach((comment, index) => this.#place(comment, index, rate));
        this.#empty.hidden = sorted.length > 0;
        focus?.focus();
    }

    // Marks one comment as the one that is looked at; none for an unknown or missing identifier.
    highlight(id) {
        this.#highlighted = id;
        for (const [key, { element }] of this.#entries)
            this.#mark(element, key);
        const entry = this.#entries.get(id);
        entry?.element.scrollIntoView({ block: "nearest" });
        return entry !== undefined;
    }

    #place(comment, index, rate) {
        const entry = this.#entries.get(comment.id) ?? this.#make(comment.id);
        entry.comment = comment;
        fill(entry, formatTimecode(comment.seconds, rate));
        this.#mark(entry.element, comment.id);
        const present = this.#list.children[index];
        if (present !== entry.element)
            this.#list.insertBefore(entry.element, present ?? null);
    }

    #make(id) {
        const element = document.getElementById("comment-template").content.firstElementChild.cloneNode(true);
        const part = (name) => element.querySelector(`[data-part="${name}"]`);
        const names = ["seek", "timecode", "text", "state", "retry", "remove"];
        const entry = { element, comment: null, ...Object.fromEntries(names.map((name) => [name, part(name)])) };
        for (const action of ["seek", "retry", "remove"])
            entry[action].addEventListener("click", () => this.#actions[action](entry.comment));
        this.#entries.set(id, entry);
        return entry;
    }

    #mark(element, id) {
        if (id === this.#highlighted)
            element.setAttribute("aria-current", "true");
        else
            element.removeAttribute("aria-current");
    }

    #dropAllBut(ids) {
        for (const [id, { element }] of this.#entries) {
            if (ids.has(id))
                continue;
            element.remove();
            this.#entries.delete(id);
        }
    }

    // The keyboard would fall back to the top of the page when its entry is deleted.
    #neighbourOfLostFocus(remaining) {
        const elements = [...this.#list.children];
        const at = elements.findIndex((element) => element.contains(document.activeElement));
        if (at < 0)
            return null;
        const kept = new Set(remaining.map(({ id }) => this.#entries.get(id)?.element));
        if (kept.has(elements[at]))
            return null;
        const next = [...elements.slice(at + 1), ...elements.slice(0, at).reverse()].find((element) => kept.has(element));
        return next?.querySelector('[data-part="seek"]') ?? null;
    }
}

function fill(entry, timecode) {
    const { comment } = entry;
    const removing = comment.removing && comment.state !== "synced";
    const failed = comment.state === "failed";
    setText(entry.timecode, timecode);
    setText(entry.text, comment.text);
    setText(entry.state, STATE_TEXTS[removing ? (failed ? "removingFailed" : "removingPending") : comment.state]);
    entry.state.dataset.state = comment.state;
    entry.retry.hidden = !failed;
    entry.retry.setAttribute("aria-label", `Retry: ${comment.text}`);
    entry.remove.setAttribute("aria-label", `Delete: ${comment.text}`);
}

function setText(element, text) {
    if (element.textContent !== text)
        element.textContent = text;
}
