// Runs the rounds that the measuring program hands out: asks for the next one with the result of the last.

const bridge = window.webkit.messageHandlers.fcpBridge;
const name = location.pathname.split('/').pop();
const patience = 100_000; // milliseconds
const waiting = new Map();
let resolveIds = 0;

addEventListener('fcp:resolve', ({ detail }) => {
    const done = waiting.get(detail.resolveId);
    waiting.delete(detail.resolveId);
    done?.(detail.value);
});

function ask(message, done) {
    const resolveId = String(++resolveIds);
    waiting.set(resolveId, done);
    bridge.postMessage({ ...message, resolveId });
}

function percentile(sorted, part) {
    return sorted[Math.min(sorted.length - 1, Math.floor(sorted.length * part))];
}

// What both sides must answer is compared, so that neither is quick by being wrong.
function isExpected(value, expected) {
    const answer = JSON.parse(value);
    return typeof expected === 'object' ? Object.keys(expected).every((key) => answer[key] === expected[key])
                                        : answer === expected;
}

// Requests with an answer, `inFlight` of them at a time.
function trips({ message, expected, count, inFlight }, finish, fail) {
    const latencies = new Float64Array(count);
    let sent = 0;
    let answered = 0;
    const send = () => {
        const number = sent++;
        const began = performance.now();
        ask(message, (value) => {
            latencies[number] = performance.now() - began;
            if (number === 0 && !isExpected(value, expected))
                fail(`wrong answer: ${value}`);
            if (sent < count)
                send();
            if (++answered === count)
                finish({ milliseconds: performance.now() - start, p99: percentile(latencies.sort(), 0.99) });
        });
    };
    const start = performance.now();
    for (let i = 0; i < Math.min(inFlight, count); ++i)
        send();
}

// Asks the host to move on frame by frame, and listens: every frame must come once and in its place.
function burst({ count, frameSeconds }, finish, fail) {
    let heard = 0;
    const listener = ({ detail }) => {
        if (Math.round(detail.seconds / frameSeconds) !== ++heard)
            return fail(`event ${heard} of ${count} says ${detail.seconds} s: lost or out of order`);
        if (heard < count)
            return;
        const milliseconds = performance.now() - start;
        removeEventListener('fcp:playhead-changed', listener);
        finish({ milliseconds });
    };
    addEventListener('fcp:playhead-changed', listener);
    const start = performance.now();
    bridge.postMessage({ command: 'seekTo', seconds: 0 });
}

// The same comments that the bare bus carries; see Comments.h.
function comments(size) {
    const text = 'The grade drifts here, compare with the take before. '.repeat(3);
    return Array.from({ length: size }, (_, i) => ({
        id: `comment-${i}`, author: 'A. Reviewer', text, seconds: i * 1.5, resolved: false,
    }));
}

const kinds = { trips, burst };

function run(round) {
    if (round.comments)
        round.message.comments = comments(round.comments);
    return new Promise((finish, reject) => {
        const fail = (reason) => reject(new Error(reason));
        setTimeout(() => fail(`a round did not end within ${patience} ms`), patience);
        kinds[round.kind](round, finish, fail);
    });
}

async function report(result) {
    const response = await fetch(`/rounds/${name}`, { method: 'POST', body: JSON.stringify(result) });
    return response.json();
}

let round = await report({});
for (;;)
    round = await report(await run(round).catch((error) => ({ error: error.message })));
