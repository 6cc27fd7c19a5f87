// Frames and timecode of a sequence. The panel rounds the rate to two decimals; the rates that are meant are
// known, and a position computed from the rounded one would drift by a frame within minutes.

const EXACT_RATES = new Map([
    [23.98, 24_000 / 1001],
    [29.97, 30_000 / 1001],
    [47.95, 48_000 / 1001],
    [59.94, 60_000 / 1001],
    [119.88, 120_000 / 1001],
]);

// A position on a frame's edge must not fall before it by the last bit of the number.
const EDGE = 1e-3;

export function exactRate(reported) {
    return EXACT_RATES.get(reported) ?? reported;
}

// The frame that contains the position; 0 when there is no rate to tell by.
export function frameAt(seconds, reportedRate) {
    if (!Number.isFinite(seconds) || !(reportedRate > 0))
        return 0;
    return Math.max(0, Math.floor(seconds * exactRate(reportedRate) + EDGE));
}

// HH:MM:SS:FF counting every frame, or a clock with milliseconds when there is no rate.
export function formatTimecode(seconds, reportedRate) {
    if (!Number.isFinite(seconds))
        return "--:--:--:--";
    if (!(reportedRate > 0))
        return formatClock(Math.max(0, seconds));
    const framesInSecond = Math.round(exactRate(reportedRate));
    const frame = frameAt(seconds, reportedRate);
    return `${hoursMinutesSeconds(Math.floor(frame / framesInSecond))}:${twoDigits(frame % framesInSecond)}`;
}

function formatClock(seconds) {
    const milliseconds = Math.floor(seconds * 1000 + EDGE);
    const rest = String(milliseconds % 1000).padStart(3, "0");
    return `${hoursMinutesSeconds(Math.floor(milliseconds / 1000))}.${rest}`;
}

function hoursMinutesSeconds(whole) {
    return [Math.floor(whole / 3600), Math.floor(whole / 60) % 60, whole % 60].map(twoDigits).join(":");
}

function twoDigits(number) {
    return String(number).padStart(2, "0");
}
