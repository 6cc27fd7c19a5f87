// The page of a workbench that was built without npm: sequence, timecode, and comments on their way to the container
// application. What it needs of the bridge is in here.

const PATIENCE = 65_000; // milliseconds; the panel's own answer comes within 60 s

// The rates that the panel's two decimals stand for.
const EXACT_RATES = new Map([23.98, 29.97, 47.95, 59.94, 119.88].map((rate) => [rate, (Math.ceil(rate) * 1000) / 1001]));

const utf8 = new TextDecoder("utf-8", { fatal: true, ignoreBOM: true });
const prefix = crypto.randomUUID(); // an answer to an earlier load of the page must match nothing
const pending = new Map();
const element = (id) => document.getElementById(id);

let rate = 0;
let playhead = 0; // seconds
let isPainting = false;

// Text arrives with one character for each byte of its UTF-8 form.
function repaired(text) {
    try {
        return utf8.decode(Uint8Array.from(text, (character) => {
            if (character > "\xff")
                throw new RangeError("never damaged");
            return character.charCodeAt(0);
        }));
    } catch {
        return text;
    }
}

// What the panel answers; null when nobody does, or when there is no panel.
function ask(command, args = {}) {
    const handler = window.webkit?.messageHandlers?.fcpBridge;
    if (handler === undefined)
        return Promise.resolve(null);
    const resolveId = `${prefix}-${pending.size}`;
    return new Promise((resolve) => {
        pending.set(resolveId, resolve);
        setTimeout(resolve, PATIENCE, null);
        handler.postMessage({ ...args, command, resolveId });
    });
}

function hearAnswer({ detail }) {
    pending.get(detail?.resolveId)?.(JSON.parse(repaired(detail.value)));
    say("Connected");
}

function say(text) {
    element("connection").textContent = text;
}

function timecode(seconds) {
    if (!(rate > 0))
        return `${seconds.toFixed(3)} s`;
    const exact = EXACT_RATES.get(rate) ?? rate;
    const whole = Math.round(exact);
    const frame = Math.max(0, Math.floor(seconds * exact + 1e-3));
    const parts = [frame / whole / 3600, (frame / whole / 60) % 60, (frame / whole) % 60, frame % whole];
    return parts.map((part) => String(Math.floor(part)).padStart(2, "0")).join(":");
}

// At most one change of the text for each frame on the screen.
function schedulePaint() {
    if (isPainting)
        return;
    isPainting = true;
    requestAnimationFrame(() => {
        isPainting = false;
        element("timecode").textContent = timecode(playhead);
    });
}

function showSequence(sequence, name = sequence.name) {
    rate = sequence.frameRate;
    element("sequence-name").textContent = name || "Untitled sequence";
    for (const control of element("add").elements)
        control.disabled = false;
    schedulePaint();
}

function showPlayhead(seconds) {
    playhead = seconds;
    schedulePaint();
}

async function catchUp() {
    const sequence = await ask("getTimeline");
    if (sequence !== null)
        showSequence(sequence);
    const seconds = await ask("getPlayhead");
    if (typeof seconds === "number")
        showPlayhead(seconds);
}

function part(name, className, text) {
    const made = document.createElement(name);
    made.className = className;
    made.textContent = text;
    return made;
}

async function sync(comment, state, retry) {
    state.textContent = "Syncing";
    retry.hidden = true;
    const done = (await ask("syncComment", comment)) === true;
    state.textContent = done ? "Synced" : "Not synced";
    retry.hidden = done;
}

function addComment(event) {
    event.preventDefault(); // there is nowhere to submit it to
    const field = element("new-comment");
    const text = field.value.trim();
    if (text === "")
        return;
    field.value = "";
    const comment = { id: crypto.randomUUID(), text, seconds: playhead, createdAt: new Date().toISOString() };
    const seek = part("button", "seek", text);
    seek.prepend(part("span", "at", timecode(comment.seconds)));
    seek.addEventListener("click", () => ask("seekTo", { seconds: comment.seconds }));
    const state = part("span", "state", "");
    const retry = part("button", "retry", "Retry");
    retry.addEventListener("click", () => sync(comment, state, retry));
    element("comments").append(part("li", "", ""));
    element("comments").lastElementChild.append(seek, state, retry);
    sync(comment, state, retry);
}

window.addEventListener("fcp:resolve", hearAnswer);
window.addEventListener("fcp:connected", catchUp);
window.addEventListener("fcp:sequence-changed", ({ detail }) => showSequence(detail, repaired(detail.name)));
window.addEventListener("fcp:playhead-changed", ({ detail }) => showPlayhead(detail.seconds));
element("add").addEventListener("submit", addComment);
if (window.webkit?.messageHandlers?.fcpBridge)
    catchUp();
else
    say("Outside the panel");
