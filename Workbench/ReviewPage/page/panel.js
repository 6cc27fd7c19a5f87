// Wires the page: what the bridge says goes to the screen, what the user does goes to the bridge.

import { Bridge, BridgeTimeout, BridgeUnavailable } from "./bridge.js";
import { CommentList } from "./comment-list.js";
import { CommentStore, sequenceKey } from "./comment-store.js";
import { CommentSync } from "./comment-sync.js";
import { EventLog } from "./event-log.js";
import { formatTimecode, frameAt } from "./timecode.js";

const EXPORT_SETTINGS = { format: "csv", include: "all", replies: true, onExists: "rename" };

const element = (id) => document.getElementById(id);

const log = new EventLog(element("log"));
const bridge = new Bridge({
    observer(kind, name, detail) {
        log.add(kind, name, detail);
        if (kind !== "sent")
            showConnection("connected", "Connected");
    },
});

let sequence = null;
let playhead = null; // seconds
let painting = false;

const comments = new CommentSync({ bridge, store: new CommentStore(), onChange: showComments });
const list = new CommentList({
    list: element("comments"),
    empty: element("no-comments"),
    actions: {
        seek: (comment) => seek(comment),
        remove: (comment) => comments.remove(comment.id),
        retry: (comment) => comments.retry(comment.id),
    },
});

function showConnection(state, text) {
    const place = element("connection");
    place.dataset.state = state;
    if (place.textContent !== text)
        place.textContent = text;
}

function say(text) {
    element("notice").textContent = text;
}

function setText(id, text) {
    if (element(id).textContent !== text)
        element(id).textContent = text;
}

function showSequence(info) {
    const before = sequence === null ? null : sequenceKey(sequence);
    sequence = info;
    const rate = info.frameRate;
    setText("sequence-name", info.name === "" ? "Untitled sequence" : info.name);
    setText("duration", formatTimecode(info.duration, rate));
    setText("rate", rate > 0 ? `${rate} fps` : "unknown");
    for (const control of document.querySelectorAll("[data-needs-sequence]"))
        control.disabled = false;
    schedulePaint();
    if (before === sequenceKey(info))
        showComments();
    else
        comments.open(sequenceKey(info));
}

function showComments({ kept = true } = {}) {
    list.show(comments.comments, sequence?.frameRate ?? 0);
    if (!kept)
        say("This browser keeps no comments: a reload loses those that are not synced.");
}

// At most one change of the text for each frame on the screen, however fast positions come in.
function schedulePaint() {
    if (painting)
        return;
    painting = true;
    requestAnimationFrame(() => {
        painting = false;
        const rate = sequence?.frameRate ?? 0;
        setText("timecode", formatTimecode(playhead ?? NaN, rate));
        setText("frame", playhead === null || !(rate > 0) ? "–" : String(frameAt(playhead, rate)));
    });
}

function movePlayhead(seconds) {
    playhead = seconds;
    schedulePaint();
}

// Asks something and gives null when nobody answers; the connection shows why.
async function ask(command, args) {
    try {
        return await bridge.call(command, args);
    } catch (problem) {
        if (problem instanceof BridgeUnavailable)
            say("This page is not inside the panel.");
        else if (problem instanceof BridgeTimeout)
            showConnection("silent", "No answer");
        else
            throw problem;
        return null;
    }
}

// The event "fcp:connected" comes twice for each load, and an answer may come before it.
async function catchUp() {
    const info = await ask("getTimeline");
    if (info !== null && sequence === null)
        showSequence(info);
    const seconds = await ask("getPlayhead");
    if (typeof seconds === "number" && playhead === null)
        movePlayhead(seconds);
}

function seek(comment) {
    list.highlight(comment.id);
    ask("seekTo", { seconds: comment.seconds });
}

function showMarker(marker) {
    const known = comments.comments.some(({ id }) => id === marker.id);
    if (!known && typeof marker.id === "string" && typeof marker.text === "string")
        comments.adopt(marker, Number.isFinite(marker.start) ? marker.start : marker.seconds);
    if (list.highlight(marker.id))
        say(`Marker: ${marker.text ?? marker.id}`);
}

async function findAtPlayhead() {
    const marker = await ask("getMarkerAtTime", { seconds: playhead ?? 0 });
    if (marker)
        showMarker(marker);
    else
        say(marker === null ? "No comment at the playhead." : "The container application is not connected.");
}

async function startExport() {
    say("Export requested…");
    const started = await ask("startExport", { config: EXPORT_SETTINGS });
    say(started === true ? "Export started." : "The export was refused.");
}

async function chooseFolder() {
    say("Choose a folder in the dialog…");
    const folder = await ask("selectOutputFolder");
    say(typeof folder === "string" ? `Exports go to ${folder}` : "No folder was chosen.");
}

async function syncAll() {
    say("Syncing all comments…");
    say((await comments.syncAll()) ? "All comments are synced." : "The comments could not be synced.");
}

function addComment(event) {
    event.preventDefault(); // the form is for the return key; there is nowhere to submit it to
    const field = element("new-comment");
    const text = field.value.trim();
    if (text === "" || sequence === null)
        return;
    field.value = "";
    list.highlight(comments.add(text, playhead ?? 0).id);
}

async function copyLog() {
    say((await log.copy()) ? "The event log is copied." : "The event log could not be copied.");
}

function listen() {
    bridge.on("fcp:connected", catchUp);
    bridge.on("fcp:sequence-changed", showSequence);
    bridge.on("fcp:playhead-changed", ({ seconds }) => movePlayhead(seconds));
    bridge.on("fcp:marker-clicked", showMarker);
    element("add").addEventListener("submit", addComment);
    element("find").addEventListener("click", findAtPlayhead);
    element("sync-all").addEventListener("click", syncAll);
    element("export").addEventListener("click", startExport);
    element("folder").addEventListener("click", chooseFolder);
    element("copy-log").addEventListener("click", copyLog);
}

function start() {
    listen();
    element("banner").hidden = bridge.available;
    if (bridge.available)
        catchUp();
    else
        showConnection("outside", "Outside the panel");
}

start();
