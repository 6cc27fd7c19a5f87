// The comments of the open sequence and their way to the container application.
//
// A comment is {id, text, seconds, createdAt, state, removing}. `state` is "pending" while a command is on its
// way, then "synced" or "failed"; a comment that is `removing` disappears when the container has agreed.

export class CommentSync {
    #bridge;
    #store;
    #onChange;
    #key = null;
    // The last request made for each comment: an older one's answer no longer counts.
    #requests = new Map();

    // `onChange` is told after every change of the open sequence's comments.
    constructor({ bridge, store, onChange }) {
        this.#bridge = bridge;
        this.#store = store;
        this.#onChange = onChange;
    }

    get comments() {
        return this.#key === null ? [] : this.#store.read(this.#key);
    }

    // Shows another sequence's comments. What was on its way when an earlier load of the page ended is sent
    // again: the container takes a repetition for the same comment.
    open(key) {
        this.#key = key;
        this.#onChange();
        for (const comment of this.comments)
            if (comment.state === "pending" && !this.#requests.has(comment.id))
                this.#send(key, comment);
    }

    add(text, seconds) {
        const comment = { id: crypto.randomUUID(), text, seconds, createdAt: new Date().toISOString(), state: "pending" };
        this.#save(this.#key, [...this.comments, comment]);
        this.#send(this.#key, comment);
        return comment;
    }

    remove(id) {
        this.#again(id, { removing: true });
    }

    retry(id) {
        this.#again(id, {});
    }

    // Hands the whole list over; the container drops what is not in it.
    async syncAll() {
        const key = this.#key;
        const listed = this.comments.filter((comment) => !comment.removing);
        const tokens = new Map(listed.map(({ id }) => [id, this.#begin(id)]));
        this.#edit(key, (comment) => (tokens.has(comment.id) ? { ...comment, state: "pending" } : comment));
        const done = await this.#ask("syncAllComments", { comments: listed.map(wireForm) });
        const current = (id) => tokens.has(id) && this.#finish(id, tokens.get(id));
        this.#edit(key, (comment) => (current(comment.id) ? { ...comment, state: done ? "synced" : "failed" } : comment));
        return done;
    }

    // A marker of the timeline that this page does not know, as after its storage was cleared.
    adopt(marker, seconds) {
        const comment = { id: marker.id, text: marker.text, seconds, state: "synced" };
        this.#save(this.#key, [...this.comments, comment]);
    }

    #again(id, change) {
        const key = this.#key;
        this.#edit(key, (comment) => (comment.id === id ? { ...comment, ...change, state: "pending" } : comment));
        const comment = this.comments.find((entry) => entry.id === id);
        if (comment !== undefined)
            this.#send(key, comment);
    }

    async #send(key, comment) {
        const token = this.#begin(comment.id);
        const done = comment.removing
            ? await this.#ask("deleteComment", { commentId: comment.id })
            : await this.#ask("syncComment", wireForm(comment));
        if (!this.#finish(comment.id, token))
            return;
        if (done && comment.removing)
            this.#save(key, this.#store.read(key).filter((entry) => entry.id !== comment.id));
        else
            this.#edit(key, (entry) => (entry.id === comment.id ? { ...entry, state: done ? "synced" : "failed" } : entry));
    }

    #begin(id) {
        const token = Symbol(id);
        this.#requests.set(id, token);
        return token;
    }

    // False when a later request for the same comment has been made.
    #finish(id, token) {
        return this.#requests.get(id) === token && this.#requests.delete(id);
    }

    async #ask(command, args) {
        try {
            return (await this.#bridge.call(command, args)) === true;
        } catch {
            return false;
        }
    }

    #edit(key, change) {
        this.#save(key, this.#store.read(key).map(change));
    }

    #save(key, comments) {
        const kept = this.#store.write(key, comments);
        if (key === this.#key)
            this.#onChange({ kept });
    }
}

function wireForm({ id, text, seconds, createdAt }) {
    return { id, text, seconds, createdAt };
}
