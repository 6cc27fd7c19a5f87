// What crossed the bridge, newest last, for people who develop the page or the panel.

const KEPT = 500;
const SHOWN = 200;
const LINE_LENGTH = 240;
const ARROWS = { sent: "→", answer: "←", event: "•" };

export class EventLog {
    #list;
    #entries = [];
    #scheduled = false;

    constructor(list) {
        this.#list = list;
    }

    // A run of playhead events is one entry with a count: at 60 a second they would push everything else out.
    add(kind, name, detail) {
        const last = this.#entries.at(-1);
        const repeats = name === "fcp:playhead-changed" && last?.name === name;
        if (repeats)
            Object.assign(last, { detail, time: new Date(), count: last.count + 1 });
        else
            this.#entries.push({ kind, name, detail, time: new Date(), count: 1 });
        if (this.#entries.length > KEPT)
            this.#entries.shift();
        this.#schedule();
    }

    get text() {
        return this.#entries.map(line).join("\n");
    }

    async copy() {
        try {
            await navigator.clipboard.writeText(this.text);
            return true;
        } catch {
            return copyBySelection(this.text);
        }
    }

    #schedule() {
        if (this.#scheduled)
            return;
        this.#scheduled = true;
        requestAnimationFrame(() => {
            this.#scheduled = false;
            this.#paint();
        });
    }

    #paint() {
        const lines = this.#entries.slice(-SHOWN).map((entry) => shorten(line(entry)));
        const atEnd = this.#list.scrollHeight - this.#list.scrollTop - this.#list.clientHeight < 4;
        while (this.#list.children.length > lines.length)
            this.#list.firstElementChild.remove();
        lines.forEach((text, index) => {
            const item = this.#list.children[index] ?? this.#list.appendChild(document.createElement("li"));
            if (item.textContent !== text)
                item.textContent = text;
        });
        if (atEnd)
            this.#list.scrollTop = this.#list.scrollHeight;
    }
}

function line({ kind, name, detail, time, count }) {
    const clock = time.toISOString().slice(11, 23);
    return `${clock} ${ARROWS[kind]} ${name}${count > 1 ? ` ×${count}` : ""} ${JSON.stringify(detail)}`;
}

function shorten(text) {
    return text.length > LINE_LENGTH ? `${text.slice(0, LINE_LENGTH)}…` : text;
}

// The way of engines that keep the clipboard from pages.
function copyBySelection(text) {
    const field = document.createElement("textarea");
    field.value = text;
    field.className = "visually-hidden";
    document.body.append(field);
    field.select();
    const done = document.execCommand("copy");
    field.remove();
    return done;
}
